#include "commands/DesignedTools.h"

#include <array>
#include <initializer_list>

namespace quorvia::commands {

namespace {

using platform::BandKind;
using platform::Tool;
using platform::ToolBand;
using platform::ToolKind;
using platform::ToolModel;
using platform::ToolValues;

struct ToolRow
{
    const char* name;
    const char* caption = "";
    const char* toolTip = "";
    const char* category = "";
    const char* icon = "";
    const char* subBand = "";
    ToolKind kind = ToolKind::Plain;
};

constexpr std::array toolRows = {
    ToolRow{.name = "tOpenx", .caption = "Open Image...", .icon = "open"},
    ToolRow{.name = "tRecent",
            .caption = "Recent Directories",
            .toolTip = "Recent Directories",
            .category = "Open",
            .icon = "recent",
            .subBand = "bRecent"},
    ToolRow{
        .name = "tSldAdvance", .caption = "&Advance", .toolTip = "Advance Slideshow", .category = "Slide"},
    ToolRow{
        .name = "tSldRandom", .caption = "&Randomize", .toolTip = "Randomize Slideshow", .category = "Slide"},
    ToolRow{
        .name = "tSldReverse", .caption = "&Reverse", .toolTip = "Reverse Slideshow", .category = "Slide"},
    ToolRow{.name = "tSep", .kind = ToolKind::Separator},
    ToolRow{.name = "tCustom",
            .caption = "Delay Settings",
            .toolTip = "Delay Settings",
            .icon = "delay",
            .subBand = "bCustom"},
    ToolRow{.name = "tTime", .caption = "Slideshow Delay", .kind = ToolKind::Combo},
    ToolRow{.name = "miWallpaperS", .caption = "Set Wallpaper (Stretch)", .category = "Imaging"},
    ToolRow{.name = "miWallpaperT", .caption = "Set Wallpaper (Tile)", .category = "Imaging"},
    ToolRow{.name = "miWallpaperC", .caption = "Set Wallpaper (Center)", .category = "Imaging"},
    ToolRow{.name = "miThumbFull", .caption = "Show Full-Screen", .icon = "fullscreen"},
    ToolRow{.name = "miThumbDelete", .caption = "Delete Image", .icon = "delete"},
    ToolRow{.name = "miFilm1", .caption = "Display '1' Row"},
    ToolRow{.name = "miFilm2", .caption = "Display '2' Rows"},
    ToolRow{.name = "sSep", .kind = ToolKind::Separator},
    ToolRow{.name = "miSep", .kind = ToolKind::Separator}, // the one that stands for "-" in a toolbar
    ToolRow{.name = "miInformation",
            .caption = "File Information",
            .category = "Information",
            .icon = "information"},
    ToolRow{.name = "tClear", .icon = "clear"},
    ToolRow{.name = "tFolderI", .icon = "folder"},
    ToolRow{.name = "tFileI", .icon = "file"},
};

constexpr std::array carrierIcons = {
    "next",     "previous",    "bestfit",       "actualsize", "fullscreen", "slideshow",    "zoomin",
    "zoomout",  "rotateclock", "rotatecounter", "open",       "save",       "wallpaper",    "pref",
    "filelist", "sldmode",     "copy",          "paste",      "print",      "edit",         "refresh",
    "delete",   "information", "website",       "resize",     "bevel",      "customresize", "thumbnail",
    "recent",   "delay",       "rename",        "scan",       "email",      "help"};

void setIcon(Tool& tool, const char* icon)
{
    tool.setPicture(0, QLatin1String(icon));
    tool.setPicture(2, QLatin1String(icon));
}

QString carrierName(const char* icon)
{
    return u'#' + QLatin1String(icon);
}

void addTool(ToolModel& model, const ToolRow& row)
{
    Tool* const tool = model.addTool(model.toolCount() + 1, QLatin1String(row.name));
    tool->set(&ToolValues::caption, QLatin1String(row.caption));
    tool->set(&ToolValues::toolTip, QLatin1String(row.toolTip));
    tool->set(&ToolValues::category, QLatin1String(row.category));
    tool->set(&ToolValues::subBand, QLatin1String(row.subBand));
    tool->set(&ToolValues::kind, row.kind);
    setIcon(*tool, row.icon);
}

void addBand(ToolModel& model, const char* name, std::initializer_list<const char*> tools)
{
    ToolBand* const band = model.addBand(QLatin1String(name), BandKind::PopUp, false);
    for (const char* const tool : tools)
        band->append(model.tool(QLatin1String(tool)));
}

} // namespace

void addDesignedTools(ToolModel& model)
{
    for (const ToolRow& row : toolRows)
        addTool(model, row);
    model.tool(QStringLiteral("tTime"))
        ->set(&ToolValues::choices, QStringLiteral("1,2,3,4,5,10,15,20,30,45,60").split(u','));
    for (const char* const icon : carrierIcons) {
        Tool* const carrier = model.addTool(model.toolCount() + 1, carrierName(icon));
        carrier->set(&ToolValues::category, QStringLiteral("Images"));
        setIcon(*carrier, icon);
    }

    addBand(model, "bOpen", {"tOpenx", "tRecent"});
    addBand(model, "bRecent", {});
    addBand(model, "bSlide", {"tSldAdvance", "tSldRandom", "tSldReverse", "tSep", "tCustom"});
    addBand(model, "bCustom", {"tTime"});
    addBand(model, "bFiles", {});
    addBand(model, "bWallpaper", {"miWallpaperS", "miWallpaperT", "miWallpaperC"});
    addBand(model, "bPlugins", {});
    addBand(model, "bFilmStrip",
            {"miThumbFull", "miThumbDelete", "miSep", "miFilm1", "miFilm2", "sSep", "miInformation"});
}

} // namespace quorvia::commands
