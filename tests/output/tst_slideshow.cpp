// The slideshow: ticks, commands, the show that stands alone, the pause by bands, and the delay tool.
#include "../support/ScratchHome.h"
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "output/Slideshow.h"

#include <QTest>

using namespace quorvia;
using app::SlideMode;
using output::Slideshow;
using output::SlideshowSinks;

namespace {

/// A slideshow that writes down what it does, over a fresh store.
class Bench
{
  public:
    /// Over the settings as they stand, or before they have been read.
    explicit Bench(bool settingsRead = true)
    {
        app::openSettings();
        if (settingsRead)
            show->readSettings();
    }
    ~Bench() { app::closeSettings(); }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    QTimer* tSlide() const { return show->findChild<QTimer*>(QStringLiteral("tSlide")); }
    /// What one tick does, fired by hand.
    QStringList tick()
    {
        done.clear();
        QMetaObject::invokeMethod(show.get(), [this] { Q_EMIT tSlide()->timeout({}); });
        return done;
    }
    void runCommand(const QString& name)
    {
        done << name;
        if (name == "miSlideShow")
            show->toggle();
        whenRun(name);
    }

    const test::ScratchHome home;
    QStringList done;
    QString caption = QStringLiteral("picture");
    bool fullVisible = true;
    bool asking = false;
    std::function<void(const QString&)> whenRun = [](const QString&) {};
    std::unique_ptr<Slideshow> show = std::make_unique<Slideshow>(
        SlideshowSinks{.runTool = [this](const QString& name) { runCommand(name); },
                       .updateToolbar = [this] { done << "update"; },
                       .caption = [this] { return caption; },
                       .setCaption = [this](const QString& text) { caption = text; },
                       .isAsking = [this] { return asking; },
                       .isFullVisible = [this] { return fullVisible; },
                       .closeFull = [this] { done << "close full"; },
                       .hideMain = [this] { done << "hide main"; },
                       .closeMain = [this] { done << "close main"; }});
};

const QString paused = QStringLiteral(" (Slideshow Paused) ");

} // namespace

class TestSlideshow : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void isDesignedStopped();
    void readsItsSettings_data();
    void readsItsSettings();
    void stepsOnlyOnceItsSettingsAreRead();
    void ticksByMode_data();
    void ticksByMode();
    void aTickLeavesTheTimerOn();
    void theTimerTicksByItself();
    void ticksDoNotOverlap();
    void waitsWhileSomethingIsAsked();
    void aTickMayEndTheShow();
    void toggles();
    void aModeIsStoredAndStartsTheShow_data();
    void aModeIsStoredAndStartsTheShow();
    void aModeLeavesARunningShowOn();
    void standsAloneInOrder();
    void endsTheProgramWhenItsWindowHasGone();
    void mayEndWhileItStarts();
    void bands_data();
    void bands();
    void aBandPausesARunningShow();
    void aBandLeavesAStoppedShowStopped();
    void aSecondBandDisturbsNothing();
    void everyPausedTextGoes();
    void aBandWithoutANameClosesNothing();
    void aShowToggledDuringAPauseComesBackAsItWas();
    void theDelayToolSaysTheInterval();
    void typingADelay_data();
    void typingADelay();
    void aDelayHoldsForTheRunningShow();
};

void TestSlideshow::isDesignedStopped()
{
    const Bench bench;
    QVERIFY(bench.tSlide());
    QVERIFY(!bench.tSlide()->isSingleShot());
    QVERIFY(!bench.show->isRunning());
    QCOMPARE(bench.tSlide()->interval(), 2000);
    QCOMPARE(bench.show->slidemode(), QStringLiteral("advance"));
    QVERIFY(!bench.show->SlideShowOnly());
    QCOMPARE(bench.show->PausedByBand(), QString());
    QVERIFY(!bench.show->PausedEnabledState());
}

void TestSlideshow::readsItsSettings_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("interval");
    QTest::newRow("stored") << 3500 << 3500;
    QTest::newRow("shorter than can be typed") << 250 << 250;
    QTest::newRow("zero") << 0 << 2000;
    QTest::newRow("below zero") << -5 << 2000;
}

void TestSlideshow::readsItsSettings()
{
    QFETCH(int, stored);
    Bench bench;
    bench.show->readSettings();
    QCOMPARE(bench.show->interval(), 2000);
    QCOMPARE(bench.show->slidemode(), QStringLiteral("advance"));
    app::save(app::setting::Interval, stored);
    app::save(app::setting::slidemode, QStringLiteral("sideways"));
    bench.show->readSettings();
    QTEST(bench.show->interval(), "interval");
    QCOMPARE(bench.show->slidemode(), QStringLiteral("sideways"));
    QVERIFY(!bench.show->isRunning());
}

