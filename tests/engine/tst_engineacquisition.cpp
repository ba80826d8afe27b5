// The imaging control and pictures that come from a device: what is held, and when it is painted.
#include "engine/ImageEngine.h"
#include "engine/ImageLoader.h"

#include <QTest>

using namespace quorvia::engine;

namespace {

QImage twoColors()
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::red);
    image.setPixelColor(0, 0, Qt::blue);
    return image;
}

} // namespace

class TestEngineAcquisition : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<ImageEngine> m_engine;
    QImage m_next; ///< what the device gives
    QStringList m_steps;

    QColor shown() const { return m_engine->grab().toImage().pixelColor(20, 15); }

  private Q_SLOTS:
    void init()
    {
        m_engine = std::make_unique<ImageEngine>(std::make_shared<ImageLoader>());
        m_engine->resize(40, 30);
        m_engine->SetBackColor(Qt::white);
        m_next = twoColors();
        m_steps.clear();
        m_engine->SetAcquisitionSource({.select = [this] { m_steps.append(QStringLiteral("select")); },
                                        .acquire =
                                            [this] {
                                                m_steps.append(QStringLiteral("acquire"));
                                                return m_next;
                                            }});
    }
    void cleanup() { m_engine.reset(); }

    void theDeviceIsAskedInTurn()
    {
        m_engine->TwainSelectSource();
        QCOMPARE(m_steps, QStringList{"select"});
        QCOMPARE(m_engine->ImagePixelWidth(), 0);
        m_engine->TwainAcquire();
        QCOMPARE(m_steps, (QStringList{"select", "acquire"}));
        QCOMPARE(m_engine->UniqueColors(), 2);
        QCOMPARE(m_engine->Picture(), twoColors());
        QCOMPARE(m_engine->FileName(), QString());
    }

    void whatWasAcquiredIsPaintedWhenItIsAskedFor()
    {
        m_engine->TwainAcquire();
        QCOMPARE(shown(), QColor(Qt::white));
        m_engine->Refresh();
        QCOMPARE(shown(), QColor(Qt::white));
        m_engine->SetAutoAcquireView(true);
        QCOMPARE(shown(), QColor(Qt::white));
        m_engine->Refresh();
        QCOMPARE(shown(), QColor(Qt::red));
        m_next.fill(Qt::green);
        m_engine->TwainAcquire(); // and from then on at once
        QCOMPARE(shown(), QColor(Qt::green));
    }

    void aCancelLeavesNothing()
    {
        m_engine->SetPicture(twoColors());
        m_next = QImage();
        m_engine->TwainAcquire();
        QVERIFY(m_engine->UniqueColors() < 2);
        QCOMPARE(m_engine->ImagePixelWidth(), 0);
        m_engine->SetPicture(twoColors()); // which is none from a device
        QCOMPARE(shown(), QColor(Qt::red));
    }

    void aPageOfOneColor()
    {
        m_next.fill(Qt::white);
        m_engine->TwainAcquire();
        QCOMPARE(m_engine->UniqueColors(), 1);
        QCOMPARE(m_engine->ImagePixelWidth(), 40);
    }

    void withoutASource()
    {
        m_engine->SetAcquisitionSource({});
        m_engine->SetPicture(twoColors());
        m_engine->TwainSelectSource();
        QCOMPARE(m_engine->UniqueColors(), 2);
        m_engine->TwainAcquire();
        QCOMPARE(m_engine->UniqueColors(), 0);
    }

    void aControlThatGoesWhileItWaits()
    {
        m_engine->SetAcquisitionSource({.select = {}, .acquire = [this] {
                                            m_engine.reset();
                                            return twoColors();
                                        }});
        m_engine->TwainAcquire();
        QVERIFY(!m_engine);
    }
};

QTEST_MAIN(TestEngineAcquisition)
#include "tst_engineacquisition.moc"
