// The unload step of the main window.
#include "app/Paths.h"
#include "app/Settings.h"
#include "viewer/LoadStep.h"
#include "viewer/OpenedFiles.h"
#include "viewer/PictureStage.h"

#include <QFileInfo>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using test::ViewerBench;
using viewer::frmImageView;
namespace setting = app::setting;

namespace {

/// Does something when a window is told to close.
class WhenClosed : public QObject
{
  public:
    WhenClosed(QWidget& window, std::function<void()> act) : m_act(std::move(act))
    {
        window.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Close)
            m_act();
        return false;
    }

  private:
    std::function<void()> m_act;
};

} // namespace

class TestUnloadStep : public QObject, private test::PictureStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void closingSaves()
    {
        frmImageView& window = m_bench->load();
        window.resize(500, 320);
        window.move(40, 30);
        const QString scratch = m_bench->home.write(QStringLiteral("root/untitled.pic"), "scratch");
        QCOMPARE(QFileInfo(scratch).path() + QLatin1Char('/'), app::InstallPath());
        m_bench->close();
        QCOMPARE(app::read(setting::MainWidth, 0), 500 * 15);
        QCOMPARE(app::read(setting::MainHeight, 0), 320 * 15);
        QCOMPARE(app::read(setting::MainLeft, 0), 40 * 15);
        QCOMPARE(app::read(setting::MainTop, 0), 30 * 15);
        QCOMPARE(app::read(setting::MainWindowState), 0);
        QVERIFY(!QFile::exists(scratch));
    }

    void closingMaximisedKeepsTheNormalSize()
    {
        app::save(setting::MainWidth, 6000);
        app::save(setting::MainHeight, 4500);
        frmImageView& window = m_bench->load();
        window.showMaximized();
        QVERIFY(window.isMaximized());
        m_bench->close();
        QCOMPARE(app::read(setting::MainWindowState), 2);
        QCOMPARE(app::read(setting::MainWidth, 0), 6000);
        QCOMPARE(app::read(setting::MainHeight, 0), 4500);
        QVERIFY(m_bench->load().isMaximized());
    }

    void closingInFullScreenKeepsTheNormalSize()
    {
        app::save(setting::MainWidth, 6000);
        app::save(setting::MainHeight, 4500);
        frmImageView& window = m_bench->load();
        window.showFullScreen();
        QTRY_VERIFY(window.width() > 400);
        m_bench->close();
        QCOMPARE(app::read(setting::MainWidth, 0), 6000);
        QCOMPARE(app::read(setting::MainHeight, 0), 4500);
        QVERIFY(!m_bench->load().isFullScreen());
    }

    void closingMinimisedLeavesTheState()
    {
        app::save(setting::MainWindowState, 2);
        frmImageView& window = m_bench->load();
        window.showMinimized();
        m_bench->close();
        QCOMPARE(app::read(setting::MainWindowState), 2);
    }

    void anEarlyEndKeepsTheRecentList_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("a command") << QStringList{"/miExit"};
        QTest::newRow("after a folder") << QStringList{"@", "/miExit"};
        QTest::newRow("install") << QStringList{"/install"};
    }

    void anEarlyEndKeepsTheRecentList()
    {
        QFETCH(QStringList, arguments);
        app::save(setting::Recent, QStringLiteral(";/one;/two"));
        for (QString& argument : arguments)
            argument.replace(QLatin1Char('@'), in("pics"));
        m_bench->load(arguments);
        QVERIFY(!m_bench->wentOn);
        QCOMPARE(app::read(setting::Recent), QStringLiteral(";/one;/two"));
    }

    void closingWhileTheFirstPictureIsWaitedFor()
    {
        app::save(setting::Recent, QStringLiteral(";/one"));
        frmImageView& window = m_bench->make({in("pics/a.png")});
        QTimer::singleShot(0, &window, &QWidget::close);
        QVERIFY(!viewer::runLoadStep(window, false));
        QCOMPARE(app::read(setting::Recent), QStringLiteral(";/one"));
        QCOMPARE(m_bench->logTexts().last(), QStringLiteral("Start: First_CommandLineParsing"));
    }

    void installLeavesTheGeometryAlone()
    {
        app::save(setting::MainWidth, 4711);
        app::save(setting::ToggleInterface, 0);
        m_bench->load({QStringLiteral("/install")});
        m_bench->forget();
        QCOMPARE(app::read(setting::MainWidth, 0), 4711);
        QCOMPARE(app::read(setting::ToggleInterface), 0);
    }

    void unloadingClosesTheOtherWindows()
    {
        frmImageView& window = m_bench->load();
        QWidget other;
        other.show();
        window.close();
        QVERIFY(!other.isVisible());
    }

    void theListIsShutBeforeTheOtherWindowsClose()
    {
        frmImageView& window = m_bench->load({in("pics")});
        window.RunTool(QStringLiteral("miFileList"));
        const auto* const ftv = window.playlist()->findChild<QWidget*>(QStringLiteral("ftv"));
        QVERIFY(ftv && ftv->isVisible());
        QCOMPARE(window.list()->ListIndex(), 0);
        QWidget other;
        other.show();
        bool closed = false;
        WhenClosed watch(other, [&] {
            closed = true;
            QVERIFY(ftv->isHidden());
            window.list()->RefreshPlaylist();
            QVERIFY(window.list()->IsReady());
            window.list()->SetListIndex(1);
            QCOMPARE(window.list()->ListIndex(), 0);
        });
        window.close();
        QVERIFY(closed);
    }

    /// The start decodes for the size stored here before there is a window, and the window shares that.
    void theNextStartReadsItsPictureOnce()
    {
        test::OpenedFiles opened;
        m_bench.reset();
        m_bench = std::make_unique<ViewerBench>(opened.loader());
        const QString path = m_bench->picture(QStringLiteral("large.jpg"), Qt::red, {4000, 3000});
        frmImageView& window = m_bench->load({path});
        window.OpenMenuX(true);
        window.RunTool(QStringLiteral("miFileList")); // toolbar and list leave the picture less room
        m_bench->close();
        const auto before = opened.names().size();
        const auto early = m_bench->loader().load(
            path, 1, {app::read(setting::ViewportWidth, 0), app::read(setting::ViewportHeight, 0)});
        QVERIFY(early->first());
        QVERIFY(!early->first()->isFull());
        m_bench->load({path});
        QCOMPARE(opened.names().size(), before + 1);
    }

    void closingTwiceSavesOnce()
    {
        frmImageView& window = m_bench->load();
        window.close();
        app::save(setting::MainWidth, 4711);
        window.close();
        QCOMPARE(app::read(setting::MainWidth, 0), 4711);
    }
};

QTEST_MAIN(TestUnloadStep)
#include "tst_unloadstep.moc"
