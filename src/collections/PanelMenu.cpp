#include "collections/PanelMenu.h"

#include "app/RecentBand.h"
#include "platform/ToolModel.h"

#include <algorithm>
#include <array>
#include <vector>

namespace quorvia::collections {

namespace {

using platform::BandKind;
using platform::Tool;
using platform::ToolBand;
using platform::ToolKind;
using platform::ToolModel;
using platform::ToolValues;

struct BandRow
{
    const char* name;
    const char* caption = "";
};

constexpr std::array bandRows = {
    BandRow{addBand, "Add"},       BandRow{filesBand, "Files"},
    BandRow{removeBand, "Remove"}, BandRow{app::recentDirectoriesBand, "Recent Directories"},
    BandRow{"bConvert"},           BandRow{"bEffects"},
    BandRow{"bSave", "Save"},      BandRow{"bOpen", "Open"},
};

struct ToolRow
{
    const char* band;
    const char* name;
    const char* caption = ""; ///< empty: a separator
    const char* tag = "";
    const char* icon = "";
    const char* subBand = "";
};

constexpr std::array toolRows = {
    ToolRow{.band = addBand, .name = "tAdd", .caption = "Add File(s)...", .icon = "file"},
    ToolRow{.band = addBand, .name = "tEnqueDir", .caption = "Enqueue Directory...", .icon = "folder"},
    ToolRow{.band = addBand,
            .name = "tEnqueDirAll",
            .caption = "Enqueue Directory (Include Sub-Directories)...",
            .icon = "folder"},

    ToolRow{.band = filesBand,
            .name = "miDelete",
            .caption = "Delete Selected Files",
            .tag = "select",
            .icon = "delete"},
    ToolRow{.band = filesBand, .name = "iSep4"},
    ToolRow{.band = filesBand,
            .name = "tConvert",
            .caption = "Convert Selected Image(s)",
            .tag = "select",
            .subBand = "bConvert"},
    ToolRow{.band = filesBand,
            .name = "miEmailImages",
            .caption = "Send Image(s) via Email",
            .tag = "select",
            .icon = "email"},
    ToolRow{.band = filesBand, .name = "iSep1"},
    ToolRow{.band = filesBand,
            .name = "tDelete",
            .caption = "Clear Selected Items",
            .tag = "select:playlist",
            .icon = "playlistremove"},
    ToolRow{
        .band = filesBand, .name = "tClear", .caption = "Clear Playlist", .tag = "playlist", .icon = "clear"},
    ToolRow{.band = filesBand, .name = "iSep2"},
    ToolRow{.band = filesBand,
            .name = "miAdd",
            .caption = "Add Files to Playlist",
            .tag = "playlist",
            .icon = "playlistadd",
            .subBand = addBand},
    ToolRow{.band = filesBand,
            .name = "tMoveSelPlaylist",
            .caption = "Move Selected Items to Playlist",
            .tag = "select:filelist",
            .icon = "playlistadd"},
    ToolRow{.band = filesBand,
            .name = "tMovePlaylist",
            .caption = "Move All Files to Playlist",
            .tag = "filelist",
            .icon = "playlist"},
    ToolRow{.band = filesBand, .name = "iSep3"},
    ToolRow{.band = filesBand,
            .name = "miRecent",
            .caption = "Recent Directories",
            .tag = "filelist",
            .icon = "recent",
            .subBand = app::recentDirectoriesBand},

    ToolRow{.band = removeBand,
            .name = "tDelete",
            .caption = "Clear Selected Items",
            .tag = "select",
            .icon = "playlistremove"},
    ToolRow{.band = removeBand, .name = "tClear", .caption = "Clear Playlist", .icon = "clear"},

    ToolRow{.band = "bConvert", .name = "tJPG", .caption = "Convert to JPG"},
    ToolRow{.band = "bConvert", .name = "tBMP", .caption = "Convert to BMP"},
    ToolRow{.band = "bConvert", .name = "tPIC", .caption = "Convert to PIC"},
    ToolRow{.band = "bConvert", .name = "tPNG", .caption = "Convert to PNG"},
    ToolRow{.band = "bConvert", .name = "tTIF", .caption = "Convert to TIF"},
    ToolRow{.band = "bConvert", .name = "tPCX", .caption = "Convert to PCX"},
    ToolRow{.band = "bConvert", .name = "tTGA", .caption = "Convert to TGA"},

    ToolRow{.band = "bSave", .name = "tSavePlaylist", .caption = "Save Playlist", .icon = "save"},
    ToolRow{.band = "bSave", .name = "tSaveFile", .caption = "Save Playlist as File", .icon = "export"},

    ToolRow{.band = "bOpen", .name = "tPlaylistArray", .caption = "[filename]", .icon = "playlist"},
    ToolRow{
        .band = "bOpen", .name = "tOpenPlaylistFile", .caption = "Open Playlist from File", .icon = "import"},
};

struct CommandRow
{
    const char* tool; ///< in lower case
    PanelAction action;
    const char* argument;
};

constexpr std::array commandRows = {
    CommandRow{"tsavefile", PanelAction::Panel, "saveplaylist"},
    CommandRow{"topenplaylistfile", PanelAction::Panel, "openplaylist"},
    // No command bears this name: an open playlist is always saved.
    CommandRow{"tsaveplaylist", PanelAction::Panel, "saveplaylistinternal"},
    CommandRow{"tsave", PanelAction::Panel, "saveplaylistinternal"},
    CommandRow{"tclear", PanelAction::Panel, "ClearPlaylist"},
    CommandRow{"tdelete", PanelAction::Panel, "clearselected"},
    CommandRow{"tenquedir", PanelAction::Panel, "enqueuedir"},
    CommandRow{"tenquedirall", PanelAction::Panel, "enqueuedirall"},
    CommandRow{"tadd", PanelAction::Panel, "addfilestoplaylist"},
    CommandRow{"tmoveplaylist", PanelAction::Panel, "movefilelisttoplaylist"},
    CommandRow{"tmoveselplaylist", PanelAction::Panel, "moveselectedtoplaylist"},
    CommandRow{"midelete", PanelAction::Panel, "deleteselectedfiles"},
    CommandRow{"miemailimages", PanelAction::Panel, "emailimages"},
    CommandRow{"tjpg", PanelAction::Convert, "jpg"},
    CommandRow{"tgif", PanelAction::Convert, "gif"},
    CommandRow{"tbmp", PanelAction::Convert, "bmp"},
    CommandRow{"tpng", PanelAction::Convert, "png"},
    CommandRow{"tpic", PanelAction::Convert, "pic"},
    CommandRow{"ttif", PanelAction::Convert, "tif"},
    CommandRow{"tpcx", PanelAction::Convert, "pcx"},
    CommandRow{"ttga", PanelAction::Convert, "tga"},
};

void setIcon(Tool& tool, const char* icon)
{
    tool.setPicture(0, QLatin1String(icon));
    tool.setPicture(2, QLatin1String(icon));
}

void addRow(ToolModel& model, const ToolRow& row)
{
    ToolBand* const band = model.band(QLatin1String(row.band));
    // Of one name there are tools with other tags on other bands, so each stands on its band alone.
    Tool* const tool = band->append(band->toolCount() + 1, QLatin1String(row.name));
    const QLatin1String caption(row.caption);
    tool->set(&ToolValues::kind, caption.isEmpty() ? ToolKind::Separator : ToolKind::Plain);
    tool->set(&ToolValues::caption, caption);
    tool->set(&ToolValues::tag, QLatin1String(row.tag));
    tool->set(&ToolValues::subBand, QLatin1String(row.subBand));
    setIcon(*tool, row.icon);
}

bool isSeparator(const Tool& tool)
{
    return tool.values().kind == ToolKind::Separator;
}

/// Which of the separators among `tools` part something that is visible: none at an end, none beside another.
std::vector<bool> partingSeparators(const ToolBand& band)
{
    std::vector<bool> parting(std::size_t(band.toolCount()), false);
    int waiting = -1;
    bool isFirst = true;
    for (int index = 0; index < band.toolCount(); ++index) {
        const Tool& tool = *band.toolAt(index);
        if (isSeparator(tool)) {
            if (!isFirst && waiting < 0)
                waiting = index;
        } else if (tool.values().visible) {
            isFirst = false;
            if (waiting >= 0)
                parting[std::size_t(waiting)] = true;
            waiting = -1;
        }
    }
    return parting;
}

} // namespace

void addPanelBands(ToolModel& model)
{
    for (const BandRow& row : bandRows)
        model.addBand(QLatin1String(row.name), BandKind::PopUp)->setCaption(QLatin1String(row.caption));
    for (const ToolRow& row : toolRows)
        addRow(model, row);
    // Whose icons the tools of the recent directories get.
    setIcon(*model.addTool(0, QStringLiteral("tFolderI")), "folder");
    setIcon(*model.addTool(0, QStringLiteral("tClearI")), "clear");
}

void GenPopupMenu(ToolModel& model, const PanelFacts& facts)
{
    const ToolBand* const band = model.band(QLatin1String(filesBand));
    if (!band)
        return;
    const bool canSelect = facts.listCount > 0 && facts.selCount > 0;
    for (int index = 0; index < band->toolCount(); ++index) {
        Tool& tool = *band->toolAt(index);
        const QString tag = tool.values().tag;
        if (tag.contains(QLatin1String("playlist")))
            tool.set(&ToolValues::visible, !facts.foldersInFront);
        if (tag.contains(QLatin1String("filelist")))
            tool.set(&ToolValues::visible, facts.foldersInFront);
        if (tag.startsWith(QLatin1String("select")))
            tool.set(&ToolValues::enabled, canSelect);
    }
    if (Tool* const email = band->tool(QStringLiteral("miEmailImages")))
        email->set(&ToolValues::visible, facts.canEmail);
    const std::vector<bool> parting = partingSeparators(*band);
    for (int index = 0; index < band->toolCount(); ++index) {
        Tool& tool = *band->toolAt(index);
        if (isSeparator(tool))
            tool.set(&ToolValues::visible, parting[std::size_t(index)]);
    }
}

PanelCommand panelCommand(const QString& tool)
{
    const QString name = tool.toLower();
    if (name.startsWith(QLatin1String("trecen")))
        return {PanelAction::RecentDirectory, tool};
    const auto found = std::find_if(commandRows.begin(), commandRows.end(), [&name](const CommandRow& row) {
        return name == QLatin1String(row.tool);
    });
    if (found == commandRows.end())
        return {PanelAction::Main, tool};
    return {found->action, QLatin1String(found->argument)};
}

QString recentDirectory(const ToolModel& model, const QString& name)
{
    const ToolBand* const band = model.band(QLatin1String(app::recentDirectoriesBand));
    const Tool* const tool = band ? band->tool(name) : nullptr;
    return tool ? tool->values().caption : QString();
}

} // namespace quorvia::collections
