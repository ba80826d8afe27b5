// The parts of the soak that its word rests on: the numbers, the accounts of files, memory, store and log.
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "Judge.h"
#include "Originals.h"
#include "Outsider.h"
#include "RandomActions.h"
#include "SoakPlaces.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTest>

#include <sys/mman.h>

#include <cstring>
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
        QTest::newRow("in the trash, but no file of it")
            << ".local/share/Trash/a.png" << QByteArray("first") << true;
        QTest::newRow("as a scratch file") << "tmp/a.png" << QByteArray("first") << true;
        QTest::newRow("in the cache") << ".cache/a.png" << QByteArray("first") << true;
        QTest::newRow("in the records") << ".soak/templates/a.png" << QByteArray("first") << true;
        QTest::newRow("to the other folder") << "sources/a.png" << QByteArray("first") << false;
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
        const QStringList lost = Originals::load(notes).lost(SoakPlaces{home.path(QString())}.kept());
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
        const MemoryBounds tooShort{.peak = 1500, .growth = 1, .heapGrowth = 1, .hasQuarters = false};
        QVERIFY(memoryFaults(figures, tooShort).isEmpty());
        QCOMPARE(memoryFaults({}, {.peak = 1500, .growth = 498, .heapGrowth = 100}).size(), 1);
    }

    void aQuarterWithoutAnEndIsNotMeasured_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<int>("faults");
        QTest::newRow("all") << "heap" << 100 << 8000 << 0;
        QTest::newRow("no session ends in the last quarter") << "heap" << 100 << 6000 << 1;
        QTest::newRow("nor in the second one") << "heap" << 4100 << 8000 << 1;
        QTest::newRow("nothing taken in the last quarter") << "memory" << 100 << 6000 << 1;
        QTest::newRow("nor in the second one, of the resident") << "memory" << 4100 << 8000 << 1;
    }

    void aQuarterWithoutAnEndIsNotMeasured()
    {
        QFETCH(QString, kind);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(int, faults);
        QList<JournalLine> lines;
        for (int step = 100; step <= 8000; step += 100) {
            for (const QString& each : {QStringLiteral("heap"), QStringLiteral("memory")}) {
                if (each != kind || (step >= first && step <= last))
                    lines.append({step, each, QStringLiteral("1000")});
            }
        }
        const QStringList found =
            memoryFaults(memoryFigures(lines, 8000), {.peak = 2000, .growth = 2000, .heapGrowth = 2000});
        QCOMPARE(found.size(), faults);
        QVERIFY(found.filter(QStringLiteral("not measured")).size() == faults);
    }

    void quartersBeginWhereTheRunDoes()
    {
        QList<JournalLine> lines;
        for (int step = 5001; step <= 9000; ++step)
            lines.append({step, QStringLiteral("memory"), QString::number(step)});
        const MemoryFigures figures = memoryFigures(lines, 9000, 5001);
        QCOMPARE(figures.early, 6500);
        QCOMPARE(figures.late, 8500);
    }

    void peakBetweenTwoLooksCounts()
    {
        const QList<JournalLine> lines{{25, QStringLiteral("memory"), QStringLiteral("100")},
                                       {26, QStringLiteral("peak"), QStringLiteral("900")},
                                       {26, QStringLiteral("heap"), QStringLiteral("2000")}};
        QCOMPARE(memoryFigures(lines, 100).peak, 900);
    }

    void lastStepIsFollowed()
    {
        const ScratchHome home;
        const QString path = home.path(QStringLiteral("journal"));
        StepTail tail(path);
        QCOMPARE(tail.last(), 0);
        const Journal journal(path);
        journal.write({7, QStringLiteral("key"), {}});
        QCOMPARE(tail.last(), 7);
        journal.write({0, QStringLiteral("warning"), QStringLiteral("8\t9")});
        journal.write({7, QStringLiteral("window"), {}});
        QCOMPARE(tail.last(), 7);
        QFile half(path);
        QVERIFY(half.open(QIODevice::Append) && half.write("12") == 2);
        half.close();
        QCOMPARE(tail.last(), 7);
        journal.write({3, QStringLiteral("key"), {}}); // the rest of "123"
        QCOMPARE(tail.last(), 123);
    }

    void someoneWithoutTemplatesAddsNothing()
    {
        const ScratchHome home;
        for (int i = 0; i < 70; ++i)
            home.write(QStringLiteral("pics/%1.png").arg(i), QByteArray::number(i));
        const Outsider outsider(home.path(QStringLiteral("pics")), home.path(QStringLiteral("none")),
                                home.path(QStringLiteral("trash")), {});
        QStringList done;
        for (int step = 1; step <= 40; ++step) {
            StepRandom random(1, step);
            done.append(outsider.act(random, step));
        }
        QVERIFY(done.contains(QStringLiteral("adds nothing")));
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

    void memoryThatWasGivenBackIsInThePeak()
    {
        constexpr size_t size = 64 * 1024 * 1024;
        const int before = residentMemory();
        void* const block = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        QVERIFY(block != MAP_FAILED);
        std::memset(block, 'x', size);
        QCOMPARE(::munmap(block, size), 0); // not the allocator's: a sanitizer's keeps what is given back
        QVERIFY(residentMemory() - before < 32 * 1024);
        QVERIFY2(peakMemory() - before > 63 * 1024, qPrintable(QString::number(peakMemory() - before)));
    }

    void aPictureInUseIsSeen()
    {
        const int before = heapInUse();
        auto block = std::make_unique<QByteArray>(64 * 1024 * 1024, 'x');
        const int more = heapInUse() - before;
        QVERIFY2(more >= 64 * 1024 && more < 65 * 1024, qPrintable(QString::number(more)));
        block.reset();
        QVERIFY2(heapInUse() - before < 500, qPrintable(QString::number(heapInUse() - before)));
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

    void onlyKnownRowsAreFaultless_data()
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

    void onlyKnownRowsAreFaultless()
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
        if (found.size() != faults)
            qWarning().noquote() << found.join(u'\n');
        QCOMPARE(int(found.size()), faults);
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
