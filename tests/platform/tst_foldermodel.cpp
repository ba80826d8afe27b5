// The folders as a model, on real folders that come and go.
#include "platform/FolderModel.h"
#include "support/ScratchHome.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace quorvia;
using platform::FolderModel;

class TestFolderModel : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScratchHome> m_home;

    QString at(const char* name) const { return m_home->path(QString::fromUtf8(name)); }
    void make(const char* name) const { QVERIFY(QDir().mkpath(at(name))); }

    std::unique_ptr<FolderModel> model(const QStringList& tops) const
    {
        std::vector<FolderModel::Top> list;
        for (const QString& top : tops)
            list.push_back({top, QStringLiteral("Top %1").arg(list.size()), QIcon()});
        return std::make_unique<FolderModel>(list, QIcon());
    }

    static QStringList namesBelow(const FolderModel& model, const QModelIndex& parent)
    {
        QStringList names;
        for (int row = 0; row < model.rowCount(parent); ++row)
            names.append(model.index(row, 0, parent).data().toString());
        return names;
    }

    /// Reads the folder at `parent` as a view does that opens it.
    static void open(FolderModel& model, const QModelIndex& parent)
    {
        if (model.canFetchMore(parent))
            model.fetchMore(parent);
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::ScratchHome>();
        for (const char* name : {"top/b/inner", "top/A", "top/c", "top/.hidden"})
            make(name);
        m_home->write(QStringLiteral("top/file.jpg"), "x");
        m_home->write(QStringLiteral("top/b/file.jpg"), "x");
    }

    void cleanup() { m_home.reset(); }

    void topEntriesStandAsGiven()
    {
        const auto made = model({at("top"), QStringLiteral("/")});
        const QAbstractItemModelTester tester(made.get());
        QCOMPARE(made->rowCount(), 2);
        QCOMPARE(made->columnCount(), 1);
        QCOMPARE(namesBelow(*made, {}), QStringList({"Top 0", "Top 1"}));
        QCOMPARE(made->path(made->index(0, 0)), at("top"));
        QCOMPARE(made->path(made->index(1, 0)), QStringLiteral("/"));
        QVERIFY(made->hasChildren(made->index(0, 0)));
        QVERIFY(made->hasChildren(made->index(1, 0)));
        QCOMPARE(made->path({}), QString());
        QVERIFY(!made->index(2, 0).isValid());
        QVERIFY(!made->index(0, 1).isValid());
        QVERIFY(!made->parent(made->index(0, 0)).isValid());
    }

    void foldersOnlyWithoutHiddenOnesInOrder()
    {
        const auto made = model({at("top")});
        const QAbstractItemModelTester tester(made.get());
        const QModelIndex top = made->index(0, 0);
        open(*made, top);
        QTRY_COMPARE(namesBelow(*made, top), QStringList({"A", "b", "c"}));
        const QModelIndex b = made->index(1, 0, top);
        QCOMPARE(made->path(b), at("top/b"));
        QCOMPARE(b.parent(), top);
        open(*made, b);
        QTRY_COMPARE(namesBelow(*made, b), QStringList({"inner"}));
        QCOMPARE(made->index(0, 0, b).parent(), b);
    }

    void aFolderWithoutFoldersIsKnownAsSoonAsItIsRead()
    {
        const auto made = model({at("top")});
        const QModelIndex top = made->index(0, 0);
        open(*made, top);
        QTRY_COMPARE(namesBelow(*made, top), QStringList({"A", "b", "c"}));
        const QModelIndex a = made->index(0, 0, top);
        for (int row = 0; row < 3; ++row) { // they may have some: nobody has looked
            QVERIFY(made->hasChildren(made->index(row, 0, top)));
            QCOMPARE(made->rowCount(made->index(row, 0, top)), 0);
        }
        QSignalSpy read(made.get(), &FolderModel::folderRead);
        open(*made, a);
        QTRY_VERIFY(!made->hasChildren(a));
        QVERIFY(!read.isEmpty());
        QVERIFY(made->hasChildren(made->index(1, 0, top)));
    }

    void findsAFolderBelowTheNearestTop()
    {
        const auto made = model({at("top"), QStringLiteral("/")});
        const QAbstractItemModelTester tester(made.get());
        const QModelIndex inner = made->indexOf(at("top/b/inner"));
        QVERIFY(inner.isValid());
        QCOMPARE(made->path(inner), at("top/b/inner"));
        QCOMPARE(made->path(inner.parent()), at("top/b"));
        QCOMPARE(inner.parent().parent(), made->index(0, 0));
        QCOMPARE(made->indexOf(at("top")), made->index(0, 0));
        QCOMPARE(made->indexOf(QStringLiteral("/")), made->index(1, 0));
        const QModelIndex usr = made->indexOf(QStringLiteral("/usr"));
        QCOMPARE(usr.parent(), made->index(1, 0));
    }

    void findsNothingWhereNothingIs_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("outside") << "..";
        QTest::newRow("missing") << "nowhere";
        QTest::newRow("a file") << "file.jpg";
        QTest::newRow("below a file") << "file.jpg/x";
        QTest::newRow("begins alike") << "../topmost";
    }

    void findsNothingWhereNothingIs()
    {
        QFETCH(QString, name);
        make("topmost");
        const auto made = model({at("top")});
        QVERIFY(!made->indexOf(QDir::cleanPath(at("top/") + name)).isValid());
        QVERIFY(!made->indexOf(QString()).isValid());
    }

    void foldersComeAndGo()
    {
        const auto made = model({at("top"), m_home->path(QString())});
        const QAbstractItemModelTester tester(made.get());
        const QModelIndex top = made->index(0, 0);
        open(*made, top);
        QTRY_COMPARE(namesBelow(*made, top), QStringList({"A", "b", "c"}));
        const QPersistentModelIndex b = made->index(1, 0, top);
        const QPersistentModelIndex inner = made->indexOf(at("top/b/inner"));
        QVERIFY(inner.isValid());

        make("top/a2");
        QTRY_COMPARE(namesBelow(*made, top), QStringList({"A", "a2", "b", "c"}));
        QCOMPARE(made->path(b), at("top/b"));
        QCOMPARE(b.row(), 2);
        QCOMPARE(made->path(inner), at("top/b/inner"));

        QVERIFY(QDir(at("top/b")).removeRecursively());
        QTRY_COMPARE(namesBelow(*made, top), QStringList({"A", "a2", "c"}));
        QVERIFY(!b.isValid());
        QVERIFY(!inner.isValid());

        make("top/b/again");
        QTRY_COMPARE(made->rowCount(top), 4);
        QCOMPARE(made->path(made->indexOf(at("top/b/again"))), at("top/b/again"));
    }

    void aTopThatVanishesCostsNothing()
    {
        const auto made = model({at("top")});
        const QAbstractItemModelTester tester(made.get());
        const QModelIndex top = made->index(0, 0);
        open(*made, top);
        QTRY_COMPARE(namesBelow(*made, top), QStringList({"A", "b", "c"}));
        QVERIFY(QDir(at("top")).removeRecursively());
        QVERIFY(!made->indexOf(at("top/b")).isValid());
        QVERIFY(!made->indexOf(at("top")).isValid());
        QCOMPARE(made->rowCount(), 1);
        QCOMPARE(made->path(top), at("top"));
    }

    void hostileNamesAreShownOnOneLine()
    {
        const QString longest(255, u'l');
        for (const QString& name : {QStringLiteral("d\nx"), QStringLiteral("e<b>"), longest})
            QVERIFY(QDir(at("top")).mkdir(name));
        QVERIFY(QDir().mkpath(QFile::decodeName(QFile::encodeName(at("top/f")))));
        const auto made = model({at("top")});
        const QAbstractItemModelTester tester(made.get());
        const QModelIndex top = made->index(0, 0);
        open(*made, top);
        QTRY_COMPARE(namesBelow(*made, top), QStringList({"A", "b", "c", "d x", "e<b>", "f", longest}));
        QCOMPARE(made->path(made->index(3, 0, top)), at("top/d\nx"));
        QVERIFY(made->index(4, 0, top)
                    .data(Qt::ToolTipRole)
                    .toString()
                    .contains(QStringLiteral("e&lt;b&gt;</span>")));
    }

    void namesThatAreNotUtf8CostNothing()
    {
        const QByteArray odd = QFile::encodeName(at("top/")) + "odd\xff";
        QCOMPARE(::mkdir(odd.constData(), 0755), 0);
        const auto made = model({at("top")});
        const QAbstractItemModelTester tester(made.get());
        const QModelIndex top = made->index(0, 0);
        open(*made, top);
        QTRY_COMPARE(namesBelow(*made, top).mid(0, 3), QStringList({"A", "b", "c"}));
        QCOMPARE(::rmdir(odd.constData()), 0);
    }
};

QTEST_MAIN(TestFolderModel)
#include "tst_foldermodel.moc"
