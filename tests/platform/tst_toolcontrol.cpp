// The toolbar as a widget: what shows of the tools, what mouse and keys do, what follows the model and how
// often it paints for that.
#include "platform/Contrast.h"
#include "platform/Icons.h"
#include "platform/ToolBench.h"
#include "platform/ToolButton.h"
#include "platform/ToolCombo.h"
#include "platform/ToolControl.h"
#include "platform/ToolLook.h"
#include "platform/ToolMenu.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHash>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QTest>

#include <cmath>

using namespace quorvia::platform;

namespace {

/// Counts the paint events of widgets.
class PaintCounter : public QObject
{
  public:
    void watch(QWidget* widget)
    {
        widget->installEventFilter(this);
        const QList<QWidget*> inner = widget->findChildren<QWidget*>();
        for (QWidget* each : inner)
            each->installEventFilter(this);
    }
    QHash<QObject*, int> take() { return std::exchange(m_counts, {}); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++m_counts[watched];
        return false;
    }

  private:
    QHash<QObject*, int> m_counts;
};

/// A window with the toolbar: miOpen (drop-down, band "bOpen"), miSave, a separator, miFit, miText (no
/// drawing), at its full width.
class Bench : public QWidget
{
  public:
    Bench()
    {
        resize(900, 300);
        other->setFocusPolicy(Qt::StrongFocus);
        other->setGeometry(10, 10, 50, 50);
        ToolModel& model = *bar->model();
        open = addTool(model, "miOpen", ToolKind::DropDown, "bOpen", "&Open...");
        open->setPicture(0, text("#open"));
        save = addTool(model, "miSave");
        save->setPicture(0, text("#save"));
        fit = addTool(model, "miFit", ToolKind::Plain, "bOpen");
        fit->setPicture(0, text("#bestfit"));
        words = addTool(model, "miText", ToolKind::Plain, "", "&Text");
        model.addBand(text("bOpen"), BandKind::PopUp)->append(addTool(model, "tRecent"));
        band = model.addBand(text("Toolbar"), BandKind::Toolbar);
        for (Tool* tool : {open, save, addTool(model, "miSep", ToolKind::Separator), fit, words})
            band->append(tool);
        bar->move(40, 200);
        settle();
    }

    /// As the definition of the bar is built.
    void settle()
    {
        bar->recalculateLayout();
        bar->setWidthInTwips(band->size().width());
        bar->setHeightInTwips(band->size().height());
    }

    void showAll()
    {
        show();
        activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(this));
        other->setFocus();
    }

    ToolButton* button(const char* tool) const
    {
        for (ToolButton* each : bar->findChildren<ToolButton*>(text(tool))) {
            if (!each->isHidden())
                return each;
        }
        return nullptr;
    }
    static QPoint openingPart(const ToolButton* button)
    {
        return {button->width() - 6, button->height() / 2};
    }

    QWidget* other = new QWidget(this);
    ToolControl* bar = new ToolControl(this);
    ToolRecord record{*bar->model()};
    ToolBand* band;
    Tool* open;
    Tool* save;
    Tool* fit;
    Tool* words;
};

} // namespace

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
    void whatIsUncheckedIsPaintedAnew();
    void toolTipsAndNames();
    void followsTools();
    void followsTheBand();
    void kindsThatChange();
    void manyChangesPaintOnce();
    void nothingPaintsForNothing();
    void keysWalkTheRow();
    void keysRunAndOpen();
    void keysOfOthersPass();
    void focusMovesOnFromWhatIsDisabled();
    void clickLeavesTheFocus();
    void extensionOpensTheRest();
    void extensionByKeys();
    void comboOnTheBar();
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
    QCOMPARE(bar.widthInTwips(), 6990);
    QCOMPARE(bar.heightInTwips(), 600);
    bar.setWidthInTwips(-20);
    QCOMPARE(bar.width(), 0);
}

