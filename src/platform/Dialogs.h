// The one seam through which message boxes and file dialogs reach the screen, so that a test can answer the
// next one.
#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QWidget;

namespace quorvia::platform {

enum class BoxKind { Plain, Information, Question, Critical };
enum class BoxButtons { Ok, OkCancel, YesNo, YesNoCancel };
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
    int shownRow = 0;     ///< of the filters at first, 0-based
};

/// Shows `chooser` modally over `owner` (may be null) and waits. The path of the file that was chosen; empty
/// when none was.
QString chooseFile(QWidget* owner, const FileChooser& chooser);

/// Shows `chooser` modally over `owner` (may be null) and waits. The paths of the files that were chosen, one
/// or several; empty when none was.
QStringList chooseFiles(QWidget* owner, const FileChooser& chooser);

/// A dialog in which a file is named that is to be written.
struct SaveChooser
{
    QString title = {};
    QString filters = {};   ///< as in FileChooser
    QString start = {};     ///< as in FolderBrowser
    QString extension = {}; ///< without point; given to a name that has none; empty: names stay as they are
    QString name = {};      ///< of a file; stands in the line at first
    bool asksBeforeReplacing = false; ///< a file that is there already is named only after a question
};

/// Shows `chooser` modally over `owner` (may be null) and waits. The path of the file that is to be written;
/// empty when none was named.
QString chooseSaveFile(QWidget* owner, const SaveChooser& chooser);

/// A box with a line to type in.
struct TextQuestion
{
    QString title = {};
    QString text = {};   ///< what is asked for; shown letter for letter
    QString answer = {}; ///< stands in the line at first, selected
};

/// Shows `question` modally over `owner` (may be null) and waits. What stood in the line when it was
/// accepted; empty when it was not.
QString askText(QWidget* owner, const TextQuestion& question);

/// A font with the colour of its text.
struct ColoredFont
{
    QFont font = {};
    QColor color = Qt::black;
    bool operator==(const ColoredFont&) const = default;
};

/// A dialog in which a font is chosen.
struct FontQuestion
{
    QString title = {};
    ColoredFont start = {}; ///< what it shows first
};

/// Shows `question` modally over `owner` (may be null) and waits. Nothing when it was not accepted.
std::optional<ColoredFont> askFont(QWidget* owner, const FontQuestion& question);

/// A dialog in which a colour is chosen.
struct ColorQuestion
{
    QString title = {};
    QColor start = Qt::black; ///< what it shows first
};

/// Shows `question` modally over `owner` (may be null) and waits. Nothing when it was not accepted.
std::optional<QColor> askColor(QWidget* owner, const ColorQuestion& question);

/// Takes the place of the screen for one kind of dialog while it lives; for tests. The newest one is asked.
/// The kinds are those below.
template <class Asked, class Answer>
class Answerer
{
  public:
    explicit Answerer(std::function<Answer(const Asked&)> answer);
    ~Answerer();
    Answerer(const Answerer&) = delete;
    Answerer& operator=(const Answerer&) = delete;
};

using MessageBoxAnswerer = Answerer<MessageBox, BoxAnswer>;
using FolderBrowserAnswerer = Answerer<FolderBrowser, QString>;
using FileChooserAnswerer = Answerer<FileChooser, QString>;
using FilesChooserAnswerer = Answerer<FileChooser, QStringList>; ///< for chooseFiles
using SaveChooserAnswerer = Answerer<SaveChooser, QString>;
using TextQuestionAnswerer = Answerer<TextQuestion, QString>;
using FontAnswerer = Answerer<FontQuestion, std::optional<ColoredFont>>;
using ColorAnswerer = Answerer<ColorQuestion, std::optional<QColor>>;

} // namespace quorvia::platform
