#include "IndependentReader.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace quorvia::test {

namespace {

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), qPrintable(path));
}

quint32 noise(int x, int y)
{
    quint32 value = quint32(x) * 2654435761u ^ quint32(y) * 2246822519u;
    value = (value ^ value >> 15) * 2654435761u;
    return value ^ value >> 13;
}

/// The next number of a PNM header; skips blanks and comments.
int nextNumber(const QByteArray& bytes, qsizetype& at)
{
    for (; at < bytes.size(); ++at) {
        if (bytes[at] == '#')
            at = bytes.indexOf('\n', at);
        else if (!std::isspace(uchar(bytes[at])))
            break;
        if (at < 0)
            return -1;
    }
    int number = 0;
    while (at < bytes.size() && std::isdigit(uchar(bytes[at])))
        number = number * 10 + (bytes[at++] - '0');
    return number;
}

} // namespace

QByteArray outputOf(const QString& program, const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("OMP_NUM_THREADS"),
                       QStringLiteral("1")); // small pictures: threads only cost
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(60000);
    const QByteArray output = process.readAllStandardOutput();
    if (!ended || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        const QString message = program + QLatin1Char(' ') + arguments.join(QLatin1Char(' ')) +
                                QStringLiteral(": ") + process.errorString() + QStringLiteral("; ") +
                                QString::fromLocal8Bit(process.readAllStandardError());
        QTest::qFail(qPrintable(message), __FILE__, __LINE__);
        return {};
    }
    return output;
}

QByteArray fileMadeBy(const QString& program, const QStringList& arguments, const QString& extension,
                      const QByteArray& input)
{
    QTemporaryDir directory;
    const QString in = directory.filePath(QStringLiteral("in"));
    const QString out = directory.filePath(QStringLiteral("out.") + extension);
    QStringList real = arguments;
    for (QString& argument : real)
        argument.replace(QLatin1String("@in"), in).replace(QLatin1Char('@'), out);
    writeFile(in, input);
    outputOf(program, real);
    QFile file(out);
    if (!file.open(QIODevice::ReadOnly)) {
        QTest::qFail(qPrintable(program + QStringLiteral(" made no file")), __FILE__, __LINE__);
        return {};
    }
    return file.readAll();
}

QImage readByMagick(const QByteArray& bytes, const QString& format, int page)
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("in.") + format);
    writeFile(path, bytes);
    const QByteArray output = outputOf(
        QStringLiteral("convert"),
        {QStringLiteral("%1:%2[%3]").arg(format, path).arg(page), QStringLiteral("-coalesce"),
         QStringLiteral("-format"), QStringLiteral("%w %h\n"), QStringLiteral("-write"),
         QStringLiteral("info:-"), QStringLiteral("-depth"), QStringLiteral("8"), QStringLiteral("rgba:-")});
    qsizetype at = 0;
    const int width = nextNumber(output, at);
    const int height = nextNumber(output, at);
    ++at;
    if (width < 1 || height < 1 || output.size() - at != qsizetype(width) * height * 4)
        return {};
    QImage image(width, height, QImage::Format_ARGB32);
    const auto* bytesAt = reinterpret_cast<const uchar*>(output.constData()) + at;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, bytesAt += 4)
            image.setPixel(x, y, qRgba(bytesAt[0], bytesAt[1], bytesAt[2], bytesAt[3]));
    }
    return image;
}

QImage readByNetpbm(const QByteArray& bytes, const QString& program)
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("in"));
    writeFile(path, bytes);
    return readPnm(outputOf(program, {path}));
}

