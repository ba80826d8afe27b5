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

/// The line's wishes; no files when it asks for something that does not exist.
Wishes wishesOf(const QStringList& arguments)
{
    Wishes wishes;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& word = arguments[i];
        const auto next = [&] { return ++i < arguments.size() ? arguments[i] : QString(); };
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
    return wishes.page < 1 ? Wishes() : wishes;
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

QString targetIn(const QString& folder, const QString& file, const QString& extension)
{
    return folder + QLatin1Char('/') + QFileInfo(file).completeBaseName() + QLatin1Char('.') + extension;
}

bool tellFailure(const QString& file, const QString& reason)
{
    std::printf("error  %s: %s\n", qPrintable(file), qPrintable(reason));
    return false;
}

bool writeNetpbm(const Wishes& wishes, const QString& file, const QImage& image)
{
    const QString extension = image.hasAlphaChannel() ? QStringLiteral("pam") : QStringLiteral("ppm");
    const QString target = targetIn(wishes.ppmFolder, file, extension);
    const Status written = writeWholeFile(target, netpbmBytes(image));
    return written || tellFailure(target, written.error().text);
}

bool save(const Wishes& wishes, const std::shared_ptr<ImageLoader>& loader, const QString& file)
{
    ImageEngine control(loader);
    control.SetPageNumber(wishes.page);
    control.SetFileName(file);
    const QString target = targetIn(wishes.saveFolder, file, wishes.saveExtension);
    control.SetSaveFileName(target);
    return control.SaveFile() || tellFailure(target, control.LastError());
}

bool probe(const Wishes& wishes, const std::shared_ptr<ImageLoader>& loader, const QString& file)
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
                picture->complete ? "ok   " : "part ", qPrintable(file), picture->fullSize.width(),
                picture->fullSize.height(), picture->bitsPerPixel, ImageLoader::pageCount(file),
                countColors(picture->image), milliseconds, sum.constData(),
                picture->profile.isEmpty() ? "" : ", with a colour profile");
    bool good = true;
    if (!wishes.ppmFolder.isEmpty())
        good = writeNetpbm(wishes, file, picture->image) && good;
    if (!wishes.saveFolder.isEmpty())
        good = save(wishes, loader, file) && good;
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
    bool good = true;
    for (const QString& file : wishes.files) {
        good = probe(wishes, loader, file) && good;
        std::fflush(stdout);
    }
    return good ? 0 : 1;
}
