// The one seam through which message boxes and file dialogs reach the screen, so that a test can answer the
// next one.
#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace quorvia::platform {

enum class BoxKind { Plain, Information, Question };
enum class BoxButtons { Ok, YesNo, YesNoCancel };
enum class BoxAnswer { Ok, Yes, No, Cancel };

struct MessageBox
{
    BoxKind kind = BoxKind::Plain;
    BoxButtons buttons = BoxButtons::Ok;
    QString title = {};
    QString text = {};
};

/// Shows `box` modally over `owner` (may be null) and waits for the answer. Closing the box answers Cancel,
/// No or Ok, whichever of them it offers.
BoxAnswer showMessage(QWidget* owner, const MessageBox& box);

/// Takes the place of the screen for message boxes while it lives; for tests. The newest one is asked.
class MessageBoxAnswerer
{
  public:
    explicit MessageBoxAnswerer(std::function<BoxAnswer(const MessageBox&)> answer);
    ~MessageBoxAnswerer();
    MessageBoxAnswerer(const MessageBoxAnswerer&) = delete;
    MessageBoxAnswerer& operator=(const MessageBoxAnswerer&) = delete;
};

/// A dialog in which a folder is chosen.
struct FolderBrowser
{
    QString title = {};
    QString start = {}; ///< path of the folder that it shows first; empty: the working directory
};

/// Shows `browser` modally over `owner` (may be null) and waits. The path of the folder that was chosen;
/// empty when none was.
QString browseForFolder(QWidget* owner, const FolderBrowser& browser);

/// A dialog in which a file is chosen that is to be opened.
struct FileChooser
{
    QString title = {};
    QString filters = {}; ///< rows "caption|patterns", the patterns apart by ";", all joined by "|"
    QString start = {};   ///< as in FolderBrowser
};

/// Shows `chooser` modally over `owner` (may be null) and waits. The path of the file that was chosen; empty
/// when none was.
QString chooseFile(QWidget* owner, const FileChooser& chooser);

/// Takes the place of the screen for file choosers while it lives; for tests. The newest one is asked.
class FileChooserAnswerer
{
  public:
    explicit FileChooserAnswerer(std::function<QString(const FileChooser&)> answer);
    ~FileChooserAnswerer();
    FileChooserAnswerer(const FileChooserAnswerer&) = delete;
    FileChooserAnswerer& operator=(const FileChooserAnswerer&) = delete;
};

/// Takes the place of the screen for folder browsers while it lives; for tests. The newest one is asked.
class FolderBrowserAnswerer
{
  public:
    explicit FolderBrowserAnswerer(std::function<QString(const FolderBrowser&)> answer);
    ~FolderBrowserAnswerer();
    FolderBrowserAnswerer(const FolderBrowserAnswerer&) = delete;
    FolderBrowserAnswerer& operator=(const FolderBrowserAnswerer&) = delete;
};

} // namespace quorvia::platform
