// The command line, taken apart once.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace quorvia::app {

struct CommandLine
{
    QString line; ///< the arguments joined by one blank
    QString path; ///< all arguments that are no switches, joined by one blank, trimmed, as a native absolute
                  ///< path where it names something; with the quotes it came with
    QStringList commands; ///< the switches without their "/", in order

    /// No argument at all.
    bool isEmpty() const { return line.isEmpty(); }
    /// The line holds a switch.
    bool holdsSwitch() const { return !commands.isEmpty(); }
    /// A switch holds `text` (with its "/") anywhere, as "/miHide" does in "/miHideInterface".
    bool mentions(const QString& text) const;
    bool isInstall() const { return line == QLatin1String("/install"); }
    bool isUninstall() const { return line == QLatin1String("/uninstall"); }
    /// `line` without its quote characters, as a native path: the bare file of a line without switches.
    QString bareFile;
};

/// Takes the arguments (without the program's name) apart. A switch begins with "/", holds no further "/" and
/// names no existing file or directory. Relative paths count from `workingDirectory`; a "file:" address is
/// decoded once, and a literal existing name wins over that.
CommandLine parseCommandLine(const QStringList& arguments, const QString& workingDirectory);

} // namespace quorvia::app