void TestSlideshow::stepsOnlyOnceItsSettingsAreRead()
{
    Bench bench(false);
    app::save(app::setting::slidemode, QStringLiteral("reverse"));
    bench.show->toggle();
    QCOMPARE(bench.tick(), QStringList()); // it would be the wrong order
    QVERIFY(bench.show->isRunning());
    bench.show->readSettings();
    QVERIFY(bench.show->isRunning());
    QCOMPARE(bench.tick(), QStringList{"miPrevious"});
}

void TestSlideshow::ticksByMode_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("command");
    QTest::newRow("advance") << "advance"
                             << "miNext";
    QTest::newRow("reverse") << "reverse"
                             << "miPrevious";
    QTest::newRow("random") << "random"
                            << "miRandom";
    QTest::newRow("unknown") << "sideways"
                             << "miNext";
    QTest::newRow("another case") << "Random"
                                  << "miNext";
}

void TestSlideshow::ticksByMode()
{
    QFETCH(QString, mode);
    QFETCH(QString, command);
    Bench bench;
    app::save(app::setting::slidemode, mode);
    bench.show->readSettings();
    QCOMPARE(bench.tick(), QStringList{command});
}

void TestSlideshow::aTickLeavesTheTimerOn()
{
    Bench bench;
    bench.fullVisible = false;
    bench.show->toggle();
    QCOMPARE(bench.tick(),
             QStringList{"miNext"}); // whatever comes of it: an empty list, a file that has gone
    QVERIFY(bench.show->isRunning());
}

void TestSlideshow::theTimerTicksByItself()
{
    Bench bench;
    app::save(app::setting::Interval, 1);
    bench.show->readSettings();
    bench.show->toggle();
    QTRY_VERIFY(bench.done.count("miNext") >= 3);
}

void TestSlideshow::waitsWhileSomethingIsAsked()
{
    Bench bench;
    bench.show->toggle();
    bench.asking = true;
    QCOMPARE(bench.tick(), QStringList());
    QVERIFY(bench.show->isRunning());
    bench.asking = false;
    QCOMPARE(bench.tick(), QStringList{"miNext"});
}

void TestSlideshow::ticksDoNotOverlap()
{
    Bench bench;
    int depth = 0;
    int deepest = 0;
    bench.whenRun = [&](const QString& name) {
        if (name != "miNext")
            return;
        deepest = std::max(deepest, ++depth);
        bench.tick();
        --depth;
    };
    bench.tick();
    QCOMPARE(deepest, 1);
    bench.tick();
    QCOMPARE(deepest, 1);
    QCOMPARE(bench.done, QStringList());
    bench.whenRun = [](const QString&) {};
    QCOMPARE(bench.tick(), QStringList{"miNext"});
}

void TestSlideshow::aTickMayEndTheShow()
{
    Bench bench;
    bench.whenRun = [&bench](const QString&) { bench.show.reset(); };
    QTimer* const tSlide = bench.tSlide();
    Q_EMIT tSlide->timeout({});
    QVERIFY(!bench.show);
    QCOMPARE(bench.done, QStringList{"miNext"});
}

void TestSlideshow::toggles()
{
    Bench bench;
    bench.show->toggle();
    QVERIFY(bench.show->isRunning());
    bench.show->toggle();
    QVERIFY(!bench.show->isRunning());
    QCOMPARE(bench.done, (QStringList{"update", "update"}));
}

void TestSlideshow::aModeIsStoredAndStartsTheShow_data()
{
    QTest::addColumn<SlideMode>("mode");
    QTest::addColumn<QString>("text");
    QTest::newRow("tSldAdvance") << SlideMode::Advance << "advance";
    QTest::newRow("tSldReverse") << SlideMode::Reverse << "reverse";
    QTest::newRow("tSldRandom") << SlideMode::Random << "random";
}

void TestSlideshow::aModeIsStoredAndStartsTheShow()
{
    QFETCH(SlideMode, mode);
    Bench bench;
    app::save(app::setting::slidemode, QStringLiteral("sideways"));
    bench.show->choose(mode);
    QTEST(bench.show->slidemode(), "text");
    QTEST(app::read(app::setting::slidemode), "text");
    QCOMPARE(bench.done, (QStringList{"miSlideShow", "update"}));
    QVERIFY(bench.show->isRunning());
}

