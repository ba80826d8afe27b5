// What a screen reader sees of the filmstrip.
#include "collections/Filmstrip.h"
#include "FilmBench.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QSignalSpy>
#include <QtTest>

using quorvia::collections::Filmstrip;
using quorvia::test::FilmBench;

namespace {

QAccessibleInterface* access(Filmstrip& strip)
{
    return QAccessible::queryAccessibleInterface(&strip);
}

} // namespace

class TestFilmstripAccess : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void isAListOfNames()
    {
        Filmstrip strip;
        for (const char* file : {"/p/a.png", "/p/b.png", "/p/c.png"})
            strip.add(QLatin1String(file));
        QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&strip);
        QCOMPARE(list->role(), QAccessible::List);
        QCOMPARE(list->childCount(), 3);
        QAccessibleInterface* const second = list->child(1);
        QCOMPARE(second->role(), QAccessible::ListItem);
        QCOMPARE(second->text(QAccessible::Name), QStringLiteral("b.png"));
        QCOMPARE(list->indexOfChild(second), 1);
        QCOMPARE(list->child(1), second);
        QVERIFY(!list->child(3));
        const QAccessible::Id id = QAccessible::uniqueId(second);
        strip.Clear();
        QCOMPARE(list->childCount(), 0);
        QVERIFY(!QAccessible::accessibleInterface(id)); // with the picture that it stood for
    }

    void anotherListHasOtherEntries()
    {
        Filmstrip strip;
        for (const char* file : {"/p/a.png", "/p/b.png", "/p/c.png"})
            strip.add(QLatin1String(file));
        QAccessibleInterface* const list = access(strip);
        const QAccessible::Id second = QAccessible::uniqueId(list->child(1));
        strip.Clear();
        for (const char* file : {"/q/x.png", "/q/y.png"})
            strip.add(QLatin1String(file));
        QVERIFY(!QAccessible::accessibleInterface(second));
        QCOMPARE(list->childCount(), 2);
        QCOMPARE(list->child(1)->text(QAccessible::Name), QStringLiteral("y.png"));
        QVERIFY(!list->child(2));
    }

    void aPressDoesNothingToAnotherList()
    {
        Filmstrip strip;
        strip.add(QStringLiteral("/p/a.png"));
        const QSignalSpy clicked(&strip, &Filmstrip::ImageClicked);
        access(strip)->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        strip.Clear();
        strip.add(QStringLiteral("/q/a.png"));
        QCoreApplication::processEvents();
        QCOMPARE(clicked.size(), 0);
    }

    void manyEntriesKnowTheirPlaces()
    {
        constexpr int many = 20'000; // takes minutes when each is looked for
        Filmstrip strip;
        for (int i = 0; i < many; ++i)
            strip.add(QStringLiteral("/p/%1.png").arg(i));
        QAccessibleInterface* const list = access(strip);
        for (int i = 0; i < many; ++i)
            list->child(i);
        for (int i = 0; i < many; ++i)
            QCOMPARE(list->indexOfChild(list->child(i)), i);
        Filmstrip other;
        other.add(QStringLiteral("/p/0.png"));
        QCOMPARE(list->indexOfChild(access(other)->child(0)), -1);
        QCOMPARE(list->indexOfChild(list), -1);
    }

    void theEntryWithTheKeysSaysSo()
    {
        const FilmBench bench;
        Filmstrip& strip = *bench.strip;
        bench.addMany(20);
        bench.laysOut();
        strip.setFocus();
        QVERIFY(strip.hasFocus());
        QCOMPARE(strip.currentIndex(), 0);
        QAccessibleInterface* const list = access(strip);
        QCOMPARE(list->focusChild(), list->child(0));
        QTest::keyClick(&strip, Qt::Key_Right);
        QTest::keyClick(&strip, Qt::Key_Right);
        QCOMPARE(list->focusChild(), list->child(2));
        QVERIFY(list->child(2)->state().selected && list->child(2)->state().focused);
        QVERIFY(!list->child(1)->state().selected && !list->child(1)->state().focused);
        QVERIFY(!list->child(2)->state().offscreen);
        QVERIFY(list->child(19)->state().offscreen);
        QTest::keyClick(&strip, Qt::Key_End);
        QCOMPARE(list->focusChild(), list->child(19));
        QVERIFY(!list->child(19)->state().offscreen);
        QVERIFY(list->child(2)->state().offscreen);
        strip.clearFocus();
        QVERIFY(!list->focusChild());
        QVERIFY(list->child(19)->state().selected && !list->child(19)->state().focused);
    }

    void entriesStandWhereTheirPicturesShow_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("rows");
        QTest::addColumn<double>("part");   // of the way that the bar can go
        for (const int count : {20, 300}) { // one strip, and a window over more
            for (const int rows : {1, 2, 3}) {
                for (const double part : {0.0, 0.4, 1.0})
                    QTest::addRow("%d in %d rows, %d%%", count, rows, qRound(part * 100))
                        << count << rows << part;
            }
        }
    }

    void entriesStandWhereTheirPicturesShow()
    {
        QFETCH(int, count);
        QFETCH(int, rows);
        QFETCH(double, part);
        const FilmBench bench;
        Filmstrip& strip = *bench.strip;
        bench.addMany(count);
        strip.SetNumberOfRows(rows);
        bench.laysOut();
        bench.bar().SetValue(qRound(bench.bar().Max() * part));
        QAccessibleInterface* const list = access(strip);
        const QSignalSpy clicked(&strip, &Filmstrip::IndexSelected);
        int seen = 0;
        for (int i = 0; i < count; ++i) {
            QAccessibleInterface* const entry = list->child(i);
            const QPoint middle = entry->rect().center();
            const QPoint within = bench.surface().mapFromGlobal(middle);
            const bool shows =
                strip.rect().contains(strip.mapFromGlobal(middle)) && bench.surface().rect().contains(within);
            if (!shows)
                continue;
            ++seen;
            QVERIFY(!entry->state().offscreen);
            QCOMPARE(list->childAt(middle.x(), middle.y()), entry);
            QTest::mouseClick(&bench.surface(), Qt::LeftButton, {}, within);
            QCOMPARE(clicked.size(), seen);
            QCOMPARE(clicked.constLast().constFirst().toInt(), i);
        }
        QVERIFY(seen >= 3);
    }

    void aPressIsAClick()
    {
        Filmstrip strip;
        for (const char* file : {"/p/a.png", "/p/b.png"})
            strip.add(QLatin1String(file));
        const QSignalSpy selected(&strip, &Filmstrip::IndexSelected);
        const QSignalSpy clicked(&strip, &Filmstrip::ImageClicked);
        QAccessibleInterface* const second = QAccessible::queryAccessibleInterface(&strip)->child(1);
        second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(clicked.size(), 1);
        QCOMPARE(selected.size(), 1);
        QCOMPARE(selected.first().first().toInt(), 1);
        QCOMPARE(clicked.first(), (QVariantList{1, 1, 0}));
    }
};

QTEST_MAIN(TestFilmstripAccess)
#include "tst_filmstripaccess.moc"
