// The toolbar as a widget: what shows of the tools and what the mouse does.
#include "platform/Contrast.h"
#include "platform/Icons.h"
#include "platform/ToolBench.h"
#include "platform/ToolButton.h"
#include "platform/ToolCombo.h"
#include "platform/ToolControl.h"
#include "platform/ToolLook.h"
#include "platform/ToolMenu.h"
#include "platform/Twips.h"
#include "ToolbarBench.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QTest>

#include <cmath>

using namespace quorvia::platform;

class TestToolControl : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void startsEmpty();
    void sizesInTwips();
    void fitsIntoItsWindow();
    void showsTheBand();
    void clicks();
    void clickOnWhatHasChangedMeanwhile();
    void dropDownPartOpensItsBand();
    void dropDownPartOfNoBand();
    void cancelledDropDown();
    void disabledButtons();
    void checkedButtons();
    void toolTipsAndNames();
    void mirrored();
    void customiseMenuGivesWay();
    void hiddenBand();
    void bandsOfTheToolbarKind();
    void drawingsArePixelByPixel();
    void inkFollowsTheGround();
};

void TestToolControl::startsEmpty()
{
    ToolControl bar;
    bar.recalculateLayout();
    QVERIFY(!bar.popUp(text("NewImage")));
    QCOMPARE(bar.accessibleName(), text("Toolbar"));
    QCOMPARE(ToolControl::version(), text("1.0.000"));
    bar.resize(300, 40);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    bar.fitInto(100);
    QCOMPARE(bar.width(), 0); // no width was asked for
}

void TestToolControl::sizesInTwips()
{
    ToolControl bar;
    bar.setWidthInTwips(7000);
    bar.setHeightInTwips(600);
    QCOMPARE(bar.size(), QSize(466, 40));
    QCOMPARE(toTwips(bar.width()), 6990);
    QCOMPARE(toTwips(bar.height()), 600);
    bar.setWidthInTwips(-20);
    QCOMPARE(bar.width(), 0);
}

void TestToolControl::fitsIntoItsWindow()
{
    ToolbarBench bench;
    const int full = bench.bar->width();
    bench.bar->fitInto(100);
    QCOMPARE(bench.bar->width(), 100);
    bench.bar->fitInto(5000);
    QCOMPARE(bench.bar->width(), full);
}

void TestToolControl::showsTheBand()
{
    ToolbarBench bench;
    bench.showAll();
    QVERIFY(bench.band->size().width() > 15 * 32 * 4);
    QCOMPARE(bench.band->size().height(), 600);
    QCOMPARE(bench.bar->size() * 15, bench.band->size());
    int right = 0;
    for (const char* name : {"miOpen", "miSave", "miFit", "miText"}) {
        const ToolButton* const button = bench.button(name);
        QVERIFY2(button && button->isVisible(), name);
        QVERIFY2(button->x() > right, name);
        right = button->geometry().right();
        QCOMPARE(button->height(), 32);
    }
    QVERIFY(right < bench.bar->width());
    QCOMPARE(bench.button("miSave")->width(), 32);
    QCOMPARE(bench.button("miOpen")->width(), 46);
    QVERIFY(!bench.button("extension"));
    // A separator stands between the second and the third button.
    const QImage image = bench.bar->grab().toImage();
    const double ratio = image.devicePixelRatio();
    const QColor ground = bench.bar->palette().color(QPalette::Window);
    const auto lineIn = [&](int from, int to) {
        bool found = false;
        for (int x = int(std::ceil(from * ratio)); x < int(to * ratio); ++x)
            found |= image.pixelColor(x, image.height() / 2) != ground;
        return found;
    };
    QVERIFY(lineIn(bench.button("miSave")->geometry().right() + 1, bench.button("miFit")->x()));
    QVERIFY(!lineIn(bench.button("miOpen")->geometry().right() + 1, bench.button("miSave")->x()));
}

void TestToolControl::clicks()
{
    ToolbarBench bench;
    bench.showAll();
    QTest::mouseClick(bench.button("miSave"), Qt::LeftButton);
    QTest::mouseClick(bench.button("miSave"), Qt::RightButton);
    QTest::mouseClick(bench.button("miOpen"), Qt::LeftButton, {}, QPoint(12, 12));
    QTest::mouseClick(bench.button("miFit"), Qt::LeftButton, {},
                      ToolbarBench::openingPart(bench.button("miFit")));
    QCOMPARE(bench.record.take(), text("click miSave; click miOpen; click miFit"));
}

void TestToolControl::clickOnWhatHasChangedMeanwhile()
{
    ToolbarBench bench;
    bench.showAll();
    bench.save->set(&ToolValues::enabled, false); // the button does not show it yet
    QTest::mouseClick(bench.button("miSave"), Qt::LeftButton);
    QCOMPARE(bench.record.take(), QString());
    bench.band->clear();
    QTest::mouseClick(bench.button("miFit"), Qt::LeftButton);
    QCOMPARE(bench.record.take(), QString());
}

