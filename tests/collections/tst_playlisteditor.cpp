// The page of the playlist editor where a playlist is edited, driven by mouse and keys.
#include "app/Settings.h"
#include "EditorBench.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia;
using test::EditorBench;

namespace {

const QString tip = QStringLiteral("Tip: Use CTRL+UP/DOWN arrows to move items up or down in the playlist.");

} // namespace

class TestPlaylistEditor : public QObject
{
    Q_OBJECT

  private:
    EditorBench m_bench;

    collections::EntryView& fFiles() const { return m_bench.fFiles(); }
    collections::EntryView& lPlaylist() const { return m_bench.lPlaylist(); }
    /// The first letters of the entries.
    QString letters() const
    {
        QString all;
        for (const QString& entry : m_bench.entries())
            all += entry.at(0).toLower();
        return all;
    }
    void hover(QWidget& widget, const QPoint& at) const
    {
        QTest::mouseMove(&widget, at - QPoint(1, 1));
        QTest::mouseMove(&widget, at);
    }

  private Q_SLOTS:
    void init() { m_bench.begin(); }
    void cleanup() { m_bench.end(); }

    void hasItsPartsUnderTheirNames()
    {
        m_bench.show("list");
        for (const char* name :
             {"fDir",      "fFiles",         "lPlaylist",       "cPlaylist", "lPTitle",
              "Filmstrip", "Filmstrip2",     "iImg0",           "iImg4",     "pImage0",
              "pImage4",   "lHelp",          "pDefinePlaylist", "pDefine",   "lPlaylistNames",
              "cmdCreate", "cmdRename",      "cmdDelete",       "cmdClose",  "lFinished",
              "pTitle",    "lTitle",         "pFooter",         "pFile",     "pFileTools",
              "pPlaylist", "pPlaylistTools", "mnuPopup"})
            QVERIFY2(m_bench.editor->findChild<QWidget*>(QLatin1String(name)), name);
        QCOMPARE(m_bench.tFilm().interval(), 200);
        QVERIFY(!m_bench.tFilm().isActive());
        QCOMPARE(m_bench.part<QLabel>("lTitle").text(), QStringLiteral("Playlist Editor"));
        QCOMPARE(m_bench.part<QLabel>("lDirectory").text(), QStringLiteral("Select File Directory:"));
        QCOMPARE(m_bench.part<QLabel>("lPTitle").text(), QStringLiteral("Playlist:"));
        QCOMPARE(m_bench.cPlaylist().toolTip(), QStringLiteral("Select, Edit and Create Playlist"));
        QCOMPARE(m_bench.help(), tip);
        const auto& finished = m_bench.part<QAbstractButton>("lFinished");
        QCOMPARE(finished.text(), QStringLiteral("Finished >>"));
        QCOMPARE(finished.toolTip(), QStringLiteral("Save Playlist, and close editor window."));
    }

