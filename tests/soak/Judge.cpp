#include "Judge.h"

#include "app/Settings.h"

#include <QFile>
#include <QRegularExpression>

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>

namespace quorvia::test {

namespace {

using Rows = QList<QStringList>;

/// The rows that `query` gives on `database`, as texts.
Rows rowsOf(sqlite3* database, const char* query)
{
    Rows rows;
    const auto take = [](void* all, int count, char** values, char**) {
        QStringList row;
        for (int i = 0; i < count; ++i)
            row.append(QString::fromUtf8(values[i]));
        static_cast<Rows*>(all)->append(row);
        return 0;
    };
    char* error = nullptr;
    if (sqlite3_exec(database, query, take, &rows, &error) != SQLITE_OK)
        rows.append({QString::fromUtf8(error)});
    sqlite3_free(error);
    return rows;
}

} // namespace

MemoryFigures memoryFigures(const QList<JournalLine>& lines, int steps)
{
    MemoryFigures figures;
    QList<int> early;
    QList<int> late;
    for (const JournalLine& line : lines) {
        if (line.kind != QLatin1String("memory"))
            continue;
        const int resident = line.detail.toInt();
        figures.peak = std::max(figures.peak, resident);
        if (line.step > steps / 4 && line.step <= steps / 2)
            early.append(resident);
        if (line.step > steps / 4 * 3)
            late.append(resident);
    }
    figures.early = median(early);
    figures.late = median(late);
    return figures;
}

QStringList memoryFaults(const MemoryFigures& figures, const MemoryBounds& bounds)
{
    QStringList faults;
    if (figures.peak == 0)
        faults.append(QStringLiteral("no memory was measured"));
    if (figures.peak > bounds.peak)
        faults.append(QStringLiteral("memory: %1 KiB at the peak").arg(figures.peak));
    if (figures.growth() > bounds.growth)
        faults.append(QStringLiteral("memory: it grew by %1 KiB").arg(figures.growth()));
    return faults;
}

QStringList storeFaults(const QString& path)
{
    sqlite3* raw = nullptr;
    const int opened =
        sqlite3_open_v2(QFile::encodeName(path).constData(), &raw, SQLITE_OPEN_READWRITE, nullptr);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(raw, sqlite3_close);
    if (opened != SQLITE_OK)
        return {QStringLiteral("store not opened: ") + path};
    QStringList faults;
    const Rows whole = rowsOf(raw, "PRAGMA integrity_check");
    if (whole != Rows{{QStringLiteral("ok")}})
        faults.append(QStringLiteral("store not whole: %1: %2").arg(path, whole.value(0).join(u' ')));
    const Rows rows = rowsOf(raw, "SELECT key, name, type, typeof(value), value FROM settings");
    for (const QStringList& row : rows)
        std::printf("%s\n", qPrintable(row.join(u'|')));
    return faults;
}

QStringList logFaults(const QString& path)
{
    QStringList faults;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("no log")};
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines)
        std::printf("LOG %s\n", qPrintable(line.mid(21)));
    return faults;
}

QStringList warningFaults(const QList<JournalLine>& lines)
{
    for (const JournalLine& line : lines)
        if (line.kind == QLatin1String("warning"))
            std::printf("WARN %s\n", qPrintable(line.detail));
    return {};
}

} // namespace quorvia::test
