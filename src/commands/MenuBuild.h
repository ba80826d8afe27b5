// Builds the context menu and the toolbar from the definition, and shows the context menu. Once a run of the
// program; a few milliseconds for a definition of usual size.
#pragma once

#include "commands/ShortcutTable.h"
#include "platform/ToolModel.h"

#include <QHash>
#include <QString>
#include <QStringView>

#include <functional>

namespace quorvia::commands {

/// What the build needs of the control that shows the bands. Lengths in twips.
class MenuHost
{
  public:
    virtual ~MenuHost() = default;

    virtual void setWidth(int width) = 0;
    virtual void setHeight(int height) = 0;
    /// Lays out the bands after a change. From then on a toolbar's size() is what it takes.
    virtual void recalculateLayout() = 0;
    virtual void show() = 0;
    /// Shows `band` as a menu at the mouse.
    virtual void popUp(platform::ToolBand* band) = 0;
};

/// What a build works on. All of it outlives the MenuBuild.
struct MenuBuildParts
{
    platform::ToolModel* model; ///< with the designed tools in it
    ShortcutTable* shortcuts;
    MenuHost* host;
    std::function<QString()> menuString; ///< the sections of the definition; empty for none
    std::function<QString()> toolbarString;
    std::function<bool()> postrelIsThere;
    std::function<double()> twipsPerPixelX; ///< of the screen
    std::function<void()> updateTools;      ///< brings all tools and the marks of the views up to date
};

class MenuBuild
{
  public:
    explicit MenuBuild(MenuBuildParts parts) : m_parts(std::move(parts)) {}

    /// Shows the context menu at the mouse when a build has been completed and `rebuild` is false. Otherwise
    /// builds, and shows nothing. Without a menu section nothing is built.
    void OpenMenuX(bool rebuild);
    /// True once a build has been completed.
    bool isBuilt() const { return m_built; }

    /// The item for sending by mail, when the tool for it is there; else "".
    QString GetInternalExtensionMenu() const;
    /// Its field for the toolbar, likewise; adds its shortcut then.
    QString GetInternalExtensionToolbar();
    /// Gives the tools that open a menu beside their command a drop-down part.
    void ToolbarFix();
    /// True when `name` occurs in the run-together names of all tools that there were at the first call.
    bool CheckImage(const QString& name);

    /// How many items of a section are built at most; the rest is left out, with a line in the log.
    static constexpr int mostItems = 10000;

  private:
    void build();
    void addItems(QStringView list, std::size_t level, platform::ToolBand* band);
    void addItem(QStringView item, std::size_t level, platform::ToolBand* band);
    platform::Tool* addTool(QStringView definition);
    void describe(platform::Tool& tool, const QList<QStringView>& fields);
    void buildToolbar(QString section, const QString& extension);
    void fillToolbar(QStringView section, platform::ToolBand* toolbar);
    platform::Tool* toolNamed(const QString& name) const;
    bool isFull(int items) const;

    MenuBuildParts m_parts;
    QHash<QString, platform::Tool*> m_fromMenu; ///< the first tool of each name that the menu section made
    QString m_toolNames;
    int m_identifier = 0; ///< of the next tool
    bool m_built = false;
};

} // namespace quorvia::commands
