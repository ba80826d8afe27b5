#include "viewer/ShellVerb.h"

#include "app/Log.h"
#include "app/mFile.h"

namespace quorvia::viewer {

void runShellVerb(const QString& path, const char* verb)
{
    constexpr int showDefault = 10;
    QString failure;
    if (!app::ShellRun(path, showDefault, QString(), QString(), QLatin1String(verb), failure))
        app::WriteLog(QStringLiteral("Not run: %1: %2").arg(path, failure));
}

} // namespace quorvia::viewer
