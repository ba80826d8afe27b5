// The commands about the open playlist that need no panel: what adds to it, takes out of it, opens and saves
// it. Adding many files shows how far it is.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace quorvia::collections {

class PictureList;

class PlaylistCommands
{
  public:
    /// Of `list` and its playlist, which outlive this.
    explicit PlaylistCommands(PictureList* list) : m_list(list) {}

    /// Runs a command, whatever its case; false when it is none of these.
    bool RunTool(const QString& sCommand);
    /// Adds dropped files that are images and all images of dropped folders, when the playlist's face is in
    /// front. Nothing is added when the user breaks off.
    void drop(QStringList paths);
    /// Adds the images of `sDir` and of the folders in it: those of a folder come first. Nothing is added
    /// when the user breaks off.
    void EnqueueAll(const QString& sDir);

  private:
    void open();
    void save();
    void clear();
    void clearSelected();
    void addFiles();
    void enqueueFolder();
    void enqueueFolders();
    void moveAll();
    void moveSelected();

    bool list(const QString& sDir, bool recurse, QStringList& files) const;
    void add(const QStringList& files);
    void addFolder(const QString& sDir, bool recurse);
    QWidget* owner() const;
    void move(const QStringList& files);
    QString startFolder() const;
    QString chosenFolder() const;

    PictureList* m_list;
};

} // namespace quorvia::collections
