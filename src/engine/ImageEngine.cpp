#include "engine/ImageEngine.h"

#include "engine/ColorCount.h"
#include "engine/DisplayCache.h"
#include "engine/ImagePlacement.h"
#include "engine/Limits.h"
#include "engine/Resample.h"
#include "engine/Transforms.h"
#include "engine/WholeFile.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QPaintEvent>
#include <QTimer>

#include <cmath>
#include <optional>
#include <utility>

namespace quorvia::engine {

namespace {

constexpr int panPointer = 25;
constexpr int selectionPointer = 30;

/// What the control holds: a load, or an image of its own (given, or changed by a transform).
struct Content
{
    quint64 number = 0; ///< tells one content from the next
    QString name;
    std::shared_ptr<ImageLoad> load;
    QImage image; ///< null while `load` has the pixels
    QSize size;
    int bitsPerPixel = 0;
    int colors = -1;         ///< not counted yet
    bool unproven = false;   ///< a load whose pixels nobody has waited for
    bool wasPainted = false; ///< FirstPainted is sent or on its way

    bool isEmpty() const { return size.isEmpty(); }
};

struct Band
{
    QPoint from;
    QPoint to;
    QColor color;
    bool keep = true;
};

int bitsOf(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Mono:
        return 1;
    case QImage::Format_Indexed8:
    case QImage::Format_Grayscale8:
        return 8;
    case QImage::Format_RGB32:
        return 24; // the fourth byte is padding
    default:
        return 32;
    }
}

/// Makes `painter` draw in device pixels from the control's corner; returns nothing to undo. At a fractional
/// ratio the corner lies between two pixels, and the nearest one is taken.
void useDevicePixels(QPainter& painter, double ratio)
{
    painter.scale(1 / ratio, 1 / ratio);
    const QTransform& device = painter.deviceTransform();
    painter.translate(std::round(device.dx()) - device.dx(), std::round(device.dy()) - device.dy());
}

} // namespace

class ImageEngine::Private
{
  public:
    Private(ImageEngine* engine, std::shared_ptr<ImageLoader> imageLoader)
        : q(engine), loader(std::move(imageLoader))
    {
    }

    // --- what is held
    void settle();
    void hold(Content next);
    void letGo(Content& dropped);
    QImage fullImage();
    bool allowed(QSize size);
    template <class Transform>
    void transform(Transform change);

    // --- what is shown
    double ratio() const { return q->devicePixelRatioF(); }
    QSize deviceSize() const { return (QSizeF(q->size()) * ratio()).toSize(); }
    QRect placed() const { return placedImage(content.size, deviceSize(), display); }
    QImage sourceFor(QSize target);
    void repaintSoon();
    void updateBand();
    void paintHeldBack(QPainter& painter);
    void paintImage(QPainter& painter, QRect exposed, const QRect& target);
    void paintBand(QPainter& painter, const QRect& target);
    void notePainted();

    ImageEngine* const q;
    const std::shared_ptr<ImageLoader> loader;
    Content content;
    std::optional<Content> before; ///< what stands again when an unproven content fails
    quint64 lastNumber = 0;
    int page = 1;
    QSize loadBox;
    QString lastError;

    DisplaySettings display;
    QColor backColor = Qt::black;
    int pointer = 0;
    bool paintEnabled = true;
    QPoint heldBackAt; ///< where the control was in its window when painting was held back
    DisplayCache cache;
    std::optional<Band> band;

    QString saveFileName;
    EncodeOptions encodeOptions;
};

// --- what is held

/// Waits until the held load is known to have pixels; when it has none, what was held before stands again.
void ImageEngine::Private::settle()
{
    if (!content.unproven)
        return;
    content.unproven = false;
    const auto first = content.load->first();
    if (first) {
        if (before)
            letGo(*before);
    } else {
        lastError = first.error().text;
        letGo(content);
        content = before ? *std::move(before) : Content();
        repaintSoon();
    }
    before.reset();
}

/// Takes `next` in place of the settled content, which is kept while `next` is unproven.
void ImageEngine::Private::hold(Content next)
{
    next.number = ++lastNumber;
    if (next.unproven)
        before = std::move(content);
    else
        letGo(content);
    content = std::move(next);
    band.reset();
    if (paintEnabled)
        cache.clear();
    repaintSoon();
}

