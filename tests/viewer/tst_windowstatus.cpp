// What describes the current image in the main window: information panel, descriptions and side bar.
#include "app/Paths.h"
#include "app/Settings.h"
#include "controls/gnTab.h"
#include "output/frmImageEXIF.h"
#include "platform/MenuControl.h"
#include "platform/PaneBar.h"
#include "viewer/PictureStage.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using viewer::frmImageView;
namespace setting = app::setting;

class TestWindowStatus : public QObject, private test::PictureStage
{
    Q_OBJECT

  private:
    frmImageView* m_window = nullptr;

    void run(const char* command) const { m_window->RunTool(QLatin1String(command)); }
    QString path() const { return m_window->findChild<QLineEdit*>(QStringLiteral("tPath"))->text(); }
    QString text(const char* field) const
    {
        return m_window->findChild<QPlainTextEdit*>(QLatin1String(field))->toPlainText();
    }
    void describe(const char* words) const
    {
        auto* const tDes = m_window->findChild<QPlainTextEdit*>(QStringLiteral("tDes"));
        tDes->selectAll();
        QTest::keyClicks(tDes, QLatin1String(words));
    }
    static int descriptions()
    {
        return int(QDir(app::InstallPath() + QStringLiteral("Description")).entryList(QDir::Files).size());
    }
    platform::Band* bInfo() const { return m_window->panes()->bInfo(); }
    /// The keys of the panes that the side bar has.
    int panesOfBar() const
    {
        const auto* const bar = qobject_cast<output::frmImageEXIF*>(bInfo()->client());
        return bar ? int(bar->barEXIF()->panes().size()) : -1;
    }

    frmImageView& open()
    {
        m_window = &m_bench->load({in("pics")});
        m_window->OpenMenuX(true);
        return *m_window;
    }
    frmImageView& openWithPanel()
    {
        open();
        run("miViewInformation");
        return *m_window;
    }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void thePanelIsMadeWhenItIsSeen()
    {
        open();
        QVERIFY(!m_window->findChild<QLineEdit*>(QStringLiteral("tPath")));
        m_window->panes()->gTab()->SetSelectedTab(QStringLiteral("Information"));
        QVERIFY(!m_window->findChild<QLineEdit*>(QStringLiteral("tPath"))); // the viewport lies over it
        run("miHideInterface");
        QCOMPARE(path(), in("pics/a.png"));
    }

    void thePanelFollowsTheImage()
    {
        openWithPanel();
        QCOMPARE(path(), in("pics/a.png"));
        QVERIFY(text("tImageInfo").contains(QLatin1String("Dimensions: 40x30")));
        QVERIFY(text("tFileInfo").startsWith(QLatin1String("File Size: ")));
        run("miNext");
        QCOMPARE(path(), in("pics/b.png"));
        run("miViewNormal");
        run("miNext");
        QCOMPARE(path(), in("pics/b.png")); // costs nothing while it is hidden
        run("miViewInformation");
        QCOMPARE(path(), in("pics/two words.png"));
    }

    void aDescriptionGoesToTheImageItWasTypedFor()
    {
        openWithPanel();
        describe("red");
        run("miNext"); // within the half second
        QCOMPARE(text("tDes"), QStringLiteral("(none)"));
        QCOMPARE(descriptions(), 1);
        run("miPrevious");
        QCOMPARE(text("tDes"), QStringLiteral("red"));
    }

    void keysWaitForTheSave()
    {
        openWithPanel();
        describe("red");
        auto* const tSaveDes = m_window->findChild<QTimer*>(QStringLiteral("tSaveDes"));
        QVERIFY(tSaveDes->isActive());
        run("miEXIFView");
        for (QWidget* const target : {static_cast<QWidget*>(m_window), bInfo()->client()}) {
            for (const int key : {Qt::Key_Right, Qt::Key_Escape}) {
                for (const char* debounce : {"tWait", "tKey"})
                    m_window->findChild<QTimer*>(QLatin1String(debounce))->stop();
                QTest::keyClick(target, Qt::Key(key));
            }
        }
        QVERIFY(!m_window->isUnloaded());
        QCOMPARE(m_window->currentFile(), in("pics/a.png"));
        QTRY_VERIFY(!tSaveDes->isActive());
        QTRY_VERIFY(!m_window->findChild<QTimer*>(QStringLiteral("tKey"))->isActive());
        QTest::keyClick(m_window, Qt::Key_Right);
        QCOMPARE(m_window->currentFile(), in("pics/b.png"));
    }

