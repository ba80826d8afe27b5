// Publishes the program in the machine-wide store, where the maker's other tools find it.
#pragma once

#include "app/Product.h"

#include <QString>

namespace quorvia::system {

/// Writes the supported types, the program's paths and its web addresses into the machine-wide store, under
/// the application title. A component names itself among the components instead of the programs.
void PublishProgram(bool isComponent);

/// The program's home page: the address in the store, else the built-in one.
QString GetHomeUrl();
/// The address that is built in for the tool `title`: this program's and Morphane's own pages; for any other
/// the one in the store that bears no name.
QString builtInHomeUrl(const QString& title);

/// "?app=", `title` without points and blanks, and the three numbers of `version` without anything between
/// them.
QString appQuery(const QString& title, const app::Version& version);
/// The same of this program.
QString BuildAppQuery();

/// The long query of a request whose origin `tag` names, as in "AppMenuItem": `title` without its points and
/// `version`; then title, version and tag run together, without the points and blanks that the maker's pages
/// do not take.
QString toolQuery(const QString& title, const app::Version& version, const QString& tag);
/// The same of this program.
QString BuildToolQuery(const QString& tag);

} // namespace quorvia::system
