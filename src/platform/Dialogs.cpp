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
    const QPointer<QFileDialog> dialog = new QFileDialog(owner, browser.title, browser.start);
    dialog->setObjectName(QStringLiteral("FolderBrowser"));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    const bool chosen = dialog->exec() == QDialog::Accepted && dialog;
    QString folder = chosen ? dialog->selectedFiles().value(0) : QString();
    delete dialog.data();
    return folder;
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

} // namespace quorvia::platform
