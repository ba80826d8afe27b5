#include "platform/PaneParts.h"

#include "platform/Contrast.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

#include <utility>

namespace quorvia::platform {

namespace {

constexpr int inset = 6;      // pixels, as all below
constexpr int arrowSide = 12; // of the sign that tells whether a pane is open
constexpr int headSpace = 8;  // above and below a title, together

bool isChoosingKey(const QKeyEvent& key)
{
    const bool plain = (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    return plain && (key.key() == Qt::Key_Space || key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter);
}

QFont boldFont()
{
    QFont font; // all but the weight stays the bar's
    font.setBold(true);
    return font;
}

void frameFocus(const QWidget& part, QPainter& painter)
{
    if (!part.hasFocus())
        return;
    painter.setPen(QPen(part.palette().color(QPalette::WindowText), 1, Qt::DotLine));
    painter.drawRect(part.rect().adjusted(1, 1, -2, -2));
}

} // namespace

PaneHead::PaneHead(const QString& title, QWidget* parent) : QAbstractButton(parent)
{
    setText(title);
    setAccessibleName(title.trimmed());
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setFont(boldFont());
}

QSize PaneHead::sizeHint() const
{
    return {2 * inset + arrowSide + fontMetrics().horizontalAdvance(text()),
            fontMetrics().height() + headSpace};
}

void PaneHead::paintEvent(QPaintEvent*)
{
    constexpr double atRest = 0.14;
    constexpr double underPointer = 0.24;
    QStylePainter painter(this);
    painter.fillRect(rect(), tint(palette(), underMouse() ? underPointer : atRest));
    const QRect place = rect().adjusted(inset, 0, -inset - arrowSide, 0);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(place, int(Qt::AlignLeft | Qt::AlignVCenter),
                     fontMetrics().elidedText(text().trimmed(), Qt::ElideRight, place.width()));
    painter.setRenderHint(QPainter::Antialiasing);
    const double left = width() - inset - arrowSide + 2.5;
    const double middle = height() / 2.0;
    const double rise = isChecked() ? -2 : 2; // the sign points to where the rows go at a click
    const QPointF sign[] = {{left, middle - rise}, {left + 4, middle + rise}, {left + 8, middle - rise}};
    painter.setPen(QPen(palette().color(QPalette::WindowText), 1.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawPolyline(sign, int(std::size(sign)));
    painter.setRenderHint(QPainter::Antialiasing, false);
    frameFocus(*this, painter);
}

void PaneHead::keyPressEvent(QKeyEvent* event)
{
    if (!isChoosingKey(*event))
        event->ignore(); // the viewer's own keys work here too
    else if (!event->isAutoRepeat())
        click();
}

PaneRow::PaneRow(const PaneItem& item, QWidget* parent) : QLabel(parent), m_kind(item.kind)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setContentsMargins(inset, 1, inset, 1);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    if (m_kind == PaneItemKind::Link) {
        setFocusPolicy(Qt::TabFocus);
        setCursor(Qt::PointingHandCursor);
    }
    if (m_kind == PaneItemKind::Header)
        setFont(boldFont());
    showItem(item);
}

void PaneRow::showItem(const PaneItem& item)
{
    setText(item.text);
    setAccessibleName(item.text);
}

void PaneRow::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    QPainter painter(this);
    frameFocus(*this, painter);
}

void PaneRow::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->button() == Qt::LeftButton;
}

void PaneRow::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && std::exchange(m_pressed, false) &&
        rect().contains(event->position().toPoint()))
        Q_EMIT clicked();
}

void PaneRow::keyPressEvent(QKeyEvent* event)
{
    if (m_kind != PaneItemKind::Link || !isChoosingKey(*event))
        event->ignore();
    else if (!event->isAutoRepeat())
        Q_EMIT clicked();
}

void PaneRow::focusInEvent(QFocusEvent* event)
{
    QLabel::focusInEvent(event);
    underline();
}

void PaneRow::focusOutEvent(QFocusEvent* event)
{
    QLabel::focusOutEvent(event);
    underline();
}

void PaneRow::enterEvent(QEnterEvent*)
{
    underline();
}

void PaneRow::leaveEvent(QEvent*)
{
    underline();
}

void PaneRow::underline()
{
    if (m_kind != PaneItemKind::Link)
        return;
    QFont font;
    if (hasFocus() || underMouse())
        font.setUnderline(true);
    setFont(font);
}

} // namespace quorvia::platform
