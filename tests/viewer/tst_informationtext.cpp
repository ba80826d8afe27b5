// What the information panel says of a file and of an image.
#include "app/mFile.h"
#include "support/ScratchHome.h"
#include "viewer/InformationText.h"

#include <QFile>
#include <QTest>

using namespace quorvia;
using viewer::FileFacts;
using viewer::FileTimes;

namespace {

FileTimes someTimes()
{
    return {QDateTime(QDate(2003, 1, 14), QTime(9, 5)), QDateTime(QDate(2024, 2, 29), QTime(23, 59)),
            QDateTime(QDate(2025, 12, 1), QTime(0, 0))};
}

} // namespace

class TestInformationText : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void files_data()
    {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<bool>("timed");
        QTest::addColumn<QString>("attributes");
        QTest::addColumn<QString>("text");
        QTest::newRow("all known") << qint64(1536) << true << "ReadOnly Hidden"
                                   << "File Size: 1,536 Bytes  2 KB  0.00 MB\n"
                                      "\n"
                                      "Created On: January 14, 2003\n"
                                      "Modified On: February 29, 2024\n"
                                      "Last Accessed On: December 01, 2025\n"
                                      "Attributes: ReadOnly Hidden";
        QTest::newRow("no times") << qint64(1572864) << false << ""
                                  << "File Size: 1,572,864 Bytes  1,536 KB  1.50 MB\n"
                                     "Attributes: ";
        QTest::newRow("nothing") << qint64(0) << false << ""
                                 << "File Size: 0 Bytes  0 KB  0.00 MB\nAttributes: ";
    }

    void files()
    {
        QFETCH(qint64, bytes);
        QFETCH(bool, timed);
        QFETCH(QString, attributes);
        FileFacts facts{.bytes = bytes, .times = {}, .attributes = attributes};
        if (timed)
            facts.times = someTimes();
        QTEST(viewer::fileInfoText(facts), "text");
    }

    void images_data()
    {
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<int>("depth");
        QTest::addColumn<int>("colors");
        QTest::addColumn<QString>("text");
        QTest::newRow("a photograph")
            << QSize(4000, 3000) << 24 << 123456
            << "Dimensions: 4000x3000\nBits Per Pixel: \t24\nUnique Colors:\t123456";
        QTest::newRow("not counted yet")
            << QSize(1, 2) << 8 << -1 << "Dimensions: 1x2\nBits Per Pixel: \t8\nUnique Colors:\t";
        QTest::newRow("no image") << QSize(0, 0) << 0 << 0
                                  << "Dimensions: 0x0\nBits Per Pixel: \t0\nUnique Colors:\t0";
    }

    void images()
    {
        QFETCH(QSize, pixels);
        QFETCH(int, depth);
        QFETCH(int, colors);
        QTEST(viewer::imageInfoText({pixels, depth}, colors < 0 ? std::nullopt : std::optional(colors)),
              "text");
    }

    void factsOfAFile()
    {
        const test::ScratchHome home;
        const QString path = home.write(QStringLiteral(".hidden.png"), QByteArray(2000, 'x'));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
        const QDateTime accessed(QDate(2021, 7, 9), QTime(10, 11, 12));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.setFileTime(QDateTime(QDate(2022, 8, 7), QTime(1, 2, 3)),
                                 QFileDevice::FileModificationTime));
        QVERIFY(file.setFileTime(accessed, QFileDevice::FileAccessTime));
        const std::optional<FileFacts> facts = viewer::fileFacts(path);
        QVERIFY(facts && facts->times);
        QCOMPARE(facts->bytes, 2000);
        QCOMPARE(facts->times->modified, app::GetFileModified(path));
        QCOMPARE(facts->times->accessed, accessed);
        // The file is new, whichever times its file system keeps.
        QVERIFY(facts->times->created > QDateTime::currentDateTime().addSecs(-3600));
        QCOMPARE(facts->attributes, QStringLiteral("ReadOnly Hidden"));
    }

    void factsOfWhatIsNoFile_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("known");
        QTest::addColumn<QString>("attributes");
        QTest::newRow("empty") << "" << true << "";
        QTest::newRow("gone") << "gone.png" << false << "";
        QTest::newRow("a directory") << "." << true << "Directory";
    }

    void factsOfWhatIsNoFile()
    {
        const test::ScratchHome home;
        QFETCH(QString, path);
        const std::optional<FileFacts> facts = viewer::fileFacts(path.isEmpty() ? path : home.path(path));
        QTEST(facts.has_value(), "known");
        if (!facts)
            return;
        QCOMPARE(facts->bytes, 0);
        QVERIFY(!facts->times);
        QTEST(facts->attributes.section(u' ', 0, 0), "attributes");
    }
};

QTEST_APPLESS_MAIN(TestInformationText)
#include "tst_informationtext.moc"
