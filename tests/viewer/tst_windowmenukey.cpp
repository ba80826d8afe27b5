// The keys that open the context menu of the real window, wherever in it the focus is.
#include "collections/Filmstrip.h"
#include "platform/Band.h"
#include "platform/PaneParts.h"
#include "platform/ToolControl.h"
#include "platform/ToolMenu.h"
#include "platform/ToolModel.h"
#include "viewer/ViewerBench.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>
#include <QWindow>

using namespace quorvia;
using test::ViewerBench;
using viewer::frmImageView;

class TestWindowMenuKey : public QObject
{
    Q_OBJECT

  private:
    /// Presses one of the keys where the focus of `inside`'s window is. Of the menu key the toolkit makes a
    /// question for a menu.
    static void press(bool isMenuKey, QWidget& inside)
    {
        if (!isMenuKey)
            return QTest::keyClick(inside.window()->windowHandle(), Qt::Key_F10, Qt::ShiftModifier);
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
        QCoreApplication::sendEvent(&inside, &event);
    }

    /// The part of the window, which gets what is pressed in its own window, the main one or a band.
    static QWidget* focused(const frmImageView& window, const QString& name)
    {
        auto* const part = name == QLatin1String("head")
                               ? window.panes()->bInfo()->client()->findChild<platform::PaneHead*>()
                               : window.findChild<QWidget*>(name);
        if (!part)
            return nullptr;
        part->setFocus(Qt::TabFocusReason);
        return part->window()->focusWidget() == part ? part : nullptr;
    }

  private Q_SLOTS:
    void opensTheMenuWithItsFirstRow_data()
    {
        QTest::addColumn<bool>("byMenuKey");
        QTest::addColumn<bool>("shift");
        QTest::addColumn<bool>("opens");
        QTest::newRow("menu key") << true << false << true;
        QTest::newRow("Shift+F10") << false << true << true;
        QTest::newRow("Shift+F9") << false << false << false;
    }

    void opensTheMenuWithItsFirstRow()
    {
        QFETCH(bool, byMenuKey);
        QFETCH(bool, shift);
        QFETCH(bool, opens);
        ViewerBench bench;
        bench.threePictures();
        frmImageView& window = bench.load({bench.in("pics")});
        window.OpenMenuX(true);
        if (byMenuKey) { // the toolkit makes it of the key
            QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
            QCoreApplication::sendEvent(&window, &event);
        } else {
            QTest::keyClick(&window, shift ? Qt::Key_F10 : Qt::Key_F9, Qt::ShiftModifier);
        }
        QMenu* const menu = window.panes()->ab1()->menus()->menu();
        QCOMPARE(menu != nullptr, opens);
        if (!menu)
            return;
        QVERIFY(menu->isVisible());
        QVERIFY(menu->activeAction());
        QCOMPARE(menu->activeAction(), menu->actions().constFirst());
        window.panes()->ab1()->menus()->close();
    }

    /// Shortly after its start the window reads the definition, unless it has by then.
    void aMenuOpenedAtOnceStaysAsItIs()
    {
        ViewerBench bench;
        bench.threePictures();
        frmImageView& window = bench.load({bench.in("pics")});
        window.OpenMenuX(true);
        QTest::keyClick(&window, Qt::Key_F10, Qt::ShiftModifier);
        QMenu* const menu = window.panes()->ab1()->menus()->menu();
        QVERIFY(menu);
        const QPointer<QAction> first(menu->activeAction());
        QVERIFY(first);
        platform::Tool* const next = window.panes()->ab1()->model()->tool(QStringLiteral("miNext"));
        QVERIFY(next && next->values().enabled);
        next->set(&platform::ToolValues::enabled, false);
        QTRY_VERIFY(next->values().enabled); // the marks are looked at again
        QVERIFY(first);
        QCOMPARE(menu->activeAction(), first.data());
        window.panes()->ab1()->menus()->close();
    }

