// The pop-up menus of the list's panel as data: its bands, which of their tools can be used, and what a click
// on one means. Plain functions without a window.
#pragma once

#include <QString>

namespace quorvia::platform {
class ToolModel;
}

namespace quorvia::collections {

/// The menu of the list; its tools are made ready by GenPopupMenu().
inline constexpr char filesBand[] = "bFiles";
inline constexpr char addBand[] = "bAdd";
inline constexpr char removeBand[] = "bRemove";

/// Adds the panel's bands to `model`, each with its tools. That of the recent directories is empty until
/// app::fillRecentDirectories() fills it.
void addPanelBands(platform::ToolModel& model);

/// What the menu of the list depends on.
struct PanelFacts
{
    bool foldersInFront = true;
    int listCount = 0; ///< entries of the list
    int selCount = 0;  ///< how many of them are selected
    bool canEmail = false;
};

/// Shows and enables the tools of `bFiles` by their tags, and as many separators as part what is to be seen.
void GenPopupMenu(platform::ToolModel& model, const PanelFacts& facts);

enum class PanelAction {
    Panel,           ///< a command of the panel
    Convert,         ///< conversion of the selected files
    RecentDirectory, ///< opening of the directory of a tool of `bRecent`
    Main             ///< a command of the main window
};

/// What a tool stands for.
struct PanelCommand
{
    PanelAction action;
    QString argument; ///< the command; of Convert the extension, of RecentDirectory the tool
    bool operator==(const PanelCommand&) const = default;
};

/// What a click on the tool of that name, in any case, leads to. The name of a tool that is not the panel's
/// is a command of the main window.
PanelCommand panelCommand(const QString& tool);

/// The directory that the tool `name` of `bRecent` stands for; empty when there is no such tool.
QString recentDirectory(const platform::ToolModel& model, const QString& name);

} // namespace quorvia::collections
