// The arrows of a scroll bar under the mouse, what ends a press, and how the bar looks meanwhile.
#include "controls/ScrollBar.h"
#include "controls/ScrollSkin.h"
#include "ScrollMouseStage.h"

#include <QMenu>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace quorvia::controls;
using namespace quorvia::test;

class TestScrollBarMouse : public QObject, private ScrollMouseStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }
    void pressOnAnArrow_data();
    void pressOnAnArrow();
    void repeats_data();
    void repeats();
    void repeatsAtItsEnd();
    void releaseEndsThePress_data();
    void releaseEndsThePress();
    void losingTheMouse_data();
    void losingTheMouse();
    void leaving_data();
    void leaving();
    void popupTakesTheMouse();
    void releaseWithinTheChange();
    void otherButtons_data();
    void otherButtons();
    void takesNoFocus();
    void looks_data();
    void looks();
    void leavingEndsTheHover();
    void focusShows();
};

void TestScrollBarMouse::pressOnAnArrow_data()
{
    QTest::addColumn<int>("alight");
    QTest::addColumn<int>("along");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("tag");
    for (const int alight : {1, 2}) {
        QTest::addRow("first pixel, %d", alight) << alight << 0 << 49 << "DOWN";
        QTest::addRow("last of the near arrow, %d", alight) << alight << 17 << 49 << "DOWN";
        QTest::addRow("first of the far arrow, %d", alight) << alight << 352 << 51 << "UP";
        QTest::addRow("last pixel, %d", alight) << alight << 369 << 51 << "UP";
    }
}

void TestScrollBarMouse::pressOnAnArrow()
{
    QFETCH(int, alight);
    QFETCH(int, along);
    QFETCH(int, value);
    make(alight, 100);
    m_bar->SetValue(50);
    QSignalSpy changes(m_bar, &ScrollBar::Change);
    press(along);
    QVERIFY(changes.size() >= 1);
    QCOMPARE(changes.at(0).at(0).toInt(), value);
    QVERIFY(tMove()->isActive());
    QCOMPARE(tMove()->interval(), 50); // also before the first repeat
    QTEST(tMove()->property("tag").toString(), "tag");
    QCOMPARE(m_bar->Dragging(), false);
}

void TestScrollBarMouse::repeats_data()
{
    QTest::addColumn<int>("along");
    QTest::addColumn<QList<int>>("values");
    QTest::newRow("back") << 5 << QList<int>{49, 48, 47, 46};
    QTest::newRow("forward") << 360 << QList<int>{51, 52, 53, 54};
}

void TestScrollBarMouse::repeats()
{
    QFETCH(int, along);
    QFETCH(QList<int>, values);
    make(1, 100);
    m_bar->SetValue(50);
    QSignalSpy changes(m_bar, &ScrollBar::Change);
    press(along);
    QTRY_VERIFY(changes.size() >= values.size());
    for (qsizetype i = 0; i < values.size(); ++i)
        QCOMPARE(changes.at(i).at(0).toInt(), values.at(i));
}

void TestScrollBarMouse::repeatsAtItsEnd()
{
    make(1, 100);
    QSignalSpy changes(m_bar, &ScrollBar::Change);
    press(5);
    QTRY_VERIFY(changes.size() >= 3);
    for (const QVariantList& change : changes)
        QCOMPARE(change.at(0).toInt(), 0);
}

void TestScrollBarMouse::releaseEndsThePress_data()
{
    QTest::addColumn<int>("along");
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("arrow, left") << 5 << Qt::LeftButton;
    QTest::newRow("arrow, right") << 5 << Qt::RightButton;
    QTest::newRow("track, left") << 300 << Qt::LeftButton;
    QTest::newRow("track, right") << 300 << Qt::RightButton;
}

