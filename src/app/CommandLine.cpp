#include "app/CommandLine.h"

#include "app/NativePath.h"
#include "platform/FileStatus.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <sys/stat.h>

#include <algorithm>
#include <optional>

namespace quorvia::app {

namespace {

bool isSwitch(const QString& argument)
{
    return argument.startsWith(u'/') && !argument.mid(1).trimmed().isEmpty() &&
           argument.lastIndexOf(u'/') == 0 && !platform::pathExists(argument);
}

/// The paths that the "file:" address `text` can mean, the decoded one first; none for other texts and hosts.
QStringList addressReadings(const QString& text)
{
    if (!text.startsWith(QLatin1String("file:"), Qt::CaseInsensitive))
        return {};
    QString spelt = text.mid(5);
    const QUrl url(text);
    QStringList readings;
    if (url.isValid()) {
        if (!url.host().isEmpty() && url.host() != QLatin1String("localhost"))
            return {};
        readings.append(url.path(QUrl::FullyDecoded));
    }
    if (spelt.startsWith(QLatin1String("//"))) // the host, empty or not, ends at the next "/"
        spelt = spelt.mid(std::max<qsizetype>(spelt.indexOf(u'/', 2), 2));
    readings.append(spelt);
    return readings;
}

/// `path` without "." and "..", still by the names that the user gave unless a link makes them lead
/// elsewhere.
QString cleaned(const QString& path)
{
    const QString shorter = QDir::cleanPath(path);
    struct stat given = {};
    struct stat found = {};
    const bool same = platform::fileStatus(path, given) == 0 && platform::fileStatus(shorter, found) == 0 &&
                      given.st_dev == found.st_dev && given.st_ino == found.st_ino;
    return same ? shorter : QFileInfo(path).canonicalFilePath();
}

/// The absolute path of what `text` names in one of its readings, the literal one first; empty when it names
/// nothing.
std::optional<QString> namedBy(const QString& text, const QDir& directory)
{
    const QString trimmed = text.trimmed();
    const QStringList readings = QStringList{text, trimmed} + addressReadings(trimmed) +
                                 QStringList{nativePath(trimmed, directory.path())};
    for (const QString& reading : readings) {
        const QString absolute = directory.absoluteFilePath(reading);
        if (!reading.isEmpty() && platform::pathExists(absolute))
            return cleaned(absolute);
    }
    return std::nullopt;
}

QString bareFileOf(const QString& line, const QDir& directory)
{
    if (const std::optional<QString> literal = namedBy(line, directory))
        return *literal;
    QString bare = line;
    bare.remove(u'"');
    bare = bare.trimmed();
    return namedBy(bare, directory).value_or(bare);
}

} // namespace

bool CommandLine::mentions(const QString& text) const
{
    return std::any_of(commands.begin(), commands.end(),
                       [&text](const QString& command) { return (u'/' + command).contains(text); });
}

CommandLine parseCommandLine(const QStringList& arguments, const QString& workingDirectory)
{
    const QDir directory(workingDirectory.isEmpty() ? QDir::currentPath() : workingDirectory);
    CommandLine result;
    result.line = arguments.join(u' ');
    QStringList rest;
    for (const QString& argument : arguments) {
        if (isSwitch(argument))
            result.commands.append(argument.mid(1).trimmed());
        else
            rest.append(argument);
    }
    const QString path = rest.join(u' ');
    result.path = namedBy(path, directory).value_or(path.trimmed());
    if (!result.holdsSwitch())
        result.bareFile = bareFileOf(result.line, directory);
    return result;
}

} // namespace quorvia::app
