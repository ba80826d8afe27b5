// The two stages of a key: fixed keys, the shortcut table, and the boxes with what follows them.
#include "../support/ScratchHome.h"
#include "app/mWindowsAPI.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "commands/Keyboard.h"
#include "commands/KeyBoxes.h"
#include "commands/ShortcutTable.h"
#include "KeyboardBench.h"
#include "platform/Dialogs.h"

#include <QSet>
#include <QTest>

using namespace quorvia;
using namespace quorvia::test;
using namespace quorvia::commands;
using platform::BoxAnswer;
using platform::BoxButtons;

namespace {

struct KeyRow
{
    const char* name;
    int code;
    int shift;
    QStringList done;
};

const std::vector<KeyRow>& fixedRows()
{
    static const std::vector<KeyRow> rows = {
        {"F1", f1, 0, {"box"}},
        {"F2", f2, 0, {"box"}},
        {"F10", f10, 0, {"events", "box"}},
        {"H", 'H', 0, {"miHideInterface"}},
        {"Esc", escape, 0, {"events", "miExit"}},
        {"Z", 'Z', 0, {"miQuickHide"}},
        {"X", 'X', 0, {"minimise"}},
        {"1", '1', 0, {"miViewNormal"}},
        {"2", '2', 0, {"miViewInformation"}},
        {"3", '3', 0, {"miViewFilmstrip"}},
        {"Right", 39, 0, {"miNext"}},
        {"Left", 37, 0, {"miPrevious"}},
        {"Down", 40, 0, {"miNext"}},
        {"Up", 38, 0, {"miPrevious"}},
        {"P", 'P', 0, {"miSlideShow"}},
        {"Alt+F", 'F', 4, {"fit"}},
    };
    return rows;
}

const std::vector<KeyRow>& shortcutRows()
{
    static const std::vector<KeyRow> rows = {
        {"K", 'K', 0, {"miEXIFView"}},        {"F", 'F', 0, {"miFileList"}},
        {"Ctrl+R", 'R', 2, {"miRename"}},     {"]", 221, 0, {"miNext"}},
        {"[", 219, 0, {"miPrevious"}},        {"Ctrl+N", 'N', 2, {"miNext"}},
        {"Ctrl+B", 'B', 2, {"miPrevious"}},   {"Ctrl+P", 'P', 2, {"miPrint"}},
        {"Ctrl+C", 'C', 2, {"miCopy"}},       {"Ctrl+V", 'V', 2, {"miPaste"}},
        {"R", 'R', 0, {"miRandom"}},          {"Ctrl+W", 'W', 2, {"miWallpaper"}},
        {"Ctrl+2", '2', 2, {"miBestFit"}},    {"Ctrl+1", '1', 2, {"miActualSize"}},
        {"Ctrl+F", 'F', 2, {"miFullScreen"}}, {"Ctrl+O", 'O', 2, {"miOpen"}},
        {"Ctrl+S", 'S', 2, {"miSave"}},       {"Ctrl+Enter", 13, 2, {"miFullScreen"}},
        {"Delete", 46, 0, {"miDelete"}},      {"Q", 'Q', 0, {"miCloseImage"}},
    };
    return rows;
}

const std::vector<KeyRow>& idleRows()
{
    static const std::vector<KeyRow> rows = {
        {"Shift+Right", 39, 1, {}},   {"Ctrl+Right", 39, 2, {}},
        {"Alt+Right", 39, 4, {}},     {"Ctrl+Shift+R", 'R', 3, {}},
        {"Ctrl+Shift+N", 'N', 3, {}}, {"Ctrl+Esc", escape, 2, {}},
        {"Shift+F1", f1, 1, {}},      {"Ctrl+F10", f10, 2, {}},
        {"Ctrl+Alt+F", 'F', 6, {}},   {"Ctrl+E without its tool", 'E', 2, {}},
        {"Enter", 13, 0, {}},         {"Ctrl+F7", f7, 2, {}},
        {"Shift+Alt+F7", f7, 5, {}},  {"no key", 0, 0, {}},
    };
    return rows;
}

} // namespace

class TestKeyboard : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void keys_data();
    void keys();
    void everyOtherKeyDoesNothing();
    void aFixedKeyWinsOverTheTable();
    void everyMatchRuns();
    void theTableMayBeFilledLater();
    void theFirstStageHasItsOwnKeys_data();
    void theFirstStageHasItsOwnKeys();
    void keysOfOtherWindowsPassOneStageOnly();
    void anUnsavedDescriptionStopsEveryKey();
    void anUnsavedDescriptionLetsTheFirstStageAsk_data();
    void anUnsavedDescriptionLetsTheFirstStageAsk();
    void helpIsAskedFor_data();
    void helpIsAskedFor();
    void informationListsTheFacts();
    void informationGathersTheFacts();
    void theEngineTellsOfItself();
    void erasingAsksFirst_data();
    void erasingAsksFirst();
    void quickFunctions_data();
    void quickFunctions();
    void aCommandMayEndTheKeyboard();
    void aBoxMayEndTheKeyboard_data();
    void aBoxMayEndTheKeyboard();
};

