// Conversions that go wrong: no file of the user is lost, none is half written, and no picture is taken for
// another.
#include "ConvertBench.h"
#include "platform/FileStatus.h"
#include "support/FullDisk.h"

#include <QProcess>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quorvia;
using test::contentOf;
using test::noise;

class TestConversionSafety : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ConvertBench> m_bench;
    test::ConvertBench& bench() { return *m_bench; }

    /// Three pages, made by libtiff's own tools.
    QString threePages()
    {
        const QString path = bench().file(QStringLiteral("pages.tif"));
        const QString page = bench().picture(QStringLiteral("page.png"));
        const int result = QProcess::execute(QStringLiteral("convert"), {page, page, page, path});
        QFile::remove(page);
        return result == 0 ? path : QString();
    }

  private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<test::ConvertBench>();
        bench().deleteOriginal(true); // what can be lost is meant to be lost here
    }
    void cleanup() { m_bench.reset(); }

    void aSourceThatDoesNotLoad_data()
    {
        QTest::addColumn<bool>("alone");
        QTest::addColumn<QByteArray>("content"); // null: no file
        for (const bool alone : {false, true}) {
            const char* const way = alone ? "yes to all" : "yes";
            QTest::addRow("missing, %s", way) << alone << QByteArray();
            QTest::addRow("empty, %s", way) << alone << QByteArray("");
            QTest::addRow("text, %s", way) << alone << QByteArray("no picture at all");
            QTest::addRow("head alone, %s", way) << alone << QByteArray("\x89PNG\r\n\x1a\n");
        }
    }

    void aSourceThatDoesNotLoad()
    {
        QFETCH(bool, alone);
        QFETCH(QByteArray, content);
        bench().convert(bench().picture("good.bmp"), bench().file("good.png")); // what must not show again
        const QString source = bench().file("bad.bmp");
        if (!content.isNull())
            bench().bytes("bad.bmp", content);
        const QString target = bench().bytes("bad.png", "old");
        const QStringList trash = bench().trash();
        if (alone)
            bench().convertAlone(source, target);
        else
            bench().convert(source, target, [&] {
                for (const char* name : {"ixOri", "ixPreview"}) {
                    QCOMPARE(bench().image(name)->FileName(), QString());
                    QVERIFY(bench().image(name)->Picture().isNull());
                }
                bench().button("cmdYes")->click();
            });
        QCOMPARE(contentOf(target), QByteArray("old"));
        QCOMPARE(QFile::exists(source), !content.isNull());
        QCOMPARE(bench().trash(), trash);
        QVERIFY(bench().log().contains(QStringLiteral("Conversion without a preview: ") + source));
    }

    void nothingWrittenIsNoYes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("Yes") << "cmdYes";
        QTest::newRow("Yes to All") << "cmdYesToAll";
    }

    /// Whoever finds the old target would take it for the result.
    void nothingWrittenIsNoYes()
    {
        QFETCH(QString, name);
        const QString target = bench().bytes("bad.png", "old");
        QCOMPARE(bench().convert(bench().bytes("bad.bmp", "bad"), target, name.toLatin1().constData()),
                 QStringLiteral("No"));
        QVERIFY(bench().boxes.isEmpty());
    }

    void aScratchFileThatCannotBeWritten()
    {
        const QString source = bench().picture("a.bmp");
        const QString target = bench().file("a.png");
        bench().convert(source, bench().file("before.png"), "cmdNo");
        QVERIFY(QDir(bench().scratchFolder()).removeRecursively());
        bench().convert(source, target, [&] {
            QVERIFY(bench().image("ixPreview")->Picture().isNull());
            bench().button("cmdYes")->click();
        });
        QCOMPARE(bench().pictures(), QStringList{"a.bmp"});
        QCOMPARE(bench().trash(), QStringList());
    }

    void aFormatThatIsNotWritten_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("unknown") << "a.xyz";
        QTest::newRow("none") << "a";
        QTest::newRow("very long") << "a." + QString(4000, u'x');
    }

    void aFormatThatIsNotWritten()
    {
        QFETCH(QString, target);
        QCOMPARE(bench().convert(bench().picture("a.bmp"), bench().file(target)), QStringLiteral("No"));
        QCOMPARE(bench().pictures(), QStringList{"a.bmp"});
    }

    void aFullDisk_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::newRow("copied") << "png";
        QTest::newRow("encoded") << "jpg";
    }

    void aFullDisk()
    {
        QFETCH(QString, extension);
        const QString source = bench().picture("a.bmp", noise(QSize(400, 300), 90));
        const QString target = bench().bytes(QStringLiteral("a.") + extension, "old");
        std::unique_ptr<test::FullDisk> full;
        bench().whileAsked = [&] { full = std::make_unique<test::FullDisk>(20000); };
        const QString answer = bench().convert(source, target);
        QVERIFY(full && full->isFull());
        full.reset();
        QCOMPARE(answer, QStringLiteral("No"));
        QCOMPARE(contentOf(target), QByteArray("old"));
        QCOMPARE(bench().pictures(), QStringList({"a.bmp", QStringLiteral("a.") + extension}));
        QVERIFY(bench().log().contains(QStringLiteral("Conversion not written: ") + target));
    }

    void aFullDiskForTheScratchFile()
    {
        const QString source = bench().picture("a.bmp", noise(QSize(400, 300), 90));
        {
            const test::FullDisk full(20000);
            QVERIFY(full.isFull());
            bench().convert(source, bench().file("a.png"), [&] {
                QCOMPARE(bench().scratchFiles(), QStringList());
                bench().button("cmdYes")->click();
            });
        }
        QCOMPARE(bench().pictures(), QStringList{"a.bmp"});
    }

    void aDirectoryThatIsNotThere()
    {
        const QString source = bench().picture("a.bmp");
        QCOMPARE(bench().convert(source, bench().file("gone/a.png")), QStringLiteral("No"));
        QCOMPARE(bench().pictures(), QStringList{"a.bmp"});
        QVERIFY(bench().log().contains(QStringLiteral("Conversion not written")));
    }

    void aTargetThatMayNotBeWritten()
    {
        const QString source = bench().picture("a.bmp");
        const QString target = bench().bytes("a.png", "old");
        QCOMPARE(::chmod(qPrintable(target), 0444), 0);
        QCOMPARE(bench().convert(source, target), QStringLiteral("No"));
        QCOMPARE(contentOf(target), QByteArray("old"));
        QCOMPARE(bench().trash(), QStringList());
        QVERIFY(QFile::exists(source));
    }

    void theSameFileByAnotherName_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        QTest::newRow("a way round") << "a.bmp"
                                     << "../pictures/a.bmp";
        QTest::newRow("a link to the source") << "a.bmp"
                                              << "link.bmp";
        QTest::newRow("a link as the source") << "link.bmp"
                                              << "a.bmp";
        QTest::newRow("itself") << "a.bmp"
                                << "a.bmp";
    }

    void theSameFileByAnotherName()
    {
        QFETCH(QString, source);
        QFETCH(QString, target);
        const QString path = bench().picture("a.bmp");
        QVERIFY(QFile::link(path, bench().file("link.bmp")));
        QCOMPARE(bench().convert(bench().file(source), bench().file(target)), QStringLiteral("Yes"));
        QCOMPARE(QImage(path).convertToFormat(QImage::Format_RGB32), noise(QSize(61, 47), 90));
        QCOMPARE(bench().pictures(), QStringList({"a.bmp", "link.bmp"}));
    }

    /// After the write the second name has a file of its own.
    void aSecondNameOfTheSource()
    {
        const QString source = bench().picture("a.bmp");
        const QByteArray content = contentOf(source);
        const QString target = bench().file("b.jpg");
        QCOMPARE(::link(qPrintable(source), qPrintable(target)), 0);
        bench().convert(source, target);
        QVERIFY(contentOf(target).startsWith("\xff\xd8"));
        QCOMPARE(bench().inTrash("a.bmp"), content);
    }

    void aSourceThatAnotherProgramReplaces()
    {
        const QString source = bench().picture("a.bmp");
        bench().convert(source, bench().file("a.png"), [&] {
            bench().bytes("a.bmp", "another one's");
            bench().button("cmdYes")->click();
        });
        QCOMPARE(contentOf(source), QByteArray("another one's"));
        QCOMPARE(QImage(bench().file("a.png")).convertToFormat(QImage::Format_RGB32),
                 noise(QSize(61, 47), 90));
    }

    void aSourceOfManyPages()
    {
        const QString source = threePages();
        QVERIFY(!source.isEmpty());
        bench().convert(source, bench().file("a.png"));
        QCOMPARE(bench().trash(), QStringList{"pages.tif"});
        QVERIFY(bench().log().contains(QStringLiteral("3 pages")));
    }

    void manyPagesWithoutATrashAreNotOverwritten()
    {
        const QString source = threePages();
        QVERIFY(!source.isEmpty());
        const QByteArray content = contentOf(source);
        bench().m_home.write(QStringLiteral(".local/share/Trash"), "in the trash's place");
        QCOMPARE(bench().convert(source, source), QStringLiteral("No"));
        QVERIFY(contentOf(source) == content);
        QCOMPARE(bench().convert(bench().picture("b.jpg"), bench().file("b.jpg")), QStringLiteral("Yes"));
    }

    void oddNames_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("quotes") << QByteArray("a'b\"c");
        QTest::newRow("percent") << QByteArray("100%1%n");
        QTest::newRow("line end") << QByteArray("a\nb");
        QTest::newRow("dash") << QByteArray("-rf");
        QTest::newRow("marks") << QByteArray("<b>&amp;");
        QTest::newRow("UTF-8") << QByteArray("\xc3\xa4\xe2\x82\xac");
        QTest::newRow("points") << QByteArray("a.b..c");
    }

    void oddNames()
    {
        QFETCH(QByteArray, name);
        const QString source = bench().picture(QFile::decodeName(name) + ".bmp");
        const QString target = bench().file(QFile::decodeName(name) + ".png");
        QCOMPARE(bench().convert(source, target), QStringLiteral("Yes"));
        QCOMPARE(bench().pictures(), QStringList{QFile::decodeName(name) + ".png"});
    }

    void pathsThatNoDiskTakes_data()
    {
        QTest::addColumn<QString>("path");
        const QString folder = test::ConvertBench::home().path(QStringLiteral("pictures/"));
        QTest::newRow("long") << folder + QString(4000, u'a') + ".png";
        QTest::newRow("empty") << "";
        QTest::newRow("a zero character") << folder + "a" + QChar(0) + ".png";
    }

    void pathsThatNoDiskTakes()
    {
        QFETCH(QString, path);
        const QString source = bench().picture("a.bmp");
        bench().bytes("a", "what the path up to the zero character names");
        QCOMPARE(bench().convert(source, path), QStringLiteral("No"));
        QCOMPARE(bench().convert(path, bench().file("b.png")), QStringLiteral("No"));
        QCOMPARE(bench().pictures(), QStringList({"a", "a.bmp"}));
        QCOMPARE(contentOf(bench().file("a")), QByteArray("what the path up to the zero character names"));
        QCOMPARE(bench().trash(), QStringList());
    }

    /// Two scratch files of one size within one tick of the disk's clock: the loader must not take the second
    /// one for the first.
    void smallPicturesInQuickSuccession()
    {
        for (int i = 0; i < 40; ++i) {
            const QImage image = noise(QSize(4, 4), i * 5);
            const QString source = bench().picture(QStringLiteral("%1.bmp").arg(i), image);
            QCOMPARE(bench().convertAlone(source, bench().file(QStringLiteral("%1.tga").arg(i))),
                     QStringLiteral("Yes to all"));
            engine::ImageEngine reader(std::make_shared<engine::ImageLoader>());
            reader.SetFileName(bench().file(QStringLiteral("%1.tga").arg(i)));
            QCOMPARE(reader.Picture(), image);
        }
    }

    /// The main window may hold the target's picture; size and time tell nothing.
    void theNewContentOfATargetIsSeen()
    {
        const QString target = bench().picture("b.bmp", noise(QSize(16, 16), 10));
        engine::ImageEngine viewer(bench().loader);
        viewer.SetFileName(target);
        QCOMPARE(viewer.Picture(), noise(QSize(16, 16), 10));
        struct stat before = {};
        QCOMPARE(::stat(qPrintable(target), &before), 0);
        bench().convert(bench().picture("a.png", noise(QSize(16, 16), 200)), target);
        const timespec times[] = {before.st_atim, before.st_mtim};
        QCOMPARE(::utimensat(AT_FDCWD, qPrintable(target), times, 0), 0);
        QCOMPARE(QFileInfo(target).size(), before.st_size);
        engine::ImageEngine next(bench().loader);
        next.SetFileName(target);
        QCOMPARE(next.Picture(), noise(QSize(16, 16), 200));
    }

    void twoWindowsDoNotDisturbEachOther()
    {
        output::frmImageConvert other(std::make_shared<engine::ImageLoader>());
        const QString first = bench().picture("a.bmp", noise(QSize(61, 47), 10));
        const QString second = bench().picture("b.bmp", noise(QSize(61, 47), 200));
        bench().convert(first, bench().file("a.png"), [&] {
            other.LoadConversion(second, bench().file("b.png"), true);
            bench().button("cmdYes")->click();
        });
        QCOMPARE(QImage(bench().file("a.png")).pixel(0, 0), noise(QSize(1, 1), 10).pixel(0, 0));
        QCOMPARE(QImage(bench().file("b.png")).pixel(0, 0), noise(QSize(1, 1), 200).pixel(0, 0));
    }
};

QTEST_MAIN(TestConversionSafety)
#include "tst_conversionsafety.moc"
