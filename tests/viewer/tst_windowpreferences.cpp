// The preferences over the main window: what they take from it and give to it.
#include "app/Colors.h"
#include "app/Settings.h"
#include "controls/uLink.h"
#include "platform/Band.h"
#include "platform/Dialogs.h"
#include "platform/NextDialog.h"
#include "support/FileContent.h"
#include "support/ScratchDesktop.h"
#include "system/frmImageViewOptions.h"
#include "viewer/PictureStage.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using system::frmImageViewOptions;
using viewer::frmImageView;
namespace setting = app::setting;

namespace {

constexpr QColor chosen(200, 100, 50);

template <class Kind>
Kind* part(frmImageViewOptions& options, const char* name)
{
    return options.findChild<Kind*>(QLatin1String(name));
}

void click(frmImageViewOptions& options, const char* button)
{
    part<QPushButton>(options, button)->click();
}

/// Runs the command and lets `act` use the window that comes, which it need not close. True when it came.
bool runPreferences(frmImageView& window, const std::function<void(frmImageViewOptions&)>& act)
{
    test::NextDialog<frmImageViewOptions> next([&act](frmImageViewOptions& options) {
        const QPointer<frmImageViewOptions> open = &options;
        act(options);
        if (frmImageViewOptions* const left = open.data(); left && left->isVisible())
            left->reject();
    });
    window.RunTool(QStringLiteral("miPref"));
    return next.seen();
}

/// Where the window and its panes stand; nowhere for one that is not there or does not show.
QList<QRect> places(const frmImageView& window)
{
    const viewer::Panes& panes = *window.panes();
    QList<QRect> all = {window.geometry()};
    for (const QWidget* pane : std::initializer_list<const QWidget*>{
             panes.pMain(), panes.pTop(), panes.pContain(), panes.pWelcome(), panes.pInformation(),
             panes.pShowInfo(), panes.pFilmStrip(), panes.pFilm(), panes.bPlay()->client(),
             panes.bInfo()->client()})
        all.append(pane && pane->isVisible() ? pane->geometry() : QRect());
    return all;
}

} // namespace

