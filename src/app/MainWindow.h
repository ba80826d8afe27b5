// What the lower rooms may ask of the main window.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::app {

class MainWindow
{
  public:
    virtual ~MainWindow() = default;

    /// Runs the command of that name; an unknown name does nothing.
    virtual void RunTool(const QString& name) = 0;
    /// Makes the file at `path` the current image, or opens it as a playlist.
    virtual void OpenX(const QString& path) = 0;
    /// Shows `directory` in the list, and its first image when that is wanted.
    virtual void OpenDirX(const QString& directory) = 0;
    /// The directories that were opened last, the latest first.
    virtual QStringList recentDirectories() const = 0;
    /// Hands over a key as virtual key code and modifier mask (1 Shift, 2 Ctrl, 4 Alt).
    virtual void GlobalKeyPress(int keyCode, int shift) = 0;
    /// The name of the current image; empty when none is open.
    virtual QString currentFile() const = 0;
};

} // namespace quorvia::app
