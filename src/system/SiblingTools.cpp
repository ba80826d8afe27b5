#include "system/SiblingTools.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "platform/Dialogs.h"
#include "system/ToolPaths.h"

#include <array>

namespace quorvia::system {

namespace {

constexpr std::array tools = {
    SiblingTool{"Morphane", "miRunMorphane", "miWebMorphane", true},
    SiblingTool{"Tessary", "miRunTessary", "miWebTessary", false},
    SiblingTool{"Nomalux", "miRunNomalux", "miWebNomalux", false},
};

bool wantsItsPage(QWidget* owner, const QString& title)
{
    using platform::BoxAnswer;
    return platform::showMessage(
               owner,
               {platform::BoxKind::Question, platform::BoxButtons::YesNo, QStringLiteral("Program Not Found"),
                title + QStringLiteral(" could not be found on this computer.\n"
                                       "Would you like to proceed to the product website where you can "
                                       "download\nand install the application?")}) == BoxAnswer::Yes;
}

} // namespace

std::span<const SiblingTool> siblingTools()
{
    return tools;
}

QStringList siblingArguments(const SiblingTool& tool, const QString& file)
{
    if (!tool.takesImage || file.isEmpty())
        return {};
    return {file + QStringLiteral(">JPG")};
}

void runSibling(const SiblingTool& tool, const SiblingSinks& sinks)
{
    const QString title = QLatin1String(tool.title);
    const QString program = GetToolPath(title, false);
    if (program.isEmpty()) {
        if (wantsItsPage(sinks.owner, title))
            sinks.runTool(QLatin1String(tool.webCommand));
        return;
    }
    const platform::ShellCode code = sinks.start(program, siblingArguments(tool, sinks.currentFile()));
    if (code != platform::ShellCode::Ok)
        app::WriteLog(QStringLiteral("Not started: %1: %2").arg(program, app::ShellMessage(int(code))));
}

} // namespace quorvia::system
