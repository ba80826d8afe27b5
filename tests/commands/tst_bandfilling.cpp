// The bands that are filled as they open.
#include "app/RecentBand.h"
#include "commands/BandFilling.h"
#include "commands/DesignedTools.h"

#include <QTest>

using namespace quorvia::commands;
using namespace quorvia::platform;

namespace {

/// A tool as "id name caption", with "(hidden)" behind it.
QString described(const Tool& tool)
{
    return QStringLiteral("%1 %2 %3%4")
        .arg(tool.id())
        .arg(tool.name(), tool.values().caption,
             tool.values().visible ? QString() : QStringLiteral(" (hidden)"));
}

QStringList described(const ToolBand& band)
{
    QStringList tools;
    for (int index = 0; index < band.toolCount(); ++index)
        tools << described(*band.toolAt(index));
    return tools;
}

} // namespace

/// Fills the menu of the recent directories as the main menu has it.
static void fillRecent(ToolModel& model, const QStringList& directories,
                       const std::function<bool(const QString& directory)>& exists)
{
    quorvia::app::fillRecentDirectories(model, directories, exists, QStringLiteral("tClear"));
}

class TestBandFilling : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_model = std::make_unique<ToolModel>();
        addDesignedTools(*m_model);
    }

    void recent_data()
    {
        QTest::addColumn<QStringList>("directories"); // those that begin with "/gone" do not exist
        QTest::addColumn<QStringList>("tools");       // without the two at the end
        QTest::newRow("no list") << QStringList() << QStringList{"0 tRecent0 (none)"};
        QTest::newRow("the cleared list") << QStringList{"", "", ""} << QStringList{"0 tRecent0 (none)"};
        QTest::newRow("one") << QStringList{"/a"} << QStringList{"0 tRecent0 /a"};
        QTest::newRow("some") << QStringList{"/a", "/b", "/c"}
                              << QStringList{"0 tRecent0 /a", "1 tRecent1 /b", "2 tRecent2 /c"};
        QTest::newRow("up to the first empty one")
            << QStringList{"/a", "/b", "", "/c"} << QStringList{"0 tRecent0 /a", "1 tRecent1 /b"};
        QTest::newRow("the first is gone")
            << QStringList{"/gone", "/b"} << QStringList{"0 tRecent0 /gone (hidden)", "1 tRecent1 /b"};
        QTest::newRow("only the first, gone")
            << QStringList{"/gone"} << QStringList{"0 tRecent0 /gone (hidden)"};
        QTest::newRow("a later one is gone")
            << QStringList{"/a", "/gone", "/c", "/gone2"} << QStringList{"0 tRecent0 /a", "2 tRecent2 /c"};
        QTest::newRow("the first is empty, as a list that grew from nothing has it")
            << QStringList{"", "/b"} << QStringList{"0 tRecent0 (none) (hidden)", "1 tRecent1 /b"};
    }

    void recent()
    {
        QFETCH(QStringList, directories);
        QFETCH(QStringList, tools);
        const auto exists = [](const QString& directory) {
            return !directory.isEmpty() && !directory.startsWith(QLatin1String("/gone"));
        };
        ToolBand* const band = m_model->band(QStringLiteral("bRecent"));
        band->append(9, QStringLiteral("tRecent9")); // of the last opening
        fillRecent(*m_model, directories, exists);
        const auto count = tools.size();
        tools << QStringLiteral("%1 bar ").arg(count)
              << QStringLiteral("%1 miRecentClear Clear Recent List").arg(count + 1);
        QCOMPARE(described(*band), tools);
        QCOMPARE(band->tool(QStringLiteral("bar"))->values().kind, ToolKind::Separator);
    }

    void recentHasIcons()
    {
        fillRecent(*m_model, {"/a", "/b"}, [](const QString&) { return true; });
        const ToolBand* const band = m_model->band(QStringLiteral("bRecent"));
        for (const int variant : {0, 2}) {
            QCOMPARE(band->toolAt(0)->picture(variant), QStringLiteral("folder"));
            QCOMPARE(band->toolAt(1)->picture(variant), QStringLiteral("folder"));
            QCOMPARE(band->toolAt(2)->picture(variant), QString());
            QCOMPARE(band->toolAt(3)->picture(variant), QStringLiteral("clear"));
        }
    }

    void namesOfFilesAreShownAsTheyAre()
    {
        fillRecent(*m_model, {"/R&D"}, [](const QString&) { return true; });
        const Tool* const directory = m_model->band(QStringLiteral("bRecent"))->toolAt(0);
        QCOMPARE(directory->values().caption, QStringLiteral("/R&D")); // which the command opens
        QVERIFY(directory->values().literalCaption);
        QVERIFY(!m_model->band(QStringLiteral("bRecent"))->toolAt(2)->values().literalCaption);
        fillFiles(*m_model, {{"a&b.jpg", "/a&b.jpg"}});
        QVERIFY(m_model->band(QStringLiteral("bFiles"))->toolAt(0)->values().literalCaption);
        QVERIFY(!m_model->tool(QStringLiteral("tSldAdvance"))->values().literalCaption);
    }

    void theMenuOfAnImageOfTheFilmstrip()
    {
        const ToolBand* const band = m_model->band(QLatin1String(imageMenuBand));
        const Tool* const tool = band->tool(QStringLiteral("miThumbDelete"));
        for (const char* name : {"a & b.jpg", "c.png"}) {
            fillImageMenu(*m_model, QStringLiteral("/x/") + QLatin1String(name));
            QCOMPARE(band->tag(), QStringLiteral("/x/") + QLatin1String(name));
            QCOMPARE(tool->values().caption, QStringLiteral("Delete '%1'").arg(QLatin1String(name)));
            QVERIFY(tool->values().literalCaption);
        }
        QCOMPARE(m_model->tool(QStringLiteral("miThumbDelete"))->values().caption,
                 QStringLiteral("Delete Image")); // the tool itself keeps its own
    }

    void files()
    {
        ToolBand* const band = m_model->band(QStringLiteral("bFiles"));
        fillFiles(*m_model, {{"one.jpg", "/x/one.jpg"}, {"two", "/y/two.png"}, {"", ""}});
        QCOMPARE(described(*band), (QStringList{"2 FileX1 one.jpg", "3 FileX2 two", "4 FileX3 "}));
        QCOMPARE(band->toolAt(0)->values().tag, QStringLiteral("/x/one.jpg"));
        QCOMPARE(band->toolAt(1)->values().tag, QStringLiteral("/y/two.png"));
        QCOMPARE(band->toolAt(0)->picture(0), QStringLiteral("file"));
        QCOMPARE(band->toolAt(0)->picture(2), QStringLiteral("file"));
        fillFiles(*m_model, {});
        QCOMPARE(described(*band), QStringList{"1 none0 (none)"});
        QVERIFY(band->toolAt(0)->values().tag.isEmpty());
    }

    void delay()
    {
        fillDelay(*m_model, QStringLiteral("2.5"));
        QCOMPARE(m_model->band(QStringLiteral("bCustom"))->tool(QStringLiteral("tTime"))->values().text,
                 QStringLiteral("2.5"));
        QCOMPARE(m_model->tool(QStringLiteral("tTime"))->values().text, QStringLiteral("2.5"));
    }

    void onlyWhatTheBandNeedsIsAsked_data()
    {
        QTest::addColumn<QStringList>("asked");
        QTest::newRow("bRecent") << QStringList{"recent", "exists /a"};
        QTest::newRow("bFiles") << QStringList{"files"};
        QTest::newRow("bCustom") << QStringList{"delay"};
        QTest::newRow("bOpen") << QStringList();
        QTest::newRow("bSlide") << QStringList();
    }

    void onlyWhatTheBandNeedsIsAsked()
    {
        QStringList asked;
        const BandContents contents{.recentDirectories =
                                        [&] {
                                            asked << QStringLiteral("recent");
                                            return QStringList{"/a"};
                                        },
                                    .directoryExists =
                                        [&](const QString& directory) {
                                            asked << QStringLiteral("exists ") + directory;
                                            return true;
                                        },
                                    .files =
                                        [&] {
                                            asked << QStringLiteral("files");
                                            return QList<ListedFile>();
                                        },
                                    .delay =
                                        [&] {
                                            asked << QStringLiteral("delay");
                                            return QStringLiteral("2");
                                        }};
        fillBand(*m_model, *m_model->band(QLatin1String(QTest::currentDataTag())), contents);
        QTEST(asked, "asked");
    }

    void withoutTheirBandsNothingHappens()
    {
        ToolModel empty;
        fillRecent(empty, {"/a"}, [](const QString&) { return true; });
        fillFiles(empty, {{"a", "/a"}});
        fillDelay(empty, QStringLiteral("2"));
        QCOMPARE(empty.toolCount(), 0);
        empty.addBand(QStringLiteral("bRecent"), BandKind::PopUp, false);
        fillRecent(empty, {"/a"}, [](const QString&) { return true; }); // and none of the icons
        QCOMPARE(empty.band(QStringLiteral("bRecent"))->toolCount(), 3);
    }

    void theCustomiseMenu()
    {
        QVERIFY(isCustomizeBand(QStringLiteral("SysCustomize")));
        for (const char* other : {"syscustomize", "SysCustomize2", "Toolbar", ""})
            QVERIFY(!isCustomizeBand(QLatin1String(other)));
    }

  private:
    std::unique_ptr<ToolModel> m_model;
};

QTEST_GUILESS_MAIN(TestBandFilling)
#include "tst_bandfilling.moc"
