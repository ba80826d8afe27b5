// Sets of rows as ranges, so that a selection of all entries is one small value.
#pragma once

#include <QStringList>

#include <vector>

namespace quorvia::collections {

/// Rows `first` to `last`, both 0-based and in the range.
struct RowRange
{
    int first = 0;
    int last = 0;
    bool operator==(const RowRange&) const = default;
};

/// The same rows, below `count` only, as the fewest ranges in ascending order.
std::vector<RowRange> normalised(std::vector<RowRange> ranges, int count);

/// How many rows `ranges`, none of which overlap, have together.
int rowCount(const std::vector<RowRange>& ranges);

/// `list` without the entries at `rows`.
QStringList withoutRows(const QStringList& list, const std::vector<RowRange>& rows);

} // namespace quorvia::collections
