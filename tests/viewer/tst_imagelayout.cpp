#include "viewer/ImageLayout.h"

#include <QTest>

using namespace quorvia::viewer;

Q_DECLARE_METATYPE(quorvia::viewer::ViewState)

class TestImageLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void places_data()
    {
        QTest::addColumn<ViewState>("view");
        QTest::addColumn<QRect>("rectangle");
        QTest::addColumn<int>("scaleMode");
        const QSize panel(12000, 9000);
        const auto row = [&](const char* name, QSize image, double zoom, bool fit, QRect rectangle,
                             int mode) {
            QTest::newRow(name) << ViewState{panel, image, zoom, fit, !image.isEmpty()} << rectangle << mode;
        };
        row("fit, larger", {24000, 9000}, 1.0, true, {0, 0, 12000, 9000}, 4);
        row("fit, wider only", {12001, 100}, 1.0, true, {0, 0, 12000, 9000}, 4);
        row("fit, higher only", {100, 9001}, 1.0, true, {0, 0, 12000, 9000}, 4);
        row("fit, smaller stands at natural size", {3000, 1500}, 1.0, true, {4500, 3750, 12000, 9000}, 0);
        row("fit, exactly as large counts as not smaller", {12000, 9000}, 1.0, true, {0, 0, 12000, 9000}, 4);
        row("fit, exactly as wide", {12000, 100}, 1.0, true, {0, 0, 12000, 9000}, 4);
        row("fit, nothing open", {0, 0}, 1.0, true, {0, 0, 12000, 9000}, 4);
        row("actual, smaller is centred", {3000, 1500}, 1.0, false, {4500, 3750, 3000, 1500}, 0);
        row("actual, larger begins at 0", {24000, 18000}, 1.0, false, {0, 0, 24000, 18000}, 0);
        row("actual, wider only", {24000, 3000}, 1.0, false, {0, 3000, 24000, 3000}, 0);
        row("actual, exactly as large", {12000, 9000}, 1.0, false, {0, 0, 12000, 9000}, 0);
        row("zoom in, centred", {3000, 1500}, 2.0, false, {3000, 3000, 6000, 3000}, 0);
        row("zoom in, beyond the panel", {6000, 6000}, 4.0, false, {0, 0, 24000, 24000}, 0);
        row("zoom out", {24000, 18000}, 0.2, false, {3600, 2700, 4800, 3600}, 0);
        row("zoom beyond an int", {983025, 983025}, 1e6, false, {0, 0, 1 << 30, 1 << 30}, 0);
        row("zoom overrides the fit", {3000, 1500}, 2.0, true, {3000, 3000, 6000, 3000}, 0);
    }

    void places()
    {
        QFETCH(ViewState, view);
        const ImagePlacement placement = layoutImage(view);
        QTEST(placement.rectangle, "rectangle");
        QTEST(placement.scaleMode, "scaleMode");
    }
};

QTEST_GUILESS_MAIN(TestImageLayout)
#include "tst_imagelayout.moc"
