#include "collections/RowRanges.h"

#include <algorithm>
#include <numeric>

namespace quorvia::collections {

std::vector<RowRange> normalised(std::vector<RowRange> ranges, int count)
{
    std::sort(ranges.begin(), ranges.end(),
              [](const RowRange& a, const RowRange& b) { return a.first < b.first; });
    std::vector<RowRange> result;
    for (const RowRange& range : ranges) {
        const RowRange inside{std::max(range.first, 0), std::min(range.last, count - 1)};
        if (inside.first > inside.last)
            continue;
        if (!result.empty() && inside.first <= result.back().last + 1)
            result.back().last = std::max(result.back().last, inside.last);
        else
            result.push_back(inside);
    }
    return result;
}

int rowCount(const std::vector<RowRange>& ranges)
{
    return std::accumulate(ranges.begin(), ranges.end(), 0,
                           [](int sum, const RowRange& range) { return sum + range.last - range.first + 1; });
}

QStringList withoutRows(const QStringList& list, const std::vector<RowRange>& rows)
{
    QStringList result;
    qsizetype next = 0; // the first entry that is neither taken over nor left out yet
    for (const RowRange& range : normalised(rows, int(list.size()))) {
        result += list.mid(next, range.first - next);
        next = range.last + 1;
    }
    return result + list.mid(next);
}

} // namespace quorvia::collections
