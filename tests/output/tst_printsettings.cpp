// What the print window keeps.
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "output/PrintSettings.h"

#include <QTest>

using namespace quorvia;
using namespace quorvia::output;
namespace setting = app::setting;

class TestPrintSettings : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void absentOnesStandAsDesigned()
    {
        const test::SettingsHome home;
        const PrintSettings settings = readPrintSettings();
        QCOMPARE(settings.font.families(), (QStringList{"Verdana", "DejaVu Sans"}));
        QCOMPARE(settings.font.pointSize(), 12);
        QVERIFY(!settings.font.bold() && !settings.font.italic());
        QVERIFY(!settings.font.strikeOut() && !settings.font.underline());
        QCOMPARE(settings.color, QColor(Qt::black));
        QCOMPARE(settings.layout, 0);
        QCOMPARE(settings.area, 0);
        QCOMPARE(settings.titleAlign, 1);
        QCOMPARE(settings.zoom, 2);
        QVERIFY(!settings.withName && !settings.withDirectory);
    }

    void theyComeBack()
    {
        const test::SettingsHome home;
        PrintSettings settings = designedPrintSettings();
        settings.font.setFamilies({QStringLiteral("DejaVu Serif")});
        settings.font.setPointSize(31);
        settings.font.setBold(true);
        settings.font.setItalic(true);
        settings.font.setStrikeOut(true);
        settings.font.setUnderline(true);
        settings.color = QColor(10, 20, 30);
        settings.layout = 1;
        settings.area = 5;
        settings.titleAlign = 0;
        settings.zoom = 6;
        settings.withName = true;
        settings.withDirectory = true;
        savePrintSettings(settings);
        QCOMPARE(app::read(setting::PrintFontColor, 0), 10 + 20 * 256 + 30 * 65536);
        QCOMPARE(app::read(setting::PrintFontName, QString()), QStringLiteral("DejaVu Serif"));
        QCOMPARE(app::read(setting::PrintArea), 5);
        const PrintSettings back = readPrintSettings();
        QCOMPARE(back.font, settings.font);
        QCOMPARE(back.color, settings.color);
        QCOMPARE(back.layout, 1);
        QCOMPARE(back.area, 5);
        QCOMPARE(back.titleAlign, 0);
        QCOMPARE(back.zoom, 6);
        QVERIFY(back.withName && back.withDirectory);
    }

    void theDesignedFontComesBackWhole()
    {
        const test::SettingsHome home;
        savePrintSettings(designedPrintSettings());
        QCOMPARE(readPrintSettings().font, designedPrintSettings().font);
    }

    void sizesKeepTheirFraction()
    {
        const test::SettingsHome home;
        app::save(setting::PrintFontSize, QStringLiteral("8.25"));
        savePrintSettings(readPrintSettings());
        QCOMPARE(readPrintSettings().font.pointSizeF(), 8.25);
        QCOMPARE(app::read(setting::PrintFontSize, QString()), QStringLiteral("8.25"));
    }

    void nonsense_data()
    {
        QTest::addColumn<int>("value");
        QTest::newRow("below") << -1;
        QTest::newRow("above") << 7000;
    }
    void nonsense()
    {
        QFETCH(int, value);
        const test::SettingsHome home;
        app::save(setting::PrintLayout, value);
        app::save(setting::PrintArea, value);
        app::save(setting::PrintTitleA, value);
        app::save(setting::PrintZoom, value);
        app::save(setting::PrintFontSize, QString::number(value));
        const PrintSettings settings = readPrintSettings();
        QCOMPARE(settings.layout, 0);
        QCOMPARE(settings.area, 0);
        QCOMPARE(settings.titleAlign, 1);
        QCOMPARE(settings.zoom, 2);
        QCOMPARE(settings.font.pointSize(), 12);
    }
};

QTEST_MAIN(TestPrintSettings)
#include "tst_printsettings.moc"
