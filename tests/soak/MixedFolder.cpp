#include "MixedFolder.h"

#include "engine/corpus/WmfMaker.h"
#include "engine/corpus/WpgMaker.h"
#include "engine/fixtures/Mutator.h"
#include "engine/fixtures/SoftimageMaker.h"
#include "support/FileContent.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QProcess>

#include <sys/stat.h>

#include <array>

namespace quorvia::test {

namespace {

bool write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// The formats that ImageMagick writes for us.
bool writeByMagick(const QString& picture, const QString& folder)
{
    for (const char* extension :
         {"dib", "pcx", "dcx", "tga", "pbm", "pgm", "ppm", "ico", "pict", "webp", "jif", "jpeg"}) {
        const QString path = folder + QStringLiteral("/made.") + QLatin1String(extension);
        QString named = path;
        if (qstrcmp(extension, "jif") == 0)
            named.prepend(QStringLiteral("jpg:"));
        if (qstrcmp(extension, "dib") == 0)
            named.prepend(QStringLiteral("bmp:"));
        const QStringList arguments{picture, QStringLiteral("-resize"), QStringLiteral("120x90!"), named};
        if (QProcess::execute(QStringLiteral("convert"), arguments) != 0)
            return false;
    }
    return true;
}

/// The formats that only our own tests write.
bool writeByMakers(const QString& folder)
{
    SoftimageMaker softimage;
    softimage.picture = runPicture(QSize(90, 60));
    WmfMaker metafile = WmfMaker::pixels(QSize(80, 60));
    metafile.brush(0, qRgb(0, 0, 200)).record(0x012D, {0}).record(0x041B, {50, 70, 10, 10});
    return write(folder + QStringLiteral("/made.pic"), softimage.bytes()) &&
           write(folder + QStringLiteral("/made.wmf"), metafile.file()) &&
           write(folder + QStringLiteral("/made1.wpg"), wpg::drawing1()) &&
           write(folder + QStringLiteral("/made2.wpg"), wpg::drawing2());
}

bool copyFiles(const QString& from, const QString& to, int mostOfAKind)
{
    QMap<QString, int> seen;
    QStringList paths;
    QDirIterator each(from, QDir::Files, QDirIterator::Subdirectories);
    while (each.hasNext())
        paths.append(each.next());
    paths.sort(); // a folder has no order of its own
    for (const QString& path : paths) {
        const QFileInfo file(path);
        if (file.size() > 4 * 1024 * 1024 || ++seen[file.suffix().toLower()] > mostOfAKind)
            continue;
        const QString name = QFileInfo(file.path()).fileName() + u'-' + file.fileName();
        if (!QFile::copy(path, to + u'/' + name))
            return false;
        QFile::setPermissions(to + u'/' + name, QFile::ReadOwner | QFile::WriteOwner);
    }
    return true;
}

/// Of each picture one cut short and one garbled.
bool writeBroken(const QString& folder)
{
    quint32 seed = 1;
    const QStringList names = QDir(folder).entryList(QDir::Files, QDir::Name);
    for (const QString& name : names) {
        const QByteArray good = contentOf(folder + u'/' + name);
        Mutator mutator(good, seed++);
        if (!write(folder + QStringLiteral("/cut-") + name, good.left(good.size() * 2 / 3)) ||
            !write(folder + QStringLiteral("/garbled-") + name, mutator.next()))
            return false;
    }
    return true;
}

/// What bears the name of a picture and is none.
bool writeOddities(const QString& folder, const QString& sources)
{
    const bool written = write(folder + QStringLiteral("/empty.jpg"), {}) &&
                         write(folder + QStringLiteral("/words.png"), "These are words.\n") &&
                         write(folder + QStringLiteral("/tif named.jpg"),
                               contentOf(sources + QStringLiteral("/three-pages.tif")) + '\0');
    QDir(folder).mkpath(QStringLiteral("a folder.gif"));
    QDir(folder).mkpath(QStringLiteral("below"));
    const bool linked =
        QFile::link(sources + QStringLiteral("/dawn.jpg"), folder + QStringLiteral("/link.jpg")) &&
        QFile::link(sources + QStringLiteral("/waves.png"), folder + QStringLiteral("/link.png")) &&
        QFile::link(folder + QStringLiteral("/nothing"), folder + QStringLiteral("/dangling.bmp"));
    return written && linked &&
           ::mkfifo(QFile::encodeName(folder + QStringLiteral("/pipe.gif")).constData(), 0600) == 0;
}

/// Files of someone who does not want them changed: the same pictures, one byte longer each.
bool fillSources(const QString& samples, const QString& sources)
{
    const QStringList names = QDir(samples).entryList(QDir::Files, QDir::Name);
    for (const QString& name : names) {
        const QString path = sources + u'/' + name;
        if (!write(path, contentOf(samples + u'/' + name) + '\1') ||
            !QFile::setPermissions(path, QFile::ReadOwner))
            return false;
    }
    return !names.isEmpty();
}

} // namespace

bool MixedFolder::fill(const QString& folder, const QString& sources) const
{
    return QDir().mkpath(folder) && QDir().mkpath(sources) && copyFiles(samples, folder, 100) &&
           writeByMagick(samples + QStringLiteral("/dawn.jpg"), folder) && writeByMakers(folder) &&
           (extra.isEmpty() || copyFiles(extra, folder, 3)) && writeBroken(folder) &&
           copyFiles(findings, folder, 100) && fillSources(samples, sources) &&
           writeOddities(folder, sources);
}

} // namespace quorvia::test
