#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "platform/SettingsStore.h"

#include <QSet>
#include <QTest>

#include <limits>

using namespace quorvia::app;
using quorvia::platform::machineStorePath;
using quorvia::platform::SettingsStore;
using quorvia::platform::userStorePath;
using quorvia::test::SettingsHome;

namespace {

/// A catalogue row as it was written down, apart from the program's own table.
struct Expected
{
    const char* section;
    const char* name;
    char kind;        // 'n' number, 't' text
    const char* text; // the default as text; null: the caller passes it
};

constexpr Expected expectedRows[] = {
    {"Settings", "MainLeft", 'n', nullptr},
    {"Settings", "MainTop", 'n', nullptr},
    {"Settings", "MainWidth", 'n', nullptr},
    {"Settings", "MainHeight", 'n', nullptr},
    {"Settings", "MainWindowState", 'n', "0"},
    {"Settings", "ViewportWidth", 'n', nullptr},
    {"Settings", "ViewportHeight", 'n', nullptr},
    {"Settings", "ToggleInterface", 'n', "1"},
    {"Settings", "cLayout", 'n', "1"},
    {"Settings", "cLayoutFiles", 'n', "-1"},
    {"Settings", "cLayoutFilesWidth", 'n', nullptr},
    {"Settings", "cLayoutFilesVHeight", 'n', nullptr},
    {"Settings", "cLayoutFilesAlign", 'n', nullptr},
    {"Settings", "cLayoutFilesfLeft", 'n', nullptr},
    {"Settings", "cLayoutFilesfTop", 'n', nullptr},
    {"Settings", "cLayoutFilesfWidth", 'n', nullptr},
    {"Settings", "cLayoutFilesfHeight", 'n', nullptr},
    {"Settings", "MainBackColor", 'n', nullptr},
    {"Settings", "FullBackColor", 'n', "0"},
    {"Settings", "cView", 'n', "0"},
    {"Settings", "cFView", 'n', "0"},
    {"Settings", "cFull", 'n', "0"},
    {"Settings", "cSlide", 'n', "0"},
    {"Settings", "cLoad", 'n', "1"},
    {"Settings", "imgAutoLoad", 'n', "1"},
    {"Settings", "cBorder", 'n', "1"},
    {"Settings", "Interval", 'n', "2000"},
    {"Settings", "slidemode", 't', "advance"},
    {"Settings", "Recent", 't', ";;"},
    {"Settings", "ActiveTabWindow", 't', "Image"},
    {"Settings", "FilmStripRows", 'n', "1"},
    {"Settings", "FilmStripHeight", 'n', nullptr},
    {"Settings", "ImageOpenCount", 'n', "0"},
    {"Settings", "JPEGLum", 'n', "24"},
    {"Settings", "JPEGChrome", 'n', "20"},
    {"Settings", "JPEGSampling", 'n', "1"},
    {"Settings", "JPEGGray", 'n', "0"},
    {"Settings", "PictureMemory", 'n', "0"},
    {"Settings", "ReadAheadMemory", 'n', "512"},
    {"Settings", "Menu", 't', nullptr},
    {"Settings", "Toolbar", 't', nullptr},
    {"Settings", "Associate", 'n', "0"},
    {"Settings", "DynamicLink", 'n', "1"},
    {"Settings", "LinkPreview", 'n', "2"},
    {"Settings", "Latest Version", 't', "0.0.0"},
    {"Settings", "ShowBetaFeatures", 'n', "0"},
    {"Settings", "ClipboardView", 't', "True"},
    {"Settings", "BrowserRoot", 't', "Desktop"},
    {"Settings", "SelectedPath", 't', nullptr},
    {"Settings", "Path", 't', nullptr},
    {"Settings", "OnFolders", 'n', nullptr},
    {"Settings", "PlaylistTab", 'n', "0"},
    {"Settings", "ActivePlaylist", 't', ""},
    {"Settings", "LastDirectory", 't', ""},
    {"Settings", "PlaylistEditorLeft", 'n', nullptr},
    {"Settings", "PlaylistEditorTop", 'n', nullptr},
    {"Settings", "PlaylistEditorWidth", 'n', nullptr},
    {"Settings", "PlaylistEditorHeight", 'n', nullptr},
    {"Settings", "PlaylistEditorWindowState", 'n', "0"},
    {"Settings", "Scanner", 't', ""},
    {"Settings", "ScannerGray", 'n', "0"},
    {"Settings", "ScannerResolution", 'n', "300"},
    {"Print Settings", "PrintFontName", 't', nullptr},
    {"Print Settings", "PrintFontSize", 't', nullptr},
    {"Print Settings", "PrintFontBold", 'n', nullptr},
    {"Print Settings", "PrintFontItalic", 'n', nullptr},
    {"Print Settings", "PrintFontStrike", 'n', nullptr},
    {"Print Settings", "PrintFontUnderline", 'n', nullptr},
    {"Print Settings", "PrintFontColor", 'n', nullptr},
    {"Print Settings", "PrintLayout", 'n', "0"},
    {"Print Settings", "PrintArea", 'n', "0"},
    {"Print Settings", "PrintTitleA", 'n', "1"},
    {"Print Settings", "PrintZoom", 'n', "2"},
    {"Print Settings", "PrintFilename", 'n', "0"},
    {"Print Settings", "PrintPath", 'n', "0"},
    {"SettingsNet", "AutoUpdate", 'n', "1"},
    {"SettingsNet", "LastCheck", 't', ""},
    {"SettingsNet", "StartedVersion", 't', ""},
};

const CatalogueRow* rowOf(const Expected& expected)
{
    for (const CatalogueRow& row : settingsCatalogue()) {
        if (qstrcmp(row.key.section, expected.section) == 0 && qstrcmp(row.key.name, expected.name) == 0)
            return &row;
    }
    return nullptr;
}

void store(const char* section, const char* name, const QVariant& value)
{
    QVERIFY(SaveAppSetting(QString::fromLatin1(section), QString::fromLatin1(name), value));
}

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void everyRow_data();
    void everyRow();
    void noRowMoreAndNoneTwice();
    void constants();
    void numberReads_data();
    void numberReads();
    void textReads();
    void saves();
    void blanks();
    void placement_data();
    void placement();
    void earlierOwners();
    void commonNames_data();
    void commonNames();
    void commonValues();
    void toolValues();
};

