// The state of every tool by the facts, in the table, on the tools of a model, and on the copies of its
// bands.
#include "commands/CommandState.h"
#include "platform/ToolModel.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace quorvia;
using namespace quorvia::commands;
using platform::BandKind;
using platform::Tool;
using platform::ToolModel;
using platform::ToolValues;

namespace {

/// The state table as it was written down, apart from the program's own: a word for each half.
struct Expected
{
    const char* name;
    const char* enabled;
    const char* checked;
};

constexpr Expected expectedRows[] = {
    {"miBestFit", "image", "fit"},
    {"miActualSize", "image", "actual"},
    {"miFullScreen", "image", ""},
    {"miInformation", "image", ""},
    {"miSave", "image", ""},
    {"miDelete", "image", ""},
    {"miEdit", "image", ""},
    {"miZoomIn", "image", ""},
    {"miZoomOut", "image", ""},
    {"miCopy", "image", ""},
    {"miPrint", "image", ""},
    {"miRotateClock", "image", ""},
    {"miRotateCounter", "image", ""},
    {"miResizeMenu", "image", ""},
    {"miCustomResize", "image", ""},
    {"miBevel", "image", ""},
    {"miRefresh", "image", ""},
    {"miEmailImage", "image", ""},
    {"miWallpaper", "image", ""},
    {"miWallpaperMenu", "image", ""},
    {"miWallpaperS", "image", ""},
    {"miWallpaperT", "image", ""},
    {"miWallpaperC", "image", ""},
    {"miFilm1", "", "rows 1"},
    {"miFilm2", "", "rows 2"},
    {"miFilm3", "", "rows 3"},
    {"miNext", "list", ""},
    {"miPrevious", "list", ""},
    {"miSlideShow", "list", "slides"},
    {"miSlideShowMenu", "", "slides"},
    {"tSldAdvance", "list", "advance"},
    {"tSldRandom", "list", "random"},
    {"tSldReverse", "list", "reverse"},
    {"miFileList", "", "list band"},
    {"miViewNormal", "", "tab Image"},
    {"miViewInformation", "", "tab Information"},
    {"miViewFilmstrip", "", "tab Filmstrip"},
    {"miInterfaceTabs", "", "interface"},
    // and some that keep what the build gave them
    {"miOpen", "", ""},
    {"miPaste", "", ""},
    {"miPref", "", ""},
    {"miExit", "", ""},
    {"miScan", "", ""},
    {"miPlaylistEditor", "", ""},
    {"miCloseImage", "", ""},
    {"miRename", "", ""},
    {"minext", "", ""},
    {"", "", ""},
};

constexpr const char* viewTools[] = {"miViewNormal", "miViewInformation", "miViewFilmstrip",
                                     "miInterfaceTabs"};

bool isViewTool(const QString& name)
{
    return std::any_of(std::begin(viewTools), std::end(viewTools),
                       [&name](const char* each) { return name == QLatin1String(each); });
}

bool heldBy(const QString& word, const CommandFacts& facts, bool before)
{
    if (word == "image")
        return facts.hasImage;
    if (word == "list")
        return facts.listNonEmpty;
    if (word == "fit")
        return facts.hasImage ? facts.bestFit : before;
    if (word == "actual")
        return facts.hasImage ? !facts.bestFit : before;
    if (word.startsWith("rows"))
        return word == "rows " + QString::number(facts.rows);
    if (word == "slides")
        return facts.slideRunning;
    if (word == "advance")
        return facts.slidemode != "random" && facts.slidemode != "reverse";
    if (word == "random" || word == "reverse")
        return facts.slidemode == word;
    if (word == "list band")
        return facts.listShown;
    if (word.startsWith("tab"))
        return !facts.interfaceHidden && word == "tab " + facts.selectedTab;
    if (word == "interface")
        return !facts.interfaceHidden;
    return before;
}

struct ToolState
{
    bool enabled = true;
    bool checked = false;

