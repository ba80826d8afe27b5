// Which cell the filmstrip paints next, and where; and the texts of its selection. Values without a widget.
#pragma once

#include "collections/StripLayout.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace quorvia::collections {

/// The progress of a painting pass. One step a cell, down a column first; the
/// places are counted, so that they hold whatever size cells get.
struct StripPump
{
    int DrawIndex = 1;  ///< 1-based position of the next image
    int FirstIndex = 0; ///< 1-based position of the first image of the window; 0: from the beginning
    int MaxDraw = wholeStrip;

    bool operator==(const StripPump&) const = default;
};

/// `pump` at the start of a pass over the whole list.
StripPump fromBeginning(StripPump pump);
/// `pump` at the start of a pass over the window that begins with column `column` (from 0).
StripPump fromColumn(StripPump pump, int column, int rows);
/// True when the pass has nothing left to paint of `count` images.
bool isDone(const StripPump& pump, int count);
/// Where the cell lies that `pump` stands at.
CellPlace placeOf(const StripPump& pump, int rows);
/// `pump` behind the cell that it stood at.
StripPump stepped(StripPump pump);

/// The positions of a requested text, one entry for each piece between ";" and one more, which is empty.
QStringList selectionOf(const QString& text);
/// The positions joined by ";".
QString selectionText(const QStringList& selected);
/// True when the pass over the cells of `selected` ends at entry `index`.
bool selectionEnds(const QStringList& selected, int index);
/// The entry as the 0-based position of one of `count` images; nothing when it is none.
std::optional<int> selectedImage(const QString& entry, int count);

} // namespace quorvia::collections
