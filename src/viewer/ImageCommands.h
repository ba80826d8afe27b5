// The image operations in the main window: owns what edits, saves, pastes, sends, deletes, renames and
// converts images, and connects it with the window.
#pragma once

#include "collections/BatchActions.h"
#include "commands/FileOperations.h"
#include "commands/ImageEdits.h"
#include "commands/ImageMail.h"
#include "commands/ImageSaver.h"

#include <QString>

#include <memory>

namespace quorvia::engine {
class ImageLoader;
}

namespace quorvia::output {
class frmImageConvert;
}

namespace quorvia::viewer {

class frmImageView;

class ImageCommands
{
  public:
    /// Works on `window`, which it is a part of; nothing of it is touched yet. `loader` serves the dialogs.
    ImageCommands(frmImageView& window, std::shared_ptr<engine::ImageLoader> loader);

    commands::ImageSaver& saver() { return m_saver; }
    commands::ImageEdits& edits() { return m_edits; }
    commands::FileOperations& files() { return m_files; }
    commands::ImageMail& mail() { return m_mail; }
    /// Shows what the clipboard holds, and pastes it when the user wants it.
    void paste();
    /// Nothing is converted any more: the window is about to close.
    void stopConversion();
    /// What the actions on all selected files of the list ask of the window.
    collections::BatchServices batchServices();

    /// The window's caption tells of no edit any more.
    void restoreCaption();

  private:
    commands::ImageSaver::Sinks saverSinks();
    commands::ImageEdits::Sinks editSinks();
    commands::FileOperations::Sinks fileSinks();
    commands::ImageMail::Sinks mailSinks();
    output::frmImageConvert* converter();
    void setCaption(const QString& caption);
    void closeImage();
    void openNext();

    frmImageView& m_window;
    std::shared_ptr<engine::ImageLoader> m_loader;
    output::frmImageConvert* m_converter = nullptr; ///< made for the first conversion
    QString m_caption;                              ///< the one that tells of an edit, as the window has it
    commands::ImageSaver m_saver;
    commands::ImageEdits m_edits;
    commands::FileOperations m_files;
    commands::ImageMail m_mail;
};

} // namespace quorvia::viewer
