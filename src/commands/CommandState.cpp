#include "commands/CommandState.h"

#include "app/SlideMode.h"
#include "platform/ToolModel.h"

#include <algorithm>
#include <array>

namespace quorvia::commands {

namespace {

using Facts = CommandFacts;
/// What a routine gives to one half of a tool's state; nothing where it leaves it alone.
using Half = std::optional<bool>;
using Rule = Half (*)(const Facts&);

enum class Routine { Toolbar, Views };

struct Row
{
    const char* name;
    Rule enabled;
    Rule checked;
    Routine routine = Routine::Toolbar;
};

constexpr Rule kept = nullptr;

Half image(const Facts& facts)
{
    return facts.hasImage;
}

Half list(const Facts& facts)
{
    return facts.listNonEmpty;
}

Half fit(const Facts& facts)
{
    return facts.hasImage ? Half(facts.bestFit) : Half();
}

Half actual(const Facts& facts)
{
    return facts.hasImage ? Half(!facts.bestFit) : Half();
}

Half slides(const Facts& facts)
{
    return facts.slideRunning;
}

Half listBand(const Facts& facts)
{
    return facts.listShown;
}

Half tabs(const Facts& facts)
{
    return !facts.interfaceHidden;
}

template <int rows>
Half film(const Facts& facts)
{
    return facts.rows == rows;
}

template <app::SlideMode mode>
Half slideMode(const Facts& facts)
{
    return app::slideModeOf(facts.slidemode) == mode;
}

constexpr char imageTab[] = "Image";
constexpr char informationTab[] = "Information";
constexpr char filmstripTab[] = "Filmstrip";

template <const char* tab>
Half view(const Facts& facts)
{
    return !facts.interfaceHidden && facts.selectedTab == QLatin1String(tab);
}

constexpr std::array rows = {
    Row{"miBestFit", image, fit},
    Row{"miActualSize", image, actual},
    Row{"miFullScreen", image, kept},
    Row{"miInformation", image, kept},
    Row{"miSave", image, kept},
    Row{"miDelete", image, kept},
    Row{"miWallpaper", image, kept},
    Row{"miWallpaperMenu", image, kept},
    Row{"miWallpaperS", image, kept},
    Row{"miWallpaperT", image, kept},
    Row{"miWallpaperC", image, kept},
    Row{"miEdit", image, kept},
    Row{"miZoomIn", image, kept},
    Row{"miZoomOut", image, kept},
    Row{"miCopy", image, kept},
    Row{"miPrint", image, kept},
    Row{"miRotateClock", image, kept},
    Row{"miRotateCounter", image, kept},
    Row{"miResizeMenu", image, kept},
    Row{"miCustomResize", image, kept},
    Row{"miBevel", image, kept},
    Row{"miRefresh", image, kept},
    Row{"miEmailImage", image, kept},
    Row{"miFilm1", kept, film<1>},
    Row{"miFilm2", kept, film<2>},
    Row{"miFilm3", kept, film<3>},
    Row{"miSlideShow", list, slides},
    Row{"miSlideShowMenu", kept, slides},
    Row{"miNext", list, kept},
    Row{"miPrevious", list, kept},
    Row{"tSldAdvance", list, slideMode<app::SlideMode::Advance>},
    Row{"tSldRandom", list, slideMode<app::SlideMode::Random>},
    Row{"tSldReverse", list, slideMode<app::SlideMode::Reverse>},
    Row{"miFileList", kept, listBand},
    Row{"miViewNormal", kept, view<imageTab>, Routine::Views},
    Row{"miViewInformation", kept, view<informationTab>, Routine::Views},
    Row{"miViewFilmstrip", kept, view<filmstripTab>, Routine::Views},
    Row{"miInterfaceTabs", kept, tabs, Routine::Views},
};

/// Tools on a band that does not follow them.
struct BandCopies
{
    const char* band;
    std::array<const char*, 3> tools;
};

constexpr BandCopies bandCopies[] = {{"bWallpaper", {"miWallpaperS", "miWallpaperC", "miWallpaperT"}},
                                     {"bSlide", {"tSldAdvance", "tSldRandom", "tSldReverse"}},
                                     {"bFilmStrip", {"miFilm1", "miFilm2", "miInformation"}}};

const Row* rowOf(const QString& name)
{
    const auto* const row = std::find_if(
        rows.begin(), rows.end(), [&name](const Row& each) { return name == QLatin1String(each.name); });
    return row == rows.end() ? nullptr : row;
}

Half resultOf(Rule rule, const Facts& facts)
{
    return rule ? rule(facts) : Half();
}

void give(platform::Tool* tool, const Row& row, const Facts& facts)
{
    if (!tool)
        return;
    if (const Half enabled = resultOf(row.enabled, facts))
        tool->set(&platform::ToolValues::enabled, *enabled);
    if (const Half checked = resultOf(row.checked, facts))
        tool->set(&platform::ToolValues::checked, *checked);
}

void apply(const platform::ToolModel& model, const Facts& facts, Routine routine)
{
    for (const Row& row : rows) {
        if (row.routine == routine)
            give(model.tool(QLatin1String(row.name)), row, facts);
    }
}

} // namespace

void applyState(platform::ToolModel& model, const CommandFacts& facts)
{
    apply(model, facts, Routine::Toolbar);
    for (const BandCopies& each : bandCopies) {
        const platform::ToolBand* const band = model.band(QLatin1String(each.band));
        for (const char* name : each.tools) {
            if (const Row* const row = band ? rowOf(QLatin1String(name)) : nullptr)
                give(band->tool(QLatin1String(name)), *row, facts);
        }
    }
}

void applyViewMarks(platform::ToolModel& model, const CommandFacts& facts)
{
    apply(model, facts, Routine::Views);
}

bool hasImage(bool fileExists, const QString& selectedTab)
{
    return fileExists &&
           (selectedTab == QLatin1String(imageTab) || selectedTab == QLatin1String(informationTab) ||
            selectedTab == QLatin1String(filmstripTab));
}

bool showsWelcome(const CommandFacts& facts)
{
    return !facts.hasImage;
}

QString viewedText(int imageOpenCount)
{
    return QString::number(imageOpenCount) + QStringLiteral(" total images have been viewed.");
}

int listUpdateInterval(bool listShown)
{
    constexpr int shown = 3000;
    constexpr int hidden = 12000;
    return listShown ? shown : hidden;
}

} // namespace quorvia::commands