    bool operator==(const ToolState&) const = default;
};

ToolState expectedState(const Expected& row, const CommandFacts& facts, const ToolState& before)
{
    return {heldBy(QLatin1String(row.enabled), facts, before.enabled),
            heldBy(QLatin1String(row.checked), facts, before.checked)};
}

/// Every combination of the yes-or-no facts, and with each a few of the others.
std::vector<CommandFacts> allFacts()
{
    const std::vector<QString> modes = {"advance", "reverse", "random", "Random", ""};
    const std::vector<QString> tabs = {"Image", "Information", "Filmstrip", "image", "Other", ""};
    std::vector<CommandFacts> all;
    for (unsigned bits = 0; bits < 64; ++bits) {
        for (std::size_t i = 0; i < modes.size() * tabs.size(); ++i) {
            const auto bit = [bits](unsigned n) { return (bits >> n & 1U) != 0; };
            all.push_back({bit(0), bit(1), bit(2), bit(3), bit(4), bit(5), int(i % 7) - 1,
                           modes[i % modes.size()], tabs[i / modes.size()]});
        }
    }
    return all;
}

constexpr ToolState everyState[] = {{false, false}, {false, true}, {true, false}, {true, true}};

ToolState stateOf(const Tool* tool)
{
    return {tool->values().enabled, tool->values().checked};
}

void give(Tool* tool, const ToolState& state)
{
    tool->set(&ToolValues::enabled, state.enabled);
    tool->set(&ToolValues::checked, state.checked);
}

/// A model with every tool of the table, each on a menu that follows and on a band that does not.
class Model
{
  public:
    Model()
    {
        platform::ToolBand* const menu = model.addBand(QStringLiteral("NewImage"), BandKind::PopUp);
        platform::ToolBand* const wallpaper =
            model.addBand(QStringLiteral("bWallpaper"), BandKind::PopUp, false);
        platform::ToolBand* const slide = model.addBand(QStringLiteral("bSlide"), BandKind::PopUp, false);
        platform::ToolBand* const strip = model.addBand(QStringLiteral("bFilmStrip"), BandKind::PopUp, false);
        for (const Expected& row : expectedRows) {
            Tool* const tool = model.addTool(1, QLatin1String(row.name));
            menu->append(tool);
            wallpaper->append(tool);
            slide->append(tool);
            strip->append(tool);
        }
    }
    Tool* tool(const char* name) const { return model.tool(QLatin1String(name)); }
    Tool* copy(const char* band, const char* name) const
    {
        return model.band(QLatin1String(band))->tool(QLatin1String(name));
    }

    ToolModel model;
};

CommandFacts facts(bool image, bool listed)
{
    return {.hasImage = image, .listNonEmpty = listed, .slidemode = "advance", .selectedTab = "Image"};
}

} // namespace

class TestCommandState : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void theTableGivesEveryState();
    void aToolAloneGetsTheSame();
    void theWallpaperCopiesGetTheirOwn();
    void theCopiesOnMenusOfTheirOwnFollow();
    void nothingElseOfABandThatDoesNotFollowIsTouched();
    void eachRoutineLeavesTheOtherAlone();
    void toolsThatAreMissingCostNothing();
    void onlyChangesAreTold();
    void anEmptyListWithAnImage();
    void aListWithoutAnImage();
    void bestFitKeepsItsMarkWithoutAnImage();
    void rowsBeyondTheThree_data();
    void rowsBeyondTheThree();
    void noViewIsCheckedOnAHiddenInterface();
    void images_data();
    void images();
    void panels();
};

void TestCommandState::theTableGivesEveryState()
{
    Model model;
    for (const CommandFacts& each : allFacts()) {
        for (const ToolState& before : everyState) {
            for (const Expected& row : expectedRows)
                give(model.tool(row.name), before);
            applyState(model.model, each);
            applyViewMarks(model.model, each);
            for (const Expected& row : expectedRows) {
                const ToolState expected = expectedState(row, each, before);
                if (stateOf(model.tool(row.name)) != expected ||
                    stateOf(model.copy("NewImage", row.name)) != expected)
                    QFAIL(row.name);
            }
        }
    }
}

