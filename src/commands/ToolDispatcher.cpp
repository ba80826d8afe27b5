#include "commands/ToolDispatcher.h"

namespace quorvia::commands {

ToolDispatcher::ToolDispatcher(std::span<const Tool> tools, std::function<void(const QString&)> message)
    : m_message(std::move(message))
{
    for (const Tool& tool : tools)
        m_tools.insert(QLatin1String(tool.name), tool.run);
}

void ToolDispatcher::RunTool(const QString& name) const
{
    if (const auto found = m_tools.constFind(name); found != m_tools.constEnd()) {
        const auto run = *found; // a copy: the command may end the window that owns this table
        run();
        return;
    }
    if (name.startsWith(QLatin1String("miMsg"))) {
        m_message(name.section(QLatin1Char('_'), 1, 1));
        return;
    }
    // "miCmd" names are reserved and, like unknown ones, do nothing.
}

} // namespace quorvia::commands
