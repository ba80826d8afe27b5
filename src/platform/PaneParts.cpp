#include "platform/PaneParts.h"

#include "platform/Contrast.h"
#include "platform/Icons.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

#include <algorithm>
#include <utility>

namespace quorvia::platform {

namespace {

constexpr int inset = 6;      // pixels, as all below
constexpr int arrowSide = 12; // of the sign that tells whether a pane is open
constexpr int headSpace = 8;  // above and below a title, together
constexpr int iconSide = 24;
constexpr int iconGap = 10; // between an icon and the text beside it

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

void frameFocus(const QWidget& part, QPainter& painter, const QColor& ink)
{
    if (!part.hasFocus())
        return;
    painter.setPen(QPen(ink, 1, Qt::DotLine));
    painter.drawRect(part.rect().adjusted(1, 1, -2, -2));
}

} // namespace

PaneHead::PaneHead(const QString& title, const PaneLook& look, QWidget* parent)
    : QAbstractButton(parent), m_ground(look.headGround), m_ink(look.headText)
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

void PaneHead::addSpokenState(QAccessible::State& state) const
{
    state.expandable = true;
    state.expanded = isChecked();
    state.collapsed = !isChecked();
}

void PaneHead::paintEvent(QPaintEvent*)
{
    constexpr double atRest = 0.14;
    constexpr double underPointer = 0.24;
    constexpr int lighter = 115; // percent
    QStylePainter painter(this);
    if (m_ground.isValid())
        painter.fillRect(rect(), underMouse() ? m_ground.lighter(lighter) : m_ground);
    else
        painter.fillRect(rect(), tint(palette(), underMouse() ? underPointer : atRest));
    const QColor ink = m_ink.isValid() ? m_ink : palette().color(QPalette::WindowText);
    const QRect place = rect().adjusted(inset, 0, -inset - arrowSide, 0);
    painter.setPen(ink);
    painter.drawText(place, int(Qt::AlignLeft | Qt::AlignVCenter),
                     fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
    painter.setRenderHint(QPainter::Antialiasing);
    const double left = width() - inset - arrowSide + 2.5;
    const double middle = height() / 2.0;
    const double rise = isChecked() ? -2 : 2; // the sign points to where the rows go at a click
    const QPointF sign[] = {{left, middle - rise}, {left + 4, middle + rise}, {left + 8, middle - rise}};
    painter.setPen(QPen(ink, 1.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawPolyline(sign, int(std::size(sign)));
    painter.setRenderHint(QPainter::Antialiasing, false);
    frameFocus(*this, painter, ink);
}

void PaneHead::keyPressEvent(QKeyEvent* event)
{
    if (!isChoosingKey(*event))
        event->ignore(); // the viewer's own keys work here too
    else if (!m_repeats.isRepeat(*event))
        click();
}

void PaneHead::keyReleaseEvent(QKeyEvent* event)
{
    m_repeats.noteRelease(*event);
    event->ignore();
}

PaneRow::PaneRow(const PaneItem& item, const PaneLook& look, bool besideIcons)
    : m_kind(item.kind), m_icon(item.icon), m_textLeft(besideIcons ? inset + iconSide + iconGap : inset)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    if (m_kind == PaneItemKind::Link) {
        setFocusPolicy(Qt::TabFocus);
        setCursor(Qt::PointingHandCursor);
    }
    if (m_kind == PaneItemKind::Header)
        setFont(boldFont());
    if (!m_icon.isEmpty())
        setMinimumHeight(iconSide + 2);
    const QColor ink = m_kind == PaneItemKind::Link   ? look.link
                       : m_kind == PaneItemKind::Text ? look.text
                                                      : QColor();
    if (ink.isValid()) {
        QPalette colors; // of which only this role is the row's own
        colors.setColor(QPalette::WindowText, ink);
        setPalette(colors);
    }
    showItem(item);
}

void PaneRow::showItem(const PaneItem& item)
{
    const auto begin = std::find_if(item.text.begin(), item.text.end(), [](QChar c) { return c != u' '; });
    const auto blanks = int(begin - item.text.begin());
    const int left = std::max(m_textLeft, blanks * fontMetrics().horizontalAdvance(u' '));
    const QString words = item.text.mid(blanks);
    if (words == text() && left == contentsMargins().left())
        return;
    setContentsMargins(left, 1, inset, 1);
    setText(words);
    setAccessibleName(text());
}

QAccessible::Role PaneRow::spokenRole() const
{
    return m_kind == PaneItemKind::Link ? QAccessible::Link : QAccessible::StaticText;
}

void PaneRow::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    QPainter painter(this);
    const QColor ink = palette().color(QPalette::WindowText);
    if (!m_icon.isEmpty()) {
        QPixmap icon = drawing(m_icon, qRound(iconSide * devicePixelRatioF()), ink);
        icon.setDevicePixelRatio(devicePixelRatioF());
        painter.drawPixmap(inset, (height() - iconSide) / 2, icon);
    }
    frameFocus(*this, painter, ink);
}

void PaneRow::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->button() == Qt::LeftButton;
}

/// The second click of two is none of its own.
void PaneRow::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        mousePressEvent(event);
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
    else if (!m_repeats.isRepeat(*event))
        Q_EMIT clicked();
}

void PaneRow::keyReleaseEvent(QKeyEvent* event)
{
    m_repeats.noteRelease(*event);
    event->ignore();
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
