// What is done with the files of images: delete and rename. A deleted file lies in the trash; what cannot go
// there stays. Every failure leaves a line in the log.
#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace quorvia::commands {

/// True when another name says another type: the last three characters differ, compared exactly.
bool changesExtension(const QString& before, const QString& after);

class FileOperations
{
  public:
    /// Paths are native and full. All of the functions are called.
    struct Sinks
    {
        QWidget* owner = nullptr; ///< of the dialogs; may be null
        std::function<QString()> currentFile;
        std::function<QString()> fileOfMenu; ///< the one that the filmstrip's menu is about
        std::function<void()> closeImage;
        std::function<void()> refresh; ///< image and list
        std::function<void()> next;    ///< to the next image, in the list as it is now
        std::function<void(const QString& path)> openX;
        std::function<void(const QString& before, const QString& after)> renamed; ///< for the list
        std::function<void(const QString& path)> refreshStripEntry;
    };

    explicit FileOperations(Sinks sinks);

    /// Moves the current file to the trash (`miDelete`) and opens the next one. Nothing happens without one.
    void deleteCurrent();
    /// The same for the file of the filmstrip's menu (`miThumbDelete`), which the current one stays unless it
    /// is this.
    void deleteOfStrip();
    /// Asks for another name for the current file (`miRename`) and opens it under that. Nothing happens
    /// without one.
    void renameCurrent();

  private:
    void refreshAndGoOn();
    void renameTo(const QString& path, const QString& name);

    Sinks m_sinks;
};

} // namespace quorvia::commands
