// The build of the toolbar: the grammar of its section, its size, and what it takes of the menu and of
// designed tools.
#include "BuildStage.h"

#include <QTest>

using namespace quorvia;
using namespace quorvia::platform;
using test::BuildStage;

namespace {

const QString contextMenu = QStringLiteral("NewImage");

} // namespace

class TestToolbarBuild : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void theExtraWidthGoesByTheScreen()
    {
        BuildStage stage;
        stage.postrel = true;
        stage.twipsPerPixel = 7.5;
        stage.run(QStringLiteral("A|B"), QStringLiteral("1[num]0"));
        QCOMPARE(stage.host.m_calls.first(), QStringLiteral("width 12400"));
    }

    void toolbarFields_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("tools");
        QTest::newRow("tools") << "0|miA|miB"
                               << "miA miB";
        QTest::newRow("separators") << "0|miA|-|miB"
                                    << "miA miSep miB";
        QTest::newRow("empty fields") << "0||miA||"
                                      << "miA";
        QTest::newRow("unknown names") << "0|miNone|miA|mia"
                                       << "miA";
        QTest::newRow("designed tools") << "0|tOpenx|#open"
                                        << "tOpenx #open";
        QTest::newRow("a tool twice") << "0|miA|miA"
                                      << "miA miA";
        QTest::newRow("a tool of a sub-menu") << "0|miC"
                                              << "miC";
        QTest::newRow("the first field is no tool") << "miA|miB"
                                                    << "miB";
        QTest::newRow("the first field alone") << "500"
                                               << "";
        QTest::newRow("blanks stay") << "0| miA|- |miB"
                                     << "miB";
    }

    void toolbarFields()
    {
        QFETCH(QString, section);
        BuildStage stage;
        stage.run(QStringLiteral("A:miA|B:miB>C:miC|D::x|E"), section);
        QTEST(stage.namesOn(QStringLiteral("Toolbar")).join(u' '), "tools");
        QCOMPARE(stage.band(QStringLiteral("Toolbar"))->kind(), BandKind::Toolbar);
        QVERIFY(stage.band(QStringLiteral("Toolbar"))->visible());
    }

    void theToolbarTakesTheToolOfTheMenu()
    {
        BuildStage stage;
        stage.run(QStringLiteral("Info:miInformation:#open|B"), QStringLiteral("0|miInformation|-"));
        const ToolBand* const toolbar = stage.band(QStringLiteral("Toolbar"));
        QCOMPARE(toolbar->toolAt(0)->values().caption, QStringLiteral("Info"));
        QCOMPARE(toolbar->toolAt(0)->picture(0), QStringLiteral("open"));
        QCOMPARE(toolbar->toolAt(1)->values().kind, ToolKind::Separator);
    }

    void sizes_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QSize>("layout"); // twips
        QTest::addColumn<QStringList>("calls");
        QTest::newRow("usual") << "900|miA" << QSize(4500, 480)
                               << QStringList{"width 900", "layout", "width 4500", "height 480", "show"};
        QTest::newRow("just enough") << "900|miA" << QSize(101, 480)
                                     << QStringList{"width 900", "layout", "width 101", "height 480", "show"};
        QTest::newRow("too narrow to be true")
            << "900|miA" << QSize(100, 480) << QStringList{"width 900", "layout", "height 480", "show"};
        QTest::newRow("no number") << "x|miA" << QSize(0, 30) << QStringList{"layout", "height 30", "show"};
        QTest::newRow("no first field")
            << "|miA" << QSize(0, 30) << QStringList{"layout", "height 30", "show"};
        QTest::newRow("less than nothing")
            << "-5|miA" << QSize(0, 30) << QStringList{"layout", "height 30", "show"};
        QTest::newRow("a number beyond all")
            << "99999999999|miA" << QSize(0, 30) << QStringList{"layout", "height 30", "show"};
    }

    void sizes()
    {
        QFETCH(QString, section);
        QFETCH(QSize, layout);
        BuildStage stage;
        stage.host.m_layout = layout;
        stage.run(QStringLiteral("A:miA|B"), section);
        QTEST(stage.host.m_calls, "calls");
    }

    void dropDownPartsAreGivenAndTaken()
    {
        BuildStage stage;
        stage.run(QStringLiteral("S:miSlideShowMenu|O:miOpenMenu|W:miWallpaperMenu|F:miFilelistMenu|A:miA"),
                  QStringLiteral("0|miSlideShowMenu|miOpenMenu|miWallpaperMenu|miFilelistMenu|miA"));
        const auto kindOn = [&](const char* band, int index) {
            return stage.band(QLatin1String(band))->toolAt(index)->values().kind;
        };
        for (int index = 0; index < 4; ++index)
            QCOMPARE(kindOn("NewImage", index), ToolKind::DropDown);
        QCOMPARE(kindOn("NewImage", 4), ToolKind::Plain);
        QCOMPARE(kindOn("Toolbar", 0), ToolKind::Plain);
        for (int index = 1; index < 4; ++index)
            QCOMPARE(kindOn("Toolbar", index), ToolKind::DropDown);
        QCOMPARE(kindOn("Toolbar", 4), ToolKind::Plain);
        QCOMPARE(stage.host.m_kindAtLayout, ToolKind::DropDown); // it is taken after the layout
    }

    void aDesignedMainBandGoes()
    {
        BuildStage stage;
        ToolBand* const main = stage.model.addBand(QStringLiteral("bMain"), BandKind::Toolbar, false);
        main->append(1, QStringLiteral("x"));
        stage.run(QStringLiteral("A|B"));
        QCOMPARE(main->toolCount(), 1); // no toolbar, no change
        QVERIFY(main->visible());
        stage.run(QStringLiteral("A|B"), QStringLiteral("0"));
        QCOMPARE(main->toolCount(), 0);
        QVERIFY(!main->visible());
    }

    void withoutAToolbarSectionTheMenuIsBuilt()
    {
        BuildStage stage;
        stage.run(QStringLiteral("A:miA|B:miB"));
        QVERIFY(stage.build.isBuilt());
        QVERIFY(!stage.band(QStringLiteral("Toolbar")));
        QCOMPARE(stage.host.m_calls, QStringList());
        QCOMPARE(stage.updates, 1);
    }

    void theToolbarIsBuiltWithoutItems()
    {
        BuildStage stage;
        stage.run(QStringLiteral("A:miA"), QStringLiteral("0|tOpenx|miA"));
        QCOMPARE(stage.namesOn(contextMenu), QStringList());
        QCOMPARE(stage.namesOn(QStringLiteral("Toolbar")), QStringList("tOpenx"));
        QVERIFY(stage.build.isBuilt());
    }
};

QTEST_GUILESS_MAIN(TestToolbarBuild)
#include "tst_toolbarbuild.moc"
