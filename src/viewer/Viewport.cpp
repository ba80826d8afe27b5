#include "viewer/Viewport.h"

#include "app/Twips.h"
#include "controls/ScrollBar.h"
#include "engine/ImageEngine.h"
#include "viewer/ImageLayout.h"

#include <QWidget>

#include <cmath>

namespace quorvia::viewer {

namespace {

constexpr int verticalBar = 1;
constexpr int horizontalBar = 2;

controls::ScrollBar* makeBar(QWidget* parent, const char* name, int alight)
{
    auto* bar = new controls::ScrollBar(parent);
    bar->setObjectName(QLatin1String(name));
    bar->SetAlight(alight);
    bar->setFocusPolicy(Qt::TabFocus); // a click leaves the keys where they are
    bar->hide();
    return bar;
}

BarState stateOf(const controls::ScrollBar& bar)
{
    return {bar.Value(), bar.Max(), !bar.isHidden()};
}

void show(controls::ScrollBar& bar, const BarState& state, const QRect& twips)
{
    if (!state.visible && bar.hasFocus())
        bar.window()->setFocus(); // the keys must not go on to whatever comes next
    bar.setVisible(state.visible);
    if (!state.visible)
        return;
    bar.setGeometry(app::toPixels(twips));
    bar.SetMax(state.maximum);
    bar.SetValue(state.value); // which moves the picture
    bar.raise();
}

} // namespace

Viewport::Viewport(QWidget* pContain, engine::ImageEngine* ix1, QObject* parent)
    : QObject(parent), m_pContain(pContain), m_ix1(ix1), m_sb1(makeBar(pContain, "sb1", verticalBar)),
      m_sb2(makeBar(pContain, "sb2", horizontalBar))
{
    for (const controls::ScrollBar* bar : {m_sb1, m_sb2})
        connect(bar, &controls::ScrollBar::Change, this, [this, bar] { followBar(bar); });
    m_sb1->setAccessibleName(tr("Vertical scroll bar"));
    m_sb2->setAccessibleName(tr("Horizontal scroll bar"));
}

void Viewport::flipFit()
{
    m_fitToWindow = !m_fitToWindow;
    zoomTo(1.0);
}

void Viewport::zoomTo(double zoom)
{
    m_ix1->Zoom(zoom);
    layout();
}

bool Viewport::zoomOnto(QPoint corner, QPoint other)
{
    const auto target = viewer::zoomOnto(corner, other, clearPanel());
    if (!target)
        return false;
    m_ix1->ClearRubberBand();
    zoomTo(target->zoom);
    m_sb1->SetValue(target->vertical);
    m_sb2->SetValue(target->horizontal);
    return true;
}

bool Viewport::canScroll() const
{
    return !m_sb1->isHidden() || !m_sb2->isHidden();
}

void Viewport::scrollBy(int horizontal, int vertical)
{
    if (horizontal != 0 && !m_sb2->isHidden())
        m_sb2->SetValue(m_sb2->Value() + horizontal);
    if (vertical != 0 && !m_sb1->isHidden())
        m_sb1->SetValue(m_sb1->Value() + vertical);
}

QPoint Viewport::imagePixelAt(QPointF position) const
{
    return viewer::imagePixelAt(position, twipsPerPixel(), m_ix1->ZoomFactor());
}

void Viewport::bring(QPointF share, QPointF position)
{
    const double ratio = m_pContain->devicePixelRatioF();
    if (!m_sb2->isHidden())
        m_sb2->SetValue(int(std::lround((share.x() * m_ix1->width() - position.x()) * ratio)));
    if (!m_sb1->isHidden())
        m_sb1->SetValue(int(std::lround((share.y() * m_ix1->height() - position.y()) * ratio)));
}

QPointF Viewport::shareAt(QPointF position) const
{
    const ViewState view = state();
    ImagePlacement placement = layoutImage(view);
    placement.rectangle.moveTopLeft({app::toTwips(m_ix1->x()), app::toTwips(m_ix1->y())});
    const QRectF picture = paintedPicture(placement, view.image, view.zoom);
    if (picture.isEmpty())
        return {};
    const QPointF inside = position * app::twipsPerPixel - picture.topLeft();
    return {inside.x() / picture.width(), inside.y() / picture.height()};
}

ViewState Viewport::state() const
{
    ViewState view;
    view.panel = app::inTwips(m_pContain->size());
    view.image = QSize(m_ix1->ImageWidthTwips(), m_ix1->ImageHeightTwips());
    view.zoom = m_ix1->ZoomFactor();
    view.fitToWindow = m_fitToWindow;
    view.fileOpen = !view.image.isEmpty();
    return view;
}

void Viewport::layout()
{
    const ImagePlacement placement = layoutImage(state());
    m_ix1->SetScaleMode(placement.scaleMode);
    if (placement.scaleMode == 4)
        m_ix1->SetScaleOption(0);
    m_ix1->setGeometry(app::toPixels(placement.rectangle));
    layoutBars(placement.rectangle.size());
    Q_EMIT laidOut();
}

void Viewport::layoutBars(QSize control)
{
    ScrollState state;
    state.panel = app::inTwips(m_pContain->size());
    state.control = control;
    state.fitToWindow = m_fitToWindow;
    state.verticalWidth = app::toTwips(m_sb1->width());
    state.horizontalHeight = app::toTwips(m_sb2->height());
    state.twipsPerPixel = twipsPerPixel();
    state.vertical = stateOf(*m_sb1);
    state.horizontal = stateOf(*m_sb2);
    const ScrollLayout bars = layoutScrollBars(state);
    show(*m_sb1, bars.vertical, bars.verticalPlace);
    show(*m_sb2, bars.horizontal, bars.horizontalPlace);
}

void Viewport::followBar(const controls::ScrollBar* bar)
{
    if (bar->isHidden())
        return;
    const QSizeF twips = twipsPerPixel();
    QPoint corner = m_ix1->pos();
    if (bar == m_sb1)
        corner.setY(app::toPixels(scrolledEdge(bar->Value(), twips.height())));
    else
        corner.setX(app::toPixels(scrolledEdge(bar->Value(), twips.width())));
    m_ix1->move(corner);
}

QSizeF Viewport::twipsPerPixel() const
{
    const double twips = app::twipsPerPixel / m_pContain->devicePixelRatioF();
    return {twips, twips};
}

QSizeF Viewport::clearPanel() const
{
    const QSize clear = m_pContain->size() - QSize(m_sb1->width(), m_sb2->height());
    return QSizeF(clear) * m_pContain->devicePixelRatioF();
}

QSize Viewport::loadBox() const
{
    if (const auto elsewhere = m_boxElsewhere ? m_boxElsewhere() : std::nullopt)
        return *elsewhere;
    const bool fitted = m_fitToWindow && m_ix1->ZoomFactor() == 1.0;
    return fitted ? m_pContain->size() * m_pContain->devicePixelRatioF() : QSize();
}

void Viewport::announceLoadBox()
{
    m_ix1->SetLoadBox(loadBox());
}

} // namespace quorvia::viewer
