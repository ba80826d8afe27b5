#include "system/ToolPaths.h"

#include "app/mFile.h"
#include "app/mWindowsAPI.h"
#include "app/Settings.h"

namespace quorvia::system {

namespace {

/// What the desktop's own list of programs says.
QString registeredPath(const QString& tool)
{
    const QString key = QStringLiteral("Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\") + tool;
    return app::RegReadValue(app::Root::LocalMachine, key, QString(), QString()).toString();
}

} // namespace

QString GetToolPath(const QString& tool, bool shortForm)
{
    using namespace app::common;
    const auto found = [&tool]() -> QString {
        for (const app::CommonSubkey& subkey : {ProgramPaths, ProgramAssoPaths, ProgramShortPaths,
                                                ProgramAssoPaths, ResourcePaths, ComponentPaths}) {
            if (QString path = app::readOfTool(subkey, tool); app::FileExists(path))
                return path;
        }
        for (const QString& path :
             {app::readOfTool(ProductIds, tool + QStringLiteral(" path")), registeredPath(tool)}) {
            if (app::FileExists(path))
                return path;
        }
        return {};
    }();
    return shortForm && !found.isEmpty() ? app::GetShortPath(found) : found;
}

} // namespace quorvia::system
