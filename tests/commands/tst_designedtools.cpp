// The bands, tools and icon carriers that there are before the definition is read.
#include "commands/DesignedTools.h"
#include "IconCarriers.h"

#include <QTest>

using namespace quorvia::commands;
using namespace quorvia::platform;

class TestDesignedTools : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_model = std::make_unique<ToolModel>();
        addDesignedTools(*m_model);
    }

    void bands_data()
    {
        QTest::addColumn<QStringList>("tools");
        QTest::newRow("bOpen") << QStringList{"tOpenx", "tRecent"};
        QTest::newRow("bRecent") << QStringList();
        QTest::newRow("bSlide") << QStringList{"tSldAdvance", "tSldRandom", "tSldReverse", "tSep", "tCustom"};
        QTest::newRow("bCustom") << QStringList{"tTime"};
        QTest::newRow("bFiles") << QStringList();
        QTest::newRow("bWallpaper") << QStringList{"miWallpaperS", "miWallpaperT", "miWallpaperC"};
        QTest::newRow("bPlugins") << QStringList();
        QTest::newRow("bFilmStrip") << QStringList{"miThumbFull", "miThumbDelete", "miSep",        "miFilm1",
                                                   "miFilm2",     "sSep",          "miInformation"};
    }

    void bands()
    {
        QFETCH(QStringList, tools);
        const ToolBand* const band = m_model->band(QLatin1String(QTest::currentDataTag()));
        QVERIFY(band);
        QCOMPARE(band->kind(), BandKind::PopUp);
        QStringList names;
        for (int index = 0; index < band->toolCount(); ++index)
            names << band->toolAt(index)->name();
        QCOMPARE(names, tools);
    }

    void bandsOfTheDefinitionAreNotThere()
    {
        QVERIFY(!m_model->band(QStringLiteral("NewImage")));
        QVERIFY(!m_model->band(QStringLiteral("Toolbar")));
        QVERIFY(!m_model->band(QStringLiteral("bMain")));
    }

    void tools_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("toolTip");
        QTest::addColumn<QString>("category");
        QTest::addColumn<QString>("subBand");
        QTest::addColumn<int>("kind");
        const auto row = [](const char* name, const char* caption, const char* toolTip = "",
                            const char* category = "", const char* subBand = "", int kind = 0) {
            QTest::newRow(name) << QString::fromLatin1(caption) << QString::fromLatin1(toolTip)
                                << QString::fromLatin1(category) << QString::fromLatin1(subBand) << kind;
        };
        constexpr int combo = 3;
        constexpr int separator = 5;
        row("tOpenx", "Open Image...");
        row("tRecent", "Recent Directories", "Recent Directories", "Open", "bRecent");
        row("tSldAdvance", "&Advance", "Advance Slideshow", "Slide");
        row("tSldRandom", "&Randomize", "Randomize Slideshow", "Slide");
        row("tSldReverse", "&Reverse", "Reverse Slideshow", "Slide");
        row("tSep", "", "", "", "", separator);
        row("tCustom", "Delay Settings", "Delay Settings", "", "bCustom");
        row("tTime", "Slideshow Delay", "", "", "", combo);
        row("miWallpaperS", "Set Wallpaper (Stretch)", "", "Imaging");
        row("miWallpaperT", "Set Wallpaper (Tile)", "", "Imaging");
        row("miWallpaperC", "Set Wallpaper (Center)", "", "Imaging");
        row("miThumbFull", "Show Full-Screen");
        row("miThumbDelete", "Delete Image");
        row("miFilm1", "Display '1' Row");
        row("miFilm2", "Display '2' Rows");
        row("sSep", "", "", "", "", separator);
        row("miSep", "", "", "", "", separator);
        row("miInformation", "File Information", "", "Information");
    }

    void tools()
    {
        const Tool* const tool = m_model->tool(QLatin1String(QTest::currentDataTag()));
        QVERIFY(tool);
        QTEST(tool->values().caption, "caption");
        QTEST(tool->values().toolTip, "toolTip");
        QTEST(tool->values().category, "category");
        QTEST(tool->values().subBand, "subBand");
        QTEST(int(tool->values().kind), "kind");
        QVERIFY(tool->values().enabled);
        QVERIFY(tool->values().visible);
        QVERIFY(!tool->values().checked);
    }

    void delays()
    {
        const QStringList seconds{"1", "2", "3", "4", "5", "10", "15", "20", "30", "45", "60"};
        QCOMPARE(m_model->tool(QStringLiteral("tTime"))->values().choices, seconds);
        QCOMPARE(m_model->band(QStringLiteral("bCustom"))->toolAt(0)->values().choices, seconds);
    }

    void iconHolders_data()
    {
        QTest::addColumn<QString>("icon");
        QTest::newRow("tClear") << "clear";
        QTest::newRow("tFolderI") << "folder";
        QTest::newRow("tFileI") << "file";
    }

    void iconHolders()
    {
        const Tool* const tool = m_model->tool(QLatin1String(QTest::currentDataTag()));
        QTEST(tool->picture(0), "icon");
        QTEST(tool->picture(2), "icon");
        QCOMPARE(tool->picture(1), QString());
    }

    void carriers_data()
    {
        QTest::addColumn<QString>("icon");
        for (const char* const icon :
             {"next",      "previous", "bestfit",      "actualsize",    "fullscreen",  "slideshow",
              "zoomin",    "zoomout",  "rotateclock",  "rotatecounter", "open",        "save",
              "wallpaper", "pref",     "filelist",     "sldmode",       "copy",        "paste",
              "print",     "edit",     "refresh",      "delete",        "information", "website",
              "resize",    "bevel",    "customresize", "thumbnail",     "recent",      "delay",
              "rename",    "scan",     "email",        "help"})
            QTest::newRow(icon) << QString::fromLatin1(icon);
    }

    void carriers()
    {
        QFETCH(QString, icon);
        const QString name = u'#' + icon;
        const QStringList carriers = quorvia::test::iconCarriers(*m_model);
        QVERIFY(carriers.contains(name));
        QCOMPARE(carriers.size(), 34);
        const Tool* const carrier = m_model->tool(name);
        QVERIFY(carrier);
        QCOMPARE(carrier->picture(0), icon);
        QCOMPARE(carrier->picture(1), QString());
        QCOMPARE(carrier->picture(2), icon);
    }

    void numbersDiffer()
    {
        QSet<int> numbers;
        for (int index = 0; index < m_model->toolCount(); ++index)
            numbers.insert(m_model->toolAt(index)->id());
        QCOMPARE(int(numbers.size()), m_model->toolCount());
        QVERIFY(!numbers.contains(1000)); // where those of the definition begin
    }

    void bandsDoNotFollowTheirTools()
    {
        m_model->tool(QStringLiteral("miWallpaperS"))->set(&ToolValues::enabled, false);
        QVERIFY(m_model->band(QStringLiteral("bWallpaper"))->toolAt(0)->values().enabled);
        m_model->tool(QStringLiteral("tSldAdvance"))->set(&ToolValues::checked, true);
        QVERIFY(!m_model->band(QStringLiteral("bSlide"))->toolAt(0)->values().checked);
    }

  private:
    std::unique_ptr<ToolModel> m_model;
};

QTEST_GUILESS_MAIN(TestDesignedTools)
#include "tst_designedtools.moc"
