#include "collections/StripPump.h"

#include <algorithm>
#include <limits>

namespace quorvia::collections {

StripPump fromBeginning(StripPump pump)
{
    return {.MaxDraw = pump.MaxDraw};
}

StripPump fromColumn(StripPump pump, int column, int rows)
{
    const qint64 position = qint64(rows) * column + 1;
    const int first = int(std::min(position, qint64(std::numeric_limits<int>::max())));
    return {.DrawIndex = first, .FirstIndex = first, .MaxDraw = pump.MaxDraw};
}

bool isDone(const StripPump& pump, int count)
{
    return pump.DrawIndex > count || pump.DrawIndex > qint64(pump.FirstIndex) + pump.MaxDraw;
}

CellPlace placeOf(const StripPump& pump, int rows)
{
    return placeOf(pump.DrawIndex - std::max(pump.FirstIndex, 1), rows);
}

StripPump stepped(StripPump pump)
{
    ++pump.DrawIndex;
    return pump;
}

QStringList selectionOf(const QString& text)
{
    return (text + u';').split(u';');
}

QString selectionText(const QStringList& selected)
{
    return selected.join(u';');
}

bool selectionEnds(const QStringList& selected, int index)
{
    return index > selected.size() - 2 || selected.at(index).isEmpty();
}

std::optional<int> selectedImage(const QString& entry, int count)
{
    bool isNumber = false;
    const int position = entry.toInt(&isNumber);
    return isNumber && position >= 0 && position < count ? std::optional(position) : std::nullopt;
}

} // namespace quorvia::collections
