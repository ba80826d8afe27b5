// The keys and the scroll bars of the main window: a bar takes its arrow keys just while it has the focus.
#include "controls/ScrollBar.h"
#include "viewer/ViewerBench.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWindow>

using namespace quorvia;
using controls::ScrollBar;
using test::ViewerBench;
using viewer::frmImageView;

class TestBarFocus : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<ViewerBench> m_bench;
    frmImageView* m_window = nullptr;

    ScrollBar* bar(const QString& name) const { return m_window->findChild<ScrollBar*>(name); }

    /// Presses a key wherever the focus is, once the keys before it do not keep it out.
    void press(Qt::Key key) const
    {
        for (const char* const name : {"tWait", "tKey"})
            QTRY_VERIFY(!m_window->findChild<QTimer*>(QLatin1String(name))->isActive());
        QTest::keyClick(m_window->windowHandle(), key);
    }

    /// Goes on with Tab until `widget` has the focus.
    bool tabTo(const QWidget* widget) const
    {
        constexpr int mostStops = 20;
        for (int i = 0; i < mostStops && !widget->hasFocus(); ++i)
            QTest::keyClick(m_window->windowHandle(), Qt::Key_Tab);
        return widget->hasFocus();
    }

    static void addBars()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Qt::Key>("forward");
        QTest::addColumn<Qt::Key>("across");
        QTest::newRow("upright") << "sb1" << Qt::Key_Down << Qt::Key_Right;
        QTest::newRow("lying") << "sb2" << Qt::Key_Right << Qt::Key_Down;
    }

  private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<ViewerBench>();
        for (const char* const name : {"pics/a.png", "pics/b.png"})
            m_bench->picture(QString::fromLatin1(name), Qt::red, QSize(2000, 1500));
        m_window = &m_bench->load({m_bench->in("pics/a.png")});
        m_window->resize(900, 700);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window));
        QTRY_VERIFY(m_window->list()->IsReady()); // which runs a command of its own
        m_window->RunTool(QStringLiteral("miActualSize"));
        QVERIFY(bar(QStringLiteral("sb1"))->isVisible());
        QVERIFY(bar(QStringLiteral("sb2"))->isVisible());
        QVERIFY(m_window->hasFocus());
    }
    void cleanup() { m_bench.reset(); }

    void aFocusedBarTakesItsArrowKeys_data() { addBars(); }
    void aFocusedBarTakesItsArrowKeys()
    {
        QFETCH(QString, name);
        QFETCH(Qt::Key, forward);
        ScrollBar* const sb = bar(name);
        QVERIFY(tabTo(sb));
        const int before = sb->Value();
        press(forward);
        QVERIFY(sb->Value() > before);
        QCOMPARE(m_window->lastTool(), QStringLiteral("miActualSize"));
    }

    void otherKeysOfAFocusedBarAreTheWindows_data() { addBars(); }
    void otherKeysOfAFocusedBarAreTheWindows()
    {
        QFETCH(QString, name);
        QFETCH(Qt::Key, across);
        ScrollBar* const sb = bar(name);
        QVERIFY(tabTo(sb));
        press(across);
        QCOMPARE(m_window->lastTool(), QStringLiteral("miNext"));
        press(Qt::Key_BracketLeft);
        QCOMPARE(m_window->lastTool(), QStringLiteral("miPrevious"));
    }

    void withoutTheFocusTheArrowKeysAreTheWindows_data() { addBars(); }
    void withoutTheFocusTheArrowKeysAreTheWindows()
    {
        QFETCH(QString, name);
        QFETCH(Qt::Key, forward);
        const int before = bar(name)->Value();
        press(forward);
        QCOMPARE(m_window->lastTool(), QStringLiteral("miNext"));
        QCOMPARE(bar(name)->Value(), before);
    }

    void aClickOnABarGivesItNoFocus_data() { addBars(); }
    void aClickOnABarGivesItNoFocus()
    {
        QFETCH(QString, name);
        QFETCH(Qt::Key, forward);
        ScrollBar* const sb = bar(name);
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {},
                          sb->mapTo(m_window, sb->rect().center()));
        QVERIFY(sb->Value() > 0);
        QVERIFY(m_window->hasFocus());
        press(forward);
        QCOMPARE(m_window->lastTool(), QStringLiteral("miNext"));
    }

    void aBarThatGoesGivesTheFocusToTheWindow_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Qt::Key>("forward");
        QTest::addColumn<QSize>("size"); // of the window: it has room for the picture in one direction
        QTest::newRow("upright") << "sb1" << Qt::Key_Down << QSize(900, 1800);
        QTest::newRow("lying") << "sb2" << Qt::Key_Right << QSize(2300, 700);
    }
    void aBarThatGoesGivesTheFocusToTheWindow()
    {
        QFETCH(QString, name);
        QFETCH(Qt::Key, forward);
        QFETCH(QSize, size);
        QVERIFY(tabTo(bar(name)));
        m_window->resize(size);
        QTRY_VERIFY(bar(name)->isHidden());
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(m_window));
        press(forward);
        QCOMPARE(m_window->lastTool(), QStringLiteral("miNext"));
    }
};

QTEST_MAIN(TestBarFocus)
#include "tst_barfocus.moc"
