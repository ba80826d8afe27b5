// What a library that decodes an AVIF or HEIF file will have to do, and what speaks against letting it: found
// without decoding, since it can be told no limits. Cheap: headers only.
#pragma once

#include "engine/codecs/avif/HeifItems.h"

#include <QList>
#include <QSize>

namespace quorvia::engine {

struct HeifSurvey
{
    QList<QSize> coded;         ///< that the streams announce
    QList<QSize> canvases;      ///< of grids and overlays, by what they themselves tell
    bool isGrey = false;        ///< all coded pictures are, alpha and the like apart
    int bits = 8;               ///< of the deepest coded picture's samples
    std::optional<Error> fault; ///< the first of what was found
};

/// Looks at the primary item of `file`, whose items are `items`, and at all that it is made of; at every item
/// when there is no primary one. Faults: Unsupported for kinds of pictures that are not known; Damaged for
/// streams and canvases of other sizes than the boxes tell, items made of themselves, depths that do not
/// exist, and for more work than the picture's size is worth: parts that are decoded again and again, and
/// frames or slices in one stream, each of which counts as a picture of the stream's size.
HeifSurvey surveyHeif(const QByteArray& file, const HeifItems& items);

} // namespace quorvia::engine
