// What the toolbar follows of its model, and how often it paints for that.
#include "platform/ToolBench.h"
#include "platform/ToolButton.h"
#include "platform/ToolCombo.h"
#include "platform/ToolControl.h"
#include "platform/ToolLook.h"
#include "platform/ToolMenu.h"
#include "ToolbarBench.h"

#include <QHash>
#include <QTest>

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

} // namespace

class TestToolbarChanges : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void followsTools();
    void followsTheBand();
    void kindsThatChange();
    void manyChangesPaintOnce();
    void nothingPaintsForNothing();
    void whatIsUncheckedIsPaintedAnew();
};

void TestToolbarChanges::followsTools()
{
    ToolbarBench bench;
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

void TestToolbarChanges::followsTheBand()
{
    ToolbarBench bench;
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

void TestToolbarChanges::kindsThatChange()
{
    ToolbarBench bench;
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

void TestToolbarChanges::manyChangesPaintOnce()
{
    ToolbarBench bench;
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

void TestToolbarChanges::nothingPaintsForNothing()
{
    ToolbarBench bench;
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

void TestToolbarChanges::whatIsUncheckedIsPaintedAnew()
{
    ToolbarBench bench;
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

QTEST_MAIN(TestToolbarChanges)
#include "tst_toolbarchanges.moc"
