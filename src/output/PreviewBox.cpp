#include "output/PreviewBox.h"

#include "app/Twips.h"
#include "controls/ScrollBar.h"
#include "output/PagePreview.h"
#include "output/PreviewLayout.h"
#include "platform/SpokenWidget.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QWheelEvent>

#include <cstdlib>

namespace quorvia::output {

using controls::ScrollBar;

namespace {

constexpr int upright = 1;
constexpr int lying = 2;
constexpr int arrowStep = 3; // of a bar's values

/// Towards the lower number, as a place left of the frame is below 0.
int pixelsOf(int twips)
{
    return twips >= 0 ? app::toPixels(twips) : -app::toPixels(-twips + app::twipsPerPixel - 1);
}

} // namespace

PreviewBox::PreviewBox(const PageSurface& page, QWidget* parent)
    : QWidget(parent), m_pPreview(new PagePreview(page, this)),
      m_sWidth(addBar("sWidth", QStringLiteral("Scroll the page across"), lying)),
      m_sHeight(addBar("sHeight", QStringLiteral("Scroll the page down"), upright)),
      m_pHold(new QWidget(this))
{
    setObjectName(QStringLiteral("pBox"));
    setAccessibleName(QStringLiteral("Preview"));
    platform::speakAs(this, QAccessible::Graphic);
    setFocusPolicy(Qt::StrongFocus);
    m_pHold->setObjectName(QStringLiteral("pHold"));
    m_pHold->setAccessibleName(QStringLiteral("Corner"));
    m_pHold->setAutoFillBackground(true);
    m_pHold->hide();
}

ScrollBar* PreviewBox::addBar(const char* name, const QString& accessible, int alight)
{
    auto* const bar = new ScrollBar(this);
    bar->setObjectName(QLatin1String(name));
    bar->setAccessibleName(accessible);
    bar->SetAlight(alight);
    bar->SetSmallChange(arrowStep);
    bar->hide();
    connect(bar, &ScrollBar::Change, this, &PreviewBox::scroll);
    return bar;
}

void PreviewBox::layOut(QSize page, double zoom)
{
    const QSize room = app::inTwips(size());
    const QSize shown = previewSize(page, zoom);
    const auto before = [](const ScrollBar* bar) { return BarBefore{!bar->isHidden(), bar->Value()}; };
    const PreviewAxis across = previewAxis(shown.width(), room.width(), before(m_sWidth), startAcross);
    const PreviewAxis down = previewAxis(shown.height(), room.height(), before(m_sHeight), startDown);
    m_centred = {pixelsOf(across.place), pixelsOf(down.place)};
    m_pPreview->resize(app::toPixels(QRect(QPoint(), shown)).size());
    layOutBar(*m_sWidth, across, startAcross);
    layOutBar(*m_sHeight, down, startDown);
    m_pHold->setVisible(across.hasBar && down.hasBar);
    placeBars();
    scroll();
}

void PreviewBox::layOutBar(ScrollBar& bar, const PreviewAxis& axis, int start)
{
    if (!axis.hasBar) {
        bar.hide();
        return;
    }
    bar.SetMax(axis.maximum);
    if (bar.isHidden())
        bar.SetValue(start);
    bar.show();
}

void PreviewBox::placeBars()
{
    const int thickness = m_sHeight->sizeHint().width();
    const int depth = m_sWidth->sizeHint().height();
    const bool both = !m_pHold->isHidden();
    const QPoint corner(width() - thickness, height() - depth);
    m_sWidth->setGeometry(0, corner.y(), both ? corner.x() : width(), depth);
    m_sHeight->setGeometry(corner.x(), 0, thickness, both ? corner.y() : height());
    m_pHold->setGeometry(QRect(corner, QSize(thickness, depth)));
}

/// Puts the page where the bars have it.
void PreviewBox::scroll()
{
    const auto place = [](const ScrollBar* bar, int centred) {
        return bar->isHidden() ? centred : pixelsOf(previewOffset(bar->Value()));
    };
    m_pPreview->move(place(m_sWidth, m_centred.x()), place(m_sHeight, m_centred.y()));
}

void PreviewBox::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    if (!hasFocus())
        return;
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

/// The bars have the keys, the frame has the focus. What a bar does not take comes back here, on its way to
/// the window.
void PreviewBox::keyPressEvent(QKeyEvent* event)
{
    const bool isAcross = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    const bool isDown = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    ScrollBar* bar = isAcross ? m_sWidth : m_sHeight;
    if (!isAcross && !isDown && bar->isHidden())
        bar = m_sWidth; // page keys
    if (m_isPassing || bar->isHidden())
        return QWidget::keyPressEvent(event);
    const QPointer<PreviewBox> alive(this); // the window may close
    m_isPassing = true;
    QCoreApplication::sendEvent(bar, event);
    event->accept(); // it has been everywhere
    if (alive)
        m_isPassing = false;
}

/// With Ctrl the bars want none of it.
void PreviewBox::wheelEvent(QWheelEvent* event)
{
    const QPoint turned = event->angleDelta();
    const bool across =
        (event->modifiers() & Qt::ShiftModifier) || std::abs(turned.x()) > std::abs(turned.y());
    ScrollBar* const wanted = across ? m_sWidth : m_sHeight;
    ScrollBar* const other = across ? m_sHeight : m_sWidth;
    ScrollBar* const bar = wanted->isHidden() ? other : wanted;
    if (!bar->isHidden())
        QCoreApplication::sendEvent(bar, event);
}

} // namespace quorvia::output
