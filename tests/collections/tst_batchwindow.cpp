// The actions of the panel's menu on the screen, and what becomes of a window that goes away in the middle.
#include "BatchBench.h"
#include "collections/EntryView.h"
#include "collections/frmImageViewPlaylist.h"
#include "collections/Playlist.h"
#include "platform/Dialogs.h"
#include "support/QolPaths.h"

#include <QDialog>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QThread>

using namespace quorvia;
using collections::frmImageViewPlaylist;

class TestBatchWindow : public test::BatchTest
{
    Q_OBJECT

  private:
    std::unique_ptr<frmImageViewPlaylist> m_host;

    /// The window with its panel over the pictures of the bench.
    void show()
    {
        m_host = std::make_unique<frmImageViewPlaylist>(m_bench->window);
        m_host->setBatchServices(services());
        m_host->startUp();
        m_host->SetPattern("*.jpg");
        m_host->setPath(0, in("pics"));
        m_host->resize(240, 500);
        m_host->show();
        m_host->list()->finishRebuild();
        QCOMPARE(m_host->ListCount(), 5);
    }
    collections::EntryView& lPlaylist() const { return *m_host->findChild<collections::EntryView*>(); }
    void click(int row, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers held = Qt::NoModifier) const
    {
        const QPoint place = lPlaylist().visualRect(lPlaylist().model()->index(row, 0)).center();
        QTest::mouseClick(lPlaylist().viewport(), button, held, place);
    }
    static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    static QAction* tool(const char* name) { return menu()->findChild<QAction*>(QLatin1String(name)); }
    /// Chooses a tool of the menu that is open.
    static void choose(const char* name)
    {
        QVERIFY(menu());
        QAction* const action = tool(name);
        QVERIFY2(action && action->isVisible() && action->isEnabled(), name);
        action->trigger();
        if (menu())
            menu()->close();
    }
    /// Chooses one of those that the conversion has.
    static void chooseFormat(const char* name)
    {
        QVERIFY(menu());
        QMenu* const files = menu();
        QMenu* const bConvert = tool("tConvert")->menu();
        QVERIFY(tool("tConvert")->isEnabled());
        bConvert->popup({0, 0}); // which fills it
        auto* const action = bConvert->findChild<QAction*>(QLatin1String(name));
        QVERIFY2(action && action->isVisible() && action->isEnabled(), name);
        action->trigger();
        bConvert->close();
        files->close();
    }

  private Q_SLOTS:
    void cleanup()
    {
        if (menu())
            menu()->close();
        m_host.reset();
        BatchTest::cleanup();
    }

    void theMenuConverts()
    {
        show();
        click(1);
        click(3, Qt::LeftButton, Qt::ControlModifier);
        m_bench->window.opened.clear();
        m_bench->window.current = in("pics/b.jpg");
        click(3, Qt::RightButton);
        chooseFormat("tPNG");
        QTRY_COMPARE(m_steps, QStringList({"hidden", "released", "shown"}));
        QCOMPARE(m_calls, QStringList({"b.jpg > b.png", "d.jpg > d.png"}));
        QCOMPARE(m_bench->window.opened, QStringList(in("pics/b.png")));
        QTRY_VERIFY(m_host->IsReady());
        QCOMPARE(m_bench->window.tools.count("FileListUpdated"), 2);
    }

    void theMenuDeletes()
    {
        show();
        click(4);
        QCOMPARE(m_bench->window.current, in("pics/e.jpg"));
        click(4, Qt::RightButton);
        choose("miDelete");
        QCOMPARE(trashed(), QStringList("e.jpg"));
        QCOMPARE(m_host->ListCount(), 4);
        QCOMPARE(m_host->ListIndex(), 3);
        QCOMPARE(lPlaylist().currentIndex().row(), 3);
        QCOMPARE(lPlaylist().selectionModel()->selectedIndexes().size(), 1);
        QCOMPARE(m_host->GetSelectedFiles(), in("pics/d.jpg;"));
    }

    void anEntryThatWasOnlyPointedAtIsDeleted()
    {
        show();
        click(2, Qt::RightButton); // no entry has been opened
        choose("miDelete");
        QCOMPARE(trashed(), QStringList("c.jpg"));
        QCOMPARE(m_bench->window.opened, QStringList());
    }

    void theMenuKnowsWhetherThereIsMail()
    {
        show();
        m_tool.clear();
        click(0, Qt::RightButton);
        QVERIFY(!tool("miEmailImages")->isVisible());
        menu()->close();
        m_tool = "/bin/false"; // it was installed meanwhile
        click(0, Qt::RightButton);
        QVERIFY(tool("miEmailImages")->isVisible());
        menu()->close();
    }

