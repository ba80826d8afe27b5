#include "controls/ScrollBar.h"

#include "app/Twips.h"
#include "controls/ScrollBarAccess.h"
#include "controls/ScrollComposition.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <functional>

namespace quorvia::controls {

namespace {

constexpr int repeatInterval = 50;     // milliseconds
constexpr int lengthWhenTurned = 2000; // twips
constexpr int stepsOfPage = 10;
constexpr int notch = 120; // of a wheel
constexpr auto tag = "tag";

/// A child that is painted for the bar, and leaves the mouse to it.
class Surface : public QWidget
{
  public:
    using Paint = std::function<void(QPainter&)>;

    Surface(QWidget* parent, const char* name, Paint paint) : QWidget(parent), m_paint(std::move(paint))
    {
        setObjectName(QLatin1String(name));
        setAttribute(Qt::WA_OpaquePaintEvent);
        setMouseTracking(true);
    }

  protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        m_paint(painter);
    }

  private:
    Paint m_paint;
};

} // namespace

ScrollBar::ScrollBar(QWidget* parent)
    : QWidget(parent), m_holder(new QWidget(this)),
      m_pScroll(new Surface(this, "pScroll", [this](QPainter& painter) { drawTrack(painter); })),
      m_pSelecter(new Surface(m_pScroll, "pSelecter", [this](QPainter& painter) { drawThumb(painter); })),
      m_tMove(this)
{
    announceScrollBars();
    m_holder->setObjectName(QStringLiteral("holder"));
    m_tMove.setObjectName(QStringLiteral("tMove"));
    m_tMove.setInterval(repeatInterval);
    connect(&m_tMove, &QTimer::timeout, this, &ScrollBar::repeatStep);
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    SetAlight(Alight());
}

ScrollBar::~ScrollBar() = default;

void ScrollBar::SetValue(int value)
{
    m_value = clampedValue(value, m_max);
    placeThumb();
    tellReaders();
    Q_EMIT Change(m_value);
}

void ScrollBar::SetMax(int maximum)
{
    m_max = maximum;
    if (m_value > m_max) {
        m_value = std::max(m_max, 0);
        tellReaders();
    }
    SizeScroll();
}

void ScrollBar::SetAlight(int alight)
{
    m_vertical = alight == 1;
    nameForReaders();
    resize(m_vertical ? QSize(width(), app::toPixels(lengthWhenTurned))
                      : QSize(app::toPixels(lengthWhenTurned), height()));
    SizeScroll();
}

void ScrollBar::SetSmallChange(int change)
{
    m_smallChange = std::max(change, 1);
}

int ScrollBar::ThumbLength() const
{
    return thumbAt(track(), m_value).length;
}

void ScrollBar::DrawSelecter()
{
    m_pSelecter->update();
}

void ScrollBar::DrawScroll()
{
    m_pScroll->update();
}

void ScrollBar::SizeScroll()
{
    m_max = usableMaximum(m_max);
    resize(m_vertical ? QSize(skinSize(SkinRole::vspace).width(), height())
                      : QSize(width(), skinSize(SkinRole::hspace).height()));
    m_holder->setGeometry(rect());
    m_pScroll->setGeometry(rect());
    DrawScroll();
    placeThumb();
}

void ScrollBar::UpArrowClick()
{
    stepBy(1);
}

void ScrollBar::DownArrowClick()
{
    stepBy(-1);
}

QSize ScrollBar::sizeHint() const
{
    const int length = app::toPixels(lengthWhenTurned);
    return m_vertical ? QSize(skinSize(SkinRole::vspace).width(), length)
                      : QSize(length, skinSize(SkinRole::hspace).height());
}

QSize ScrollBar::minimumSizeHint() const
{
    return m_vertical ? skinSize(SkinRole::vspace) : skinSize(SkinRole::hspace);
}

bool ScrollBar::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::WindowDeactivate: // something else has the mouse now, and no release will come
        letGo();
        break;
    case QEvent::EnabledChange:
        if (!isEnabled())
            letGo();
        break;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        DrawSelecter();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void ScrollBar::hideEvent(QHideEvent*)
{
    letGo();
    hover(std::nullopt);
}

void ScrollBar::keyPressEvent(QKeyEvent* event)
{
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!plain || !takeKey(event->key()))
        event->ignore();
}

void ScrollBar::leaveEvent(QEvent*)
{
    if (QGuiApplication::mouseButtons() == Qt::NoButton) // a drag goes on outside of the window
        letGo();
    hover(std::nullopt);
}

void ScrollBar::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() == Qt::NoButton)
        letGo(); // the release went elsewhere
    hover(rect().contains(event->position().toPoint()) ? std::optional(partUnder(event->position()))
                                                       : std::nullopt);
    if (Dragging())
        followPointer(alongTwips(event->position()));
}

void ScrollBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton && event->button() != Qt::MiddleButton) {
        event->ignore();
        return;
    }
    const ScrollPart part = partUnder(event->position());
    const int position = alongTwips(event->position());
    // The state first, the step after it: whoever hears of the step may let events run, the release among
    // them.
    switch (part) {
    case ScrollPart::NearArrow:
    case ScrollPart::FarArrow:
        m_grip.reset();
        press(part);
        m_tMove.setProperty(tag, part == ScrollPart::FarArrow ? "UP" : "DOWN");
        m_tMove.start();
        return repeatStep();
    case ScrollPart::Track:
        m_tMove.stop();
        m_grip = 0;
        press(ScrollPart::Thumb);
        return followPointer(position);
    case ScrollPart::Thumb:
        m_tMove.stop();
        m_grip = position - thumbAt(track(), m_value).start;
        return press(part);
    }
}

void ScrollBar::mouseReleaseEvent(QMouseEvent*)
{
    letGo();
}

