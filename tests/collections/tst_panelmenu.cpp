// The menus of the list's panel as data.
#include "app/RecentBand.h"
#include "collections/PanelMenu.h"
#include "platform/Icons.h"
#include "platform/ToolModel.h"

#include <QTest>

using namespace quorvia;
using namespace quorvia::collections;
using platform::Tool;
using platform::ToolBand;
using platform::ToolKind;
using platform::ToolModel;

Q_DECLARE_METATYPE(quorvia::collections::PanelAction)

namespace {

/// A tool as "name|caption|tag|band that it opens"; a separator by its name alone.
QString described(const Tool& tool)
{
    if (tool.values().kind == ToolKind::Separator)
        return tool.name();
    return QStringList{tool.name(), tool.values().caption, tool.values().tag, tool.values().subBand}.join(
        u'|');
}

template <class Describe>
QStringList toolsOf(const ToolBand& band, Describe describe)
{
    QStringList tools;
    for (int index = 0; index < band.toolCount(); ++index) {
        if (const QString text = describe(*band.toolAt(index)); !text.isEmpty())
            tools << text;
    }
    return tools;
}

} // namespace

class TestPanelMenu : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<ToolModel> m_model;

    const ToolBand& band(const char* name) const { return *m_model->band(QLatin1String(name)); }
    /// The names of the tools of `bFiles` that show, and "-" for a separator.
    QStringList shown() const
    {
        return toolsOf(band("bFiles"), [](const Tool& tool) {
            if (!tool.values().visible)
                return QString();
            return tool.values().kind == ToolKind::Separator ? QStringLiteral("-") : tool.name();
        });
    }
    QStringList enabled() const
    {
        return toolsOf(band("bFiles"), [](const Tool& tool) {
            const bool counts = tool.values().kind != ToolKind::Separator && tool.values().enabled;
            return counts ? tool.name() : QString();
        });
    }

  private Q_SLOTS:
    void init()
    {
        m_model = std::make_unique<ToolModel>();
        addPanelBands(*m_model);
    }

    void bands_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QStringList>("tools");
        QTest::newRow("bAdd") << "Add"
                              << QStringList{"tAdd|Add File(s)...||", "tEnqueDir|Enqueue Directory...||",
                                             "tEnqueDirAll|Enqueue Directory (Include Sub-Directories)...||"};
        QTest::newRow("bFiles") << "Files"
                                << QStringList{"miDelete|Delete Selected Files|select|",
                                               "iSep4",
                                               "tConvert|Convert Selected Image(s)|select|bConvert",
                                               "miEmailImages|Send Image(s) via Email|select|",
                                               "iSep1",
                                               "tDelete|Clear Selected Items|select:playlist|",
                                               "tClear|Clear Playlist|playlist|",
                                               "iSep2",
                                               "miAdd|Add Files to Playlist|playlist|bAdd",
                                               "tMoveSelPlaylist|Move Selected Items to "
                                               "Playlist|select:filelist|",
                                               "tMovePlaylist|Move All Files to Playlist|filelist|",
                                               "iSep3",
                                               "miRecent|Recent Directories|filelist|bRecent"};
        QTest::newRow("bRemove") << "Remove"
                                 << QStringList{"tDelete|Clear Selected Items|select|",
                                                "tClear|Clear Playlist||"};
        QTest::newRow("bRecent") << "Recent Directories" << QStringList();
        QTest::newRow("bConvert") << "" << QStringList{"tJPG|Convert to JPG||", "tBMP|Convert to BMP||",
                                                       "tPIC|Convert to PIC||", "tPNG|Convert to PNG||",
                                                       "tTIF|Convert to TIF||", "tPCX|Convert to PCX||",
                                                       "tTGA|Convert to TGA||"};
        QTest::newRow("bEffects") << "" << QStringList();
        QTest::newRow("bSave") << "Save"
                               << QStringList{"tSavePlaylist|Save Playlist||",
                                              "tSaveFile|Save Playlist as File||"};
        QTest::newRow("bOpen") << "Open"
                               << QStringList{"tPlaylistArray|[filename]||",
                                              "tOpenPlaylistFile|Open Playlist from File||"};
    }

    void bands()
    {
        QFETCH(QStringList, tools);
        const ToolBand& shown = band(QTest::currentDataTag());
        QCOMPARE(toolsOf(shown, described), tools);
        QTEST(shown.caption(), "caption");
        QCOMPARE(shown.kind(), platform::BandKind::PopUp);
        QCOMPARE(m_model->bandCount(), 8);
    }

    void iconsAreThere()
    {
        int icons = 0;
        for (int index = 0; index < m_model->bandCount(); ++index) {
            const QStringList names = toolsOf(*m_model->bandAt(index), [](const Tool& tool) {
                return tool.picture(0) == tool.picture(2) ? tool.picture(0) : QStringLiteral("differ");
            });
            for (const QString& name : names)
                QVERIFY2(platform::isIcon(name), qPrintable(name));
            icons += int(names.size());
        }
        QVERIFY(icons > 10);
        QCOMPARE(m_model->tool(QStringLiteral("tFolderI"))->picture(0), QStringLiteral("folder"));
        QCOMPARE(m_model->tool(QStringLiteral("tClearI"))->picture(0), QStringLiteral("clear"));
    }

    void popupMenu_data()
    {
        QTest::addColumn<bool>("folders");
        QTest::addColumn<int>("listCount");
        QTest::addColumn<int>("selCount");
        QTest::addColumn<bool>("canEmail");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("enabled"); // of those that need a selection
        const char* const folders = "miDelete - tConvert - tMoveSelPlaylist tMovePlaylist - miRecent";
        const char* const playlist = "miDelete - tConvert - tDelete tClear - miAdd";
        const char* const all = "miDelete tConvert miEmailImages tDelete tMoveSelPlaylist";
        QTest::newRow("folders") << true << 5 << 1 << false << folders << all;
        QTest::newRow("folders, none selected") << true << 5 << 0 << false << folders << "";
        QTest::newRow("folders, empty list") << true << 0 << 1 << false << folders << "";
        QTest::newRow("folders, less than none") << true << 5 << -1 << false << folders << "";
        QTest::newRow("folders, with mail")
            << true << 5 << 2 << true
            << "miDelete - tConvert miEmailImages - tMoveSelPlaylist tMovePlaylist - miRecent" << all;
        QTest::newRow("playlist") << false << 5 << 5 << false << playlist << all;
        QTest::newRow("playlist, empty") << false << 0 << 0 << false << playlist << "";
        QTest::newRow("playlist, with mail")
            << false << 5 << 5 << true << "miDelete - tConvert miEmailImages - tDelete tClear - miAdd" << all;
    }

    void popupMenu()
    {
        QFETCH(bool, folders);
        QFETCH(int, listCount);
        QFETCH(int, selCount);
        QFETCH(bool, canEmail);
        QFETCH(QString, enabled);
        const PanelFacts facts{folders, listCount, selCount, canEmail};
        GenPopupMenu(*m_model, {!folders, 1, 1 - selCount, !canEmail}); // nothing of it stays
        GenPopupMenu(*m_model, facts);
        QTEST(shown().join(u' '), "shown");
        QStringList expected = enabled.split(u' ', Qt::SkipEmptyParts);
        expected << QStringLiteral("tClear") << QStringLiteral("miAdd") << QStringLiteral("tMovePlaylist")
                 << QStringLiteral("miRecent");
        QStringList found = this->enabled();
        found.sort();
        expected.sort();
        QCOMPARE(found, expected);
    }

    void noSeparatorBeginsTheMenu()
    {
        band("bFiles").tool(QStringLiteral("miDelete"))->set(&platform::ToolValues::visible, false);
        GenPopupMenu(*m_model, {.foldersInFront = false});
        QCOMPARE(shown().join(u' '), QStringLiteral("tConvert - tDelete tClear - miAdd"));
    }

    void onlyTheMenuOfTheListIsPrepared()
    {
        GenPopupMenu(*m_model, {.foldersInFront = true, .listCount = 0});
        QVERIFY(band("bRemove").toolAt(0)->values().enabled);
        QVERIFY(band("bRemove").toolAt(1)->values().visible);
        ToolModel none;
        GenPopupMenu(none, {});
        QCOMPARE(none.bandCount(), 0);
    }

    void commands_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<PanelAction>("action");
        QTest::addColumn<QString>("argument");
        const auto row = [](const char* tool, PanelAction action, const char* argument) {
            QTest::newRow(tool) << QString::fromLatin1(tool) << action << QString::fromLatin1(argument);
        };
        row("tRecent0", PanelAction::RecentDirectory, "tRecent0");
        row("tRecent12", PanelAction::RecentDirectory, "tRecent12");
        row("TRECENt1", PanelAction::RecentDirectory, "TRECENt1");
        row("tSaveFile", PanelAction::Panel, "saveplaylist");
        row("tOpenPlaylistFile", PanelAction::Panel, "openplaylist");
        row("tSavePlaylist", PanelAction::Panel, "saveplaylistinternal");
        row("tSave", PanelAction::Panel, "saveplaylistinternal");
        row("tClear", PanelAction::Panel, "ClearPlaylist");
        row("tDelete", PanelAction::Panel, "clearselected");
        row("tEnqueDir", PanelAction::Panel, "enqueuedir");
        row("tEnqueDirAll", PanelAction::Panel, "enqueuedirall");
        row("tAdd", PanelAction::Panel, "addfilestoplaylist");
        row("tMovePlaylist", PanelAction::Panel, "movefilelisttoplaylist");
        row("tMoveSelPlaylist", PanelAction::Panel, "moveselectedtoplaylist");
        row("miDelete", PanelAction::Panel, "deleteselectedfiles");
        row("MIDELETE", PanelAction::Panel, "deleteselectedfiles");
        row("miEmailImages", PanelAction::Panel, "emailimages");
        row("tJPG", PanelAction::Convert, "jpg");
        row("tGIF", PanelAction::Convert, "gif");
        row("tBMP", PanelAction::Convert, "bmp");
        row("tPNG", PanelAction::Convert, "png");
        row("tPIC", PanelAction::Convert, "pic");
        row("tTIF", PanelAction::Convert, "tif");
        row("tPCX", PanelAction::Convert, "pcx");
        row("tTGA", PanelAction::Convert, "tga");
        row("tjpg", PanelAction::Convert, "jpg");
        row("miRecentClear", PanelAction::Main, "miRecentClear");
        row("tPlaylistArray", PanelAction::Main, "tPlaylistArray");
        row("miAdd", PanelAction::Main, "miAdd");
        row("", PanelAction::Main, "");
    }

    void commands()
    {
        QFETCH(QString, tool);
        const PanelCommand command = panelCommand(tool);
        QTEST(command.action, "action");
        QTEST(command.argument, "argument");
    }

    void recentDirectories()
    {
        const auto fill = [this](const QStringList& directories) {
            app::fillRecentDirectories(
                *m_model, directories, [](const QString& path) { return path != QLatin1String("/gone"); },
                QStringLiteral("tClearI"));
        };
        const auto names = [this] {
            return toolsOf(band("bRecent"), [](const Tool& tool) {
                return tool.values().visible ? tool.name() + u'=' + tool.values().caption : QString();
            });
        };
        fill({});
        QCOMPARE(names(), (QStringList{"tRecent0=(none)", "bar=", "miRecentClear=Clear Recent List"}));
        fill({"/a&b", "/gone", "/c", "", "/d"});
        QCOMPARE(names(),
                 (QStringList{"tRecent0=/a&b", "tRecent2=/c", "bar=", "miRecentClear=Clear Recent List"}));
        const ToolBand& shown = band("bRecent");
        QVERIFY(shown.toolAt(0)->values().literalCaption);
        QCOMPARE(shown.toolAt(0)->picture(0), QStringLiteral("folder"));
        QCOMPARE(shown.toolAt(shown.toolCount() - 1)->picture(0), QStringLiteral("clear"));
        QCOMPARE(recentDirectory(*m_model, QStringLiteral("tRecent0")), QStringLiteral("/a&b"));
        QCOMPARE(recentDirectory(*m_model, QStringLiteral("tRecent2")), QStringLiteral("/c"));
        QCOMPARE(recentDirectory(*m_model, QStringLiteral("tRecent1")), QString());
    }
};

QTEST_GUILESS_MAIN(TestPanelMenu)
#include "tst_panelmenu.moc"
