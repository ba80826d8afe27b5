#include "collections/QolFile.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "app/NativePath.h"
#include "collections/PlaylistFolder.h"
#include "collections/QolText.h"
#include "engine/WholeFile.h"
#include "platform/FileStatus.h"
#include "platform/LongWork.h"
#include "platform/Trash.h"

#include <QFile>
#include <QFileInfo>

namespace quorvia::collections {

namespace {

constexpr qint64 mostBytes = qint64(256) << 20; // more is no list that somebody made

void log(const char* what, const QString& path, const QString& why)
{
    app::WriteLog(QStringLiteral("%1: %2: %3").arg(QLatin1String(what), path, why));
}

/// The bytes of the file at `path`; nothing, and the reason in `why`, when it cannot be read.
std::optional<QByteArray> bytesOf(const QString& path, QString& why)
{
    if (!platform::isRegularFile(path)) { // to open a pipe would wait for its other end
        why = QStringLiteral("it is not a regular file");
        return {};
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        why = file.errorString();
        return {};
    }
    if (file.size() > mostBytes) {
        why = QStringLiteral("it is too large");
        return {};
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        why = file.errorString();
        return {};
    }
    return bytes;
}

/// The path that a line of a playlist means here; empty when it names no file.
QString namedFile(const QString& line)
{
    const bool isNative = line.startsWith(u'/') && !line.contains(u'\\');
    const QString file = isNative ? line : app::nativePath(line);
    return fitsOnALine(file) && platform::isFile(file) ? file : QString();
}

void makeFolderAgain(const QString& path)
{
    const QString folder = playlistFolder();
    if (!path.startsWith(folder) || app::FolderExists(folder))
        return;
    app::MakePath(folder);
    app::WriteLog(app::FolderExists(folder)
                      ? QStringLiteral("Folder of the playlists was missing and is made again: ") + folder
                      : QStringLiteral("Folder of the playlists cannot be made: ") + folder);
}

/// Puts a copy of the list at `path`, which is about to be replaced, into the trash; there it can be taken
/// out again as a list of its own.
void keepInTrash(const QString& path, const QByteArray& bytes)
{
    const QString copy = app::GetBaseName(QFileInfo(path).canonicalFilePath(), true) +
                         QStringLiteral(" (replaced).") + QLatin1String(playlistExtension);
    if (platform::pathExists(copy) || !engine::writeWholeFile(copy, bytes)) {
        log("Replaced playlist not kept", path, QStringLiteral("no copy of it can be made"));
        return;
    }
    QString why;
    if (platform::moveToTrash(copy, &why)) {
        app::WriteLog(QStringLiteral("Replaced playlist is in the trash: ") + copy);
        return;
    }
    log("Replaced playlist not kept", path, why);
    QFile::remove(copy);
}

} // namespace

std::optional<QStringList> QolFile::load(const QString& path, QWidget* owner)
{
    QString why;
    const std::optional<QByteArray> bytes = bytesOf(path, why);
    if (!bytes) {
        log("Playlist not read", path, why);
        remember(path, {}, false);
        return QStringList();
    }
    const QStringList lines = qolPaths(*bytes);
    platform::LongWork work(owner, QStringLiteral("Opening %1...").arg(playlistName(path)));
    QStringList files;
    files.reserve(lines.size());
    for (int i = 0; i < int(lines.size()); ++i) {
        if (!work.goOn(i, int(lines.size())))
            return {};
        if (QString file = namedFile(lines.at(i)); !file.isEmpty())
            files.append(std::move(file));
    }
    remember(path, *bytes, files.size() < lines.size());
    return files;
}

QolFile::Saved QolFile::save(const QString& path, const QStringList& files, bool changed)
{
    const QByteArray text = qolText(files, QDate::currentDate());
    if (platform::pathExists(path)) {
        QString why;
        const std::optional<QByteArray> present = bytesOf(path, why);
        if (!present) {
            log("Playlist not saved", path, why);
            return Saved::Failed;
        }
        if (*present == text) { // nothing to write, and nothing to wear the disk for
            remember(path, text, false);
            return Saved::Written;
        }
        const bool isOurs = path == m_path && qolContent(*present) == m_content;
        const bool isNews = !isOurs && qolContent(*present) != qolContent(text);
        if (isNews && path == m_path && !changed)
            return Saved::Left;
        const bool isLoss = isNews || (isOurs && m_entriesAreMissing);
        if (isLoss && !qolPaths(*present).isEmpty())
            keepInTrash(path, *present);
    }
    makeFolderAgain(path);
    const engine::Status written = engine::writeWholeFile(path, text);
    if (!written) {
        log("Playlist not saved", path, written.error().text);
        return Saved::Failed;
    }
    remember(path, text, false);
    return Saved::Written;
}

void QolFile::remember(const QString& path, const QByteArray& bytes, bool entriesAreMissing)
{
    m_path = path;
    m_content = qolContent(bytes);
    m_entriesAreMissing = entriesAreMissing;
}

} // namespace quorvia::collections