void ScrollBar::resizeEvent(QResizeEvent*)
{
    SizeScroll();
}

void ScrollBar::wheelEvent(QWheelEvent* event)
{
    if (event->modifiers() & Qt::ControlModifier) {
        event->ignore();
        return;
    }
    const QPoint turned = event->angleDelta();
    m_wheel += turned.y() != 0 ? turned.y() : turned.x();
    const int notches = m_wheel / notch;
    m_wheel -= notches * notch;
    if (notches != 0)
        stepBy(-qint64(notches) * QApplication::wheelScrollLines());
}

ScrollTrack ScrollBar::track() const
{
    if (m_vertical)
        return {app::toTwips(height()), app::toTwips(skinSize(SkinRole::varrowtop).height()),
                app::toTwips(skinSize(SkinRole::varrowbottom).height()), m_max};
    return {app::toTwips(width()), app::toTwips(skinSize(SkinRole::harrowleft).width()),
            app::toTwips(skinSize(SkinRole::harrowright).width()), m_max};
}

/// The arrows come first: in a bar too short for its thumb they can still be pressed.
ScrollPart ScrollBar::partUnder(QPointF point) const
{
    const ScrollPart part = partAt(track(), alongTwips(point));
    const bool onThumb = m_pSelecter->geometry().contains(QPoint(int(point.x()), int(point.y())));
    return part == ScrollPart::Track && onThumb ? ScrollPart::Thumb : part;
}

int ScrollBar::alongTwips(QPointF point) const
{
    return qRound((m_vertical ? point.y() : point.x()) * app::twipsPerPixel);
}

void ScrollBar::placeThumb()
{
    const ScrollThumb thumb = thumbAt(track(), m_value);
    const QRect standing(0, thumb.start, app::toTwips(skinSize(SkinRole::vspace).width()), thumb.length);
    const QRect lying(thumb.start, 0, thumb.length, app::toTwips(skinSize(SkinRole::hspace).height()));
    // At a new length it is painted anew, as every widget is at a new size; else it only moves.
    m_pSelecter->setGeometry(app::toPixels(m_vertical ? standing : lying));
}

void ScrollBar::stepBy(qint64 steps)
{
    const qint64 step = std::max(m_smallChange, scrollStep(m_max));
    SetValue(int(std::clamp<qint64>(m_value + steps * step, 0, m_max)));
}

/// False for a key that is none of a bar's.
bool ScrollBar::takeKey(int key)
{
    if (key == (m_vertical ? Qt::Key_Down : Qt::Key_Right))
        UpArrowClick();
    else if (key == (m_vertical ? Qt::Key_Up : Qt::Key_Left))
        DownArrowClick();
    else if (key == Qt::Key_PageDown)
        stepBy(stepsOfPage);
    else if (key == Qt::Key_PageUp)
        stepBy(-stepsOfPage);
    else if (key == Qt::Key_Home)
        SetValue(0);
    else if (key == Qt::Key_End)
        SetValue(m_max);
    else
        return false;
    return true;
}

void ScrollBar::repeatStep()
{
    const QWidget* const popup = QApplication::activePopupWidget();
    if (popup && popup != window()) // it takes the release
        letGo();
    else if (m_tMove.property(tag).toString() == QLatin1String("UP"))
        UpArrowClick();
    else
        DownArrowClick();
}

void ScrollBar::followPointer(int position)
{
    if (const auto value = valueAt(track(), position - m_grip.value_or(0)))
        SetValue(*value);
}

void ScrollBar::press(std::optional<ScrollPart> part)
{
    if (m_pressed == part)
        return;
    m_pressed = part;
    DrawScroll();
    DrawSelecter();
}

void ScrollBar::letGo()
{
    m_grip.reset();
    m_tMove.stop();
    press(std::nullopt);
}

void ScrollBar::hover(std::optional<ScrollPart> part)
{
    if (m_hovered == part)
        return;
    m_hovered = part;
    DrawScroll();
    DrawSelecter();
}

/// The name says the direction, unless the bar was given another.
void ScrollBar::nameForReaders()
{
    const QString vertical = tr("Vertical scroll bar");
    const QString horizontal = tr("Horizontal scroll bar");
    const QString name = accessibleName();
    if (name.isEmpty() || name == vertical || name == horizontal)
        setAccessibleName(m_vertical ? vertical : horizontal);
}

void ScrollBar::tellReaders()
{
    QAccessibleValueChangeEvent event(this, m_value);
    QAccessible::updateAccessibility(&event);
}

void ScrollBar::drawTrack(QPainter& painter)
{
    const auto look = [this](ScrollPart part) {
        if (m_pressed)
            return m_pressed == part ? SkinState::Pressed : SkinState::Normal;
        return m_hovered == part ? SkinState::Hovered : SkinState::Normal;
    };
    paintTrack(painter, skinFor(painter), orientation(), m_vertical ? height() : width(),
               look(ScrollPart::NearArrow), look(ScrollPart::FarArrow));
}

void ScrollBar::drawThumb(QPainter& painter)
{
    SkinState look = hasFocus() ? SkinState::Focused : SkinState::Normal;
    if (m_pressed == ScrollPart::Thumb)
        look = SkinState::Pressed;
    else if (m_hovered == ScrollPart::Thumb && !m_pressed)
        look = SkinState::Hovered;
    paintThumb(painter, skinFor(painter), orientation(),
               m_vertical ? m_pSelecter->height() : m_pSelecter->width(), look);
}

ScrollSkin& ScrollBar::skinFor(const QPainter& painter)
{
    const qreal ratio = paintRatio(painter);
    if (!m_skin || m_skin->ratio() != ratio)
        m_skin = ScrollSkin::forRatio(ratio);
    return *m_skin;
}

} // namespace quorvia::controls
