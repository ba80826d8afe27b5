// What is done with all selected entries of the list at once: convert, send by mail, delete. No window is
// needed. Dear is what each file costs: a conversion, a move to the trash. One of these goes on at a time.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <utility>
#include <vector>

namespace quorvia::collections {

class PictureList;

/// What the actions ask of the rest of the program. Each outlives the list.
struct BatchServices
{
    /// Converts the file `source` into `target`, after a question unless `yesToAll`, and gives the answer:
    /// "Yes", "Yes to all", "Cancel", or any other text for no. Empty: nothing can be converted.
    std::function<QString(const QString& source, const QString& target, bool yesToAll)> loadConversion = {};
    /// A run of conversions begins, or has ended.
    std::function<void()> beginBatch = [] {};
    std::function<void()> endBatch = [] {};
    /// Told before a conversion without a question: the file that is converted after it; empty for none.
    std::function<void(const QString& source)> expectNext = [](const QString&) {};
    /// Shows or hides the picture of the main window.
    std::function<void(bool visible)> setUpdate = [](bool) {};
    /// The name of the image on show; empty when none is, or it has no file.
    std::function<QString()> currentFile = [] { return QString(); };
    /// Takes the image on show out of the main window.
    std::function<void()> releaseImage = [] {};
    /// Shows the image of a file.
    std::function<void(const QString& path)> openFile = [](const QString&) {};
    /// The path of the tool that sends mail; empty when there is none.
    std::function<QString()> mailTool = [] { return QString(); };
    /// Starts a program; false when that failed.
    std::function<bool(const QString& program, const QStringList& arguments)> startTool =
        [](const QString&, const QStringList&) { return false; };
};

/// An entry of the list, 0-based, and the file that stood there.
struct BatchEntry
{
    int row = 0;
    QString file;
};

/// The path of `file` converted to the format of `ext`: each occurrence of its extension, in the folders'
/// names too, becomes `ext` in lower case. A name without extension stays.
QString convertedName(const QString& file, const QString& ext);

class BatchActions : public QObject
{
    Q_OBJECT

  public:
    /// With the selected entries of `list`, which outlives this.
    explicit BatchActions(PictureList* list, QObject* parent = nullptr);

    /// Goes by `services` from now on.
    void setServices(BatchServices services) { m_services = std::move(services); }
    /// Whether one of the actions goes on.
    bool isBusy() const { return m_isBusy; }
    /// Whether there is a tool that sends mail. Costs a look at the store.
    bool canEmail() const { return !m_services.mailTool().isEmpty(); }

    /// Runs `emailimages` or `deleteselectedfiles`, whatever its case; false when it is none of these.
    bool RunTool(const QString& sCommand);
    /// Converts the selected files to the format of `sExt`, as in "jpg", each by itself: the files stay, and
    /// the playlist's entries become the new ones. The image on show gives way meanwhile. Nothing happens
    /// while a conversion goes on, or without a selection.
    void ConvertImage(const QString& sExt);
    /// Hands the selected files to the tool that sends mail. Says so when there is no such tool. The log has
    /// which files it could not be given.
    void EmailImages();
    /// Moves the selected files to the trash; the log has those that stayed. The entry at the place of the
    /// current one is then picked.
    void DeleteSelectedFiles();

  private:
    std::vector<BatchEntry> selected() const;
    QStringList selectedFiles() const;
    bool canBegin() const;
    void pickAgain(int position);

    PictureList* m_list;
    BatchServices m_services;
    bool m_isBusy = false; ///< what goes on lets events run, which may ask for more
};

} // namespace quorvia::collections
