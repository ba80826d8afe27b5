// Makes a program that the user chose the viewer for all image types, by a text with two places to fill in.
// No desktop imports such a text, so it is done here, after a question.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

class QWidget;

namespace quorvia::system {

/// `pattern` with its lines joined by CR LF, "{app}" replaced by `installPath` and "{appexe}" by `program`,
/// each with every backslash doubled.
QString registrationText(const QString& pattern, const QString& installPath, const QString& program);

/// A desktop entry as such a text asks for it.
struct RegisteredEntry
{
    QByteArray text;         ///< ready to be installed
    QList<QByteArray> types; ///< the content types that it names
};

/// Reads a registration text: a desktop entry without a name, in whose "Exec" line the program stands in
/// double quotes with its backslashes doubled and nothing else changed. `name` becomes the entry's name.
/// Nothing when the text is no such entry.
std::optional<RegisteredEntry> importRegistration(const QString& text, const QString& name);

/// Writes the registration text of the existing file `program` into InstallPath, wherever the pattern was
/// found (app::resourcePath), asks over `owner` (may be null), and on Yes installs the entry and makes it the
/// default for its types. A missing pattern and a file that is no program are told in a box, every other
/// obstacle to the log. No entry of another program is written over. True when all of it stands.
bool associateOther(QWidget* owner, const QString& program);

} // namespace quorvia::system