void TestKeyboard::keys_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("shift");
    QTest::addColumn<QStringList>("done");
    for (const auto& rows : {fixedRows(), shortcutRows(), idleRows()}) {
        for (const KeyRow& row : rows)
            QTest::newRow(row.name) << row.code << row.shift << row.done;
    }
}

void TestKeyboard::keys()
{
    QFETCH(int, code);
    QFETCH(int, shift);
    KeyboardBench bench;
    QTEST(bench.press(code, shift), "done");
    bench.rest();
    QTEST(bench.pressElsewhere(code, shift), "done");
}

void TestKeyboard::everyOtherKeyDoesNothing()
{
    QSet<QPair<int, int>> used = {{f12, 0}, {f12, 1}, {f12, 2}, {f12, 3}, {f12, 4},
                                  {f12, 5}, {f12, 6}, {f12, 7}, {f7, 6},  {f7, 7}};
    for (const auto& rows : {fixedRows(), shortcutRows()}) {
        for (const KeyRow& row : rows)
            used.insert({row.code, row.shift});
    }
    KeyboardBench bench;
    for (int code = 0; code < 256; ++code) {
        for (int shift = 0; shift < 8; ++shift) {
            bench.rest();
            QCOMPARE(!bench.press(code, shift).isEmpty(), used.contains({code, shift}));
        }
    }
}

void TestKeyboard::aFixedKeyWinsOverTheTable()
{
    KeyboardBench bench;
    bench.shortcuts.AddShortcut(QStringLiteral("0"), QStringLiteral("H"), QStringLiteral("miOwn"));
    QCOMPARE(bench.press('H', 0), QStringList{"miHideInterface"});
}

void TestKeyboard::everyMatchRuns()
{
    KeyboardBench bench;
    bench.shortcuts.AddShortcut(QStringLiteral("0"), QStringLiteral("R"), QStringLiteral("miOwn"));
    bench.shortcuts.AddShortcut(QStringLiteral("0"), QStringLiteral("R"), QStringLiteral("miOther"));
    QCOMPARE(bench.press('R', 0), (QStringList{"miRandom", "miOwn", "miOther"}));
}

void TestKeyboard::theTableMayBeFilledLater()
{
    KeyboardBench bench;
    QCOMPARE(bench.press('E', 2), QStringList());
    bench.shortcuts.AddShortcut(QStringLiteral("2"), QStringLiteral("E"), QStringLiteral("miEmailImage"));
    bench.rest();
    QCOMPARE(bench.press('E', 2), QStringList{"miEmailImage"});
}

void TestKeyboard::theFirstStageHasItsOwnKeys_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("shift");
    QTest::newRow("F12") << f12 << 0;
    QTest::newRow("Ctrl+F12") << f12 << 2;
    QTest::newRow("Shift+Ctrl+Alt+F12") << f12 << 7;
    QTest::newRow("Ctrl+Alt+F7") << f7 << 6;
    QTest::newRow("Shift+Ctrl+Alt+F7") << f7 << 7;
}

void TestKeyboard::theFirstStageHasItsOwnKeys()
{
    QFETCH(int, code);
    QFETCH(int, shift);
    KeyboardBench bench;
    bench.shortcuts.AddShortcut(QString::number(shift), QString::number(code), QStringLiteral("miOwn"));
    QCOMPARE(bench.press(code, shift), (QStringList{"box", "miOwn"})); // the second stage follows
    bench.rest();
    QCOMPARE(bench.pressElsewhere(code, shift), QStringList{"miOwn"});
}

void TestKeyboard::keysOfOtherWindowsPassOneStageOnly()
{
    KeyboardBench bench;
    bench.timer("tWait")->start();
    QCOMPARE(bench.pressElsewhere('R', 0), QStringList{"miRandom"});
    QVERIFY(bench.timer("tKey")->isActive());
}

void TestKeyboard::anUnsavedDescriptionLetsTheFirstStageAsk_data()
{
    theFirstStageHasItsOwnKeys_data();
}

