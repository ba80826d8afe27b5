#include "engine/Codec.h"
#include "engine/ImageEngine.h"
#include "engine/SmallPictures.h"
#include "IndependentReader.h"
#include "support/ScarceMemory.h"

#include <QDir>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QSize toSmall(QSize)
{
    return {10, 10};
}

} // namespace

/// Memory that runs out is an error like any other: it neither throws nor ends the program.
class TestScarceMemory : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void saves_data();
    void saves();
    void countsPages();
    void changesAndShows_data();
    void changesAndShows();
    void readsALargeJpegSmall();
    void readsNothingSmallWithoutMemory();
};

void TestScarceMemory::initTestCase()
{
    // Qt converts images on several threads, and GLib, which it asks for their event loops, ends the program
    // where a small allocation fails. That is out of our hands; what is tested here is not.
    qputenv("QT_NO_GLIB", "1");
}

void TestScarceMemory::saves_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QImage>("picture");
    const QSize size(600, 400);
    for (const Codec* codec : codecTable()) {
        const QString extension = codec->extensions().value(0);
        if (!codec->canEncode(extension))
            continue;
        QTest::newRow(qPrintable(extension)) << extension << colorPicture(size);
        QTest::newRow(qPrintable(extension + QStringLiteral(", alpha"))) << extension << alphaPicture(size);
        QTest::newRow(qPrintable(extension + QStringLiteral(", grey"))) << extension << greyPicture(size);
    }
    const QString runs = QStringLiteral("rle");
    QTest::newRow("rle, alpha") << runs << alphaPicture(size);
}

void TestScarceMemory::saves()
{
    QFETCH(QString, extension);
    QFETCH(QImage, picture);
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("out.") + extension);
    ImageEngine engine(std::make_shared<ImageLoader>());
    engine.SetPicture(picture);
    engine.SetSaveFileName(path);
    int failures = 0;
    int successes = 0;
    for (const qint64 kilobytes : {50, 100, 200, 400, 700, 1000, 1500, 2500, 4000, 200000}) {
        const int saved = heldWithMemory(kilobytes << 10, [&engine] { return engine.SaveFile(); });
        QVERIFY2(saved >= 0, qPrintable(QString::number(kilobytes)));
        QCOMPARE(QFile::exists(path), saved == 1);
        QFile::remove(path);
        (saved ? successes : failures) += 1;
    }
    QVERIFY2(failures > 1 && successes > 0, qPrintable(QString::number(failures)));
}

void TestScarceMemory::countsPages()
{
    // Directories without end: each of them one entry, each one followed by the next.
    QByteArray many = QByteArray::fromHex("49492a0008000000");
    for (int i = 0; i < 40000; ++i) {
        many += QByteArray::fromHex("0100 000103000100000001000000");
        const quint32 next = quint32(many.size()) + 4;
        many += QByteArray(reinterpret_cast<const char*>(&next), 4);
    }
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("many.tif"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(many) == many.size());
    file.close();
    QVERIFY(ImageLoader::pageCount(path) > 30000);
    const int none = heldWithMemory(0, [&path] { return ImageLoader::pageCount(path) == 0; });
    QCOMPARE(none, 1);
}

void TestScarceMemory::changesAndShows_data()
{
    QTest::addColumn<int>("step");
    QTest::newRow("turn") << 0;
    QTest::newRow("turn by some degrees") << 1;
    QTest::newRow("enlarge") << 2;
    QTest::newRow("reduce") << 3;
    QTest::newRow("bevel") << 4;
    QTest::newRow("count the colours") << 5;
    QTest::newRow("paint") << 6;
}

void TestScarceMemory::changesAndShows()
{
    QFETCH(int, step);
    ImageEngine engine(std::make_shared<ImageLoader>());
    const QImage picture = colorPicture(QSize(1500, 1000));
    engine.SetPicture(picture);
    engine.resize(3000, 2000);
    engine.SetScaleMode(4);
    QImage canvas(3000, 2000, QImage::Format_RGB32);
    const auto act = [&] {
        switch (step) {
        case 0:
            engine.Rotate(90);
            break;
        case 1:
            engine.Rotate(30);
            break;
        case 2:
            engine.Resize(3000, 2000);
            break;
        case 3:
            engine.Resize(700, 500);
            break;
        case 4:
            engine.Bevel(1, 10, 10);
            break;
        case 5:
            engine.UniqueColors();
            break;
        default:
            engine.render(&canvas);
            return canvas.pixelColor(canvas.rect().center()) != engine.BackColor();
        }
        return engine.LastError().isEmpty();
    };
    int failures = 0;
    for (const qint64 kilobytes : {20, 50, 100, 200, 400, 800, 1500, 3000, 200000}) {
        constexpr int painting = 6;
        if (step == painting && kilobytes < 400)
            continue; // the toolkit's own share, without which it does not come as far as to the control
        const int done = heldWithMemory(kilobytes << 10, act);
        QVERIFY2(done >= 0, qPrintable(QString::number(kilobytes)));
        failures += done == 0;
        if (kilobytes == 200000)
            QCOMPARE(done, 1);
    }
    QVERIFY(failures > 0);
}

void TestScarceMemory::readsALargeJpegSmall()
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("large.jpg"));
    QImage red(6000, 4000, QImage::Format_RGB32);
    red.fill(qRgb(200, 30, 30));
    QVERIFY(red.save(path));
    // Every pixel would take 96 MB.
    const int held = heldWithMemory(qint64(24) << 20, [&path] {
        const auto read = readSmall({path, QSize(200, 150), toSmall, {}}, CancelFlag(false));
        return read && read->page == QSize(6000, 4000) && qRed(read->image.pixel(5, 5)) > 190;
    });
    QCOMPARE(held, 1);
}

void TestScarceMemory::readsNothingSmallWithoutMemory()
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("picture.png"));
    QVERIFY(colorPicture({3000, 2000}).save(path));
    const int held = heldWithMemory(qint64(4) << 20, [&path] {
        return !readSmall({path, {}, toSmall, {}}, CancelFlag(false));
    });
    QCOMPARE(held, 1);
}

QTEST_MAIN(TestScarceMemory)
#include "tst_scarcememory.moc"
