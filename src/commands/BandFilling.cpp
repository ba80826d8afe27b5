#include "commands/BandFilling.h"

#include "app/mFile.h"
#include "app/RecentBand.h"

namespace quorvia::commands {

namespace {

using platform::Tool;
using platform::ToolBand;
using platform::ToolModel;
using platform::ToolValues;

constexpr QLatin1String filesBand("bFiles");
constexpr QLatin1String delayBand("bCustom");
constexpr QLatin1String noEntry("(none)");

/// Appends a tool with the icons of the designed tool `carrier`.
Tool* append(ToolModel& model, ToolBand& band, int id, const QString& name, const char* carrier)
{
    Tool* const tool = band.append(id, name);
    if (const Tool* const icon = model.tool(QLatin1String(carrier))) {
        tool->setPicture(0, icon->picture(0));
        tool->setPicture(2, icon->picture(2));
    }
    return tool;
}

/// Shows `text`, which is the name of a file or directory and no caption of ours.
void setName(Tool& tool, const QString& text)
{
    tool.set(&ToolValues::literalCaption, true);
    tool.set(&ToolValues::caption, text);
}

} // namespace

void fillBand(ToolModel& model, const ToolBand& band, const BandContents& contents)
{
    if (band.name() == QLatin1String(app::recentDirectoriesBand))
        app::fillRecentDirectories(model, contents.recentDirectories(), contents.directoryExists,
                                   QStringLiteral("tClear"));
    else if (band.name() == filesBand)
        fillFiles(model, contents.files());
    else if (band.name() == delayBand)
        fillDelay(model, contents.delay());
}

void fillFiles(ToolModel& model, const QList<ListedFile>& files)
{
    ToolBand* const band = model.band(filesBand);
    if (!band)
        return;
    band->clear();
    if (files.isEmpty())
        band->append(1, QStringLiteral("none0"))->set(&ToolValues::caption, noEntry);
    int index = 0;
    for (const ListedFile& file : files) {
        ++index;
        Tool* const tool =
            append(model, *band, index + 1, QStringLiteral("FileX") + QString::number(index), "tFileI");
        setName(*tool, file.displayName);
        tool->set(&ToolValues::tag, file.path);
    }
}

void fillImageMenu(ToolModel& model, const QString& file)
{
    ToolBand* const band = model.band(QLatin1String(imageMenuBand));
    if (!band)
        return;
    band->setTag(file);
    if (Tool* const tool = band->tool(QStringLiteral("miThumbDelete")))
        setName(*tool, QStringLiteral("Delete '%1'").arg(app::SplitPathName(file, 2)));
}

void fillDelay(ToolModel& model, const QString& delay)
{
    const QString name = QStringLiteral("tTime");
    if (Tool* const tool = model.tool(name))
        tool->set(&ToolValues::text, delay);
    const ToolBand* const band = model.band(delayBand);
    if (Tool* const shown = band ? band->tool(name) : nullptr)
        shown->set(&ToolValues::text, delay);
}

bool isCustomizeBand(const QString& band)
{
    return band == QLatin1String("SysCustomize");
}

} // namespace quorvia::commands
