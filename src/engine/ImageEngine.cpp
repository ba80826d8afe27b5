#include "engine/ImageEngine.h"

#include "engine/ColorConversion.h"
#include "engine/ColorCount.h"
#include "engine/DevicePixels.h"
#include "engine/ImageEnginePrivate.h"
#include "engine/Resample.h"
#include "engine/Transforms.h"

#include <QClipboard>
#include <QColorSpace>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPaintEvent>
#include <QPointer>

#include <cmath>
#include <utility>

namespace quorvia::engine {

namespace {

constexpr int selectionPointer = 30;

/// The profile of an image that was given; empty for sRGB and for one that has no colour space.
QByteArray profileOf(const QImage& image)
{
    const QColorSpace space = image.colorSpace();
    return space.isValid() && space != QColorSpace(QColorSpace::SRgb) ? space.iccProfile() : QByteArray();
}

} // namespace

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
    Q_EMIT LoadBegun(path);
    const auto header = load->header();
    if (!header) {
        d->lastError = header.error().text;
        return;
    }
    d->settle(); // what stands before this load is what its failure leads back to
    d->lastError.clear();
    HeldContent next;
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
    return d->fullImageInSrgb();
}

bool ImageEngine::IsComplete() const
{
    return d->isComplete();
}

void ImageEngine::SetPicture(const QImage& picture)
{
    if (d->before)
        d->letGo(*d->before);
    d->before.reset();
    d->lastError.clear();
    HeldContent next;
    next.image = normalized(picture);
    next.image.setDevicePixelRatio(1);
    next.profile = profileOf(picture);
    next.image.setColorSpace({}); // from here on the profile tells it
    next.size = next.image.size();
    next.bitsPerPixel = next.image.isNull() ? 0 : bitsOf(next.image);
    d->hold(std::move(next));
}

QImage ImageEngine::EditedPicture() const
{
    d->settle();
    const bool isEdited = !d->content.name.isEmpty() && !d->content.load;
    return isEdited ? d->content.image : QImage();
}

void ImageEngine::RestoreEdit(const QImage& edited)
{
    d->settle();
    if (!edited.isNull() && !d->content.isEmpty())
        d->transform([&edited](const QImage&) { return edited; });
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
        d->unlessMemoryEnds([this] { d->content.colors = countColors(d->fullImage()); });
    return std::max(d->content.colors, 0);
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
    d->setPainting(enabled, d->covered);
}

bool ImageEngine::PaintEnabled() const
{
    return d->paintEnabled;
}

void ImageEngine::Refresh()
{
    if (d->autoAcquireView)
        d->content.isUnseen = false;
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
        d->showHand(QGuiApplication::mouseButtons());
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
    d->content.band = RubberBand{QPoint(left, top), QPoint(right, bottom), color, keep};
    d->updateBand();
}

void ImageEngine::ClearRubberBand()
{
    d->updateBand();
    d->content.band.reset();
}

// --- the picture on another surface

QImage ImageEngine::PaintedPart(const QRect& target, const QRect& part, const QColor& back)
{
    d->settle();
    QImage pixels;
    if (!d->content.isEmpty() && !d->content.isUnseen && !target.isEmpty())
        d->unlessMemoryEnds([&] {
            const DisplayView view{d->content.number, target, back.rgb()};
            const auto conversion = ColorConversion::of(d->profile());
            pixels = renderedPart(d->sourceFor(target.size()), view, part, conversion.get());
        });
    return pixels;
}

void ImageEngine::NotePainted()
{
    d->notePainted();
}

void ImageEngine::SetCovered(bool covered)
{
    d->setPainting(d->paintEnabled, covered);
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

void ImageEngine::Resample(int width, int height)
{
    Resize(width, height);
}

void ImageEngine::Bevel(int style, int width, int intensity)
{
    d->transform(
        [style, width, intensity](const QImage& image) { return bevelled(image, style, width, intensity); });
}

void ImageEngine::CopyToClipboard()
{
    d->unlessMemoryEnds([this] {
        if (const QImage image = d->fullImageInSrgb(); !image.isNull())
            QGuiApplication::clipboard()->setImage(image);
    });
}

// --- scanning

void ImageEngine::SetAcquisitionSource(AcquisitionSource source)
{
    d->acquisition = std::move(source);
}

void ImageEngine::TwainSelectSource()
{
    const auto select = d->acquisition.select; // a copy: anything may happen while it waits
    if (select)
        select();
}

void ImageEngine::TwainAcquire()
{
    const auto acquire = d->acquisition.acquire;
    const QPointer<ImageEngine> alive = this;
    const QImage picture = acquire ? acquire() : QImage();
    if (!alive)
        return;
    SetPicture(picture);
    d->content.isUnseen = !d->autoAcquireView;
}

void ImageEngine::SetAutoAcquireView(bool shown)
{
    d->autoAcquireView = shown;
}

void ImageEngine::SetLoadBox(QSize box)
{
    d->loadBox = box;
}

// --- mouse

// The events stay unaccepted: they are the owner's.
void ImageEngine::mousePressEvent(QMouseEvent* event)
{
    d->showHand(event->buttons());
    QWidget::mousePressEvent(event);
}

void ImageEngine::mouseReleaseEvent(QMouseEvent* event)
{
    d->showHand(event->buttons());
    QWidget::mouseReleaseEvent(event);
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
    if (d->isHeldBack()) {
        painter.fillRect(exposed, d->backColor);
        d->paintHeldBack(painter);
        return;
    }
    d->settle();
    const QRect target = d->content.isUnseen ? QRect() : d->placed();
    for (const QRect& around : QRegion(exposed).subtracted(target))
        painter.fillRect(around, d->backColor);
    if (!exposed.intersects(target)) {
        if (d->content.isEmpty())
            d->cache.clear();
        return;
    }
    d->paintContent(painter, exposed, target);
}

} // namespace quorvia::engine