void TestKeyboard::anUnsavedDescriptionLetsTheFirstStageAsk()
{
    QFETCH(int, code);
    QFETCH(int, shift);
    KeyboardBench bench;
    bench.unsaved = true;
    bench.shortcuts.AddShortcut(QString::number(shift), QString::number(code), QStringLiteral("miOwn"));
    QCOMPARE(bench.press(code, shift), QStringList{"box"});
}

void TestKeyboard::anUnsavedDescriptionStopsEveryKey()
{
    KeyboardBench bench;
    bench.unsaved = true;
    for (const auto& rows : {fixedRows(), shortcutRows()}) {
        for (const KeyRow& row : rows) {
            bench.rest();
            QCOMPARE(bench.press(row.code, row.shift), QStringList());
            QVERIFY(bench.timer("tKey")->isActive());
        }
    }
    bench.unsaved = false;
    bench.rest();
    QCOMPARE(bench.press(escape, 0), (QStringList{"events", "miExit"}));
}

void TestKeyboard::helpIsAskedFor_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    QTest::addColumn<BoxAnswer>("answer");
    QTest::addColumn<QStringList>("done");
    const QString help = QStringLiteral("You have requested to view the Quorvia 'Help Documentation'. Do you "
                                        "wish to continue?");
    const QString keys = QStringLiteral("You have requested to view the Quorvia 'Shortcut Key "
                                        "Documentation'. Do you wish to continue?");
    QTest::newRow("help, yes") << f1 << help << BoxAnswer::Yes << QStringList{"box", "miHelp"};
    QTest::newRow("help, no") << f1 << help << BoxAnswer::No << QStringList{"box"};
    QTest::newRow("help, cancelled") << f1 << help << BoxAnswer::Cancel << QStringList{"box"};
    QTest::newRow("keys, yes") << f2 << keys << BoxAnswer::Yes << QStringList{"box", "miHelpShortcuts"};
    QTest::newRow("keys, no") << f2 << keys << BoxAnswer::No << QStringList{"box"};
    QTest::newRow("keys, cancelled") << f2 << keys << BoxAnswer::Cancel << QStringList{"box"};
}

void TestKeyboard::helpIsAskedFor()
{
    QFETCH(int, code);
    QFETCH(BoxAnswer, answer);
    KeyboardBench bench;
    bench.answer = answer;
    QTEST(bench.press(code, 0), "done");
    QCOMPARE(bench.boxes.size(), std::size_t(1));
    QCOMPARE(bench.boxes[0].buttons, BoxButtons::YesNoCancel);
    QTEST(bench.boxes[0].text, "text");
}

void TestKeyboard::informationListsTheFacts()
{
    const platform::MessageBox box = informationBox({.name = QStringLiteral("Name"),
                                                     .version = QStringLiteral("1.2.3"),
                                                     .interfaceVersions = QStringLiteral("4.5"),
                                                     .imagesOpened = 17,
                                                     .file = QStringLiteral("/bin/name, 3 KB")});
    QCOMPARE(box.text, QStringLiteral("Name\n"
                                      "Version: 1.2.3\n"
                                      "Image Engine: 4.0.004\n"
                                      "Interface Versions: 4.5\n"
                                      "Images Opened: 17\n"
                                      "File: /bin/name, 3 KB"));
    QCOMPARE(box.buttons, BoxButtons::Ok);
}

void TestKeyboard::informationGathersTheFacts()
{
    const test::ScratchHome home;
    app::openSettings();
    app::save(app::setting::ImageOpenCount, 42);
    KeyboardBench bench;
    bench.press(f10, 0);
    QCOMPARE(bench.boxes.size(), std::size_t(1));
    const QStringList lines = bench.boxes[0].text.split(u'\n');
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines[0], QStringLiteral("Quorvia"));
    QCOMPARE(lines[1],
             QStringLiteral("Version: ") + app::versionText(app::productVersion(), QStringLiteral(".")));
    QCOMPARE(lines[3], QStringLiteral("Interface Versions: 3.1"));
    QCOMPARE(lines[4], QStringLiteral("Images Opened: 42"));
    QCOMPARE(lines[5], QStringLiteral("File: ") + fileData(QCoreApplication::applicationFilePath()));
    app::closeSettings();

    const QString file = home.write(QStringLiteral("some/program"), QByteArray(2048, 'x'));
    QVERIFY(fileData(file).startsWith(file + QStringLiteral(", 2 KB, ")));
    QVERIFY(fileData(file).endsWith(QString::number(QDate::currentDate().year())));
    QCOMPARE(fileData(QStringLiteral("/nowhere")), QStringLiteral("/nowhere, 0 KB"));
}

