#include "commands/WelcomePanel.h"

#include "app/Colors.h"
#include "app/Twips.h"
#include "commands/CommandState.h"
#include "commands/WelcomeLayout.h"
#include "commands/WelcomeLogo.h"
#include "platform/Contrast.h"
#include "platform/PaneBar.h"

#include <QApplication>
#include <QEvent>
#include <QScrollBar>

#include <utility>

namespace quorvia::commands {

namespace {

constexpr int headColor = 0x00AA5500;

/// Colours that stand out on `ground`.
platform::PaneLook lookOn(const QPalette& ground)
{
    constexpr double quiet = 0.75;
    constexpr double readable = 4.5;
    const QColor head = app::fromColorNumber(headColor);
    const bool dark = platform::contrast(ground.color(QPalette::Window), head) < readable;
    return {.headGround = head,
            .headText = Qt::white,
            .link = dark ? QColor(120, 190, 250) : head,
            .text = platform::tint(ground, quiet),
            .gap = 14};
}

} // namespace

WelcomePanel::WelcomePanel(QWidget* pWelcome, const WelcomeFacts& facts,
                           std::function<void(const QString&)> runTool)
    : QObject(pWelcome), m_pWelcome(pWelcome), m_runTool(std::move(runTool)),
      m_vBar(makeBar("vBar", tr("Welcome"))), m_vBack(makeBar("vBack", tr("Resources")))
{
    auto* const logo = new WelcomeLogo;
    logo->setObjectName(QStringLiteral("logo"));
    m_vBack->setFooter(logo);
    connect(logo, &WelcomeLogo::commandChosen, this, m_runTool, Qt::QueuedConnection);
    takeDesktopColors();
    build(facts);
    m_pWelcome->installEventFilter(this);
    place();
}

platform::PaneBar* WelcomePanel::makeBar(const char* name, const QString& accessibleName)
{
    auto* const bar = new platform::PaneBar(m_pWelcome);
    bar->setObjectName(QLatin1String(name));
    bar->setAccessibleName(accessibleName);
    connect(
        bar, &platform::PaneBar::itemClicked, this,
        [this](const QString&, const QString& tag) {
            if (!tag.isEmpty())
                m_runTool(tag);
        },
        Qt::QueuedConnection);
    return bar;
}

void WelcomePanel::build(const WelcomeFacts& facts)
{
    for (const auto& [bar, panes] :
         {std::pair{m_vBar, welcomePanes(facts)}, {m_vBack, resourcePanes(facts)}}) {
        bar->setUpdatesEnabled(false);
        bar->setPanes(panes);
        bar->setUpdatesEnabled(true);
    }
}

void WelcomePanel::setImagesOpened(int count)
{
    m_vBar->setItemText(QLatin1String(viewedItem), viewedText(count));
}

void WelcomePanel::setUpdate(bool visible)
{
    if (visible == m_updating)
        return;
    m_updating = visible;
    QWidget* const window = m_pWelcome->window();
    QWidget* const focused = window->focusWidget();
    if (!visible && m_pWelcome->isAncestorOf(focused)) {
        m_focused = focused;
        window->setFocus(); // else they went to whatever comes next
    }
    place();
    if (visible && m_focused && (!focused || focused == window))
        m_focused->setFocus();
    if (visible)
        m_focused.clear();
}

void WelcomePanel::place()
{
    const WelcomeColumns columns = layoutWelcome(app::inTwips(m_pWelcome->size()));
    m_vBar->setGeometry(app::toPixels(columns.bar));
    if (columns.back)
        m_vBack->setGeometry(app::toPixels(*columns.back));
    m_vBar->setVisible(m_updating);
    m_vBack->setVisible(m_updating && columns.back);
}

void WelcomePanel::takeDesktopColors()
{
    const QPalette desktop = QApplication::palette();
    QPalette colors = desktop;
    colors.setColor(QPalette::Window, desktop.color(QPalette::Base));
    colors.setColor(QPalette::WindowText, desktop.color(QPalette::Text));
    if (m_pWelcome->palette() != colors)
        m_pWelcome->setPalette(colors);
    for (platform::PaneBar* const bar : {m_vBar, m_vBack}) {
        bar->setLook(lookOn(colors));
        app::setDesktopColors(bar->verticalScrollBar());
    }
}

bool WelcomePanel::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        place();
    else if (event->type() == QEvent::PaletteChange)
        takeDesktopColors();
    return false;
}

} // namespace quorvia::commands