void TestSettings::everyRow_data()
{
    QTest::addColumn<int>("index");
    for (size_t n = 0; n < std::size(expectedRows); ++n)
        QTest::addRow("%s\\%s", expectedRows[n].section, expectedRows[n].name) << int(n);
}

void TestSettings::everyRow()
{
    QFETCH(int, index);
    const Expected& expected = expectedRows[index];
    const CatalogueRow* row = rowOf(expected);
    QVERIFY(row);
    QCOMPARE(row->isNumber, expected.kind == 'n');
    QCOMPARE(row->number.has_value(), expected.kind == 'n' && expected.text);
    if (row->number)
        QCOMPARE(QByteArray::number(*row->number), QByteArray(expected.text));
    QCOMPARE(row->text != nullptr, expected.kind == 't' && expected.text);
    if (row->text)
        QCOMPARE(row->text, expected.text);
}

void TestSettings::noRowMoreAndNoneTwice()
{
    QSet<QByteArray> names;
    for (const CatalogueRow& row : settingsCatalogue())
        names.insert((QByteArray(row.key.section) + '\\' + row.key.name).toLower());
    QCOMPARE(size_t(names.size()), settingsCatalogue().size());
    QCOMPARE(settingsCatalogue().size(), std::size(expectedRows));
}

void TestSettings::constants()
{
    const SettingsHome trees;
    // Empty tree: the defaults.
    QCOMPARE(read(setting::cView), 0);
    QCOMPARE(read(setting::Interval), 2000);
    QCOMPARE(read(setting::cLayoutFiles), -1);
    QCOMPARE(read(setting::slidemode), QStringLiteral("advance"));
    QCOMPARE(read(setting::LatestVersion), QStringLiteral("0.0.0"));
    QCOMPARE(read(setting::LastCheck), QString());
    QCOMPARE(read(setting::FilmStripHeight, 1800), 1800);
    QCOMPARE(read(setting::MainBackColor, -2147483633), -2147483633);
    QCOMPARE(read(setting::SelectedPath, QStringLiteral("/home")), QStringLiteral("/home"));

    // Stored by name: the constants stand for the right ones.
    store("Settings", "cView", 1);
    store("settings", "Latest Version", QStringLiteral("2.0.1"));
    store("SettingsNet", "AutoUpdate", 0);
    store("Print Settings", "PrintFontName", QStringLiteral("Sans"));
    store("Settings", "FilmStripHeight", 900);
    QCOMPARE(read(setting::cView), 1);
    QCOMPARE(read(setting::LatestVersion), QStringLiteral("2.0.1"));
    QCOMPARE(read(setting::AutoUpdate), 0);
    QCOMPARE(read(setting::PrintFontName, QStringLiteral("x")), QStringLiteral("Sans"));
    QCOMPARE(read(setting::FilmStripHeight, 1800), 900);
}

