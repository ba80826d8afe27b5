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
QString namedFile(QByteArrayView line)
{
    const bool hasDrive = line.size() > 1 && line[1] == ':';
    if (!line.startsWith('/') && !line.startsWith('\\') && !hasDrive)
        return {}; // looked at before it is decoded: whatever is called a playlist may have many such lines
    const QString path = qolLine(line);
    const bool isNative = path.startsWith(u'/') && !path.contains(u'\\');
    const QString file = isNative ? path : app::nativePath(path);
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

/// A name beside the playlist at `path` for a copy of it: that of a list of its own, and of no file.
QString nameOfCopy(const QString& path)
{
    const QString real = QFileInfo(path).canonicalFilePath();
    QString base = app::GetBaseName(app::SplitPathName(real, 2), false);
    while (!canBePlaylistName(base + QStringLiteral(" (replaced 9999)")))
        base.chop(1);
    const QString folder = app::SplitPathName(real, 1);
    for (int number = 1;; ++number) {
        const QString suffix =
            number > 1 ? QStringLiteral(" (replaced %1)").arg(number) : QStringLiteral(" (replaced)");
        QString name = folder + base + suffix + u'.' + QLatin1String(playlistExtension);
        if (!platform::pathExists(name))
            return name;
    }
}

} // namespace

std::optional<QStringList> QolFile::load(const QString& path, QWidget* owner)
{
    QString why;
    const std::optional<QByteArray> bytes = bytesOf(path, why);
    if (!bytes) {
        log("Playlist not read", path, why);
        remember(path, {}, {});
        m_unread = platform::pathExists(path);
        return QStringList();
    }
    platform::LongWork work(owner, QStringLiteral("Opening %1...").arg(playlistName(path)));
    QolLines lines(*bytes);
    QStringList files;
    while (const std::optional<QByteArrayView> line = lines.next()) {
        if (!work.goOn(int(bytes->size() - lines.left()), int(bytes->size())))
            return {};
        if (QString file = namedFile(*line); !file.isEmpty())
            files.append(std::move(file));
    }
    remember(path, *bytes, files);
    return files;
}

QolFile::Saved QolFile::save(const QString& path, const QStringList& files, bool changed)
{
    if (m_unread && !changed)
        return Saved::Failed; // as the log has it from the load
    const QByteArray text = qolText(files, QDate::currentDate());
    if (platform::pathExists(path)) {
        QString why;
        const std::optional<QByteArray> present = bytesOf(path, why);
        if (!present) {
            log("Playlist not saved", path, why);
            return Saved::Failed;
        }
        if (*present == text) { // nothing to write, and nothing to wear the disk for
            remember(path, text, files);
            return Saved::Written;
        }
        const QByteArray content = qolContent(*present);
        const bool isOurs = path == m_path && content == m_content;
        if (isOurs && !changed) // whoever only looks at a list finds it as it was
            return Saved::Written;
        const bool isNews = !isOurs && content != qolContent(text);
        if (isNews && path == m_path && !changed)
            return Saved::Left;
        const bool isLoss = isNews || (isOurs && m_loses);
        if (isLoss && QolLines(*present).next() && !keepCopy(path, *present))
            return Saved::Failed;
    }
    makeFolderAgain(path);
    const engine::Status written = engine::writeWholeFile(path, text);
    if (!written) {
        log("Playlist not saved", path, written.error().text);
        return Saved::Failed;
    }
    remember(path, text, files);
    return Saved::Written;
}

/// Puts a copy of the list at `path`, which is about to be replaced, into the trash; there it can be taken
/// out again as a list of its own. False when there is no copy, and the list must stay.
bool QolFile::keepCopy(const QString& path, const QByteArray& present)
{
    if (qolContent(present) == m_kept) // a save that failed is tried again
        return true;
    const QString copy = nameOfCopy(path);
    if (const engine::Status made = engine::writeWholeFile(copy, present); !made) {
        log("Playlist not saved, since no copy of what it replaces can be made", copy, made.error().text);
        return false;
    }
    m_kept = qolContent(present);
    QString why;
    if (platform::moveToTrash(copy, &why))
        app::WriteLog(QStringLiteral("Replaced playlist is in the trash: ") + copy);
    else
        log("Replaced playlist stays beside the new one", copy, why);
    return true;
}

/// `files` are what was made of `bytes`, or the other way round.
void QolFile::remember(const QString& path, const QByteArray& bytes, const QStringList& files)
{
    m_path = path;
    m_content = qolContent(bytes);
    m_loses = m_content != qolContent(qolText(files, QDate()));
    m_unread = false;
}

} // namespace quorvia::collections
