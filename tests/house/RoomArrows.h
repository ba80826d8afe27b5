// The rooms and the arrows between them, as the build lists them.
#pragma once

#include <QFile>
#include <QHash>
#include <QSet>
#include <QStringList>

namespace quorvia::test {

using Arrows = QHash<QString, QStringList>;

inline QStringList linesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))
                                          : QStringList();
}

/// Room -> the rooms that it may include, from lines "room: other other".
inline Arrows readArrows(const QStringList& lines)
{
    Arrows arrows;
    for (const QString& line : lines) {
        if (line.contains(QLatin1Char(':')))
            arrows.insert(line.section(QLatin1Char(':'), 0, 0),
                          line.section(QLatin1Char(':'), 1).split(QLatin1Char(' '), Qt::SkipEmptyParts));
    }
    return arrows;
}

/// The rooms that a room reaches over any number of arrows.
inline QSet<QString> reach(const Arrows& arrows, const QString& room)
{
    QSet<QString> seen;
    QStringList open = arrows.value(room);
    while (!open.isEmpty()) {
        const QString next = open.takeLast();
        if (!seen.contains(next)) {
            seen.insert(next);
            open += arrows.value(next);
        }
    }
    return seen;
}

} // namespace quorvia::test
