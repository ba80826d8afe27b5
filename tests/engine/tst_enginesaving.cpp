// Saving through the control: what is written where, and what a failure costs.
#include "engine/ImageEngine.h"
#include "FakePictures.h"
#include "IndependentReader.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const QString small = QStringLiteral("small"); // 60 x 30

} // namespace

class tst_EngineSaving : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_pictures[small].pages = {graded(60, 30)};
        m_engine = std::make_unique<ImageEngine>(std::make_shared<ImageLoader>(m_pictures.opener()));
    }

    void cleanup() { m_engine.reset(); }

    void saves()
    {
        const QString path = m_directory->filePath(QStringLiteral("a.PNG"));
        m_engine->SetFileName(small);
        m_engine->SetSaveFileName(path);
        QVERIFY2(m_engine->SaveFile(), qPrintable(m_engine->LastError()));
        QCOMPARE(QImage(path).convertToFormat(QImage::Format_RGB32), graded(60, 30));
        QCOMPARE(m_engine->FileName(), small);
        QCOMPARE(m_engine->LastError(), QString());
    }

    void savesOverItsOwnFile()
    {
        const QString path = m_directory->filePath(QStringLiteral("a.png"));
        QVERIFY(graded(60, 30).save(path));
        ImageEngine engine(std::make_shared<ImageLoader>());
        engine.SetFileName(path);
        engine.Rotate(90);
        engine.SetSaveFileName(path);
        QVERIFY(engine.SaveFile());
        QCOMPARE(engine.FileName(), path);
        QCOMPARE(engine.ImagePixelWidth(), 30);
        engine.SetFileName(path);
        QCOMPARE(engine.ImagePixelWidth(), 30);
        QCOMPARE(engine.Picture().pixel(0, 59), graded(60, 30).pixel(0, 0));
    }

    void jpegOptionsReachTheFile_data()
    {
        QTest::addColumn<int>("luminance");
        QTest::addColumn<int>("chrominance");
        QTest::addColumn<int>("sampling");
        QTest::addColumn<bool>("grey");
        QTest::addColumn<QString>("factors");    // as ImageMagick tells them
        QTest::addColumn<bool>("fineLuminance"); // steps of 1, in the quantisation table
        QTest::addColumn<bool>("fineChrominance");
        QTest::newRow("best") << 0 << 0 << 0 << false << "1x1,1x1,1x1" << true << true;
        QTest::newRow("luminance alone") << 255 << 0 << 0 << false << "1x1,1x1,1x1" << false << true;
        QTest::newRow("chrominance alone") << 0 << 255 << 0 << false << "1x1,1x1,1x1" << true << false;
        QTest::newRow("across") << 0 << 0 << 1 << false << "2x1,1x1,1x1" << true << true;
        QTest::newRow("both ways") << 0 << 0 << 2 << false << "2x2,1x1,1x1" << true << true;
        QTest::newRow("down") << 0 << 0 << 3 << false << "1x2,1x1,1x1" << true << true;
        QTest::newRow("grey") << 0 << 0 << 1 << true << "1x1" << true << true;
    }

    void jpegOptionsReachTheFile()
    {
        QFETCH(int, luminance);
        QFETCH(int, chrominance);
        QFETCH(int, sampling);
        QFETCH(bool, grey);
        m_engine->SetPicture(graded(1200, 600));
        m_engine->SetJPEGChrominance(chrominance);
        m_engine->SetJPEGLuminance(luminance);
        m_engine->SetJPEGSubSampling(sampling);
        m_engine->SetJPEGGrayscale(grey);
        const QByteArray jpeg = saved(QStringLiteral("a.jpg"));
        QTEST(
            QString::fromLatin1(runTool(QStringLiteral("identify"),
                                        {QStringLiteral("-format"), QStringLiteral("%[jpeg:sampling-factor]"),
                                         m_directory->filePath(QStringLiteral("a.jpg"))})),
            "factors");
        constexpr char tables = '\xdb';
        QByteArray steps;
        for (int i = 0; !segment(jpeg, tables, i).isEmpty(); ++i)
            steps += segment(jpeg, tables, i);
        QVERIFY(steps.size() == (grey ? 65 : 130)); // each table behind a byte with its number
        QTEST(steps[1] == 1, "fineLuminance");
        QTEST(grey || steps[66] == 1, "fineChrominance");
    }

    void theSaveTypeGoesBeforeTheName()
    {
        m_engine->SetPicture(graded(60, 30));
        m_engine->SetSaveFileType(8);
        QVERIFY(saved(QStringLiteral("a.thb")).startsWith("\xff\xd8\xff"));
        QVERIFY(saved(QStringLiteral("a.png")).startsWith("\xff\xd8\xff"));
        m_engine->SetSaveFileType(0);
        QVERIFY(saved(QStringLiteral("b.png")).startsWith("\x89PNG"));
    }

    void depthSurvivesTurningAndSaving_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<int>("colors");
        QTest::addColumn<int>("depth");
        const auto row = [](const char* extension, const char* name, int colors, int depth) {
            QTest::addRow("%s, %s", extension, name) << QString::fromLatin1(extension) << colors << depth;
        };
        for (const char* extension :
             {"png", "tif", "bmp", "dib", "rle", "gif", "tga", "ico", "pcx", "dcx", "wpg"})
            row(extension, "200 colours", 200, 8);
        for (const char* extension : {"png", "tif", "bmp", "dib", "gif", "ico", "pcx", "dcx", "pbm", "wpg"})
            row(extension, "1 bit", 2, 1);
        for (const char* extension : {"rle", "tga"})
            row(extension, "1 bit, kept in 8", 2, 8); // the least that they have
    }

    void depthSurvivesTurningAndSaving()
    {
        QFETCH(QString, extension);
        QFETCH(int, colors);
        const QSize size(61, 30);
        const QImage picture = colors == 2 ? dotPicture(size) : palettePicture(size, colors);
        const QString path = m_directory->filePath(QStringLiteral("a.") + extension);
        m_engine->SetPicture(picture);
        m_engine->Rotate(90);
        QVERIFY(!saved(QStringLiteral("a.") + extension).isEmpty());
        const QString told = QString::fromLatin1(runTool(
            QStringLiteral("identify"), {QStringLiteral("-format"), QStringLiteral("%[type] %k"), path}));
        QVERIFY2(told.startsWith(colors == 2 ? QStringLiteral("Bilevel") : QStringLiteral("Palette")),
                 qPrintable(told));
        ImageEngine reader(std::make_shared<ImageLoader>());
        reader.SetFileName(path);
        QTEST(reader.BitsPerPixel(), "depth");
        reader.Rotate(-90);
        QCOMPARE(difference(reader.Picture(), picture), QString());
    }

    void cannotSave_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("unknown extension") << QStringLiteral("a.xyz");
        QTest::newRow("no extension") << QStringLiteral("a");
        QTest::newRow("no directory") << QStringLiteral("none/a.png");
        QTest::newRow("directory in its place") << QStringLiteral("there.png");
    }

    void cannotSave()
    {
        QFETCH(QString, name);
        QVERIFY(QDir(m_directory->path()).mkdir(QStringLiteral("there.png")));
        m_engine->SetFileName(small);
        m_engine->SetSaveFileName(m_directory->filePath(name));
        QVERIFY(!m_engine->SaveFile());
        QVERIFY(!m_engine->LastError().isEmpty());
        QCOMPARE(m_engine->FileName(), small);
        QVERIFY(!QFileInfo(m_directory->filePath(name)).isFile());
    }

  private:
    /// The bytes behind the first marker of `kind`, its length apart.
    static QByteArray segment(const QByteArray& jpeg, char kind, int nth = 0)
    {
        qsizetype at = -1;
        do
            at = jpeg.indexOf(QByteArray("\xff", 1) + kind, at + 1);
        while (nth-- > 0 && at >= 0);
        return at < 0 ? QByteArray() : jpeg.mid(at + 4, uchar(jpeg[at + 2]) * 256 + uchar(jpeg[at + 3]) - 2);
    }

    /// The bytes of the held image saved as `name`; none when that failed.
    QByteArray saved(const QString& name)
    {
        QFile file(m_directory->filePath(name));
        m_engine->SetSaveFileName(file.fileName());
        return m_engine->SaveFile() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    FakePictures m_pictures;
    std::unique_ptr<ImageEngine> m_engine;
};

QTEST_MAIN(tst_EngineSaving)
#include "tst_enginesaving.moc"
