#include "platform/Dialogs.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>

#include <utility>
#include <vector>

namespace quorvia::platform {

namespace {

/// Those who answer instead of the screen, the newest last.
template <class Asked, class Answer>
class Answerers
{
  public:
    using Answerer = std::function<Answer(const Asked&)>;

    static void add(const void* owner, Answerer answer) { stack().emplace_back(owner, std::move(answer)); }
    static void remove(const void* owner)
    {
        std::erase_if(stack(), [owner](const auto& entry) { return entry.first == owner; });
    }
    /// Empty when there is none.
    static Answerer newest() { return stack().empty() ? Answerer() : stack().back().second; }

  private:
    static std::vector<std::pair<const void*, Answerer>>& stack()
    {
        static std::vector<std::pair<const void*, Answerer>> all;
        return all;
    }
};

using BoxAnswerers = Answerers<MessageBox, BoxAnswer>;
using BrowserAnswerers = Answerers<FolderBrowser, QString>;
using ChooserAnswerers = Answerers<FileChooser, QString>;

/// The rows of FileChooser as the toolkit writes them.
QStringList nameFilters(const QString& filters)
{
    QStringList rows;
    const QStringList fields = filters.split(QLatin1Char('|'));
    for (qsizetype i = 0; i + 1 < fields.size(); i += 2)
        rows.append(fields.at(i) + QStringLiteral(" (") +
                    QString(fields.at(i + 1)).replace(QLatin1Char(';'), QLatin1Char(' ')) + QLatin1Char(')'));
    return rows;
}

/// Waits for the choice in `dialog`, takes it and ends the dialog, which may be destroyed meanwhile. Empty
/// when there was no choice.
QString chosenIn(QFileDialog* dialog)
{
    const QPointer<QFileDialog> watched = dialog;
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (watched.isNull())
        return {};
    QString path = accepted ? dialog->selectedFiles().value(0) : QString();
    delete dialog;
    return path;
}

QMessageBox::Icon iconOf(BoxKind kind)
{
    switch (kind) {
    case BoxKind::Information:
        return QMessageBox::Information;
    case BoxKind::Question:
        return QMessageBox::Question;
    case BoxKind::Plain:
        break;
    }
    return QMessageBox::NoIcon;
}

/// The button that Escape and the window's close button stand for.
QMessageBox::StandardButton closingButton(BoxButtons buttons)
{
    switch (buttons) {
    case BoxButtons::YesNo:
        return QMessageBox::No;
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

void fill(QMessageBox& widget, const MessageBox& box)
{
    widget.setObjectName(QStringLiteral("MessageBox"));
    widget.setWindowTitle(box.title);
    widget.setAccessibleName(box.title);
    widget.setAccessibleDescription(box.text);
    widget.setTextFormat(Qt::PlainText); // before the text: a path may hold "<"
    widget.setText(box.text);
    widget.setIcon(iconOf(box.kind));
    switch (box.buttons) {
    case BoxButtons::Ok:
        widget.setStandardButtons(QMessageBox::Ok);
        break;
    case BoxButtons::YesNo:
        widget.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    case BoxButtons::YesNoCancel:
        widget.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    }
    widget.setDefaultButton(box.buttons == BoxButtons::Ok ? QMessageBox::Ok : QMessageBox::Yes);
    widget.setEscapeButton(closingButton(box.buttons));
}

} // namespace

BoxAnswer showMessage(QWidget* owner, const MessageBox& box)
{
    if (const auto answer = BoxAnswerers::newest()) // a copy: it may end its own life
        return answer(box);
    // On the heap and watched: the owner may be destroyed, and the box with it, while the box waits.
    const QPointer<QMessageBox> widget = new QMessageBox(owner);
    fill(*widget, box);
    const int button = widget->exec();
    if (widget.isNull())
        return answerOf(closingButton(box.buttons));
    delete widget.data();
    return answerOf(button);
}

QString browseForFolder(QWidget* owner, const FolderBrowser& browser)
{
    if (const auto answer = BrowserAnswerers::newest())
        return answer(browser);
    auto* const dialog = new QFileDialog(owner, browser.title, browser.start);
    dialog->setObjectName(QStringLiteral("FolderBrowser"));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    return chosenIn(dialog);
}

QString chooseFile(QWidget* owner, const FileChooser& chooser)
{
    if (const auto answer = ChooserAnswerers::newest())
        return answer(chooser);
    auto* const dialog = new QFileDialog(owner, chooser.title, chooser.start);
    dialog->setObjectName(QStringLiteral("FileChooser"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters(nameFilters(chooser.filters));
    return chosenIn(dialog);
}

MessageBoxAnswerer::MessageBoxAnswerer(std::function<BoxAnswer(const MessageBox&)> answer)
{
    BoxAnswerers::add(this, std::move(answer));
}

MessageBoxAnswerer::~MessageBoxAnswerer()
{
    BoxAnswerers::remove(this);
}

FolderBrowserAnswerer::FolderBrowserAnswerer(std::function<QString(const FolderBrowser&)> answer)
{
    BrowserAnswerers::add(this, std::move(answer));
}

FolderBrowserAnswerer::~FolderBrowserAnswerer()
{
    BrowserAnswerers::remove(this);
}

FileChooserAnswerer::FileChooserAnswerer(std::function<QString(const FileChooser&)> answer)
{
    ChooserAnswerers::add(this, std::move(answer));
}

FileChooserAnswerer::~FileChooserAnswerer()
{
    ChooserAnswerers::remove(this);
}

} // namespace quorvia::platform
