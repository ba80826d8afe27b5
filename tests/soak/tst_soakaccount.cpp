// What a run of the soak must have done, and how its processes may end.
#include "Account.h"

#include <QDirIterator>
#include <QTest>

#include <utility>

using namespace quorvia::test;

namespace {

using Lines = QList<JournalLine>;

/// A journal of `commands`, `keys` and so on, a step each.
Lines journalOf(const QList<std::pair<const char*, int>>& counts)
{
    Lines lines;
    int step = 0;
    for (const auto& [kind, count] : counts) {
        for (int i = 0; i < count; ++i)
            lines.append({++step, QLatin1String(kind), QStringLiteral("any")});
    }
    return lines;
}

const SoakPlan plan{.seed = 1, .from = 10, .last = 1200, .done = 0, .inputs = 400, .lastErasing = 2};
const Lines before{{9, QStringLiteral("click"), {}}};

} // namespace

class TestSoakAccount : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void whoDoesTooLittleIsToldSo_data()
    {
        QTest::addColumn<int>("commands");
        QTest::addColumn<int>("keys");
        QTest::addColumn<int>("nothings");
        QTest::addColumn<int>("sessions");
        QTest::addColumn<QStringList>("faults");
        QTest::newRow("as usual") << 280 << 720 << 20 << 6 << QStringList();
        QTest::newRow("at the bounds") << 125 << 875 << 60 << 2 << QStringList();
        QTest::newRow("few commands")
            << 124 << 876 << 0 << 2 << QStringList{"did too little: 124 x command, the bound is 125"};
        QTest::newRow("few keys") << 667 << 333 << 0 << 2
                                  << QStringList{"did too little: 333 x key, the bound is 333.333"};
        QTest::newRow("one session") << 280 << 720 << 0 << 1
                                     << QStringList{"did too little: 1 x session, the bound is 2"};
        QTest::newRow("no window") << 280 << 720 << 61 << 2
                                   << QStringList{"did too often: 61 x nothing, the bound is 60"};
        QTest::newRow("ended early") << 280 << 719 << 0 << 2
                                     << QStringList{"did too little: 999 of 1000 commands and keys"};
        QTest::newRow("nothing at all") << 0 << 0 << 0 << 0
                                        << QStringList{"did too little: 0 of 1000 commands and keys",
                                                       "did too little: 0 x command, the bound is 125",
                                                       "did too little: 0 x key, the bound is 333.333",
                                                       "did too little: 0 x session, the bound is 2"};
    }

    void whoDoesTooLittleIsToldSo()
    {
        QFETCH(int, commands);
        QFETCH(int, keys);
        QFETCH(int, nothings);
        QFETCH(int, sessions);
        QFETCH(QStringList, faults);
        const Lines lines = journalOf({{"command", commands},
                                       {"key", keys},
                                       {"nothing", nothings},
                                       {"session", sessions},
                                       {"click", 99}});
        QCOMPARE(inputCount(lines), commands + keys);
        QCOMPARE(floorFaults(lines, 1000), faults);
    }

    void commandsThatNeverRanAreNamed()
    {
        Lines lines{{0, QStringLiteral("table"), QStringLiteral("miNext miRandom miShow")},
                    {1, QStringLiteral("command"), QStringLiteral("miNext")},
                    {2, QStringLiteral("command"), QStringLiteral("miNext")},
                    {3, QStringLiteral("command"), QStringLiteral("unknown")},
                    {4, QStringLiteral("key"), QStringLiteral("miShow")}};
        const QStringList faults{QStringLiteral("never run: miRandom"), QStringLiteral("never run: miShow")};
        QCOMPARE(commandFaults(lines), faults);
        QVERIFY(figures(lines).contains(QStringLiteral("different commands: 1 of 3 commands")));
        lines.append({5, QStringLiteral("command"), QStringLiteral("miRandom")});
        lines.append({6, QStringLiteral("command"), QStringLiteral("miShow")});
        QCOMPARE(commandFaults(lines), QStringList());
        lines.removeFirst();
        QCOMPARE(commandFaults(lines).size(), 1);
    }

    void whatWasNeverShownIsTold()
    {
        Lines lines;
        const QStringList names = programWindows();
        for (const QString& name : names)
            lines.append({1, QStringLiteral("window"), QStringLiteral("quorvia::room::Class ") + name});
        QVERIFY(figures(lines).contains(QStringLiteral("never shown: none")));
        lines.removeIf([](const JournalLine& line) {
            return line.detail.endsWith(QLatin1String("frmImagePrint")) ||
                   line.detail.endsWith(QLatin1String(" frmImageView"));
        });
        lines.append({1, QStringLiteral("key"), QStringLiteral("Class frmImagePrint")});
        const QString told = QStringLiteral("never shown: frmImageView, frmImagePrint");
        QVERIFY2(figures(lines).contains(told), qPrintable(figures(lines).join(u'\n')));
    }

    void everyFormOfTheProgramIsAmongTheWindows()
    {
        const QStringList names = programWindows();
        int forms = 0;
        QDirIterator each(QStringLiteral(QUORVIA_SOURCE "/src"), {QStringLiteral("frm*.h")}, QDir::Files,
                          QDirIterator::Subdirectories);
        for (; each.hasNext(); ++forms) {
            each.next();
            const QString name = each.fileInfo().completeBaseName();
            QVERIFY2(names.contains(name), qPrintable(name));
        }
        QVERIFY(forms >= 10);
    }

    void longestGapIsFound()
    {
        const Lines lines{{1, QStringLiteral("gap"), QStringLiteral("20")},
                          {9, QStringLiteral("gap"), QStringLiteral("1200")},
                          {9, QStringLiteral("key"), QStringLiteral("5000")},
                          {9, QStringLiteral("gap"), QStringLiteral("30")}};
        QCOMPARE(longestGap(lines), 1200);
        QVERIFY(figures(lines).contains(QStringLiteral("longest gap between two steps: 1200 ms")));
    }

    void anEndMustHaveAReason_data()
    {
        QTest::addColumn<QList<JournalLine>>("lines");
        QTest::addColumn<bool>("isFault");
        const auto line = [](int step, const char* kind) {
            return JournalLine{step, QLatin1String(kind), {}};
        };
        QTest::newRow("nothing was done") << before << true;
        QTest::newRow("no journal") << Lines() << true;
        QTest::newRow("at the end") << before + Lines{line(10, "key"), line(10, "end")} << false;
        QTest::newRow("in the middle") << before + Lines{line(10, "key"), line(11, "key")} << true;
        QTest::newRow("settings erased")
            << before + Lines{line(10, "key"), line(11, "asks"), line(11, "yes")} << false;
        QTest::newRow("asked one step before")
            << before + Lines{line(10, "key"), line(11, "asks"), line(12, "click")} << false;
        QTest::newRow("asked long ago")
            << before + Lines{line(10, "asks"), line(11, "out"), line(12, "key")} << true;
        QTest::newRow("asked of the process before")
            << Lines{line(9, "asks"), line(9, "yes"), line(10, "click")} << true;
        QTest::newRow("when nobody says yes any more")
            << before +
                   Lines{line(10, "key"), line(11, "key"), line(12, "key"), line(13, "key"), line(13, "asks")}
            << true;
        QTest::newRow("before the first step") << Lines{line(9, "end")} << true;
    }

    void anEndMustHaveAReason()
    {
        QFETCH(QList<JournalLine>, lines);
        QFETCH(bool, isFault);
        const QString fault = earlyEnd(lines, plan);
        QVERIFY2(fault.isEmpty() != isFault, qPrintable(fault));
    }

    void aRunHasAnEndWhateverItMeets()
    {
        const SoakPlan all = planOf(7, 101, 400);
        QCOMPARE(all.last, 1300);
        QCOMPARE(all.lastErasing, 100);
        QCOMPARE(all.inputs, 400);
    }
};

QTEST_GUILESS_MAIN(TestSoakAccount)
#include "tst_soakaccount.moc"