void TestSettings::numberReads_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("expected");
    QTest::newRow("number") << QVariant(100) << 100;
    QTest::newRow("text") << QVariant(QStringLiteral("100")) << 100;
    QTest::newRow("text with blanks") << QVariant(QStringLiteral(" 100 ")) << 100;
    QTest::newRow("text with decimals") << QVariant(QStringLiteral("99.6")) << 100;
    QTest::newRow("empty text") << QVariant(QStringLiteral("")) << 2000;
    QTest::newRow("no number") << QVariant(QStringLiteral("fast")) << 2000;
    QTest::newRow("bytes") << QVariant(QByteArray("100")) << 2000;
}

void TestSettings::numberReads()
{
    QFETCH(QVariant, stored);
    QFETCH(int, expected);
    const SettingsHome trees;
    store("Settings", "Interval", stored);
    QCOMPARE(read(setting::Interval), expected);
    store("Settings", "FilmStripHeight", stored);
    QCOMPARE(read(setting::FilmStripHeight, 2000), expected);
}

void TestSettings::textReads()
{
    const SettingsHome trees;
    store("Settings", "BrowserRoot", QStringLiteral("/home"));
    QCOMPARE(read(setting::BrowserRoot), QStringLiteral("/home"));
    store("Settings", "BrowserRoot", QStringLiteral(""));
    QCOMPARE(read(setting::BrowserRoot), QStringLiteral("Desktop"));
    store("Settings", "BrowserRoot", 12);
    QCOMPARE(read(setting::BrowserRoot), QStringLiteral("12"));
    QCOMPARE(readAsText(setting::Interval), QStringLiteral("2000"));
    store("Settings", "Interval", QStringLiteral("slow 12"));
    QCOMPARE(readAsText(setting::Interval), QStringLiteral("slow 12"));
    store("Settings", "Interval", QStringLiteral(""));
    QCOMPARE(readAsText(setting::Interval), QStringLiteral("2000"));
    store("Settings", "Interval", -3);
    QCOMPARE(readAsText(setting::Interval), QStringLiteral("-3"));
    store("Settings", "Path", QStringLiteral(""));
    QCOMPARE(read(setting::Path, QStringLiteral("/present")), QStringLiteral("/present"));
}

