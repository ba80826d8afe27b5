// What a program that a test runs to its end answers.
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace quorvia::test {

struct ProgramAnswer
{
    int code = -1;  ///< -1: it did not end by itself
    QString output; ///< of both streams
};

/// Starts `program` with `process`, whose folder and environment the caller may have set, and waits for its
/// end up to two minutes.
inline ProgramAnswer answerOf(QProcess& process, const QString& program, const QStringList& arguments)
{
    constexpr int patience = 120'000; // milliseconds
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    ProgramAnswer answer;
    if (process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit)
        answer.code = process.exitCode();
    answer.output = QString::fromLocal8Bit(process.readAll());
    return answer;
}

/// The same in `directory`; empty: where the test runs.
inline ProgramAnswer answerOf(const QString& program, const QStringList& arguments,
                              const QString& directory = {})
{
    QProcess process;
    process.setWorkingDirectory(directory);
    return answerOf(process, program, arguments);
}

} // namespace quorvia::test
