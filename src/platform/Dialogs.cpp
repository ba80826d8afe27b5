#include "platform/Dialogs.h"

#include <QMessageBox>
#include <QPointer>

#include <utility>
#include <vector>

namespace quorvia::platform {

namespace {

using Answerer = std::function<BoxAnswer(const MessageBox&)>;

std::vector<std::pair<const MessageBoxAnswerer*, Answerer>>& answerers()
{
    static std::vector<std::pair<const MessageBoxAnswerer*, Answerer>> stack;
    return stack;
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
    if (!answerers().empty()) {
        const Answerer answer = answerers().back().second; // a copy: it may end its own life
        return answer(box);
    }
    // On the heap and watched: the owner may be destroyed, and the box with it, while the box waits.
    const QPointer<QMessageBox> widget = new QMessageBox(owner);
    fill(*widget, box);
    const int button = widget->exec();
    if (widget.isNull())
        return answerOf(closingButton(box.buttons));
    delete widget.data();
    return answerOf(button);
}

MessageBoxAnswerer::MessageBoxAnswerer(std::function<BoxAnswer(const MessageBox&)> answer)
{
    answerers().emplace_back(this, std::move(answer));
}

MessageBoxAnswerer::~MessageBoxAnswerer()
{
    std::erase_if(answerers(), [this](const auto& entry) { return entry.first == this; });
}

} // namespace quorvia::platform