class TestWindowPreferences : public QObject, private test::PictureStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theColorIsTheViewportsAtOnce_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("colored");
        QTest::newRow("accepted") << "Command2" << true;
        QTest::newRow("cancelled") << "Command1" << false;
    }

    void theColorIsTheViewportsAtOnce()
    {
        QFETCH(QString, button);
        QFETCH(bool, colored);
        frmImageView& window = m_bench->load({m_bench->in("pics")});
        const QColor before = app::paneColor(window.pContain());
        QVERIFY(before != chosen);
        const platform::ColorAnswerer answerer([](const platform::ColorQuestion&) { return chosen; });
        QVERIFY(runPreferences(window, [&](frmImageViewOptions& options) {
            QCOMPARE(app::paneColor(part<QWidget>(options, "pBack")), before);
            click(options, "cmdColor");
            QCOMPARE(app::paneColor(window.pContain()), before);
            click(options, qPrintable(button));
        }));
        const QColor after = colored ? chosen : before;
        QCOMPARE(app::paneColor(window.pContain()), after);
        QCOMPARE(window.ix1()->BackColor(), after);
        QCOMPARE(app::read(setting::MainBackColor, -1), colored ? app::toColorNumber(chosen) : -1);
        QVERIFY(!window.findChild<frmImageViewOptions*>());
    }

    void thePresentColorIsShownAndNotTheStoredOne()
    {
        frmImageView& window = m_bench->load();
        QVERIFY(app::save(setting::MainBackColor, 255));
        const QColor present = app::paneColor(window.pContain());
        QVERIFY(runPreferences(window, [&](frmImageViewOptions& options) {
            QCOMPARE(app::paneColor(part<QWidget>(options, "pBack")), present);
        }));
    }

    void otherOptionsWaitForTheNextUse()
    {
        frmImageView& window = m_bench->load({m_bench->in("pics")});
        QTRY_COMPARE(window.currentFile(), m_bench->in("pics/a.png"));
        QVERIFY(window.viewport()->FitToWindow());
        QVERIFY(window.panes()->uLink()->isVisible());
        QVERIFY(!window.isFullScreen());
        const QList<QRect> before = places(window);
        QVERIFY(runPreferences(window, [](frmImageViewOptions& options) {
            part<QComboBox>(options, "cView")->setCurrentIndex(1);
            for (const char* check : {"cFull", "cLayout", "chkDyn"})
                part<QCheckBox>(options, check)->click();
            click(options, "Command2");
        }));
        QCoreApplication::processEvents();
        QCOMPARE(app::read(setting::cView), 1);
        QCOMPARE(app::read(setting::cFull), 1);
        QCOMPARE(app::read(setting::cLayout), 0);
        QCOMPARE(app::read(setting::DynamicLink), 0);
        QVERIFY(window.viewport()->FitToWindow());
        QVERIFY(window.panes()->uLink()->isVisible());
        QVERIFY(!window.isFullScreen());
        QCOMPARE(places(window), before);
    }

    void thumbnailsAreCountedAndCleared()
    {
        frmImageView& window = m_bench->load();
        m_bench->home.write(QStringLiteral("cache/1.thb"), QByteArray(512 * 1024, 'x'));
        m_bench->home.write(QStringLiteral("cache/2.thb"), QByteArray(256 * 1024, 'x'));
        m_bench->home.write(QStringLiteral("cache/other.jpg"), "x");
        QVERIFY(app::save(app::common::ThumbnailPath, m_bench->in("cache"))); // without its "/"
        const platform::MessageBoxAnswerer yes(
            [](const platform::MessageBox&) { return platform::BoxAnswer::Yes; });
        QVERIFY(runPreferences(window, [](frmImageViewOptions& options) {
            const QLabel* const statistics = part<QLabel>(options, "lThumbstats");
            QTRY_COMPARE(statistics->text(),
                         QStringLiteral("Current Number of Files: 2\r\nDisk Space Used: 0.75 MB"));
            click(options, "cmdClearThumbs");
            QTRY_COMPARE(statistics->text(),
                         QStringLiteral("Current Number of Files: 0\r\nDisk Space Used: 0.00 MB"));
        }));
        QCOMPARE(QDir(m_bench->in("cache")).entryList(QDir::Files), QStringList{"other.jpg"});
    }

    void theTypesAreTakenOver()
    {
        test::leaveDesktop(m_bench->home);
        frmImageView& window = m_bench->load();
        platform::BoxAnswer said = platform::BoxAnswer::No;
        const platform::MessageBoxAnswerer answerer([&said](const platform::MessageBox&) { return said; });
        const QString list = m_bench->in(".config/mimeapps.list");
        QVERIFY(runPreferences(window, [&](frmImageViewOptions& options) {
            click(options, "cmdAssociate");
            QVERIFY(!QFile::exists(list));
            said = platform::BoxAnswer::Yes;
            click(options, "cmdAssociate");
            QVERIFY(test::contentOf(list).contains("\nimage/png=quorvia.desktop\n"));
            QCOMPARE(app::read(setting::Associate), 0);
        }));
        QVERIFY(test::contentOf(list).contains(
            "\nimage/png=quorvia.desktop\n")); // behind the end of the dialog, too
    }

    void anotherProgramTakesTheTypesOver()
    {
        test::leaveDesktop(m_bench->home);
        frmImageView& window = m_bench->load();
        m_bench->home.write(QStringLiteral("root/AssociationImages.dat"),
                            "[Desktop Entry]\nType=Application\nExec=\"{appexe}\" %f\nMimeType=image/png;\n");
        const QString program = m_bench->home.write(QStringLiteral("bin/other"), "#!/bin/sh\n");
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
        const platform::MessageBoxAnswerer yes(
            [](const platform::MessageBox&) { return platform::BoxAnswer::Yes; });
        const platform::FileChooserAnswerer chooser(
            [&program](const platform::FileChooser&) { return program; });
        QVERIFY(runPreferences(window,
                               [](frmImageViewOptions& options) { click(options, "cmdAssociateOther"); }));
        QVERIFY(test::contentOf(m_bench->in(".config/mimeapps.list"))
                    .contains("\nimage/png=userapp-other.desktop\n"));
    }

    void thereIsOneAtATime()
    {
        frmImageView& window = m_bench->load();
        QVERIFY(runPreferences(window, [&window](frmImageViewOptions& options) {
            window.RunTool(QStringLiteral("miPref")); // returns at once
            QCOMPARE(window.findChildren<frmImageViewOptions*>(), QList<frmImageViewOptions*>({&options}));
            QVERIFY(options.isVisible());
        }));
        QVERIFY(runPreferences(window, [](frmImageViewOptions&) {})); // and once more later
    }

    void slidesWaitForItsEnd()
    {
        frmImageView& window = m_bench->load({m_bench->in("pics")});
        QTRY_COMPARE(window.currentFile(), m_bench->in("pics/a.png"));
        window.RunTool(QStringLiteral("miSlideShow"));
        auto* const tSlide = window.slideshow()->findChild<QTimer*>(QStringLiteral("tSlide"));
        QVERIFY(tSlide);
        constexpr int often = 10; // milliseconds
        QVERIFY(runPreferences(window, [&](frmImageViewOptions&) {
            tSlide->setInterval(often);
            QSignalSpy ticks(tSlide, &QTimer::timeout);
            QTRY_VERIFY(ticks.size() >= 3);
            QCOMPARE(window.currentFile(), m_bench->in("pics/a.png"));
        }));
        QTRY_VERIFY(window.currentFile() != m_bench->in("pics/a.png"));
    }

    void theWindowMayEndMeanwhile()
    {
        frmImageView& window = m_bench->load();
        QPointer<QObject> options;
        QVERIFY(runPreferences(window, [&](frmImageViewOptions& open) {
            options = &open;
            m_bench->forget();
        }));
        QVERIFY(!options);
    }
};

QTEST_MAIN(TestWindowPreferences)
#include "tst_windowpreferences.moc"
