// Keys where the real window and its list meet the keyboard: which of the two stages they enter, and what
// they run there.
#include "controls/gnTab.h"
#include "platform/MenuControl.h"
#include "platform/ToolControl.h"
#include "viewer/PictureStage.h"

#include <QAbstractButton>
#include <QDockWidget>
#include <QListView>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using viewer::frmImageView;

class TestWindowKeys : public QObject, private test::PictureStage
{
    Q_OBJECT

  private:
    QTimer* m_tWait = nullptr;
    QTimer* m_tKey = nullptr;

    /// A loaded window whose debounces end only by rest().
    frmImageView& open(const QStringList& arguments)
    {
        frmImageView& window = m_bench->load(arguments);
        window.OpenMenuX(true);
        m_tWait = window.findChild<QTimer*>(QStringLiteral("tWait"));
        m_tKey = window.findChild<QTimer*>(QStringLiteral("tKey"));
        constexpr int longerThanTheTest = 1000 * 1000;
        for (QTimer* timer : {m_tWait, m_tKey})
            timer->setInterval(longerThanTheTest);
        return window;
    }

    void rest() const
    {
        for (QTimer* timer : {m_tWait, m_tKey})
            timer->stop();
    }

    /// The window with its list shown, docked or floating.
    frmImageView& openWithList(bool floating)
    {
        frmImageView& window = open({in("pics")});
        platform::Band* const bPlay = window.panes()->bPlay();
        if (floating)
            bPlay->setDockingArea(platform::dockingArea::floating);
        bPlay->setVisible(true);
        return window;
    }

    static QListView* entries(const frmImageView& window)
    {
        return window.playlist()->findChild<QListView*>(QStringLiteral("lPlaylist"));
    }

    static platform::ToolValues values(const frmImageView& window, const char* tool)
    {
        return window.panes()->ab1()->model()->tool(QLatin1String(tool))->values();
    }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void keysInTheListPassTheSecondStageOnly_data()
    {
        QTest::addColumn<bool>("floating");
        QTest::newRow("docked") << false;
        QTest::newRow("floating") << true;
    }

    void keysInTheListPassTheSecondStageOnly()
    {
        QFETCH(bool, floating);
        frmImageView& window = openWithList(floating);
        QTest::keyClick(entries(window), Qt::Key_Right);
        QCOMPARE(window.currentFile(), in("pics/b.png")); // once
        QVERIFY(!m_tWait->isActive());
        QTest::keyClick(entries(window), Qt::Key_Right); // lost at the second stage
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        rest();
        m_tWait->start();
        QTest::keyClick(entries(window), Qt::Key_Right); // the first is the window's own
        QCOMPARE(window.currentFile(), in("pics/two words.png"));
        rest();
        QTest::keyClick(entries(window), Qt::Key_F12);
        QVERIFY(m_bench->boxes.empty());
        rest();
        QTest::keyClick(&window, Qt::Key_F12);
        QCOMPARE(m_bench->boxes.size(), std::size_t(1));
    }

    void aClickedEntryLeavesTheKeysToTheWindow()
    {
        frmImageView& window = openWithList(false);
        QListView* const list = entries(window);
        const QRect last = list->visualRect(list->model()->index(2, 0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, last.center());
        QTRY_COMPARE(window.currentFile(), in("pics/two words.png"));
        QTest::keyClick(window.focusWidget(), Qt::Key_Left);
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        rest();
        QTest::keyClick(window.focusWidget(), Qt::Key_F);
        QVERIFY(!window.panes()->bPlay()->visible());
        rest();
        QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, Qt::Key_Right);
        QCOMPARE(window.currentFile(), in("pics/two words.png"));
    }

    void keysOnTheTitleBarOfTheListCount_data() { keysInTheListPassTheSecondStageOnly_data(); }

    void keysOnTheTitleBarOfTheListCount()
    {
        QFETCH(bool, floating);
        frmImageView& window = openWithList(floating);
        auto* const button = window.findChild<QDockWidget*>(QStringLiteral("bPlay"))
                                 ->findChild<QAbstractButton*>(QStringLiteral("closeButton"));
        QTest::keyClick(button, Qt::Key_BracketRight);
        QCOMPARE(window.currentFile(), in("pics/b.png"));
    }

    void theListsOwnCloseButtonCounts()
    {
        frmImageView& window = openWithList(false);
        auto* const tAutoUpdate = window.list()->findChild<QTimer*>(QStringLiteral("tAutoUpdate"));
        QVERIFY(values(window, "miFileList").checked);
        QCOMPARE(tAutoUpdate->interval(), 3000);
        window.findChild<QDockWidget*>(QStringLiteral("bPlay"))
            ->findChild<QAbstractButton*>(QStringLiteral("closeButton"))
            ->click();
        QVERIFY(!values(window, "miFileList").checked);
        QCOMPARE(tAutoUpdate->interval(), 12000);
    }

    void aShortcutRunsThoughItsToolIsDisabled()
    {
        frmImageView& window = open({});
        QVERIFY(!values(window, "miActualSize").enabled);
        const bool fit = window.viewport()->FitToWindow();
        QTest::keyClick(&window, Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(window.viewport()->FitToWindow(), !fit);
    }

    void aModifierAloneIsNoKey_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Shift") << Qt::Key_Shift;
        QTest::newRow("Ctrl") << Qt::Key_Control;
        QTest::newRow("Alt") << Qt::Key_Alt;
        QTest::newRow("Caps Lock") << Qt::Key_CapsLock;
    }

    void aModifierAloneIsNoKey()
    {
        QFETCH(Qt::Key, key);
        frmImageView& window = openWithList(false);
        QTest::keyClick(&window, key);
        QTest::keyClick(entries(window), key);
        QVERIFY(!m_tWait->isActive());
        QVERIFY(!m_tKey->isActive());
    }

    void keysOfOtherLayoutsCountByTheirPlace_data()
    {
        QTest::addColumn<bool>("inList");
        QTest::newRow("in the window") << false;
        QTest::newRow("in the list") << true;
    }

    void keysOfOtherLayoutsCountByTheirPlace()
    {
        QFETCH(bool, inList);
        frmImageView& window = openWithList(false);
        constexpr int placeOf2 = 11;
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Eacute, Qt::NoModifier, placeOf2, 0, 0);
        QApplication::sendEvent(inList ? static_cast<QWidget*>(entries(window)) : &window, &press);
        QCOMPARE(window.panes()->gTab()->SelectedTabKey(), QStringLiteral("Information"));
    }

    void informationTellsTheVersionOfTheToolbar()
    {
        frmImageView& window = open({});
        QTest::keyClick(&window, Qt::Key_F10);
        QCOMPARE(m_bench->boxes.size(), std::size_t(1));
        QCOMPARE(m_bench->boxes[0].text.split(u'\n').value(3),
                 QStringLiteral("Interface Versions: ") + platform::ToolControl::version());
    }
};

QTEST_MAIN(TestWindowKeys)
#include "tst_windowkeys.moc"
