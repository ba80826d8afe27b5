// Whatever changes the picture on the screen asks for a repaint: the control is on show, and its paint events
// are noted. (The other tests take pictures of the control, which paints it in any case.)
#include "EngineStage.h"

#include <QPaintEvent>
#include <QtTest>

#include <functional>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

using Step = std::function<void(ImageEngine&)>;

/// What has been painted anew on a widget.
class PaintedRegion : public QObject
{
  public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            region += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    QRegion region; ///< logical pixels
};

/// Nothing to prepare.
void asItIs(ImageEngine&) {}

} // namespace

Q_DECLARE_METATYPE(Step)

class tst_EngineRepaints : public QObject, protected EngineStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void repaints_data()
    {
        QTest::addColumn<Step>("prepare");
        QTest::addColumn<Step>("change");
        QTest::addColumn<QRegion>("changed"); // device pixels
        const QRect all(0, 0, 120, 120);
        const QRect picture(0, 0, 60, 30);
        const QRect band(6, 3, 10, 8);
        const auto row = [](const char* name, const Step& change, const QRegion& changed,
                            const Step& prepare = asItIs) {
            QTest::newRow(name) << prepare << change << changed;
        };
        const Step holdBack = [](ImageEngine& engine) { engine.SetPaintEnabled(false); };
        const Step fit = [](ImageEngine& engine) { engine.SetScaleMode(4); };
        const Step drawBand = [](ImageEngine& engine) {
            engine.DrawRubberBand(6, 3, 15, 10, Qt::white, true);
        };
        row(
            "Zoom, larger", [](ImageEngine& engine) { engine.Zoom(2); }, QRect(0, 0, 120, 60));
        row(
            "Zoom, smaller", [](ImageEngine& engine) { engine.Zoom(0.5); }, picture);
        row("SetScaleMode", fit, QRect(0, 0, 120, 90));
        row(
            "SetScaleOption", [](ImageEngine& engine) { engine.SetScaleOption(1); }, all, fit);
        row(
            "SetBackColor", [](ImageEngine& engine) { engine.SetBackColor(Qt::yellow); }, all);
        row(
            "Refresh", [](ImageEngine& engine) { engine.Refresh(); }, all);
        row("DrawRubberBand", drawBand, band);
        row(
            "DrawRubberBand elsewhere",
            [](ImageEngine& engine) { engine.DrawRubberBand(30, 18, 47, 23, Qt::white, true); },
            QRegion(band) + QRect(30, 18, 18, 6), drawBand);
        row(
            "ClearRubberBand", [](ImageEngine& engine) { engine.ClearRubberBand(); }, band, drawBand);
        row(
            "SetFileName", [](ImageEngine& engine) { engine.SetFileName(large); }, all);
        row(
            "SetFileName of nothing", [](ImageEngine& engine) { engine.SetFileName(QString()); }, picture);
        row(
            "SetPicture", [](ImageEngine& engine) { engine.SetPicture(plain(90, 90, qRgb(1, 2, 3))); },
            QRect(0, 0, 90, 90));
        row(
            "Rotate", [](ImageEngine& engine) { engine.Rotate(90); }, QRect(0, 0, 60, 60));
        row(
            "Resize", [](ImageEngine& engine) { engine.Resize(90, 90); }, QRect(0, 0, 90, 90));
        row(
            "Bevel", [](ImageEngine& engine) { engine.Bevel(1, 5, 50); }, picture);
        row(
            "SetPaintEnabled", [](ImageEngine& engine) { engine.SetPaintEnabled(true); }, all, holdBack);
    }

    void repaints()
    {
        QFETCH(Step, prepare);
        QFETCH(Step, change);
        QFETCH(QRegion, changed);
        m_engine->SetPicture(graded(60, 30));
        QSignalSpy shown(m_engine.get(), &ImageEngine::FirstPainted);
        m_engine->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_engine.get()));
        QTRY_COMPARE(shown.count(), 1);
        prepare(*m_engine);
        m_engine->repaint(); // nothing is left to paint from before
        PaintedRegion painted;
        m_engine->installEventFilter(&painted);
        change(*m_engine);
        QRegion wanted; // logical pixels
        for (const QRect& part : changed)
            wanted +=
                QRectF(QPointF(part.topLeft()) / ratio(), QSizeF(part.size()) / ratio()).toAlignedRect();
        wanted &= m_engine->rect();
        QTRY_VERIFY(wanted.subtracted(painted.region).isEmpty());
    }

    /// The measure of the test above tells a control that is painted from one that is not.
    void restsWhilePaintingIsHeldBack()
    {
        QWidget window;
        QWidget neighbour(&window);
        m_engine->setParent(&window);
        const auto taken = qScopeGuard([this] { m_engine->setParent(nullptr); });
        neighbour.setGeometry(200, 0, 50, 50);
        window.resize(300, 200);
        m_engine->SetPicture(graded(60, 30));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        m_engine->SetPaintEnabled(false);
        window.repaint();
        PaintedRegion painted;
        PaintedRegion paintedBeside;
        m_engine->installEventFilter(&painted);
        neighbour.installEventFilter(&paintedBeside);
        m_engine->Zoom(2);
        m_engine->SetPicture(graded(30, 60));
        m_engine->DrawRubberBand(1, 1, 5, 5, Qt::white, true);
        m_engine->Refresh();
        neighbour.update(); // a window paints at once whatever in it has asked for that
        QTRY_VERIFY(!paintedBeside.region.isEmpty());
        QVERIFY(painted.region.isEmpty());
    }
};

QTEST_MAIN(tst_EngineRepaints)
#include "tst_enginerepaints.moc"
