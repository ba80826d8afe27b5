#include "output/PagePreview.h"

#include "app/Twips.h"
#include "engine/DevicePixels.h"
#include "engine/ImagePlacement.h"
#include "output/PageSurface.h"
#include "output/PreviewLayout.h"

#include <QMouseEvent>
#include <QPainter>

namespace quorvia::output {

namespace {

/// A red frame, one pixel wide, that the mouse goes through.
class DrawnFrame : public QWidget
{
  public:
    explicit DrawnFrame(QWidget* parent) : QWidget(parent)
    {
        setObjectName(QStringLiteral("sDraw"));
        setAccessibleName(QStringLiteral("Drawn rectangle"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

  protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setPen(Qt::red);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
};

QPointF twipsOf(const QMouseEvent* event)
{
    return event->position() * app::twipsPerPixel;
}

} // namespace

PagePreview::PagePreview(const PageSurface& page, QWidget* parent)
    : QWidget(parent), m_page(page), m_sDraw(new DrawnFrame(this))
{
    setObjectName(QStringLiteral("pPreview"));
    setAccessibleName(QStringLiteral("Page preview"));
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PagePreview::paintEvent(QPaintEvent* event)
{
    const double ratio = devicePixelRatioF();
    QPainter painter(this);
    painter.setClipRect(event->rect());
    engine::useDevicePixels(painter, ratio);
    const engine::DisplayView view{m_page.number(), QRect(QPoint(), (QSizeF(size()) * ratio).toSize()),
                                   qRgb(255, 255, 255)};
    const auto seen = [&](QRect logical) { return engine::toDevicePixels(logical, ratio) & view.target; };
    const QRect part = seen(event->rect());
    if (!m_page.page().isNull() && !m_cache.covers(view, part))
        m_cache.fill(m_page.page(), view, part | seen(visibleRegion().boundingRect()));
    if (m_page.page().isNull() || m_cache.pixels().isNull())
        painter.fillRect(part, Qt::white);
    else
        painter.drawImage(part.topLeft(), m_cache.pixels(), part.translated(-m_cache.part().topLeft()));
}

void PagePreview::showDrawn(const QRectF& drawn)
{
    m_drawn = drawn;
    m_sDraw->setGeometry(app::toPixels(drawn.toAlignedRect()));
}

void PagePreview::mousePressEvent(QMouseEvent* event)
{
    if (!m_sDraw->isHidden())
        return; // a second button
    m_anchor = twipsOf(event).toPoint();
    showDrawn(QRectF(m_anchor, QSizeF(1, 1)));
    m_sDraw->show();
}

void PagePreview::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_sDraw->isHidden())
        showDrawn(drawnRect(m_anchor, twipsOf(event)));
}

void PagePreview::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_sDraw->isHidden() || event->buttons() != Qt::NoButton)
        return;
    m_sDraw->hide();
    Q_EMIT drawn(m_drawn);
}

bool PagePreview::giveUpDrawing()
{
    const bool isDrawing = !m_sDraw->isHidden();
    m_sDraw->hide();
    return isDrawing;
}

void PagePreview::hideEvent(QHideEvent* event)
{
    m_sDraw->hide();
    QWidget::hideEvent(event);
}

} // namespace quorvia::output