void TestToolControl::dropDownPartOpensItsBand()
{
    ToolbarBench bench;
    bench.showAll();
    ToolButton* const button = bench.button("miOpen");
    QTest::mousePress(button, Qt::LeftButton, {}, ToolbarBench::openingPart(button));
    const QMenu* const menu = bench.bar->menus()->menu();
    QVERIFY(menu && menu->isVisible());
    QCOMPARE(menu->objectName(), text("bOpen"));
    const QRect box(button->mapToGlobal(QPoint()), button->size());
    QCOMPARE(menu->x(), box.x());
    QVERIFY(!menu->geometry().intersects(box));
    QVERIFY(!menu->activeAction()); // the mouse chooses for itself
    const QImage held = button->grab().toImage();
    bench.bar->menus()->close();
    QCOMPARE(bench.record.take(), text("open bOpen; close bOpen"));
    QVERIFY(button->grab().toImage() != held);
}

void TestToolControl::dropDownPartOfNoBand()
{
    ToolbarBench bench;
    bench.showAll();
    bench.open->set(&ToolValues::subBand, text("nowhere"));
    QTRY_COMPARE(bench.button("miOpen")->width(), 32);
    ToolButton* const button = bench.button("miOpen");
    QTest::mouseClick(button, Qt::LeftButton, {}, ToolbarBench::openingPart(button));
    QCOMPARE(bench.record.take(), text("click miOpen"));
}

void TestToolControl::cancelledDropDown()
{
    ToolbarBench bench;
    bench.showAll();
    bench.record.cancelled = QStringList{text("bOpen")};
    ToolButton* const button = bench.button("miOpen");
    const QImage before = button->grab().toImage();
    QTest::keyClick(button, Qt::Key_Down);
    QVERIFY(!bench.bar->menus()->menu());
    QCOMPARE(bench.record.take(), text("open bOpen"));
    QCOMPARE(button->grab().toImage(), before);
}

void TestToolControl::disabledButtons()
{
    ToolbarBench bench;
    bench.showAll();
    const QImage before = bench.button("miSave")->grab().toImage();
    bench.save->set(&ToolValues::enabled, false);
    QTRY_VERIFY(!bench.button("miSave")->isEnabled());
    const QImage derived = bench.button("miSave")->grab().toImage();
    QVERIFY(derived != before);
    bench.save->setPicture(2, text("#print")); // a look of its own
    QTRY_VERIFY(bench.button("miSave")->grab().toImage() != derived);
    bench.save->setPicture(2, text("nothing"));
    QTRY_COMPARE(bench.button("miSave")->grab().toImage(), derived);
    bench.open->set(&ToolValues::enabled, false);
    QTRY_VERIFY(!bench.button("miOpen")->isEnabled());
    QTest::mouseClick(bench.button("miOpen"), Qt::LeftButton, {},
                      ToolbarBench::openingPart(bench.button("miOpen")));
    QTest::mouseClick(bench.button("miSave"), Qt::LeftButton);
    QCOMPARE(bench.record.take(), QString());
}

void TestToolControl::checkedButtons()
{
    ToolbarBench bench;
    bench.showAll();
    const QImage before = bench.button("miFit")->grab().toImage();
    bench.fit->set(&ToolValues::checked, true);
    QTRY_VERIFY(bench.button("miFit")->isChecked());
    QVERIFY(bench.button("miFit")->grab().toImage() != before);
    QTest::mouseClick(bench.button("miFit"), Qt::LeftButton);
    QVERIFY(bench.button("miFit")->isChecked()); // the tool says what is checked, not the click
    bench.fit->set(&ToolValues::checked, false);
    QTRY_VERIFY(!bench.button("miFit")->isChecked());
    QTest::mouseClick(bench.button("miFit"), Qt::LeftButton);
    QVERIFY(!bench.button("miFit")->isChecked());
}

void TestToolControl::toolTipsAndNames()
{
    ToolbarBench bench;
    bench.words->set(&ToolValues::toolTip, text("Tells more"));
    bench.settle();
    QCOMPARE(bench.button("miOpen")->toolTip(), text("Open..."));
    QCOMPARE(bench.button("miOpen")->accessibleName(), text("Open..."));
    QVERIFY(!bench.button("miOpen")->accessibleDescription().isEmpty());
    QCOMPARE(bench.button("miText")->toolTip(), text("Tells more"));
    QCOMPARE(bench.button("miText")->accessibleName(), text("Text"));
    QVERIFY(bench.button("miText")->accessibleDescription().isEmpty());
}

