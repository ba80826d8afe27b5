// The imaging control: one image holder with decoding, display, transforms and saving behind operations that
// look synchronous. Creating one is cheap; a load returns when the header is read, and whatever needs pixels
// waits for just those it needs.
#pragma once

#include "engine/Codec.h"
#include "engine/ImageLoader.h"

#include <QColor>
#include <QPixmap>
#include <QRect>
#include <QWidget>

#include <functional>
#include <memory>

namespace quorvia::engine {

/// Where pictures come from that no file holds yet. A function that is not set does nothing.
struct AcquisitionSource
{
    std::function<void()> select;    ///< lets the user choose a device
    std::function<QImage()> acquire; ///< takes one picture from it; null when none was taken
};

class ImageEngine : public QWidget
{
    Q_OBJECT

  public:
    explicit ImageEngine(std::shared_ptr<ImageLoader> loader, QWidget* parent = nullptr);
    ~ImageEngine() override;

    // --- source and pages
    /// The name of the image held; empty when there is none. Waits until a load under way is known to have
    /// pixels.
    QString FileName() const;
    /// Loads and shows the present page of `path`; the same name again reloads. "" clears the control. A
    /// failed load leaves image and name as they were; LastError() tells why. Waits for the header only; when
    /// the pixels turn out to be unreadable, the control goes back to what it held before. A selection frame
    /// goes with the image that it was drawn on.
    void SetFileName(const QString& path);
    /// The page that the next load takes, from 1.
    int PageNumber() const;
    void SetPageNumber(int page);
    /// Pages of `path`, without loading it; 0 when it cannot be read.
    int PageCount(const QString& path) const;
    /// The held image with every pixel, in sRGB; null when there is none or the full decode fails. Waits for
    /// it. Free for an image in sRGB, else it costs a conversion.
    QImage Picture() const;
    /// False when the file of the held image ended early or broke, so that a part of the image is blank; true
    /// when nothing is held. Waits for the full decode.
    bool IsComplete() const;
    /// Holds `picture`; FileName() becomes empty. A null image clears the control. A colour space that the
    /// image bears is taken as its profile; without one it is sRGB.
    void SetPicture(const QImage& picture);
    /// The held pixels when a transform has changed them since they came from their file, as they are, for
    /// RestoreEdit(); null when none has. Free.
    QImage EditedPicture() const;
    /// Puts what EditedPicture() gave back over the held image, which must be of the same file and page.
    void RestoreEdit(const QImage& edited);
    /// Why the last load or save failed, one line for the log; empty after a success.
    QString LastError() const;

    // --- facts, valid after a load; 0 when nothing is held
    /// Size at 100% in twips: one image pixel is one device pixel of the screen.
    int ImageWidthTwips() const;
    int ImageHeightTwips() const;
    int ImagePixelWidth() const;
    int ImagePixelHeight() const;
    /// Colour depth of the file; of the image itself for one that was given, or that a transform brought to
    /// another depth.
    int BitsPerPixel() const;
    /// Exact number of colours in the held pixels, as the file has them; counted when first read, kept until
    /// the image changes. Below 2 when none is held.
    int UniqueColors() const;

    // --- display
    /// Present magnification, 1.0 is 100%.
    double ZoomFactor() const;
    /// Sets the magnification; the control itself does not move. Values that are not above 0 are ignored.
    void Zoom(double factor);
    /// 4: the image fills the control as ScaleOption tells; 0: at its zoom, from the control's top left
    /// corner.
    void SetScaleMode(int mode);
    int ScaleMode() const;
    /// With ScaleMode 4: 0 keeps the proportions, centred; any other value fills both axes.
    void SetScaleOption(int option);
    /// False holds back repainting while a load is prepared; what is on the screen stays, at its place in the
    /// window even when the control is moved. True releases it.
    void SetPaintEnabled(bool enabled);
    bool PaintEnabled() const;
    /// Repaints; see SetAutoAcquireView() as well.
    void Refresh();
    /// Colour around the image and behind transparent pixels.
    void SetBackColor(const QColor& color);
    QColor BackColor() const;
    /// 0 default, 25 pan (an open hand, closed while a button is down), 30 selection. Any other value is kept
    /// and shows the default.
    void SetMousePointer(int pointer);
    int MousePointer() const;
    /// Draws the selection frame between two corners in image pixels, inclusive. `keep` true leaves the frame
    /// until ClearRubberBand; false draws it once, gone at the next repaint.
    void DrawRubberBand(int left, int top, int right, int bottom, const QColor& color, bool keep);
    void ClearRubberBand();