void TestScrollBarMouse::releaseEndsThePress()
{
    QFETCH(int, along);
    QFETCH(Qt::MouseButton, button);
    make(1, 100);
    press(along);
    QVERIFY(m_bar->Dragging() || tMove()->isActive());
    if (button != Qt::LeftButton)
        press(along, button);
    release(along, button);
    QVERIFY(!m_bar->Dragging());
    QVERIFY(!tMove()->isActive());
}

void TestScrollBarMouse::losingTheMouse_data()
{
    QTest::addColumn<int>("along");
    QTest::addColumn<QString>("how");
    for (const QString how :
         {"hidden", "window hidden", "window inactive", "disabled", "released elsewhere"}) {
        QTest::newRow(qPrintable("arrow, " + how)) << 5 << how;
        QTest::newRow(qPrintable("track, " + how)) << 300 << how;
    }
}

void TestScrollBarMouse::losingTheMouse()
{
    QFETCH(int, along);
    QFETCH(QString, how);
    make(1, 100);
    press(along);
    QVERIFY(m_bar->Dragging() || tMove()->isActive());
    QWidget other;
    if (how == QLatin1String("hidden")) {
        m_bar->hide();
    } else if (how == QLatin1String("window hidden")) {
        m_window->hide();
    } else if (how == QLatin1String("window inactive")) {
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
    } else if (how == QLatin1String("disabled")) {
        m_window->setEnabled(false);
    } else {
        send(QEvent::MouseMove, along, Qt::NoButton);
    }
    QVERIFY(!m_bar->Dragging());
    QVERIFY(!tMove()->isActive());
}

void TestScrollBarMouse::leaving_data()
{
    QTest::addColumn<int>("along");
    QTest::newRow("arrow") << 5;
    QTest::newRow("track") << 300;
}

/// A pointer that leaves with its button down comes back; one without was released elsewhere.
void TestScrollBarMouse::leaving()
{
    QFETCH(int, along);
    make(1, 100);
    const auto leave = [this] {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(m_bar, &event);
    };
    press(along);
    leave();
    QVERIFY(m_bar->Dragging() || tMove()->isActive());
    release(along);

    const QPointF position = at(along) - QPoint(10, 20);
    QMouseEvent unseen(QEvent::MouseButtonPress, position, m_bar->mapToGlobal(position), Qt::LeftButton,
                       Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_bar, &unseen);
    QVERIFY(m_bar->Dragging() || tMove()->isActive());
    leave();
    QVERIFY(!m_bar->Dragging());
    QVERIFY(!tMove()->isActive());
}

void TestScrollBarMouse::popupTakesTheMouse()
{
    make(1, 100);
    press(5);
    QVERIFY(tMove()->isActive());
    QMenu menu;
    menu.addAction(QStringLiteral("Entry"));
    menu.popup(m_window->mapToGlobal(QPoint(100, 100)));
    QTRY_VERIFY(!tMove()->isActive());
}

/// Whoever hears of a change may let events run; the release may be among them.
void TestScrollBarMouse::releaseWithinTheChange()
{
    make(1, 100);
    int changes = 0;
    connect(m_bar, &ScrollBar::Change, this, [&] {
        ++changes;
        send(QEvent::MouseMove, 5, Qt::NoButton);
    });
    press(5);
    QCOMPARE(changes, 1);
    QVERIFY(!tMove()->isActive());
}

void TestScrollBarMouse::otherButtons_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<bool>("acts");
    QTest::newRow("left") << Qt::LeftButton << true;
    QTest::newRow("middle") << Qt::MiddleButton << true;
    QTest::newRow("right") << Qt::RightButton << false;
    QTest::newRow("back") << Qt::BackButton << false;
}

void TestScrollBarMouse::otherButtons()
{
    QFETCH(Qt::MouseButton, button);
    QFETCH(bool, acts);
    make(1, 1000);
    press(200, button);
    QCOMPARE(m_bar->Dragging(), acts);
    QCOMPARE(m_bar->Value() != 0, acts);
    release(200, button);
}

