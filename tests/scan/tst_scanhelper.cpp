// The helper itself against the scanner library's pretended devices: pictures, failures and the cancel.
#include "support/ScanDrivers.h"

#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QTest>

#include <unistd.h>

#include <csignal>

using namespace quorvia;

namespace {

enum Exit { Done = 0, BadUse = 2, NoDevice = 3, Cancelled = 4, Failed = 5 };

} // namespace

class TestScanHelper : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScanDrivers> m_drivers;
    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_output;
    QByteArray m_errors;

    QString target() const { return m_folder->filePath(QStringLiteral("scan.pnm")); }
    /// Runs the helper to its end; its exit code, -1 after a crash.
    int run(const QStringList& arguments)
    {
        QProcess helper;
        helper.start(QStringLiteral(SCAN_HELPER), arguments);
        const bool isFinished = helper.waitForFinished(20'000);
        m_output = helper.readAllStandardOutput();
        m_errors = helper.readAllStandardError();
        return isFinished && helper.exitStatus() == QProcess::NormalExit ? helper.exitCode() : -1;
    }
    int acquire(const QStringList& options = {})
    {
        return run(QStringList{"--acquire", "test:0"} + options + QStringList{target()});
    }
    QImage picture() const { return QImage(target()).convertToFormat(QImage::Format_RGB32); }

  private Q_SLOTS:
    void init()
    {
        m_drivers = std::make_unique<test::ScanDrivers>();
        m_folder = std::make_unique<QTemporaryDir>();
    }
    void cleanup() { m_drivers.reset(); }

    void theDevices()
    {
        QCOMPARE(run({"--list"}), int(Done));
        QCOMPARE(m_output, QByteArray("test:0\tNoname\tfrontend-tester\tvirtual device\n"
                                      "test:1\tNoname\tfrontend-tester\tvirtual device\n"));
        m_drivers->remove();
        QCOMPARE(run({"--list"}), int(Done));
        QCOMPARE(m_output, QByteArray());
    }

    void pictures_data()
    {
        QTest::addColumn<QStringList>("settings");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("isGray");
        const QStringList color{"--mode", "color"};
        const QStringList gray{"--mode", "gray"};
        const QSize at50(78, 59);
        QTest::newRow("colour") << QStringList() << color << at50 << false;
        QTest::newRow("grey") << QStringList{"mode Color"} << gray << at50 << true;
        QTest::newRow("finer") << QStringList() << color + QStringList{"--resolution", "100"}
                               << QSize(157, 118) << false;
        QTest::newRow("finer than it can")
            << QStringList{"resolution_max 60.0"} << color + QStringList{"--resolution", "1200"}
            << QSize(94, 70) << false;
        QTest::newRow("as the device has it") << QStringList{"mode Color"} << QStringList() << at50 << false;
        QTest::newRow("three passes") << QStringList{"three-pass true"} << color << at50 << false;
        QTest::newRow("three passes, others first")
            << QStringList{"three-pass true", "three-pass-order BGR"} << color << at50 << false;
        QTest::newRow("in small pieces")
            << QStringList{"read-limit true", "read-limit-size 7"} << color << at50 << false;
        QTest::newRow("lines with padding") << QStringList{"ppl-loss 7"} << color << QSize(71, 59) << false;
    }

    void pictures()
    {
        QFETCH(QStringList, settings);
        QFETCH(QStringList, options);
        QFETCH(bool, isGray);
        m_drivers->pretend(settings);
        QCOMPARE(acquire(options), int(Done));
        QTEST(picture().size(), "size");
        QCOMPARE(QImage(target()).isGrayscale(), isGray);
        QVERIFY2(m_output.startsWith("progress 0.") || m_output.startsWith("progress 1."),
                 m_output.constData());
        QVERIFY(m_output.endsWith("progress 1.000\npicture\n"));
    }

    void passesGiveTheSamePicture()
    {
        QCOMPARE(acquire({"--mode", "color"}), int(Done));
        const QImage one = picture();
        QVERIFY(!one.isNull());
        m_drivers->pretend({"three-pass true", "three-pass-order GRB"});
        QCOMPARE(acquire({"--mode", "color"}), int(Done));
        QCOMPARE(picture(), one);
    }

    void depthsGiveTheSamePicture_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("depth");
        for (const char* mode : {"mode Gray", "mode Color"}) {
            for (const char* depth : {"depth 1", "depth 16"})
                QTest::addRow("%s %s", mode, depth)
                    << QString::fromLatin1(mode) << QString::fromLatin1(depth);
        }
    }

    void depthsGiveTheSamePicture()
    {
        QFETCH(QString, mode);
        QFETCH(QString, depth);
        const QStringList squares{mode, "test-picture \"Grid\""}; // black and white
        m_drivers->pretend(squares);
        QCOMPARE(acquire(), int(Done));
        const QImage plain = picture();
        QCOMPARE(plain.size(), QSize(78, 59));
        m_drivers->pretend(squares + QStringList{depth});
        QCOMPARE(acquire(), int(Done));
        QCOMPARE(picture(), plain);
    }

    void linesThatNobodyKnows()
    {
        m_drivers->pretend({"hand-scanner true"});
        QCOMPARE(acquire({"--mode", "gray"}), int(Done));
        QVERIFY(picture().height() > 100);
        QVERIFY(m_output.startsWith("progress unknown\n"));
    }

    void failures_data()
    {
        QTest::addColumn<QStringList>("settings");
        QTest::addColumn<int>("code");
        QTest::addColumn<QByteArray>("why");
        const auto status = [](const char* name) {
            return QStringList{
                QStringLiteral("read-status-code \"SANE_STATUS_%1\"").arg(QLatin1String(name))};
        };
        QTest::newRow("the wire") << status("IO_ERROR") << int(Failed)
                                  << QByteArray("Error during device I/O");
        QTest::newRow("paper") << status("JAMMED") << int(Failed) << QByteArray("jammed");
        QTest::newRow("nothing in it") << status("EOF") << int(Failed) << QByteArray("no line");
        QTest::newRow("cancelled there") << status("CANCELLED") << int(Cancelled) << QByteArray("cancelled");
    }

    void failures()
    {
        QFETCH(QStringList, settings);
        QFETCH(QByteArray, why);
        m_drivers->pretend(settings);
        QTEST(acquire({"--mode", "color"}), "code");
        QVERIFY2(m_errors.contains(why), m_errors.constData());
        QCOMPARE(m_errors.count('\n'), 1);
        QVERIFY(!QFile::exists(target()));
    }

    void aDriverThatFailsAmidThePicture_data()
    {
        QTest::addColumn<QByteArray>("fault");
        QTest::addColumn<int>("code");
        QTest::addColumn<QByteArray>("why");
        QTest::newRow("fails") << QByteArray("read fails") << int(Failed)
                               << QByteArray("Error during device I/O");
        QTest::newRow("crashes") << QByteArray("read crashes") << -1 << QByteArray();
    }

    void aDriverThatFailsAmidThePicture()
    {
        QFETCH(QByteArray, fault);
        QFETCH(QByteArray, why);
        m_drivers->installOdd(ODD_DRIVERS, fault.constData());
        QTEST(run({"--acquire", "odd:one", target()}), "code");
        QVERIFY2(m_output.startsWith("progress 0."), m_output.constData()); // lines had come
        QVERIFY(!m_output.contains("picture"));
        QVERIFY2(m_errors.contains(why), m_errors.constData());
        QCOMPARE(m_errors.isEmpty(), why.isEmpty());
        QVERIFY(!QFile::exists(target()));
    }

    void aDriverThatFindsNothing()
    {
        m_drivers->installOdd(ODD_DRIVERS, "no device");
        QCOMPARE(run({"--list"}), int(Done));
        QCOMPARE(m_output, QByteArray());
        QCOMPARE(m_errors, QByteArray());
    }

    void noSuchDevice()
    {
        for (const char* name : {"test:7", "nothing", ""}) {
            QCOMPARE(run({"--acquire", QString::fromLatin1(name), target()}), int(NoDevice));
            QVERIFY(!m_errors.isEmpty());
        }
        QVERIFY(!QFile::exists(target()));
    }

    void noPlaceForThePicture()
    {
        QCOMPARE(run({"--acquire", "test:0", "/nowhere/scan.pnm"}), int(Failed));
        QVERIFY(m_errors.contains("/nowhere/scan.pnm"));
    }

    void badUse_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("none") << QStringList();
        QTest::newRow("unknown") << QStringList{"--scan"};
        QTest::newRow("no output") << QStringList{"--acquire", "test:0"};
        QTest::newRow("no value") << QStringList{"--acquire", "test:0", "--mode", "x.pnm"};
        QTest::newRow("mode") << QStringList{"--acquire", "test:0", "--mode", "mauve", "x.pnm"};
        QTest::newRow("resolution") << QStringList{"--acquire", "test:0", "--resolution", "-3", "x.pnm"};
    }

    void badUse()
    {
        QFETCH(QStringList, arguments);
        QCOMPARE(run(arguments), int(BadUse));
        QVERIFY(m_errors.startsWith("Usage:"));
    }

    void theSignalCancels()
    {
        m_drivers->pretend(test::slowScan());
        QProcess helper;
        helper.start(QStringLiteral(SCAN_HELPER),
                     {"--acquire", "test:0", "--mode", "color", "--resolution", "600", target()});
        QVERIFY(helper.waitForReadyRead(10'000)); // it reads
        QElapsedTimer waited;
        waited.start();
        helper.terminate();
        QVERIFY(helper.waitForFinished(10'000));
        QVERIFY(waited.elapsed() < 5'000);
        QCOMPARE(helper.exitStatus(), QProcess::NormalExit);
        QCOMPARE(helper.exitCode(), int(Cancelled));
        QVERIFY(!QFile::exists(target()));
    }

    void aDriverThatDoesNotComeBack_data()
    {
        QTest::addColumn<bool>("leads");
        QTest::newRow("in a group of its own") << true;
        QTest::newRow("in another's group") << false;
    }

    void aDriverThatDoesNotComeBack()
    {
        QFETCH(bool, leads);
        m_drivers->installOdd(ODD_DRIVERS, "start hangs");
        QProcess helper;
        if (leads)
            helper.setChildProcessModifier([] { ::setpgid(0, 0); });
        helper.start(QStringLiteral(SCAN_HELPER), {"--acquire", "odd:one", target()});
        QVERIFY(helper.waitForStarted());
        QVERIFY(!helper.waitForFinished(700)); // it hangs
        helper.terminate();
        QVERIFY(!helper.waitForFinished(3'000)); // others would end their scan in this time
        QVERIFY(helper.waitForFinished(5'000));
        if (leads)
            QCOMPARE(helper.exitStatus(), QProcess::CrashExit);
        else
            QCOMPARE(helper.exitCode(), int(Cancelled));
    }

    void aDriverThatHangsOverItsEnd()
    {
        m_drivers->installOdd(ODD_DRIVERS, "close hangs");
        QProcess helper;
        helper.start(QStringLiteral(SCAN_HELPER), {"--acquire", "odd:one", target()});
        QVERIFY(helper.waitForFinished(10'000));
        QCOMPARE(helper.exitStatus(), QProcess::NormalExit);
        QCOMPARE(helper.exitCode(), int(Done));
        QCOMPARE(picture().size(), QSize(40, 30));
    }

    void thePictureStandsBeforeTheDriverFallsOverItsEnd()
    {
        m_drivers->installOdd(ODD_DRIVERS, "close crashes");
        QProcess helper;
        helper.start(QStringLiteral(SCAN_HELPER), {"--acquire", "odd:one", target()});
        QVERIFY(helper.waitForFinished(20'000));
        QCOMPARE(helper.exitStatus(), QProcess::CrashExit);
        QVERIFY(helper.readAllStandardOutput().endsWith("picture\n"));
        QCOMPARE(picture().size(), QSize(40, 30));
    }

    void nobodyListens()
    {
        const QString code = m_folder->filePath(QStringLiteral("code"));
        QProcess shell;
        shell.start(QStringLiteral("sh"),
                    {"-c", "{ \"$@\"; echo $? >\"$0\"; } 2>&1 | :", code, SCAN_HELPER, "--acquire", "test:0",
                     "--mode", "color", "--resolution", "600", target()});
        QVERIFY(shell.waitForFinished(20'000));
        QFile written(code);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll().trimmed(), QByteArray("0")); // so the device was closed
        QVERIFY(!picture().isNull());
    }
};

QTEST_GUILESS_MAIN(TestScanHelper)
#include "tst_scanhelper.moc"
