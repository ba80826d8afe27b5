// The program's own icon: that it is there in each size, that it can be told from light and dark grounds, and
// that the sizes which a package carries are those of the drawing.
#include "platform/Contrast.h"
#include "platform/DrawnPixels.h"
#include "platform/ProgramIcon.h"

#include <QTest>

using namespace quorvia::platform;
using quorvia::test::drawnPixels;

namespace {

/// How many pixels are covered at least by half, of a hundred.
int coveredPercent(const QImage& image)
{
    return drawnPixels(image) * 100 / (image.width() * image.height());
}

} // namespace

class TestProgramIcon : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void eachSizeOfThePackage_data()
    {
        QTest::addColumn<int>("side");
        for (const int side : {16, 22, 24, 32, 48, 64, 128, 256, 512})
            QTest::newRow(QByteArray::number(side).constData()) << side;
    }
    void eachSizeOfThePackage()
    {
        QFETCH(int, side);
        const QImage drawn = programDrawing(side);
        QCOMPARE(drawn.size(), QSize(side, side));
        const int covered = coveredPercent(drawn);
        QVERIFY2(covered > 55 && covered < 80, qPrintable(QString::number(covered)));
        QCOMPARE(qAlpha(drawn.pixel(side - 1, 0)), 0); // the corner beside the ring

        const QImage file(QStringLiteral(HANDOUT_FOLDER "/icons/hicolor/%1x%1/apps/quorvia.png").arg(side));
        QCOMPARE(file.convertToFormat(QImage::Format_ARGB32), drawn.convertToFormat(QImage::Format_ARGB32));
    }

    /// The outline stands out on whatever a panel may be coloured.
    void theOutlineIsSeen()
    {
        const QImage drawn = programDrawing(64);
        const QColor ring = drawn.pixelColor(3, 29);
        const QColor handle = drawn.pixelColor(55, 55);
        for (const QColor& ground : {QColor(Qt::white), QColor(240, 240, 240), QColor(30, 30, 30)}) {
            QVERIFY2(contrast(ring, ground) >= 2.4, qPrintable(ring.name() + ground.name()));
            QVERIFY2(contrast(handle, ground) >= 2.4, qPrintable(handle.name() + ground.name()));
        }
    }

    void theIconHasTheSizesOfWindowManagers()
    {
        const QIcon icon = programIcon();
        const QList<QSize> sizes = icon.availableSizes();
        for (const int side : {16, 32, 48, 128})
            QVERIFY(sizes.contains(QSize(side, side)));
        QCOMPARE(icon.pixmap(QSize(48, 48), 1.0).toImage().convertToFormat(QImage::Format_ARGB32),
                 programDrawing(48).convertToFormat(QImage::Format_ARGB32));
    }
};

QTEST_MAIN(TestProgramIcon)
#include "tst_programicon.moc"