void TestToolControl::fitsIntoItsWindow()
{
    Bench bench;
    const int full = bench.bar->width();
    bench.bar->fitInto(100);
    QCOMPARE(bench.bar->width(), 100);
    bench.bar->fitInto(5000);
    QCOMPARE(bench.bar->width(), full);
}

void TestToolControl::showsTheBand()
{
    Bench bench;
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
    Bench bench;
    bench.showAll();
    QTest::mouseClick(bench.button("miSave"), Qt::LeftButton);
    QTest::mouseClick(bench.button("miSave"), Qt::RightButton);
    QTest::mouseClick(bench.button("miOpen"), Qt::LeftButton, {}, QPoint(12, 12));
    QTest::mouseClick(bench.button("miFit"), Qt::LeftButton, {}, Bench::openingPart(bench.button("miFit")));
    QCOMPARE(bench.record.take(), text("click miSave; click miOpen; click miFit"));
}

void TestToolControl::clickOnWhatHasChangedMeanwhile()
{
    Bench bench;
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
    Bench bench;
    bench.showAll();
    ToolButton* const button = bench.button("miOpen");
    QTest::mousePress(button, Qt::LeftButton, {}, Bench::openingPart(button));
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
    Bench bench;
    bench.showAll();
    bench.open->set(&ToolValues::subBand, text("nowhere"));
    QTRY_COMPARE(bench.button("miOpen")->width(), 32);
    ToolButton* const button = bench.button("miOpen");
    QTest::mouseClick(button, Qt::LeftButton, {}, Bench::openingPart(button));
    QCOMPARE(bench.record.take(), text("click miOpen"));
}

void TestToolControl::cancelledDropDown()
{
    Bench bench;
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
    Bench bench;
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
    QTest::mouseClick(bench.button("miOpen"), Qt::LeftButton, {}, Bench::openingPart(bench.button("miOpen")));
    QTest::mouseClick(bench.button("miSave"), Qt::LeftButton);
    QCOMPARE(bench.record.take(), QString());
}

