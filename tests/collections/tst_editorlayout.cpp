#include "collections/EditorLayout.h"

#include <QTest>

using namespace quorvia::collections;

Q_DECLARE_METATYPE(EditorSizes)

namespace {

constexpr QSize finished(1500, 360);
constexpr QSize caption(700, 250);

EditorSizes sizesOf(QSize control)
{
    return {control, finished, caption, 300, 360, 480};
}

/// The parts that stand directly on the control.
std::vector<QRect> panels(const EditorPlaces& places)
{
    return {places.pTitle, places.pFile, places.pFileTools, places.pPlaylist, places.pFooter};
}

bool anyOverlap(const std::vector<QRect>& parts)
{
    for (std::size_t one = 0; one < parts.size(); ++one) {
        for (std::size_t other = 0; other < one; ++other) {
            if (parts[one].intersects(parts[other]))
                return true;
        }
    }
    return false;
}

bool allInside(const std::vector<QRect>& parts, QSize panel)
{
    return std::all_of(parts.begin(), parts.end(), [panel](const QRect& part) {
        return part.isEmpty() || QRect(QPoint(), panel).contains(part);
    });
}

} // namespace

class TestEditorLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void theEditingPage()
    {
        const EditorPlaces places = layoutEditor(sizesOf({16500, 10500}));
        QCOMPARE(places.pTitle, QRect(0, 0, 16500, 420));
        QCOMPARE(places.lTitle, QRect(120, 60, 16260, 300));
        QCOMPARE(places.pFooter, QRect(0, 10020, 16500, 480));
        QCOMPARE(places.lFinished, QRect(14880, 60, 1500, 360));
        QCOMPARE(places.lHelp, QRect(120, 60, 14700, 360));
        // 16260 less the buttons and what is on both sides of them, halved
        QCOMPARE(places.pFile, QRect(120, 480, 7770, 9480));
        QCOMPARE(places.pFileTools, QRect(8010, 480, 480, 7050));
        QCOMPARE(places.pPlaylist, QRect(8610, 480, 7770, 9480));
        // a quarter of 9480 for the strips, 45 of 100 of the rest for the tree
        QCOMPARE(places.lDirectory, QRect(0, 0, 7770, 360));
        QCOMPARE(places.fDir, QRect(0, 420, 7770, 2956));
        QCOMPARE(places.fFiles, QRect(0, 3436, 7770, 3614));
        QCOMPARE(places.filmstrip, QRect(0, 7110, 7770, 2370));
        QCOMPARE(places.lPTitle, QRect(0, 0, 700, 360));
        QCOMPARE(places.cPlaylist, QRect(760, 0, 6470, 360));
        QCOMPARE(places.lPlaylist, QRect(0, 420, 7230, 6630));
        QCOMPARE(places.pPlaylistTools, QRect(7290, 420, 480, 6630));
        QCOMPARE(places.filmstrip2, QRect(0, 7110, 7770, 2370));
        QCOMPARE(places.pImage[0], QRect(0, 2805, 480, 480));
        QCOMPARE(places.pImage[1], QRect(0, 3345, 480, 480));
        QCOMPARE(places.pImage[3], QRect(0, 2745, 480, 480));
        QCOMPARE(places.pImage[4], QRect(0, 3285, 480, 480));
        QCOMPARE(places.pImage[2], QRect(0, 3825, 480, 480));
    }

    void fitsTogether_data()
    {
        QTest::addColumn<QSize>("control");
        for (const QSize size :
             {QSize(7200, 5400), QSize(10500, 6750), QSize(16500, 10500), QSize(60000, 30000)})
            QTest::newRow(qPrintable(QStringLiteral("%1 x %2").arg(size.width()).arg(size.height()))) << size;
    }

    void fitsTogether()
    {
        QFETCH(QSize, control);
        const EditorPlaces places = layoutEditor(sizesOf(control));
        QVERIFY(!anyOverlap(panels(places)));
        QVERIFY(allInside(panels(places), control));
        const std::vector<QRect> files{places.lDirectory, places.fDir, places.fFiles, places.filmstrip};
        QVERIFY(!anyOverlap(files) && allInside(files, places.pFile.size()));
        const std::vector<QRect> playlist{places.lPTitle, places.cPlaylist, places.lPlaylist,
                                          places.pPlaylistTools, places.filmstrip2};
        QVERIFY(!anyOverlap(playlist) && allInside(playlist, places.pPlaylist.size()));
        const std::vector<QRect> moves{places.pImage[0], places.pImage[1]};
        QVERIFY(!anyOverlap(moves) && allInside(moves, places.pPlaylistTools.size()));
        const std::vector<QRect> changes{places.pImage[2], places.pImage[3], places.pImage[4]};
        QVERIFY(!anyOverlap(changes) && allInside(changes, places.pFileTools.size()));
        for (const QRect& part : {places.fDir, places.fFiles, places.lPlaylist})
            QVERIFY(part.height() >= 1000 && part.width() >= 1000);
        QCOMPARE(places.filmstrip.size(), places.filmstrip2.size());
        QVERIFY(places.filmstrip.height() >= 1050 && places.filmstrip.height() <= 2700);
    }

    void withoutRoomNothingIsNegative()
    {
        for (const QSize size : {QSize(0, 0), QSize(300, 300), QSize(30000, 10), QSize(10, 30000)}) {
            const EditorPlaces places = layoutEditor(sizesOf(size));
            for (const QRect& part :
                 {places.lTitle, places.pFile, places.fDir, places.fFiles, places.filmstrip,
                  places.pFileTools, places.pPlaylist, places.lPTitle, places.cPlaylist, places.lPlaylist,
                  places.filmstrip2, places.pPlaylistTools, places.lHelp, places.lFinished})
                QVERIFY2(part.width() >= 0 && part.height() >= 0, qPrintable(QString::number(size.width())));
        }
    }

    void theDefinePage_data()
    {
        QTest::addColumn<QSize>("page");
        QTest::addColumn<QRect>("pDefine");
        QTest::addColumn<QRect>("lPlaylistNames");
        QTest::addColumn<QRect>("cmdCreate");
        QTest::addColumn<QRect>("cmdClose");
        QTest::newRow("large") << QSize(16500, 10500) << QRect(4500, 2250, 7500, 6000)
                               << QRect(120, 120, 5940, 5760) << QRect(6180, 120, 1200, 330)
                               << QRect(6180, 5550, 1200, 330);
        QTest::newRow("small") << QSize(6000, 4000) << QRect(120, 120, 5760, 3760)
                               << QRect(120, 120, 4200, 3520) << QRect(4440, 120, 1200, 330)
                               << QRect(4440, 3310, 1200, 330);
        QTest::newRow("too low: the buttons stay apart")
            << QSize(6000, 1000) << QRect(120, 120, 5760, 760) << QRect(120, 120, 4200, 520)
            << QRect(4440, 120, 1200, 330) << QRect(4440, 1290, 1200, 330);
        QTest::newRow("nothing") << QSize(0, 0) << QRect(0, 0, 0, 0) << QRect(120, 120, 0, 0)
                                 << QRect(0, 120, 1200, 330) << QRect(0, 1290, 1200, 330);
    }

    void theDefinePage()
    {
        QFETCH(QSize, page);
        const DefinePlaces places = layoutDefine(page, {1200, 330});
        QTEST(places.pDefine, "pDefine");
        QTEST(places.lPlaylistNames, "lPlaylistNames");
        QTEST(places.cmdCreate, "cmdCreate");
        QTEST(places.cmdClose, "cmdClose");
        QCOMPARE(places.cmdRename.top() - places.cmdCreate.top(), 390);
        QCOMPARE(places.cmdDelete.top() - places.cmdRename.top(), 390);
    }
};

QTEST_GUILESS_MAIN(TestEditorLayout)
#include "tst_editorlayout.moc"
