#include "collections/PanelTab.h"

#include "platform/Icons.h"

#include <QKeyEvent>
#include <QLabel>
#include <QStyleOptionTab>
#include <QStylePainter>

namespace quorvia::collections {

namespace {

constexpr int iconSide = 16; // pixels, as all below
constexpr int iconLeft = 8;
constexpr int gap = 4;

} // namespace

PanelTab::PanelTab(int number, QWidget* parent)
    : QAbstractButton(parent), m_isInFront(number == 1), m_icon(new QLabel(this)), m_caption(new QLabel(this))
{
    setObjectName(QStringLiteral("tab%1").arg(number));
    m_icon->setObjectName(QStringLiteral("i%1").arg(number));
    m_caption->setObjectName(QStringLiteral("ltab%1").arg(number));
    setForegroundRole(QPalette::WindowText); // it stands on the pane, not on a button
    setBackgroundRole(QPalette::Window);
    setFocusPolicy(m_isInFront ? Qt::NoFocus : Qt::TabFocus);
    for (QLabel* label : {m_icon, m_caption})
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PanelTab::setFace(const QString& caption, const QString& icon)
{
    setAccessibleName(caption);
    m_iconName = icon;
    showCaption();
    showIcon();
}

void PanelTab::addSpokenState(QAccessible::State& state) const
{
    state.selectable = true;
    state.selected = m_isInFront;
}

void PanelTab::showCaption()
{
    m_caption->setText(fontMetrics().elidedText(caption(), Qt::ElideRight, m_caption->width()));
}

void PanelTab::showIcon()
{
    const QColor ink = m_caption->palette().color(m_caption->foregroundRole());
    QPixmap picture = platform::drawing(m_iconName, qRound(iconSide * devicePixelRatioF()), ink);
    picture.setDevicePixelRatio(devicePixelRatioF());
    m_icon->setPixmap(picture);
}

QSize PanelTab::sizeHint() const
{
    return {iconLeft + iconSide + 2 * gap + fontMetrics().horizontalAdvance(caption()),
            std::max(iconSide, fontMetrics().height()) + 2};
}

void PanelTab::paintEvent(QPaintEvent*)
{
    QStyleOptionTab option;
    option.initFrom(this);
    option.shape = QTabBar::RoundedNorth;
    option.position = m_isInFront ? QStyleOptionTab::Beginning : QStyleOptionTab::End;
    option.selectedPosition =
        m_isInFront ? QStyleOptionTab::NotAdjacent : QStyleOptionTab::PreviousIsSelected;
    option.state.setFlag(QStyle::State_Selected, m_isInFront);
    option.state.setFlag(QStyle::State_MouseOver, !m_isInFront && underMouse());
    QStylePainter painter(this);
    painter.drawControl(QStyle::CE_TabBarTabShape, option);
    if (!hasFocus())
        return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = rect().adjusted(3, 3, -3, -3);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

void PanelTab::resizeEvent(QResizeEvent*)
{
    // That behind stands a little lower.
    const int top = m_isInFront ? 0 : 1;
    m_icon->setGeometry(iconLeft, top + (height() - iconSide) / 2, iconSide, iconSide);
    const int left = iconLeft + iconSide + gap;
    m_caption->setGeometry(left, top, std::max(width() - left - gap, 0), height());
    showCaption();
}

void PanelTab::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void PanelTab::changeEvent(QEvent* event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showIcon();
}

} // namespace quorvia::collections
