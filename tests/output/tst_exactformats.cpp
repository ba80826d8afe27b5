// A conversion copies its scratch file where reading and writing it again would give the same bytes. Here it
// is read and written again.
#include "engine/ImageEngine.h"
#include "output/ConversionFiles.h"

#include <QColorSpace>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace quorvia;
using engine::ImageEngine;

namespace {

/// Noise with runs in it, so that every way of packing rows comes up.
int valueAt(int x, int y)
{
    return y % 4 == 0 ? 40 : (x * 7919 + y * 104729 + x * y) % 256;
}

QImage deep(QSize size, bool alpha)
{
    QImage image(size, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int value = valueAt(x, y);
            image.setPixel(x, y, qRgba(value, 255 - value, value / 2, alpha ? (value * 3) % 256 : 255));
        }
    }
    return image;
}

QImage flat(QSize size, QImage::Format format, int values, const QList<QRgb>& colors)
{
    QImage image(size, format);
    image.setColorTable(colors);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int value = valueAt(x, y) % values;
            if (format == QImage::Format_Grayscale8)
                image.scanLine(y)[x] = uchar(value);
            else
                image.setPixel(x, y, uint(value));
        }
    }
    return image;
}

QList<QRgb> rainbow(int count, bool transparent)
{
    QList<QRgb> colors;
    for (int i = 0; i < count; ++i)
        colors.append(qRgba(i * 255 / count, (i * 37) % 256, 255 - i, transparent && i == 3 ? 0 : 255));
    return colors;
}

QImage pictureNamed(const QByteArray& kind, QSize size)
{
    if (kind == "black and white")
        return flat(size, QImage::Format_Mono, 2, {qRgb(0, 0, 0), qRgb(255, 255, 255)});
    if (kind == "white and black")
        return flat(size, QImage::Format_Mono, 2, {qRgb(255, 255, 255), qRgb(0, 0, 0)});
    if (kind == "two colours")
        return flat(size, QImage::Format_Mono, 2, {qRgb(200, 0, 0), qRgb(0, 0, 99)});
    if (kind == "ten colours")
        return flat(size, QImage::Format_Indexed8, 10, rainbow(10, false));
    if (kind == "a transparent colour")
        return flat(size, QImage::Format_Indexed8, 10, rainbow(10, true));
    if (kind == "100 colours")
        return flat(size, QImage::Format_Indexed8, 100, rainbow(100, false));
    if (kind == "256 colours")
        return flat(size, QImage::Format_Indexed8, 256, rainbow(256, false));
    if (kind == "grey")
        return flat(size, QImage::Format_Grayscale8, 256, {});
    return deep(size, kind == "alpha");
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestExactFormats : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void whichOnes_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<int>("bits");
        QTest::addColumn<bool>("exact");
        for (const char* extension : {"pcx", "pic", "png", "tga", "tif", "PNG", "Tif"}) {
            for (const int bits : {1, 8, 24, 32})
                QTest::addRow("%s, %d", extension, bits) << QString::fromLatin1(extension) << bits << true;
        }
        for (const int bits : {1, 4, 8, 24, 32})
            QTest::addRow("bmp, %d", bits) << QStringLiteral("bmp") << bits << (bits >= 24);
        for (const char* extension : {"jpg", "jpeg", "JPG", "gif", "webp", "wmf", ""})
            QTest::addRow("no \"%s\"", extension) << QString::fromLatin1(extension) << 24 << false;
    }

    void whichOnes()
    {
        QFETCH(QString, extension);
        QFETCH(int, bits);
        QTEST(output::writesTheSameAgain(extension, bits), "exact");
    }

    void sameAgain_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QImage>("picture");
        QTest::addColumn<bool>("hasProfile");
        const char* const kinds[] = {"black and white",
                                     "white and black",
                                     "two colours",
                                     "ten colours",
                                     "256 colours",
                                     "a transparent colour",
                                     "grey",
                                     "colours",
                                     "alpha"};
        for (const char* extension : {"bmp", "pcx", "pic", "png", "tga", "tif"}) {
            const bool onlyDeep = qstrcmp(extension, "bmp") == 0;
            for (const char* kind : kinds) {
                if (onlyDeep && pictureNamed(kind, QSize(1, 1)).depth() < 24)
                    continue;
                for (const QSize size : {QSize(1, 1), QSize(37, 21), QSize(301, 150)}) {
                    for (const bool profile : {false, true})
                        QTest::addRow("%s, %s, %d wide%s", extension, kind, size.width(),
                                      profile ? ", profile" : "")
                            << QString::fromLatin1(extension) << pictureNamed(kind, size) << profile;
                }
            }
        }
    }

    void sameAgain()
    {
        QFETCH(QString, extension);
        QFETCH(QImage, picture);
        QFETCH(bool, hasProfile);
        const QTemporaryDir directory;
        const QString once = directory.filePath(QStringLiteral("once.") + extension);
        const QString twice = directory.filePath(QStringLiteral("twice.") + extension);
        if (hasProfile && picture.format() != QImage::Format_Grayscale8)
            picture.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
        const auto loader = std::make_shared<engine::ImageLoader>();
        ImageEngine first(loader);
        first.SetPicture(picture);
        first.SetSaveFileName(once);
        QVERIFY2(first.SaveFile(), qPrintable(first.LastError()));
        ImageEngine second(loader);
        second.SetFileName(once);
        QVERIFY(output::writesTheSameAgain(extension, second.BitsPerPixel()));
        second.SetSaveFileName(twice);
        QVERIFY2(second.SaveFile(), qPrintable(second.LastError()));
        QVERIFY(!contentOf(once).isEmpty());
        QVERIFY(contentOf(once) == contentOf(twice));
    }
};

QTEST_MAIN(TestExactFormats)
#include "tst_exactformats.moc"
