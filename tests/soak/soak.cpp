// The soak: thousands of random commands, keys, clicks and changes of files, the same ones for the same seed,
// on a folder of good and broken files in a home of its own. Prints what was done; its exit code is 0 when
// nothing crashed, hung, grew or harmed a file. See docs/decisions/0027-soak.md.
#include "Account.h"
#include "Confinement.h"
#include "Driver.h"
#include "Judge.h"
#include "Originals.h"
#include "SoakHome.h"
#include "support/ScratchDesktop.h"
#include "support/ScratchHome.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <utility>

using namespace quorvia;
using namespace quorvia::test;

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr int sanitized = 3; ///< times as slow, and as large
#else
constexpr int sanitized = 1;
#endif

constexpr MemoryBounds bounds{
    .peak = sanitized * 300 * 1024, .growth = sanitized * 60 * 1024, .heapGrowth = sanitized * 1024};
constexpr int quiet = sanitized * 40'000; ///< milliseconds without a step, after which a run hangs
constexpr int shortRun = 2000;            ///< commands and keys below which growth means nothing
constexpr int fullRun = 6000;             ///< of which each command gets its turn

void print(const QString& line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

/// What the toolkit warns of goes to the journal.
const Journal* warnings = nullptr;

void takeWarning(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (warnings && type != QtDebugMsg)
        warnings->write({0, QStringLiteral("warning"), text});
}

int work(const SoakPlan& plan, const SoakPlaces& places)
{
    int one = 1;
    char name[] = "quorvia";
    char* arguments[] = {name, nullptr};
    std::signal(SIGXFSZ, SIG_IGN);
    const Journal journal(places.journal());
    warnings = &journal;
    qInstallMessageHandler(takeWarning);
    {
        QApplication application(one, arguments);
        QGuiApplication::setQuitOnLastWindowClosed(false);
        Driver driver(plan, places);
        driver.run();
    }
    warnings = nullptr;
    return 0;
}

void printLast(const QList<JournalLine>& lines)
{
    constexpr int shown = 50;
    print(QStringLiteral("The last steps:"));
    for (const JournalLine& line : lines.mid(qMax<qsizetype>(0, lines.size() - shown)))
        print(QStringLiteral("  %1 %2 %3").arg(line.step).arg(line.kind, line.detail));
}

/// Where the process stands, if there is a debugger on this machine.
void printStacks(qint64 process)
{
    QProcess debugger;
    debugger.setProcessChannelMode(QProcess::MergedChannels);
    debugger.start(QStringLiteral("gdb"),
                   {QStringLiteral("-batch"), QStringLiteral("-p"), QString::number(process),
                    QStringLiteral("-ex"), QStringLiteral("thread apply all backtrace 60")});
    if (debugger.waitForFinished(120'000))
        print(QString::fromLocal8Bit(debugger.readAll()));
}

/// Waits for the end of `process`, which must go on to the next step now and then. False when it hung or
/// crashed.
bool endsWell(QProcess& process, const QString& journal)
{
    constexpr int look = 1000; // milliseconds
    QElapsedTimer still;
    still.start();
    StepTail tail(journal);
    int step = tail.last();
    while (!process.waitForFinished(look) && process.state() != QProcess::NotRunning) {
        if (const int now = tail.last(); now != step) {
            step = now;
            still.restart();
        }
        if (still.elapsed() > quiet) {
            print(QStringLiteral("It hangs."));
            printStacks(process.processId());
            ::kill(pid_t(process.processId()), SIGABRT);
            process.waitForFinished();
            return false;
        }
    }
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

/// Lets one process of this program do what `plan` says. Empty when it ended as it should.
QString workOnce(const SoakPlan& plan, const SoakPlaces& places)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setWorkingDirectory(places.home);
    QStringList arguments{QStringLiteral("--work"), places.home};
    const std::array numbers{std::pair("--seed", qint64(plan.seed)), std::pair("--from", qint64(plan.from)),
                             std::pair("--last", qint64(plan.last)), std::pair("--done", qint64(plan.done)),
                             std::pair("--steps", qint64(plan.inputs))};
    for (const auto& [name, number] : numbers)
        arguments.append({QLatin1String(name), QString::number(number)});
    process.start(QStringLiteral("/proc/self/exe"), arguments);
    if (!process.waitForStarted())
        return QStringLiteral("it did not start: ") + process.errorString();
    if (!endsWell(process, places.journal()))
        return QStringLiteral("it did not come to its end");
    return earlyEnd(Journal::read(places.journal()), plan);
}

/// Lets processes make all steps, one after the other: the end of all settings ends one. Empty when all ended
/// as they should.
QString workAll(SoakPlan plan, const SoakPlaces& places)
{
    for (;;) {
        const QString fault = workOnce(plan, places);
        const QList<JournalLine> lines = Journal::read(places.journal());
        if (!fault.isEmpty())
            printLast(lines);
        if (!fault.isEmpty() || isAtEnd(lines))
            return fault;
        plan.from = lastStep(lines) + 1;
        plan.done = inputCount(lines);
        print(QStringLiteral("step %1: all settings erased, the program begins anew").arg(plan.from - 1));
    }
}

void printFigures(const QList<JournalLine>& lines, const MemoryFigures& memory, qint64 milliseconds)
{
    const QStringList texts = figures(lines);
    for (const QString& text : texts)
        print(text);
    print(QStringLiteral("memory: peak %1 MB, second quarter %2 MB, last quarter %3 MB")
              .arg(memory.peak / 1024)
              .arg(memory.early / 1024)
              .arg(memory.late / 1024));
    print(QStringLiteral("in use between sessions: second quarter %1 KB, last quarter %2 KB")
              .arg(memory.heapEarly)
              .arg(memory.heapLate));
    print(QStringLiteral("time: %1 s").arg(milliseconds / 1000));
}

/// What must hold, be it long or short.
QStringList faultsOf(const SoakPlan& plan, const SoakPlaces& places, int originals,
                     const QList<JournalLine>& lines, const MemoryFigures& memory)
{
    QStringList faults = floorFaults(lines, plan.inputs);
    if (plan.inputs >= fullRun)
        faults += commandFaults(lines);
    const Originals known = Originals::load(places.originals()); // from a home in which chance deletes
    if (known.count() != originals)
        faults.append(QStringLiteral("the list of originals is not whole"));
    const QStringList lost = known.lost(places.kept());
    for (const QString& each : lost)
        faults.append(QStringLiteral("lost: ") + each);
    MemoryBounds may = bounds;
    may.hasQuarters = plan.inputs >= shortRun;
    faults += memoryFaults(memory, may);
    faults += storeFaults(places.userStore());
    faults += storeFaults(places.machineStore());
    faults += logFaults(places.log());
    faults += warningFaults(lines);
    return faults;
}

/// Empty when the run is held in its home: else why not. `outside` must not be writable then.
QString confine(const SoakPlaces& places, QStringList outside)
{
    const Confinement confinement = confineTo(places.home);
    if (!confinement.holds)
        return confinement.how;
    print(QStringLiteral("confined: ") + confinement.how);
    if (confinement.isWhole)
        outside.append({QStringLiteral("/tmp"), QStringLiteral("/var/tmp")});
    const QString open = firstWritable(outside);
    return open.isEmpty() ? QString() : QStringLiteral("a file could still be made in ") + open;
}

/// The confined part: everything but the home, which cannot be removed from within.
int runConfined(const SoakPlan& plan, const SoakPlaces& places, int originals, const QStringList& outside)
{
    QElapsedTimer clock;
    clock.start();
    if (const QString why = confine(places, outside); !why.isEmpty()) {
        print(QStringLiteral("Not run, since it cannot be confined to its home: ") + why);
        return 2;
    }
    print(QStringLiteral("seed: %1, steps: %2").arg(plan.seed).arg(plan.inputs));
    QStringList faults;
    if (const QString fault = workAll(plan, places); !fault.isEmpty())
        faults.append(fault);
    const QList<JournalLine> lines = Journal::read(places.journal());
    const MemoryFigures memory = memoryFigures(lines, lastStep(lines), plan.from);
    printFigures(lines, memory, clock.elapsed());
    faults += faultsOf(plan, places, originals, lines, memory);
    for (const QString& fault : std::as_const(faults))
        print(QStringLiteral("FAULT ") + fault);
    return faults.isEmpty() ? 0 : 1;
}

/// Runs all in a child process and cleans up behind it. `journal` (may be empty) gets a copy of what was
/// done.
int lead(const SoakPlan& plan, const QString& journal)
{
    const QStringList outside = outsidePlaces();
    ScratchHome home;
    ScratchDesktop desktop(home);
    const SoakPlaces places{QDir::cleanPath(home.path(QString()))};
    furnish(home, desktop);
    const int originals = fillHome(places);
    if (originals == 0) {
        print(QStringLiteral("The folder could not be filled."));
        return 2;
    }
    print(QStringLiteral("originals: %1").arg(originals));
    const pid_t child = ::fork();
    if (child == 0) {
        const int code = runConfined(plan, places, originals, outside);
        std::fflush(stdout);
        ::_exit(code);
    }
    int status = 0;
    const bool ended = child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status);
    if (!journal.isEmpty()) {
        QFile::remove(journal);
        QFile::copy(places.journal(), journal);
    }
    return ended ? WEXITSTATUS(status) : 2;
}

} // namespace

int main(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    QCommandLineParser parser;
    const auto addNumber = [&parser](const char* name, const char* text, int number) {
        parser.addOption(
            {QLatin1String(name), QLatin1String(text), QStringLiteral("N"), QString::number(number)});
    };
    addNumber("seed", "Of the random numbers.", 1);
    addNumber("steps", "How many commands and keys; clicks and others come on top.", 400);
    addNumber("from", "The first step.", 1);
    addNumber("done", "Commands and keys that were before it (with --work).", 0);
    addNumber("last", "No step after this one (with --work).", 0);
    parser.addOption(
        {QStringLiteral("work"), QStringLiteral("Makes the steps in this home."), QStringLiteral("HOME")});
    parser.addOption(
        {QStringLiteral("journal"), QStringLiteral("Gets a copy of the journal."), QStringLiteral("FILE")});
    if (!parser.parse(arguments)) {
        std::fprintf(stderr, "%s\n%s", qPrintable(parser.errorText()), qPrintable(parser.helpText()));
        return 2;
    }
    const auto number = [&parser](const char* name) { return parser.value(QLatin1String(name)).toInt(); };
    SoakPlan plan = planOf(quint32(number("seed")), number("from"), number("steps"));
    if (parser.isSet(QStringLiteral("work"))) {
        plan.done = number("done");
        plan.last = number("last");
        return work(plan, {parser.value(QStringLiteral("work"))});
    }
    return lead(plan, parser.value(QStringLiteral("journal")));
}
