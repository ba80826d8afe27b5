#include "system/DesktopPresence.h"

#include "app/Log.h"
#include "app/Paths.h"
#include "app/Resources.h"
#include "platform/BaseDirectories.h"
#include "platform/BoundedRun.h"
#include "platform/DesktopEntries.h"
#include "platform/FileStatus.h"
#include "platform/MimeTypes.h"
#include "platform/TextFile.h"
#include "system/AssociationTable.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

/// The resources of a static library have to be asked for, and that outside of every namespace.
static void registerDesktopFiles()
{
    Q_INIT_RESOURCE(desktop);
}

namespace quorvia::system {

namespace {

constexpr int toolPatience = 5000; // milliseconds
constexpr char copyMark[] = "X-Quorvia-Copy=true\n";

QByteArray resource(const char* name)
{
    registerDesktopFiles();
    QFile file(QStringLiteral(":/quorvia/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString userApplications()
{
    return platform::dataHome() + QStringLiteral("/applications");
}

QString copyPath()
{
    return userApplications() + u'/' + ownEntryId();
}

QByteArray textAt(const QString& path)
{
    QByteArray text;
    platform::readTextFile(path, text);
    return text;
}

bool isOurCopy(const QString& path)
{
    return textAt(path).endsWith(copyMark);
}

/// The entry that a package brought; empty when there is none.
QString installedEntry()
{
    for (const QString& directory : platform::applicationsDirectories()) {
        QString path = directory + u'/' + ownEntryId();
        if (platform::isRegularFile(path) && !isOurCopy(path))
            return path;
    }
    return {};
}

QString packagePath(const QString& dataDirectory)
{
    return dataDirectory + QStringLiteral("/mime/packages/quorvia-mime.xml");
}

/// `text` without its words for types, in which a package differs from machine to machine.
QByteArray withoutComments(const QByteArray& text)
{
    QList<QByteArray> lines = text.split('\n');
    lines.removeIf([](const QByteArray& line) { return line.trimmed().startsWith("<comment"); });
    return lines.join('\n');
}

/// The desktop's own words for JPEG files, in all languages: some desktops take the words of the user's
/// package alone.
QByteArray commentsOfJpeg()
{
    for (const QString& directory : platform::dataDirectories()) {
        QByteArray comments;
        for (const QByteArray& line :
             textAt(directory + QStringLiteral("/mime/image/jpeg.xml")).split('\n')) {
            if (line.trimmed().startsWith("<comment"))
                comments += "    " + line.trimmed() + '\n';
        }
        if (!comments.isEmpty())
            return comments;
    }
    return {};
}

QByteArray packageText()
{
    const QByteArray head = "<mime-type type=\"image/jpeg\">\n";
    return resource("quorvia-mime.xml").replace(head, head + commentsOfJpeg());
}

/// Ours, and not behind a link that somebody else made.
bool isOurPackage(const QString& path)
{
    struct stat status = {};
    return platform::fileStatus(path, status, platform::Links::Keep) == 0 && S_ISREG(status.st_mode) &&
           withoutComments(textAt(path)) == withoutComments(resource("quorvia-mime.xml"));
}

bool typesAreKnown()
{
    for (const QString& directory : platform::dataDirectories()) {
        if (platform::isRegularFile(packagePath(directory)))
            return true;
    }
    const auto rows = associationTable();
    return std::all_of(rows.begin(), rows.end(), [](const AssociationRow& row) {
        return !platform::mimeTypeOf(QLatin1String(row.extension)).isEmpty();
    });
}

void note(const QString& what, const QString& why)
{
    app::WriteLog(QStringLiteral("Associations: ") + what + QStringLiteral(": ") + why);
}

void refreshTypes()
{
    const QString directory = platform::dataHome() + QStringLiteral("/mime");
    QString why;
    if (!platform::runBounded(QStringLiteral("update-mime-database"), {directory}, toolPatience, &why))
        note(directory, why);
}

/// The entry `text` with the types that are taken over and no other: some desktops read the entry itself, and
/// would make its program the first for all that it names.
QByteArray withTakenTypes(const QByteArray& text)
{
    QList<QByteArray> types;
    for (const AssociationRow& row : associationTable()) {
        if (!types.contains(row.mimeType))
            types.append(row.mimeType);
    }
    QList<QByteArray> lines = text.split('\n');
    for (QByteArray& line : lines) {
        if (line.startsWith("MimeType="))
            line = "MimeType=" + types.join(';') + ';';
    }
    return lines.join('\n');
}

/// The entry `text` with the full path of the icon's drawing: its bare name is known to desktops only where a
/// package has brought the icon.
QByteArray withIconPath(const QByteArray& text)
{
    QString path = app::resourcePath(QStringLiteral("quorvia.svg"));
    if (!platform::isRegularFile(path)) // an installation that the desktop does not look into
        path =
            QDir::cleanPath(app::resourcePath(QStringLiteral("../icons/hicolor/scalable/apps/quorvia.svg")));
    if (!platform::isRegularFile(path) || path.contains(u'\n'))
        return text;
    const QByteArray value = QFile::encodeName(path).replace('\\', "\\\\");
    return QByteArray(text).replace("\nIcon=quorvia\n", "\nIcon=" + value + '\n');
}

} // namespace

QString ownEntryId()
{
    return QStringLiteral("quorvia.desktop");
}

QString provideOwnEntry()
{
    if (QString installed = installedEntry(); !installed.isEmpty()) {
        removeOwnEntry(); // it would hide the installed one
        return installed;
    }
    const QByteArray entry = withIconPath(withTakenTypes(resource("quorvia.desktop")));
    const QByteArray text = platform::withProgram(entry, app::programPath()) + copyMark;
    QString why;
    if (textAt(copyPath()) != text && !platform::replaceTextFile(copyPath(), text, &why)) {
        note(copyPath(), why);
        return {};
    }
    return copyPath();
}

void removeOwnEntry()
{
    QString why;
    if (isOurCopy(copyPath()) && !platform::removeTextFile(copyPath(), &why))
        note(copyPath(), why);
}

void provideOwnTypes()
{
    if (typesAreKnown())
        return;
    const QString path = packagePath(platform::dataHome());
    if (isOurPackage(path))
        return;
    struct stat status = {};
    QString why = QStringLiteral("something else stands there");
    if (platform::fileStatus(path, status, platform::Links::Keep) == ENOENT &&
        platform::replaceTextFile(path, packageText(), &why))
        refreshTypes();
    else
        note(path, why);
}

void removeOwnTypes()
{
    const QString path = packagePath(platform::dataHome());
    if (!isOurPackage(path))
        return;
    QString why;
    if (platform::removeTextFile(path, &why))
        refreshTypes();
    else
        note(path, why);
}

void markApplications()
{
    const QByteArray directory = QFile::encodeName(userApplications());
    if (::utimensat(AT_FDCWD, directory.constData(), nullptr, 0) != 0 && errno != ENOENT)
        note(userApplications(), qt_error_string(errno));
}

} // namespace quorvia::system