QImage readPnm(const QByteArray& bytes)
{
    if (bytes.size() < 3 || bytes[0] != 'P')
        return {};
    const char kind = bytes[1];
    qsizetype at = 2;
    const int width = nextNumber(bytes, at);
    const int height = nextNumber(bytes, at);
    const int top = kind == '4' ? 1 : nextNumber(bytes, at);
    ++at;
    if ((kind != '4' && kind != '5' && kind != '6') || width < 1 || height < 1 || top < 1 || top > 65535)
        return {};
    const int samples = kind == '6' ? 3 : 1;
    const int sampleBytes = top > 255 ? 2 : 1;
    const qsizetype rowBytes = kind == '4' ? (width + 7) / 8 : qsizetype(width) * samples * sampleBytes;
    if (bytes.size() - at < rowBytes * height)
        return {};
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        const auto* row = reinterpret_cast<const uchar*>(bytes.constData()) + at + y * rowBytes;
        const auto scaled = [&](int index) {
            const int value = sampleBytes == 2 ? row[2 * index] << 8 | row[2 * index + 1] : row[index];
            return (value * 255 + top / 2) / top;
        };
        for (int x = 0; x < width; ++x) {
            if (kind == '6') {
                image.setPixel(x, y, qRgb(scaled(3 * x), scaled(3 * x + 1), scaled(3 * x + 2)));
                continue;
            }
            const int grey = kind == '5' ? scaled(x) : (row[x / 8] & 0x80 >> x % 8 ? 0 : 255);
            image.setPixel(x, y, qRgb(grey, grey, grey));
        }
    }
    return image;
}

QByteArray writePnm(const QImage& image)
{
    const bool bits = image.format() == QImage::Format_Mono;
    const bool grey = image.format() == QImage::Format_Grayscale8;
    QByteArray out = bits ? "P4" : (grey ? "P5" : "P6");
    out += ' ' + QByteArray::number(image.width()) + ' ' + QByteArray::number(image.height());
    out += bits ? "\n" : " 255\n";
    for (int y = 0; y < image.height(); ++y) {
        uchar packed = 0;
        for (int x = 0; x < image.width(); ++x) {
            const QRgb color = image.pixel(x, y);
            if (bits) {
                packed = uchar(packed | (qRed(color) == 0 ? 0x80 >> x % 8 : 0));
                if (x % 8 == 7 || x == image.width() - 1) {
                    out += char(packed);
                    packed = 0;
                }
                continue;
            }
            out += char(qRed(color));
            if (!grey) {
                out += char(qGreen(color));
                out += char(qBlue(color));
            }
        }
    }
    return out;
}

QImage colorPicture(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, noise(x, y) | 0xFF000000);
    }
    return image;
}

QImage alphaPicture(QSize size)
{
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const QRgb color = noise(x, y);
            const int alpha = (x + y) % 3 == 0 ? 255 : ((x + y) % 3 == 1 ? qAlpha(color) : 0);
            image.setPixel(x, y, qRgba(qRed(color), qGreen(color), qBlue(color), alpha));
        }
    }
    return image;
}

QImage palettePicture(QSize size, int colors)
{
    QImage image(size, QImage::Format_Indexed8);
    QList<QRgb> palette;
    for (int i = 0; i < colors; ++i)
        palette.append(qRgb(i * 255 / colors, (i * 37) % 256, 255 - i));
    image.setColorTable(palette);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, noise(x / 3, y) % quint32(colors));
    }
    return image;
}

QImage greyPicture(QSize size)
{
    QImage image(size, QImage::Format_Grayscale8);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.scanLine(y)[x] = uchar(noise(x, y));
    }
    return image;
}

QImage dotPicture(QSize size)
{
    QImage image(size, QImage::Format_Mono);
    image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, noise(x / 2, y) % 2);
    }
    return image;
}

QString difference(const QImage& actual, const QImage& expected, bool clearIsClear)
{
    if (actual.isNull() || expected.isNull())
        return QStringLiteral("one image is null");
    if (actual.size() != expected.size())
        return QStringLiteral("%1 x %2 instead of %3 x %4")
            .arg(actual.width())
            .arg(actual.height())
            .arg(expected.width())
            .arg(expected.height());
    for (int y = 0; y < actual.height(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            const QRgb a = actual.pixel(x, y);
            const QRgb b = expected.pixel(x, y);
            if (a != b && !(clearIsClear && qAlpha(a) == 0 && qAlpha(b) == 0))
                return QStringLiteral("pixel %1, %2 is %3 instead of %4")
                    .arg(x)
                    .arg(y)
                    .arg(a, 8, 16, QLatin1Char('0'))
                    .arg(b, 8, 16, QLatin1Char('0'));
        }
    }
    return {};
}

} // namespace quorvia::test
