#include "engine/ImageEnginePrivate.h"

#include "engine/ColorConversion.h"
#include "engine/Limits.h"

#include <QPainter>
#include <QTimer>

#include <new>
#include <utility>

namespace quorvia::engine {

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
        content = before ? *std::move(before) : HeldContent();
        content.isTelling = false; // what was on its way may have come while another content stood here
        repaintSoon();
    }
    before.reset();
}

/// Takes `next` in place of the settled content, which is kept while `next` is unproven.
void ImageEngine::Private::hold(HeldContent next)
{
    next.number = ++lastNumber;
    if (next.unproven)
        before = std::move(content);
    else
        letGo(content);
    content = std::move(next); // the cache stays: until the next paint it is what the screen shows
    repaintSoon();
}

void ImageEngine::Private::letGo(HeldContent& dropped)
{
    if (dropped.load)
        dropped.load->cancel();
    dropped = HeldContent();
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

/// The colour profile of the held pixels; empty for sRGB.
QByteArray ImageEngine::Private::profile()
{
    settle();
    if (!content.load)
        return content.profile;
    const auto first = content.load->first();
    return first ? first->profile : QByteArray();
}

/// The held image for takers that know no profile; null as fullImage().
bool ImageEngine::Private::isComplete()
{
    settle();
    if (!content.load)
        return content.complete;
    const auto full = content.load->full();
    return full && full->complete;
}

QImage ImageEngine::Private::fullImageInSrgb()
{
    QImage image = fullImage();
    if (image.isNull())
        return image;
    image = toSrgb(std::move(image), profile());
    if (image.isNull())
        lastError = QStringLiteral("no memory to convert the colours");
    return image;
}

/// False, with the reason in lastError, when an image of `size` is more than this machine takes.
bool ImageEngine::Private::allowed(QSize size)
{
    const Status status = checkSize(size);
    if (!status)
        lastError = status.error().text;
    return static_cast<bool>(status);
}

/// Runs `step`. False, with the reason in lastError, when there was not memory enough for it.
bool ImageEngine::Private::unlessMemoryEnds(const std::function<void()>& step)
{
    try {
        step();
        return true;
    } catch (const std::bad_alloc&) {
        lastError = QStringLiteral("there is not memory enough");
        return false;
    }
}

/// Puts what `change` makes of the full image in its place; the name stays.
void ImageEngine::Private::transform(const std::function<QImage(const QImage&)>& change)
{
    const QImage old = fullImage();
    if (old.isNull())
        return;
    QImage made;
    if (!unlessMemoryEnds([&] { made = change(old); }))
        return;
    if (made.isNull()) {
        lastError = QStringLiteral("no memory for the changed image");
        return;
    }
    HeldContent next;
    next.name = content.name;
    next.image = made;
    next.profile = profile();
    next.complete = isComplete();
    next.size = made.size();
    next.bitsPerPixel = made.format() == old.format() ? content.bitsPerPixel : bitsOf(made);
    next.wasTold = content.wasTold;
    lastError.clear();
    hold(std::move(next));
}

// --- what is shown

/// The picture to paint an image on `target` from: the first one when it has just that size or covers it
/// while there is no full one, else the full one.
QImage ImageEngine::Private::sourceFor(QSize target)
{
    if (!content.load)
        return content.image;
    const auto first = content.load->first();
    if (first && first->image.size() == target)
        return first->image; // read ahead: nothing is left to do
    if (const engine::Picture full = content.load->fullIfReady(); !full.image.isNull())
        return full.image;
    if (first && coversTarget(first->image.size(), first->fullSize, target))
        return first->image;
    const auto full = content.load->full();
    if (full)
        return full->image;
    return first ? first->image : QImage();
}

/// Takes the two reasons not to paint. What is on the screen stays from the first one on until both are gone.
void ImageEngine::Private::setPainting(bool enabled, bool isCovered)
{
    const bool wasHeldBack = isHeldBack();
    paintEnabled = enabled;
    covered = isCovered;
    if (isHeldBack() == wasHeldBack)
        return;
    if (wasHeldBack)
        q->repaint(); // at once: an update would wait for the toolkit's frame timer, some milliseconds
    else
        heldBackAt = q->mapTo(q->window(), QPoint());
}

void ImageEngine::Private::repaintSoon()
{
    if (!isHeldBack())
        q->update();
}

void ImageEngine::Private::updateBand()
{
    if (!content.band || isHeldBack())
        return;
    const QRect frame =
        bandFrame(content.band->from, content.band->to, content.size, placed()).boundingRect();
    q->update(toLogicalPixels(frame, ratio()));
}

/// The pan pointer as it looks with the buttons `down`; nothing happens with another pointer.
void ImageEngine::Private::showHand(Qt::MouseButtons down)
{
    if (pointer == panPointer)
        q->setCursor(down == Qt::NoButton ? Qt::OpenHandCursor : Qt::ClosedHandCursor);
}

/// What was on the screen when painting was held back, where it was.
void ImageEngine::Private::paintHeldBack(QPainter& painter)
{
    if (cache.pixels().isNull())
        return;
    const QPointF moved = QPointF(heldBackAt - q->mapTo(q->window(), QPoint())) * ratio();
    painter.drawImage(cache.part().topLeft() + moved.toPoint(), cache.pixels());
}

/// Paints the image and what lies on it; the back colour where there is not memory enough for that.
void ImageEngine::Private::paintContent(QPainter& painter, QRect exposed, const QRect& target)
{
    if (!unlessMemoryEnds([&] { paintImage(painter, exposed, target); })) {
        painter.fillRect(exposed & target, backColor);
        return;
    }
    paintBand(painter, target);
    notePainted();
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
        const auto conversion = ColorConversion::of(profile());
        const QRect visible = toDevicePixels(q->visibleRegion().boundingRect(), ratio()) & target;
        const QRect wanted = part | visible;
        if (qint64(wanted.width()) * wanted.height() > largestScreen) {
            constexpr int bandRows = 256;
            for (int y = part.top(); y <= part.bottom(); y += bandRows) {
                const QRect rows = QRect(part.left(), y, part.width(), bandRows) & part;
                painter.drawImage(rows.topLeft(), renderedPart(source, view, rows, conversion.get()));
            }
            return;
        }
        if (cache.fill(source, view, wanted, conversion.get()))
            q->update(); // the rest of the screen was painted from the smaller picture
    }
    painter.drawImage(part.topLeft(), cache.pixels(), part.translated(-cache.part().topLeft()));
}

void ImageEngine::Private::paintBand(QPainter& painter, const QRect& target)
{
    if (!content.band)
        return;
    const RubberBand band = *content.band;
    for (const QRect& line : bandFrame(band.from, band.to, content.size, target))
        painter.fillRect(line, band.color);
    if (!band.keep)
        content.band.reset();
}

/// Once a content: tells that it stands on the screen, and lets the full decode follow.
void ImageEngine::Private::notePainted()
{
    if (content.isEmpty() || content.wasTold || std::exchange(content.isTelling, true))
        return;
    // From the event loop: what was painted then reaches the screen before anything else is begun.
    QTimer::singleShot(0, q, [this, number = content.number] {
        if (number != content.number || content.wasTold)
            return;
        content.wasTold = true;
        if (content.load)
            content.load->requestFull();
        Q_EMIT q->FirstPainted();
    });
}

} // namespace quorvia::engine
