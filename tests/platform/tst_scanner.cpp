// Scanners by way of the helper: where it is found, what its words mean, and what becomes of one that fails.
#include "platform/LongWork.h"
#include "platform/ScanHelper.h"
#include "platform/Scanner.h"
#include "support/ScanDrivers.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <csignal>

using namespace quorvia;
using namespace quorvia::platform;

namespace {

constexpr ScanPatience shortPatience{.listing = 1500, .acquiring = 1500, .ending = 300};

} // namespace

class TestScanner : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScanDrivers> m_drivers;
    std::unique_ptr<QTemporaryDir> m_folder;

    QString in(const char* name) const { return m_folder->filePath(QLatin1String(name)); }
    QString write(const char* name, const QByteArray& bytes) const
    {
        QFile file(in(name));
        const bool isOpen = file.open(QIODevice::WriteOnly);
        Q_ASSERT(isOpen);
        Q_UNUSED(isOpen);
        file.write(bytes);
        return in(name);
    }
    /// A stand-in for the helper that runs `script`; the last argument is in $last.
    Scanner standIn(const QByteArray& script) const
    {
        const QString path = write("helper", "#!/bin/sh\nfor last in \"$@\"; do :; done\n" + script + '\n');
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
        return Scanner(path, shortPatience);
    }
    /// The process whose id the stand-in wrote into the file "pid" is gone.
    bool isGone() const
    {
        QFile file(in("pid"));
        if (!file.open(QIODevice::ReadOnly))
            return false;
        const pid_t process = file.readAll().trimmed().toInt();
        return process > 0 && ::kill(process, 0) != 0;
    }

  private Q_SLOTS:
    void init()
    {
        m_drivers = std::make_unique<test::ScanDrivers>();
        m_folder = std::make_unique<QTemporaryDir>();
        qunsetenv("QUORVIA_SCAN_HELPER");
    }
    void cleanup() { m_drivers.reset(); }

    void whereTheHelperIs()
    {
        QDir().mkpath(in("bin"));
        QDir().mkpath(in("libexec/quorvia"));
        const QStringList places{in("bin/"), in("libexec/quorvia/")};
        QCOMPARE(scanHelperPath(places), QString());
        const auto put = [this](const char* name) {
            const QString path = write(name, "#!/bin/sh\n");
            QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
            return path;
        };
        const QString installed = put("libexec/quorvia/quorvia-scan");
        QCOMPARE(scanHelperPath(places), installed);
        const QString beside = put("bin/quorvia-scan");
        QCOMPARE(scanHelperPath(places), beside);
        const QString named = put("other");
        qputenv("QUORVIA_SCAN_HELPER", named.toLocal8Bit());
        QCOMPARE(scanHelperPath(places), named);
        QFile::setPermissions(named, QFile::ReadOwner);
        QCOMPARE(scanHelperPath(places), QString()); // one that was named is the only one
    }

    void configDirectories_data()
    {
        QTest::addColumn<QString>("variable");
        QTest::addColumn<QStringList>("directories");
        QTest::newRow("unset") << "" << QStringList{"/etc/sane.d"};
        QTest::newRow("one") << "/a" << QStringList{"/a"};
        QTest::newRow("two") << "/a:/b" << QStringList{"/a", "/b"};
        QTest::newRow("and the usual one") << "/a:" << QStringList{"/a", "/etc/sane.d"};
    }

    void configDirectories()
    {
        QFETCH(QString, variable);
        QTEST(scanConfigDirectories(variable), "directories");
    }

    void drivers_data()
    {
        QTest::addColumn<QByteArray>("main");
        QTest::addColumn<QByteArray>("part");
        QTest::addColumn<bool>("isThere");
        QTest::newRow("none") << QByteArray() << QByteArray() << false;
        QTest::newRow("remarks") << QByteArray("# net\n  #epson\n\n \t\n") << QByteArray("#x") << false;
        QTest::newRow("one") << QByteArray("# net\n  epson  \n") << QByteArray() << true;
        QTest::newRow("without an end of line") << QByteArray("net") << QByteArray() << true;
        QTest::newRow("in a part") << QByteArray("#") << QByteArray("airscan\n") << true;
    }

    void drivers()
    {
        QFETCH(QByteArray, main);
        QFETCH(QByteArray, part);
        QDir().mkpath(in("dll.d"));
        write("dll.conf", main);
        write("dll.d/part", part);
        QTEST(namesScanDriver({in("elsewhere"), m_folder->path()}), "isThere");
    }

    void presence()
    {
        QVERIFY(scannerPresent(QStringLiteral(SCAN_HELPER)));
        QVERIFY(!scannerPresent(QString()));
        QVERIFY(!scannerPresent(in("none")));
        m_drivers->remove();
        QVERIFY(!scannerPresent(QStringLiteral(SCAN_HELPER)));
    }

    void progress_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("thousandths");
        QTest::newRow("some") << QByteArray("progress 0.37") << 370;
        QTest::newRow("none") << QByteArray("progress 0") << 0;
        QTest::newRow("all") << QByteArray("progress 1.000\r") << 1000;
        QTest::newRow("unknown") << QByteArray("progress unknown") << 0;
        QTest::newRow("too much") << QByteArray("progress 7") << 1000;
        QTest::newRow("too little") << QByteArray("progress -7") << 0;
        QTest::newRow("no number") << QByteArray("progress nan") << 0;
        QTest::newRow("something else") << QByteArray("lamp is warm") << -1;
        QTest::newRow("empty") << QByteArray() << -1;
    }

    void progress()
    {
        QFETCH(QByteArray, line);
        QTEST(scanProgress(line), "thousandths");
    }

    void deviceLines()
    {
        const QList<ScanDevice> devices = scanDevices("a:1\tMaker\tModel\tflatbed\nnonsense\n\tno\tname\tx\n"
                                                      "b\\\\\\t\\n\\r\\x\t\xc3\xa4\t\t\nlast\ta\tb\tc");
        QCOMPARE(devices.size(), 3);
        QCOMPARE(devices[0], (ScanDevice{"a:1", "Maker", "Model", "flatbed"}));
        QCOMPARE(devices[1], (ScanDevice{"b\\\t\n\rx", "ä", "", ""}));
        QCOMPARE(devices[2].name, QStringLiteral("last"));
        QVERIFY(scanDevices({}).isEmpty());
    }

    void pictureFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QSize>("size");
        const QByteArray colors("P6\n2 1\n255\n\1\2\3\4\5\6");
        QTest::newRow("colour") << colors << QSize(2, 1);
        QTest::newRow("grey") << QByteArray("P5\n3 1\n255\n\1\2\3") << QSize(3, 1);
        QTest::newRow("a byte less") << colors.chopped(1) << QSize();
        QTest::newRow("a byte more") << colors + 'x' << QSize();
        QTest::newRow("the head alone") << colors.left(11) << QSize();
        QTest::newRow("half a head") << colors.left(6) << QSize();
        QTest::newRow("empty") << QByteArray() << QSize();
        QTest::newRow("rubbish") << QByteArray("\x7f\x00\xff\x00rubbish", 11) << QSize();
        QTest::newRow("text form") << QByteArray("P3\n1 1\n255\n1 2 3") << QSize();
        QTest::newRow("deeper") << QByteArray("P5\n1 1\n999\n\1\2") << QSize();
        QTest::newRow("no width") << QByteArray("P5\n0 1\n255\n") << QSize();
        QTest::newRow("less than nothing") << QByteArray("P5\n-1 -1\n255\n\1") << QSize();
        QTest::newRow("absurd") << QByteArray("P6\n99999 99999\n255\n\1") << QSize();
        QTest::newRow("beyond numbers") << QByteArray("P6\n99999999999999999999 1\n255\n\1") << QSize();
    }

    void pictureFiles()
    {
        QFETCH(QByteArray, bytes);
        QString why;
        const QImage picture = readScannedPicture(write("x.pnm", bytes), &why);
        QTEST(picture.size().isEmpty() ? QSize() : picture.size(), "size");
        QCOMPARE(why.isEmpty(), !picture.isNull());
        if (picture.width() == 2)
            QCOMPARE(picture.pixelColor(1, 0), QColor(4, 5, 6));
        if (picture.width() == 3)
            QCOMPARE(picture.pixelColor(2, 0), QColor(3, 3, 3));
    }

    void aRealOne()
    {
        const Scanner scanner(QStringLiteral(SCAN_HELPER));
        QString why;
        const auto devices = scanner.list(nullptr, &why);
        QVERIFY2(devices, qPrintable(why));
        QCOMPARE(devices->size(), 2);
        QCOMPARE(devices->at(0), (ScanDevice{"test:0", "Noname", "frontend-tester", "virtual device"}));
        const QImage picture = scanner.acquire(nullptr, {"test:1", ScanMode::Color, 75}, &why);
        QCOMPARE(why, QString());
        QCOMPARE(picture.size(), QSize(118, 88));
        QVERIFY(!picture.allGray());
        QVERIFY(scanner.acquire(nullptr, {"test:1", ScanMode::Gray, 75}, &why).allGray());
        QVERIFY(scanner.acquire(nullptr, {"test:9", ScanMode::Color, 75}, &why).isNull());
        QVERIFY(why.contains(QStringLiteral("test:9")));
    }

    void aDriverThatCrashes()
    {
        m_drivers->pretend({"number_of_devices 0"}); // with none that one falls over its own list
        QString why;
        QVERIFY(!Scanner(QStringLiteral(SCAN_HELPER)).list(nullptr, &why));
        QVERIFY(!why.isEmpty()); // in other words where sanitizers catch the crash
    }

    void helpersThatFail_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QString>("word");
        QTest::newRow("crash") << QByteArray("kill -SEGV $$") << "crash";
        QTest::newRow("crash half-way")
            << QByteArray("echo progress 0.5; printf 'P5\\n2 2\\n255\\nab' > \"$last\"; kill -ABRT $$")
            << "crash";
        QTest::newRow("an error") << QByteArray("echo first >&2; echo paper jam >&2; exit 5") << "paper jam";
        QTest::newRow("half a picture") << QByteArray("printf 'P5\\n2 2\\n255\\nab' > \"$last\"") << "whole";
        QTest::newRow("rubbish") << QByteArray("head -c 5000 /dev/urandom > \"$last\"") << "whole";
        QTest::newRow("no picture") << QByteArray("exit 0") << "No such file";
        QTest::newRow("rubbish as words")
            << QByteArray("head -c 3000 /dev/urandom; echo; echo progress x; exit 3") << "exit code 3";
        QTest::newRow("words without end") << QByteArray("exec yes progress 0.5") << "more than";
        QTest::newRow("silence") << QByteArray("exec sleep 60") << "does not answer";
        QTest::newRow("silence that hears nothing")
            << QByteArray("trap '' TERM; while :; do sleep 1; done") << "does not answer";
    }

    void helpersThatFail()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, word);
        const Scanner scanner = standIn("echo $$ > '" + in("pid").toUtf8() + "'\n" + script);
        QElapsedTimer waited;
        waited.start();
        QString why;
        QVERIFY(scanner.acquire(nullptr, {"any", ScanMode::Color, 100}, &why).isNull());
        QVERIFY2(why.contains(word), qPrintable(why));
        QVERIFY(!why.contains(u'\n'));
        QVERIFY(waited.elapsed() < 10'000);
        QVERIFY(isGone());
    }

    void aDriverThatFailsAtTheEndOfAScan_data()
    {
        QTest::addColumn<QByteArray>("fault");
        QTest::addColumn<QString>("word");
        QTest::newRow("crash") << QByteArray("close crashes") << "crash";
        QTest::newRow("silence") << QByteArray("close hangs") << "did not end";
    }

    void aDriverThatFailsAtTheEndOfAScan()
    {
        QFETCH(QByteArray, fault);
        QFETCH(QString, word);
        m_drivers->installOdd(ODD_DRIVERS, fault.constData());
        QElapsedTimer waited;
        waited.start();
        QString why;
        const Scanner scanner(QStringLiteral(SCAN_HELPER), {.acquiring = 60'000, .ending = 300});
        const QImage picture = scanner.acquire(nullptr, {"odd:one", ScanMode::Gray, 100}, &why);
        QCOMPARE(picture.size(), QSize(40, 30));
        QCOMPARE(picture.pixelColor(10, 29), QColor(60, 60, 60));
        QVERIFY2(why.contains(word), qPrintable(why));
        QVERIFY(waited.elapsed() < 10'000);
    }

    void aCancelBehindThePictureLosesNothing()
    {
        QWidget owner;
        standIn("echo $$ > '" + in("pid").toUtf8() +
                "'; printf 'P5\n2 2\n255\nabcd' > \"$last\"; echo picture; trap '' TERM; sleep 60");
        const Scanner patient(in("helper"), {.acquiring = 60'000, .ending = 2'000});
        QTimer::singleShot(600, this, [] { LongWork::cancelAll(); });
        QElapsedTimer waited;
        waited.start();
        QString why;
        QCOMPARE(patient.acquire(&owner, {"any", ScanMode::Gray, 100}, &why).size(), QSize(2, 2));
        QVERIFY(waited.elapsed() < 10'000);
        QTRY_VERIFY(isGone());
    }

    void aCancelOfTheSearchDoesNotWaitForTheDriver()
    {
        m_drivers->installOdd(ODD_DRIVERS, "list hangs");
        QWidget owner;
        QTimer::singleShot(500, this, [] { LongWork::cancelAll(); });
        QElapsedTimer waited;
        waited.start();
        QString why;
        QVERIFY(!Scanner(QStringLiteral(SCAN_HELPER)).list(&owner, &why));
        QCOMPARE(why, QString());
        QVERIFY(waited.elapsed() < 10'000);
    }

    void aSearchThatWillNotEndIsKilledSoon()
    {
        QWidget owner;
        standIn("echo $$ > '" + in("pid").toUtf8() + "'; trap '' TERM; sleep 60");
        const Scanner patient(in("helper"), {.ending = 60'000});
        QTimer::singleShot(600, this, [] { LongWork::cancelAll(); });
        QElapsedTimer waited;
        waited.start();
        QString why;
        QVERIFY(!patient.list(&owner, &why));
        QVERIFY(waited.elapsed() < 20'000);
        QTRY_VERIFY(isGone());
    }

    void theWordOfThePicture()
    {
        QVERIFY(saysPictureStands("picture"));
        QVERIFY(saysPictureStands("picture\r"));
        QVERIFY(!saysPictureStands("pictures"));
        QVERIFY(!saysPictureStands(""));
    }

    void noHelper()
    {
        QString why;
        QVERIFY(!Scanner(in("none")).list(nullptr, &why));
        QVERIFY(!why.isEmpty());
    }

    void whatAHelperStartedGoesWithIt()
    {
        const Scanner scanner = standIn("sleep 60 & echo $! > '" + in("pid").toUtf8() + "'; kill -KILL $$");
        QString why;
        QVERIFY(scanner.acquire(nullptr, {"any", ScanMode::Color, 100}, &why).isNull());
        QTRY_VERIFY(isGone());
    }

    void itIsAskedForWhatWasChosen()
    {
        const Scanner scanner = standIn("echo \"$@\" > '" + in("said").toUtf8() + "'; exit 5");
        QString why;
        QVERIFY(scanner.acquire(nullptr, {"net:a b", ScanMode::Gray, 150}, &why).isNull());
        QFile said(in("said"));
        QVERIFY(said.open(QIODevice::ReadOnly));
        QVERIFY(said.readAll().startsWith("--acquire net:a b --mode gray --resolution 150 /"));
    }

    void theWindowLivesAndCancelEndsIt()
    {
        QWidget owner;
        owner.show();
        const Scanner scanner = standIn("echo $$ > '" + in("pid").toUtf8() +
                                        "'; while :; do echo progress 0.25; sleep 0.2; done");
        int turns = 0;
        int shown = -1;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            ++turns;
            auto* const box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            auto* const bar = box ? box->findChild<QProgressBar*>() : nullptr;
            if (!bar || bar->value() < 250)
                return;
            shown = bar->value();
            QTest::mouseClick(box->findChild<QPushButton*>(QStringLiteral("Cancel")), Qt::LeftButton);
        });
        timer.start(20);
        QString why;
        QVERIFY(scanner.acquire(&owner, {"any", ScanMode::Color, 100}, &why).isNull());
        QCOMPARE(why, QString());
        QCOMPARE(shown, 250);
        QVERIFY(turns > 10);
        QVERIFY(isGone());
        QVERIFY(!QApplication::activeModalWidget());
    }

    void theEndOfTheProgramEndsIt()
    {
        QWidget owner;
        const Scanner scanner = standIn("echo $$ > '" + in("pid").toUtf8() +
                                        "'; while :; do echo progress 0.25; sleep 0.2; done");
        QTimer::singleShot(300, this, [] { LongWork::cancelAll(); });
        QString why;
        QVERIFY(!scanner.list(&owner, &why));
        QCOMPARE(why, QString());
        QVERIFY(isGone());
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void scratchFilesGo()
    {
        qputenv("TMPDIR", m_folder->path().toLocal8Bit());
        QString why;
        const Scanner scanner(QStringLiteral(SCAN_HELPER));
        QVERIFY(!scanner.acquire(nullptr, {"test:0", ScanMode::Color, 50}, &why).isNull());
        QVERIFY(QDir(m_folder->path()).isEmpty());
        qunsetenv("TMPDIR");
    }
};

QTEST_MAIN(TestScanner)
#include "tst_scanner.moc"
