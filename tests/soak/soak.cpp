// The soak: thousands of random commands, keys, clicks and changes of files, the same ones for the same seed,
// on a folder of good and broken files in a home of its own. Prints what was done; its exit code is 0 when
// nothing crashed, hung, grew or harmed a file. See docs/decisions/0027-soak.md.
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

#include <csignal>
#include <cstdio>

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
constexpr int shortRun = 2000;            ///< steps below which growth means nothing

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

int lastStep(const QList<JournalLine>& lines)
{
    int last = 0;
    for (const JournalLine& line : lines)
        last = qMax(last, line.step);
    return last;
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

/// Waits for the end of `process`, which must write to the journal now and then. False when it hung or
/// crashed.
bool endsWell(QProcess& process, const QString& journal)
{
    constexpr int look = 1000; // milliseconds
    QElapsedTimer still;
    still.start();
    qint64 size = 0;
    while (!process.waitForFinished(look) && process.state() != QProcess::NotRunning) {
        if (const qint64 now = QFileInfo(journal).size(); now != size) {
            size = now;
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

/// Lets processes of this program make all steps, one after the other: the end of all settings ends one.
bool workAll(SoakPlan plan, const SoakPlaces& places)
{
    for (;;) {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.setWorkingDirectory(places.home);
        process.start(QStringLiteral("/proc/self/exe"),
                      {QStringLiteral("--work"), places.home, QStringLiteral("--seed"),
                       QString::number(plan.seed), QStringLiteral("--from"), QString::number(plan.from),
                       QStringLiteral("--steps"), QString::number(plan.to)});
        process.waitForStarted();
        const bool ended = endsWell(process, places.journal());
        const QList<JournalLine> lines = Journal::read(places.journal());
        if (!ended) {
            printLast(lines);
            return false;
        }
        if (!lines.isEmpty() && lines.last().kind == QLatin1String("end"))
            return true;
        plan.from = lastStep(lines) + 1;
        print(QStringLiteral("step %1: all settings erased, the program begins anew").arg(plan.from - 1));
        if (plan.from > plan.to)
            return true;
    }
}

void printFigures(const QList<JournalLine>& lines, const MemoryFigures& memory, qint64 milliseconds)
{
    QMap<QString, int> kinds;
    QMap<QString, int> windows;
    QMap<QString, int> commands;
    for (const JournalLine& line : lines) {
        ++kinds[line.kind];
        if (line.kind == QLatin1String("window"))
            ++windows[line.detail];
        if (line.kind == QLatin1String("command"))
            ++commands[line.detail];
    }
    for (auto each = kinds.begin(); each != kinds.end(); ++each)
        print(QStringLiteral("%1: %2").arg(each.key()).arg(each.value()));
    print(QStringLiteral("different commands: %1").arg(commands.size()));
    for (auto each = windows.begin(); each != windows.end(); ++each)
        print(QStringLiteral("shown: %1 x %2").arg(each.value()).arg(each.key()));
    print(QStringLiteral("memory: peak %1 MB, second quarter %2 MB, last quarter %3 MB")
              .arg(memory.peak / 1024)
              .arg(memory.early / 1024)
              .arg(memory.late / 1024));
    print(QStringLiteral("in use between sessions: second quarter %1 KB, last quarter %2 KB")
              .arg(memory.heapEarly)
              .arg(memory.heapLate));
    print(QStringLiteral("time: %1 s").arg(milliseconds / 1000));
}

/// The confined part: everything but the home, which cannot be removed from within.
int runConfined(const SoakPlan& plan, const SoakPlaces& places)
{
    QElapsedTimer clock;
    clock.start();
    if (const QString why = confineTo(places.home); !why.isEmpty()) {
        print(QStringLiteral("Not run, since it cannot be confined to its home: ") + why);
        return 2;
    }
    print(QStringLiteral("seed: %1, steps: %2").arg(plan.seed).arg(plan.to));
    QStringList faults;
    if (!workAll(plan, places))
        faults.append(QStringLiteral("It did not come to its end."));
    const QList<JournalLine> lines = Journal::read(places.journal());
    const MemoryFigures memory = memoryFigures(lines, plan.to);
    printFigures(lines, memory, clock.elapsed());

    const QStringList lost = Originals::load(places.originals()).lost(places.home);
    for (const QString& each : lost)
        faults.append(QStringLiteral("lost: ") + each);
    faults += memoryFaults(memory,
                           plan.to < shortRun ? MemoryBounds{bounds.peak, bounds.peak, bounds.peak} : bounds);
    faults += storeFaults(places.userStore());
    faults += storeFaults(places.machineStore());
    faults += logFaults(places.log());
    faults += warningFaults(lines);
    for (const QString& fault : std::as_const(faults))
        print(QStringLiteral("FAULT ") + fault);
    return faults.isEmpty() ? 0 : 1;
}

/// Runs all in a child process and cleans up behind it. `journal` (may be empty) gets a copy of what was
/// done.
int lead(const SoakPlan& plan, const QString& journal)
{
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
        const int code = runConfined(plan, places);
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
    parser.addOption({QStringLiteral("seed"), QStringLiteral("Of the random numbers."), QStringLiteral("N"),
                      QStringLiteral("1")});
    parser.addOption({QStringLiteral("steps"), QStringLiteral("The last step."), QStringLiteral("N"),
                      QStringLiteral("400")});
    parser.addOption({QStringLiteral("from"), QStringLiteral("The first step."), QStringLiteral("N"),
                      QStringLiteral("1")});
    parser.addOption(
        {QStringLiteral("work"), QStringLiteral("Makes the steps in this home."), QStringLiteral("HOME")});
    parser.addOption(
        {QStringLiteral("journal"), QStringLiteral("Gets a copy of the journal."), QStringLiteral("FILE")});
    if (!parser.parse(arguments)) {
        std::fprintf(stderr, "%s\n%s", qPrintable(parser.errorText()), qPrintable(parser.helpText()));
        return 2;
    }
    SoakPlan plan{.seed = parser.value(QStringLiteral("seed")).toUInt(),
                  .from = parser.value(QStringLiteral("from")).toInt(),
                  .to = parser.value(QStringLiteral("steps")).toInt()};
    plan.lastErasing = plan.to / 4;
    if (parser.isSet(QStringLiteral("work")))
        return work(plan, {parser.value(QStringLiteral("work"))});
    return lead(plan, parser.value(QStringLiteral("journal")));
}