void ImageEngine::Private::letGo(Content& dropped)
{
    if (dropped.load)
        dropped.load->cancel();
    dropped = Content();
}

QImage ImageEngine::Private::fullImage()
{
    settle();
    if (!content.load)
        return content.image;
    const auto full = content.load->full();
    if (full)
        return full->image;
    lastError = full.error().text;
    return {};
}

/// False, with the reason in lastError, when an image of `size` is more than this machine takes.
bool ImageEngine::Private::allowed(QSize size)
{
    const Status status = checkSize(size);
    if (!status)
        lastError = status.error().text;
    return static_cast<bool>(status);
}

/// Puts what `change` makes of the full image in its place; the name stays.
template <class Transform>
void ImageEngine::Private::transform(Transform change)
{
    const QImage old = fullImage();
    if (old.isNull())
        return;
    const QImage made = change(old);
    if (made.isNull()) {
        lastError = QStringLiteral("no memory for the changed image");
        return;
    }
    Content next;
    next.name = content.name;
    next.image = made;
    next.size = made.size();
    next.bitsPerPixel = made.format() == old.format() ? content.bitsPerPixel : bitsOf(made);
    next.wasPainted = true; // not a load
    lastError.clear();
    hold(std::move(next));
}

// --- what is shown

/// The picture to paint an image on `target` from: the first one when it covers that, else the full one.
QImage ImageEngine::Private::sourceFor(QSize target)
{
    if (!content.load)
        return content.image;
    if (const engine::Picture full = content.load->fullIfReady(); !full.image.isNull())
        return full.image;
    const auto first = content.load->first();
    if (first && coversTarget(first->image.size(), first->fullSize, target))
        return first->image;
    const auto full = content.load->full();
    if (full)
        return full->image;
    return first ? first->image : QImage();
}

void ImageEngine::Private::repaintSoon()
{
    if (paintEnabled)
        q->update();
}

void ImageEngine::Private::updateBand()
{
    if (!band || !paintEnabled)
        return;
    const QRect frame = bandFrame(band->from, band->to, content.size, placed()).boundingRect();
    q->update(toLogicalPixels(frame, ratio()));
}

/// What was on the screen when painting was held back, where it was.
void ImageEngine::Private::paintHeldBack(QPainter& painter)
{
    if (cache.pixels().isNull())
        return;
    const QPointF moved = QPointF(heldBackAt - q->mapTo(q->window(), QPoint())) * ratio();
    painter.drawImage(cache.part().topLeft() + moved.toPoint(), cache.pixels());
}

/// Paints the part of the image that `exposed` shows. The visible part is computed once and kept; what is
/// larger than any screen (a control painted into an image) goes in bands that are not kept.
void ImageEngine::Private::paintImage(QPainter& painter, QRect exposed, const QRect& target)
{
    constexpr qint64 largestScreen = qint64(8192) * 4608;
    const DisplayView view{content.number, target, backColor.rgb()};
    const QRect part = exposed & target;
    if (!cache.covers(view, part)) {
        const QImage source = sourceFor(target.size());
        const QRect visible = toDevicePixels(q->visibleRegion().boundingRect(), ratio()) & target;
        const QRect wanted = part | visible;
        if (qint64(wanted.width()) * wanted.height() > largestScreen) {
            constexpr int bandRows = 256;
            for (int y = part.top(); y <= part.bottom(); y += bandRows) {
                const QRect rows = QRect(part.left(), y, part.width(), bandRows) & part;
                painter.drawImage(rows.topLeft(), renderedPart(source, view, rows));
            }
            return;
        }
        if (cache.fill(source, view, wanted))
            q->update(); // the rest of the screen was painted from the smaller picture
    }
    painter.drawImage(part.topLeft(), cache.pixels(), part.translated(-cache.part().topLeft()));
}

void ImageEngine::Private::paintBand(QPainter& painter, const QRect& target)
{
    if (!band)
        return;
    for (const QRect& line : bandFrame(band->from, band->to, content.size, target))
        painter.fillRect(line, band->color);
    if (!band->keep)
        band.reset();
}

