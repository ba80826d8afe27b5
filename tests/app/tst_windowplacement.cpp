#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "app/WindowPlacement.h"
#include "support/ScratchHome.h"

#include <QScreen>
#include <QTest>
#include <QWidget>

using namespace quorvia::app;

class TestWindowPlacement : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_home.emplace();
        openSettings();
    }
    void cleanup()
    {
        closeSettings();
        m_home.reset();
    }
    void comesBackWhereItWas();
    void keepsWhatWasNotStored();
    void defaultPositionKeepsThePlace();
    void aDefaultPositionOffTheScreenIsNotTaken();
    void comesBackMinimised();
    void comesBackOntoTheScreen_data();
    void comesBackOntoTheScreen();
    void maximisedKeepsTheUsualPlace();
    void minimisedKeepsTheUsualPlace();
    void aShownWindowComesBack();
    void damagedSizesAreBounded();
    void keysOfItsOwn();

  private:
    static constexpr char stem[] = "Preferences";
    static QString stemText() { return QLatin1String(stem); }
    /// Shows `window` as a normal one, 300 x 200 at `usual`.
    static void showUsual(QWidget& window, QPoint& usual)
    {
        window.setGeometry(40, 60, 300, 200);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        usual = window.pos();
    }
    /// In pixels.
    static QRect storedPlace()
    {
        const auto pixels = [](Placement which) { return toPixels(readPlacement(stemText(), which, -1)); };
        return {pixels(Placement::Left), pixels(Placement::Top), pixels(Placement::Width),
                pixels(Placement::Height)};
    }
    std::optional<quorvia::test::ScratchHome> m_home;
};

void TestWindowPlacement::comesBackWhereItWas()
{
    QWidget window;
    window.setGeometry(120, 80, 300, 200);
    SaveWindowPlacement(stemText(), &window);
    QCOMPARE(GetAppSetting(QStringLiteral("Settings"), QStringLiteral("PreferencesWinState"), -1).toInt(), 0);
    QCOMPARE(GetAppSetting(QStringLiteral("Settings"), QStringLiteral("PreferencesLeft"), -1).toInt(),
             120 * 15);
    QCOMPARE(GetAppSetting(QStringLiteral("Settings"), QStringLiteral("PreferencesHeight"), -1).toInt(),
             200 * 15);
    QWidget other;
    LoadWindowPlacement(stemText(), &other, false);
    QCOMPARE(other.pos(), QPoint(120, 80));
    QCOMPARE(other.size(), QSize(300, 200));
}

void TestWindowPlacement::keepsWhatWasNotStored()
{
    QWidget window;
    window.setGeometry(50, 60, 210, 110);
    savePlacement(stemText(), Placement::Width, 4500);
    LoadWindowPlacement(stemText(), &window, false);
    QCOMPARE(window.geometry(), QRect(50, 60, 300, 110));
}

void TestWindowPlacement::defaultPositionKeepsThePlace()
{
    savePlacement(stemText(), Placement::Left, 3000);
    savePlacement(stemText(), Placement::Top, 3000);
    savePlacement(stemText(), Placement::Width, 4500);
    QWidget window;
    window.setGeometry(50, 60, 210, 110);
    LoadWindowPlacement(stemText(), &window, true);
    QCOMPARE(window.geometry(), QRect(50, 60, 300, 110));
}

void TestWindowPlacement::aDefaultPositionOffTheScreenIsNotTaken()
{
    QWidget window;
    window.setGeometry(20000, 60, 200, 100);
    LoadWindowPlacement(stemText(), &window, true);
    const QRect screen = window.screen()->geometry();
    QVERIFY((window.pos() - QPoint(screen.width() / 2 - 100, screen.height() / 2 - 50)).manhattanLength() <=
            2);
}

void TestWindowPlacement::comesBackMinimised()
{
    savePlacement(stemText(), Placement::WinState, 1);
    QWidget window;
    LoadWindowPlacement(stemText(), &window, false);
    QVERIFY(window.isMinimized());
}

void TestWindowPlacement::comesBackOntoTheScreen_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("top");
    QTest::newRow("far to the right") << 2000000 << 100;
    QTest::newRow("far above") << 100 << -2000000;
    QTest::newRow("beyond a number") << 2147483647 << -2147483647;
}

