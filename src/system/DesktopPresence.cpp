#include "system/DesktopPresence.h"

#include "app/Log.h"
#include "app/Paths.h"
#include "platform/BaseDirectories.h"
#include "platform/BoundedRun.h"
#include "platform/DesktopEntries.h"
#include "platform/FileStatus.h"
#include "platform/MimeTypes.h"
#include "platform/TextFile.h"
#include "system/AssociationTable.h"

#include <QFile>

#include <algorithm>

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

void runTool(const QString& tool, const QString& directory)
{
    QString why;
    if (!platform::runBounded(tool, {directory}, toolPatience, &why))
        note(directory, why);
}

void refreshTypes()
{
    runTool(QStringLiteral("update-mime-database"), platform::dataHome() + QStringLiteral("/mime"));
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
    const QByteArray text = platform::withProgram(resource("quorvia.desktop"), app::programPath()) + copyMark;
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
    const QByteArray text = resource("quorvia-mime.xml");
    QString why;
    if (textAt(path) == text)
        return;
    if (platform::replaceTextFile(path, text, &why))
        refreshTypes();
    else
        note(path, why);
}

void removeOwnTypes()
{
    const QString path = packagePath(platform::dataHome());
    if (!platform::isRegularFile(path))
        return;
    QString why;
    if (platform::removeTextFile(path, &why))
        refreshTypes();
    else
        note(path, why);
}

void refreshApplications()
{
    runTool(QStringLiteral("update-desktop-database"), userApplications());
}

bool ownEntryIsNews()
{
    const bool digestHasIt =
        textAt(userApplications() + QStringLiteral("/mimeinfo.cache")).contains(ownEntryId().toLatin1());
    return digestHasIt != platform::isRegularFile(copyPath());
}

} // namespace quorvia::system