    void opensItWhereverTheFocusIs_data()
    {
        QTest::addColumn<QString>("part");
        QTest::addColumn<bool>("isPlaylist");
        QTest::addColumn<bool>("floats");
        QTest::addColumn<bool>("isMenuKey");
        struct Part
        {
            const char* name;
            bool isPlaylist;
        };
        for (const Part part : {Part{"ftv", false},
                                {"tab2", true},
                                {"pPlaylistBox", true},
                                {"iAddToPlaylist", true},
                                {"head", false}}) {
            for (const bool floats : {false, true}) {
                for (const bool isMenuKey : {false, true})
                    QTest::addRow("%s, %s, %s", part.name, floats ? "floating" : "docked",
                                  isMenuKey ? "menu key" : "Shift+F10")
                        << QString::fromLatin1(part.name) << part.isPlaylist << floats << isMenuKey;
            }
        }
    }

    void opensItWhereverTheFocusIs()
    {
        QFETCH(QString, part);
        QFETCH(bool, isPlaylist);
        QFETCH(bool, floats);
        QFETCH(bool, isMenuKey);
        ViewerBench bench;
        bench.threePictures();
        frmImageView& window = bench.load({bench.in("pics")});
        window.OpenMenuX(true);
        for (platform::Band* const band : {window.panes()->bPlay(), window.panes()->bInfo()}) {
            if (floats)
                band->setDockingArea(platform::dockingArea::floating);
            band->setVisible(true);
        }
        if (isPlaylist)
            window.list()->SelectTab(1);
        QWidget* const inside = focused(window, part);
        QVERIFY(inside);
        press(isMenuKey, *inside);
        const QMenu* const menu = window.panes()->ab1()->menus()->menu();
        QVERIFY(menu);
        QVERIFY(menu->isVisible());
        QCOMPARE(menu->activeAction(), menu->actions().constFirst());
        QVERIFY(menu->activeAction());
        window.panes()->ab1()->menus()->close();
    }

    void theFilmstripOpensItsOwn_data()
    {
        QTest::addColumn<bool>("isMenuKey");
        QTest::newRow("menu key") << true;
        QTest::newRow("Shift+F10") << false;
    }

    void theFilmstripOpensItsOwn()
    {
        QFETCH(bool, isMenuKey);
        ViewerBench bench;
        bench.threePictures();
        frmImageView& window = bench.load({bench.in("pics")});
        window.OpenMenuX(true);
        window.RunTool(QStringLiteral("miViewFilmstrip"));
        QWidget* const strip = window.filmstrip()->Filmstrip1();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        strip->setFocus(Qt::TabFocusReason);
        QVERIFY(strip->hasFocus());
        press(isMenuKey, *strip);
        QVERIFY(window.panes()->ab1()->menus()->menu());
        QCOMPARE(window.interfaceTools()->imageOfMenu(), bench.in("pics/a.png"));
        window.panes()->ab1()->menus()->close();
    }

    /// As the toolkit asks for the menu of its own key.
    void asksAtTheCaret()
    {
        class Asked : public QPlainTextEdit
        {
          public:
            QPoint at;

          protected:
            void keyPressEvent(QKeyEvent* event) override { event->ignore(); }
            void contextMenuEvent(QContextMenuEvent* event) override { at = event->pos(); }
        };
        ViewerBench bench;
        frmImageView& window = bench.load();
        Asked box;
        box.setParent(&window);
        box.setGeometry(0, 0, 300, 200);
        box.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box.setFocus();
        QTest::keyClick(window.windowHandle(), Qt::Key_F10, Qt::ShiftModifier);
        QCOMPARE(box.at, box.inputMethodQuery(Qt::ImCursorRectangle).toRect().center());
        QVERIFY(box.at != box.rect().center());
    }
};

QTEST_MAIN(TestWindowMenuKey)
#include "tst_windowmenukey.moc"
