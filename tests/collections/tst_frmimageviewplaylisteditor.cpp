// The window of the playlist editor: its place, and all the ways in which it closes.
#include "app/Settings.h"
#include "app/Twips.h"
#include "collections/frmImageViewPlaylistEditor.h"
#include "EditorBench.h"
#include "support/FullDisk.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia;
using collections::frmImageViewPlaylistEditor;
using test::EditorBench;

class TestFrmImageViewPlaylistEditor : public QObject
{
    Q_OBJECT

  private:
    EditorBench m_bench;
    frmImageViewPlaylistEditor* m_window = nullptr;
    QPointer<QWidget> m_shown; ///< the same until it deletes itself

    void show(const char* name = "one")
    {
        m_window = new frmImageViewPlaylistEditor(QString::fromUtf8(name));
        m_shown = m_window;
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window));
    }
    template <class Part>
    Part& part(const char* name) const
    {
        return *m_window->findChild<Part*>(QLatin1String(name));
    }
    void addB() const { m_window->editor()->AddPlaylistFile(m_bench.in("pics/B.jpg")); }

  private Q_SLOTS:
    void init()
    {
        m_bench.begin();
        m_bench.writeList("one", {"a.jpg", "c.png"});
        m_bench.writeList("two", {"d.jpg"});
    }
    void cleanup()
    {
        delete m_shown;
        m_bench.end();
    }

    void aSaveThatFailsIsToldOnce()
    {
        show();
        for (int i = 0; i < 3000; ++i)
            addB();
        QSignalSpy closed(m_window, &frmImageViewPlaylistEditor::closed);
        const test::FullDisk disk(64 * 1024); // has room for what else is written
        QVERIFY(disk.isFull());
        QVERIFY(!m_window->close());
        QVERIFY(m_window->isVisible());
        QVERIFY(part<QLabel>("lHelp").text().contains(QStringLiteral("could not be saved")));
        QCOMPARE(closed.count(), 0);
        QVERIFY(m_window->close()); // the user knows
        QCOMPARE(closed.count(), 1);
    }

    void showsThePlaylistThatIsOpen()
    {
        show();
        QCOMPARE(m_window->objectName(), QStringLiteral("frmImageViewPlaylistEditor"));
        QCOMPARE(m_window->windowTitle(), QStringLiteral("Playlist Editor"));
        QCOMPARE(m_window->windowModality(), Qt::ApplicationModal);
        QVERIFY(m_window->isWindow());
        QCOMPARE(EditorBench::lines(part<QAbstractItemView>("lPlaylist")), QStringList({"a.jpg", "c.png"}));
        QCOMPARE(part<QComboBox>("cPlaylist").currentText(), QStringLiteral("one"));
        QVERIFY(part<QWidget>("fDir").hasFocus());
    }

    void withoutAnOpenPlaylistThereIsNone()
    {
        show("");
        QCOMPARE(part<QComboBox>("cPlaylist").currentIndex(), -1);
        addB();
        m_window->close();
        QCOMPARE(QDir(collections::playlistFolder()).entryList(QDir::Files),
                 QStringList({"one.qol", "two.qol"}));
        QCOMPARE(m_bench.log(), QStringLiteral("(none)")); // not even a line of it
    }

    void theEditorFillsTheWindow()
    {
        show();
        m_window->resize(700, 450);
        QTRY_COMPARE(m_window->editor()->geometry(), QRect(0, 0, 700, 450));
        m_window->resize(1000, 650);
        QTRY_COMPARE(m_window->editor()->size(), QSize(1000, 650));
    }

    // --- the place

    void theFirstPlaceIsTheMiddleOfTheScreen()
    {
        show();
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QCOMPARE(m_window->size(), screen.size() - screen.size() / 8);
        QVERIFY((m_window->geometry().center() - screen.center()).manhattanLength() <= 4);
    }

    void thePlaceIsKeptUnderItsFiveKeys()
    {
        show();
        m_window->setGeometry(50, 40, 620, 410);
        QCoreApplication::processEvents();
        const QPoint corner = m_window->pos();
        m_window->close();
        namespace setting = app::setting;
        QCOMPARE(app::read(setting::PlaylistEditorLeft, -1), app::toTwips(corner.x()));
        QCOMPARE(app::read(setting::PlaylistEditorTop, -1), app::toTwips(corner.y()));
        QCOMPARE(app::read(setting::PlaylistEditorWidth, -1), 620 * 15);
        QCOMPARE(app::read(setting::PlaylistEditorHeight, -1), 410 * 15);
        QCOMPARE(
            app::GetAppSetting(QStringLiteral("Settings"), QStringLiteral("PlaylistEditorWindowState"), -1)
                .toInt(),
            0);
        show();
        QCOMPARE(m_window->size(), QSize(620, 410));
        QCOMPARE(m_window->pos(), corner);
    }

    void maximisedItComesBackMaximised()
    {
        show();
        m_window->setGeometry(50, 40, 620, 410);
        m_window->showMaximized();
        QTRY_VERIFY(m_window->width() > 620);
        m_window->close();
        QCOMPARE(app::read(app::setting::PlaylistEditorWindowState), 2);
        QCOMPARE(app::read(app::setting::PlaylistEditorWidth, -1), 620 * 15);
        show();
        QVERIFY(m_window->isMaximized());
    }

    void minimisedItDoesNotComeBack()
    {
        app::save(app::setting::PlaylistEditorWindowState, 1);
        show();
        QVERIFY(!m_window->isMinimized());
    }

    void aDamagedPlaceIsMended()
    {
        app::save(app::setting::PlaylistEditorLeft, 2000000);
        app::save(app::setting::PlaylistEditorWidth, -5);
        app::save(app::setting::PlaylistEditorHeight, 2000000000);
        show();
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QVERIFY(screen.intersects(m_window->geometry()));
        QVERIFY(m_window->width() <= screen.width() && m_window->height() <= screen.height());
    }

    // --- closing

    void everyWayOfClosingSaves_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("the frame") << 0;
        QTest::newRow("Esc in the playlist") << 1;
        QTest::newRow("Esc in the tree") << 2;
        QTest::newRow("Esc in the files") << 6;
        QTest::newRow("Esc in the box") << 7;
        QTest::newRow("Esc on a button") << 8;
        QTest::newRow("Esc in a strip") << 9;
        QTest::newRow("Finished") << 3;
        QTest::newRow("Finished by key") << 4;
        QTest::newRow("as the program's end does") << 5;
    }

    void everyWayOfClosingSaves()
    {
        QFETCH(int, way);
        show();
        addB();
        QStringList savedThen;
        QSignalSpy closed(m_window, &frmImageViewPlaylistEditor::closed);
        connect(m_window, &frmImageViewPlaylistEditor::closed, this,
                [&savedThen] { savedThen = EditorBench::stored("one"); });
        const auto escape = [this](const char* where) {
            part<QWidget>(where).setFocus();
            QTest::keyClick(&part<QWidget>(where), Qt::Key_Escape);
        };
        const auto byKey = [this] {
            part<QWidget>("lFinished").setFocus();
            QTest::keyClick(&part<QWidget>("lFinished"), Qt::Key_Space);
        };
        const std::function<void()> ways[] = {
            [this] { m_window->close(); },
            [&] { escape("lPlaylist"); },
            [&] { escape("fDir"); },
            [this] { QTest::mouseClick(&part<QWidget>("lFinished"), Qt::LeftButton); },
            byKey,
            [] { QApplication::closeAllWindows(); },
            [&] { escape("fFiles"); },
            [&] { escape("cPlaylist"); },
            [&] { escape("iImg4"); },
            [&] { escape("Filmstrip2"); }};
        ways[way]();
        QCOMPARE(closed.count(), 1);
        QCOMPARE(savedThen, QStringList({"a.jpg", "c.png", "B.jpg"}));
        QTRY_VERIFY(!m_shown); // unloaded
    }

    void withAllEntriesRemovedOneLineIsLeft()
    {
        show();
        auto& list = part<QAbstractItemView>("lPlaylist");
        list.setFocus();
        list.setCurrentIndex(list.model()->index(0, 0));
        list.selectAll();
        QTest::mouseClick(&part<QWidget>("iImg2"), Qt::LeftButton);
        m_window->close();
        const QByteArray bytes = EditorBench::bytesAt(EditorBench::named("one"));
        QVERIFY(bytes.startsWith("# Quorvia Playlist File - Created: ") && bytes.endsWith(" Files: 0\r\n"));
        QCOMPARE(bytes.count('\n'), 1);
    }

    void closedTwiceItSavesOnce()
    {
        show();
        QSignalSpy closed(m_window, &frmImageViewPlaylistEditor::closed);
        connect(m_window, &frmImageViewPlaylistEditor::closed, this, [this] { m_window->close(); });
        m_window->close();
        QCOMPARE(closed.count(), 1);
        m_window->editor()->SetActivePlaylist(QStringLiteral("two"));
        addB();
        m_window->editor()->SaveActivePlaylist();
        QCOMPARE(EditorBench::stored("two"), QStringList{"d.jpg"});
        QCOMPARE(EditorBench::stored("one"), QStringList({"a.jpg", "c.png"}));
    }

    void escLeavesThePageOfTheNamedPlaylistsFirst()
    {
        show();
        auto& combo = part<QComboBox>("cPlaylist");
        Q_EMIT combo.activated(combo.count() - 2);
        auto& page = part<QWidget>("pDefinePlaylist");
        QVERIFY(page.isVisible());
        QTest::keyClick(&part<QWidget>("lPlaylistNames"), Qt::Key_Escape);
        QVERIFY(m_shown && m_window->isVisible() && !page.isVisible());
        QTest::keyClick(m_window, Qt::Key_Escape);
        QTRY_VERIFY(!m_shown);
    }

    void escClosesTheOpenBoxAlone()
    {
        show();
        auto& combo = part<QComboBox>("cPlaylist");
        combo.showPopup();
        QTRY_VERIFY(combo.view()->isVisible());
        QTest::keyClick(combo.view(), Qt::Key_Escape);
        QTRY_VERIFY(!combo.view()->isVisible());
        QVERIFY(m_shown && m_window->isVisible());
    }

    void closingOnThePageOfTheNamedPlaylistsSavesToo()
    {
        show();
        addB();
        auto& combo = part<QComboBox>("cPlaylist");
        Q_EMIT combo.activated(combo.count() - 2);
        QVERIFY(QFile::remove(EditorBench::named("one")));
        m_window->close();
        QCOMPARE(EditorBench::stored("one"), QStringList({"a.jpg", "c.png", "B.jpg"}));
    }
};

QTEST_MAIN(TestFrmImageViewPlaylistEditor)
#include "tst_frmimageviewplaylisteditor.moc"
