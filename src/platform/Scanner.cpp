#include "platform/Scanner.h"

#include "platform/ScanHelper.h"
#include "platform/Shell.h"
#include "platform/WaitCursor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QObject>
#include <QTemporaryDir>

#include <algorithm>
#include <cstring>

namespace quorvia::platform {

namespace {

constexpr char usualConfigDirectory[] = "/etc/sane.d";
constexpr qint64 mostConfigBytes = 1 << 20;

/// True when the list of drivers in the file `path` has one: a line that is neither empty nor a remark.
bool listsDriver(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    for (const QByteArray& line : file.read(mostConfigBytes).split('\n')) {
        const QByteArray text = line.trimmed();
        if (!text.isEmpty() && !text.startsWith('#'))
            return true;
    }
    return false;
}

/// The head of a portable map.
struct MapHead
{
    int samples = 0; ///< a pixel; 0: it is none
    int width = 0;
    int height = 0;
    qint64 begin = 0; ///< of the samples in the file
};

/// Takes the head apart just as the helper writes it.
MapHead headOf(const QByteArray& start)
{
    MapHead head;
    int read = 0;
    char kind = 0;
    int most = 0;
    if (std::sscanf(start.constData(), "P%c\n%5d %5d\n%3d%n", &kind, &head.width, &head.height, &most,
                    &read) != 4)
        return {};
    const bool isKnown = (kind == '5' || kind == '6') && most == 255;
    if (!isKnown || head.width < 1 || head.height < 1 || read >= start.size() || start[read] != '\n')
        return {};
    head.samples = kind == '5' ? 1 : 3;
    head.begin = read + 1;
    return head;
}

QImage imageOf(const MapHead& head, const uchar* samples)
{
    QImage image(head.width, head.height,
                 head.samples == 1 ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
    if (image.isNull())
        return image;
    for (int y = 0; y < head.height; ++y) {
        if (head.samples == 1) {
            std::memcpy(image.scanLine(y), samples, std::size_t(head.width));
            samples += head.width;
            continue;
        }
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < head.width; ++x, samples += 3)
            row[x] = qRgb(samples[0], samples[1], samples[2]);
    }
    return image;
}

} // namespace

QString scanHelperPath(const QStringList& directories)
{
    if (const QString named = QFile::decodeName(qgetenv("QUORVIA_SCAN_HELPER")); !named.isEmpty())
        return isProgramFile(named) ? named : QString();
    return findProgram(directories, QStringLiteral("quorvia-scan"));
}

QStringList scanConfigDirectories(const QString& variable)
{
    QStringList directories = variable.split(u':', Qt::SkipEmptyParts);
    if (directories.isEmpty() || variable.endsWith(u':'))
        directories.append(QLatin1String(usualConfigDirectory));
    return directories;
}

bool namesScanDriver(const QStringList& directories)
{
    for (const QString& directory : directories) {
        if (listsDriver(directory + QStringLiteral("/dll.conf")))
            return true;
        const QDir parts(directory + QStringLiteral("/dll.d"));
        for (const QString& part : parts.entryList(QDir::Files)) {
            if (listsDriver(parts.filePath(part)))
                return true;
        }
    }
    return false;
}

bool scannerPresent(const QString& helper)
{
    return isProgramFile(helper) &&
           namesScanDriver(scanConfigDirectories(QFile::decodeName(qgetenv("SANE_CONFIG_DIR"))));
}

QImage readScannedPicture(const QString& path, QString* why)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *why = file.errorString();
        return {};
    }
    constexpr qint64 longestHead = 32;
    const MapHead head = headOf(file.peek(longestHead));
    if (head.samples == 0 || file.size() != head.begin + qint64(head.width) * head.height * head.samples) {
        *why = QStringLiteral("the scanner helper wrote no whole picture");
        return {};
    }
    const uchar* const bytes = file.map(0, file.size());
    QImage image = bytes ? imageOf(head, bytes + head.begin) : QImage();
    if (image.isNull())
        *why = QStringLiteral("there is not memory enough for the scanned picture");
    return image;
}

std::optional<QList<ScanDevice>> Scanner::list(QWidget* owner, QString* why) const
{
    const WaitCursor waiting;
    constexpr int longestEnding =
        500; // no device has begun anything, and drivers search the network for long
    const HelperEnd end = runScanHelper(owner, {.program = m_helper,
                                                .arguments = {QStringLiteral("--list")},
                                                .text = QObject::tr("Looking for scanners and cameras..."),
                                                .silence = m_patience.listing,
                                                .ending = std::min(m_patience.ending, longestEnding)});
    *why = end.why;
    return end.isDone ? std::optional(scanDevices(end.output)) : std::nullopt;
}

QImage Scanner::acquire(QWidget* owner, const ScanChoice& choice, QString* why) const
{
    const QTemporaryDir scratch;
    if (!scratch.isValid()) {
        *why = scratch.errorString();
        return {};
    }
    const QString output = scratch.filePath(QStringLiteral("picture.pnm"));
    const bool isGray = choice.mode == ScanMode::Gray;
    const HelperEnd end = runScanHelper(
        owner, {.program = m_helper,
                .arguments = {QStringLiteral("--acquire"), choice.device, QStringLiteral("--mode"),
                              isGray ? QStringLiteral("gray") : QStringLiteral("color"),
                              QStringLiteral("--resolution"), QString::number(choice.resolution), output},
                .text = QObject::tr("Scanning the image..."),
                .silence = m_patience.acquiring,
                .ending = m_patience.ending});
    *why = end.why;
    if (end.wasCancelled)
        return {};
    const WaitCursor waiting;
    QString unread;
    QImage picture = readScannedPicture(output, &unread); // a driver may fall over the end of a scan
    if (picture.isNull() && why->isEmpty())
        *why = unread;
    return picture;
}

} // namespace quorvia::platform
