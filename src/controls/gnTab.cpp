#include "controls/gnTab.h"

#include "app/Colors.h"
#include "app/Twips.h"
#include "controls/TabMetrics.h"
#include "controls/TabPainter.h"
#include "controls/TabScrollButton.h"
#include "controls/TabSurface.h"

#include <QApplication>
#include <QCursor>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace quorvia::controls {

namespace {

constexpr int barHeight = app::toPixels(50);
constexpr int buttonsWidth = 2 * TabScrollButton::fixedWidth;
constexpr int mouseOutInterval = 250; // milliseconds

template <class Flags>
int maskOf(Flags flags, std::initializer_list<std::pair<typename Flags::enum_type, int>> bits)
{
    int mask = 0;
    for (const auto& [flag, bit] : bits) {
        if (flags.testFlag(flag))
            mask |= bit;
    }
    return mask;
}

QWidget* makeBar(QWidget* parent, const char* name)
{
    auto* const bar = new QWidget(parent);
    bar->setObjectName(QLatin1String(name));
    bar->setAutoFillBackground(true);
    return bar;
}

} // namespace

gnTab::gnTab(QWidget* parent)
    : QWidget(parent), m_pbTop(makeBar(this, "pbTop")), m_pbBottom(makeBar(this, "pbBottom")),
      m_pbTabs(new TabSurface(m_tabs, m_properties, this)),
      m_scrollLeft(makeButton(Qt::LeftArrow, "cmdScroll0", tr("Scroll tabs to the left"))),
      m_scrollRight(makeButton(Qt::RightArrow, "cmdScroll1", tr("Scroll tabs to the right")))
{
    m_pbTabs->setObjectName(QStringLiteral("pbTabs"));
    m_pbTabs->setAccessibleName(tr("Tabs"));
    setFocusProxy(m_pbTabs);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_OpaquePaintEvent);

    m_tmrMouseOut.setObjectName(QStringLiteral("tmrMouseOut"));
    m_tmrMouseOut.setParent(this);
    m_tmrMouseOut.setInterval(mouseOutInterval);
    connect(&m_tmrMouseOut, &QTimer::timeout, this, &gnTab::endHoverWhenOutside);

    connect(m_scrollLeft, &QAbstractButton::clicked, this, [this] {
        if (canScrollLeft(m_tabs.spans(), m_first))
            scrollTo(m_first - 1);
    });
    connect(m_scrollRight, &QAbstractButton::clicked, this, [this] {
        if (canScrollRight(m_tabs.spans(), m_first, room()))
            scrollTo(m_first + 1);
    });
    connect(
        m_pbTabs, &TabSurface::pointerMoved, this,
        [this](Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, QPoint position) {
            Q_EMIT TabMouseMove(
                maskOf(buttons, {{Qt::LeftButton, 1}, {Qt::RightButton, 2}, {Qt::MiddleButton, 4}}),
                maskOf(modifiers, {{Qt::ShiftModifier, 1}, {Qt::ControlModifier, 2}, {Qt::AltModifier, 4}}),
                position.x(), position.y());
            hover(m_pbTabs->tabAtPosition(position));
        });
    connect(m_pbTabs, &TabSurface::pointerLeft, this, [this] { hover(0); });
    connect(m_pbTabs, &TabSurface::tabPressed, this, &gnTab::SetSelectedTab);
    connect(m_pbTabs, &TabSurface::tabKeyed, this, &gnTab::SetSelectedTab);
    applyColors();
    layOut();
}

ControlStatus gnTab::AddTab(const QString& caption, const QString& key, const QString& toolTip,
                            const QString& before)
{
    ControlStatus status = m_tabs.add(caption, key, toolTip, before);
    if (status)
        layOut();
    return status;
}

void gnTab::RemoveTab(const TabRef& tab)
{
    const bool selects = m_tabs.remove(tab);
    layOut();
    if (!selects)
        return;
    signalSelection();
}

void gnTab::RemoveAllTabs()
{
    m_tabs.clear();
    layOut();
}

void gnTab::SetTabCaption(const TabRef& tab, const QString& caption)
{
    m_tabs.setCaption(tab, caption);
    layOut();
}

void gnTab::SetTabToolTip(const TabRef& tab, const QString& toolTip)
{
    m_tabs.setToolTip(tab, toolTip);
    takeToolTip();
}

QString gnTab::SelectedTabKey() const
{
    return m_tabs.selected() == 0 ? QString() : m_tabs.at(m_tabs.selected()).Key;
}

void gnTab::SetSelectedTab(const TabRef& tab)
{
    const bool selects = m_tabs.select(tab);
    m_first = firstToReveal(m_tabs.spans(), m_first, m_tabs.selected(), room());
    placeChildren();
    if (!selects)
        return;
    signalSelection();
}

void gnTab::setProperties(const TabProperties& properties)
{
    const bool hasOtherFont = properties.Font != m_properties.Font;
    m_properties = properties;
    if (hasOtherFont)
        setFont(m_properties.Font.value_or(QFont()));
    applyColors();
    layOut();
}