void TestCommandState::aToolAloneGetsTheSame()
{
    std::size_t turn = 0;
    for (const Expected& row : expectedRows) {
        ToolModel alone;
        Tool* const tool = alone.addTool(1, QLatin1String(row.name));
        Tool* const stranger = alone.addTool(2, QStringLiteral("miStranger"));
        for (const CommandFacts& each : allFacts()) {
            const ToolState before = everyState[++turn % 4];
            give(tool, before);
            give(stranger, before);
            applyState(alone, each);
            applyViewMarks(alone, each);
            if (stateOf(tool) != expectedState(row, each, before) || stateOf(stranger) != before)
                QFAIL(row.name);
        }
    }
}

void TestCommandState::theWallpaperCopiesGetTheirOwn()
{
    Model model;
    for (const bool image : {false, true, false}) {
        applyState(model.model, facts(image, true));
        for (const char* name : {"miWallpaperS", "miWallpaperT", "miWallpaperC"}) {
            QCOMPARE(model.tool(name)->values().enabled, image);
            QCOMPARE(model.copy("bWallpaper", name)->values().enabled, image);
        }
    }
}

void TestCommandState::theCopiesOnMenusOfTheirOwnFollow()
{
    Model model;
    for (const CommandFacts& each : allFacts()) {
        applyState(model.model, each);
        for (const char* name : {"tSldAdvance", "tSldRandom", "tSldReverse"})
            QCOMPARE(stateOf(model.copy("bSlide", name)), stateOf(model.tool(name)));
        for (const char* name : {"miFilm1", "miFilm2", "miInformation"})
            QCOMPARE(stateOf(model.copy("bFilmStrip", name)), stateOf(model.tool(name)));
    }
}

void TestCommandState::nothingElseOfABandThatDoesNotFollowIsTouched()
{
    Model model;
    applyState(model.model, facts(false, false));
    applyViewMarks(model.model, facts(false, false));
    for (const Expected& row : expectedRows) {
        const QString name = QLatin1String(row.name);
        const bool plainWallpaper =
            name == QLatin1String("miWallpaper") || name == QLatin1String("miWallpaperMenu");
        if (!name.startsWith(QLatin1String("miWallpaper")) || plainWallpaper)
            QCOMPARE(stateOf(model.copy("bWallpaper", row.name)), ToolState());
        if (!name.startsWith(QLatin1String("tSld")))
            QCOMPARE(stateOf(model.copy("bSlide", row.name)), ToolState());
        const QStringList ofStrip{QStringLiteral("miFilm1"), QStringLiteral("miFilm2"),
                                  QStringLiteral("miInformation")};
        if (!ofStrip.contains(name))
            QCOMPARE(stateOf(model.copy("bFilmStrip", row.name)), ToolState());
    }
}

void TestCommandState::eachRoutineLeavesTheOtherAlone()
{
    const CommandFacts some{.slideRunning = true, .listShown = true, .slidemode = {}, .selectedTab = "Image"};
    Model first;
    applyState(first.model, some);
    Model second;
    applyViewMarks(second.model, some);
    for (const Expected& row : expectedRows) {
        const ToolState expected = expectedState(row, some, ToolState());
        const bool ofView = isViewTool(QLatin1String(row.name));
        QCOMPARE(stateOf(first.tool(row.name)), ofView ? ToolState() : expected);
        QCOMPARE(stateOf(second.tool(row.name)), ofView ? expected : ToolState());
    }
}

void TestCommandState::toolsThatAreMissingCostNothing()
{
    ToolModel empty;
    applyState(empty, facts(true, true));
    applyViewMarks(empty, facts(true, true));
    QCOMPARE(empty.toolCount(), 0);

    ToolModel few;
    Tool* const next = few.addTool(1, QStringLiteral("miNext"));
    few.addBand(QStringLiteral("bWallpaper"), BandKind::PopUp, false)
        ->append(few.addTool(2, QStringLiteral("miWallpaperC")));
    applyState(few, facts(false, false));
    QVERIFY(!next->values().enabled);
    QVERIFY(!few.band(QStringLiteral("bWallpaper"))->toolAt(0)->values().enabled);
}

void TestCommandState::onlyChangesAreTold()
{
    Model model;
    applyState(model.model, facts(true, true));
    QSignalSpy zoom(model.tool("miZoomIn"), &Tool::changed);
    QSignalSpy next(model.tool("miNext"), &Tool::changed);
    applyState(model.model, facts(true, true));
    QCOMPARE(zoom.count() + next.count(), 0);
    applyState(model.model, facts(false, true));
    QCOMPARE(zoom.count(), 1);
    QCOMPARE(next.count(), 0);
}