void TestWindowPlacement::comesBackOntoTheScreen()
{
    QFETCH(int, left);
    QFETCH(int, top);
    savePlacement(stemText(), Placement::Left, left);
    savePlacement(stemText(), Placement::Top, top);
    QWidget window;
    window.resize(200, 100);
    LoadWindowPlacement(stemText(), &window, false);
    const QRect screen = window.screen()->geometry();
    const QPoint middle = screen.topLeft() + QPoint(screen.width() / 2 - 100, screen.height() / 2 - 50);
    QVERIFY((window.pos() - middle).manhattanLength() <= 2);
}

void TestWindowPlacement::maximisedKeepsTheUsualPlace()
{
    QWidget window;
    QPoint usual;
    showUsual(window, usual);
    window.showMaximized();
    QTRY_VERIFY(window.width() > 300 && window.isMaximized());
    SaveWindowPlacement(stemText(), &window);
    QVERIFY(!window.isMaximized());
    QCOMPARE(readPlacement(stemText(), Placement::WinState, -1), 2);
    QCOMPARE(storedPlace(), QRect(usual, QSize(300, 200)));
    QWidget other;
    LoadWindowPlacement(stemText(), &other, false);
    QVERIFY(other.isMaximized());
}

void TestWindowPlacement::minimisedKeepsTheUsualPlace()
{
    QWidget window;
    QPoint usual;
    showUsual(window, usual);
    window.showMinimized();
    QTRY_VERIFY(window.isMinimized());
    SaveWindowPlacement(stemText(), &window);
    QCOMPARE(readPlacement(stemText(), Placement::WinState, -1), 1);
    QCOMPARE(storedPlace(), QRect(usual, QSize(300, 200)));
}

void TestWindowPlacement::aShownWindowComesBack()
{
    QPoint place;
    {
        QWidget window;
        window.setGeometry(70, 90, 320, 240);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        place = window.pos();
        SaveWindowPlacement(stemText(), &window);
    }
    QWidget other;
    LoadWindowPlacement(stemText(), &other, false);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    QTRY_COMPARE(other.pos(), place);
    QCOMPARE(other.size(), QSize(320, 240));
}

void TestWindowPlacement::damagedSizesAreBounded()
{
    savePlacement(stemText(), Placement::Left, 4500);
    savePlacement(stemText(), Placement::Width, 2147483647);
    savePlacement(stemText(), Placement::Height, -7);
    QWidget window;
    window.setMinimumSize(64, 48);
    window.resize(640, 480);
    LoadWindowPlacement(stemText(), &window, false);
    QCOMPARE(window.x(), 0); // the place was another desktop's too
    QCOMPARE(window.width(), window.screen()->virtualSize().width());
    QCOMPARE(window.height(), 480); // as it was
}

void TestWindowPlacement::keysOfItsOwn()
{
    const PlacementKeys keys{.state = setting::PlaylistEditorWindowState,
                             .left = setting::PlaylistEditorLeft,
                             .top = setting::PlaylistEditorTop,
                             .width = setting::PlaylistEditorWidth,
                             .height = setting::PlaylistEditorHeight};
    QWidget window;
    window.setGeometry(120, 80, 300, 200);
    SaveWindowPlacement(keys, &window);
    const auto stored = [](const char* name) {
        return GetAppSetting(QStringLiteral("Settings"), QLatin1String(name), -1).toInt();
    };
    QCOMPARE(stored("PlaylistEditorWindowState"), 0);
    QCOMPARE(stored("PlaylistEditorLeft"), 120 * 15);
    QCOMPARE(stored("PlaylistEditorTop"), 80 * 15);
    QCOMPARE(stored("PlaylistEditorWidth"), 300 * 15);
    QCOMPARE(stored("PlaylistEditorHeight"), 200 * 15);
    QCOMPARE(stored("PlaylistEditorWinState"), -1);
    QWidget other;
    other.setGeometry(10, 10, 50, 50);
    LoadWindowPlacement(keys, &other);
    QCOMPARE(other.geometry(), QRect(120, 80, 300, 200));
}

QTEST_MAIN(TestWindowPlacement)
#include "tst_windowplacement.moc"
