#include "viewer/InterfaceTools.h"

#include "app/Twips.h"
#include "commands/DesignedTools.h"
#include "output/Slideshow.h"
#include "platform/ToolControl.h"
#include "platform/ToolMenu.h"
#include "system/ToolPaths.h"

namespace quorvia::viewer {

namespace {

constexpr char delayTool[] = "tTime";

bool postrelIsThere()
{
    return !system::GetToolPath(QStringLiteral("postrel"), false).isEmpty();
}

} // namespace

InterfaceTools::InterfaceTools(Parts parts)
    : QObject(parts.ab1), m_parts(std::move(parts)), m_file(m_parts.ab1->window()),
      m_build({.model = m_parts.ab1->model(),
               .shortcuts = &m_shortcuts,
               .host = this,
               .menuString = [this] { return m_file.MenuString(); },
               .toolbarString = [this] { return m_file.ToolbarString(); },
               .postrelIsThere = postrelIsThere,
               .twipsPerPixelX = [this] { return app::twipsPerPixel / m_parts.ab1->devicePixelRatioF(); },
               .updateTools = [this] { m_parts.updateToolbar(); }})
{
    platform::ToolModel* const model = m_parts.ab1->model();
    commands::addDesignedTools(*model);
    // The control's own menu for arranging itself, in whose place the context menu opens.
    model->addBand(QStringLiteral("SysCustomize"), platform::BandKind::PopUp);
    // Queued: a command lets events run, and the menu that it was chosen from still handles its key or click.
    connect(
        model, &platform::ToolModel::ToolClick, this, [this](const QString& name) { m_parts.runTool(name); },
        Qt::QueuedConnection);
    connect(model, &platform::ToolModel::BandOpen, this, &InterfaceTools::openBand);
    connect(model, &platform::ToolModel::BandClose, this,
            [this](const platform::ToolBand* band) { m_parts.slideshow->bandCloses(band->name()); });
    connect(model, &platform::ToolModel::TextChange, this,
            [this](platform::Tool* tool) { followDelay(tool, false); });
    connect(model, &platform::ToolModel::SelectionChange, this,
            [this](platform::Tool* tool) { followDelay(tool, true); });
}

void InterfaceTools::apply(const commands::CommandFacts& facts)
{
    commands::applyState(*m_parts.ab1->model(), facts);
}

void InterfaceTools::applyViewMarks(const commands::CommandFacts& facts)
{
    commands::applyViewMarks(*m_parts.ab1->model(), facts);
}

QString InterfaceTools::recentDirectory(const QString& name) const
{
    const platform::Tool* const tool = toolOn("bRecent", name);
    return tool ? tool->values().caption : QString();
}

QString InterfaceTools::listedFile(const QString& name) const
{
    const platform::Tool* const tool = toolOn("bFiles", name);
    return tool ? tool->values().tag : QString();
}

void InterfaceTools::openImageMenu(const QString& file)
{
    commands::fillImageMenu(*m_parts.ab1->model(), file);
    m_parts.ab1->popUp(QLatin1String(commands::imageMenuBand));
}

QString InterfaceTools::imageOfMenu() const
{
    const platform::ToolBand* const band = m_parts.ab1->model()->band(QLatin1String(commands::imageMenuBand));
    return band ? band->tag() : QString();
}

void InterfaceTools::openMenuByKeys(QPoint at)
{
    platform::ToolMenu* const menus = m_parts.ab1->menus();
    if (!isBuilt())
        OpenMenuX(false); // shows nothing yet, like a right click
    else if (menus->popUp(QStringLiteral("NewImage"), at))
        menus->chooseFirst();
}

platform::Tool* InterfaceTools::toolOn(const char* band, const QString& name) const
{
    const platform::ToolBand* const found = m_parts.ab1->model()->band(QLatin1String(band));
    return found ? found->tool(name) : nullptr;
}

void InterfaceTools::openBand(platform::ToolBand* band, bool& cancel)
{
    if (commands::isCustomizeBand(band->name())) {
        cancel = true;
        OpenMenuX(false);
        return;
    }
    m_parts.slideshow->bandOpens(band->name());
    commands::fillBand(*m_parts.ab1->model(), *band, m_parts.contents);
}

void InterfaceTools::followDelay(platform::Tool* tool, bool chosen)
{
    if (tool->name() != QLatin1String(delayTool))
        return;
    const QString text = tool->values().text;
    const QString said = chosen ? m_parts.slideshow->chooseDelay(text) : m_parts.slideshow->typeDelay(text);
    tool->set(&platform::ToolValues::text, said);
}

void InterfaceTools::setWidth(int width)
{
    m_parts.ab1->setWidthInTwips(width);
}

void InterfaceTools::setHeight(int height)
{
    m_parts.ab1->setHeightInTwips(height);
}

void InterfaceTools::recalculateLayout()
{
    m_parts.ab1->recalculateLayout();
}

void InterfaceTools::show()
{
    m_parts.ab1->show();
    m_parts.placePanes();
}

void InterfaceTools::popUp(platform::ToolBand* band)
{
    m_parts.ab1->popUp(band->name());
}

} // namespace quorvia::viewer
