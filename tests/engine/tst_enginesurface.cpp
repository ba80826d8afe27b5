// The held picture painted on another surface than the control, which that surface may hide.
#include "EngineStage.h"
#include "PureColors.h"

#include <QSignalSpy>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QImage cut(const QImage& image, const QRect& part)
{
    return image.copy(part);
}

} // namespace

class tst_EngineSurface : public QObject, protected EngineStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void nothingIsPaintedOfNothing()
    {
        const QRect all(0, 0, 60, 30);
        QVERIFY(m_engine->PaintedPart(all, all, Qt::black).isNull());
        m_engine->SetPicture(plain(60, 30, red));
        QVERIFY(m_engine->PaintedPart(QRect(), all, Qt::black).isNull());
        QVERIFY(m_engine->PaintedPart(all, QRect(), Qt::black).isNull());
        QVERIFY(m_engine->PaintedPart(all, QRect(30, 0, 60, 30), Qt::black).isNull());
        QVERIFY(!m_engine->PaintedPart(all, all, Qt::black).isNull());
    }

    void partsAreThoseOfTheWhole()
    {
        m_engine->SetPicture(graded(60, 30));
        const QRect target(-20, 10, 120, 60);
        const QImage whole = m_engine->PaintedPart(target, target, Qt::black);
        QCOMPARE(whole.size(), target.size());
        const QRect seen(0, 10, 50, 40);
        QCOMPARE(m_engine->PaintedPart(target, seen, Qt::black),
                 cut(whole, seen.translated(-target.topLeft())));
        // As the control shows it in that size.
        size(120, 60);
        m_engine->SetScaleMode(4);
        QCOMPARE(shot(), whole);
    }

    void transparentPixelsShowTheSurface()
    {
        QImage clear(12, 12, QImage::Format_ARGB32);
        clear.fill(Qt::transparent);
        m_engine->SetPicture(clear);
        const QRect target(0, 0, 12, 12);
        QCOMPARE(m_engine->PaintedPart(target, target, QColor(1, 2, 3)), plain(12, 12, qRgb(1, 2, 3)));
    }

    /// A size that the first picture covers costs no other decode, a larger one every pixel.
    void theCheapestPictureThatIsEnough()
    {
        m_engine->SetLoadBox(QSize(120, 120));
        m_engine->SetFileName(large);
        const QRect covered(0, 0, 120, 60);
        QVERIFY(!m_engine->PaintedPart(covered, covered, Qt::black).isNull());
        QCOMPARE(m_pictures->order(), QStringList{large});
        const QRect whole(0, 0, 1200, 600);
        QCOMPARE(m_engine->PaintedPart(whole, whole, Qt::black), m_engine->Picture());
        QCOMPARE(m_pictures->order(), (QStringList{large, large + '+'}));
        QVERIFY(!m_engine->PaintedPart(covered, covered, Qt::black).isNull());
        QCOMPARE(m_pictures->order().size(), 2);
    }

    void aBrokenPictureLeadsBack()
    {
        m_engine->SetPicture(plain(60, 30, red));
        m_engine->SetFileName(broken);
        const QRect target(0, 0, 60, 30);
        QCOMPARE(m_engine->PaintedPart(target, target, Qt::black), plain(60, 30, red));
        QVERIFY(!m_engine->LastError().isEmpty());
    }

    /// What follows the first paint follows this one too, and once.
    void countsAsPainted()
    {
        QSignalSpy spy(m_engine.get(), &ImageEngine::FirstPainted);
        m_engine->NotePainted();
        QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 0); // nothing is held
        m_engine->SetLoadBox(QSize(120, 120));
        m_engine->SetFileName(large);
        m_engine->NotePainted();
        QTRY_COMPARE(spy.size(), 1);
        QTRY_COMPARE(m_pictures->order().count(large + '+'), 1);
        m_engine->NotePainted();
        shot();
        QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 1);
    }

    void hiddenItKeepsWhatItShows()
    {
        m_engine->SetPicture(plain(120, 120, red));
        const QImage before = shot();
        m_engine->SetCovered(true);
        m_engine->SetLoadBox(QSize(120, 120));
        m_engine->SetFileName(large);
        QCOMPARE(shot(), before);
        // Nothing that was painted waited for it. At 100% a paint would have asked for every pixel.
        QTRY_COMPARE(m_pictures->order(), QStringList{large});
        m_engine->SetCovered(false);
        QVERIFY(shot() != before);
        QCOMPARE(m_pictures->order(), (QStringList{large, large + '+'}));
    }

    void bothReasonsNotToPaintMustGo_data()
    {
        QTest::addColumn<bool>("uncoveredFirst");
        QTest::newRow("uncovered, then enabled") << true;
        QTest::newRow("enabled, then uncovered") << false;
    }

    void bothReasonsNotToPaintMustGo()
    {
        QFETCH(bool, uncoveredFirst);
        m_engine->SetPicture(plain(120, 120, red));
        const QImage before = shot();
        m_engine->SetPaintEnabled(false);
        m_engine->SetCovered(true);
        m_engine->SetPicture(plain(120, 120, qRgb(0, 0, 255)));
        uncoveredFirst ? m_engine->SetCovered(false) : m_engine->SetPaintEnabled(true);
        QCOMPARE(shot(), before);
        QCOMPARE(m_engine->PaintEnabled(), !uncoveredFirst);
        uncoveredFirst ? m_engine->SetPaintEnabled(true) : m_engine->SetCovered(false);
        QCOMPARE(shot(), plain(120, 120, qRgb(0, 0, 255)));
    }
};

QTEST_MAIN(tst_EngineSurface)
#include "tst_enginesurface.moc"