void TestScrollBarMouse::takesNoFocus()
{
    m_window->setFocusPolicy(Qt::StrongFocus);
    make(1, 10);
    m_window->setFocus();
    press(5);
    QVERIFY(m_window->hasFocus());
    QVERIFY(!m_bar->hasFocus());
}

void TestScrollBarMouse::looks_data()
{
    QTest::addColumn<int>("along");
    QTest::addColumn<bool>("pressed");
    QTest::addColumn<SkinState>("nearArrow");
    QTest::addColumn<SkinState>("farArrow");
    QTest::addColumn<SkinState>("thumb");
    constexpr SkinState normal = SkinState::Normal;
    QTest::newRow("over the near arrow") << 5 << false << SkinState::Hovered << normal << normal;
    QTest::newRow("over the far arrow") << 360 << false << normal << SkinState::Hovered << normal;
    QTest::newRow("over the thumb") << 60 << false << normal << normal << SkinState::Hovered;
    QTest::newRow("over the track") << 300 << false << normal << normal << normal;
    QTest::newRow("near arrow pressed") << 5 << true << SkinState::Pressed << normal << normal;
    QTest::newRow("far arrow pressed") << 360 << true << normal << SkinState::Pressed << normal;
    QTest::newRow("thumb pressed") << 60 << true << normal << normal << SkinState::Pressed;
    QTest::newRow("track pressed") << 300 << true << normal << normal << SkinState::Pressed;
}

void TestScrollBarMouse::looks()
{
    QFETCH(int, along);
    QFETCH(bool, pressed);
    QFETCH(SkinState, nearArrow);
    QFETCH(SkinState, farArrow);
    QFETCH(SkinState, thumb);
    make(1, 50);
    moveTo(along);
    if (pressed)
        press(along);
    const QImage picture = shown();
    std::shared_ptr<ScrollSkin> skin = ScrollSkin::forRatio(1);
    // On the plate of an arrow, beside its stroke.
    QImage arrow(18, 18, QImage::Format_RGB32);
    const auto colorOfArrow = [&](SkinRole role, SkinState state) {
        QPainter painter(&arrow);
        painter.drawPixmap(0, 0, skin->picture(SkinRole::vspace));
        painter.drawPixmap(0, 0, skin->picture(role, state));
        return arrow.pixel(4, 5);
    };
    QCOMPARE(picture.pixel(4, 5), colorOfArrow(SkinRole::varrowtop, nearArrow));
    QCOMPARE(picture.pixel(4, barLength - 18 + 5), colorOfArrow(SkinRole::varrowbottom, farArrow));
    QCOMPARE(picture.pixel(12, thumbStart() + 20),
             skin->picture(SkinRole::vsepbg, thumb).toImage().pixel(12, 0));
}

void TestScrollBarMouse::leavingEndsTheHover()
{
    make(1, 50);
    const QImage before = shown();
    moveTo(5);
    QVERIFY(shown() != before);
    QTest::mouseMove(m_window->windowHandle(), QPoint(395, 395));
    QTRY_COMPARE(shown(), before);
}

void TestScrollBarMouse::focusShows()
{
    m_bar->setFocusPolicy(Qt::StrongFocus);
    make(1, 50);
    m_bar->clearFocus();
    const auto border = [this] { return shown().pixel(3, thumbStart() + 20); };
    const auto expected = [](SkinState state) {
        return ScrollSkin::forRatio(1)->picture(SkinRole::vsepbg, state).toImage().pixel(3, 0);
    };
    QCOMPARE(border(), expected(SkinState::Normal));
    m_bar->setFocus();
    QCOMPARE(border(), expected(SkinState::Focused));
    m_bar->clearFocus();
    QCOMPARE(border(), expected(SkinState::Normal));
}

QTEST_MAIN(TestScrollBarMouse)
#include "tst_scrollbarmouse.moc"
