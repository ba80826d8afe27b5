#include "Journal.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

namespace quorvia::test {

namespace {

QString onOneLine(QString text)
{
    return text.replace(u'\n', u' ').replace(u'\t', u' ');
}

} // namespace

Journal::Journal(const QString& path)
    : m_descriptor(
          ::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600))
{
}

Journal::~Journal()
{
    ::close(m_descriptor);
}

void Journal::write(const JournalLine& line) const
{
    const QByteArray bytes = QByteArray::number(line.step) + '\t' + line.kind.toUtf8() + '\t' +
                             onOneLine(line.detail).toUtf8() + '\n';
    [[maybe_unused]] const ssize_t written = ::write(m_descriptor, bytes.constData(), size_t(bytes.size()));
}

QList<JournalLine> Journal::read(const QString& path)
{
    QList<JournalLine> lines;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return lines;
    const QStringList texts = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& text : texts)
        lines.append({text.section(u'\t', 0, 0).toInt(), text.section(u'\t', 1, 1), text.section(u'\t', 2)});
    return lines;
}

int residentMemory()
{
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith("Rss:"))
            return line.simplified().split(' ').value(1).toInt();
    }
    return 0;
}

int median(QList<int> values)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values.at((values.size() - 1) / 2);
}

} // namespace quorvia::test
