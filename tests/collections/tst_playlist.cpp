// The panel of the list of pictures: its parts, what it shows, and the folders of its tree.
#include "app/Colors.h"
#include "app/Settings.h"
#include "collections/BatchActions.h"
#include "collections/PictureList.h"
#include "collections/Playlist.h"
#include "collections/PlaylistCommands.h"
#include "ListBench.h"
#include "platform/Dialogs.h"
#include "platform/FolderTree.h"
#include "PlaylistStage.h"

#include <QAccessible>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

using namespace quorvia;
using namespace quorvia::test;
using collections::PictureList;
using collections::Playlist;

class TestPlaylist : public QObject, private PlaylistStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void controlsKeepTheDesktopsColours()
    {
        show();
        const QPalette light = QGuiApplication::palette();
        app::setPaneColor(m_panel.get(), QColor(0, 121, 191));
        const auto text = [](const QWidget& part) { return part.palette().color(QPalette::WindowText); };
        QCOMPARE(text(*m_panel->findChild<QLabel*>(QStringLiteral("lPlaylistInfo"))), QColor(Qt::white));
        QPalette dark = light;
        dark.setColor(QPalette::WindowText, QColor(200, 210, 220));
        dark.setColor(QPalette::Window, QColor(40, 50, 60));
        dark.setColor(QPalette::Base, QColor(30, 30, 30));
        for (const QPalette& desktop : {light, dark, light}) {
            QApplication::setPalette(desktop);
            QCoreApplication::processEvents();
            for (const QWidget* part : {static_cast<QWidget*>(&ftv()), static_cast<QWidget*>(&lPlaylist()),
                                        static_cast<QWidget*>(&cmdDir())}) {
                QCOMPARE(text(*part), desktop.color(QPalette::WindowText));
                QCOMPARE(app::paneColor(part), desktop.color(QPalette::Window));
            }
        }
    }

    void showsWhatStandsWhenItIsMade()
    {
        list(in("pics"));
        m_list->SetListIndex(2);
        m_opened->clear();
        show();
        QCOMPARE(lPlaylist().model()->rowCount(), 5);
        QCOMPARE(shown(0), QStringLiteral("1. a (JPG)"));
        QCOMPARE(info(), QStringLiteral("5 Images"));
        QCOMPARE(selected(), QList<int>{2});
        QCOMPARE(lPlaylist().currentIndex().row(), 2);
        QCOMPARE(ftv().selectedFolder(), in("pics"));
        QVERIFY(ftv().showsSelected());
        QCOMPARE(m_list->ListIndex(), 2);
        QCOMPARE(m_list->GetSelectedFiles(), in("pics/c.jpg;"));
        QCOMPARE(m_opened->count(), 0);
    }

    void hasItsPartsUnderTheirNames()
    {
        show();
        for (const char* name : {"ftv", "lPlaylist", "lPlaylistInfo", "pFilelist", "cmdDir", "cmdPlaylist",
                                 "tab1", "ltab1", "i1", "tab2", "ltab2", "i2"})
            QVERIFY2(m_panel->findChild<QWidget*>(QLatin1String(name)), name);
        QCOMPARE(m_panel->findChild<QLabel*>(QStringLiteral("ltab1"))->text(), QStringLiteral("Folders"));
        QCOMPARE(cmdDir().text(), QStringLiteral(" Select Directory"));
        QCOMPARE(cmdPlaylist().text(), QStringLiteral(" Move All to Playlist"));
        QVERIFY(!cmdDir().icon().isNull());
        QVERIFY(!cmdPlaylist().icon().isNull());
        for (QWidget* part : {static_cast<QWidget*>(&ftv()), static_cast<QWidget*>(&lPlaylist()),
                              static_cast<QWidget*>(&cmdDir())}) {
            QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(part);
            QVERIFY(face);
            QVERIFY(!face->text(QAccessible::Name).isEmpty());
        }
        QCOMPARE(QAccessible::queryAccessibleInterface(&ftv())->role(), QAccessible::Tree);
        QCOMPARE(QAccessible::queryAccessibleInterface(&lPlaylist())->role(), QAccessible::List);
    }

    void followsRebuilds()
    {
        show();
        m_bench->home.write(QStringLiteral("other/x.jpg"), "x");
        m_list->setPath(in("other"));
        QCOMPARE(ftv().selectedFolder(), in("other"));
        QCOMPARE(lPlaylist().model()->rowCount(), 5); // until the rebuild
        m_list->finishRebuild();
        QCOMPARE(lPlaylist().model()->rowCount(), 1);
        QCOMPARE(info(), QStringLiteral("1 Images"));
        m_list->SetPattern(QStringLiteral("*.jpg;x*")); // both match the one file
        m_list->finishRebuild();
        QCOMPARE(info(), QStringLiteral("2 Images"));
        QCOMPARE(shown(1), QStringLiteral("2. x (JPG)"));
        m_list->SetPattern(QStringLiteral("*.bmp"));
        m_list->finishRebuild();
        QCOMPARE(info(), QStringLiteral("0 Images"));
        QVERIFY(selected().isEmpty());
    }

    void theCountIsSetAfterTheListHasChanged()
    {
        list(in("pics"));
        QString during;
        connect(m_list.get(), &PictureList::ListChanged, this, [&] { during = info(); });
        show();
        m_bench->home.write(QStringLiteral("pics/f.jpg"), "x");
        m_list->RefreshPlaylist();
        m_list->finishRebuild();
        QCOMPARE(during, QStringLiteral("5 Images"));
        QCOMPARE(info(), QStringLiteral("6 Images"));
    }

    void theCurrentEntryIsSelectedAndInSight()
    {
        for (int i = 0; i < 500; ++i)
            m_bench->home.write(QStringLiteral("many/%1.jpg").arg(i, 3, 10, QLatin1Char('0')), "x");
        show();
        m_list->setPath(in("many"));
        m_list->finishRebuild();
        for (const int row : {499, 0, 250, 251}) {
            m_list->SetListIndex(row);
            QVERIFY2(isInSight(row), qPrintable(QString::number(row)));
            QCOMPARE(selected(), QList<int>{row});
            QCOMPARE(lPlaylist().currentIndex().row(), row);
            QCOMPARE(m_list->GetSelectedFiles(), m_list->ListFile(row) + u';');
        }
        m_list->SetListIndex(-1);
        QVERIFY(selected().isEmpty());
        QVERIFY(!lPlaylist().currentIndex().isValid());
    }

    void theUsersFolderIsListed()
    {
        m_bench->home.write(QStringLiteral("pics/sub/x.jpg"), "x");
        app::save(app::setting::BrowserRoot, in("pics"));
        show();
        QCOMPARE(ftv().root(), in("pics"));
        const auto sub = [this] { return ftv().model()->index(0, 0, ftv().model()->index(0, 0)); };
        QTRY_VERIFY(sub().isValid());
        QTRY_VERIFY(ftv().visualRect(sub()).isValid());
        QTest::mouseClick(ftv().viewport(), Qt::LeftButton, {}, ftv().visualRect(sub()).center());
        QCOMPARE(m_list->path(), in("pics/sub"));
        QVERIFY(!m_list->IsReady());
        QTRY_COMPARE(m_list->ListCount(), 1);
        QTest::keyClick(&ftv(), Qt::Key_Up);
        QCOMPARE(m_list->path(), in("pics"));
    }

    void aFolderThatHasGoneIsNotTaken()
    {
        show();
        QVERIFY(ftv().showsSelected());
        // The tree tells of a folder that vanished a moment ago.
        Q_EMIT ftv().folderSelected(in("gone"));
        QCOMPARE(m_list->path(), in("pics"));
        QCoreApplication::processEvents();
        QCOMPARE(ftv().selectedFolder(), in("pics"));
    }

    void theRootIsSelected_data()
    {
        QTest::addColumn<QString>("start"); // folders in the home directory; empty: none
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("root");
        QTest::addColumn<QString>("path");
        const auto row = [](const char* name, const char* start, const char* answer, const char* root,
                            const char* path) {
            QTest::newRow(name) << QString::fromLatin1(start) << QString::fromLatin1(answer)
                                << QString::fromLatin1(root) << QString::fromLatin1(path);
        };
        row("a folder above", "pics", ".", ".", "pics");
        row("the folder itself", "pics", "pics", "pics", "pics");
        row("another folder", "pics", "other", "other", "other");
        row("a folder that is none", "pics", "nowhere", "Desktop", "pics");
        row("cancelled", "pics", "", "Desktop", "pics");
        row("a folder, none chosen", "", "other", "other", "other");
        row("a folder that is none, none chosen", "", "nowhere", "Desktop", "");
        row("cancelled, none chosen", "", "", "Desktop", "");
    }

    void theRootIsSelected()
    {
        QFETCH(QString, start);
        QFETCH(QString, answer);
        QFETCH(QString, root);
        QFETCH(QString, path);
        for (const char* name : {"other", "Desktop"})
            QVERIFY(QDir().mkpath(in(name)));
        app::save(app::setting::BrowserRoot, in("pics"));
        const auto full = [this](const QString& name) {
            return name.isEmpty() ? QString() : QDir::cleanPath(m_bench->home.path(name));
        };
        list(full(start));
        show();
        QStringList asked;
        const platform::FolderBrowserAnswerer answerer([&](const platform::FolderBrowser& browser) {
            asked << browser.title << browser.start;
            return full(answer);
        });
        const QRect place = lPlaylist().geometry();
        lPlaylist().setGeometry(0, 0, 1, 1); // the panel is laid out again
        QTest::mouseClick(&cmdDir(), Qt::LeftButton);
        QCOMPARE(lPlaylist().geometry(), place);
        QCOMPARE(asked, QStringList({QStringLiteral("Select Root Directory"), full(start)}));
        const QString expected = root == QLatin1String("Desktop") ? root : full(root);
        QCOMPARE(ftv().root(), expected);
        QCOMPARE(app::read(app::setting::BrowserRoot), expected);
        QCOMPARE(m_list->path(), full(path));
        QCOMPARE(ftv().showsSelected(), !path.isEmpty());
        QCOMPARE(m_list->IsReady(), path == start);
        QCOMPARE(app::read(app::setting::SelectedPath, QString()), full(start));
    }

    void theRootOfTheLastRun_data()
    {
        QTest::addColumn<QString>("stored"); // "@" stands for the home directory
        QTest::addColumn<QString>("root");
        QTest::newRow("none") << QString() << "Desktop";
        QTest::newRow("a folder") << "@/pics"
                                  << "@/pics";
        QTest::newRow("one that has gone") << "@/gone"
                                           << "Desktop";
        QTest::newRow("relative, exists") << "pics"
                                          << "Desktop";
    }

    void theRootOfTheLastRun()
    {
        QFETCH(QString, stored);
        QFETCH(QString, root);
        for (QString* path : {&stored, &root})
            path->replace(QLatin1Char('@'), in(""));
        if (!stored.isNull())
            app::save(app::setting::BrowserRoot, stored);
        show();
        QCOMPARE(ftv().root(), root);
        QCOMPARE(app::read(app::setting::BrowserRoot), stored.isNull() ? root : stored); // kept in the store
    }

    void endingDuringTheBrowserCostsNothing()
    {
        show();
        const platform::FolderBrowserAnswerer answerer([&](const platform::FolderBrowser&) {
            m_panel.reset();
            return in("pics");
        });
        m_panel->RunTool(QStringLiteral("selectdirectory"));
        QVERIFY(!m_panel);
        QCOMPARE(app::read(app::setting::BrowserRoot), QStringLiteral("Desktop"));
    }

    void partsHaveTheirPlaces()
    {
        show();
        const QWidget* const pFilelist = cmdDir().parentWidget();
        const auto* const label = m_panel->findChild<QLabel*>(QStringLiteral("lPlaylistInfo"));
        for (const QSize size : {QSize(240, 640), QSize(900, 200), QSize(90, 500), QSize(20, 20)}) {
            m_panel->resize(size);
            QCOMPARE(ftv().x(), 1); // 20 twips
            QVERIFY(ftv().y() >= 290 / 15);
            QVERIFY(ftv().geometry().right() < std::max(size.width(), 2));
            QVERIFY(pFilelist->y() >= ftv().y() + ftv().height() - 1);
            QVERIFY(lPlaylist().y() >= pFilelist->y() + pFilelist->height() - 1);
            QVERIFY(label->y() >= lPlaylist().y() + lPlaylist().height() - 1);
            for (const QPushButton* const button : {&cmdDir(), &cmdPlaylist()}) {
                QVERIFY(button->width() <= std::max(pFilelist->width(), 1));
                QVERIFY(button->geometry().bottom() < pFilelist->height());
            }
            QVERIFY(!cmdDir().geometry().intersects(cmdPlaylist().geometry()));
        }
        m_panel->resize(240, 640);
        QVERIFY(ftv().height() > lPlaylist().height());
        QVERIFY(label->geometry().bottom() <= 640);
    }

    void closingShutsThePanel()
    {
        show();
        m_list->SetListIndex(0);
        m_opened->clear();
        int asked = 0;
        const platform::FolderBrowserAnswerer answerer([&](const platform::FolderBrowser&) {
            ++asked;
            return QString();
        });
        m_list->CloseDown(); // as the window that holds the panel does it
        m_panel->CloseDown();
        QVERIFY(ftv().isHidden());
        QVERIFY(!ftv().isEnabled());
        QTest::mouseClick(&cmdDir(), Qt::LeftButton);
        click(1, {}, Qt::RightButton);
        click(2);
        QTest::keyClick(&lPlaylist(), Qt::Key_End);
        Q_EMIT ftv().folderSelected(m_bench->home.path(QString()));
        QCOMPARE(asked, 0);
        for (const char* command : {"addmenu", "removemenu", "showcontextmenu", "clearplaylist"})
            m_panel->RunTool(QLatin1String(command));
        QCOMPARE(menu(), QString());
        QCOMPARE(m_opened->count(), 0);
        QCOMPARE(m_list->ListIndex(), 0);
        QCOMPARE(m_list->path(), in("pics"));
        QCOMPARE(m_list->GetSelectedFiles(), in("pics/a.jpg;"));
    }

    void hostileNamesAreShownOnOneLine()
    {
        const QString longest = QString(251, u'l') + QStringLiteral(".jpg");
        for (const QString& name : {QStringLiteral("0\nx.jpg"), QStringLiteral("1<b>.jpg"), longest})
            m_bench->home.write(QStringLiteral("pics/") + name, "x");
        show();
        QCOMPARE(shown(0), QStringLiteral("1. 0 x (JPG)"));
        QCOMPARE(m_list->List(0), QStringLiteral("1. 0\nx (JPG)"));
        QCOMPARE(lPlaylist().visualRect(lPlaylist().model()->index(0, 0)).height(),
                 lPlaylist().visualRect(lPlaylist().model()->index(7, 0)).height());
        QVERIFY(lPlaylist()
                    .model()
                    ->index(1, 0)
                    .data(Qt::ToolTipRole)
                    .toString()
                    .contains(QStringLiteral("1&lt;b&gt;.jpg")));
        QVERIFY(shown(7).size() > 251);
        click(0);
        QCOMPARE(m_opened->at(0).at(0).toString(), in("pics/0\nx.jpg"));
    }
};

QTEST_MAIN(TestPlaylist)
#include "tst_playlist.moc"
