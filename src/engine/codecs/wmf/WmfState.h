// What a metafile's records draw with: the device context's values, and what all groups of records share
// while one file is played. Cheap to copy, as SaveDC does.
#pragma once

#include "engine/codecs/wmf/WmfCanvas.h"
#include "engine/codecs/wmf/WmfGeometry.h"
#include "engine/codecs/wmf/WmfObjects.h"
#include "engine/codecs/wmf/WmfRecords.h"

#include <QPointF>
#include <QRegion>

#include <memory>
#include <optional>
#include <vector>

namespace quorvia::engine {

struct WmfState
{
    WmfMapping mapping;
    WmfPen pen = {};
    WmfBrush brush = {};
    WmfFont font = {};
    WmfSharedPalette palette = std::make_shared<WmfPalette>();
    WmfColor textColor = 0;
    WmfColor bkColor = 0xFFFFFF;
    bool opaque = true; ///< gaps in hatches, dashes and behind letters are filled with bkColor
    int rop2 = 13;
    bool winding = false;
    int stretchMode = 1;
    int textAlign = 0;
    int charExtra = 0;  ///< units between letters
    int breakExtra = 0; ///< units shared out among breakCount blanks
    int breakCount = 0;
    QPoint position = {};             ///< of the pen, units
    std::optional<QRegion> clip = {}; ///< pixels
    WmfHold clipHold = {};

    QRgb rgb(WmfColor color) const { return rgbOf(color, *palette); }
};

class WmfFaces;

/// One file being played.
struct WmfContext
{
    WmfCanvas& canvas;
    const CancelFlag& cancel;
    WmfState state;
    WmfObjects objects = {};
    std::vector<WmfState> saved = {};
    bool asksFonts = false; ///< a measuring canvas measures texts by their fonts, as the toolkit stands
    WmfMemory memory = {};
    std::shared_ptr<WmfFaces> faces = {}; ///< made for texts so far, see WmfFonts.h
    QImage whole = {};    ///< the bitmap that was drawn first and covers the picture pixel by pixel
    bool complete = true; ///< false once something could not be drawn that should have been
};

/// The box of the pixels between two opposite corners in units.
QRectF pixelBox(const WmfMapping& mapping, QPoint one, QPoint other);
/// The same on whole pixels.
QRect wholePixels(const QRectF& box);

/// What putting a region of `rects` pieces together costs, for WmfCanvas::spend(): the worst case grows by
/// the square.
double workOfRegion(qsizetype rects);

/// The brush as it fills at present; NoBrush for none. Tiles and hatches begin at the picture's corner.
QBrush qtBrushOf(const WmfBrush& brush, const WmfState& state);
/// How closed shapes are filled and lines drawn at present; nothing when they are not.
std::optional<WmfFill> fillOf(const WmfState& state);
std::optional<WmfStroke> strokeOf(const WmfState& state);
/// The solid line under a dashed one whose gaps are filled; nothing for other pens.
std::optional<WmfStroke> groundStrokeOf(const WmfState& state);

/// Makes region `number` the clip; takes the clip away when there is no region of that number.
void selectClip(WmfContext& context, int number);

/// Plays the records that change the context: modes, colours, mapping, clip, saving. False for other records.
bool playState(WmfContext& context, const WmfRecord& record, const WmfParams& params);

} // namespace quorvia::engine
