// The boxes that tell and ask; those for files and folders are in FileDialogs.cpp.
#include "platform/Dialogs.h"

#include "platform/Answerers.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace quorvia::platform {

template class Answerer<MessageBox, BoxAnswer>;
template class Answerer<TextQuestion, QString>;
template class Answerer<ColorQuestion, std::optional<QColor>>;

namespace {

QMessageBox::Icon iconOf(BoxKind kind)
{
    switch (kind) {
    case BoxKind::Information:
        return QMessageBox::Information;
    case BoxKind::Question:
        return QMessageBox::Question;
    case BoxKind::Critical:
        return QMessageBox::Critical;
    case BoxKind::Plain:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons buttonsOf(BoxButtons buttons)
{
    switch (buttons) {
    case BoxButtons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case BoxButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case BoxButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case BoxButtons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

/// The button that Escape and the window's close button stand for.
QMessageBox::StandardButton closingButton(BoxButtons buttons)
{
    switch (buttons) {
    case BoxButtons::YesNo:
        return QMessageBox::No;
    case BoxButtons::OkCancel:
    case BoxButtons::YesNoCancel:
        return QMessageBox::Cancel;
    case BoxButtons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

BoxAnswer answerOf(int button)
{
    switch (button) {
    case QMessageBox::Yes:
        return BoxAnswer::Yes;
    case QMessageBox::No:
        return BoxAnswer::No;
    case QMessageBox::Cancel:
        return BoxAnswer::Cancel;
    default:
        return BoxAnswer::Ok;
    }
}

/// Widens the box for a text with line ends of its own: the toolkit would fold its lines at a width of its
/// own too, and leave a word alone on a line.
void keepLines(QMessageBox& widget)
{
    auto* const grid = qobject_cast<QGridLayout*>(widget.layout());
    if (!grid || !widget.text().contains(u'\n'))
        return;
    constexpr double mostOfScreen = 0.8;
    const QSize text = widget.fontMetrics().size(Qt::TextExpandTabs, widget.text());
    const int beside = widget.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &widget) +
                       3 * grid->horizontalSpacing() + grid->contentsMargins().left() +
                       grid->contentsMargins().right();
    const int widest = int(widget.screen()->availableGeometry().width() * mostOfScreen);
    grid->addItem(
        new QSpacerItem(std::min(text.width() + beside, widest), 0, QSizePolicy::Minimum, QSizePolicy::Fixed),
        grid->rowCount(), 0, 1, grid->columnCount());
}

void fill(QMessageBox& widget, const MessageBox& box)
{
    widget.setObjectName(QStringLiteral("MessageBox"));
    widget.setWindowTitle(box.title);
    widget.setAccessibleName(box.title);
    widget.setAccessibleDescription(box.text);
    widget.setTextFormat(Qt::PlainText); // before the text: a path may hold "<"
    widget.setText(box.text);
    widget.setIcon(iconOf(box.kind));
    widget.setStandardButtons(buttonsOf(box.buttons));
    const bool asksYes = box.buttons == BoxButtons::YesNo || box.buttons == BoxButtons::YesNoCancel;
    widget.setDefaultButton(asksYes ? QMessageBox::Yes : QMessageBox::Ok);
    widget.setEscapeButton(closingButton(box.buttons));
    keepLines(widget);
}

/// How many letters of an answer are seen at once.
constexpr int answerLetters = 40;

/// Fills `widget` with what `question` says; gives the line that is typed in.
QLineEdit* fill(QDialog& widget, const TextQuestion& question)
{
    widget.setObjectName(QStringLiteral("TextQuestion"));
    widget.setWindowTitle(question.title);
    widget.setAccessibleName(question.title);
    auto* const text = new QLabel(&widget);
    text->setObjectName(QStringLiteral("Text"));
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setText(question.text);
    auto* const line = new QLineEdit(question.answer, &widget);
    line->setObjectName(QStringLiteral("Answer"));
    line->setAccessibleName(question.text);
    line->setMinimumWidth(line->fontMetrics().averageCharWidth() * answerLetters);
    line->selectAll();
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &widget);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &widget, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &widget, &QDialog::reject);
    auto* const rows = new QVBoxLayout(&widget);
    rows->addWidget(text);
    rows->addWidget(line);
    rows->addWidget(buttons);
    return line;
}

bool belongsTo(const QWidget* window, const QWidget* owner)
{
    for (const QWidget* each = window; owner && each; each = each->parentWidget()) {
        if (each == owner->window())
            return true;
    }
    return false;
}

/// The window that a box of `owner` has to lie over: the active one of those that belong to it, else one that
/// fills the screen, else itself.
QWidget* frontOf(QWidget* owner)
{
    if (QWidget* const active = QApplication::activeWindow(); belongsTo(active, owner))
        return active;
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto full = std::find_if(windows.begin(), windows.end(), [owner](const QWidget* window) {
        return window->isVisible() && window->isFullScreen() && belongsTo(window, owner);
    });
    return full == windows.end() ? owner : *full;
}

} // namespace

BoxAnswer showMessage(QWidget* owner, const MessageBox& box)
{
    if (const auto answer = Answerers<MessageBox, BoxAnswer>::newest())
        return answer(box);
    // On the heap and watched: the owner may be destroyed, and the box with it, while the box waits.
    const QPointer<QMessageBox> widget = new QMessageBox(frontOf(owner));
    fill(*widget, box);
    const int button = widget->exec();
    if (widget.isNull())
        return answerOf(closingButton(box.buttons));
    delete widget.data();
    return answerOf(button);
}

QString askText(QWidget* owner, const TextQuestion& question)
{
    if (const auto answer = Answerers<TextQuestion, QString>::newest())
        return answer(question);
    // Watched for the same reason.
    const QPointer<QDialog> widget = new QDialog(owner);
    const QLineEdit* const line = fill(*widget, question);
    const bool accepted = widget->exec() == QDialog::Accepted;
    if (widget.isNull())
        return {};
    QString text = accepted ? line->text() : QString();
    delete widget.data();
    return text;
}

std::optional<QColor> askColor(QWidget* owner, const ColorQuestion& question)
{
    if (const auto answer = Answerers<ColorQuestion, std::optional<QColor>>::newest())
        return answer(question);
    const QPointer<QColorDialog> widget = new QColorDialog(question.start, frontOf(owner)); // watched, too
    widget->setObjectName(QStringLiteral("ColorQuestion"));
    widget->setWindowTitle(question.title);
    widget->setAccessibleName(question.title);
    const bool accepted = widget->exec() == QDialog::Accepted;
    if (widget.isNull())
        return {};
    const QColor color = widget->selectedColor();
    delete widget.data();
    return accepted ? std::optional(color) : std::nullopt;
}

} // namespace quorvia::platform
