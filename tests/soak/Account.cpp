#include "Account.h"

#include <QMap>
#include <QSet>

#include <algorithm>
#include <array>

namespace quorvia::test {

namespace {

constexpr std::array windows{
    "frmImageView",         "frmImageViewFull",
    "frmImageViewSize",     "frmImageViewOptions",
    "frmImageViewPlaylist", "frmImageViewPlaylistEditor",
    "frmImageConvert",      "frmImageEXIF",
    "frmImagePrint",        "frmClipboard",
    "MessageBox",           "TextQuestion",
    "ColorQuestion",        "FontQuestion",
    "FXFeatures",           "LongWork",
};

/// A kind of line, and the floor under it or the ceiling above it: the run's commands and keys, divided by
/// this. A window that hides may stay so for some steps of the shortest run.
struct FloorRow
{
    const char* kind;
    int divisor;
    bool isCeiling;
};
constexpr int hiddenForAWhile = 10;

constexpr std::array floors{
    FloorRow{"command", 8, false},
    FloorRow{"key", 3, false},
    FloorRow{"session", 500, false},
    FloorRow{"nothing", 20, true},
};

QMap<QString, int> countsOfKinds(const QList<JournalLine>& lines)
{
    QMap<QString, int> counts;
    for (const JournalLine& line : lines)
        ++counts[line.kind];
    return counts;
}

QMap<QString, int> countsOfDetails(const QList<JournalLine>& lines, QLatin1String kind)
{
    QMap<QString, int> counts;
    for (const JournalLine& line : lines) {
        if (line.kind == kind)
            ++counts[line.detail];
    }
    return counts;
}

/// The commands of the table, as the driver found it.
QStringList tableOf(const QList<JournalLine>& lines)
{
    for (const JournalLine& line : lines) {
        if (line.kind == QLatin1String("table"))
            return line.detail.split(u' ', Qt::SkipEmptyParts);
    }
    return {};
}

QStringList neverRun(const QList<JournalLine>& lines)
{
    const QMap<QString, int> run = countsOfDetails(lines, QLatin1String("command"));
    QStringList names = tableOf(lines);
    names.removeIf([&run](const QString& name) { return run.contains(name); });
    return names;
}

} // namespace

int lastStep(const QList<JournalLine>& lines)
{
    int last = 0;
    for (const JournalLine& line : lines)
        last = std::max(last, line.step);
    return last;
}

int inputCount(const QList<JournalLine>& lines)
{
    const QMap<QString, int> kinds = countsOfKinds(lines);
    return kinds.value(QStringLiteral("command")) + kinds.value(QStringLiteral("key"));
}

int longestGap(const QList<JournalLine>& lines)
{
    int longest = 0;
    for (const JournalLine& line : lines) {
        if (line.kind == QLatin1String("gap"))
            longest = std::max(longest, line.detail.toInt());
    }
    return longest;
}

QStringList figures(const QList<JournalLine>& lines)
{
    QStringList texts;
    const QMap<QString, int> kinds = countsOfKinds(lines);
    for (auto each = kinds.begin(); each != kinds.end(); ++each)
        texts.append(QStringLiteral("%1: %2").arg(each.key()).arg(each.value()));
    const qsizetype all = tableOf(lines).size();
    texts.append(
        QStringLiteral("different commands: %1 of %2 commands").arg(all - neverRun(lines).size()).arg(all));
    const QMap<QString, int> shown = countsOfDetails(lines, QLatin1String("window"));
    for (auto each = shown.begin(); each != shown.end(); ++each)
        texts.append(QStringLiteral("shown: %1 x %2").arg(each.value()).arg(each.key()));
    const QStringList missing = neverShown(lines);
    texts.append(QStringLiteral("never shown: ") +
                 (missing.isEmpty() ? QStringLiteral("none") : missing.join(QStringLiteral(", "))));
    texts.append(QStringLiteral("longest gap between two steps: %1 ms").arg(longestGap(lines)));
    return texts;
}

QStringList programWindows()
{
    QStringList names;
    for (const char* name : windows)
        names.append(QLatin1String(name));
    return names;
}

QStringList neverShown(const QList<JournalLine>& lines)
{
    QSet<QString> shown;
    for (const JournalLine& line : lines) {
        if (line.kind == QLatin1String("window"))
            shown.insert(line.detail.section(u' ', 1));
    }
    QStringList names = programWindows();
    names.removeIf([&shown](const QString& name) { return shown.contains(name); });
    return names;
}

QStringList floorFaults(const QList<JournalLine>& lines, int inputs)
{
    QStringList faults;
    if (const int done = inputCount(lines); done < inputs)
        faults.append(QStringLiteral("did too little: %1 of %2 commands and keys").arg(done).arg(inputs));
    const QMap<QString, int> kinds = countsOfKinds(lines);
    for (const FloorRow& row : floors) {
        const int count = kinds.value(QLatin1String(row.kind));
        const double bound = double(inputs) / row.divisor + (row.isCeiling ? hiddenForAWhile : 0);
        if (row.isCeiling ? count > bound : count < bound)
            faults.append(QStringLiteral("did too %1: %2 x %3, the bound is %4")
                              .arg(row.isCeiling ? QStringLiteral("often") : QStringLiteral("little"))
                              .arg(count)
                              .arg(QLatin1String(row.kind))
                              .arg(bound));
    }
    return faults;
}

QStringList commandFaults(const QList<JournalLine>& lines)
{
    if (tableOf(lines).isEmpty())
        return {QStringLiteral("the table of commands was not seen")};
    QStringList faults = neverRun(lines);
    for (QString& name : faults)
        name.prepend(QStringLiteral("never run: "));
    return faults;
}

bool isAtEnd(const QList<JournalLine>& lines)
{
    return !lines.isEmpty() && lines.last().kind == QLatin1String("end");
}

QString earlyEnd(const QList<JournalLine>& lines, const SoakPlan& plan)
{
    const int last = lastStep(lines);
    if (last < plan.from)
        return QStringLiteral("it ended before its first step, %1").arg(plan.from);
    if (isAtEnd(lines))
        return {};
    // The answer that ends all is a key or a click of the last step but the question is asked before it.
    const bool asked = std::any_of(lines.begin(), lines.end(), [&](const JournalLine& line) {
        return line.kind == QLatin1String("asks") && line.step >= std::max(plan.from, last - 1);
    });
    if (!asked || inputCount(lines) > plan.lastErasing + 1)
        return QStringLiteral("it ended at step %1, and nobody had its settings erased").arg(last);
    return {};
}

} // namespace quorvia::test
