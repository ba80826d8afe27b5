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

/// What the commands do that have no row, since they are known by the begin of their names. All are called.
struct PrefixTools
{
    std::function<void(const QString& name)> openRecent; ///< "tRecen...", a tool of the band `bRecent`
    std::function<void(const QString& name)> openListed; ///< "FileX...", a tool of the band `bFiles`
    std::function<void(const QString& text)> message;    ///< "miMsg_TEXT"
};

class ToolDispatcher
{
  public:
    ToolDispatcher(std::span<const Tool> tools, PrefixTools prefixes);

    /// Runs the command `name`: by the begins "tRecen" and "FileX" first, then by its row, compared exactly.
    /// When no name matches, "miMsg_TEXT" shows TEXT and "miCmd..." is accepted and ignored. Any other name
    /// does nothing.
    void RunTool(const QString& name) const;

    bool contains(const QString& name) const { return m_tools.contains(name); }

  private:
    QHash<QString, std::function<void()>> m_tools;
    PrefixTools m_prefixes;
};

} // namespace quorvia::commands