void TestToolControl::checkedButtons()
{
    Bench bench;
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

void TestToolControl::whatIsUncheckedIsPaintedAnew()
{
    Bench bench;
    bench.showAll();
    bench.fit->set(&ToolValues::checked, true);
    QTRY_VERIFY(bench.button("miFit")->isChecked());
    QCoreApplication::processEvents();
    PaintCounter counter;
    counter.watch(bench.button("miFit"));
    bench.fit->set(&ToolValues::checked, false);
    QTRY_VERIFY(!bench.button("miFit")->isChecked());
    QCoreApplication::processEvents();
    QCOMPARE(counter.take().value(bench.button("miFit")), 1);
}

void TestToolControl::toolTipsAndNames()
{
    Bench bench;
    bench.words->set(&ToolValues::toolTip, text("Tells more"));
    bench.settle();
    QCOMPARE(bench.button("miOpen")->toolTip(), text("Open..."));
    QCOMPARE(bench.button("miOpen")->accessibleName(), text("Open..."));
    QVERIFY(!bench.button("miOpen")->accessibleDescription().isEmpty());
    QCOMPARE(bench.button("miText")->toolTip(), text("Tells more"));
    QCOMPARE(bench.button("miText")->accessibleName(), text("Text"));
    QVERIFY(bench.button("miText")->accessibleDescription().isEmpty());
}

void TestToolControl::followsTools()
{
    Bench bench;
    bench.showAll();
    const int needed = bench.band->size().width();
    bench.save->set(&ToolValues::visible, false);
    QTRY_VERIFY(!bench.button("miSave"));
    QTRY_COMPARE(bench.band->size().width(), needed - 34 * 15);
    bench.save->set(&ToolValues::visible, true);
    QTRY_VERIFY(bench.button("miSave"));
    QTRY_COMPARE(bench.band->size().width(), needed);
    const int width = bench.button("miText")->width();
    bench.words->set(&ToolValues::caption, text("A much longer text"));
    QTRY_VERIFY(bench.band->size().width() > needed);
    bench.settle();
    QCOMPARE(bench.button("miText")->accessibleName(), text("A much longer text"));
    QVERIFY(bench.button("miText")->sizeHint().width() > width);
    bench.words->set(&ToolValues::caption, QString(500, QLatin1Char('w'))); // nobody's toolbar
    bench.settle();
    QCOMPARE(bench.button("miText")->accessibleName().size(), 500);
    QVERIFY(bench.button("miText")->sizeHint().width() < 200);
}

void TestToolControl::followsTheBand()
{
    Bench bench;
    bench.showAll();
    bench.band->append(addTool(*bench.bar->model(), "miNew"));
    QTRY_COMPARE(bench.bar->findChildren<ToolButton*>(text("miNew")).size(), 1);
    bench.settle();
    QTest::mouseClick(bench.button("miNew"), Qt::LeftButton);
    QCOMPARE(bench.record.take(), text("click miNew"));
    bench.band->clear();
    QTRY_VERIFY(bench.bar->findChildren<ToolButton*>(text("miNew")).isEmpty());
    QVERIFY(!bench.button("miOpen"));
    QTRY_COMPARE(bench.band->size().width(), 8 * 15);
}

void TestToolControl::kindsThatChange()
{
    Bench bench;
    bench.showAll();
    bench.band->tool(text("miOpen"))->set(&ToolValues::kind, ToolKind::Plain); // of the copy alone
    QTRY_COMPARE(bench.button("miOpen")->sizeHint().width(), 32);
    QCOMPARE(bench.open->values().kind, ToolKind::DropDown);
    bench.open->set(&ToolValues::kind, ToolKind::DropDown);
    QTRY_COMPARE(bench.button("miOpen")->sizeHint().width(), 46);
    bench.save->set(&ToolValues::kind, ToolKind::Combo);
    QTRY_VERIFY(bench.bar->findChild<ToolCombo*>(text("miSave")));
    bench.save->set(&ToolValues::kind, ToolKind::Separator);
    QTRY_VERIFY(!bench.bar->findChild<ToolCombo*>(text("miSave")));
    QVERIFY(!bench.button("miSave"));
}

void TestToolControl::manyChangesPaintOnce()
{
    Bench bench;
    for (int index = 0; index < 50; ++index)
        bench.band->append(addTool(*bench.bar->model(), qPrintable(QStringLiteral("mi%1").arg(index))));
    for (int index = 0; index < 50; ++index)
        bench.bar->model()->tool(QStringLiteral("mi%1").arg(index))->setPicture(0, text("open"));
    bench.resize(2200, 300);
    bench.settle();
    bench.showAll();
    QTRY_VERIFY(bench.button("mi49"));
    QCoreApplication::processEvents();
    PaintCounter counter;
    counter.watch(bench.bar);
    QCoreApplication::processEvents();
    counter.take();
    for (int index = 0; index < 50; ++index) {
        Tool* const tool = bench.bar->model()->tool(QStringLiteral("mi%1").arg(index));
        tool->set(&ToolValues::enabled, false);
        tool->set(&ToolValues::checked, true);
        tool->setPicture(0, text("save"));
        tool->set(&ToolValues::toolTip, text("changed"));
    }
    QTRY_VERIFY(!bench.button("mi49")->isEnabled());
    QHash<QObject*, int> painted = counter.take();
    for (int round = 0; round < 5; ++round) {
        QCoreApplication::processEvents();
        const QHash<QObject*, int> more = counter.take();
        for (auto each = more.begin(); each != more.end(); ++each)
            painted[each.key()] += each.value();
    }
    for (int index = 0; index < 50; ++index)
        QCOMPARE(painted.value(bench.button(qPrintable(QStringLiteral("mi%1").arg(index)))), 1);
    for (const char* name : {"miOpen", "miSave", "miFit", "miText"})
        QCOMPARE(painted.value(bench.button(name)), 0); // nothing changed there
    QVERIFY(painted.value(bench.bar) <= 1);
}

void TestToolControl::nothingPaintsForNothing()
{
    Bench bench;
    bench.showAll();
    PaintCounter counter;
    counter.watch(bench.bar);
    QCoreApplication::processEvents();
    counter.take();
    for (Tool* tool : {bench.open, bench.save, bench.fit}) {
        tool->set(&ToolValues::enabled, false);
        tool->set(&ToolValues::enabled, true);
        tool->set(&ToolValues::tag, text("seen by nobody"));
    }
    for (int round = 0; round < 5; ++round)
        QCoreApplication::processEvents();
    QVERIFY(counter.take().isEmpty());
}

void TestToolControl::keysWalkTheRow()
{
    Bench bench;
    bench.showAll();
    QTest::keyClick(bench.other, Qt::Key_Tab);
    QVERIFY(bench.button("miOpen")->hasFocus());
    const QImage ringed = bench.button("miOpen")->grab().toImage();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QVERIFY(bench.button("miSave")->hasFocus());
    QVERIFY(bench.button("miOpen")->grab().toImage() != ringed);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
    QVERIFY(bench.button("miText")->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QVERIFY(bench.button("miText")->hasFocus());
    bench.fit->set(&ToolValues::enabled, false);
    QTRY_VERIFY(!bench.button("miFit")->isEnabled());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QVERIFY(bench.button("miSave")->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); // one stop for the whole row
    QVERIFY(bench.other->hasFocus());
    QTest::keyClick(bench.other, Qt::Key_Tab);
    QVERIFY(bench.button("miSave")->hasFocus()); // and back to where it was
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home);
    QVERIFY(bench.button("miOpen")->hasFocus());
}

void TestToolControl::keysRunAndOpen()
{
    Bench bench;
    bench.showAll();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(bench.button("miSave"), key);
    QTest::keyClick(bench.button("miOpen"), Qt::Key_Return);
    QCOMPARE(bench.record.take(), text("click miSave; click miSave; click miSave; click miOpen"));
    QTest::keyClick(bench.button("miOpen"), Qt::Key_Down);
    QMenu* const menu = bench.bar->menus()->menu();
    QVERIFY(menu);
    QVERIFY(menu->activeAction());
    QCOMPARE(menu->activeAction()->objectName(), text("tRecent"));
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(bench.record.take(), text("open bOpen; close bOpen; click tRecent"));
}

void TestToolControl::keysOfOthersPass()
{
    class Listener : public QObject
    {
      public:
        QList<int> keys;
        bool eventFilter(QObject*, QEvent* event) override
        {
            const int key =
                event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event)->key() : Qt::Key_Control;
            if (key != Qt::Key_Control) // the bench presses it by itself
                keys.append(key);
            return false;
        }
    };
    Bench bench;
    bench.showAll();
    Listener listener;
    bench.installEventFilter(&listener);
    bench.button("miSave")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(bench.button("miSave"), Qt::Key_Down); // nothing opens from it
    QTest::keyClick(bench.button("miSave"), Qt::Key_Escape);
    QTest::keyClick(bench.button("miSave"), Qt::Key_N, Qt::ControlModifier);
    QTest::keyClick(bench.button("miSave"), Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(listener.keys, (QList<int>{Qt::Key_Down, Qt::Key_Escape, Qt::Key_N, Qt::Key_Right}));
}

void TestToolControl::focusMovesOnFromWhatIsDisabled()
{
    Bench bench;
    bench.showAll();
    QTest::keyClick(bench.other, Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    bench.fit->set(&ToolValues::enabled, false);
    QTRY_VERIFY(!bench.button("miFit")->isEnabled());
    bench.save->set(&ToolValues::enabled, false);
    bench.fit->set(&ToolValues::enabled, true); // in the same go
    QTRY_VERIFY(bench.button("miFit")->hasFocus());
    bench.fit->set(&ToolValues::visible, false);
    QTRY_VERIFY(bench.button("miText")->hasFocus());
    bench.words->set(&ToolValues::enabled, false);
    QTRY_VERIFY(bench.button("miOpen")->hasFocus());
}

void TestToolControl::clickLeavesTheFocus()
{
    Bench bench;
    bench.showAll();
    for (const char* name : {"miOpen", "miSave"})
        QTest::mouseClick(bench.button(name), Qt::LeftButton, {}, QPoint(10, 10));
    QVERIFY(bench.other->hasFocus());
}

void TestToolControl::extensionOpensTheRest()
{
    Bench bench;
    bench.showAll();
    bench.bar->fitInto(120);
    QVERIFY(bench.button("miOpen"));
    QVERIFY(!bench.button("miText"));
    ToolButton* const extension = bench.button("extension");
    QVERIFY(extension);
    QCOMPARE(extension->accessibleName(), text("More tools"));
    QTest::mousePress(extension, Qt::LeftButton, {}, extension->rect().center());
    QMenu* const menu = bench.bar->menus()->menu();
    QVERIFY(menu);
    QStringList rows;
    for (const QAction* row : menu->actions()) {
        if (row->isVisible())
            rows.append(row->isSeparator() ? text("-") : row->text());
    }
    QVERIFY(!bench.button("miFit"));
    QVERIFY(rows.endsWith(text("&Text")));
    QVERIFY(rows.contains(text("miFit")));
    QVERIFY(!rows.contains(text("&Open...")));
    QCOMPARE(rows.contains(text("miSave")), !bench.button("miSave"));
    for (QAction* row : menu->actions()) {
        if (row->text() == text("&Text"))
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(row).center());
    }
    QCOMPARE(bench.record.take(), text("click miText"));
    bench.bar->fitInto(2000);
    QVERIFY(!bench.button("extension"));
    QVERIFY(bench.button("miText"));
    bench.bar->fitInto(0);
    QVERIFY(!bench.button("miOpen"));
}

void TestToolControl::extensionByKeys()
{
    Bench bench;
    bench.showAll();
    bench.bar->fitInto(120);
    QTest::keyClick(bench.other, Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
    QVERIFY(bench.button("extension")->hasFocus());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Space}) {
        QTest::keyClick(bench.button("extension"), key);
        QVERIFY(bench.bar->menus()->menu());
        QVERIFY(bench.bar->menus()->menu()->activeAction());
        QTest::keyClick(bench.bar->menus()->menu(), Qt::Key_Escape);
        QVERIFY(!bench.bar->menus()->menu());
    }
    bench.bar->fitInto(2000); // the focus does not go with the button
    QVERIFY(!bench.button("extension"));
    QTRY_VERIFY(QApplication::focusWidget());
    QVERIFY(QApplication::focusWidget()->isVisible());
}

void TestToolControl::comboOnTheBar()
{
    Bench bench;
    Tool* const time = addTool(*bench.bar->model(), "tTime", ToolKind::Combo);
    time->set(&ToolValues::choices, {text("1"), text("2")});
    time->set(&ToolValues::text, text("2"));
    bench.band->append(time);
    bench.settle();
    bench.showAll();
    ToolCombo* const combo = bench.bar->findChild<ToolCombo*>();
    QVERIFY(combo && combo->isVisible());
    combo->lineEdit()->selectAll();
    QTest::keyClicks(combo->lineEdit(), text("3"));
    QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
    QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(bench.record.take(), text("text tTime=3; end tTime=3; end tTime=1"));
}

void TestToolControl::mirrored()
{
    Bench bench;
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
    Bench bench;
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
    Bench bench;
    bench.showAll();
    bench.band->setVisible(false);
    QTRY_VERIFY(!bench.button("miOpen"));
    bench.band->setVisible(true);
    QTRY_VERIFY(bench.button("miOpen"));
}

void TestToolControl::bandsOfTheToolbarKind()
{
    Bench bench;
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
    Bench bench;
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
    Bench bench;
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