    void mailStartsTheTool()
    {
        show();
        m_tool = m_bench->home.write("tools/postrel", "#!/bin/sh\nprintf '%s|' \"$@\" > \"$0.told\"\n");
        QVERIFY(QFile::setPermissions(m_tool, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        click(0);
        click(1, Qt::LeftButton, Qt::ShiftModifier);
        click(0, Qt::RightButton);
        choose("miEmailImages");
        QTRY_COMPARE(contentOf(m_tool + ".told"),
                     "/subject:Image|/hiddenbody:|/attachments:" + in("pics/a.jpg").toUtf8() + ';' +
                         in("pics/b.jpg").toUtf8() + '|');
    }

    void commandsComeThroughTheWindow()
    {
        show();
        m_tool.clear();
        int asked = 0;
        const platform::MessageBoxAnswerer boxes([&](const platform::MessageBox&) {
            ++asked;
            return platform::BoxAnswer::Ok;
        });
        m_host->list()->setSelection({{0, 0}});
        m_host->RunTool("EMailImages");
        QCOMPARE(asked, 1);
        m_host->RunTool("DeleteSelectedFiles");
        QCOMPARE(trashed(), QStringList("a.jpg"));
    }

    void yesToAllShowsHowFarItIs()
    {
        for (int i = 0; i < 400; ++i)
            m_bench->home.write(QString("many/%1.jpg").arg(i, 3, 10, QChar('0')), "x");
        show();
        m_host->setPath(0, in("many"));
        m_host->list()->finishRebuild();
        m_bench->window.current = in("pics/a.jpg");
        m_host->list()->setSelection({{0, 399}});
        m_answers = QStringList("Yes to all");
        int shown = 0;
        m_during = [&] {
            QThread::msleep(10); // what a conversion takes
            auto* const box = m_host->findChild<QDialog*>("LongWork");
            if (!box || shown > 0)
                return;
            const auto* const bar = box->findChild<QProgressBar*>();
            QCOMPARE(bar->maximum(), 400);
            shown = bar->value();
            QTest::mouseClick(box->findChild<QPushButton*>("Cancel"), Qt::LeftButton);
        };
        m_host->batch().ConvertImage("png");
        QVERIFY(shown > 0 && shown < 400);
        QVERIFY2(m_calls.size() < 400, qPrintable(QString::number(m_calls.size())));
        QVERIFY(QFile::exists(in("many/000.png"))); // what was done stays
        QCOMPARE(m_steps, QStringList({"hidden", "released", "shown"}));
        QCOMPARE(m_bench->window.opened.last(), in("pics/a.jpg"));
        QVERIFY(!m_host->findChild<QDialog*>("LongWork"));
    }

    void theWindowGoesDuringAConversion_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<bool>("destroyed");
        QTest::newRow("closed, asking") << "Yes" << false;
        QTest::newRow("closed, without questions") << "Yes to all" << false;
        QTest::newRow("destroyed, asking") << "Yes" << true;
        QTest::newRow("destroyed, without questions") << "Yes to all" << true;
    }
    void theWindowGoesDuringAConversion()
    {
        QFETCH(QString, answer);
        QFETCH(bool, destroyed);
        show();
        lPlaylist().selectAll();
        m_bench->window.current = in("pics/a.jpg");
        m_answers = QStringList(answer);
        m_during = [&] {
            if (m_calls.size() < 2)
                return;
            m_host->CloseDown();
            if (destroyed)
                m_host.reset();
        };
        m_host->RunTool("showcontextmenu");
        chooseFormat("tBMP");
        QTRY_COMPARE(m_calls.size(), 2);
        QCoreApplication::processEvents();
        QCOMPARE(m_calls.size(), 2);
        QCOMPARE(m_bench->window.opened, QStringList());
        QCOMPARE(m_steps.size(), destroyed ? 2 : 3);
        QVERIFY(QFile::exists(in("pics/b.bmp")));
    }

    void theWindowGoesDuringADeletion()
    {
        for (int i = 0; i < 3000; ++i)
            m_bench->home.write(QString("many/%1.jpg").arg(i), "x");
        show();
        m_host->setPath(0, in("many"));
        m_host->list()->finishRebuild();
        lPlaylist().selectAll();
        QTimer::singleShot(0, this, [this] { m_host.reset(); });
        m_host->batch().DeleteSelectedFiles();
        QVERIFY(!m_host);
        QVERIFY2(trashed().size() < 3000, qPrintable(QString::number(trashed().size())));
    }

    void aRenamedFileFollowsInThePlaylist()
    {
        show();
        QVERIFY(m_host->IntiPlaylist(true));
        m_host->list()->playlist()->AddPlaylistFiles(pathsOf({"a.jpg", "b.jpg", "a.jpg"}));
        m_host->SelectTab(1);
        m_host->list()->finishRebuild();
        QVERIFY(QFile::rename(in("pics/a.jpg"), in("pics/z.jpg")));
        m_host->RenamePlaylist(in("pics/A.JPG"), in("pics/y.jpg"));
        QVERIFY(m_host->IsReady());
        m_host->RenamePlaylist(in("pics/a.jpg"), in("pics/z.jpg"));
        QVERIFY(!m_host->IsReady());
        m_host->list()->finishRebuild();
        QCOMPARE(m_host->list()->files(), pathsOf({"z.jpg", "b.jpg", "z.jpg"}));
        QCOMPARE(m_host->List(2), QString("3. z (JPG)"));
        const QString file = collections::namedPlaylistPath("Auto Playlist");
        QTRY_COMPARE(test::qolPaths(contentOf(file)), m_host->list()->files());
    }
};

QTEST_MAIN(TestBatchWindow)
#include "tst_batchwindow.moc"
