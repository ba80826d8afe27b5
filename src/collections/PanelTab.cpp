#include "collections/PanelTab.h"

#include <QIcon>
#include <QLabel>
#include <QStyleOptionTab>
#include <QStylePainter>

namespace quorvia::collections {

namespace {

constexpr int iconSize = 16; // pixels, as all below
constexpr int iconLeft = 8;
constexpr int gap = 4;

} // namespace

PanelTab::PanelTab(int number, const QString& caption, const QIcon& icon, QWidget* parent)
    : QWidget(parent), m_icon(new QLabel(this)), m_caption(new QLabel(caption, this))
{
    setObjectName(QStringLiteral("tab%1").arg(number));
    m_icon->setObjectName(QStringLiteral("i%1").arg(number));
    m_caption->setObjectName(QStringLiteral("ltab%1").arg(number));
    setAccessibleName(caption);
    m_icon->setPixmap(icon.pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
}

QString PanelTab::caption() const
{
    return m_caption->text();
}

QSize PanelTab::sizeHint() const
{
    return {iconLeft + iconSize + 2 * gap + m_caption->sizeHint().width(),
            std::max(iconSize, m_caption->sizeHint().height()) + 2};
}

void PanelTab::paintEvent(QPaintEvent*)
{
    QStyleOptionTab option;
    option.initFrom(this);
    option.shape = QTabBar::RoundedNorth;
    option.position = QStyleOptionTab::OnlyOneTab;
    option.state |= QStyle::State_Selected;
    option.state &= ~QStyle::State_MouseOver;
    QStylePainter(this).drawControl(QStyle::CE_TabBarTabShape, option);
}

void PanelTab::resizeEvent(QResizeEvent*)
{
    m_icon->setGeometry(iconLeft, (height() - iconSize) / 2, iconSize, iconSize);
    const int left = iconLeft + iconSize + gap;
    m_caption->setGeometry(left, 0, std::max(width() - left - gap, 0), height());
}

} // namespace quorvia::collections
