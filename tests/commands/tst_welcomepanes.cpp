// The panes and rows of the welcome panel, and where its columns stand.
#include "app/Product.h"
#include "commands/WelcomeLayout.h"
#include "commands/WelcomePanes.h"
#include "platform/Icons.h"

#include <QTest>

using namespace quorvia;
using commands::WelcomeFacts;
using platform::Pane;
using platform::PaneItem;
using platform::PaneItemKind;

namespace {

WelcomeFacts someFacts(const QStringList& missing)
{
    return {.missingTools = missing, .imagesOpened = 12, .tips = {"a", "b", "c", "a", "e"}};
}

/// "key|caption|command|icon" of each row.
QStringList rowsOf(const Pane& pane)
{
    QStringList rows;
    for (const PaneItem& item : pane.items)
        rows.append(item.key + u'|' + item.text + u'|' + item.tag + u'|' + item.icon);
    return rows;
}

QStringList keysOf(const QList<Pane>& panes)
{
    QStringList keys;
    for (const Pane& pane : panes)
        keys.append(pane.key);
    return keys;
}

} // namespace

class TestWelcomePanes : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void theLeftColumn()
    {
        const QList<Pane> panes = commands::welcomePanes(someFacts({}));
        QCOMPARE(keysOf(panes), (QStringList{"Welcome", "Information"}));
        QCOMPARE(panes[0].title, QStringLiteral("  - Welcome to Quorvia"));
        QCOMPARE(rowsOf(panes[0]),
                 (QStringList{"OPEN|Open Image|miOpen|open", "OPENTIP|          Open a image for viewing.||",
                              "Playlist|Create Playlist|miPlaylistEditor|playlist",
                              "PlaylistTIP|          Create a playlist of images.||",
                              "WEBSITE|Visit Website|miWebsite|website",
                              "WEBSITETIP|          Visit our company website.||",
                              "HELP|Help Documentation|miHelp|help",
                              "HELPTIP|          View the HTML help manual for this product.||"}));
        QCOMPARE(panes[1].title, QStringLiteral("Product Information"));
        const QString version = app::versionText(app::productVersion(), QStringLiteral("."));
        QCOMPARE(rowsOf(panes[1]),
                 (QStringList{"INFO|Quorvia||", "INFO2|Version: " + version + "||", "DEVL|Developed By:||",
                              "DEVL2|Halvexa|miHVXAWebsite|", "INFO4|12 total images have been viewed.||"}));
    }

    void nothingOpenedYetIsNought()
    {
        const QList<Pane> panes = commands::welcomePanes({});
        QCOMPARE(panes[1].items.last().text, QStringLiteral("0 total images have been viewed."));
    }

    void theRightColumn()
    {
        const QList<Pane> panes = commands::resourcePanes(someFacts({}));
        QCOMPARE(keysOf(panes), (QStringList{"Resource", "TIPS"}));
        QCOMPARE(panes[0].title, QStringLiteral("  - Quorvia Resources"));
        QCOMPARE(rowsOf(panes[0]),
                 (QStringList{"MEDIA|Lindora Center|miLindoraCenter|lindora",
                              "MEDIATIP|Find Images and Imaging Information at the Lindora Center||",
                              "HVXAGALLEY|HVXA Image Gallery|miHVXAImageGallery|gallery",
                              "HVXAGALLEYTIP|Halvexa's exclusive online image gallery.||"}));
        QCOMPARE(panes[1].title, QStringLiteral("Random Tips of the Day"));
        QCOMPARE(rowsOf(panes[1]),
                 (QStringList{"TIP|Tip 1: a||tip", "TIP2|Tip 2: b||tip", "TIP3|Tip 3: c||tip",
                              "TIP4|Tip 4: a||tip", "TIP5|Tip 5: e||tip"}));
    }

    void missingTools_data()
    {
        QTest::addColumn<QStringList>("missing");
        QTest::addColumn<QStringList>("rows"); // "key|command|icon"
        const QStringList mo = {"MO|miWebMorphane|software", "MOTIP||", "MOMORE|miWebMorphane|"};
        const QStringList te = {"TE|miWebTessary|software", "TETIP||", "TEMORE|miWebTessary|"};
        const QStringList no = {"NO|miWebNomalux|software", "NOTIP||", "NOMORE|miWebNomalux|"};
        QTest::newRow("none") << QStringList() << QStringList();
        QTest::newRow("one") << QStringList{"Tessary"} << te;
        QTest::newRow("two") << QStringList{"Nomalux", "Morphane"} << mo + no;
        QTest::newRow("all") << QStringList{"Morphane", "Tessary", "Nomalux"} << mo + te + no;
    }

    void missingTools()
    {
        QFETCH(QStringList, missing);
        QFETCH(QStringList, rows);
        const QList<Pane> panes = commands::resourcePanes(someFacts(missing));
        if (missing.isEmpty()) {
            QVERIFY(!keysOf(panes).contains(QStringLiteral("Software")));
            return;
        }
        QCOMPARE(keysOf(panes), (QStringList{"Resource", "Software", "TIPS"}));
        QCOMPARE(panes[1].title, QStringLiteral("  - Halvexa - Addtional Software Titles"));
        QStringList got;
        for (const PaneItem& item : panes[1].items)
            got.append(item.key + u'|' + item.tag + u'|' + item.icon);
        QCOMPARE(got, rows);
        for (qsizetype i = 0; i < panes[1].items.size(); i += 3) {
            QVERIFY(missing.contains(panes[1].items[i].text));
            QVERIFY(panes[1].items[i + 1].text.size() > 20);
            QCOMPARE(panes[1].items[i + 2].text, QStringLiteral("More Information"));
        }
    }

    /// A row can be chosen when it has a command, and only then; each icon is one that there is.
    void rowsWithoutACommandAreTexts()
    {
        const WelcomeFacts facts = someFacts({"Morphane", "Tessary", "Nomalux"});
        QSet<QString> keys;
        int rows = 0;
        for (const Pane& pane : commands::welcomePanes(facts) + commands::resourcePanes(facts)) {
            for (const PaneItem& item : pane.items) {
                QCOMPARE(item.kind == PaneItemKind::Link, !item.tag.isEmpty());
                QVERIFY2(item.icon.isEmpty() || platform::isIcon(item.icon), qPrintable(item.icon));
                keys.insert(item.key);
                ++rows;
            }
        }
        QCOMPARE(rows, 8 + 5 + 4 + 9 + 5);
        QCOMPARE(keys.size(), rows);
    }

    void columns_data()
    {
        QTest::addColumn<QSize>("panel");
        QTest::addColumn<QRect>("bar");
        QTest::addColumn<QRect>("back"); // null: not placed
        QTest::newRow("wide") << QSize(20000, 9000) << QRect(0, 0, 6000, 9000) << QRect(6000, 0, 14000, 9000);
        QTest::newRow("narrow") << QSize(5999, 9000) << QRect(0, 0, 5999, 9000) << QRect();
        QTest::newRow("one twip more than that")
            << QSize(6001, 9000) << QRect(0, 0, 6000, 9000) << QRect(6000, 0, 1, 9000);
        QTest::newRow("no width") << QSize(0, 9000) << QRect(0, 0, 0, 9000) << QRect();
    }

    void columns()
    {
        QFETCH(QSize, panel);
        QFETCH(QRect, back);
        const commands::WelcomeColumns got = commands::layoutWelcome(panel);
        QTEST(got.bar, "bar");
        QCOMPARE(got.back.has_value(), !back.isNull());
        QCOMPARE(got.back.value_or(QRect()), back);
    }

    void theWidthThatIsReachedPlacesTheRightColumn()
    {
        const commands::WelcomeColumns got = commands::layoutWelcome(QSize(6000, 9000));
        QVERIFY(got.back);
        QCOMPARE(got.back->topLeft(), QPoint(6000, 0));
        QCOMPARE(got.back->width(), 0);
    }
};

QTEST_APPLESS_MAIN(TestWelcomePanes)
#include "tst_welcomepanes.moc"
