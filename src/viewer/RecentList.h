// The recent directories: kept as a list, stored as one text joined by ";".
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::viewer {

/// The list that a stored text spells, and back.
QStringList recentFromText(const QString& text);
QString recentToText(const QStringList& recent);

/// `recent` with `directory` at its end, unless ";" and the directory stand in the joined text already. Empty
/// entries in the middle go.
QStringList withRecent(const QStringList& recent, const QString& directory);

} // namespace quorvia::viewer