void TestSlideshow::aModeLeavesARunningShowOn()
{
    Bench bench;
    bench.show->toggle();
    const int timer = bench.tSlide()->timerId();
    bench.done.clear();
    bench.show->choose(SlideMode::Reverse);
    QVERIFY(bench.show->isRunning());
    QCOMPARE(bench.tSlide()->timerId(), timer); // not started anew
    QCOMPARE(bench.done, QStringList{"update"});
    QCOMPARE(bench.tick(), QStringList{"miPrevious"});
}

void TestSlideshow::standsAloneInOrder()
{
    Bench bench;
    bool early = true;
    bench.whenRun = [&](const QString&) { early = bench.show->SlideShowOnly(); };
    bench.show->startAlone();
    QCOMPARE(bench.done, (QStringList{"hide main", "miFullScreen", "miSlideShow", "update"}));
    QVERIFY(!early);
    QVERIFY(bench.show->SlideShowOnly());
    QVERIFY(bench.show->isRunning());
}

void TestSlideshow::endsTheProgramWhenItsWindowHasGone()
{
    Bench bench;
    bench.show->startAlone();
    QCOMPARE(bench.tick(), QStringList{"miNext"});
    QVERIFY(bench.show->isRunning());
    bench.fullVisible = false;
    QCOMPARE(bench.tick(), (QStringList{"miNext", "close full", "close main"}));
    QVERIFY(!bench.show->isRunning());
    QVERIFY(bench.show->SlideShowOnly());
}

void TestSlideshow::mayEndWhileItStarts()
{
    Bench bench;
    bench.whenRun = [&bench](const QString&) { bench.show.reset(); };
    bench.show->startAlone();
    QCOMPARE(bench.done, (QStringList{"hide main", "miFullScreen"}));
}

void TestSlideshow::bands_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("pauses");
    QTest::newRow("context menu") << "NewImage" << true;
    QTest::newRow("open") << "bOpen" << true;
    QTest::newRow("files") << "bFiles" << true;
    QTest::newRow("filmstrip") << "bFilmStrip" << true;
    QTest::newRow("wallpaper") << "bWallpaper" << true;
    QTest::newRow("online") << "mnuOnline:x" << true;
    QTest::newRow("slideshow") << "mnuSlides:miSlideShowMenu" << true;
    QTest::newRow("recent") << "bRecent" << false;
    QTest::newRow("orders") << "bSlide" << false;
    QTest::newRow("delay") << "bCustom" << false;
    QTest::newRow("more than the name") << "NewImages" << false;
    QTest::newRow("less than the name") << "bFile" << false;
    QTest::newRow("another case") << "newimage" << false;
    QTest::newRow("another case of a part") << "mnuslideshow" << false;
    QTest::newRow("no name") << "" << false;
}

void TestSlideshow::bands()
{
    QFETCH(QString, name);
    QFETCH(bool, pauses);
    QCOMPARE(output::isPausingBand(name), pauses);
    Bench bench;
    bench.show->toggle();
    bench.show->bandOpens(name);
    QCOMPARE(bench.show->isRunning(), !pauses);
    QCOMPARE(bench.show->PausedByBand(), pauses ? name : QString());
    bench.show->bandCloses(name);
    QVERIFY(bench.show->isRunning());
    QCOMPARE(bench.caption, QStringLiteral("picture"));
}

void TestSlideshow::aBandPausesARunningShow()
{
    Bench bench;
    bench.show->toggle();
    bench.show->bandOpens(QStringLiteral("NewImage"));
    QVERIFY(!bench.show->isRunning());
    QVERIFY(bench.show->PausedEnabledState());
    QCOMPARE(bench.show->PausedByBand(), QStringLiteral("NewImage"));
    QCOMPARE(bench.caption, QStringLiteral("picture (Slideshow Paused) "));
    bench.show->bandCloses(QStringLiteral("bRecent"));
    QVERIFY(!bench.show->isRunning());
    bench.show->bandCloses(QStringLiteral("NewImage"));
    QVERIFY(bench.show->isRunning());
    QCOMPARE(bench.show->PausedByBand(), QString());
    QCOMPARE(bench.caption, QStringLiteral("picture"));
}

