#include "commands/ToolDispatcher.h"

namespace quorvia::commands {

namespace {

/// Calls a copy: the command may end the window that owns the original.
void call(const std::function<void(const QString&)>& prefix, const QString& text)
{
    const std::function<void(const QString&)> kept = prefix;
    kept(text);
}

} // namespace

ToolDispatcher::ToolDispatcher(std::span<const Tool> tools, PrefixTools prefixes)
    : m_prefixes(std::move(prefixes))
{
    for (const Tool& tool : tools)
        m_tools.insert(QLatin1String(tool.name), tool.run);
}

void ToolDispatcher::RunTool(const QString& name) const
{
    // No row bears a name that begins like these.
    if (name.startsWith(QLatin1String("tRecen")))
        return call(m_prefixes.openRecent, name);
    if (name.startsWith(QLatin1String("FileX")))
        return call(m_prefixes.openListed, name);
    if (const auto found = m_tools.constFind(name); found != m_tools.constEnd()) {
        const auto run = *found; // a copy: the command may end the window that owns this table
        run();
        return;
    }
    if (name.startsWith(QLatin1String("miMsg")))
        return call(m_prefixes.message, name.section(QLatin1Char('_'), 1, 1));
    // "miCmd" names are reserved and, like unknown ones, do nothing.
}

} // namespace quorvia::commands
