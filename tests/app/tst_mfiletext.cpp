// Sizes, truth values and dates as text.
#include "../support/ScratchHome.h"
#include "app/mFile.h"

#include <QFile>
#include <QLocale>
#include <QtTest>

#include <limits>

using namespace quorvia::app;

class TestMFileText : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void sizes_data()
    {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("plain");
        QTest::addColumn<QString>("separated");
        constexpr qint64 kilo = 1024;
        constexpr qint64 mega = kilo * kilo;
        constexpr qint64 giga = mega * kilo;
        constexpr qint64 tera = giga * kilo;
        const auto row = [](qint64 bytes, int level, const char* plain, const char* separated) {
            QTest::addRow("%lld at %d", static_cast<long long>(bytes), level)
                << bytes << level << QString::fromLatin1(plain) << QString::fromLatin1(separated);
        };
        row(0, 0, "0 Bytes", "0 Bytes");
        row(0, 1, "0 KB", "0 KB");
        row(0, 2, "0 MB", "0.00 MB");
        row(0, 3, "0 GB", "0.00 GB");
        row(0, 4, "0 TB", "0.00 TB");
        row(1, 0, "1 Bytes", "1 Bytes");
        row(999, 0, "999 Bytes", "999 Bytes");
        row(1000, 0, "1000 Bytes", "1,000 Bytes");
        row(1234567, 0, "1234567 Bytes", "1,234,567 Bytes");
        row(1536, 1, "1.5 KB", "2 KB");
        row(1535, 1, "1.4990234375 KB", "1 KB");
        row(512, 1, "0.5 KB", "1 KB");
        row(511, 1, "0.4990234375 KB", "0 KB");
        row(1, 1, "0.0009765625 KB", "0 KB");
        row(2560, 1, "2.5 KB", "3 KB"); // half away from zero, not to even
        row(kilo * 1000, 1, "1000 KB", "1,000 KB");
        row(kilo * 1000 - 1, 1, "999.9990234375 KB", "1,000 KB");
        row(mega * 3 / 2, 2, "1.5 MB", "1.50 MB");
        row(mega, 2, "1 MB", "1.00 MB");
        row(mega - 1, 2, "0.999999046325684 MB", "1.00 MB");
        row(mega / 8, 2, "0.125 MB", "0.13 MB");
        row(mega * 3 / 8, 2, "0.375 MB", "0.38 MB");
        row(mega / 64, 2, "0.015625 MB", "0.02 MB");
        row(1, 2, "9.5367431640625E-07 MB", "0.00 MB");
        row(mega * 1234567, 2, "1234567 MB", "1,234,567.00 MB");
        row(giga * 5 / 4, 3, "1.25 GB", "1.25 GB");
        row(tera * 7 / 2, 4, "3.5 TB", "3.50 TB");
        row(tera * 12345, 4, "12345 TB", "12,345.00 TB");
        row(1, 4, "9.09494701772928E-13 TB", "0.00 TB");
        row(std::numeric_limits<qint64>::max(), 0, "9223372036854775807 Bytes",
            "9,223,372,036,854,775,807 Bytes");
        row(std::numeric_limits<qint64>::max(), 1, "9.00719925474099E+15 KB", "9,007,199,254,740,992 KB");
        row(std::numeric_limits<qint64>::max(), 4, "8388608 TB", "8,388,608.00 TB");
        row(-1, 0, "0 Bytes", "0 Bytes");
        row(mega, -3, "1048576 Bytes", "1,048,576 Bytes");
        row(tera, 5, "1 TB", "1.00 TB");
    }
    void sizes()
    {
        QFETCH(qint64, bytes);
        QFETCH(int, level);
        QTEST(FormatSize(bytes, level, false), "plain");
        QTEST(FormatSize(bytes, level, true), "separated");
    }

    void sizesInEveryLanguage()
    {
        QLocale::setDefault(QLocale(QLocale::German));
        QCOMPARE(FormatSize(1234567890, 2, true), QStringLiteral("1,177.38 MB"));
        QCOMPARE(FormatSize(1536, 1, false), QStringLiteral("1.5 KB"));
        QCOMPARE(GroupDigits(1234567), QStringLiteral("1,234,567"));
        QCOMPARE(GroupDigits(-1000), QStringLiteral("-1,000"));
        QCOMPARE(GroupDigits(0), QStringLiteral("0"));
    }

    void fileSizes()
    {
        const quorvia::test::ScratchHome home;
        const QString small = home.write("small", QByteArray(1536, 'x'));
        QCOMPARE(FormatFileSize(small, 0, true), QStringLiteral("1,536 Bytes"));
        QCOMPARE(FormatFileSize(small, 1, true), QStringLiteral("2 KB"));
        QCOMPARE(FormatFileSize(small, 1, false), QStringLiteral("1.5 KB"));
        QFile large(home.path("large")); // with a hole: takes no room
        QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(qint64(5) << 30));
        QCOMPARE(FormatFileSize(large.fileName(), 3, true), QStringLiteral("5.00 GB"));
        QCOMPARE(FormatFileSize(large.fileName(), 0, true), QStringLiteral("5,368,709,120 Bytes"));
        QVERIFY(QFile::link(small, home.path("link")));
        QCOMPARE(FormatFileSize(home.path("link"), 0, false), QStringLiteral("1536 Bytes"));
    }

    void noFileNoSize_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("empty") << "";
        QTest::newRow("missing") << "/no/such/file";
        QTest::newRow("directory") << "/tmp";
    }
    void noFileNoSize()
    {
        QFETCH(QString, path);
        QCOMPARE(FormatFileSize(path, 0, false), QStringLiteral("0 Bytes"));
        QCOMPARE(FormatFileSize(path, 1, true), QStringLiteral("0 KB"));
        QCOMPARE(FormatFileSize(path, 2, true), QStringLiteral("0.00 MB"));
    }

    void truthToText()
    {
        QCOMPARE(BoolText(true), QStringLiteral("True"));
        QCOMPARE(BoolText(false), QStringLiteral("False"));
    }

    void textToTruth_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("value");
        QTest::newRow("true") << "true" << true;
        QTest::newRow("True") << "True" << true;
        QTest::newRow("TRUE") << "TRUE" << true;
        QTest::newRow("false") << "false" << false;
        QTest::newRow("False") << "False" << false;
        QTest::newRow("number") << "1" << false;
        QTest::newRow("blank") << " true" << false;
        QTest::newRow("empty") << "" << false;
    }
    void textToTruth()
    {
        QFETCH(QString, text);
        for (bool value : {false, true}) {
            TextBool(text, value);
            QTEST(value, "value");
        }
    }

    void dates_data()
    {
        QTest::addColumn<QDateTime>("time");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("afternoon") << QDateTime(QDate(2026, 11, 21), QTime(15, 4, 5, 678))
                                   << QStringList{"11212026150405", "11-21-2026", "15:04:05",
                                                  "11212026",       "150405",     "November 21, 2026"};
        QTest::newRow("single digits") << QDateTime(QDate(2003, 2, 1), QTime(0, 0, 9))
                                       << QStringList{"02012003000009", "02-01-2003", "00:00:09",
                                                      "02012003",       "000009",     "February 01, 2003"};
        QTest::newRow("midnight's hour") << QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59))
                                         << QStringList{"12311999235959", "12-31-1999", "23:59:59",
                                                        "12311999",       "235959",     "December 31, 1999"};
        QTest::newRow("invalid") << QDateTime() << QStringList{"", "", "", "", "", ""};
    }
    void dates()
    {
        QFETCH(QDateTime, time);
        QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt)); // other digits, other month names
        QTEST((QStringList{KeyDate(time), LogDate(time), LogTime(time), AcquiredDate(time),
                           AcquiredTime(time), DisplayDate(time)}),
              "texts");
    }
};

QTEST_GUILESS_MAIN(TestMFileText)
#include "tst_mfiletext.moc"