void TestSlideshow::aBandLeavesAStoppedShowStopped()
{
    Bench bench;
    bench.show->bandOpens(QStringLiteral("bFiles"));
    QCOMPARE(bench.caption, QStringLiteral("picture"));
    QVERIFY(!bench.show->PausedEnabledState());
    QCOMPARE(bench.show->PausedByBand(), QStringLiteral("bFiles"));
    bench.show->bandCloses(QStringLiteral("bFiles"));
    QVERIFY(!bench.show->isRunning());
    QCOMPARE(bench.show->PausedByBand(), QString());
}

void TestSlideshow::aSecondBandDisturbsNothing()
{
    Bench bench;
    bench.show->toggle();
    bench.show->bandOpens(QStringLiteral("NewImage"));
    bench.show->bandOpens(QStringLiteral("bWallpaper"));
    QCOMPARE(bench.show->PausedByBand(), QStringLiteral("NewImage"));
    QCOMPARE(bench.caption, QStringLiteral("picture (Slideshow Paused) "));
    bench.show->bandCloses(QStringLiteral("bWallpaper"));
    QVERIFY(!bench.show->isRunning());
    bench.show->bandCloses(QStringLiteral("NewImage"));
    QVERIFY(bench.show->isRunning());
}

void TestSlideshow::everyPausedTextGoes()
{
    Bench bench;
    bench.show->toggle();
    bench.show->bandOpens(QStringLiteral("bOpen"));
    bench.caption = paused + QStringLiteral("a") + paused + paused + QStringLiteral("b");
    bench.show->bandCloses(QStringLiteral("bOpen"));
    QCOMPARE(bench.caption, QStringLiteral("ab"));
}

void TestSlideshow::aBandWithoutANameClosesNothing()
{
    Bench bench;
    bench.show->toggle();
    bench.show->bandCloses(QString());
    QVERIFY(bench.show->isRunning());
}

void TestSlideshow::aShowToggledDuringAPauseComesBackAsItWas()
{
    Bench bench;
    bench.show->bandOpens(QStringLiteral("bOpen"));
    bench.show->toggle();
    QVERIFY(bench.show->isRunning());
    bench.show->bandCloses(QStringLiteral("bOpen"));
    QVERIFY(!bench.show->isRunning());
}

void TestSlideshow::theDelayToolSaysTheInterval()
{
    Bench bench;
    QCOMPARE(bench.show->delayText(), QStringLiteral("2"));
    bench.show->chooseDelay(QStringLiteral("2.5"));
    QCOMPARE(bench.show->delayText(), QStringLiteral("2.5"));
}

void TestSlideshow::typingADelay_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("typed"); // what the tool says after a key
    QTest::addColumn<int>("afterTyping");
    QTest::addColumn<QString>("chosen"); // and after the text was entered
    QTest::addColumn<int>("afterChoosing");
    QTest::newRow("five") << "5"
                          << "5" << 5000 << "5" << 5000;
    QTest::newRow("a half") << "0.5"
                            << "1" << 1000 << "1" << 1000;
    QTest::newRow("sixty-one") << "61"
                               << "60" << 60000 << "60" << 60000;
    QTest::newRow("one and a half") << "1.5"
                                    << "1.5" << 1500 << "1.5" << 1500;
    QTest::newRow("letters") << "abc"
                             << "1" << 1000 << "1" << 1000;
    QTest::newRow("empty") << ""
                           << "" << 4000 << "1" << 1000;
}

void TestSlideshow::typingADelay()
{
    QFETCH(QString, text);
    QFETCH(int, afterTyping);
    QFETCH(int, afterChoosing);
    Bench bench;
    bench.show->chooseDelay(QStringLiteral("4"));
    QTEST(bench.show->typeDelay(text), "typed");
    QCOMPARE(bench.show->interval(), afterTyping);
    QCOMPARE(app::read(app::setting::Interval), afterTyping);
    QTEST(bench.show->chooseDelay(text), "chosen");
    QCOMPARE(bench.show->interval(), afterChoosing);
    QCOMPARE(app::read(app::setting::Interval), afterChoosing);
}

void TestSlideshow::aDelayHoldsForTheRunningShow()
{
    Bench bench;
    app::save(app::setting::Interval, 1000000); // beyond the patience of this test
    bench.show->readSettings();
    bench.show->toggle();
    bench.show->chooseDelay(QStringLiteral("1"));
    QVERIFY(bench.show->isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(bench.done.contains("miNext"), 20000);
}

QTEST_GUILESS_MAIN(TestSlideshow)
#include "tst_slideshow.moc"
