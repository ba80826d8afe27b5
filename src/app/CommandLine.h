// The command line, taken apart once. Costs a look at the file system for each argument that begins with "/"
// and a few for the path.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::app {

struct CommandLine
{
    QString line; ///< the arguments joined by one blank
    QString path; ///< all arguments that are no switches, joined by one blank, trimmed, as a native absolute
                  ///< path where it names something; with the quotes it came with
    QStringList commands; ///< the switches without their "/", in order

    /// No argument at all, or only empty ones.
    bool isEmpty() const { return line.isEmpty(); }
    /// The line holds a switch.
    bool holdsSwitch() const { return !commands.isEmpty(); }
    /// A switch holds `text` (with its "/") anywhere, as "/miHideInterface" holds "/miHide"; case counts.
    bool mentions(const QString& text) const;
    bool isInstall() const { return line == QLatin1String("/install"); }
    bool isUninstall() const { return line == QLatin1String("/uninstall"); }
    /// `line` without its quote characters, as a native path, absolute where it names something; empty when
    /// the line holds a switch. Quotes that are part of an existing name stay.
    QString bareFile;
};

/// Takes the arguments (without the program's name) apart. A switch begins with "/", holds no further "/" and
/// names no existing file or directory; "/" alone is the root directory. Relative paths count from
/// `workingDirectory` (empty: the present one). A "file:" address is decoded once; a literal existing name
/// wins over that, and an address that names nothing decoded is tried as it is spelt.
CommandLine parseCommandLine(const QStringList& arguments, const QString& workingDirectory);

} // namespace quorvia::app
