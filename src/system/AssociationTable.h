// The types of file that the program takes over, as data.
#pragma once

#include <QStringList>

#include <span>

namespace quorvia::system {

struct AssociationRow
{
    const char* extension; ///< with its point
    const char* className; ///< what files of the type are called where the desktop has no words for them
    const char* mimeType;  ///< their content type where the desktop knows none
};

/// The rows, in the order in which the types are written.
std::span<const AssociationRow> associationTable();

/// The same extensions, in the order in which earlier owners are saved and given back.
QStringList extensionsOfOwners();

/// The content type of `extension` (with its point): the desktop's, else the table's.
QString associatedType(const QString& extension);
/// All content types under which `extension` may have been taken over: the desktop may know more today than
/// then.
QStringList typesEverAssociated(const QString& extension);

} // namespace quorvia::system