void TestToolControl::mirrored()
{
    ToolbarBench bench;
    bench.setLayoutDirection(Qt::RightToLeft);
    bench.showAll();
    ToolButton* const open = bench.button("miOpen");
    QVERIFY(open->x() > bench.button("miSave")->x());
    QTest::keyClick(bench.other, Qt::Key_Tab);
    QVERIFY(open->hasFocus());
    QTest::keyClick(open, Qt::Key_Left);
    QVERIFY(bench.button("miSave")->hasFocus());
    QTest::mousePress(open, Qt::LeftButton, {}, QPoint(6, 16));
    QVERIFY(bench.bar->menus()->menu());
}

void TestToolControl::customiseMenuGivesWay()
{
    ToolbarBench bench;
    bench.showAll();
    const auto rightClick = [&] {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(10, 10), bench.mapToGlobal(QPoint(10, 10)));
        event.ignore();
        QApplication::sendEvent(bench.button("miSave"), &event);
        return event.isAccepted();
    };
    QVERIFY(!rightClick()); // it is the window's
    bench.bar->model()->addBand(text("SysCustomize"), BandKind::PopUp);
    connect(bench.bar->model(), &ToolModel::BandOpen, &bench, [&](ToolBand* band, bool& cancel) {
        cancel = band->name() == text("SysCustomize");
        if (cancel)
            bench.bar->popUp(text("bOpen"));
    });
    rightClick();
    QCOMPARE(bench.record.take(), text("open SysCustomize; open bOpen"));
    QCOMPARE(bench.bar->menus()->menu()->objectName(), text("bOpen"));
}

void TestToolControl::hiddenBand()
{
    ToolbarBench bench;
    bench.showAll();
    bench.band->setVisible(false);
    QTRY_VERIFY(!bench.button("miOpen"));
    bench.band->setVisible(true);
    QTRY_VERIFY(bench.button("miOpen"));
}

void TestToolControl::bandsOfTheToolbarKind()
{
    ToolbarBench bench;
    bench.band->setVisible(false);
    ToolBand* const next = bench.bar->model()->addBand(text("bMain"), BandKind::Toolbar);
    next->append(addTool(*bench.bar->model(), "miMain"));
    bench.bar->recalculateLayout();
    QVERIFY(bench.button("miMain"));
    QVERIFY(!bench.button("miOpen"));
    next->setVisible(false);
    bench.band->setVisible(true);
    bench.bar->recalculateLayout();
    QVERIFY(!bench.button("miMain"));
    QVERIFY(bench.button("miOpen"));
    next->setVisible(true); // no longer followed
    next->clear();
    QCoreApplication::processEvents();
    QVERIFY(bench.button("miOpen"));
}

void TestToolControl::drawingsArePixelByPixel()
{
    ToolbarBench bench;
    bench.showAll();
    for (const char* name : {"miOpen", "miSave", "miFit"}) {
        const ToolButton* const button = bench.button(name);
        const QImage image = bench.grab().toImage();
        const double ratio = image.devicePixelRatio();
        const QPixmap expected = drawing(bench.bar->model()->tool(text(name))->picture(0), qRound(24 * ratio),
                                         toolLook(button->palette()).ink);
        QImage ground(expected.size(), QImage::Format_RGB32);
        ground.fill(bench.bar->palette().color(QPalette::Window));
        QPainter(&ground).drawPixmap(0, 0, expected);
        // Where the window has half a pixel the drawing stands on a whole one beside it.
        const QPointF at = QPointF(button->mapTo(&bench, QPoint(4, 4))) * ratio;
        bool found = false;
        for (const int x : {int(std::floor(at.x())), int(std::ceil(at.x()))}) {
            for (const int y : {int(std::floor(at.y())), int(std::ceil(at.y()))})
                found |=
                    image.copy(QRect(QPoint(x, y), expected.size())).convertToFormat(QImage::Format_RGB32) ==
                    ground;
        }
        QVERIFY2(found, name);
    }
}

void TestToolControl::inkFollowsTheGround()
{
    ToolbarBench bench;
    bench.showAll();
    for (const QColor& ground : {QColor(0, 121, 191), QColor(239, 239, 239), QColor(45, 45, 48)}) {
        QPalette palette = bench.bar->palette();
        palette.setColor(QPalette::Window, ground);
        bench.bar->setPalette(palette);
        const QImage image = bench.bar->grab().toImage();
        const QRect box = bench.button("miSave")->geometry();
        const double ratio = image.devicePixelRatio();
        double best = 1;
        for (int x = qRound(box.left() * ratio); x < qRound(box.right() * ratio); ++x)
            best = std::max(best, contrast(image.pixelColor(x, image.height() / 2), ground));
        QVERIFY2(best >= 4.5, qPrintable(ground.name()));
    }
}

QTEST_MAIN(TestToolControl)
#include "tst_toolcontrol.moc"
