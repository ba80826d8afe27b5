// The band of the file list between two starts: which values are read, and which are written when.
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "support/BenchStage.h"
#include "viewer/BandSettings.h"

#include <QTest>

using namespace quorvia;
using platform::BandState;
namespace area = platform::dockingArea;

namespace {

/// Another value in each field than storedBand() could have by chance.
BandState design()
{
    return {.visible = false,
            .area = area::right,
            .width = 111,
            .height = 122,
            .floatingPosition = QPoint(133, 144),
            .floatingSize = {155, 166}};
}

void store(const char* name, const QVariant& value)
{
    app::SaveAppSetting(QStringLiteral("Settings"), QLatin1String(name), value);
}

QString stored(const char* name)
{
    return app::GetAppSetting(QStringLiteral("Settings"), QLatin1String(name), QStringLiteral("absent"))
        .toString();
}

} // namespace

class TestBandSettings : public QObject, private test::BenchStage<test::SettingsHome>
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void withoutAStoreItShowsAsDesigned()
    {
        BandState wanted = design();
        wanted.visible = true; // that is the default
        QCOMPARE(viewer::storedBand(design()), wanted);
    }

    void eachKeyIsRead_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("value");
        QTest::addColumn<bool>("visible");
        QTest::addColumn<int>("area");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<QSize>("floating");
        const QSize size(155, 166);
        QTest::newRow("hidden") << "cLayoutFiles" << 0 << false << area::right << 111 << 122 << size;
        QTest::newRow("shown") << "cLayoutFiles" << -1 << true << area::right << 111 << 122 << size;
        QTest::newRow("any other number shows")
            << "cLayoutFiles" << 7 << true << area::right << 111 << 122 << size;
        QTest::newRow("area") << "cLayoutFilesAlign" << 4 << true << area::floating << 111 << 122 << size;
        QTest::newRow("width") << "cLayoutFilesWidth" << 4500 << true << area::right << 300 << 122 << size;
        QTest::newRow("height") << "cLayoutFilesVHeight" << 3000 << true << area::right << 111 << 200 << size;
        QTest::newRow("floating width")
            << "cLayoutFilesfWidth" << 1500 << true << area::right << 111 << 122 << QSize(100, 166);
        QTest::newRow("floating height")
            << "cLayoutFilesfHeight" << 1500 << true << area::right << 111 << 122 << QSize(155, 100);
    }

    void eachKeyIsRead()
    {
        QFETCH(QString, name);
        QFETCH(int, value);
        store(qPrintable(name), value);
        const BandState state = viewer::storedBand(design());
        QTEST(state.visible, "visible");
        QTEST(state.area, "area");
        QTEST(state.width, "width");
        QTEST(state.height, "height");
        QTEST(state.floatingSize, "floating");
        QCOMPARE(state.floatingPosition, design().floatingPosition);
    }

    void aFloatingPlaceNeedsBothEdges()
    {
        store("cLayoutFilesfLeft", 1500);
        QCOMPARE(viewer::storedBand(design()).floatingPosition, design().floatingPosition);
        store("cLayoutFilesfTop", -300);
        QCOMPARE(viewer::storedBand(design()).floatingPosition, std::optional(QPoint(100, -20)));
    }

    void onlyAFloatingBandStoresItsPlace_data()
    {
        QTest::addColumn<int>("area");
        QTest::addColumn<bool>("placed");
        for (const int docked : {area::left, area::right, area::top, area::bottom})
            QTest::addRow("docked at %d", docked) << docked << false;
        QTest::newRow("floating") << area::floating << true;
    }

    void onlyAFloatingBandStoresItsPlace()
    {
        QFETCH(int, area);
        QFETCH(bool, placed);
        BandState state = design();
        state.area = area;
        state.visible = true;
        viewer::storeBand(state);
        QCOMPARE(stored("cLayoutFiles"), QStringLiteral("-1"));
        QCOMPARE(stored("cLayoutFilesAlign"), QString::number(area));
        QCOMPARE(stored("cLayoutFilesWidth"), QString::number(111 * 15));
        QCOMPARE(stored("cLayoutFilesVHeight"), QString::number(122 * 15));
        const auto whenPlaced = [placed](int twips) {
            return placed ? QString::number(twips) : QStringLiteral("absent");
        };
        QCOMPARE(stored("cLayoutFilesfLeft"), whenPlaced(133 * 15));
        QCOMPARE(stored("cLayoutFilesfTop"), whenPlaced(144 * 15));
        QCOMPARE(stored("cLayoutFilesfWidth"), whenPlaced(155 * 15));
        QCOMPARE(stored("cLayoutFilesfHeight"), whenPlaced(166 * 15));
        BandState again = viewer::storedBand(BandState{});
        if (placed)
            QCOMPARE(again, state);
        state.visible = false;
        viewer::storeBand(state);
        QCOMPARE(stored("cLayoutFiles"), QStringLiteral("0"));
    }
};

QTEST_GUILESS_MAIN(TestBandSettings)
#include "tst_bandsettings.moc"
