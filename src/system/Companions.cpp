#include "system/Companions.h"

#include "app/Settings.h"
#include "platform/Shell.h"
#include "system/ToolPaths.h"

#include <algorithm>

namespace quorvia::system {

namespace {

QString mailTool()
{
    return QStringLiteral("postrel");
}

} // namespace

void publishCompanions(const QStringList& directories)
{
    if (!GetToolPath(mailTool(), false).isEmpty())
        return;
    if (const QString tool = platform::findProgram(directories, mailTool()); !tool.isEmpty())
        app::saveOfTool(app::common::ComponentPaths, mailTool(), tool);
}

void withdrawCompanions(const QStringList& directories)
{
    const QString stored = app::readOfTool(app::common::ComponentPaths, mailTool());
    if (std::any_of(directories.begin(), directories.end(),
                    [&](const QString& directory) { return stored == directory + mailTool(); }))
        app::removeOfTool(app::common::ComponentPaths, mailTool());
}

} // namespace quorvia::system
