// The panel of the list of pictures under mouse and keys: picks, selections and the menu.
#include "collections/BatchActions.h"
#include "collections/PictureList.h"
#include "collections/Playlist.h"
#include "collections/PlaylistCommands.h"
#include "ListBench.h"
#include "platform/Dialogs.h"
#include "PlaylistStage.h"

#include <QContextMenuEvent>
#include <QtTest>

using namespace quorvia;
using namespace quorvia::test;

class TestPlaylistInput : public QObject, private PlaylistStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void aClickPicks()
    {
        show();
        click(1);
        QCOMPARE(m_opened->count(), 1);
        QCOMPARE(m_opened->at(0).at(0).toString(), in("pics/b.jpg"));
        QCOMPARE(m_list->ListIndex(), 1);
        QCOMPARE(m_list->GetSelectedFiles(), in("pics/b.jpg;"));
    }

    void aClickOnTheImageOnShowOpensNothing()
    {
        show();
        m_bench->window.current = in("pics/b.jpg");
        click(1);
        QCOMPARE(m_opened->count(), 0);
        QCOMPARE(m_list->ListIndex(), 1);
        m_bench->window.current = in("pics/c.jpg"); // another one has come: the same entry opens again
        click(1);
        QCOMPARE(m_opened->count(), 1);
    }

    void aClickBesideTheEntriesPicksNothing()
    {
        show();
        click(1);
        QTest::mouseClick(lPlaylist().viewport(), Qt::LeftButton, {},
                          QPoint(20, lPlaylist().viewport()->height() - 3));
        QCOMPARE(m_opened->count(), 1);
        QVERIFY(selected().isEmpty());
        QCOMPARE(m_list->GetSelectedFiles(), QString());
    }

    void severalAreSelectedByMouse()
    {
        show();
        click(0);
        click(2, Qt::ControlModifier);
        QCOMPARE(selected(), QList<int>({0, 2}));
        QCOMPARE(m_list->GetSelectedFiles(), in("pics/a.jpg;") + in("pics/c.jpg;"));
        QCOMPARE(m_list->ListIndex(), 2); // and it is opened, as by any click
        QCOMPARE(m_opened->count(), 2);
        click(4, Qt::ShiftModifier);
        QCOMPARE(selected(), QList<int>({0, 2, 3, 4})); // from there on, beside what stood
        click(1);
        QCOMPARE(selected(), QList<int>{1});
    }

    void keysPick_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("opened");
        QTest::addColumn<QList<int>>("rows");
        const auto row = [](const char* name, int key, Qt::KeyboardModifiers held, int current, int opened,
                            const QList<int>& rows) {
            QTest::newRow(name) << key << int(held) << current << opened << rows;
        };
        row("Home", Qt::Key_Home, {}, 0, 1, {0});
        row("End", Qt::Key_End, {}, 4, 1, {4});
        row("Shift+Down", Qt::Key_Down, Qt::ShiftModifier, 3, 1, {2, 3});
        row("Shift+Home", Qt::Key_Home, Qt::ShiftModifier, 0, 1, {0, 1, 2});
        row("Ctrl+Down only goes", Qt::Key_Down, Qt::ControlModifier, 2, 0, {2});
        row("Ctrl+A", Qt::Key_A, Qt::ControlModifier, 2, 0, {0, 1, 2, 3, 4});
        row("Return", Qt::Key_Return, {}, 2, 1, {2});
        row("Space", Qt::Key_Space, {}, 2, 1, {2});
        row("the plain arrow is the window's", Qt::Key_Down, {}, 2, 0, {2});
        row("a digit is the window's", Qt::Key_5, {}, 2, 0, {2});
    }

    void keysPick()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QList<int>, rows);
        show();
        m_list->SetListIndex(2);
        m_opened->clear();
        QTest::keyClick(&lPlaylist(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QTEST(m_list->ListIndex(), "row");
        QTEST(int(m_opened->count()), "opened");
        QCOMPARE(selected(), rows);
        QCOMPARE(m_list->GetSelectedFiles().count(u';'), rows.size());
    }

    void ctrlArrowAndSpaceSelectApart()
    {
        show();
        m_list->SetListIndex(0);
        QTest::keyClick(&lPlaylist(), Qt::Key_Down, Qt::ControlModifier);
        QTest::keyClick(&lPlaylist(), Qt::Key_Down, Qt::ControlModifier);
        QTest::keyClick(&lPlaylist(), Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(selected(), QList<int>({0, 2}));
        QCOMPARE(m_list->ListIndex(), 2);
    }

    void aPressTakesTheStarsOutOfTheText_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::newRow("left") << Qt::LeftButton;
        QTest::newRow("right") << Qt::RightButton;
        QTest::newRow("middle") << Qt::MiddleButton;
    }

    void aPressTakesTheStarsOutOfTheText()
    {
        QFETCH(Qt::MouseButton, button);
        m_bench->home.write(QStringLiteral("pics/a * b.jpg"), "x");
        show();
        QCOMPARE(shown(0), QStringLiteral("1. a * b (JPG)"));
        QTest::mousePress(lPlaylist().viewport(), button, {}, place(0));
        QCOMPARE(shown(0), QStringLiteral("1. a - b (JPG)"));
        QCOMPARE(m_list->List(0), QStringLiteral("1. a - b (JPG)"));
        QTest::mouseRelease(lPlaylist().viewport(), button, {}, place(0));
        QCOMPARE(m_opened->count(), button == Qt::LeftButton ? 1 : 0);
        if (button == Qt::LeftButton)
            QCOMPARE(m_opened->at(0).at(0).toString(), in("pics/a * b.jpg"));
    }

    void theRightButtonOpensTheMenu()
    {
        show();
        m_list->SetListIndex(0);
        m_opened->clear();
        const QPoint at(20, place(3).y());
        QTest::mousePress(lPlaylist().viewport(), Qt::RightButton, {}, at);
        QCOMPARE(menu(), QString());
        QTest::mouseRelease(lPlaylist().viewport(), Qt::RightButton, {}, at);
        QCOMPARE(menu(), QStringLiteral("bFiles"));
        QCOMPARE(menuPlace(), lPlaylist().viewport()->mapToGlobal(at));
        closeMenu();
        QCOMPARE(selected(), QList<int>{3});
        QCOMPARE(m_list->ListIndex(), 0); // the image on show stays
        QCOMPARE(m_opened->count(), 0);
        click(0);
        click(2, Qt::ShiftModifier);
        click(1, {}, Qt::RightButton);
        closeMenu();
        QCOMPARE(selected(), QList<int>({0, 1, 2})); // one of several keeps them
    }

    void keysOpenTheMenuToo()
    {
        show();
        m_list->SetListIndex(1);
        QTest::keyClick(&lPlaylist(), Qt::Key_F10, Qt::ShiftModifier);
        QCOMPARE(menu(), QStringLiteral("bFiles"));
        QCOMPARE(menuPlace(), lPlaylist().viewport()->mapToGlobal(place(1)));
        closeMenu();
        QContextMenuEvent key(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(lPlaylist().viewport(), &key);
        QCOMPARE(menu(), QStringLiteral("bFiles"));
        closeMenu();
        QContextMenuEvent mouse(QContextMenuEvent::Mouse, {}, {});
        QCoreApplication::sendEvent(lPlaylist().viewport(), &mouse);
        QCOMPARE(menu(), QString()); // the release opens it
        QCursor::setPos(m_panel->mapToGlobal(QPoint(30, 40)));
        m_panel->RunTool(QStringLiteral("ShowContextMenu"));
        QCOMPARE(menu(), QStringLiteral("bFiles"));
        QCOMPARE(menuPlace(), QCursor::pos());
        closeMenu();
        m_panel->RunTool(QStringLiteral("nonesuch"));
        QCOMPARE(menu(), QString());
    }

    void theButtonWorksByKey()
    {
        show();
        int asked = 0;
        const platform::FolderBrowserAnswerer answerer([&](const platform::FolderBrowser&) {
            ++asked;
            return QString();
        });
        QTest::keyClick(&cmdDir(), Qt::Key_Space);
        QCOMPARE(asked, 1);
        m_panel->RunTool(QStringLiteral("SelectDirectory"));
        QCOMPARE(asked, 2);
    }

    void tabLeadsThroughTheParts()
    {
        show();
        m_panel->activateWindow();
        QTRY_VERIFY(m_panel->isActiveWindow());
        ftv().setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(ftv().hasFocus());
        QCOMPARE(m_list->path(), in("pics"));
        QTest::keyClick(&ftv(), Qt::Key_Tab);
        QVERIFY(cmdDir().hasFocus());
        QTest::keyClick(&cmdDir(), Qt::Key_Tab);
        QVERIFY(cmdPlaylist().hasFocus());
        QTest::keyClick(&cmdPlaylist(), Qt::Key_Tab);
        QVERIFY(lPlaylist().hasFocus());
        QTest::keyClick(&lPlaylist(), Qt::Key_Tab);
        QCOMPARE(m_panel->focusWidget()->objectName(), QStringLiteral("tab2"));
        QTest::keyClick(m_panel->focusWidget(), Qt::Key_Backtab);
        QVERIFY(lPlaylist().hasFocus());
        QTest::keyClick(&lPlaylist(), Qt::Key_Backtab);
        QVERIFY(cmdPlaylist().hasFocus());
    }
};

QTEST_MAIN(TestPlaylistInput)
#include "tst_playlistinput.moc"
