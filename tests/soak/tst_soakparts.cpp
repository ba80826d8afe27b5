// The parts of the soak that its word rests on: the numbers, the accounts of files, memory, store and log.
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "Judge.h"
#include "Originals.h"
#include "RandomActions.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTest>

#include <list>
#include <memory>

using namespace quorvia;
using namespace quorvia::test;

class TestSoakParts : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void numbersAreTheSameEverywhere_data()
    {
        QTest::addColumn<int>("step");
        QTest::addColumn<QList<int>>("numbers");
        QTest::newRow("first") << 1 << QList<int>{336, 572, 927};
        QTest::newRow("later") << 4711 << QList<int>{448, 131, 548};
    }

    void numbersAreTheSameEverywhere()
    {
        QFETCH(int, step);
        QFETCH(QList<int>, numbers);
        StepRandom random(1, step);
        QList<int> drawn;
        for (qsizetype i = 0; i < numbers.size(); ++i)
            drawn.append(random.below(1000));
        QCOMPARE(drawn, numbers);
    }

    void everyKindIsDrawn()
    {
        QMap<QString, int> counts;
        for (int step = 1; step <= 8000; ++step) {
            StepRandom random(1, step);
            ++counts[nameOf(drawKind(random))];
        }
        QCOMPARE(counts.size(), 10);
        QVERIFY(!counts.contains(QString()));
        QVERIFY2(counts.value(QStringLiteral("command")) > 2600,
                 qPrintable(QString::number(counts.value(QStringLiteral("command")))));
        QVERIFY(counts.value(QStringLiteral("terminate")) > 5);
    }

    void keysTypeNoSeparator()
    {
        for (int step = 1; step <= 8000; ++step) {
            StepRandom random(1, step);
            for (const KeyPress& key : {drawMainKey(random), drawDialogKey(random)}) {
                QVERIFY(!key.text.contains(u'/') && !key.text.contains(u'\\'));
                QVERIFY(key.key != Qt::Key_unknown);
            }
        }
    }

    void aFileThatMovedIsNotLost_data()
    {
        QTest::addColumn<QString>("after");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isLost");
        QTest::newRow("untouched") << "pics/a.png" << QByteArray("first") << false;
        QTest::newRow("renamed") << "pics/other name" << QByteArray("first") << false;
        QTest::newRow("in the trash") << ".local/share/Trash/files/a.png" << QByteArray("first") << false;
        QTest::newRow("changed") << "pics/a.png" << QByteArray("firs") << true;
        QTest::newRow("emptied") << "pics/a.png" << QByteArray() << true;
    }

    void aFileThatMovedIsNotLost()
    {
        QFETCH(QString, after);
        QFETCH(QByteArray, content);
        QFETCH(bool, isLost);
        const ScratchHome home;
        const QString path = home.write(QStringLiteral("pics/a.png"), "first");
        home.write(QStringLiteral("pics/b.png"), "second");
        Originals originals;
        originals.add(home.path(QStringLiteral("pics")));
        QCOMPARE(originals.count(), 2);
        const QString notes = home.path(QStringLiteral("notes"));
        QVERIFY(originals.save(notes));

        QVERIFY(QFile::remove(path));
        home.write(after, content);
        const QStringList lost = Originals::load(notes).lost(home.path(QString()));
        QCOMPARE(lost, isLost ? QStringList{path} : QStringList());
    }

    void memoryIsTakenByQuarters()
    {
        QList<JournalLine> lines;
        for (int step = 100; step <= 8000; step += 100)
            lines.append(
                {step, QStringLiteral("memory"), QString::number(step <= 6000 ? 1000 + step / 2000 : 1500)});
        lines.append({8000, QStringLiteral("key"), QStringLiteral("9999")});
        for (int step = 500; step <= 8000; step += 500)
            lines.append({step, QStringLiteral("heap"), QString::number(step <= 6000 ? 200 : 300)});
        const MemoryFigures figures = memoryFigures(lines, 8000);
        QCOMPARE(figures.heapEarly, 200);
        QCOMPARE(figures.heapGrowth(), 100);
        QCOMPARE(memoryFaults(figures, {.peak = 1500, .growth = 499, .heapGrowth = 99}).size(), 1);
        QCOMPARE(figures.peak, 1500);
        QCOMPARE(figures.early, 1001);
        QCOMPARE(figures.late, 1500);
        QVERIFY(memoryFaults(figures, {.peak = 1500, .growth = 499, .heapGrowth = 100}).isEmpty());
        QCOMPARE(memoryFaults(figures, {.peak = 1499, .growth = 499, .heapGrowth = 100}).size(), 1);
        QCOMPARE(memoryFaults(figures, {.peak = 1500, .growth = 498, .heapGrowth = 100}).size(), 1);
        QCOMPARE(memoryFaults({}, {.peak = 1500, .growth = 498, .heapGrowth = 100}).size(), 1);
    }

    void journalIsReadAsWritten()
    {
        const ScratchHome home;
        const QString path = home.path(QStringLiteral("journal"));
        Journal(path).write({7, QStringLiteral("key"), QStringLiteral("two\nlines\tand a tab")});
        Journal(path).write({8, QStringLiteral("end"), {}});
        const QList<JournalLine> lines = Journal::read(path);
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines.first().step, 7);
        QCOMPARE(lines.first().detail, QStringLiteral("two lines and a tab"));
        QCOMPARE(lines.last().kind, QStringLiteral("end"));
    }

    void residentMemoryIsSeen()
    {
        const int before = residentMemory();
        const QByteArray block(64 * 1024 * 1024, 'x');
        QVERIFY(before > 0);
        QVERIFY(residentMemory() - before > int(block.size() / 1024) - 1024);
    }

    void heapInUseIsSeen()
    {
        const int before = heapInUse();
        QVERIFY(before > 0);
        auto small = std::make_unique<std::list<int>>(100'000);
        const int with = heapInUse();
        QVERIFY2(with - before > 2000, qPrintable(QString::number(with - before)));
        small.reset();
        QVERIFY2(heapInUse() - before < 500, qPrintable(QString::number(heapInUse() - before)));
    }

    void storeOfKnownRowsIsFaultless_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("faults");
        QTest::newRow("number") << "Settings"
                                << "cView" << QVariant(1) << 0;
        QTest::newRow("text") << "Settings"
                              << "Recent" << QVariant("a;b") << 0;
        QTest::newRow("placement") << "Settings"
                                   << "frmClipboardLeft" << QVariant(15) << 0;
        QTest::newRow("earlier owner") << "Associations"
                                       << "Openx.jpg" << QVariant("other.desktop") << 0;
        QTest::newRow("text of a number") << "Settings"
                                          << "cView" << QVariant("1") << 1;
        QTest::newRow("unknown name") << "Settings"
                                      << "cVieww" << QVariant(1) << 1;
        QTest::newRow("unknown section") << "Setting"
                                         << "cView" << QVariant(1) << 1;
    }

    void storeOfKnownRowsIsFaultless()
    {
        QFETCH(QString, section);
        QFETCH(QString, name);
        QFETCH(QVariant, value);
        QFETCH(int, faults);
        const ScratchHome home;
        app::openSettings();
        QVERIFY(app::SaveAppSetting(section, name, value));
        QVERIFY(app::save(app::common::ThumbnailPath, QStringLiteral("/somewhere/")));
        app::closeSettings();
        const QStringList found = storeFaults(home.path(QStringLiteral(".config/halvexa/user.db")));
        QVERIFY2(found.size() == faults, qPrintable(found.join(u'\n')));
        QCOMPARE(storeFaults(home.path(QStringLiteral("machine/machine.db"))), QStringList());
        QCOMPARE(storeFaults(home.path(QStringLiteral("none.db"))).size(), 1);
    }

    void damagedStoreIsAFault()
    {
        const ScratchHome home;
        const QString path = home.write(QStringLiteral("bad.db"), QByteArray(4096, 'x'));
        QVERIFY(!storeFaults(path).isEmpty());
    }

    void linesOfTheLogAreJudged()
    {
        const ScratchHome home;
        const QString path = home.write(
            QStringLiteral("log"), "11-22-2026 - 10:00:00Not opened: /x: why\n"
                                   "11-22-2026 - 10:00:00Settings store damaged: /x was set aside as /y\n");
        const QStringList faults = logFaults(path);
        QCOMPARE(faults.size(), 1);
        QVERIFY(faults.first().contains(QLatin1String("damaged")));
        QCOMPARE(logFaults(home.path(QStringLiteral("no log"))).size(), 1);
    }

    void warningsAreJudged()
    {
        const QString kind = QStringLiteral("warning");
        const QList<JournalLine> lines{
            {0, kind, QStringLiteral("This plugin does not support raise()")},
            {0, kind, QStringLiteral("QPainter::begin: Paint device returned engine == 0")},
            {0, QStringLiteral("key"), QStringLiteral("anything")}};
        QCOMPARE(warningFaults(lines).size(), 1);
    }
};

QTEST_MAIN(TestSoakParts)
#include "tst_soakparts.moc"
