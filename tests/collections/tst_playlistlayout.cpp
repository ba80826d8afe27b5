#include "collections/PlaylistLayout.h"

#include <QTest>

using namespace quorvia::collections;

class TestPlaylistLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void faces_data()
    {
        QTest::addColumn<QSize>("panel");
        QTest::addColumn<QRect>("ftv");
        QTest::addColumn<QRect>("pFilelist");
        QTest::addColumn<QRect>("lPlaylist");
        QTest::addColumn<QRect>("lPlaylistInfo");
        // 0.666 of 10,000 less 400, 250 and 50
        QTest::newRow("usual") << QSize(3000, 10290) << QRect(20, 290, 2960, 5960)
                               << QRect(20, 6250, 2960, 400) << QRect(20, 6650, 2960, 3390)
                               << QRect(20, 10040, 2960, 250);
        QTest::newRow("wide") << QSize(12000, 3290) << QRect(20, 290, 11960, 1298)
                              << QRect(20, 1588, 11960, 400) << QRect(20, 1988, 11960, 1052)
                              << QRect(20, 3040, 11960, 250);
        QTest::newRow("the part of a twip is dropped")
            << QSize(3000, 10291) << QRect(20, 290, 2960, 5960) << QRect(20, 6250, 2960, 400)
            << QRect(20, 6650, 2960, 3391) << QRect(20, 10041, 2960, 250);
        QTest::newRow("too low for a tree")
            << QSize(3000, 1290) << QRect(20, 290, 2960, 0) << QRect(20, 290, 2960, 400)
            << QRect(20, 690, 2960, 350) << QRect(20, 1040, 2960, 250);
        QTest::newRow("too low for a list")
            << QSize(3000, 500) << QRect(20, 290, 2960, 0) << QRect(20, 290, 2960, 400)
            << QRect(20, 690, 2960, 0) << QRect(20, 690, 2960, 250);
        QTest::newRow("too narrow") << QSize(30, 1290) << QRect(20, 290, 0, 0) << QRect(20, 290, 0, 400)
                                    << QRect(20, 690, 0, 350) << QRect(20, 1040, 0, 250);
        QTest::newRow("nothing") << QSize(0, 0) << QRect(20, 290, 0, 0) << QRect(20, 290, 0, 400)
                                 << QRect(20, 690, 0, 0) << QRect(20, 690, 0, 250);
    }

    void faces()
    {
        QFETCH(QSize, panel);
        const FolderFace face = layoutFolderFace({.panel = panel, .toolRow = 400, .info = 250});
        QTEST(face.ftv, "ftv");
        QTEST(face.pFilelist, "pFilelist");
        QTEST(face.lPlaylist, "lPlaylist");
        QTEST(face.lPlaylistInfo, "lPlaylistInfo");
    }

    void aHigherHeadMovesAll()
    {
        const FolderFace face =
            layoutFolderFace({.panel = {3000, 10400}, .head = 400, .toolRow = 400, .info = 250});
        QCOMPARE(face.ftv, QRect(20, 400, 2960, 5960));
        QCOMPARE(face.lPlaylistInfo.bottom() + 1, 10400);
    }

    void playlistFaces_data()
    {
        QTest::addColumn<QSize>("panel");
        QTest::addColumn<QRect>("pInternalPlaylist");
        QTest::addColumn<QRect>("lPlaylist");
        QTest::addColumn<QRect>("ptPlaylist");
        QTest::addColumn<QRect>("lPlaylistInfo");
        QTest::newRow("usual") << QSize(3000, 10000) << QRect(20, 290, 2960, 350)
                               << QRect(20, 640, 2960, 8710) << QRect(20, 9350, 2960, 400)
                               << QRect(20, 9750, 2960, 250);
        QTest::newRow("room for one twip of the list")
            << QSize(3000, 1291) << QRect(20, 290, 2960, 350) << QRect(20, 640, 2960, 1)
            << QRect(20, 641, 2960, 400) << QRect(20, 1041, 2960, 250);
        QTest::newRow("too low for a list")
            << QSize(3000, 1000) << QRect(20, 290, 2960, 350) << QRect(20, 640, 2960, 0)
            << QRect(20, 640, 2960, 400) << QRect(20, 1040, 2960, 250);
        QTest::newRow("too narrow") << QSize(30, 1500) << QRect(20, 290, 0, 350) << QRect(20, 640, 0, 210)
                                    << QRect(20, 850, 0, 400) << QRect(20, 1250, 0, 250);
        QTest::newRow("nothing") << QSize(0, 0) << QRect(20, 290, 0, 350) << QRect(20, 640, 0, 0)
                                 << QRect(20, 640, 0, 400) << QRect(20, 1040, 0, 250);
    }

    void playlistFaces()
    {
        QFETCH(QSize, panel);
        const PlaylistFace face =
            layoutPlaylistFace({.panel = panel, .toolRow = 400, .info = 250, .nameRow = 350});
        QTEST(face.pInternalPlaylist, "pInternalPlaylist");
        QTEST(face.lPlaylist, "lPlaylist");
        QTEST(face.ptPlaylist, "ptPlaylist");
        QTEST(face.lPlaylistInfo, "lPlaylistInfo");
    }

    void rows_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<QList<QSize>>("sizes");
        QTest::addColumn<QList<QRect>>("places");
        const QList<QSize> three{{30, 10}, {30, 20}, {40, 10}};
        QTest::newRow("none") << 100 << QList<QSize>() << QList<QRect>();
        QTest::newRow("one row, at half height")
            << 200 << three << QList<QRect>{{0, 5, 30, 10}, {32, 0, 30, 20}, {64, 5, 40, 10}};
        QTest::newRow("just wide enough")
            << 104 << three << QList<QRect>{{0, 5, 30, 10}, {32, 0, 30, 20}, {64, 5, 40, 10}};
        QTest::newRow("one less: two rows")
            << 103 << three << QList<QRect>{{0, 5, 30, 10}, {32, 0, 30, 20}, {0, 22, 40, 10}};
        QTest::newRow("a row for each")
            << 50 << three << QList<QRect>{{0, 0, 30, 10}, {0, 12, 30, 20}, {0, 34, 40, 10}};
        QTest::newRow("too narrow for one")
            << 35 << three << QList<QRect>{{0, 0, 30, 10}, {0, 12, 30, 20}, {0, 34, 35, 10}};
        QTest::newRow("no width") << 0 << QList<QSize>{{30, 10}} << QList<QRect>{{0, 0, 0, 10}};
    }

    void rows()
    {
        QFETCH(int, width);
        QFETCH(QList<QSize>, sizes);
        QTEST(placeInRows(width, 2, sizes), "places");
    }

    void theMovingTabKeepsItsSize()
    {
        const TabPlaces places = layoutTabs({.panel = {6000, 5000}});
        QCOMPARE(movingTab(places, places.tab2.left()), places.tab2);
        QCOMPARE(movingTab(places, 77), QRect(77, 0, 1500, 290));
    }

    void tabs_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("tab");
        QTest::newRow("wide") << 6000 << 1500;
        QTest::newRow("just wide enough") << 3040 << 1500;
        QTest::newRow("narrow: both fit") << 2000 << 980;
        QTest::newRow("no room") << 30 << 0;
        QTest::newRow("nothing") << 0 << 0;
    }

    void tabs()
    {
        QFETCH(int, width);
        QFETCH(int, tab);
        const TabPlaces places = layoutTabs({.panel = {width, 5000}});
        QCOMPARE(places.tab1, QRect(20, 0, tab, 290));
        QCOMPARE(places.tab2, QRect(20 + tab, 0, tab, 290)); // its left is the width of the first and 20
        if (tab > 0)
            QVERIFY(places.tab2.right() < width - 20);
    }
};

QTEST_GUILESS_MAIN(TestPlaylistLayout)
#include "tst_playlistlayout.moc"