void gnTab::SetMousePointer(Qt::CursorShape shape)
{
    m_mousePointer = shape;
    applyCursor();
}

void gnTab::SetMouseIcon(const QPixmap& icon)
{
    m_mouseIcon = icon;
    applyCursor();
}

QSize gnTab::sizeHint() const
{
    QFont bold = font();
    bold.setBold(true);
    return {surfaceWidth(m_tabs.spans()),
            preferredSurfaceHeight(QFontMetrics(bold).height()) + 2 * barHeight};
}

QSize gnTab::minimumSizeHint() const
{
    return {std::min(sizeHint().width(), 2 * buttonsWidth), sizeHint().height()};
}

void gnTab::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), app::propertyColor(m_properties.BackColor, palette()));
}

void gnTab::resizeEvent(QResizeEvent*)
{
    layOut();
}

void gnTab::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        layOut();
    else if (event->type() == QEvent::PaletteChange)
        applyColors();
}

TabScrollButton* gnTab::makeButton(Qt::ArrowType arrow, const char* name, const QString& text)
{
    auto* const button = new TabScrollButton(arrow, this);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(text);
    button->setToolTip(text);
    button->hide();
    return button;
}

void gnTab::layOut()
{
    std::vector<int> widths;
    for (int index = 1; index <= m_tabs.count(); ++index)
        widths.push_back(captionWidth(m_tabs.at(index).Caption, font()));
    m_tabs.place(placeTabs(widths));
    m_first = usableFirst(m_tabs.spans(), m_first, room());
    placeChildren();
    updateGeometry();
    if (m_tabs.hovered() == 0)
        endHover(); // the tab under the pointer may have gone
}

void gnTab::placeChildren()
{
    const std::vector<TabSpan> spans = m_tabs.spans();
    const int inner = std::max(height() - 2 * barHeight, 0);
    m_pbTop->setGeometry(0, 0, width(), barHeight);
    m_pbBottom->setGeometry(0, barHeight + inner, width(), barHeight);
    m_pbTabs->setGeometry(-drawingOffset(spans, m_first), barHeight, surfaceWidth(spans), inner);
    m_pbTabs->setFocusPolicy(spans.empty() ? Qt::NoFocus : Qt::TabFocus);

    const bool wanted = needsButtons(spans, width());
    int left = width() - buttonsWidth;
    for (TabScrollButton* const button : {m_scrollLeft, m_scrollRight}) {
        button->setGeometry(left, barHeight, TabScrollButton::fixedWidth, inner);
        button->setVisible(wanted);
        button->raise();
        left += TabScrollButton::fixedWidth;
    }
    m_scrollLeft->setEnabled(canScrollLeft(spans, m_first));
    m_scrollRight->setEnabled(canScrollRight(spans, m_first, room()));

    m_pbTabs->update();
    if (m_pbTabs->underMouse())
        hover(m_pbTabs->tabAtPosition(m_pbTabs->mapFromGlobal(QCursor::pos())));
    else
        hover(0);
}

void gnTab::applyColors()
{
    const auto color = [this](quint32 number) { return app::propertyColor(number, palette()); };
    const QColor back = color(m_properties.BackColor);
    const QColor active = color(m_properties.ActiveTabBackColor);
    // The selected tab joins the bar on its pane's side.
    app::setPaneColor(m_pbTop, m_properties.AllignBottom ? active : back);
    app::setPaneColor(m_pbBottom, m_properties.AllignBottom ? back : active);
    for (TabScrollButton* const button : {m_scrollLeft, m_scrollRight})
        button->setColors(back, color(m_properties.TabTextColor));
    update();
}

void gnTab::applyCursor()
{
    if (m_mousePointer != Qt::BitmapCursor)
        m_pbTabs->setCursor(m_mousePointer);
    else if (!m_mouseIcon.isNull())
        m_pbTabs->setCursor(QCursor(m_mouseIcon));
    else
        m_pbTabs->unsetCursor();
}

void gnTab::signalSelection()
{
    m_pbTabs->announceSelection();
    const TabRecord tab = m_tabs.at(m_tabs.selected());
    Q_EMIT TabSelected(tab.Key, tab.Caption, m_tabs.selected());
}

void gnTab::scrollTo(int first)
{
    m_first = first;
    placeChildren();
}

void gnTab::hover(int index)
{
    if (!m_tabs.hover(index))
        return;
    m_pbTabs->update();
    if (index == 0) {
        endHover();
        return;
    }
    takeToolTip();
    m_tmrMouseOut.start();
}

void gnTab::takeToolTip()
{
    const int index = m_tabs.hovered();
    m_pbTabs->setToolTip(index == 0 ? QString() : m_tabs.at(index).ToolTip);
}

void gnTab::endHover()
{
    takeToolTip();
    m_tmrMouseOut.stop();
}

void gnTab::endHoverWhenOutside()
{
    if (QApplication::widgetAt(QCursor::pos()) != m_pbTabs)
        hover(0);
}

TabRoom gnTab::room() const
{
    return {.strip = width(), .buttons = buttonsWidth};
}

} // namespace quorvia::controls
