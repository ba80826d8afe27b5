#include "Journal.h"

#include <QFile>
#include <QRegularExpression>

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>
#ifdef __SANITIZE_ADDRESS__
// Of the sanitizer, whose headers not every compiler brings.
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#endif

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace quorvia::test {

namespace {

QString onOneLine(QString text)
{
    return text.replace(u'\n', u' ').replace(u'\t', u' ');
}

/// The number behind `name` in a file of lines "name: number kB"; 0 when it is not there.
int sizeIn(const char* path, const char* name)
{
    QFile file(QString::fromLatin1(path));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith(name))
            return line.simplified().split(' ').value(1).toInt();
    }
    return 0;
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

int StepTail::last()
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(m_read))
        return m_last;
    const QByteArray grown = file.readAll();
    const QByteArray whole = grown.left(grown.lastIndexOf('\n') + 1);
    m_read += whole.size();
    const QList<QByteArray> lines = whole.split('\n');
    for (const QByteArray& line : lines)
        m_last = std::max(m_last, line.left(line.indexOf('\t')).toInt());
    return m_last;
}

int residentMemory()
{
    return sizeIn("/proc/self/smaps_rollup", "Rss:");
}

int peakMemory()
{
    return sizeIn("/proc/self/status", "VmHWM:");
}

#ifdef __SANITIZE_ADDRESS__
int heapInUse()
{
    return int(__sanitizer_get_current_allocated_bytes() / 1024);
}
#else
int heapInUse()
{
    char* raw = nullptr;
    size_t size = 0;
    FILE* const stream = ::open_memstream(&raw, &size);
    if (!stream)
        return 0;
    ::malloc_info(0, stream);
    std::fclose(stream);
    // The totals of all arenas, behind those of each; pictures lie in blocks of their own ("mmap"), which no
    // arena counts.
    const QString all = QString::fromLatin1(raw).section(QStringLiteral("</heap>"), -1);
    std::free(raw);
    const auto bytes = [&all](const char* what) {
        const QRegularExpression number(QLatin1String(what) + QStringLiteral("[^>]*size=\"(\\d+)\""));
        return number.match(all).captured(1).toLongLong();
    };
    return int((bytes("system type=\"current\"") - bytes("type=\"fast\"") - bytes("type=\"rest\"") +
                bytes("type=\"mmap\"")) /
               1024);
}
#endif

int median(QList<int> values)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values.at((values.size() - 1) / 2);
}

} // namespace quorvia::test