/// Once a content: tells that it stands on the screen, and lets the full decode follow.
void ImageEngine::Private::notePainted()
{
    if (std::exchange(content.wasPainted, true))
        return;
    // From the event loop: what was painted then reaches the screen before anything else is begun.
    QTimer::singleShot(0, q, [this, number = content.number] {
        if (number != content.number)
            return;
        if (content.load)
            content.load->requestFull();
        Q_EMIT q->FirstPainted();
    });
}

// --- the control

ImageEngine::ImageEngine(std::shared_ptr<ImageLoader> loader, QWidget* parent)
    : QWidget(parent), d(std::make_unique<Private>(this, std::move(loader)))
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::NoFocus);
}

ImageEngine::~ImageEngine()
{
    d->letGo(d->content);
    if (d->before)
        d->letGo(*d->before);
}

QString ImageEngine::FileName() const
{
    d->settle();
    return d->content.name;
}

void ImageEngine::SetFileName(const QString& path)
{
    if (path.isEmpty()) {
        SetPicture(QImage());
        return;
    }
    auto load = d->loader->load(path, d->page, d->loadBox);
    const auto header = load->header();
    if (!header) {
        d->lastError = header.error().text;
        return;
    }
    d->settle(); // what stands before this load is what its failure leads back to
    d->lastError.clear();
    Content next;
    next.name = path;
    next.load = std::move(load);
    next.size = header->size;
    next.bitsPerPixel = header->bitsPerPixel;
    next.unproven = true;
    d->hold(std::move(next));
}

int ImageEngine::PageNumber() const
{
    return d->page;
}

void ImageEngine::SetPageNumber(int page)
{
    d->page = page;
}

int ImageEngine::PageCount(const QString& path) const
{
    return ImageLoader::pageCount(path);
}

QImage ImageEngine::Picture() const
{
    return d->fullImage();
}

void ImageEngine::SetPicture(const QImage& picture)
{
    if (d->before)
        d->letGo(*d->before);
    d->before.reset();
    d->lastError.clear();
    Content next;
    next.image = normalized(picture);
    next.image.setDevicePixelRatio(1);
    next.size = next.image.size();
    next.bitsPerPixel = next.image.isNull() ? 0 : bitsOf(next.image);
    d->hold(std::move(next));
}

QString ImageEngine::LastError() const
{
    d->settle();
    return d->lastError;
}

int ImageEngine::ImageWidthTwips() const
{
    return toTwips(ImagePixelWidth(), d->ratio());
}

int ImageEngine::ImageHeightTwips() const
{
    return toTwips(ImagePixelHeight(), d->ratio());
}

int ImageEngine::ImagePixelWidth() const
{
    return d->content.isEmpty() ? 0 : d->content.size.width();
}

int ImageEngine::ImagePixelHeight() const
{
    return d->content.isEmpty() ? 0 : d->content.size.height();
}

int ImageEngine::BitsPerPixel() const
{
    return d->content.bitsPerPixel;
}

int ImageEngine::UniqueColors() const
{
    d->settle();
    if (d->content.colors < 0)
        d->content.colors = countColors(d->fullImage());
    return d->content.colors;
}

double ImageEngine::ZoomFactor() const
{
    return d->display.zoom;
}

void ImageEngine::Zoom(double factor)
{
    if (!(factor > 0) || !std::isfinite(factor))
        return;
    d->display.zoom = factor;
    d->repaintSoon();
}

void ImageEngine::SetScaleMode(int mode)
{
    if (std::exchange(d->display.scaleMode, mode) != mode)
        d->repaintSoon();
}

int ImageEngine::ScaleMode() const
{
    return d->display.scaleMode;
}

void ImageEngine::SetScaleOption(int option)
{
    if (std::exchange(d->display.scaleOption, option) != option)
        d->repaintSoon();
}

void ImageEngine::SetPaintEnabled(bool enabled)
{
    if (std::exchange(d->paintEnabled, enabled) == enabled)
        return;
    if (enabled)
        update();
    else
        d->heldBackAt = mapTo(window(), QPoint());
}

bool ImageEngine::PaintEnabled() const
{
    return d->paintEnabled;
}

void ImageEngine::Refresh()
{
    d->repaintSoon();
}

void ImageEngine::SetBackColor(const QColor& color)
{
    d->backColor = QColor(color.rgb()); // opaque, as the control is
    d->repaintSoon();
}

