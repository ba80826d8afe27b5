// Long work by a clock of the test's own: when events run, when the box comes, and what ends the work. Input
// goes through the queue of the window system, as the user's does.
#include "platform/LongWork.h"

#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <QWindow>

#include <algorithm>
#include <functional>
#include <memory>

using namespace quorvia::platform;

namespace {

constexpr QPoint afar(700, 700); ///< on the screen, outside of all windows

/// Counts what reaches it.
class Witness : public QWidget
{
  public:
    Witness() { resize(120, 80); }

    int keys = 0;
    int presses = 0;
    int enters = 0;
    int paints = 0;

  protected:
    void keyPressEvent(QKeyEvent*) override { ++keys; }
    void mousePressEvent(QMouseEvent*) override { ++presses; }
    void enterEvent(QEnterEvent*) override { ++enters; }
    void paintEvent(QPaintEvent*) override { ++paints; }
};

/// The box, null when none is shown.
QDialog* box()
{
    QDialog* found = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == "LongWork" && widget->isVisible()) {
            Q_ASSERT(!found);
            found = qobject_cast<QDialog*>(widget);
        }
    }
    return found;
}

QProgressBar& bar()
{
    return *box()->findChild<QProgressBar*>("Progress");
}

void typeInto(QWidget& widget, Qt::Key key)
{
    qt_handleKeyEvent(widget.window()->windowHandle(), QEvent::KeyPress, key, Qt::NoModifier, QString());
    qt_handleKeyEvent(widget.window()->windowHandle(), QEvent::KeyRelease, key, Qt::NoModifier, QString());
}

void clickOn(QWidget& widget)
{
    QWindow* const window = widget.window()->windowHandle();
    const QPointF at = widget.mapTo(widget.window(), widget.rect().center());
    const QPointF onScreen = widget.mapToGlobal(widget.rect().center());
    qt_handleMouseEvent(window, at, onScreen, Qt::LeftButton, Qt::LeftButton, QEvent::MouseButtonPress,
                        Qt::NoModifier, 0);
    qt_handleMouseEvent(window, at, onScreen, Qt::NoButton, Qt::LeftButton, QEvent::MouseButtonRelease,
                        Qt::NoModifier, 1);
}

/// Moves the mouse into `widget` from afar. This alone goes through the queue of input here: the keys and
/// clicks above are there at once.
void pointAt(QWidget& widget)
{
    QCursor::setPos(afar);
    QCursor::setPos(widget.mapToGlobal(widget.rect().center()));
}

/// As the window manager asks for it.
void closeByUser(QWidget& widget)
{
    widget.windowHandle()->close();
}

} // namespace

