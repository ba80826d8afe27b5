// The commands that open a page of the maker, and the addresses behind them. Costs a read of the store each.
#pragma once

#include <QString>

#include <vector>

namespace quorvia::system {

/// The names of these commands.
std::vector<const char*> webCommands();
/// The address that `command` opens now; empty for a name that is none of them.
QString webAddressOf(const QString& command);

} // namespace quorvia::system
