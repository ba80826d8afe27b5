#include "viewer/WelcomeHost.h"

#include "app/Settings.h"
#include "commands/FeedbackLink.h"
#include "commands/WelcomePanel.h"
#include "commands/WelcomeTips.h"
#include "controls/uLink.h"
#include "system/SiblingTools.h"
#include "system/ToolPaths.h"
#include "viewer/frmImageView.h"

namespace quorvia::viewer {

namespace {

QStringList missingTools()
{
    QStringList missing;
    for (const system::SiblingTool& tool : system::siblingTools()) {
        if (const QString title = QLatin1String(tool.title); system::GetToolPath(title, false).isEmpty())
            missing.append(title);
    }
    return missing;
}

} // namespace

void WelcomeHost::show(bool visible)
{
    Panes* const panes = m_window.panes();
    if (!visible && panes->pWelcome()->isAncestorOf(m_window.focusWidget()))
        m_window.setFocus(); // the keys are the window's again
    panes->showWelcome(visible);
    if (visible && m_panel)
        m_panel->setImagesOpened(app::read(app::setting::ImageOpenCount));
    else if (visible && !m_window.isLoading())
        build();
}

void WelcomeHost::build()
{
    constexpr int tips = 5;
    QWidget* const pWelcome = m_window.panes()->pWelcome();
    if (m_panel || pWelcome->isHidden())
        return;
    const commands::WelcomeFacts facts{
        .missingTools = missingTools(),
        .imagesOpened = app::read(app::setting::ImageOpenCount),
        .tips = commands::drawTips(tips, m_lastTip, [] { return commands::unitsFromClock(); })};
    m_panel =
        new commands::WelcomePanel(pWelcome, facts, [this](const QString& name) { m_window.RunTool(name); });
}

void WelcomeHost::setUpdate(bool visible)
{
    if (m_panel)
        m_panel->setUpdate(visible);
}

void fillLink(controls::uLink& link)
{
    namespace setting = app::setting;
    const commands::FeedbackLink now =
        commands::feedbackLink({.latestVersion = app::read(setting::LatestVersion),
                                .dynamicLink = app::read(setting::DynamicLink),
                                .linkPreview = app::read(setting::LinkPreview),
                                .running = app::productVersion()});
    if (now.shown) {
        link.SetCaption(now.shown->caption);
        link.SetLinkURL(now.shown->address);
        link.show();
    }
    if (now.nextPreview)
        app::save(setting::LinkPreview, *now.nextPreview);
}

} // namespace quorvia::viewer
