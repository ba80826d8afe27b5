// The keys that open the context menu of the real window.
#include "platform/ToolControl.h"
#include "platform/ToolMenu.h"
#include "viewer/ViewerBench.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>

using namespace quorvia;
using test::ViewerBench;
using viewer::frmImageView;

class TestWindowMenuKey : public QObject
{
    Q_OBJECT

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
};

QTEST_MAIN(TestWindowMenuKey)
#include "tst_windowmenukey.moc"
