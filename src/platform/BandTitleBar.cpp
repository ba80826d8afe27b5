#include "platform/BandTitleBar.h"

#include "platform/Contrast.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace quorvia::platform {

namespace {

constexpr int margin = 8;
constexpr int buttonSide = 18;
constexpr int lowest = 24;

void drawCross(QPainter& painter, const QRectF& box)
{
    painter.drawLine(box.topLeft(), box.bottomRight());
    painter.drawLine(box.topRight(), box.bottomLeft());
}

/// Two windows, one behind the other.
void drawWindows(QPainter& painter, const QRectF& box)
{
    const QSizeF window = box.size() * 0.7;
    const QRectF front(QPointF(box.left(), box.bottom() - window.height()), window);
    painter.drawRect(front);
    const QPointF corners[] = {{box.right() - window.width(), front.top() - 0.01},
                               {box.right() - window.width(), box.top()},
                               box.topRight(),
                               {box.right(), box.top() + window.height()},
                               {front.right(), box.top() + window.height()}};
    painter.drawPolyline(corners, int(std::size(corners)));
}

/// A window with a bar at its left: where the band goes back to.
void drawDocked(QPainter& painter, const QRectF& box)
{
    painter.drawRect(box);
    const double bar = box.left() + box.width() / 3;
    painter.drawLine(QPointF(bar, box.top()), QPointF(bar, box.bottom()));
}

enum class Sign { Float, Dock, Close };

class TitleButton : public QAbstractButton
{
  public:
    TitleButton(Sign sign, QWidget* parent) : QAbstractButton(parent), m_sign(sign)
    {
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
        setCursor(Qt::ArrowCursor);
    }

    void setSign(Sign sign)
    {
        m_sign = sign;
        update();
    }

    QSize sizeHint() const override { return {buttonSide, buttonSide}; }

  protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintBack(painter);
        painter.setPen(QPen(signColor(), 1, Qt::SolidLine, Qt::RoundCap, Qt::MiterJoin));
        painter.setBrush(Qt::NoBrush);
        constexpr double side = 8;
        const double inset = int((buttonSide - side) / 2) + 0.5; // lines of one pixel on whole pixels
        const QRectF box(inset, inset, side, side);
        if (m_sign == Sign::Close)
            drawCross(painter, box);
        else if (m_sign == Sign::Float)
            drawWindows(painter, box);
        else
            drawDocked(painter, box);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (enter && !event->isAutoRepeat())
            click();
        else if (event->key() == Qt::Key_Space)
            QAbstractButton::keyPressEvent(event);
        else
            event->ignore(); // the viewer's own keys work here too
    }

    void focusInEvent(QFocusEvent* event) override
    {
        m_byKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
        QAbstractButton::focusInEvent(event);
    }

  private:
    QColor signColor() const { return tint(palette(), underMouse() || (hasFocus() && m_byKey) ? 1 : 0.7); }

    void paintBack(QPainter& painter) const
    {
        const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        if (isDown() || underMouse()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(tint(palette(), isDown() ? 0.24 : 0.14));
            painter.drawRoundedRect(QRectF(rect()), 3, 3);
        }
        if (hasFocus() && m_byKey) {
            painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(face, 3, 3);
        }
    }

    Sign m_sign;
    bool m_byKey = false; ///< only keys bring the focus here for good reason, and a ring with it
};

void name(QAbstractButton* button, const QString& accessibleName, const QString& toolTip)
{
    button->setAccessibleName(accessibleName);
    button->setToolTip(toolTip);
}

} // namespace

BandTitleBar::BandTitleBar(const QString& caption, QWidget* parent)
    : QWidget(parent), m_caption(caption), m_float(new TitleButton(Sign::Float, this)),
      m_close(new TitleButton(Sign::Close, this))
{
    m_float->setObjectName(QStringLiteral("floatButton"));
    m_close->setObjectName(QStringLiteral("closeButton"));
    name(m_close, tr("Close %1").arg(m_caption), tr("Close"));
    setFloating(false);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(margin, 0, 3, 1);
    row->setSpacing(1);
    row->addStretch();
    row->addWidget(m_float);
    row->addWidget(m_close);
    connect(m_float, &QAbstractButton::clicked, this, &BandTitleBar::floatingToggled);
    connect(m_close, &QAbstractButton::clicked, this, &BandTitleBar::closeClicked);
}

void BandTitleBar::setFloating(bool floating)
{
    static_cast<TitleButton*>(m_float)->setSign(floating ? Sign::Dock : Sign::Float);
    name(m_float, (floating ? tr("Dock %1") : tr("Float %1")).arg(m_caption),
         floating ? tr("Dock") : tr("Float"));
}

QColor BandTitleBar::faceColor(const QPalette& palette)
{
    return tint(palette, 0.06);
}

QSize BandTitleBar::sizeHint() const
{
    return {minimumSizeHint().width() + fontMetrics().horizontalAdvance(m_caption),
            std::max(lowest, fontMetrics().height() + 6)};
}

QSize BandTitleBar::minimumSizeHint() const
{
    return {2 * buttonSide + 2 * margin, std::max(lowest, fontMetrics().height() + 6)};
}

void BandTitleBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), faceColor(palette()));
    painter.fillRect(0, height() - 1, width(), 1, tint(palette(), 0.18));
    const QRect place(margin, 0, m_float->x() - margin - 4, height() - 1);
    const QString text = fontMetrics().elidedText(m_caption, Qt::ElideRight, place.width());
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(place, int(Qt::AlignLeft | Qt::AlignVCenter), text);
}

void BandTitleBar::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    Q_EMIT floatingToggled();
}

void BandTitleBar::keyPressEvent(QKeyEvent* event)
{
    event->ignore();
    Q_EMIT keyPressed(event);
}

void BandTitleBar::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
}

} // namespace quorvia::platform
