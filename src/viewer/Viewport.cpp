#include "viewer/Viewport.h"

#include "app/Twips.h"
#include "engine/ImageEngine.h"
#include "viewer/ImageLayout.h"

#include <QWidget>

namespace quorvia::viewer {

Viewport::Viewport(QWidget* pContain, engine::ImageEngine* ix1, QObject* parent)
    : QObject(parent), m_pContain(pContain), m_ix1(ix1)
{
}

void Viewport::flipFit()
{
    m_fitToWindow = !m_fitToWindow;
    m_ix1->Zoom(1.0);
    layout();
}

void Viewport::layout()
{
    ViewState view;
    view.panel = QSize(app::toTwips(m_pContain->width()), app::toTwips(m_pContain->height()));
    view.image = QSize(m_ix1->ImageWidthTwips(), m_ix1->ImageHeightTwips());
    view.zoom = m_ix1->ZoomFactor();
    view.fitToWindow = m_fitToWindow;
    view.fileOpen = !view.image.isEmpty();
    const ImagePlacement placement = layoutImage(view);
    m_ix1->SetScaleMode(placement.scaleMode);
    if (placement.scaleMode == 4)
        m_ix1->SetScaleOption(0);
    m_ix1->setGeometry(app::toPixels(placement.rectangle));
    Q_EMIT laidOut();
}

QSize Viewport::loadBox() const
{
    const bool fitted = m_fitToWindow && m_ix1->ZoomFactor() == 1.0;
    return fitted ? m_pContain->size() * m_pContain->devicePixelRatioF() : QSize();
}

void Viewport::announceLoadBox()
{
    m_ix1->SetLoadBox(loadBox());
}

} // namespace quorvia::viewer
