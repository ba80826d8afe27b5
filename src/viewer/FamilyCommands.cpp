#include "viewer/FamilyCommands.h"

#include "platform/NetworkState.h"
#include "system/SiblingTools.h"
#include "system/UpdateCheck.h"
#include "system/WebCommands.h"
#include "viewer/frmImageView.h"
#include "viewer/ShellVerb.h"

namespace quorvia::viewer {

namespace {

platform::ShellCode start(const QString& program, const QStringList& arguments)
{
    return platform::startProgram(program, arguments, QString());
}

system::UpdateSinks updateSinks()
{
    return {.today = &QDate::currentDate, .isConnected = platform::isConnected, .start = start};
}

system::SiblingSinks siblingSinks(frmImageView* window)
{
    return {.owner = window,
            .currentFile = [window] { return window->currentFile(); },
            .start = start,
            .runTool = [window](const QString& name) { window->RunTool(name); }};
}

} // namespace

void addFamilyCommands(std::vector<commands::Tool>& table, frmImageView& window)
{
    frmImageView* const w = &window;
    for (const char* command : system::webCommands())
        table.push_back(
            {command, [command] { runShellVerb(system::webAddressOf(QLatin1String(command)), "open"); }});
    for (const system::SiblingTool& tool : system::siblingTools())
        table.push_back({tool.runCommand, [w, &tool] { system::runSibling(tool, siblingSinks(w)); }});
    table.push_back({"miAutoUpdate", [w] { system::askAndCheckForUpdate(w, updateSinks()); }});
    table.push_back({"miAutoUpdateInstall", [] { system::CheckForUpdate(true, true, updateSinks()); }});
}

void checkVersionAfterStart(frmImageView& window)
{
    if (system::isFirstStartOfVersion())
        window.RunTool(QStringLiteral("miAutoUpdateInstall"));
    else
        system::CheckForUpdate(false, false, updateSinks());
}

} // namespace quorvia::viewer