    // --- the picture on another surface, as a window that fills the screen
    /// The pixels of `part` of the held picture when it lies in `target`, both in device pixels of that
    /// surface, with the transparent ones laid over `back`. Made from the cheapest picture that is enough, as
    /// the control's own. RGB32; null when nothing is held, `part` is empty or reaches out of `target`, or no
    /// memory is left.
    QImage PaintedPart(const QRect& target, const QRect& part, const QColor& back);
    /// What PaintedPart() gave last stands on the screen: the picture counts as painted on the control.
    void NotePainted();
    /// True: the window with that surface hides the control, which paints nothing anew until false.
    void SetCovered(bool covered);

    // --- transforms of the held image, in place; nothing happens when none is held
    //     or when the result would be larger than Limits allow (LastError() tells)
    /// Turns by `degrees`, positive counter-clockwise; multiples of 90 are exact, others give a larger image
    /// filled with BackColor.
    void Rotate(double degrees);
    /// Scales to `width` x `height` pixels; values below 1 are ignored.
    void Resize(int width, int height);
    /// The same, for the dialog that asks for a size.
    void Resample(int width, int height);
    /// Draws an edge `width` pixels wide inside the image; style 1 raised, any other sunken; intensity 0 to
    /// 25.
    void Bevel(int style, int width, int intensity);
    /// Puts the held image on the clipboard, in sRGB.
    void CopyToClipboard();

    // --- saving
    void SetSaveFileName(const QString& path);
    /// 8 makes SaveFile() write JPEG whatever the target is named; with any other value its extension
    /// decides.
    void SetSaveFileType(int type);
    /// Writes the held image to SaveFileName in the format of its extension; the old file stays whole until
    /// the new one stands. A colour profile goes with it where the format can carry it, else the colours are
    /// written in sRGB. True when written; LastError() tells why not.
    bool SaveFile();
    /// True: SaveFile() writes a scratch file, which is soon read again and then removed. It does not wait
    /// for the disk, and what stood there is gone at once. False at first.
    void SetSaveIsScratch(bool scratch);
    void SetJPEGLuminance(int strength);
    void SetJPEGChrominance(int strength);
    void SetJPEGSubSampling(int mode);
    void SetJPEGGrayscale(bool gray);

    // --- scanning
    /// From now on pictures are acquired from `source`.
    void SetAcquisitionSource(AcquisitionSource source);
    /// Lets the user choose the device of the next acquisition, and returns when that is done.
    void TwainSelectSource();
    /// Acquires one image from the device that was chosen; FileName() becomes empty. When none came the
    /// control is cleared, so that UniqueColors() is below 2. Events may run while it waits.
    void TwainAcquire();
    /// An acquired image is held without being painted; with true the next Refresh() shows it, and those that
    /// come later are shown at once.
    void SetAutoAcquireView(bool shown);

    /// The size in device pixels that the first picture of the next load must cover; empty asks for every
    /// pixel.
    void SetLoadBox(QSize box);

  Q_SIGNALS:
    /// The load of page PageNumber() of `path` has begun; what stands before it is still what FileName() and
    /// Picture() give.
    void LoadBegun(const QString& path);
    /// The picture has been painted, on the control or in its place, for the first time since it was loaded
    /// or given. Comes from the event loop, not from inside the paint; not for a picture that is already
    /// replaced.
    void FirstPainted();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace quorvia::engine
