#include "app/RecentBand.h"

namespace quorvia::app {

namespace {

using platform::Tool;
using platform::ToolBand;
using platform::ToolKind;
using platform::ToolModel;
using platform::ToolValues;

/// Appends a tool with the icons of the tool `carrier`.
Tool* append(ToolModel& model, ToolBand& band, int id, const QString& name, const QString& carrier)
{
    Tool* const tool = band.append(id, name);
    if (const Tool* const icon = model.tool(carrier))
        tool->set(&ToolValues::pictures, icon->values().pictures);
    return tool;
}

Tool* appendDirectory(ToolModel& model, ToolBand& band, int index, const QString& directory)
{
    Tool* const tool = append(model, band, index, QStringLiteral("tRecent") + QString::number(index),
                              QStringLiteral("tFolderI"));
    tool->set(&ToolValues::literalCaption, true); // a name, and no caption of ours
    tool->set(&ToolValues::caption, directory);
    return tool;
}

} // namespace

void fillRecentDirectories(ToolModel& model, const QStringList& directories,
                           const std::function<bool(const QString&)>& exists, const QString& clearTool)
{
    ToolBand* const band = model.band(QLatin1String(recentDirectoriesBand));
    if (!band)
        return;
    band->clear();
    const QString first = directories.value(0);
    const bool isEmpty = first.isEmpty() && directories.value(1).isEmpty();
    Tool* const head = appendDirectory(model, *band, 0, first.isEmpty() ? QStringLiteral("(none)") : first);
    head->set(&ToolValues::visible, isEmpty || (!first.isEmpty() && exists(first)));
    for (int index = 1; index < directories.size() && !directories[index].isEmpty(); ++index) {
        if (exists(directories[index]))
            appendDirectory(model, *band, index, directories[index]);
    }
    band->append(band->toolCount(), QStringLiteral("bar"))->set(&ToolValues::kind, ToolKind::Separator);
    append(model, *band, band->toolCount(), QStringLiteral("miRecentClear"), clearTool)
        ->set(&ToolValues::caption, QStringLiteral("Clear Recent List"));
}

} // namespace quorvia::app
