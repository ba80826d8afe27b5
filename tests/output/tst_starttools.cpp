#include "output/StartTools.h"

#include <QTest>

using namespace quorvia::output;

Q_DECLARE_METATYPE(StartFacts)

class TestStartTools : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void tools_data()
    {
        QTest::addColumn<StartFacts>("facts");
        QTest::addColumn<QStringList>("tools");
        QTest::newRow("nothing asked for") << StartFacts{} << QStringList();
        QTest::newRow("all, in their order")
            << StartFacts{false, true, 1, 1, 1} << QStringList{"miActualSize", "miSlideShow", "miFullScreen"};
        QTest::newRow("beside a switch") << StartFacts{true, true, 1, 1, 1} << QStringList();
        QTest::newRow("view") << StartFacts{false, false, 1, 0, 0} << QStringList{"miActualSize"};
        QTest::newRow("show") << StartFacts{false, false, 0, 1, 0} << QStringList{"miSlideShow"};
        QTest::newRow("full screen") << StartFacts{false, true, 0, 0, 1} << QStringList{"miFullScreen"};
        QTest::newRow("full screen without an image") << StartFacts{false, false, 0, 0, 1} << QStringList();
        QTest::newRow("other numbers than 1") << StartFacts{false, true, 2, -1, 3} << QStringList();
    }

    void tools()
    {
        QFETCH(StartFacts, facts);
        QTEST(startTools(facts), "tools");
    }
};

QTEST_GUILESS_MAIN(TestStartTools)
#include "tst_starttools.moc"
