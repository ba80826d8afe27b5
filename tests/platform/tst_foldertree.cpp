// The folder tree as a user sees it, driven by mouse and keys.
#include "platform/FolderModel.h"
#include "platform/FolderTree.h"
#include "support/ScratchHome.h"
#include "support/Unprivileged.h"

#include <QDir>
#include <QScrollBar>
#include <QSignalSpy>
#include <QtTest>

#include <sys/stat.h>

using namespace quorvia;
using platform::FolderTree;

class TestFolderTree : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScratchHome> m_home;
    std::unique_ptr<FolderTree> m_tree;

    QString at(const char* name) const { return m_home->path(QString::fromUtf8(name)); }

    /// The tree on the screen, below `root`.
    FolderTree& show(const QString& root)
    {
        m_tree = std::make_unique<FolderTree>();
        m_tree->setRoot(root);
        m_tree->resize(260, 300);
        m_tree->show();
        return *m_tree;
    }

    QModelIndex entry(const QStringList& names) const
    {
        QModelIndex index;
        for (const QString& name : names) {
            const int rows = m_tree->model()->rowCount(index);
            QModelIndex found;
            for (int row = 0; row < rows && !found.isValid(); ++row) {
                const QModelIndex child = m_tree->model()->index(row, 0, index);
                if (child.data().toString() == name)
                    found = child;
            }
            if (!found.isValid())
                return {};
            index = found;
        }
        return index;
    }

    bool isShown(const QModelIndex& index) const
    {
        return index.isValid() && m_tree->visualRect(index).isValid() &&
               m_tree->viewport()->rect().contains(m_tree->visualRect(index).center());
    }

    void click(const QModelIndex& index)
    {
        QTest::mouseClick(m_tree->viewport(), Qt::LeftButton, {}, m_tree->visualRect(index).center());
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::ScratchHome>();
        for (const char* name : {"pics/2024/spring", "pics/2025", "music"})
            QVERIFY(QDir().mkpath(at(name)));
    }

    void cleanup()
    {
        m_tree.reset();
        m_home.reset();
    }

    void paths_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("taken");
        QTest::newRow("root") << "/" << true;
        QTest::newRow("a folder") << "/usr" << true;
        QTest::newRow("a final slash") << "/usr/" << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("the word") << "Desktop" << false;
        QTest::newRow("relative") << "." << false;
        QTest::newRow("missing") << "/no such folder" << false;
        QTest::newRow("a file") << "/etc/passwd" << false;
        QTest::newRow("a zero character") << QString(QStringLiteral("/usr") + QChar(0)) << false;
    }

    void paths()
    {
        QFETCH(QString, path);
        QFETCH(bool, taken);
        QCOMPARE(FolderTree::canTake(path), taken);
        m_tree = std::make_unique<FolderTree>();
        m_tree->setRoot(QStringLiteral("/etc"));
        m_tree->setRoot(path);
        QCOMPARE(m_tree->root(), taken ? QDir::cleanPath(path) : QStringLiteral("Desktop"));
    }

    void theDesktopHasHomeAndFileSystem()
    {
        const FolderTree& tree = show(FolderTree::desktopRoot());
        QCOMPARE(tree.root(), QStringLiteral("Desktop"));
        QCOMPARE(tree.model()->rowCount(), 2);
        QCOMPARE(tree.selectedFolder(), QString());
        QVERIFY(!tree.currentIndex().isValid());
        m_tree->expand(tree.model()->index(0, 0));
        QTRY_VERIFY(entry({"Home", "music"}).isValid());
        m_tree->expand(tree.model()->index(1, 0));
        QTRY_VERIFY(entry({"File System", "usr"}).isValid());
    }

    void aHomeThatIsTheRootStandsOnce()
    {
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", "/");
        show(FolderTree::desktopRoot());
        const int rows = m_tree->model()->rowCount();
        qputenv("HOME", home);
        QCOMPARE(rows, 1);
    }

    void aPathAsRootIsOpen()
    {
        show(at("pics"));
        QTRY_VERIFY(entry({"pics", "2024"}).isValid());
        QCOMPARE(m_tree->model()->rowCount(), 1);
        QVERIFY(m_tree->isExpanded(m_tree->model()->index(0, 0)));
        QVERIFY(!entry({"pics", "2024", "spring"}).isValid()); // not read before it is opened
    }

    void selectingOpensTheTreeDownToTheFolder()
    {
        FolderTree& tree = show(FolderTree::desktopRoot());
        QSignalSpy told(&tree, &FolderTree::folderSelected);
        tree.setSelectedFolder(at("pics/2024/spring/"));
        QCOMPARE(tree.selectedFolder(), at("pics/2024/spring"));
        QVERIFY(tree.showsSelected());
        QTRY_VERIFY(isShown(entry({"Home", "pics", "2024", "spring"})));
        QTRY_VERIFY(entry({"Home", "music"}).isValid());
        QCOMPARE(tree.currentIndex(), entry({"Home", "pics", "2024", "spring"}));
        QVERIFY(tree.selectionModel()->isSelected(tree.currentIndex()));

        tree.setSelectedFolder(QStringLiteral("/usr/share"));
        QTRY_VERIFY(isShown(entry({"File System", "usr", "share"})));
        QCOMPARE(told.count(), 0); // that was not the user
    }

    void theSelectedFolderStaysInSightWhileOthersAreRead()
    {
        for (int i = 0; i < 200; ++i)
            QVERIFY(QDir().mkpath(at("many/") + QString::number(1000 + i)));
        FolderTree& tree = show(at("many"));
        tree.setSelectedFolder(at("many/1150"));
        QTRY_COMPARE(tree.model()->rowCount(tree.model()->index(0, 0)), 200);
        QTRY_COMPARE(tree.currentIndex().row(), 150); // they are sorted when all are there
        QTRY_VERIFY(isShown(tree.currentIndex()));
        // From here on the user looks elsewhere, and the tree lets him.
        QTest::keyClick(&tree, Qt::Key_Home);
        QVERIFY(QDir().mkpath(at("many/1149a")));
        const auto nameAt150 = [&tree] {
            return tree.model()->index(150, 0, tree.model()->index(0, 0)).data().toString();
        };
        QTRY_COMPARE(nameAt150(), QStringLiteral("1149a")); // sorted in
        QCoreApplication::processEvents();
        QCOMPARE(tree.verticalScrollBar()->value(), 0);
    }

    void tellsWhatTheUserSelects()
    {
        FolderTree& tree = show(at("pics"));
        QSignalSpy told(&tree, &FolderTree::folderSelected);
        QTRY_VERIFY(entry({"pics", "2025"}).isValid());
        click(entry({"pics", "2025"}));
        QCOMPARE(told.count(), 1);
        QCOMPARE(told.at(0).at(0).toString(), at("pics/2025"));
        QCOMPARE(tree.selectedFolder(), at("pics/2025"));
        click(entry({"pics", "2025"}));
        QCOMPARE(told.count(), 1);
        QTest::keyClick(&tree, Qt::Key_Up);
        QCOMPARE(told.count(), 2);
        QCOMPARE(told.at(1).at(0).toString(), at("pics/2024"));
        QTest::keyClick(&tree, Qt::Key_Right);
        QTRY_VERIFY(entry({"pics", "2024", "spring"}).isValid());
        QCOMPARE(told.count(), 2);
    }

    void gettingTheFocusSelectsNothing()
    {
        FolderTree& tree = show(FolderTree::desktopRoot());
        QSignalSpy told(&tree, &FolderTree::folderSelected);
        tree.activateWindow();
        tree.setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(tree.hasFocus());
        QCOMPARE(told.count(), 0);
        QCOMPARE(tree.selectedFolder(), QString());
        QTest::keyClick(&tree, Qt::Key_Space);
        QCOMPARE(told.count(), 1);
        QCOMPARE(told.at(0).at(0).toString(), QDir::homePath());
    }

    void aFolderThatVanishesSelectsNoOther()
    {
        FolderTree& tree = show(at("pics"));
        QSignalSpy told(&tree, &FolderTree::folderSelected);
        tree.setSelectedFolder(at("pics/2024/spring"));
        QVERIFY(tree.showsSelected());
        QVERIFY(QDir(at("pics/2024")).removeRecursively());
        QTRY_VERIFY(!entry({"pics", "2024"}).isValid());
        QVERIFY(!tree.showsSelected());
        QVERIFY(!tree.currentIndex().isValid());
        QCOMPARE(tree.selectedFolder(), at("pics/2024/spring"));
        QCOMPARE(told.count(), 0);
        click(entry({"pics", "2025"}));
        QCOMPARE(told.count(), 1);
    }

    void whatTheTreeHasNoPlaceForIsNotMarked_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("outside the root") << "/usr";
        QTest::newRow("missing") << "/no such folder";
        QTest::newRow("none") << "";
    }

    void whatTheTreeHasNoPlaceForIsNotMarked()
    {
        QFETCH(QString, folder);
        FolderTree& tree = show(at("pics"));
        tree.setSelectedFolder(at("pics/2025"));
        tree.setSelectedFolder(folder);
        QCOMPARE(tree.selectedFolder(), folder);
        QVERIFY(!tree.showsSelected());
        QVERIFY(!tree.currentIndex().isValid());
        QVERIFY(!tree.selectionModel()->hasSelection());
    }

    void anotherRootKeepsTheSelectedFolder()
    {
        FolderTree& tree = show(FolderTree::desktopRoot());
        tree.setSelectedFolder(at("pics/2024"));
        tree.setRoot(at("pics"));
        QVERIFY(tree.showsSelected());
        QTRY_VERIFY(isShown(entry({"pics", "2024"})));
        tree.setRoot(at("music"));
        QVERIFY(!tree.showsSelected());
        QCOMPARE(tree.selectedFolder(), at("pics/2024"));
        tree.setRoot(QStringLiteral("anything"));
        QVERIFY(tree.showsSelected());
    }

    void aFolderThatCannotBeReadHasNothingBelow()
    {
        QVERIFY(test::openToEveryone(qPrintable(m_home->path(QString()))));
        QVERIFY(QDir().mkpath(at("pics/locked/inner")));
        QCOMPARE(::chmod(qPrintable(at("pics/locked")), 0), 0);
        show(at("pics"));
        QTRY_VERIFY(entry({"pics", "locked"}).isValid());
        const QModelIndex locked = entry({"pics", "locked"});
        QSignalSpy told(m_tree.get(), &FolderTree::folderSelected);
        m_tree->expand(locked);
        click(entry({"pics", "locked"}));
        QCOMPARE(told.count(), 1); // it can be chosen all the same
        QCOMPARE(::chmod(qPrintable(at("pics/locked")), 0755), 0);
    }

    void itsScrollBarsComeToRest()
    {
        constexpr int endless = 200; // changes of a bar after one change of the size
        QString name = QStringLiteral("n");
        for (int i = 0; i < 12; ++i) // the last one in sight is the widest, wherever the edge is
            QVERIFY(QDir().mkpath(
                m_home->path(QStringLiteral("deep/%1%2").arg(10 + i).arg(name.repeated(3 * i)))));
        FolderTree& tree = show(at("deep"));
        QTRY_COMPARE(tree.model()->rowCount(entry({"deep"})), 12);
        int changes = 0;
        int all = 0;
        for (QScrollBar* bar : {tree.verticalScrollBar(), tree.horizontalScrollBar()}) {
            connect(bar, &QScrollBar::rangeChanged, &tree, [&] {
                ++all;
                if (++changes == endless)
                    tree.resize(900, 900);
            });
        }
        QStringList restless;
        for (int width = 1; width <= 300; width += 7) {
            for (int height = 1; height <= 300; height += 3) {
                changes = 0;
                tree.resize(width, height);
                QCoreApplication::processEvents();
                if (changes >= endless)
                    restless.append(QStringLiteral("%1 x %2").arg(width).arg(height));
            }
        }
        QVERIFY(all > 0); // or nothing was seen
        QVERIFY2(restless.isEmpty(),
                 qPrintable(QStringLiteral("%1: ").arg(restless.size()) + restless.mid(0, 10).join(u',')));
    }

    void whileDisabledNothingIsSelected()
    {
        FolderTree& tree = show(at("pics"));
        QTRY_VERIFY(entry({"pics", "2025"}).isValid());
        QSignalSpy told(&tree, &FolderTree::folderSelected);
        tree.setEnabled(false);
        click(entry({"pics", "2025"}));
        QCOMPARE(told.count(), 0);
        QCOMPARE(tree.selectedFolder(), QString());
    }
};

QTEST_MAIN(TestFolderTree)
#include "tst_foldertree.moc"