void TestCommandState::anEmptyListWithAnImage()
{
    Model model;
    applyState(model.model, facts(true, false));
    for (const char* name : {"miNext", "miPrevious", "miSlideShow"})
        QVERIFY(!model.tool(name)->values().enabled);
    for (const char* name : {"miZoomIn", "miSave", "miSlideShowMenu"})
        QVERIFY(model.tool(name)->values().enabled);
}

void TestCommandState::aListWithoutAnImage()
{
    Model model;
    applyState(model.model, facts(false, true));
    for (const char* name : {"miNext", "miPrevious", "miSlideShow"})
        QVERIFY(model.tool(name)->values().enabled);
    for (const char* name : {"miZoomIn", "miSave", "miFullScreen"})
        QVERIFY(!model.tool(name)->values().enabled);
}

void TestCommandState::bestFitKeepsItsMarkWithoutAnImage()
{
    Model model;
    CommandFacts now = facts(true, true);
    now.bestFit = true;
    applyState(model.model, now);
    now.hasImage = false;
    now.bestFit = false;
    applyState(model.model, now);
    QCOMPARE(stateOf(model.tool("miBestFit")), (ToolState{false, true}));
    QCOMPARE(stateOf(model.tool("miActualSize")), (ToolState{false, false}));
    now.hasImage = true;
    applyState(model.model, now);
    QCOMPARE(stateOf(model.tool("miBestFit")), (ToolState{true, false}));
    QCOMPARE(stateOf(model.tool("miActualSize")), (ToolState{true, true}));
}

void TestCommandState::rowsBeyondTheThree_data()
{
    QTest::addColumn<int>("rows");
    QTest::newRow("below") << -1;
    QTest::newRow("none") << 0;
    QTest::newRow("four") << 4;
}

void TestCommandState::rowsBeyondTheThree()
{
    QFETCH(int, rows);
    Model model;
    CommandFacts now = facts(true, true);
    now.rows = 2;
    applyState(model.model, now);
    QVERIFY(model.tool("miFilm2")->values().checked);
    now.rows = rows;
    applyState(model.model, now);
    for (const char* name : {"miFilm1", "miFilm2", "miFilm3"})
        QVERIFY(!model.tool(name)->values().checked);
}

void TestCommandState::noViewIsCheckedOnAHiddenInterface()
{
    Model model;
    CommandFacts now = facts(true, true);
    applyViewMarks(model.model, now);
    QVERIFY(model.tool("miViewNormal")->values().checked);
    QVERIFY(model.tool("miInterfaceTabs")->values().checked);
    now.interfaceHidden = true;
    applyViewMarks(model.model, now);
    for (const char* name : viewTools)
        QVERIFY(!model.tool(name)->values().checked);
}

void TestCommandState::images_data()
{
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QString>("tab");
    QTest::addColumn<bool>("image");
    QTest::newRow("picture") << true << "Image" << true;
    QTest::newRow("information") << true << "Information" << true;
    QTest::newRow("filmstrip") << true << "Filmstrip" << true;
    QTest::newRow("another tab") << true << "Other" << false;
    QTest::newRow("another case") << true << "image" << false;
    QTest::newRow("no tab") << true << "" << false;
    QTest::newRow("deleted from outside") << false << "Image" << false;
}

void TestCommandState::images()
{
    QFETCH(bool, exists);
    QFETCH(QString, tab);
    QTEST(hasImage(exists, tab), "image");
}

void TestCommandState::panels()
{
    QVERIFY(showsWelcome(facts(false, true)));
    QVERIFY(!showsWelcome(facts(true, false)));
    QCOMPARE(viewedText(0), QStringLiteral("0 total images have been viewed."));
    QCOMPARE(viewedText(12345), QStringLiteral("12345 total images have been viewed."));
    QCOMPARE(listUpdateInterval(true), 3000);
    QCOMPARE(listUpdateInterval(false), 12000);
}

QTEST_GUILESS_MAIN(TestCommandState)
#include "tst_commandstate.moc"
