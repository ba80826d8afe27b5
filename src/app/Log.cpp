#include "app/Log.h"

#include "app/mFile.h"
#include "app/Paths.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

namespace quorvia::app {

namespace {

int openForAppend(const QString& path)
{
    return ::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY,
                  0600);
}

QString onOneLine(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    text.replace(QLatin1Char('\r'), QLatin1Char(' '));
    return text;
}

} // namespace

void WriteLog(const QString& text)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QByteArray line =
        (LogDate(now) + QStringLiteral(" - ") + LogTime(now) + onOneLine(text) + QLatin1Char('\n')).toUtf8();

    const QString path = logPath();
    int descriptor = openForAppend(path);
    if (descriptor < 0 && QDir().mkpath(QFileInfo(path).path()))
        descriptor = openForAppend(path);
    if (descriptor < 0)
        return;
    // One call a line: the lines of two instances never mix. A line that the disk has no room for is passed
    // over.
    [[maybe_unused]] const ssize_t written = ::write(descriptor, line.constData(), size_t(line.size()));
    ::close(descriptor);
}

} // namespace quorvia::app