    void theEndSavesWhatWaits()
    {
        openWithPanel();
        describe("red");
        m_window->unload();
        QCOMPARE(descriptions(), 1); // before anything is taken down
        m_bench->close();
        m_bench->forget();
        openWithPanel();
        QCOMPARE(text("tDes"), QStringLiteral("red"));
    }

    void aClosedImageLeavesThePanelEmpty()
    {
        openWithPanel();
        describe("red");
        run("miCloseImage");
        QCOMPARE(descriptions(), 1);
        QCOMPARE(path(), QString());
        QVERIFY(text("tImageInfo").contains(QLatin1String("Dimensions: 0x0")));
        QCOMPARE(text("tDes"), QStringLiteral("(none)"));
    }

    void atTheStartWhenItsTabIsStored()
    {
        app::save(setting::ToggleInterface, 0);
        app::save(setting::ActiveTabWindow, QStringLiteral("Information"));
        open();
        QCOMPARE(path(), in("pics/a.png"));
    }

    void aCoveredPanelReadsNothingAndTakesNoKeys()
    {
        openWithPanel();
        m_window->show();
        auto* const tDes = m_window->findChild<QPlainTextEdit*>(QStringLiteral("tDes"));
        tDes->setFocus();
        QCOMPARE(m_window->focusWidget(), tDes);
        run("miHideInterface"); // the viewport lies over it
        QVERIFY(m_window->focusWidget() != tDes);
        QVERIFY(!tDes->isEnabled());
        run("miNext");
        QCOMPARE(path(), in("pics/a.png"));
        run("miHideInterface");
        QVERIFY(tDes->isEnabled());
        QCOMPARE(path(), in("pics/b.png"));
        QCOMPARE(descriptions(), 0);
    }

    void theSideBarComesAndGoes()
    {
        open();
        QVERIFY(!bInfo()->visible());
        const int width = m_window->pTop()->width();
        run("miEXIFView");
        QVERIFY(bInfo()->visible());
        QVERIFY(m_window->pTop()->width() < width - 100);
        run("miEXIFView");
        QVERIFY(!bInfo()->visible());
        QCOMPARE(m_window->pTop()->width(), width);
    }

    void theSideBarFollowsTheImage()
    {
        m_window = &m_bench->load();
        QVERIFY(!bInfo()->client()); // made when it is first seen
        run("miEXIFView");
        QCOMPARE(panesOfBar(), 1);
        m_window->OpenX(in("pics/a.png"));
        QCOMPARE(panesOfBar(), 4);
        run("miCloseImage");
        QCOMPARE(panesOfBar(), 1);
        run("miEXIFView");
        m_window->OpenX(in("pics/b.png"));
        run("miEXIFView");
        QCOMPARE(panesOfBar(), 4);
    }

    void aRowOfTheSideBarGivesTheKeysBack_data()
    {
        QTest::addColumn<bool>("floating");
        QTest::newRow("docked") << false;
        QTest::newRow("floating") << true;
    }

    void aRowOfTheSideBarGivesTheKeysBack()
    {
        QFETCH(bool, floating);
        open();
        m_window->show();
        run("miEXIFView");
        if (floating)
            bInfo()->toggleFloating();
        auto* const bar = qobject_cast<output::frmImageEXIF*>(bInfo()->client())->barEXIF();
        bar->activateWindow();
        bar->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), bar);
        Q_EMIT bar->itemClicked(QStringLiteral("Welcome"), QStringLiteral("miCloseImage"));
        QTRY_VERIFY(m_window->hasFocus());
        QCOMPARE(m_window->currentFile(), in("pics/a.png")); // no row runs a command
    }

    void keysOnTheSideBarAreTheWindows()
    {
        open();
        run("miEXIFView");
        auto* const bar = qobject_cast<output::frmImageEXIF*>(bInfo()->client())->barEXIF();
        QTest::keyClick(bar, Qt::Key_Right);
        QCOMPARE(m_window->currentFile(), in("pics/b.png"));
    }
};

QTEST_MAIN(TestWindowStatus)
#include "tst_windowstatus.moc"
