// Publishes the program in the machine-wide store, where the maker's other tools find it.
#pragma once

#include <QString>

namespace quorvia::system {

/// Writes the supported types, the program's paths and its web addresses into the machine-wide store, under
/// the application title. A component names itself among the components instead of the programs.
void PublishProgram(bool isComponent);

/// The program's home page: the address in the store, else the built-in one.
QString GetHomeUrl();

/// "?app=", the title without points and blanks, and the version's three numbers without anything between
/// them.
QString BuildAppQuery();

} // namespace quorvia::system
