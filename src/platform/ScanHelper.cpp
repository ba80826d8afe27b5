#include "platform/ScanHelper.h"

#include "platform/LongWork.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>

namespace quorvia::platform {

namespace {

constexpr int turn = 30;                  ///< milliseconds between two looks at windows and helper
constexpr int wholeWork = 1000;           ///< steps of the progress
constexpr qsizetype mostOutput = 1 << 20; ///< bytes; no list and no progress is as long
constexpr int usedForCancelled = 4;       ///< exit code of a helper that was told to end

/// The process, and what is known of how it goes.
class Helper
{
  public:
    explicit Helper(const HelperRun& run) : m_run(run)
    {
        // A group of its own: drivers start processes too, which must not outlive it.
        m_process.setChildProcessModifier([] { ::setpgid(0, 0); });
        m_process.setStandardInputFile(QProcess::nullDevice());
        m_process.start(run.program, run.arguments, QIODevice::ReadOnly);
        m_group = m_process.processId();
        m_silence.start();
    }
    ~Helper() { stop(); }
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;

    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    bool isTooSilent() const { return m_silence.hasExpired(m_run.silence); }
    bool isTooLoud() const { return m_output.size() + m_errors.size() > mostOutput; }
    /// Thousandths of the work; 0 as long as that is not known.
    int progress() const { return m_progress; }

    /// It has written its picture, and only closes the device.
    bool hasPicture() const { return m_sincePicture.isValid(); }
    bool isTooSlowInEnding() const { return hasPicture() && m_sincePicture.hasExpired(m_run.ending); }

    /// Waits for the helper a short time, and takes what it wrote.
    void look()
    {
        m_process.waitForReadyRead(turn);
        take();
    }
    void stop();
    HelperEnd end();

  private:
    void take();
    void takeLine(const QByteArray& line);
    /// How long it may still take to end, in milliseconds.
    qint64 endingLeft() const
    {
        return hasPicture() ? std::max<qint64>(m_run.ending - m_sincePicture.elapsed(), 0) : m_run.ending;
    }

    const HelperRun& m_run;
    QProcess m_process;
    qint64 m_group = 0;
    QElapsedTimer m_silence;
    QElapsedTimer m_sincePicture; ///< valid once it stands
    QByteArray m_output;
    QByteArray m_errors;
    qsizetype m_lineBegin = 0; ///< of the output that was not looked at yet
    int m_progress = 0;
};

void Helper::take()
{
    const QByteArray output = m_process.readAllStandardOutput();
    const QByteArray errors = m_process.readAllStandardError();
    if (!output.isEmpty() || !errors.isEmpty())
        m_silence.start();
    m_errors += errors;
    m_output += output;
    for (qsizetype end; (end = m_output.indexOf('\n', m_lineBegin)) >= 0; m_lineBegin = end + 1)
        takeLine(m_output.mid(m_lineBegin, end - m_lineBegin));
}

void Helper::takeLine(const QByteArray& line)
{
    const int progress = scanProgress(line);
    if (progress >= 0)
        m_progress = progress;
    if (saysPictureStands(line) && !hasPicture())
        m_sincePicture.start();
}

/// Tells it to end, and kills it when it does not. The windows stay painted.
void Helper::stop()
{
    if (isRunning()) {
        m_process.terminate();
        const qint64 patience = endingLeft();
        QElapsedTimer waited;
        waited.start();
        while (isRunning() && !waited.hasExpired(patience)) {
            m_process.waitForFinished(turn);
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        }
    }
    if (m_group > 0) { // with what may be left of a driver's own processes
        ::kill(pid_t(-m_group), SIGKILL);
        m_group = 0;
    }
    if (isRunning())
        m_process.waitForFinished(m_run.ending);
}

HelperEnd Helper::end()
{
    take();
    HelperEnd end;
    end.output = m_output;
    if (m_process.error() == QProcess::FailedToStart)
        end.why = m_process.errorString();
    else if (m_process.exitStatus() == QProcess::CrashExit)
        end.why = QStringLiteral("the scanner helper crashed");
    else if (m_process.exitCode() == usedForCancelled && !hasPicture())
        end.wasCancelled = true; // at the device itself
    else if (m_process.exitCode() != 0)
        end.why = QStringLiteral("exit code %1").arg(m_process.exitCode());
    else
        end.isDone = true;
    const QByteArray said = m_errors.trimmed();
    if (!end.why.isEmpty() && !said.isEmpty())
        end.why += QStringLiteral(": ") + QString::fromUtf8(said.mid(said.lastIndexOf('\n') + 1)).left(200);
    return end;
}

} // namespace

int scanProgress(const QByteArray& line)
{
    constexpr char word[] = "progress ";
    if (!line.startsWith(word))
        return -1;
    bool isNumber = false;
    const double part = line.mid(sizeof word - 1).trimmed().toDouble(&isNumber);
    if (!isNumber || !std::isfinite(part))
        return 0;
    return int(std::lround(std::clamp(part, 0.0, 1.0) * wholeWork));
}

bool saysPictureStands(const QByteArray& line)
{
    return line.trimmed() == "picture";
}

HelperEnd runScanHelper(QWidget* owner, const HelperRun& run)
{
    LongWork work(owner, run.text);
    Helper helper(run);
    while (helper.isRunning()) {
        const int progress = helper.progress();
        const bool goesOn = work.goOn(progress, progress > 0 ? wholeWork : 0);
        if (!goesOn && !helper.hasPicture())
            return {.wasCancelled = true};
        if (!goesOn || helper.isTooSlowInEnding()) {
            helper.stop();
            return {.why = QStringLiteral("the scanner helper did not end by itself")};
        }
        if (helper.isTooSilent())
            return {.why = QStringLiteral("the scanner helper does not answer")};
        if (helper.isTooLoud())
            return {.why = QStringLiteral("the scanner helper says more than can be meant")};
        helper.look();
    }
    return helper.end();
}

} // namespace quorvia::platform