QColor ImageEngine::BackColor() const
{
    return d->backColor;
}

void ImageEngine::SetMousePointer(int pointer)
{
    d->pointer = pointer;
    if (pointer == panPointer)
        setCursor(QGuiApplication::mouseButtons() == Qt::NoButton ? Qt::OpenHandCursor
                                                                  : Qt::ClosedHandCursor);
    else if (pointer == selectionPointer)
        setCursor(Qt::CrossCursor);
    else
        unsetCursor();
}

int ImageEngine::MousePointer() const
{
    return d->pointer;
}

void ImageEngine::DrawRubberBand(int left, int top, int right, int bottom, const QColor& color, bool keep)
{
    d->updateBand(); // the old one goes
    d->band = Band{QPoint(left, top), QPoint(right, bottom), color, keep};
    d->updateBand();
}

void ImageEngine::ClearRubberBand()
{
    d->updateBand();
    d->band.reset();
}

// --- transforms

void ImageEngine::Rotate(double degrees)
{
    d->settle();
    if (!std::isfinite(degrees) || d->content.isEmpty() || !d->allowed(rotatedSize(d->content.size, degrees)))
        return;
    d->transform([this, degrees](const QImage& image) { return rotated(image, degrees, d->backColor); });
}

void ImageEngine::Resize(int width, int height)
{
    if (width < 1 || height < 1 || !d->allowed(QSize(width, height)))
        return;
    d->transform([width, height](const QImage& image) { return resized(image, QSize(width, height)); });
}

void ImageEngine::Bevel(int style, int width, int intensity)
{
    d->transform(
        [style, width, intensity](const QImage& image) { return bevelled(image, style, width, intensity); });
}

void ImageEngine::CopyToClipboard()
{
    if (const QImage image = d->fullImage(); !image.isNull())
        QGuiApplication::clipboard()->setImage(image);
}

// --- saving

void ImageEngine::SetSaveFileName(const QString& path)
{
    d->saveFileName = path;
}

bool ImageEngine::SaveFile()
{
    const auto save = [this]() -> Status {
        const QImage image = d->fullImage();
        if (image.isNull())
            return Error{ErrorKind::WriteFailed, QStringLiteral("no image is held")};
        const QString extension = QFileInfo(d->saveFileName).suffix();
        const Codec* codec = encoderFor(extension);
        if (!codec)
            return Error{ErrorKind::Unsupported,
                         QStringLiteral("no format is written for the extension \"%1\"").arg(extension)};
        const auto bytes = codec->encode(image, extension, d->encodeOptions);
        return bytes ? writeWholeFile(d->saveFileName, *bytes) : Status(bytes.error());
    };
    const Status saved = save();
    d->lastError = saved ? QString() : saved.error().text;
    return static_cast<bool>(saved);
}

void ImageEngine::SetJPEGLuminance(int strength)
{
    d->encodeOptions.jpeg.luminance = strength;
}

void ImageEngine::SetJPEGChrominance(int strength)
{
    d->encodeOptions.jpeg.chrominance = strength;
}

void ImageEngine::SetJPEGSubSampling(int mode)
{
    d->encodeOptions.jpeg.subSampling = mode;
}

void ImageEngine::SetJPEGGrayscale(bool gray)
{
    d->encodeOptions.jpeg.gray = gray;
}

void ImageEngine::SetLoadBox(QSize box)
{
    d->loadBox = box;
}

// --- painting

void ImageEngine::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const double ratio = d->ratio();
    useDevicePixels(painter, ratio);
    QRect exposed = toDevicePixels(event->rect(), ratio);
    if (ratio != std::floor(ratio))
        exposed.adjust(-1, -1, 1, 1); // the corner was moved to a whole pixel
    if (!d->paintEnabled) {
        painter.fillRect(exposed, d->backColor);
        d->paintHeldBack(painter);
        return;
    }
    d->settle();
    const QRect target = d->placed();
    for (const QRect& around : QRegion(exposed).subtracted(target))
        painter.fillRect(around, d->backColor);
    if (!exposed.intersects(target)) {
        if (d->content.isEmpty())
            d->cache.clear();
        return;
    }
    d->paintImage(painter, exposed, target);
    d->paintBand(painter, target);
    d->notePainted();
}

} // namespace quorvia::engine
