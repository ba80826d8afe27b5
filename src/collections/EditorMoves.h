// Moves of selected entries within a list: plain functions, one walk over what moves.
#pragma once

#include "collections/RowRanges.h"

#include <QStringList>

#include <vector>

namespace quorvia::collections {

enum class Direction { Up, Down };

/// What a move makes of the rows of a list. Rows count from 0.
struct RowMove
{
    Direction direction = Direction::Up;
    /// The blocks that move, as they stand before, in ascending order. Each changes places with the one entry
    /// beside it.
    std::vector<RowRange> blocks;
    /// The selected rows afterwards.
    std::vector<RowRange> selected;
};

/// The move of the `selected` rows (in any order) of a list of `count` entries by one place. A block at the
/// end of the list stays where it is, and its order with it.
RowMove plannedMove(const std::vector<RowRange>& selected, int count, Direction direction);

/// Carries `move` out in `list`.
void apply(const RowMove& move, QStringList& list);

/// Where the entry at `row` stands after `move`. The row itself, when it is none of the list's.
int rowAfter(const RowMove& move, int row);

/// The row in place `position` (from 0) among `rows`, which are in ascending order; -1 when there is none.
int rowAt(const std::vector<RowRange>& rows, int position);

} // namespace quorvia::collections
