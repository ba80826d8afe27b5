// How a named file or folder becomes what is on show: one sequence for every way in.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace quorvia::controls {
class gnTab;
}
namespace quorvia::engine {
class ImageEngine;
}
namespace quorvia::collections {
class PictureList;
class PlaylistSource;
} // namespace quorvia::collections

namespace quorvia::viewer {

class PageNavigator;
class Viewport;

class Opening : public QObject
{
    Q_OBJECT

  public:
    struct Parts
    {
        QWidget* owner; ///< of message boxes
        engine::ImageEngine* ix1;
        Viewport* viewport;
        collections::PictureList* list;
        std::function<PageNavigator*()> pTiff; ///< made at the first call
        controls::gnTab* gTab;
        std::function<void(const QString&)> runTool;
        std::function<bool()> showFull;     ///< hands the image to the full-screen window; false: none shows
        std::function<void()> updateStatus; ///< what describes the current image
        std::function<void()> showInFilmstrip; ///< the image that was opened
        std::function<void()> updateToolbar;   ///< the state of all tools
        QString commandLine;                   ///< the whole line that the program was started with
    };

    explicit Opening(Parts parts, QObject* parent = nullptr);

    /// Playlists open through `playlists` from now on; null: there are none.
    void setPlaylists(collections::PlaylistSource* playlists) { m_playlists = playlists; }

    /// Opens an image or a playlist. A path that names no file shows the message for it.
    void OpenX(const QString& path);
    /// Opens `path` when it is a playlist; true when it was one and has been handled.
    bool OpenFileList(const QString& path);
    /// Shows `directory` in the list, whose folders then come to the front, when it exists; `load` 1 then
    /// opens its first image.
    void OpenDirX(const QString& directory, int load);
    /// Shows or hides the page navigator for the current image.
    void CheckTiff();

    /// The recent directories.
    const QStringList& recent() const { return m_recent; }
    void setRecent(const QStringList& recent) { m_recent = recent; }

  Q_SIGNALS:
    /// An image has been opened.
    void ImageFileChanged();

  private:
    void openMissing(const QString& path);
    void leaveOtherTabs();
    void rememberDirectory();
    void turnPage(int step);

    Parts m_parts;
    collections::PlaylistSource* m_playlists = nullptr;
    PageNavigator* m_navigator = nullptr;
    QStringList m_recent;
};

} // namespace quorvia::viewer
