// Commands that are members of a class, found by their names in a table.
#pragma once

#include <QString>

#include <algorithm>
#include <span>

namespace quorvia::collections {

template <class Owner>
struct NamedCommand
{
    QLatin1String name; ///< in small letters
    void (Owner::*run)();
};

/// Runs that one of `commands` whose name is `command`, whatever its case; false when there is none.
template <class Owner>
bool runNamed(Owner& owner, std::span<const NamedCommand<Owner>> commands, const QString& command)
{
    const QString name = command.toLower();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&name](const auto& candidate) { return candidate.name == name; });
    if (found == commands.end())
        return false;
    (owner.*found->run)();
    return true;
}

} // namespace quorvia::collections
