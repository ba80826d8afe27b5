// Opening documents and starting programs.
#include "app/mFile.h"
#include "platform/FileStatus.h"
#include "platform/Shell.h"

#include <QDir>
#include <QProcess>

namespace quorvia::app {

namespace {

using platform::ShellCode;

/// A program file, or a text whose name part holds ".exe": a directory or an address never is one.
bool meansProgram(const QString& target)
{
    if (platform::isProgramFile(target))
        return true;
    return !platform::isDirectory(target) && !platform::isAddress(target) &&
           SplitPathName(target, 2).contains(QLatin1String(".exe"), Qt::CaseInsensitive);
}

ShellCode start(const QString& target, const QString& parameters, const QString& directory)
{
    // A bare name would be looked up in PATH; one that names a file here means that file.
    const QString program = platform::pathExists(target) ? QDir::current().absoluteFilePath(target) : target;
    return platform::startProgram(program, QProcess::splitCommand(parameters), directory);
}

ShellCode openDocument(const QString& target, const QString& verb)
{
    if (verb.compare(QLatin1String("edit"), Qt::CaseInsensitive) == 0)
        return platform::shellEdit(target);
    if (verb.isEmpty() || verb.compare(QLatin1String("open"), Qt::CaseInsensitive) == 0)
        return platform::shellOpen(target);
    return ShellCode::NoAssociation; // the desktop knows no other verb
}

} // namespace

bool ShellRun(const QString& target, int /*windowMode*/, const QString& parameters, const QString& directory,
              const QString& verb, QString& message)
{
    const ShellCode code =
        meansProgram(target) ? start(target, parameters, directory) : openDocument(target, verb);
    message = ShellMessage(static_cast<int>(code));
    return code == ShellCode::Ok;
}

QString ShellMessage(int code)
{
    if (code > 32)
        return QString();
    switch (code) {
    case 0:
    case 8:
        return QStringLiteral("Out of memory");
    case 2:
        return QStringLiteral("File not found");
    case 3:
        return QStringLiteral("Path not found");
    case 5:
        return QStringLiteral("Path/file access error");
    case 11:
        return QStringLiteral("The executable file is invalid or corrupt");
    case 26:
        return QStringLiteral("A sharing violation occurred.");
    case 27:
        return QStringLiteral("This file type does not have a valid file association.");
    case 28:
        return QStringLiteral("The file could not be opened due to time out. Please try again in a moment.");
    case 29:
        return QStringLiteral(
            "The file could not be opened because the DDE transaction failed. Please try again in a "
            "moment.");
    case 30:
        return QStringLiteral(
            "The file could not be opened because the target application is busy. Please try again in "
            "a moment.");
    case 31:
        return QStringLiteral("No application is associated with this file type.");
    case 32:
        return QStringLiteral("The specified dynamic-link library was not found.");
    default:
        return QStringLiteral("An error occurred occurred whilst trying to open or print the selected file.");
    }
}

} // namespace quorvia::app
