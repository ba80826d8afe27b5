#include "app/SlideMode.h"

#include <QTest>

using namespace quorvia::app;

class TestSlideMode : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void modes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<SlideMode>("mode");
        QTest::newRow("advance") << "advance" << SlideMode::Advance;
        QTest::newRow("reverse") << "reverse" << SlideMode::Reverse;
        QTest::newRow("random") << "random" << SlideMode::Random;
        QTest::newRow("another case") << "Reverse" << SlideMode::Advance;
        QTest::newRow("a blank too many") << "random " << SlideMode::Advance;
        QTest::newRow("unknown") << "sideways" << SlideMode::Advance;
        QTest::newRow("empty") << "" << SlideMode::Advance;
    }

    void modes()
    {
        QFETCH(QString, text);
        QTEST(slideModeOf(text), "mode");
    }

    void textsComeBack()
    {
        for (const SlideMode mode : {SlideMode::Advance, SlideMode::Reverse, SlideMode::Random})
            QCOMPARE(slideModeOf(slideModeText(mode)), mode);
        QCOMPARE(slideModeText(SlideMode::Advance), QStringLiteral("advance"));
    }
};

QTEST_GUILESS_MAIN(TestSlideMode)
#include "tst_slidemode.moc"