void TestSettings::saves()
{
    const SettingsHome trees;
    QVERIFY(save(setting::cView, 1));
    QVERIFY(save(setting::JPEGGray, true));
    QVERIFY(save(setting::MainLeft, -120));
    QVERIFY(save(setting::slidemode, QStringLiteral("random")));
    QVERIFY(save(setting::SelectedPath, QStringLiteral("/a")));
    QVERIFY(save(setting::ActivePlaylist, QString()));
    QCOMPARE(GetAppSetting(QStringLiteral("Settings"), QStringLiteral("cView"), 0), QVariant(1));
    QCOMPARE(GetAppSetting(QStringLiteral("Settings"), QStringLiteral("JPEGGray"), 0), QVariant(1));
    QCOMPARE(read(setting::MainLeft, 0), -120);
    QCOMPARE(read(setting::slidemode), QStringLiteral("random"));
    QCOMPARE(read(setting::SelectedPath, QString()), QStringLiteral("/a"));
    QCOMPARE(read(setting::ActivePlaylist), QString());
    const SettingsStore file(userStorePath());
    const auto stored =
        file.read(QStringLiteral("Software\\Halvexa\\Quorvia\\Settings"), QStringLiteral("ActivePlaylist"));
    QVERIFY(stored.has_value());
    QCOMPARE(stored->type, 1);
}

void TestSettings::blanks()
{
    const SettingsHome trees;
    QVERIFY(save(setting::MainWidth, 9000));
    QVERIFY(save(setting::Recent, QStringLiteral("/a;/b")));
    QVERIFY(save(setting::cView, 1));
    QVERIFY(blank(setting::MainWidth));
    QVERIFY(blank(setting::Recent));
    QVERIFY(blank(setting::cView));
    QCOMPARE(read(setting::MainWidth, 12000), 12000);
    QCOMPARE(read(setting::Recent), QStringLiteral(";;"));
    QCOMPARE(read(setting::cView), 0);
    const SettingsStore file(userStorePath());
    const auto stored =
        file.read(QStringLiteral("Software\\Halvexa\\Quorvia\\Settings"), QStringLiteral("MainWidth"));
    QVERIFY(stored.has_value());
    QCOMPARE(stored->type, 1);
    QCOMPARE(stored->value.toString(), QString());
}

void TestSettings::placement_data()
{
    QTest::addColumn<int>("part");
    QTest::addColumn<QString>("name");
    QTest::newRow("state") << int(Placement::WinState) << "ConvertWinState";
    QTest::newRow("left") << int(Placement::Left) << "ConvertLeft";
    QTest::newRow("top") << int(Placement::Top) << "ConvertTop";
    QTest::newRow("width") << int(Placement::Width) << "ConvertWidth";
    QTest::newRow("height") << int(Placement::Height) << "ConvertHeight";
}

void TestSettings::placement()
{
    QFETCH(int, part);
    QFETCH(QString, name);
    const SettingsHome trees;
    const QString stem = QStringLiteral("Convert");
    QCOMPARE(readPlacement(stem, Placement(part), 345), 345);
    QVERIFY(savePlacement(stem, Placement(part), 6000));
    QCOMPARE(GetAppSetting(QStringLiteral("Settings"), name, 0), QVariant(6000));
    QCOMPARE(readPlacement(stem, Placement(part), 345), 6000);
    QCOMPARE(readPlacement(QStringLiteral("Other"), Placement(part), 345), 345);
}

void TestSettings::earlierOwners()
{
    const SettingsHome trees;
    const QString open = QStringLiteral("Open");
    QCOMPARE(readEarlierOwner(open, QStringLiteral(".jpg")), QStringLiteral("(none)"));
    QVERIFY(saveEarlierOwner(open, QStringLiteral(".jpg"), QStringLiteral("/usr/bin/other")));
    QCOMPARE(GetAppSetting(QStringLiteral("Associations"), QStringLiteral("Openx.jpg"), QString()),
             QVariant(QStringLiteral("/usr/bin/other")));
    QCOMPARE(readEarlierOwner(open, QStringLiteral(".jpg")), QStringLiteral("/usr/bin/other"));
    QCOMPARE(readEarlierOwner(QStringLiteral("Preview"), QStringLiteral(".jpg")), QStringLiteral("(none)"));
    QCOMPARE(readEarlierOwner(open, QStringLiteral(".jpeg")), QStringLiteral("(none)"));
    QVERIFY(saveEarlierOwner(open, QStringLiteral(".jpg"), QString()));
    QCOMPARE(readEarlierOwner(open, QStringLiteral(".jpg")), QStringLiteral("(none)"));
}

