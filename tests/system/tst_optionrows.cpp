// The options as rows: how a stored value is read, where it stands and in which order it is written; and what
// the boxes say.
#include "app/mWindowsAPI.h"
#include "app/SettingsHome.h"
#include "system/OptionRows.h"
#include "system/OptionTexts.h"

#include <QTest>

using namespace quorvia;
using namespace quorvia::system;

namespace {

constexpr int none = 1 << 20; // stands for no number

const OptionRow* rowOf(const QString& key)
{
    for (const OptionRow& row : optionRows()) {
        if (key == QLatin1String(row.key.name))
            return &row;
    }
    return nullptr;
}

} // namespace

class TestOptionRows : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void spelledNumbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("number") << "24" << 24;
        QTest::newRow("blanks") << "  24  " << 24;
        QTest::newRow("something behind it") << "24 and more" << none;
        QTest::newRow("letters behind it") << "12abc" << none;
        QTest::newRow("negative") << "-7" << -7;
        QTest::newRow("plus") << "+7" << 7;
        QTest::newRow("zeros") << "007" << 7;
        QTest::newRow("nothing") << "" << none;
        QTest::newRow("blank") << " " << none;
        QTest::newRow("a word") << "high" << none;
        QTest::newRow("a number behind a word") << "a1" << none;
        QTest::newRow("a sign alone") << "-" << none;
        QTest::newRow("a point alone") << "." << none;
        QTest::newRow("a fraction") << "24.6" << 25;
        QTest::newRow("a half below an odd number") << "24.5" << 24;
        QTest::newRow("a half below an even number") << "25.5" << 26;
        QTest::newRow("a fraction without a whole") << ".75" << 1;
        QTest::newRow("an exponent") << "1e2" << 100;
        QTest::newRow("an exponent's letter alone") << "3e" << none;
        QTest::newRow("the largest") << "32767" << 32767;
        QTest::newRow("too large") << "32768" << none;
        QTest::newRow("rounded too large") << "32767.5" << none;
        QTest::newRow("the smallest") << "-32768" << -32768;
        QTest::newRow("too small") << "-32769" << none;
        QTest::newRow("far too large") << "99999999999999999999" << none;
        QTest::newRow("larger than all") << "1e999" << none;
        QTest::newRow("no number") << "nan" << none;
        QTest::newRow("endless") << "inf" << none;
    }

    void spelledNumbers()
    {
        QFETCH(QString, text);
        QFETCH(int, number);
        QCOMPARE(int16Of(text).value_or(none), number);
    }

    void rows()
    {
        QStringList keys;
        QStringList controls;
        for (const OptionRow& row : optionRows()) {
            QCOMPARE(QLatin1String(row.key.section), QLatin1String("Settings"));
            keys.append(QLatin1String(row.key.name));
            controls.append(QLatin1String(row.control));
        }
        QCOMPARE(keys, QStringList({"cView", "cFView", "cSlide", "cLoad", "cFull", "cLayout", "MainBackColor",
                                    "FullBackColor", "cBorder", "JPEGSampling", "JPEGLum", "JPEGChrome",
                                    "JPEGGray", "imgAutoLoad", "DynamicLink", "ShowBetaFeatures"}));
        QCOMPARE(controls, QStringList({"cView", "cFView", "cSlide", "cLoad", "cFull", "cLayout", "pBack",
                                        "pFullBack", "chkBorder", "cboSample", "lLum", "lChrome", "chkGray",
                                        "chkLoadFileAvail", "chkDyn", "chkBeta"}));
    }

    void reads_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<int>("read");
        const auto add = [](const char* key, const QVariant& stored, int read) {
            QTest::addRow("%s, %s", key, stored.isNull() ? "absent" : qPrintable(stored.toString()))
                << key << stored << read;
        };
        for (const auto& [key, fallback] : {std::pair("cView", 0),
                                            {"cFView", 0},
                                            {"FullBackColor", 0},
                                            {"cBorder", 1},
                                            {"cFull", 0},
                                            {"cSlide", 0},
                                            {"cLoad", 1},
                                            {"cLayout", 1},
                                            {"imgAutoLoad", 1},
                                            {"JPEGSampling", 1},
                                            {"JPEGLum", 24},
                                            {"JPEGChrome", 20},
                                            {"JPEGGray", 0},
                                            {"DynamicLink", 1},
                                            {"ShowBetaFeatures", 0}}) {
            add(key, QVariant(), fallback);
            add(key, QStringLiteral(""), fallback);
            add(key, 1 - fallback, 1 - fallback);
            add(key, QString::number(1 - fallback), 1 - fallback);
        }
        add("FullBackColor", 0xff8040, 0xff8040);
        add("FullBackColor", 100'000, 100'000); // more than 16 bits
        add("JPEGLum", QStringLiteral("30 or so"), none);
        add("JPEGLum", QStringLiteral("so"), none);
        add("JPEGLum", 40'000, none);
        add("cLoad", QStringLiteral("so"), 1);
        add("MainBackColor", QVariant(), none);
        add("MainBackColor", 255, none);
    }

    void reads()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        const test::SettingsHome home;
        if (!stored.isNull())
            QVERIFY(app::SaveAppSetting(QStringLiteral("Settings"), key, stored));
        const OptionRow* const row = rowOf(key);
        QVERIFY(row);
        QTEST(readOption(*row).value_or(none), "read");
    }

    void saves()
    {
        const test::SettingsHome home;
        int number = 5;
        for (const OptionRow& row : optionRows())
            QVERIFY(saveOption(row, number++));
        number = 5;
        for (const OptionRow& row : optionRows())
            QCOMPARE(app::GetAppSetting(QStringLiteral("Settings"), QLatin1String(row.key.name), none),
                     QVariant(number++));
    }

    void statistics_data()
    {
        QTest::addColumn<int>("files");
        QTest::addColumn<double>("megabytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << 0 << 0.0 << "Current Number of Files: 0\r\nDisk Space Used: 0.00 MB";
        QTest::newRow("one") << 1 << 0.25 << "Current Number of Files: 1\r\nDisk Space Used: 0.25 MB";
        QTest::newRow("many") << 50'000 << 1234.5678
                              << "Current Number of Files: 50000\r\nDisk Space Used: 1234.57 MB";
    }

    void statistics()
    {
        QFETCH(int, files);
        QFETCH(double, megabytes);
        QTEST(statisticsText({files, megabytes}), "text");
    }

    void boxes()
    {
        const platform::MessageBox associate = associateBox();
        QCOMPARE(associate.text, QStringLiteral("Are you sure you want to have Quorvia become the defualt "
                                                "viewer for all image formats?"));
        QCOMPARE(associate.buttons, platform::BoxButtons::YesNoCancel);
        const platform::MessageBox clear = clearThumbnailsBox();
        QCOMPARE(clear.text,
                 QStringLiteral("This will delete all thumbnail files. Do you want to continue?"));
        QCOMPARE(clear.buttons, platform::BoxButtons::YesNoCancel);
        const platform::FileChooser program = programChooser();
        QCOMPARE(program.filters, QStringLiteral("Application Files|*.exe;*.com;*.bat|All Files|*"));
        QCOMPARE(program.shownRow, 1);
    }
};

QTEST_MAIN(TestOptionRows)
#include "tst_optionrows.moc"
