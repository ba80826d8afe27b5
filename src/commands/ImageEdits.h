// The light edits of the current image: rotate, which is written to its file at once, and bevel and resizes,
// which stay in memory until the image is saved or another one comes.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include <functional>
#include <span>

namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::commands {

/// A command that forces the image to a size, whatever its proportions.
struct FixedSize
{
    const char* command;
    int width; ///< pixels, as is the height
    int height;
};

/// The ten of them.
std::span<const FixedSize> fixedSizes();

/// The caption of the main window after an edit of the image `name` (without directory), which has `pixels`
/// and so many `colors` now.
QString editedCaption(const QString& name, QSize pixels, int colors);

class ImageEdits
{
  public:
    /// All of the functions are called.
    struct Sinks
    {
        engine::ImageEngine* ix1 = nullptr;
        std::function<void()> redraw; ///< places and paints the image in pContain
        std::function<void()> imageFileChanged;
        std::function<void()> updateStatus; ///< what describes the current image
        std::function<void()> updateToolbar;
        std::function<void(const QString& caption)> setCaption;
        std::function<void(const QString& path, bool force)> saveImage; ///< see ImageSaver
        std::function<void(const QString& name)> runTool;
        std::function<void()> askForSize; ///< shows the dialog that resamples the image
    };

    explicit ImageEdits(Sinks sinks) : m_sinks(std::move(sinks)) {}

    /// Turns the image by `degrees`, negative is clockwise, writes it to its file and reads it from there. An
    /// image whose type is only read, or that has no file, is turned in memory. Nothing happens without an
    /// image.
    void rotate(double degrees);
    /// Draws a raised edge 10 pixels wide.
    void bevel();
    /// Forces the image to `size`.
    void resize(const FixedSize& size);
    /// Asks for a size in a dialog.
    void customResize();
    /// Puts the image on the clipboard.
    void copy();
    /// Takes over `picture` as a new image, which becomes a file of the program's own. Nothing happens for a
    /// null one.
    void PasteImage(const QImage& picture);
    /// The window's caption says what the image is after an edit. Counts its colours, which is dear. Nothing
    /// happens without an image.
    void EnableEditing();

  private:
    bool hasImage() const;
    bool transform(const std::function<void()>& step) const;
    void attempt(const std::function<void()>& step) const;
    void showEdited();

    Sinks m_sinks;
};

} // namespace quorvia::commands