void TestSettings::commonNames_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    const auto row = [](const CommonSubkey& subkey, const char* expected) {
        QTest::newRow(expected) << keyPath(subkey)
                                << QStringLiteral("Software\\Halvexa\\") + QString::fromLatin1(expected);
    };
    row(common::ResourcePaths, "Common\\ResourcePaths");
    row(common::ProgramPaths, "Common\\ProgramPaths");
    row(common::ProgramShortPaths, "Common\\ProgramShortPaths");
    row(common::ProgramAssoPaths, "Common\\ProgramAssoPaths");
    row(common::ProgramFileSupport, "Common\\ProgramFileSupport");
    row(common::ComponentPaths, "Common\\ComponentPaths");
    row(common::ProductIds, "Common\\Product IDs");
    row(common::WebSites, "Web Sites");
    row(common::Testing, "Common\\Testing");
}

void TestSettings::commonNames()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    QCOMPARE(path, expected);
}

void TestSettings::commonValues()
{
    const SettingsHome trees;
    struct Row
    {
        CommonKey key;
        const char* subkey;
        const char* name;
        const char* expected; // the default; null: the caller's
    };
    const Row rows[] = {
        {common::ThumbnailPath, "Common\\ResourcePaths", "ThumbnailPath", nullptr},
        {common::ImagePlaylistPath, "Common\\ResourcePaths", "ImagePlaylistPath", nullptr},
        {common::ImageDescriptionPath, "Common\\ResourcePaths", "ImageDescriptionPath", nullptr},
        {common::AutoUpdate, "Common\\ComponentPaths", "AutoUpdate", ""},
        {common::MenuShellReg, "Web Sites", "MenuShellReg", ""},
        {common::QOCSInstall, "Common\\Product IDs", "QOCSInstall", "no"},
        {common::Test, "Common\\Testing", "Test", ""},
    };
    for (const Row& row : rows) {
        const QString caller = QStringLiteral("the caller's");
        QCOMPARE(read(row.key, caller), row.expected ? QString::fromLatin1(row.expected) : caller);
        QVERIFY(save(row.key, QStringLiteral("stored")));
        QCOMPARE(read(row.key, caller), QStringLiteral("stored"));
        QCOMPARE(GetCommonSetting(QString::fromLatin1(row.subkey), QString::fromLatin1(row.name), QString()),
                 QVariant(QStringLiteral("stored")));
    }
    QCOMPARE(read(common::ThumbnailPath), QStringLiteral("stored"));
}

void TestSettings::toolValues()
{
    const SettingsHome trees;
    const QString tool = QStringLiteral("Morphane");
    QCOMPARE(readOfTool(common::ProgramPaths, tool), QString());
    QVERIFY(saveOfTool(common::ProgramPaths, tool, QStringLiteral("/opt/morphane")));
    QCOMPARE(readOfTool(common::ProgramPaths, tool), QStringLiteral("/opt/morphane"));
    QCOMPARE(readOfTool(common::ProgramShortPaths, tool), QString());
    QCOMPARE(GetCommonSetting(QStringLiteral("Common\\ProgramPaths"), tool, QString()),
             QVariant(QStringLiteral("/opt/morphane")));
    QVERIFY(removeOfTool(common::ProgramPaths, tool));
    QVERIFY(!removeOfTool(common::ProgramPaths, tool));
    QCOMPARE(readOfTool(common::ProgramPaths, tool), QString());
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
