// Runs commands by name from one table of handlers. Cheap: one hash look-up a call.
#pragma once

#include <QHash>
#include <QString>

#include <functional>
#include <span>

namespace quorvia::commands {

/// One row of the table of commands.
struct Tool
{
    const char* name;
    std::function<void()> run;
};

class ToolDispatcher
{
  public:
    /// `message` shows the text of a "miMsg" command.
    ToolDispatcher(std::span<const Tool> tools, std::function<void(const QString&)> message);

    /// Runs the command `name`, compared exactly. When no name matches, "miMsg_TEXT" shows TEXT and
    /// "miCmd..." is accepted and ignored. Any other name does nothing.
    void RunTool(const QString& name) const;

    bool contains(const QString& name) const { return m_tools.contains(name); }

  private:
    QHash<QString, std::function<void()>> m_tools;
    std::function<void(const QString&)> m_message;
};

} // namespace quorvia::commands