void TestKeyboard::theEngineTellsOfItself()
{
    KeyboardBench bench;
    bench.press(f12, 1);
    QCOMPARE(bench.boxes.size(), std::size_t(1));
    QCOMPARE(bench.boxes[0].buttons, BoxButtons::Ok);
    QVERIFY(bench.boxes[0].text.startsWith(QStringLiteral("Image Engine: 4.0.004\n")));
    QVERIFY(bench.boxes[0].text.contains(QStringLiteral("BMP, DIB, GIF, JPG,")));
    QVERIFY(!bench.boxes[0].text.contains(u'*'));
}

void TestKeyboard::erasingAsksFirst_data()
{
    QTest::addColumn<BoxAnswer>("answer");
    QTest::addColumn<bool>("erased");
    QTest::addColumn<QStringList>("done");
    QTest::newRow("yes") << BoxAnswer::Yes << true << QStringList{"box", "end"};
    QTest::newRow("no") << BoxAnswer::No << false << QStringList{"box"};
    QTest::newRow("cancelled") << BoxAnswer::Cancel << false << QStringList{"box"};
}

void TestKeyboard::erasingAsksFirst()
{
    QFETCH(BoxAnswer, answer);
    QFETCH(bool, erased);
    const test::ScratchHome home;
    app::openSettings();
    app::save(app::setting::cView, 1);
    app::save(app::setting::slidemode, QStringLiteral("random"));
    app::save(app::setting::PrintZoom, 5);
    app::save(app::setting::LastCheck, QStringLiteral("012026"));
    app::saveEarlierOwner(QStringLiteral("Open"), QStringLiteral(".jpg"), QStringLiteral("other"));
    app::save(app::common::ThumbnailPath, QStringLiteral("/thumbs/"));

    KeyboardBench bench;
    bench.answer = answer;
    QTEST(bench.press(f7, 6), "done");
    QCOMPARE(bench.boxes[0].buttons, BoxButtons::YesNoCancel);
    QCOMPARE(bench.boxes[0].text,
             QStringLiteral("Are your sure you want to purge your registry settings for Quorvia?\n\nNote: "
                            "Selecting yes will cause all settings to be erased and exit the program."));

    app::openSettings(); // as another run finds them
    QCOMPARE(app::read(app::setting::cView), erased ? 0 : 1);
    QCOMPARE(app::read(app::setting::slidemode), QLatin1String(erased ? "advance" : "random"));
    QCOMPARE(app::read(app::setting::PrintZoom), erased ? 2 : 5);
    QCOMPARE(app::read(app::setting::LastCheck), QLatin1String(erased ? "" : "012026"));
    QCOMPARE(app::readEarlierOwner(QStringLiteral("Open"), QStringLiteral(".jpg")), QStringLiteral("other"));
    QCOMPARE(app::read(app::common::ThumbnailPath), QStringLiteral("/thumbs/"));
    app::closeSettings();
}

void TestKeyboard::quickFunctions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("done");
    QTest::newRow("its name") << "FitWindowToImage" << QStringList{"fit"};
    QTest::newRow("another case") << "fitwindowTOIMAGE" << QStringList{"fit"};
    QTest::newRow("another name") << "FitWindow" << QStringList();
    QTest::newRow("no name") << "" << QStringList();
}

void TestKeyboard::quickFunctions()
{
    QFETCH(QString, name);
    KeyboardBench bench;
    bench.keyboard->QuickFunctions(name);
    QTEST(bench.done, "done");
}

void TestKeyboard::aCommandMayEndTheKeyboard()
{
    KeyboardBench bench;
    bench.shortcuts.AddShortcut(QStringLiteral("0"), QStringLiteral("R"), QStringLiteral("miOwn"));
    bench.whenRun = [&](const QString&) { bench.keyboard.reset(); };
    QCOMPARE(bench.press('R', 0), QStringList{"miRandom"});
}

void TestKeyboard::aBoxMayEndTheKeyboard_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("shift");
    QTest::newRow("F1") << f1 << 0;
    QTest::newRow("F2") << f2 << 0;
    QTest::newRow("F12") << f12 << 0;
    QTest::newRow("Ctrl+Alt+F7") << f7 << 6;
}

void TestKeyboard::aBoxMayEndTheKeyboard()
{
    QFETCH(int, code);
    QFETCH(int, shift);
    KeyboardBench bench;
    bench.shortcuts.AddShortcut(QString::number(shift), QString::number(code), QStringLiteral("miOwn"));
    const platform::MessageBoxAnswerer ends([&bench](const platform::MessageBox&) {
        bench.keyboard.reset();
        return BoxAnswer::Yes;
    });
    QCOMPARE(bench.press(code, shift), QStringList());
    QVERIFY(!bench.keyboard);
}

QTEST_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