class TestLongWork : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_now = 12345; // any moment
        QCursor::setPos(afar);
        m_owner = std::make_unique<Witness>();
        m_owner->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_owner.get()));
        QVERIFY(!m_owner->frameGeometry().contains(afar));
        m_owner->enters = 0;
    }
    void cleanup()
    {
        m_owner.reset();
        QVERIFY(!box());
    }

    void eventsRunEveryFiftyMilliseconds()
    {
        LongWork work(m_owner.get(), "Working", clock());
        QList<int> ranAt;
        for (int past = 0; past <= 200; past += 10) {
            QTimer::singleShot(0, m_owner.get(), [&ranAt, past, this] {
                if (ranAt.isEmpty() || ranAt.last() != m_past)
                    ranAt << m_past;
            });
            m_past = past;
            QVERIFY(work.goOn(past, 200));
            m_now += 10;
        }
        QCOMPARE(ranAt, QList<int>({50, 100, 150, 200}));
    }

    void slowEventsLeaveTimeForTheWork()
    {
        LongWork work(m_owner.get(), "Working", clock());
        int ran = 0;
        const auto takeLong = [&ran, this] {
            ++ran;
            m_now += 500;
        };
        m_now += 50;
        QTimer::singleShot(0, this, takeLong);
        QVERIFY(work.goOn());
        QCOMPARE(ran, 1);
        QTimer::singleShot(0, this, takeLong);
        m_now += 49;
        QVERIFY(work.goOn());
        QCOMPARE(ran, 1);
        m_now += 1;
        QVERIFY(work.goOn());
        QCOMPARE(ran, 2);
    }

    void quickWorkHasNoBox()
    {
        {
            LongWork work(m_owner.get(), "Working", clock());
            for (int past = 0; past < 1000; ++past, ++m_now) {
                QVERIFY(work.goOn(past, 1000));
                QVERIFY(!box());
            }
        }
        QVERIFY(!box());
        QVERIFY(!m_owner->findChild<QDialog*>());
    }

    void afterASecondABoxComes()
    {
        const QString text = "Copying <b>A&B</b>";
        {
            LongWork work(m_owner.get(), text, clock());
            m_now += 1000;
            QVERIFY(work.goOn(30, 40));
            QVERIFY(box());
            QVERIFY(box()->parentWidget() == m_owner.get());
            QCOMPARE(box()->windowModality(), Qt::ApplicationModal);
            QCOMPARE(box()->accessibleName(), text);
            QCOMPARE(box()->findChild<QLabel*>("Text")->text(), text);
            QCOMPARE(box()->findChild<QLabel*>("Text")->textFormat(), Qt::PlainText);
            QCOMPARE(bar().accessibleName(), text);
            QVERIFY(box()->findChild<QPushButton*>("Cancel"));
            QVERIFY(work.goOn(31, 40));
        }
        QVERIFY(!box());
        QVERIFY(!m_owner->findChild<QDialog*>());
    }

    void theBarTellsHowFarItIs_data()
    {
        QTest::addColumn<int>("done");
        QTest::addColumn<int>("total");
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("maximum");
        QTest::newRow("on the way") << 3 << 10 << 3 << 10;
        QTest::newRow("begin") << 0 << 10 << 0 << 10;
        QTest::newRow("end") << 10 << 10 << 10 << 10;
        QTest::newRow("beyond the end") << 11 << 10 << 10 << 10;
        QTest::newRow("before the begin") << -1 << 10 << 0 << 10;
        QTest::newRow("not known") << 7 << 0 << 0 << 0;
        QTest::newRow("less than none") << 7 << -5 << 0 << 0;
    }
    void theBarTellsHowFarItIs()
    {
        QFETCH(int, done);
        QFETCH(int, total);
        LongWork work(m_owner.get(), "Working", clock());
        m_now += 1000;
        QVERIFY(work.goOn(5, 6));
        QCOMPARE(bar().value(), 5);
        m_now += 50;
        QVERIFY(work.goOn(done, total));
        QTEST(bar().value(), "value");
        QCOMPARE(bar().minimum(), 0);
        QTEST(bar().maximum(), "maximum");
    }

    void theUserCancels_data()
    {
        using Act = std::function<void(QDialog&)>;
        QTest::addColumn<Act>("act");
        QTest::newRow("click") << Act(
            [](QDialog& shown) { clickOn(*shown.findChild<QPushButton*>("Cancel")); });
        QTest::newRow("escape") << Act([](QDialog& shown) { typeInto(shown, Qt::Key_Escape); });
        QTest::newRow("close") << Act([](QDialog& shown) { closeByUser(shown); });
    }
    void theUserCancels()
    {
        QFETCH(std::function<void(QDialog&)>, act);
        LongWork work(m_owner.get(), "Working", clock());
        m_now += 1000;
        QVERIFY(work.goOn(1, 9));
        QTimer::singleShot(0, box(), [act] { act(*box()); });
        QVERIFY(work.goOn(2, 9)); // no turn yet
        m_now += 50;
        QVERIFY(!work.goOn(3, 9));
        QVERIFY(!box());
        m_now += 5000;
        QVERIFY(!work.goOn(4, 9));
        QVERIFY(!box());
    }

    void enterDoesNotCancel()
    {
        LongWork work(m_owner.get(), "Working", clock());
        m_now += 1000;
        QVERIFY(work.goOn(1, 9));
        typeInto(*box(), Qt::Key_Return);
        m_now += 50;
        QVERIFY(work.goOn(2, 9));
        QVERIFY(box());
    }

    void anOwnerThatGoesEndsTheWork_data()
    {
        QTest::addColumn<int>("past");
        QTest::newRow("before the box") << 50;
        QTest::newRow("as the box comes") << 1000;
        QTest::newRow("while it stands") << 1500;
    }
    void anOwnerThatGoesEndsTheWork()
    {
        QFETCH(int, past);
        LongWork work(m_owner.get(), "Working", clock());
        if (past > 1000) {
            m_now += 1000;
            QVERIFY(work.goOn());
            m_now -= 1000;
        }
        QTimer::singleShot(0, this, [this] { m_owner.reset(); });
        m_now += past;
        QVERIFY(!work.goOn());
        QVERIFY(!m_owner);
        m_now += 5000;
        QVERIFY(!work.goOn());
        QVERIFY(!box());
    }

    void anOwnerThatTheWorkItselfDestroysEndsIt()
    {
        LongWork work(m_owner.get(), "Working", clock());
        QVERIFY(work.goOn());
        m_owner.reset();
        QVERIFY(!work.goOn());
    }

    void withoutAnOwnerABoxComesToo()
    {
        LongWork work(nullptr, "Working", clock());
        m_now += 1000;
        QVERIFY(work.goOn());
        QVERIFY(box() && !box()->parentWidget());
    }

    void paintingGoesOn_data()
    {
        QTest::addColumn<int>("past");
        QTest::newRow("without a box") << 0;
        QTest::newRow("with a box") << 1000;
    }
    void paintingGoesOn()
    {
        QFETCH(int, past);
        LongWork work(m_owner.get(), "Working", clock());
        m_now += past;
        QVERIFY(work.goOn());
        QCOMPARE(box() != nullptr, past > 0);
        const int before = m_owner->paints;
        m_owner->update();
        // Time that the work itself takes: the toolkit paints some milliseconds after it was asked to.
        QElapsedTimer timer;
        timer.start();
        for (const qint64 begin = m_now; m_owner->paints == before && timer.elapsed() < 5000;) {
            m_now = std::min(begin + timer.elapsed(), begin + 900);
            QVERIFY(work.goOn());
        }
        QVERIFY(m_owner->paints > before);
    }

    void inputWaitsForTheEndOfQuickWork()
    {
        {
            LongWork work(m_owner.get(), "Working", clock());
            pointAt(*m_owner);
            for (int past = 0; past < 1000; past += 50, m_now += 50)
                QVERIFY(work.goOn());
            QCOMPARE(m_owner->enters, 0);
        }
        QTRY_VERIFY(m_owner->enters > 0);
    }

    void onceTheBoxShowsInputReachesItAlone()
    {
        LongWork work(m_owner.get(), "Working", clock());
        pointAt(*m_owner);
        m_now += 1000;
        QVERIFY(work.goOn());
        typeInto(*m_owner, Qt::Key_A);
        clickOn(*m_owner);
        QCOMPARE(m_owner->keys + m_owner->presses + m_owner->enters, 0);
        Witness inBox;
        inBox.setParent(box());
        inBox.show();
        pointAt(inBox);
        m_now += 50;
        QVERIFY(work.goOn());
        QVERIFY(inBox.enters > 0);
        QCOMPARE(m_owner->enters, 0);
    }

    void inputFromBeforeTheBoxEndsAtIt()
    {
        {
            LongWork work(m_owner.get(), "Working", clock());
            pointAt(*m_owner);
            QCursor::setPos(afar);
            m_now += 500;
            QVERIFY(work.goOn());
            m_now += 500;
            QVERIFY(work.goOn());
            QVERIFY(box());
        }
        QCoreApplication::processEvents();
        QCOMPARE(m_owner->enters, 0);
        pointAt(*m_owner);
        QTRY_COMPARE(m_owner->enters, 1);
    }

    void workInsideOtherWorkSharesItsBox()
    {
        LongWork outer(m_owner.get(), "Outer", clock());
        m_now += 900;
        QVERIFY(outer.goOn(2, 5));
        {
            LongWork inner(m_owner.get(), "Inner", clock());
            m_now += 99;
            QVERIFY(inner.goOn(80, 100));
            QVERIFY(!box());
            m_now += 50;
            QVERIFY(inner.goOn(81, 100));
            QVERIFY(box());
            QCOMPARE(box()->accessibleName(), QString("Outer"));
            QCOMPARE(bar().value(), 2);
            m_now += 5000;
            QVERIFY(inner.goOn(82, 100));
            QCOMPARE(m_owner->findChildren<QDialog*>().size(), 1);
        }
        QVERIFY(box());
        QVERIFY(outer.goOn(3, 5));
    }

    void cancellingEndsInnerAndOuterWork()
    {
        {
            LongWork outer(m_owner.get(), "Outer", clock());
            LongWork inner(nullptr, "Inner", clock());
            m_now += 1000;
            QVERIFY(outer.goOn());
            QTimer::singleShot(0, box(), [] { typeInto(*box(), Qt::Key_Escape); });
            m_now += 50;
            QVERIFY(!inner.goOn());
            QVERIFY(!outer.goOn());
            LongWork late(nullptr, "Late", clock());
            QVERIFY(!late.goOn());
        }
        LongWork next(m_owner.get(), "Next", clock());
        m_now += 999;
        QVERIFY(next.goOn());
        QVERIFY(!box());
    }

    void theOwnerOfInnerWorkEndsThatAlone()
    {
        LongWork outer(nullptr, "Outer", clock());
        {
            LongWork inner(m_owner.get(), "Inner", clock());
            QTimer::singleShot(0, this, [this] { m_owner.reset(); });
            m_now += 50;
            QVERIFY(!inner.goOn());
            QVERIFY(!m_owner);
        }
        QVERIFY(outer.goOn());
    }

    void theOwnerOfOuterWorkEndsInnerWorkToo()
    {
        LongWork outer(m_owner.get(), "Outer", clock());
        LongWork inner(nullptr, "Inner", clock());
        QTimer::singleShot(0, this, [this] { m_owner.reset(); });
        m_now += 1000;
        QVERIFY(!inner.goOn());
        QVERIFY(!m_owner);
        QVERIFY(!inner.goOn());
        QVERIFY(!outer.goOn());
    }

    void innerWorkMayOutliveTheOuter()
    {
        auto outer = std::make_unique<LongWork>(m_owner.get(), "Outer", clock());
        LongWork inner(m_owner.get(), "Inner", clock());
        outer.reset();
        QVERIFY(!inner.goOn());
        LongWork next(m_owner.get(), "Next", clock());
        QVERIFY(next.goOn());
    }

    void withoutAClockTimePassesByItself()
    {
        QElapsedTimer timer;
        timer.start();
        LongWork work(m_owner.get(), "Working");
        bool ran = false;
        QTimer::singleShot(0, this, [&ran] { ran = true; });
        while (!ran && timer.elapsed() < 5000)
            QVERIFY(work.goOn());
        QVERIFY(ran && timer.elapsed() >= 50);
        while (!box() && timer.elapsed() < 10000)
            QVERIFY(work.goOn());
        QVERIFY(box() && timer.elapsed() >= 1000);
    }

  private:
    LongWork::Clock clock()
    {
        return [this] { return m_now; };
    }

    qint64 m_now = 0;
    int m_past = 0;
    std::unique_ptr<Witness> m_owner;
};

QTEST_MAIN(TestLongWork)
#include "tst_longwork.moc"
