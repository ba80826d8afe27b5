// Checks image files from a terminal: engineprobe [--page N] [--ppm DIR] [--save EXT DIR] FILE... prints one
// line a file. Ends with 1 when a file could not be read or written, with 2 for a line it does not
// understand.
#include "engine/ColorCount.h"
#include "engine/ImageEngine.h"
#include "engine/ImageLoader.h"
#include "engine/WholeFile.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSet>

#include <cstdio>

using namespace quorvia::engine;

namespace {

struct Wishes
{
    int page = 1;
    QString ppmFolder;
    QString saveExtension;
    QString saveFolder;
    QStringList files;
};

/// The line's wishes; no files when it asks for something that does not exist or leaves something open.
Wishes wishesOf(const QStringList& arguments)
{
    Wishes wishes;
    bool isWhole = true;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& word = arguments[i];
        const auto next = [&] {
            const QString value = arguments.value(++i);
            isWhole = isWhole && !value.isEmpty();
            return value;
        };
        if (word == QLatin1String("--page")) {
            wishes.page = next().toInt();
        } else if (word == QLatin1String("--ppm")) {
            wishes.ppmFolder = next();
        } else if (word == QLatin1String("--save")) {
            wishes.saveExtension = next();
            wishes.saveFolder = next();
        } else if (word.startsWith(QLatin1String("--"))) {
            return {};
        } else {
            wishes.files.append(word);
        }
    }
    return isWhole && wishes.page >= 1 ? wishes : Wishes();
}

/// The pixels as R, G, B, A bytes, rows from the top.
QByteArray rgbaBytes(const QImage& image)
{
    QByteArray bytes;
    const QImage plain = image.convertToFormat(QImage::Format_RGBA8888);
    bytes.reserve(qsizetype(4) * plain.width() * plain.height());
    for (int y = 0; y < plain.height(); ++y)
        bytes.append(reinterpret_cast<const char*>(plain.constScanLine(y)), qsizetype(4) * plain.width());
    return bytes;
}

/// PPM, or PAM when there is alpha.
QByteArray netpbmBytes(const QImage& image)
{
    const QByteArray width = QByteArray::number(image.width());
    const QByteArray height = QByteArray::number(image.height());
    if (image.hasAlphaChannel())
        return "P7\nWIDTH " + width + "\nHEIGHT " + height +
               "\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n" + rgbaBytes(image);
    QByteArray bytes = "P6\n" + width + ' ' + height + "\n255\n";
    const QImage plain = image.convertToFormat(QImage::Format_RGB888);
    for (int y = 0; y < plain.height(); ++y)
        bytes.append(reinterpret_cast<const char*>(plain.constScanLine(y)), qsizetype(3) * plain.width());
    return bytes;
}

/// A name on one line, whatever it holds.
QByteArray shown(QString name)
{
    for (QChar& sign : name) {
        if (sign.category() == QChar::Other_Control)
            sign = QLatin1Char('?');
    }
    return name.toLocal8Bit();
}

QString targetIn(const QString& folder, const QString& file, const QString& extension)
{
    return folder + QLatin1Char('/') + QFileInfo(file).completeBaseName() + QLatin1Char('.') + extension;
}

bool tellFailure(const QString& file, const QString& reason)
{
    std::printf("error  %s: %s\n", shown(file).constData(), qPrintable(reason));
    return false;
}

/// Files that must not be written over: those of the line, and what has been written for one of them.
class Guarded
{
  public:
    explicit Guarded(const QStringList& files)
    {
        for (const QString& file : files)
            m_paths.insert(QFileInfo(file).canonicalFilePath());
    }

    /// True, once, for a target that nothing speaks against.
    bool grants(const QString& target)
    {
        const QFileInfo facts(target);
        const QString folder = QFileInfo(facts.path()).canonicalFilePath();
        const QString path =
            facts.exists() ? facts.canonicalFilePath() : folder + QLatin1Char('/') + facts.fileName();
        if (m_paths.contains(path))
            return tellFailure(target, QStringLiteral("would be written over another file of this line"));
        m_paths.insert(path);
        return true;
    }

  private:
    QSet<QString> m_paths;
};

bool writeNetpbm(const Wishes& wishes, const QString& file, const QImage& image, Guarded& guarded)
{
    const QString extension = image.hasAlphaChannel() ? QStringLiteral("pam") : QStringLiteral("ppm");
    const QString target = targetIn(wishes.ppmFolder, file, extension);
    if (!guarded.grants(target))
        return false;
    const Status written = writeWholeFile(target, netpbmBytes(image));
    return written || tellFailure(target, written.error().text);
}

bool save(const Wishes& wishes, const std::shared_ptr<ImageLoader>& loader, const QString& file,
          Guarded& guarded)
{
    const QString target = targetIn(wishes.saveFolder, file, wishes.saveExtension);
    if (!guarded.grants(target))
        return false;
    ImageEngine control(loader);
    control.SetPageNumber(wishes.page);
    control.SetFileName(file);
    control.SetSaveFileName(target);
    return control.SaveFile() || tellFailure(target, control.LastError());
}

bool probe(const Wishes& wishes, const std::shared_ptr<ImageLoader>& loader, const QString& file,
           Guarded& guarded)
{
    QElapsedTimer clock;
    clock.start();
    const auto load = loader->load(file, wishes.page, QSize());
    const auto picture = load->full();
    const double milliseconds = double(clock.nsecsElapsed()) / 1e6;
    if (!picture)
        return tellFailure(file, picture.error().text);
    const QByteArray sum =
        QCryptographicHash::hash(rgbaBytes(picture->image), QCryptographicHash::Md5).toHex();
    std::printf("%s  %s: %d x %d, %d bits, %d pages, %d colours, %.1f ms, %s%s\n",
                picture->complete ? "ok   " : "part ", shown(file).constData(), picture->fullSize.width(),
                picture->fullSize.height(), picture->bitsPerPixel, ImageLoader::pageCount(file),
                countColors(picture->image), milliseconds, sum.constData(),
                picture->profile.isEmpty() ? "" : ", with a colour profile");
    bool good = true;
    if (!wishes.ppmFolder.isEmpty())
        good = writeNetpbm(wishes, file, picture->image, guarded) && good;
    if (!wishes.saveFolder.isEmpty())
        good = save(wishes, loader, file, guarded) && good;
    return good;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen"); // nothing is shown
    const QApplication application(argc, argv);
    const Wishes wishes = wishesOf(QCoreApplication::arguments());
    if (wishes.files.isEmpty()) {
        std::fprintf(
            stderr,
            "Usage: engineprobe [--page N] [--ppm DIR] [--save EXT DIR] FILE...\n"
            "Prints for each file: ok, part (cut short) or error; width x height, bits per pixel, pages,\n"
            "unique colours, milliseconds, MD5 of the pixels as R, G, B, A bytes.\n\n"
            "  --page N        the page of a file that has several, from 1\n"
            "  --ppm DIR       write the pixels to DIR as PPM, as PAM when there is alpha\n"
            "  --save EXT DIR  save to DIR in the format of EXT\n");
        return 2;
    }
    const auto loader = std::make_shared<ImageLoader>();
    Guarded guarded(wishes.files);
    bool good = true;
    for (const QString& file : wishes.files) {
        good = probe(wishes, loader, file, guarded) && good;
        std::fflush(stdout);
    }
    return good ? 0 : 1;
}