    void theButtonsSayWhatTheyDo_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("tip");
        QTest::addColumn<QString>("name");
        QTest::newRow("up") << 0 << QString() << QStringLiteral("Move Up");
        QTest::newRow("down") << 1 << QString() << QStringLiteral("Move Down");
        const auto row = [](const char* name, int index, const QString& text) {
            QTest::newRow(name) << index << text << text;
        };
        row("remove", 2, QStringLiteral("Remove Selected Items from Playlist"));
        row("add", 3, QStringLiteral("Move Selected Items to Playlist"));
        row("add all", 4, QStringLiteral("Move All Files to Playlist"));
    }

    void theButtonsSayWhatTheyDo()
    {
        QFETCH(int, index);
        QFETCH(QString, tip);
        m_bench.show("list");
        const QString number = QString::number(index);
        auto& button = m_bench.part<QAbstractButton>(qPrintable(QStringLiteral("iImg") + number));
        QCOMPARE(button.toolTip(), tip);
        QTEST(button.accessibleName(), "name");
        QCOMPARE(button.focusPolicy(), Qt::TabFocus);
        const auto& panel = m_bench.part<QWidget>(qPrintable(QStringLiteral("pImage") + number));
        QCOMPARE(panel.autoFillBackground() && panel.palette().color(QPalette::Window) == Qt::white,
                 index >= 2);
        hover(button, button.rect().center());
        QCOMPARE(m_bench.help(), tip.isEmpty() ? ::tip : QStringLiteral("Click button to: ") + tip);
        hover(*m_bench.editor, QPoint(450, 3));
        QCOMPARE(m_bench.help(), ::tip);
    }

    void theTreeAndTheStripsSayWhatTheyAreFor()
    {
        m_bench.show("list");
        hover(*m_bench.fDir().viewport(), QPoint(40, 40));
        QCOMPARE(m_bench.help(), QStringLiteral("Select a folder to view its containing images."));
        hover(m_bench.filmstrip(), QPoint(200, 40));
        QCOMPARE(m_bench.help(), QStringLiteral("Shows thumbnails of the selected 'filelist' images."));
        hover(m_bench.filmstrip2(), QPoint(200, 40));
        QCOMPARE(m_bench.help(), QStringLiteral("Shows thumbnails of the selected 'playlist' images."));
        m_bench.editor->ShowTip();
        QCOMPARE(m_bench.help(), tip);
    }

    // --- the folder

    void theFolderOfTheLastTimeIsShown()
    {
        m_bench.show("list");
        QCOMPARE(m_bench.fDir().selectedFolder(), m_bench.in("pics"));
        QCOMPARE(EditorBench::lines(fFiles()), QStringList({"a.jpg", "B.jpg", "c.png", "d.jpg", "e.jpg"}));
        QVERIFY(EditorBench::selected(fFiles()).isEmpty());
    }

    void withoutAFolderThereAreNoFiles_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("none") << QString();
        QTest::newRow("gone") << QStringLiteral("/nowhere/pics");
        QTest::newRow("a file") << QStringLiteral("/etc/passwd");
    }

    void withoutAFolderThereAreNoFiles()
    {
        QFETCH(QString, folder);
        app::save(app::setting::LastDirectory, folder);
        m_bench.show("list");
        QVERIFY(EditorBench::lines(fFiles()).isEmpty());
        QVERIFY(m_bench.fDir().selectedFolder().isEmpty());
        m_bench.press(3);
        m_bench.press(4);
        QTest::mouseDClick(fFiles().viewport(), Qt::LeftButton, {}, QPoint(10, 10));
        QVERIFY(m_bench.entries().isEmpty());
    }

    void anotherFolderIsShownAndKept()
    {
        m_bench.home.write(QStringLiteral("other/x.gif"), "x");
        m_bench.show("list");
        EditorBench::click(fFiles(), 1);
        m_bench.tick();
        Q_EMIT m_bench.fDir().folderSelected(m_bench.in("other"));
        QCOMPARE(EditorBench::lines(fFiles()), QStringList{"x.gif"});
        QCOMPARE(app::read(app::setting::LastDirectory), m_bench.in("other"));
        QVERIFY(EditorBench::selected(fFiles()).isEmpty());
        QVERIFY(!m_bench.tFilm().isActive()); // the strip keeps what it shows until the next click
        QCOMPARE(m_bench.filmstrip().Images(), m_bench.pathsOf({"B.jpg"}));
    }

    void aFolderThatHasGoneIsEmpty()
    {
        m_bench.show("list");
        Q_EMIT m_bench.fDir().folderSelected(m_bench.in("gone"));
        QVERIFY(EditorBench::lines(fFiles()).isEmpty());
        m_bench.press(4);
        QVERIFY(m_bench.entries().isEmpty());
    }

    void theUserGoesToAFolder()
    {
        m_bench.home.write(QStringLiteral("pics/deep/y.jpg"), "y");
        m_bench.show("list");
        m_bench.fDir().setFocus();
        QTest::keyClick(&m_bench.fDir(), Qt::Key_Right); // opens it
        QTRY_VERIFY(m_bench.fDir().indexBelow(m_bench.fDir().currentIndex()).data().toString() == "deep");
        QTest::keyClick(&m_bench.fDir(), Qt::Key_Down);
        QCOMPARE(EditorBench::lines(fFiles()), QStringList{"y.jpg"});
        QCOMPARE(app::read(app::setting::LastDirectory), m_bench.in("pics/deep"));
    }

    // --- adding

    void selectedFilesAreAdded_data()
    {
        QTest::addColumn<QString>("by");
        for (const char* by : {"button", "enter", "double click"})
            QTest::newRow(by) << QString::fromLatin1(by);
    }

    void selectedFilesAreAdded()
    {
        QFETCH(QString, by);
        m_bench.show("list");
        EditorBench::click(fFiles(), 3);
        EditorBench::click(fFiles(), 1, Qt::ControlModifier);
        m_bench.tick();
        if (by == u"button")
            m_bench.press(3);
        else if (by == u"enter")
            QTest::keyClick(&fFiles(), Qt::Key_Return);
        else
            EditorBench::doubleClick(fFiles(), 1); // whose first click selects that one alone
        const QStringList added =
            by == u"double click" ? QStringList{"B.jpg"} : QStringList{"B.jpg", "d.jpg"};
        QCOMPARE(m_bench.entries(), added);
        QVERIFY(EditorBench::selected(lPlaylist()).isEmpty());
    }

    void addingAFileTwiceGivesTwoEntries()
    {
        m_bench.show("list");
        EditorBench::click(fFiles(), 0);
        m_bench.press(3);
        m_bench.press(3);
        QCOMPARE(m_bench.entries(), QStringList({"a.jpg", "a.jpg"}));
    }

    void allFilesAreAddedAtTheEnd()
    {
        m_bench.writeList("x", {"e.jpg"});
        m_bench.show("x");
        m_bench.press(4);
        QCOMPARE(m_bench.entries(), QStringList({"e.jpg", "a.jpg", "B.jpg", "c.png", "d.jpg", "e.jpg"}));
        QVERIFY(!m_bench.tFilm().isActive());
    }

    void aFileThatHasGoneIsNotAdded()
    {
        m_bench.show("list");
        QVERIFY(QFile::remove(m_bench.in("pics/d.jpg")));
        m_bench.press(4);
        QCOMPARE(m_bench.entries(), QStringList({"a.jpg", "B.jpg", "c.png", "e.jpg"}));
        m_bench.editor->AddPlaylistFile(m_bench.in("pics/d.jpg"));
        m_bench.editor->AddPlaylistFile(m_bench.in("pics"));
        m_bench.editor->AddPlaylistFile(QString());
        QCOMPARE(m_bench.entries().size(), 4);
        m_bench.editor->AddPlaylistFile(m_bench.in("pics/a.jpg"));
        QCOMPARE(m_bench.entries().constLast(), QStringLiteral("a.jpg"));
    }

    void aNameThatNoLineHoldsIsLoggedAndNotAdded()
    {
        m_bench.home.write(QStringLiteral("pics/f\ng.jpg"), "x");
        m_bench.show("list");
        QCOMPARE(EditorBench::lines(fFiles()).constLast(), QStringLiteral("f g.jpg")); // on one line
        m_bench.press(4);
        QCOMPARE(m_bench.entries().size(), 5);
        QVERIFY(m_bench.log().contains(QStringLiteral("Cannot stand in a playlist")));
    }

    void clearingAndRefreshing()
    {
        m_bench.showAll();
        EditorBench::click(lPlaylist(), 1);
        m_bench.editor->RefreshPlaylist();
        QCOMPARE(letters(), QStringLiteral("abcde"));
        QVERIFY(EditorBench::selected(lPlaylist()).isEmpty());
        m_bench.editor->ClearPlaylist();
        QVERIFY(m_bench.entries().isEmpty());
    }

    // --- moving and removing

    void moves_data()
    {
        QTest::addColumn<QList<int>>("rows");
        QTest::addColumn<bool>("up");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QList<int>>("after");
        QTest::newRow("up") << QList<int>{2} << true << "acbde" << QList<int>{1};
        QTest::newRow("down") << QList<int>{2} << false << "abdce" << QList<int>{3};
        QTest::newRow("the first up") << QList<int>{0} << true << "abcde" << QList<int>{0};
        QTest::newRow("the last down") << QList<int>{4} << false << "abcde" << QList<int>{4};
        QTest::newRow("a block up") << QList<int>{1, 2} << true << "bcade" << QList<int>{0, 1};
        QTest::newRow("a block at the top") << QList<int>{0, 1} << true << "abcde" << QList<int>{0, 1};
        QTest::newRow("parts down") << QList<int>{0, 2} << false << "badce" << QList<int>{1, 3};
        QTest::newRow("all") << QList<int>{0, 1, 2, 3, 4} << false << "abcde" << QList<int>{0, 1, 2, 3, 4};
    }

    void moves()
    {
        QFETCH(QList<int>, rows);
        QFETCH(bool, up);
        for (const bool byKey : {false, true}) {
            m_bench.showAll();
            EditorBench::click(lPlaylist(), rows.constFirst());
            for (const int row : rows.mid(1))
                EditorBench::click(lPlaylist(), row, Qt::ControlModifier);
            m_bench.tick();
            const QString current = lPlaylist().currentIndex().data().toString();
            if (byKey)
                QTest::keyClick(&lPlaylist(), up ? Qt::Key_Up : Qt::Key_Down, Qt::ControlModifier);
            else
                m_bench.press(up ? 0 : 1);
            QTEST(letters(), "result");
            QTEST(EditorBench::selected(lPlaylist()), "after");
            QCOMPARE(lPlaylist().currentIndex().data().toString(), current);
            QVERIFY(!m_bench.tFilm().isActive());
            m_bench.editor->SaveActivePlaylist();
            QCOMPARE(EditorBench::stored("abcde"), m_bench.entries()); // the paths went along
        }
    }

    void withoutACurrentEntryNothingMoves()
    {
        m_bench.showAll();
        lPlaylist().selectionModel()->select(lPlaylist().model()->index(2, 0), QItemSelectionModel::Select);
        QVERIFY(!lPlaylist().currentIndex().isValid());
        m_bench.press(0);
        m_bench.press(1);
        QCOMPARE(letters(), QStringLiteral("abcde"));
    }

    void theCurrentEntryStaysInSight()
    {
        QList<const char*> names;
        for (int i = 0; i < 60; ++i)
            names += {"a.jpg", "B.jpg", "c.png", "d.jpg"};
        m_bench.writeList("many", names);
        m_bench.show("many");
        EditorBench::click(lPlaylist(), 0);
        const auto isInSight = [this](int row) {
            return lPlaylist().viewport()->rect().contains(EditorBench::place(lPlaylist(), row));
        };
        for (int row = 1; row <= 50; ++row) {
            QTest::keyClick(&lPlaylist(), Qt::Key_Down, Qt::ControlModifier);
            QCOMPARE(lPlaylist().currentIndex().row(), row);
            QVERIFY2(isInSight(row), qPrintable(QString::number(row)));
        }
    }

    void entriesAreRemoved_data()
    {
        QTest::addColumn<QList<int>>("rows");
        QTest::addColumn<QString>("result");
        QTest::addColumn<int>("current");
        QTest::newRow("none") << QList<int>{} << "abcde" << -1;
        QTest::newRow("one") << QList<int>{1} << "acde" << 1;
        QTest::newRow("several") << QList<int>{1, 3} << "ace" << 1;
        QTest::newRow("the last") << QList<int>{4} << "abcd" << 3;
        QTest::newRow("all") << QList<int>{0, 1, 2, 3, 4} << "" << -1;
    }

    void entriesAreRemoved()
    {
        QFETCH(QList<int>, rows);
        m_bench.showAll();
        for (const int row : rows)
            EditorBench::click(lPlaylist(), row,
                               row == rows.constFirst() ? Qt::NoModifier : Qt::ControlModifier);
        if (!rows.isEmpty())
            m_bench.tick();
        m_bench.press(2);
        QTEST(letters(), "result");
        QTEST(lPlaylist().currentIndex().row(), "current");
        QVERIFY(EditorBench::selected(lPlaylist()).isEmpty());
        m_bench.tick();
        QVERIFY(m_bench.filmstrip2().Images().isEmpty());
        m_bench.editor->SaveActivePlaylist();
        QCOMPARE(EditorBench::stored("abcde"), m_bench.entries());
    }

    void aDoubleClickRemoves()
    {
        m_bench.showAll();
        EditorBench::doubleClick(lPlaylist(), 2);
        QCOMPARE(letters(), QStringLiteral("abde"));
        QTest::mouseClick(lPlaylist().viewport(), Qt::RightButton, {}, EditorBench::place(lPlaylist(), 1));
        QTest::mouseDClick(lPlaylist().viewport(), Qt::RightButton, {}, EditorBench::place(lPlaylist(), 1));
        QCOMPARE(letters(), QStringLiteral("abde"));
    }

    void aDoubleClickInAnEmptyListDoesNothing()
    {
        m_bench.show("list");
        QTest::mouseDClick(lPlaylist().viewport(), Qt::LeftButton, {}, QPoint(10, 10));
        QTest::mouseDClick(fFiles().viewport(), Qt::LeftButton, {}, QPoint(10, fFiles().height() - 10));
        QVERIFY(m_bench.entries().isEmpty());
    }

    void otherKeysAreTheLists()
    {
        m_bench.showAll();
        EditorBench::click(lPlaylist(), 1);
        for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Insert, Qt::Key_Return})
            QTest::keyClick(&lPlaylist(), key);
        QTest::keyClick(&lPlaylist(), Qt::Key_Down);
        QTest::keyClick(&lPlaylist(), Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(letters(), QStringLiteral("abcde"));
        QCOMPARE(EditorBench::selected(lPlaylist()), QList<int>({1, 2}));
        QTest::keyClick(&lPlaylist(), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(EditorBench::selected(lPlaylist()).size(), 5);
    }

    // --- keys and the end

    void theTabKeyWalksAllParts()
    {
        m_bench.showAll();
        m_bench.fDir().setFocus();
        QStringList walked;
        for (int i = 0; i < 12; ++i) {
            walked += QApplication::focusWidget()->objectName();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(walked, QStringList({"fDir", "fFiles", "iImg3", "iImg4", "iImg2", "iImg0", "iImg1",
                                      "lPlaylist", "cPlaylist", "Filmstrip", "Filmstrip2", "lFinished"}));
        QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("fDir"));
    }

    void finishedAsksToBeClosed()
    {
        m_bench.showAll();
        EditorBench::click(lPlaylist(), 1);
        EditorBench::click(fFiles(), 1);
        m_bench.tick();
        EditorBench::click(fFiles(), 2);
        QSignalSpy wants(m_bench.editor.get(), &collections::PlaylistEditor::CloseRequest);
        QTest::mouseClick(&m_bench.part<QAbstractButton>("lFinished"), Qt::LeftButton);
        QCOMPARE(wants.count(), 1);
        QVERIFY(!m_bench.tFilm().isActive());
        QVERIFY(m_bench.filmstrip().Images().isEmpty());
        QVERIFY(m_bench.filmstrip2().Images().isEmpty());
        auto& finished = m_bench.part<QAbstractButton>("lFinished");
        finished.setFocus();
        QTest::keyClick(&finished, Qt::Key_Return);
        QCOMPARE(wants.count(), 2);
    }

    void theWindowsColoursAreTheDesktops()
    {
        const QPalette before = QGuiApplication::palette();
        QPalette dark = before;
        dark.setColor(QPalette::Window, QColor(40, 40, 40));
        dark.setColor(QPalette::WindowText, QColor(230, 230, 230));
        QApplication::setPalette(dark);
        m_bench.show("list");
        const QImage shot = m_bench.editor->grab().toImage();
        QCOMPARE(shot.pixelColor(shot.width() / 2, 3), QColor(40, 40, 40));
        const auto& white = m_bench.part<QWidget>("pImage3");
        const QImage button = m_bench.part<QWidget>("pImage3").grab().toImage();
        QCOMPARE(button.pixelColor(1, 1), QColor(Qt::white));
        QVERIFY(white.palette().color(QPalette::WindowText).lightness() < 100); // the drawing can be seen
        QApplication::setPalette(before);
    }
};

QTEST_MAIN(TestPlaylistEditor)
#include "tst_playlisteditor.moc"
