#include "collections/EditorMoves.h"

#include <algorithm>

namespace quorvia::collections {

namespace {

/// The row of the entry that `block` changes places with.
int beside(const RowRange& block, Direction direction)
{
    return direction == Direction::Up ? block.first - 1 : block.last + 1;
}

int step(Direction direction)
{
    return direction == Direction::Up ? -1 : 1;
}

} // namespace

RowMove plannedMove(const std::vector<RowRange>& selected, int count, Direction direction)
{
    RowMove move{.direction = direction, .blocks = {}, .selected = {}};
    std::vector<RowRange> after;
    for (const RowRange& block : normalised(selected, count)) {
        const int next = beside(block, direction);
        if (next < 0 || next >= count) {
            after.push_back(block);
            continue;
        }
        move.blocks.push_back(block);
        after.push_back({block.first + step(direction), block.last + step(direction)});
    }
    move.selected = normalised(std::move(after), count);
    return move;
}

void apply(const RowMove& move, QStringList& list)
{
    // No two blocks touch the same entries: there is always one between them.
    for (const RowRange& block : move.blocks) {
        const auto at = [&list](int row) { return list.begin() + row; };
        if (move.direction == Direction::Up)
            std::rotate(at(block.first - 1), at(block.first), at(block.last + 1));
        else
            std::rotate(at(block.first), at(block.last + 1), at(block.last + 2));
    }
}

int rowAfter(const RowMove& move, int row)
{
    for (const RowRange& block : move.blocks) {
        if (row >= block.first && row <= block.last)
            return row + step(move.direction);
        if (row == beside(block, move.direction))
            return move.direction == Direction::Up ? block.last : block.first;
    }
    return row;
}

int rowAt(const std::vector<RowRange>& rows, int position)
{
    int left = position;
    for (const RowRange& range : rows) {
        const int size = range.last - range.first + 1;
        if (left < size)
            return left < 0 ? -1 : range.first + left;
        left -= size;
    }
    return -1;
}

} // namespace quorvia::collections
