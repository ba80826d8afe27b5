// Where the other tools of the family are: each of them tells it in the machine-wide store.
#pragma once

#include <QString>

namespace quorvia::system {

/// The path of the program of `tool`, as in "postrel"; empty when none of the places where it may stand names
/// an existing file. With `shortForm` the short form of that path.
QString GetToolPath(const QString& tool, bool shortForm);

} // namespace quorvia::system
