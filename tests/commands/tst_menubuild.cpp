// The build of context menu and toolbar: the grammar of both sections, and what happens in which order.
#include "BuildStage.h"

#include <QTest>

using namespace quorvia;
using namespace quorvia::platform;
using test::BuildStage;

namespace {

const QString contextMenu = QStringLiteral("NewImage");

/// A band as text: names of its tools, each with the band that opens from it, taken apart as far as bands
/// "mnu..." go.
QString drawn(const BuildStage& stage, const QString& name)
{
    QStringList parts;
    const ToolBand* const band = stage.band(name);
    for (int index = 0; band && index < band->toolCount(); ++index) {
        const Tool& tool = *band->toolAt(index);
        const QString sub = tool.values().subBand;
        parts << tool.name() + (sub.startsWith(QLatin1String("mnu"))
                                    ? QStringLiteral("(%1)").arg(drawn(stage, sub))
                                    : QString());
    }
    return parts.join(u' ');
}

} // namespace

class TestMenuBuild : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void levels_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("drawing"); // names, children in brackets
        const auto row = [](const char* name, const char* section, const char* drawing) {
            QTest::newRow(name) << QString::fromLatin1(section) << QString::fromLatin1(drawing);
        };
        row("items", "A:miA|B:miB|C:miC", "miA miB miC");
        row("children", "A:miA>B:miB,C:miC|D:miD", "miA(miB miC) miD");
        row("children of children", "A:miA>B:miB%C:miC*D:miD,E:miE|F:miF", "miA(miB(miC miD) miE) miF");
        row("no name", "A|B:miB", "miSep1000 miB");
        row("parents without a name", "A>B%C:miC|D:miD", "miSep1000(miSep1001(miC)) miD");
        row("separators", "A:miA|-|B:miB>-,C:miC%-*D:miD", "miA miSep1001 miB(miSep1003 miC(miSep1005 miD))");
        row("a separator with a name", "-x:miX|A:miA", "miX miA");
        row("end without a separator", "A:miA|B:miB", "miA miB");
        row("a separator at the end makes an empty item", "A:miA|", "miA miSep1001");
        row("empty items", "||", "miSep1000 miSep1001 miSep1002");
        row("empty list of children", "A:miA>|B:miB", "miA(miSep1001) miB");
        row("empty list of grandchildren", "A:miA>B:miB%|C:miC", "miA(miB(miSep1002)) miC");
        row("no item separator, no items", "A:miA>B:miB,C:miC", "");
        row("commas and stars mean nothing at level 1", "A,B:miA|C*D:miC", "miA miC");
        row("a percent sign means nothing at level 1", "A%B:miA|C:miC", "miA miC");
        row("stars mean nothing at level 2", "A:miA>B*C:miB|D:miD", "miA(miB) miD");
        row("only the first opener counts at level 1", "A:miA>B:miB>C,D:miD|E:miE", "miA(miB>C miD) miE");
        row("only the first opener counts at level 2", "A:miA>B:miB%C:miC%D|E:miE", "miA(miB(miC%D)) miE");
        row("there is no level 4", "A:miA>B:miB%C:miC>D*E:miE,F:miF|G:miG", "miA(miB(miC>D miE) miF) miG");
        row("a separator with children", "->A:miA|B:miB", "miSep1000(miA) miB");
        row("a colon in the caption shifts the fields", "A: B:miA|C:miC", " B miC");
        row("blanks stay", " A : miA |B:miB", " miA  miB");
    }

    void levels()
    {
        QFETCH(QString, section);
        BuildStage stage;
        stage.run(section);
        QTEST(drawn(stage, contextMenu), "drawing");
        QVERIFY(stage.build.isBuilt());
        QCOMPARE(stage.band(contextMenu)->kind(), BandKind::PopUp);
    }

    void identifiersRunWithTheItems()
    {
        BuildStage stage;
        stage.run(QStringLiteral("A:miA>B:miB%C:miC,-|D:miD"));
        const auto idOf = [&](const char* band, const char* tool) {
            return stage.band(QLatin1String(band))->tool(QLatin1String(tool))->id();
        };
        QCOMPARE(idOf("NewImage", "miA"), 1000); // a parent comes before its children
        QCOMPARE(idOf("mnuA:miA", "miB"), 1001);
        QCOMPARE(idOf("mnuB:miB", "miC"), 1002);
        QCOMPARE(idOf("mnuA:miA", "miSep1003"), 1003);
        QCOMPARE(idOf("NewImage", "miD"), 1004);
    }

    void bandsBearTheWholeDefinition()
    {
        BuildStage stage;
        stage.run(QStringLiteral("Zoom:miZoom:#zoomin>In:miIn%Deep:miDeep|B"));
        QCOMPARE(stage.item(0).values().subBand, QStringLiteral("mnuZoom:miZoom:#zoomin"));
        QCOMPARE(stage.band(QStringLiteral("mnuZoom:miZoom:#zoomin"))->kind(), BandKind::PopUp);
        QCOMPARE(stage.namesOn(QStringLiteral("mnuIn:miIn")), QStringList("miDeep"));
    }

    void theChildBandWinsOverTheFieldOfTheDefinition()
    {
        BuildStage stage;
        stage.run(QStringLiteral("A:miA:#open::bOpen>B:miB|C"));
        QCOMPARE(stage.item(0).values().subBand, QStringLiteral("mnuA:miA:#open::bOpen"));
        QCOMPARE(stage.item(0).values().tag, QStringLiteral("#open"));
    }

    void fields_data()
    {
        QTest::addColumn<QString>("definition");
        QTest::addColumn<QStringList>("values"); // caption, tool tip, icon, sub-band, tag
        const auto row = [](const char* name, const char* definition, const QStringList& values) {
            QTest::newRow(name) << QString::fromLatin1(definition) << values;
        };
        row("caption alone", "A", {"A", "A", "", "", ""});
        row("with a name", "A:miA", {"A", "A", "", "", ""});
        row("with an icon", "A:miA:#open", {"A", "A", "open", "", ""});
        // The padding fills the first field that is left off with a name of its own.
        row("nothing behind the field that is not read", "A:miA:#open:x",
            {"A", "A", "open", "miSep1001", "#open"});
        row("the field that is not read", "A:miA:#open:x:", {"A", "miSep1001", "open", "", ""});
        row("all fields, two of them empty", "A:miA:#open:x::", {"A", "A", "open", "", ""});
        row("with a band", "A:miA:#open::bOpen", {"A", "miSep1001", "open", "bOpen", "#open"});
        row("a band without an icon", "A:miA:::bOpen:", {"A", "A", "", "bOpen", ""});
        row("a band of two letters", "A:miA:::xy:", {"A", "A", "", "xy", ""});
        row("a band of one letter is none", "A:miA:#open::x:", {"A", "A", "open", "", ""});
        row("with a tool tip", "A:miA::::Tip", {"A", "Tip", "", "", ""});
        row("with all", "A:miA:#open:x:bOpen:Tip", {"A", "Tip", "open", "bOpen", "#open"});
        row("more fields than there are",
            "A:miA:#open:x:bOpen:Tip:more:", {"A", "Tip", "open", "bOpen", "#open"});
        row("an icon that is none", "A:miA:open", {"A", "A", "", "", ""});
        row("an icon in other case", "A:miA:#Open", {"A", "A", "", "", ""});
        row("no caption", ":miA", {"", "", "", "", ""});
        row("the piece of a carrier's name", "A:miA:#ope", {"A", "A", "", "", ""});
        row("a tool that is no carrier", "A:miA:tFolderI", {"A", "A", "folder", "", ""});
    }

    void fields()
    {
        QFETCH(QString, definition);
        BuildStage stage;
        stage.run(QStringLiteral("first:miFirst|") + definition);
        const Tool& tool = stage.item(1);
        const ToolValues& values = tool.values();
        QTEST((QStringList{values.caption, values.toolTip, tool.picture(0), values.subBand, values.tag}),
              "values");
        QCOMPARE(tool.picture(2), tool.picture(0));
        QCOMPARE(tool.picture(1), QString());
        QCOMPARE(values.kind, ToolKind::Plain);
        QVERIFY(!values.checked);
        QVERIFY(values.enabled);
        QVERIFY(values.visible);
    }

    void separatorsHaveNothingElse()
    {
        BuildStage stage;
        stage.run(QStringLiteral("-x:miX:#open::bOpen:Tip|A"));
        const ToolValues& values = stage.item(0).values();
        QCOMPARE(values.kind, ToolKind::Separator);
        QCOMPARE(values.caption, QString());
        QCOMPARE(values.toolTip, QString());
        QCOMPARE(values.subBand, QString());
        QCOMPARE(stage.item(0).picture(0), QString());
    }

    void picturesOfBothVariantsAreCopied()
    {
        BuildStage stage;
        stage.model.tool(QStringLiteral("#open"))->setPicture(1, QStringLiteral("one"));
        stage.model.tool(QStringLiteral("#open"))->setPicture(2, QStringLiteral("two"));
        stage.run(QStringLiteral("A:miA:#open|B"));
        QCOMPARE(stage.item(0).picture(0), QStringLiteral("open"));
        QCOMPARE(stage.item(0).picture(1), QString());
        QCOMPARE(stage.item(0).picture(2), QStringLiteral("two"));
    }

    void imagesAreLookedUpInTheRunTogetherNames()
    {
        BuildStage stage;
        stage.model.addTool(90, QStringLiteral("one"));
        stage.model.addTool(91, QStringLiteral("two"));
        QVERIFY(stage.build.CheckImage(QStringLiteral("#open")));
        QVERIFY(stage.build.CheckImage(QStringLiteral("#ope")));   // a piece of a name
        QVERIFY(stage.build.CheckImage(QStringLiteral("onetwo"))); // across two names
        QVERIFY(stage.build.CheckImage(QString()));
        QVERIFY(!stage.build.CheckImage(QStringLiteral("#OPEN")));
        QVERIFY(!stage.build.CheckImage(QStringLiteral("miSep1000")));
        stage.model.addTool(92, QStringLiteral("#late"));
        QVERIFY(!stage.build.CheckImage(QStringLiteral("#late"))); // the names are gathered once
    }

    void namesAreGatheredAtTheFirstItemThatIsNoSeparator()
    {
        BuildStage stage;
        stage.run(QStringLiteral("-:miEarly|A:miFirst|B:miLate"));
        QVERIFY(stage.build.CheckImage(QStringLiteral("miEarly")));
        QVERIFY(stage.build.CheckImage(QStringLiteral("miFirst")));
        QVERIFY(!stage.build.CheckImage(QStringLiteral("miLate")));
    }

    void stateReachesMenuAndToolbar()
    {
        BuildStage stage;
        stage.run(QStringLiteral("A:miA>In:miInformation:#information,B:miA|C"),
                  QStringLiteral("0|miInformation|miA"));
        const auto enabledOn = [&](const char* band, int index) {
            return stage.band(QLatin1String(band))->toolAt(index)->values().enabled;
        };
        stage.model.tool(QStringLiteral("miInformation"))->set(&ToolValues::enabled, false);
        QVERIFY(!enabledOn("mnuA:miA", 0)); // though there is a designed tool of that name
        QVERIFY(!enabledOn("Toolbar", 0));
        stage.model.tool(QStringLiteral("miA"))->set(&ToolValues::enabled, false);
        QVERIFY(!enabledOn("NewImage", 0));
        QVERIFY(!enabledOn("mnuA:miA", 1)); // the same command once more
        QVERIFY(!enabledOn("Toolbar", 1));
    }

    void placeholders_data()
    {
        QTest::addColumn<bool>("postrel");
        QTest::addColumn<QString>("captions");
        QTest::addColumn<QString>("tools");
        QTest::addColumn<QString>("width");
        QTest::newRow("without") << false << "A [num] B"
                                 << "miA miB"
                                 << "width 0";
        QTest::newRow("with") << true << "A [num] Send Image via E-mail B"
                              << "miA miEmailImage miB"
                              << "width 480";
    }

    void placeholders()
    {
        QFETCH(bool, postrel);
        BuildStage stage;
        stage.postrel = postrel;
        stage.host.m_layout = QSize();
        stage.run(QStringLiteral("A:miA|[extensions][num]:miNum|[InternalExtensions]B:miB"),
                  QStringLiteral("[num]|miA|[extensions][InternalExtensions]miB"));
        QTEST(stage.captionsOn(contextMenu).join(u' '), "captions");
        QTEST(stage.namesOn(QStringLiteral("Toolbar")).join(u' '), "tools");
        QTEST(stage.host.m_calls.first(), "width");
        QCOMPARE(stage.shortcuts.count(), postrel ? 21 : 20);
        QCOMPARE(stage.shortcuts.tools('E', 2), postrel ? QStringList("miEmailImage") : QStringList());
    }

    void theMailItemHasItsIcon()
    {
        BuildStage stage;
        stage.postrel = true;
        stage.run(QStringLiteral("[InternalExtensions]A:miA"));
        QCOMPARE(stage.item(0).name(), QStringLiteral("miEmailImage"));
        QCOMPARE(stage.item(0).picture(0), QStringLiteral("email"));
        QCOMPARE(stage.build.GetInternalExtensionMenu(),
                 QStringLiteral("Send Image via E-mail:miEmailImage:#email|"));
        QCOMPARE(stage.build.GetInternalExtensionToolbar(), QStringLiteral("miEmailImage|"));
        stage.postrel = false;
        QCOMPARE(stage.build.GetInternalExtensionMenu(), QString());
        QCOMPARE(stage.build.GetInternalExtensionToolbar(), QString());
    }

    void withoutAMenuSectionNothingIsBuilt()
    {
        BuildStage stage;
        stage.run(QString(), QStringLiteral("0|tOpenx"));
        QVERIFY(!stage.build.isBuilt());
        QVERIFY(!stage.band(contextMenu));
        QVERIFY(!stage.band(QStringLiteral("Toolbar")));
        QCOMPARE(stage.host.m_calls, QStringList());
        QCOMPARE(stage.shortcuts.count(), 0);
        QCOMPARE(stage.updates, 0);
    }

    void eachSectionIsAskedForEvenWithoutAMenu()
    {
        BuildStage stage;
        QStringList asked;
        commands::MenuBuild build({.model = &stage.model,
                                   .shortcuts = &stage.shortcuts,
                                   .host = &stage.host,
                                   .menuString =
                                       [&] {
                                           asked << QStringLiteral("menu");
                                           return QString();
                                       },
                                   .toolbarString =
                                       [&] {
                                           asked << QStringLiteral("toolbar");
                                           return QString();
                                       },
                                   .postrelIsThere = [] { return false; },
                                   .twipsPerPixelX = [] { return 15.0; },
                                   .updateTools = [] {}});
        build.OpenMenuX(true); // a missing file is told of once a section
        QCOMPARE(asked, (QStringList{"menu", "toolbar"}));
    }

    void theFirstCallBuildsAndLaterOnesShow()
    {
        BuildStage stage;
        stage.menu = QStringLiteral("A:miA|B:miB");
        stage.build.OpenMenuX(false); // a click before the build
        QCOMPARE(stage.namesOn(contextMenu), (QStringList{"miA", "miB"}));
        QCOMPARE(stage.host.m_calls, QStringList());
        QVERIFY(stage.build.isBuilt());
        stage.build.OpenMenuX(false);
        QCOMPARE(stage.host.m_calls, QStringList("pop up NewImage"));
        QCOMPARE(stage.updates, 1);
    }

    void aSecondBuildTakesTheFirstOnesPlace()
    {
        BuildStage stage;
        const QString menu = QStringLiteral("A:miA>B:miB|C:miC");
        const QString toolbar = QStringLiteral("0|miA");
        stage.run(menu, toolbar);
        stage.run(menu, toolbar); // as after a click that came before the timer
        QCOMPARE(drawn(stage, contextMenu), QStringLiteral("miA(miB) miC"));
        QCOMPARE(stage.item(0).id(), 1000);
        QCOMPARE(stage.namesOn(QStringLiteral("Toolbar")), QStringList("miA"));
        QCOMPARE(stage.shortcuts.count(), 20);
        QCOMPARE(stage.updates, 2);
        stage.model.tool(QStringLiteral("miA"))->set(&ToolValues::enabled, false);
        QVERIFY(!stage.item(0).values().enabled);
        QVERIFY(!stage.band(QStringLiteral("Toolbar"))->toolAt(0)->values().enabled);
    }

    void toolsAreUpdatedWhenAllOfThemStand()
    {
        BuildStage stage;
        QStringList standing;
        commands::MenuBuild build({.model = &stage.model,
                                   .shortcuts = &stage.shortcuts,
                                   .host = &stage.host,
                                   .menuString = [] { return QStringLiteral("A:miA|B"); },
                                   .toolbarString = [] { return QStringLiteral("0|miA"); },
                                   .postrelIsThere = [] { return false; },
                                   .twipsPerPixelX = [] { return 15.0; },
                                   .updateTools =
                                       [&] {
                                           standing = stage.namesOn(QStringLiteral("Toolbar"));
                                           QVERIFY(!build.isBuilt());
                                       }});
        build.OpenMenuX(true);
        QCOMPARE(standing, QStringList("miA"));
        QVERIFY(build.isBuilt());
    }

    void theExampleOfAWholeMenu()
    {
        BuildStage stage;
        stage.run(QStringLiteral("Open Image...:miOpen:#open|-|Slide Show:miSlideShowMenu:#slideshow::bSlide|"
                                 "Zoom>Zoom In:miZoomIn:#zoomin,Zoom Out:miZoomOut:#zoomout|Resize>Custom:"
                                 "miCustomResize:#customresize,Thumbnail%80 x 80:miThumb80x80*120 x 120:"
                                 "miThumb120x120|[InternalExtensions]Exit:miExit"),
                  QStringLiteral("[num]|miOpenMenu|miSave|-|miOpen|miPrevious|miZoomIn|miZoomOut|"
                                 "[InternalExtensions]miExit"));
        QCOMPARE(drawn(stage, contextMenu),
                 QStringLiteral("miOpen miSep1001 miSlideShowMenu miSep1003(miZoomIn miZoomOut) "
                                "miSep1006(miCustomResize miSep1008(miThumb80x80 miThumb120x120)) miExit"));
        QCOMPARE(stage.namesOn(QStringLiteral("Toolbar")),
                 (QStringList{"miSep", "miOpen", "miZoomIn", "miZoomOut", "miExit"}));
        QCOMPARE(stage.item(2).values().subBand, QStringLiteral("bSlide"));
        QCOMPARE(stage.item(2).values().kind, ToolKind::DropDown);
    }
};

QTEST_GUILESS_MAIN(TestMenuBuild)
#include "tst_menubuild.moc"
