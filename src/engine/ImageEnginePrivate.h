// The inside of the imaging control: what it holds, and how that comes onto the screen.
#pragma once

#include "engine/DisplayCache.h"
#include "engine/ImageEngine.h"
#include "engine/ImagePlacement.h"

#include <functional>
#include <optional>

class QPainter;

namespace quorvia::engine {

struct RubberBand
{
    QPoint from;
    QPoint to;
    QColor color;
    bool keep = true;
};

constexpr int panPointer = 25;

/// What the control holds: a load, or an image of its own (given, or changed by a transform).
struct HeldContent
{
    quint64 number = 0; ///< tells one content from the next
    QString name;
    std::shared_ptr<ImageLoad> load;
    QImage image;       ///< null while `load` has the pixels
    QByteArray profile; ///< of the colours in `image`; empty for sRGB
    QSize size;
    int bitsPerPixel = 0;
    int colors = -1;        ///< not counted yet
    bool complete = true;   ///< `image` has all that its file should have held
    bool unproven = false;  ///< a load whose pixels nobody has waited for
    bool isTelling = false; ///< FirstPainted is on its way
    bool wasTold = false;   ///< FirstPainted was sent
    bool isUnseen = false;  ///< acquired, and not to be painted yet
    std::optional<RubberBand> band;

    bool isEmpty() const { return size.isEmpty(); }
};

/// The depth of an image in the formats that codecs give.
int bitsOf(const QImage& image);

class ImageEngine::Private
{
  public:
    Private(ImageEngine* engine, std::shared_ptr<ImageLoader> imageLoader)
        : q(engine), loader(std::move(imageLoader))
    {
    }

    // --- what is held
    void settle();
    void hold(HeldContent next);
    void letGo(HeldContent& dropped);
    QImage fullImage();
    /// False when the file ended early or broke, and the rest is blank. Waits for the full decode.
    bool isComplete();
    QByteArray profile();
    QImage fullImageInSrgb();
    bool allowed(QSize size);
    bool unlessMemoryEnds(const std::function<void()>& step);
    void transform(const std::function<QImage(const QImage&)>& change);

    // --- what is shown
    double ratio() const { return q->devicePixelRatioF(); }
    QSize deviceSize() const { return (QSizeF(q->size()) * ratio()).toSize(); }
    QRect placed() const { return placedImage(content.size, deviceSize(), display); }
    QImage sourceFor(QSize target);
    bool isHeldBack() const { return !paintEnabled || covered; }
    void setPainting(bool enabled, bool isCovered);
    void repaintSoon();
    void updateBand();
    void showHand(Qt::MouseButtons down);
    void paintHeldBack(QPainter& painter);
    void paintContent(QPainter& painter, QRect exposed, const QRect& target);
    void paintImage(QPainter& painter, QRect exposed, const QRect& target);
    void paintBand(QPainter& painter, const QRect& target);
    void notePainted();

    ImageEngine* const q;
    const std::shared_ptr<ImageLoader> loader;
    HeldContent content;
    std::optional<HeldContent> before; ///< what stands again when an unproven content fails
    quint64 lastNumber = 0;
    int page = 1;
    QSize loadBox;
    QString lastError;

    DisplaySettings display;
    QColor backColor = Qt::black;
    int pointer = 0;
    bool paintEnabled = true;
    bool covered = false;
    QPoint heldBackAt; ///< where the control was in its window when painting was held back
    DisplayCache cache;

    QString saveFileName;
    int saveFileType = 0;
    bool saveIsScratch = false;
    EncodeOptions encodeOptions;

    AcquisitionSource acquisition;
    bool autoAcquireView = false;
};

} // namespace quorvia::engine
