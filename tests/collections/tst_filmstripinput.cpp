// Mouse, wheel and keyboard over the filmstrip.
#include "FilmBench.h"

#include <QContextMenuEvent>
#include <QScreen>
#include <QSignalSpy>
#include <QWheelEvent>

using namespace quorvia;
using namespace quorvia::test;

namespace {

const QColor red(200, 30, 30);
constexpr int left = 1;
constexpr int right = 2;

QList<QVariant> row(std::initializer_list<QVariant> values)
{
    return values;
}

} // namespace

class TestFilmstripInput : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<FilmBench>();
        const int middle = screen().width() / 2;
        strip().move(middle - 300, 100);
        connect(&strip(), &collections::Filmstrip::MouseDown, this, [this] { m_order.append("down"); });
        connect(&strip(), &collections::Filmstrip::MouseUp, this, [this] { m_order.append("up"); });
        connect(&strip(), &collections::Filmstrip::MouseMove, this, [this] { m_order.append("move"); });
        connect(&strip(), &collections::Filmstrip::IndexSelected, this,
                [this](int index) { m_order.append("selected " + QString::number(index)); });
        connect(&strip(), &collections::Filmstrip::ImageClicked, this,
                [this](int index, int button, int shift) {
                    m_order.append(QStringLiteral("clicked %1 %2 %3").arg(index).arg(button).arg(shift));
                });
        connect(&strip(), &collections::Filmstrip::ImageHoverOver, this,
                [this](int index) { m_order.append("over " + QString::number(index)); });
    }
    void cleanup()
    {
        m_bench.reset();
        m_order.clear();
    }

    void aClickTellsWhatItMeant()
    {
        m_bench->addMany(3);
        QVERIFY(m_bench->draws());
        QTest::mouseClick(&surface(), Qt::RightButton, Qt::ControlModifier, QPoint(200, 50));
        QCOMPARE(m_order, QStringList({"down", "up", "selected 1", "clicked 1 2 2"}));
    }

    void placesAreTwips()
    {
        m_bench->addMany(3);
        QVERIFY(m_bench->draws());
        QSignalSpy down(&strip(), &collections::Filmstrip::MouseDown);
        QTest::mousePress(&surface(), Qt::LeftButton, Qt::ShiftModifier, QPoint(200, 50));
        QCOMPARE(down.takeFirst(), row({left, 1, 3000.0, 750.0}));
        QTest::mouseRelease(&surface(), Qt::LeftButton, {}, QPoint(200, 50));
    }

    void aClickOffTheImagesSelectsNothing()
    {
        m_bench->addMany(1);
        strip().SetNumberOfRows(2);
        QVERIFY(m_bench->settles());
        QTest::mouseClick(&surface(), Qt::LeftButton, {}, QPoint(20, 100));
        QCOMPARE(m_order, QStringList({"down", "up"}));
    }

    void hoveringNamesTheImage()
    {
        m_bench->addMany(3);
        strip().add(QStringLiteral("/some/<b>bold</b>.png"));
        strip().SetNumberOfRows(2);
        QVERIFY(m_bench->settles());
        QTest::mouseMove(&surface(), QPoint(20, 20));
        QCOMPARE(m_order, QStringList({"move", "over 0"}));
        QVERIFY(surface().toolTip().contains(QStringLiteral("p00000.png")));
        QVERIFY(!surface().toolTip().contains(QLatin1Char('/') + QStringLiteral("pics")));
        QTest::mouseMove(&surface(), QPoint(100, 90));
        QCOMPARE(m_order.constLast(), QStringLiteral("over 3"));
        QVERIFY(!surface().toolTip().contains(QStringLiteral("<b>")));
        m_order.clear();
        strip().Clear();
        QTest::mouseMove(&surface(), QPoint(22, 22));
        QCOMPARE(m_order, QStringList("move"));
        QCOMPARE(surface().toolTip(), QString());
    }

    void theBareSurfaceTellsOfMoves()
    {
        m_bench->addMany(1);
        QVERIFY(m_bench->draws());
        QSignalSpy moves(&strip(), &collections::Filmstrip::MouseMove);
        QTest::mouseMove(&strip(), QPoint(400, 30));
        QCOMPARE(moves.takeLast(), row({0, 0, 6000.0, 450.0}));
        QVERIFY(!m_order.contains(QStringLiteral("over 0")));
    }

    void aMoveOfTenPixelsIsAClick()
    {
        fillWide();
        drag(200, 210);
        QVERIFY(!m_bench->timer("tMove").isActive());
        QTest::mouseRelease(&surface(), Qt::LeftButton, {}, QPoint(210, 20));
        QCOMPARE(m_order, QStringList({"down", "up", "selected 1", "clicked 1 1 0"}));
    }

    void aDragFollowsTheHand()
    {
        fillWide();
        m_bench->bar().SetValue(300); // 1000 pixels
        QCOMPARE(surface().x(), -1000);
        const QPoint begin = surface().mapToGlobal(QPoint(1200, 20));
        QTest::mousePress(&surface(), Qt::LeftButton, {}, QPoint(1200, 20));
        moveHeld(begin - QPoint(61, 0));
        QVERIFY(m_bench->timer("tMove").isActive());
        QTRY_COMPARE(m_bench->bar().Value(), 318); // which would put it at -1060
        QCOMPARE(surface().x(), -1061);
        moveHeld(begin + QPoint(40, 0));
        QTRY_COMPARE(surface().x(), -960);
        QTest::mouseRelease(&surface(), Qt::LeftButton, {}, QPoint(1200, 20));
        QVERIFY(!m_bench->timer("tMove").isActive());
        QCOMPARE(m_order, QStringList({"down", "up"}));
        QTest::mouseClick(&surface(), Qt::LeftButton, {}, QPoint(1200, 20)); // the drag is over
        QVERIFY(m_order.constLast().startsWith(QStringLiteral("clicked")));
    }

    void anotherListEndsTheDrag_data()
    {
        QTest::addColumn<int>("more"); // images added to the 60
        QTest::newRow("still whole") << 1;
        QTest::newRow("a window now") << 240;
    }

    void anotherListEndsTheDrag()
    {
        QFETCH(int, more);
        fillWide();
        m_bench->bar().SetValue(300);
        const QPoint begin = surface().mapToGlobal(QPoint(1200, 20));
        QTest::mousePress(&surface(), Qt::LeftButton, {}, QPoint(1200, 20));
        moveHeld(begin - QPoint(60, 0));
        QTRY_COMPARE(surface().x(), -1060);
        m_bench->addMany(more);
        m_bench->laysOut();
        QVERIFY(!m_bench->timer("tMove").isActive());
        moveHeld(begin - QPoint(90, 0));
        QVERIFY(m_bench->settles());
        QCOMPARE(m_bench->bar().Value(), 0);
        QCOMPARE(surface().x(), 0);
        QTest::mouseRelease(&surface(), Qt::LeftButton, {}, QPoint(100, 20));
        QCOMPARE(m_order.constLast(), QStringLiteral("up")); // no click
    }

    void nearTheScreensEdgeTheStripRunsByItself()
    {
        fillWide();
        const QPoint begin = surface().mapToGlobal(QPoint(200, 20));
        QTest::mousePress(&surface(), Qt::LeftButton, {}, QPoint(200, 20));
        moveHeld(QPoint(screen().left() + 10, begin.y()));
        QTRY_VERIFY(surface().x() < -300); // farther than any hand could pull it
        const int there = surface().x();
        moveHeld(QPoint(screen().right() - 10, begin.y()));
        QTRY_VERIFY(surface().x() > there);
        QTRY_COMPARE(surface().x(), 0);
        QTest::mouseRelease(&surface(), Qt::LeftButton, {}, QPoint(200, 20));
    }

    void aWindowIsNotDragged()
    {
        m_bench->addMany(300);
        m_bench->laysOut();
        drag(200, 450);
        QVERIFY(!m_bench->timer("tMove").isActive());
        QTest::mouseRelease(&surface(), Qt::LeftButton, {}, QPoint(450, 20));
        QVERIFY(m_order.contains(QStringLiteral("clicked 3 1 0")));
    }

    void aScrolledWindowIsHitWhereItIs()
    {
        m_bench->addMany(300);
        m_bench->laysOut();
        m_bench->bar().SetValue(100);
        QTest::mouseClick(&surface(), Qt::LeftButton, {}, QPoint(200, 20));
        QCOMPARE(m_order.constLast(), QStringLiteral("clicked 101 1 0"));
    }

    void aReleaseThatWentElsewhereEndsTheDrag()
    {
        fillWide();
        drag(200, 260);
        QVERIFY(m_bench->timer("tMove").isActive());
        strip().hide();
        QVERIFY(!m_bench->timer("tMove").isActive());
        strip().show();
        QTest::mouseMove(&surface(), QPoint(230, 30));
        QVERIFY(m_order.constLast().startsWith(QStringLiteral("over")));
    }

    void theWheelScrollsTheStrip()
    {
        fillWide();
        turn(-60); // half a notch of a touchpad
        QCOMPARE(surface().x(), 0);
        turn(-60);
        const int moved = -surface().x();
        QVERIFY(moved > 0);
        turn(120);
        QCOMPARE(surface().x(), 0);
        turn(-120, Qt::ControlModifier);
        QCOMPARE(surface().x(), 0);
    }

    void theWheelOverAStripThatFitsDoesNothing()
    {
        m_bench->addMany(2);
        QVERIFY(m_bench->draws());
        turn(-120);
        QCOMPARE(surface().x(), 0);
    }

    void keysWalkAndClick()
    {
        m_bench->addMany(40, red);
        strip().SetNumberOfRows(2);
        QVERIFY(m_bench->settles());
        focus();
        QCOMPARE(strip().accessibleDescription(), QStringLiteral("p00000.png"));
        for (const auto& [key, name] :
             std::initializer_list<std::pair<Qt::Key, const char*>>{{Qt::Key_Right, "p00002.png"},
                                                                    {Qt::Key_Down, "p00003.png"},
                                                                    {Qt::Key_Left, "p00001.png"},
                                                                    {Qt::Key_Up, "p00000.png"},
                                                                    {Qt::Key_Up, "p00000.png"},
                                                                    {Qt::Key_End, "p00039.png"},
                                                                    {Qt::Key_Right, "p00039.png"},
                                                                    {Qt::Key_Home, "p00000.png"}}) {
            QTest::keyClick(&strip(), key);
            QCOMPARE(strip().accessibleDescription(), QLatin1String(name));
        }
        QTest::keyClick(&strip(), Qt::Key_Right);
        QTest::keyClick(&strip(), Qt::Key_Return);
        QCOMPARE(m_order, QStringList({"selected 2", "clicked 2 1 0"}));
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(5, 5), strip().mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&strip(), &menu);
        QCOMPARE(m_order.constLast(), QStringLiteral("clicked 2 %1 0").arg(right));
    }

    void keysScrollToTheirCell_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QSize>("size");
        QTest::newRow("whole") << 60 << 1 << QSize(600, 120);
        QTest::newRow("window") << 260 << 1 << QSize(600, 120);
        QTest::newRow("a wide window in rows") << 250 << 3 << QSize(1914, 162);
    }

    void keysScrollToTheirCell()
    {
        QFETCH(int, count);
        QFETCH(int, rows);
        QFETCH(QSize, size);
        strip().resize(size);
        strip().SetNumberOfRows(rows);
        m_bench->addMany(count);
        m_bench->laysOut();
        focus();
        QTest::keyClick(&strip(), Qt::Key_End);
        QVERIFY(m_bench->bar().Value() > m_bench->bar().Max() - 4);
        QTest::keyClick(&strip(), Qt::Key_Home);
        QCOMPARE(m_bench->bar().Value(), 0);
        QTest::keyClick(&strip(), Qt::Key_PageDown);
        QTest::keyClick(&strip(), Qt::Key_PageDown);
        if (count / rows > 100) // more than two pages
            QVERIFY(m_bench->bar().Value() > 0);
    }

    void otherKeysAreTheWindows()
    {
        m_bench->addMany(3);
        QVERIFY(m_bench->draws());
        for (const int key : {int(Qt::Key_F2), int(Qt::Key_Delete), int(Qt::Key_A)}) {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
            QCoreApplication::sendEvent(&strip(), &event);
            QVERIFY(!event.isAccepted());
        }
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Right, Qt::ControlModifier);
        QCoreApplication::sendEvent(&strip(), &held);
        QVERIFY(!held.isAccepted());
    }

    void keysOnAnEmptyStripAreTheWindows()
    {
        focus();
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
        QCoreApplication::sendEvent(&strip(), &event);
        QVERIFY(!event.isAccepted());
    }

    void theFocusIsFramed()
    {
        m_bench->addMany(3, red);
        QVERIFY(m_bench->draws());
        const QImage before = surface().grab().toImage();
        focus();
        QVERIFY(surface().grab().toImage() != before);
        strip().clearFocus();
        QCOMPARE(surface().grab().toImage(), before);
    }

  private:
    collections::Filmstrip& strip() const { return *m_bench->strip; }
    QWidget& surface() const { return m_bench->surface(); }
    QRect screen() const { return strip().screen()->geometry(); }

    void fillWide()
    {
        m_bench->addMany(60);
        m_bench->laysOut();
    }

    void focus()
    {
        strip().activateWindow();
        strip().setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(strip().hasFocus());
    }

    void moveHeld(QPoint global)
    {
        const QPointF local = surface().mapFromGlobal(global);
        QMouseEvent event(QEvent::MouseMove, local, QPointF(global), Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&surface(), &event);
    }

    void drag(int from, int to)
    {
        QTest::mousePress(&surface(), Qt::LeftButton, {}, QPoint(from, 20));
        moveHeld(surface().mapToGlobal(QPoint(to, 20)));
    }

    void turn(int delta, Qt::KeyboardModifiers modifiers = {})
    {
        const QPointF at(100, 30);
        QWheelEvent event(at, surface().mapToGlobal(at), {}, QPoint(0, delta), Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event); // others do not go on to the parent
        qApp->notify(&surface(), &event);
    }

    std::unique_ptr<FilmBench> m_bench;
    QStringList m_order;
};

QTEST_MAIN(TestFilmstripInput)
#include "tst_filmstripinput.moc"
