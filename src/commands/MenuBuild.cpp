#include "commands/MenuBuild.h"

#include "app/Log.h"
#include "app/mWindowsAPI.h"

#include <QStringTokenizer>

#include <array>

namespace quorvia::commands {

namespace {

using platform::BandKind;
using platform::Tool;
using platform::ToolBand;
using platform::ToolKind;
using platform::ToolValues;

constexpr int firstIdentifier = 1000;
constexpr int extensionPixels = 32; // of one more button on the toolbar
constexpr int leastOwnWidth = 100;  // twips; a toolbar that is not wider has not been laid out

/// How the items of one level of the menu are told apart, and what parts an item from its children.
struct Level
{
    QChar separator;
    QChar opener;
};

constexpr std::array levels = {Level{u'|', u'>'}, Level{u',', u'%'}, Level{u'*', QChar::Null}};

/// Puts the pieces of the program itself in the place of their names.
void substitute(QString& section, const QString& internalExtensions)
{
    section.remove(QStringLiteral("[extensions]"));
    section.replace(QStringLiteral("[InternalExtensions]"), internalExtensions);
}

} // namespace

void MenuBuild::OpenMenuX(bool rebuild)
{
    if (rebuild || !m_built)
        build();
    else
        m_parts.host->popUp(m_parts.model->band(QStringLiteral("NewImage")));
}

void MenuBuild::build()
{
    QString menu = m_parts.menuString();
    QString toolbar = m_parts.toolbarString(); // even without a menu: each section reports for itself
    if (menu.isEmpty())
        return;
    m_identifier = firstIdentifier;
    m_fromMenu.clear();
    ToolBand* const context = m_parts.model->addBand(QStringLiteral("NewImage"), BandKind::PopUp);
    fillShortcuts(*m_parts.shortcuts, fixedShortcuts());
    substitute(menu, GetInternalExtensionMenu());
    const QString extension = GetInternalExtensionToolbar();
    if (menu.contains(levels[0].separator))
        addItems(menu, 0, context);
    ToolbarFix();
    if (!toolbar.isEmpty())
        buildToolbar(std::move(toolbar), extension);
    m_parts.updateTools();
    m_built = true;
}

void MenuBuild::addItems(QStringView list, std::size_t level, ToolBand* band)
{
    for (const QStringView item : qTokenize(list, levels.at(level).separator)) {
        if (isFull(m_identifier - firstIdentifier))
            return;
        addItem(item, level, band);
    }
}

void MenuBuild::addItem(QStringView item, std::size_t level, ToolBand* band)
{
    const QChar opener = levels.at(level).opener;
    const qsizetype at = opener.isNull() ? -1 : item.indexOf(opener);
    if (at < 0) {
        band->append(addTool(item));
        return;
    }
    const QStringView definition = item.first(at);
    Tool* const parent = addTool(definition);
    ToolBand* const children =
        m_parts.model->addBand(QStringLiteral("mnu") + definition.toString(), BandKind::PopUp);
    addItems(item.sliced(at + 1), level + 1, children);
    parent->set(&ToolValues::subBand, children->name());
    band->append(parent);
}

Tool* MenuBuild::addTool(QStringView definition)
{
    // The padding gives every definition six fields, and one that names no tool a name of its own.
    const QString line = definition.toString() + QStringLiteral(":miSep") + QString::number(m_identifier) +
                         QStringLiteral("::::");
    const QList<QStringView> fields = QStringView(line).split(u':');
    const QString name = fields[1].toString();
    Tool* const tool = m_parts.model->addTool(m_identifier, name);
    if (!m_fromMenu.contains(name))
        m_fromMenu.insert(name, tool);
    if (line.startsWith(u'-'))
        tool->set(&ToolValues::kind, ToolKind::Separator);
    else
        describe(*tool, fields);
    ++m_identifier;
    return tool;
}

void MenuBuild::describe(Tool& tool, const QList<QStringView>& fields)
{
    const QString caption = fields[0].toString();
    const QString icon = fields[2].toString();
    const QString subBand = fields[4].toString();
    const QString toolTip = fields[5].toString();
    tool.set(&ToolValues::caption, caption);
    tool.set(&ToolValues::checked, false);
    if (const Tool* const carrier = CheckImage(icon) ? m_parts.model->tool(icon) : nullptr) {
        tool.setPicture(0, carrier->picture(0));
        tool.setPicture(2, carrier->picture(2));
    }
    if (subBand.size() >= 2) {
        tool.set(&ToolValues::subBand, subBand);
        tool.set(&ToolValues::tag, icon);
    }
    tool.set(&ToolValues::toolTip, toolTip.isEmpty() ? caption : toolTip);
}

void MenuBuild::buildToolbar(QString section, const QString& extension)
{
    const double extraWidth =
        double(extension.count(levels[0].separator)) * extensionPixels * m_parts.twipsPerPixelX();
    section.replace(QStringLiteral("[num]"), QString::number(qRound(extraWidth)));
    substitute(section, extension);
    if (ToolBand* const designed = m_parts.model->band(QStringLiteral("bMain"))) {
        designed->clear();
        designed->setVisible(false);
    }
    ToolBand* const toolbar = m_parts.model->addBand(QStringLiteral("Toolbar"), BandKind::Toolbar);
    fillToolbar(section, toolbar);
    const QString width = section.section(levels[0].separator, 0, 0);
    if (const int number = app::settingNumber(width, -1); number >= 0)
        m_parts.host->setWidth(number);
    m_parts.host->recalculateLayout();
    if (Tool* const slideShow = toolbar->tool(QStringLiteral("miSlideShowMenu")))
        slideShow->set(&ToolValues::kind, ToolKind::Plain);
    if (const int own = toolbar->size().width(); own > leastOwnWidth)
        m_parts.host->setWidth(own);
    toolbar->setVisible(true);
    m_parts.host->setHeight(toolbar->size().height());
    m_parts.host->show();
}

void MenuBuild::fillToolbar(QStringView section, ToolBand* toolbar)
{
    int field = 0;
    for (const QStringView name : qTokenize(section, levels[0].separator)) {
        if (isFull(field))
            return;
        if (field++ > 0)
            toolbar->append(toolNamed(name == u"-" ? QStringLiteral("miSep") : name.toString()));
    }
}

QString MenuBuild::GetInternalExtensionMenu() const
{
    return m_parts.postrelIsThere() ? QStringLiteral("Send Image via E-mail:miEmailImage:#email|")
                                    : QString();
}

QString MenuBuild::GetInternalExtensionToolbar()
{
    if (!m_parts.postrelIsThere())
        return QString();
    fillShortcuts(*m_parts.shortcuts, mailShortcut());
    return QStringLiteral("miEmailImage|");
}

void MenuBuild::ToolbarFix()
{
    for (const char* const name : {"miSlideShowMenu", "miOpenMenu", "miWallpaperMenu", "miFilelistMenu"}) {
        if (Tool* const tool = m_parts.model->tool(QLatin1String(name)))
            tool->set(&ToolValues::kind, ToolKind::DropDown);
    }
}

bool MenuBuild::CheckImage(const QString& name)
{
    if (m_toolNames.isEmpty()) {
        for (int index = 0; index < m_parts.model->toolCount(); ++index)
            m_toolNames += m_parts.model->toolAt(index)->name();
    }
    return m_toolNames.contains(name);
}

Tool* MenuBuild::toolNamed(const QString& name) const
{
    if (name.isEmpty())
        return nullptr;
    // The menu's own comes before a designed one of that name, which has no icon of the definition's.
    Tool* const own = m_fromMenu.value(name);
    return own ? own : m_parts.model->tool(name);
}

bool MenuBuild::isFull(int items) const
{
    if (items == mostItems)
        app::WriteLog(QStringLiteral("The definition has too many items; the rest of them is left out"));
    return items >= mostItems;
}

} // namespace quorvia::commands
