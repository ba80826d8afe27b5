// What the header of a Softimage picture says: size, fields, channel packets. Cheap: looks at the first bytes
// only.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QSize>

#include <vector>

namespace quorvia::engine {

enum class SoftimagePacking { Raw = 0, Runs = 1, Mixed = 2 };

/// Channels that are stored together in each row.
struct SoftimagePacket
{
    SoftimagePacking packing = SoftimagePacking::Raw;
    int channels = 0; ///< bits: 80 red, 40 green, 20 blue, 10 alpha; lower ones are not shown
};

struct SoftimageLayout
{
    QSize size;
    bool isField = false; ///< one field of an interlaced frame: the rows may be the odd or even ones alone
    std::vector<SoftimagePacket> packets;
    qint64 pixelOffset = 0; ///< bytes from the start of the file

    bool hasAlpha() const;
};

/// Bytes from the start of a file that hold everything readSoftimageLayout() asks for.
constexpr qint64 softimageHeadLength = 256;

/// True when `head` begins with the format's mark.
bool isSoftimage(const QByteArray& head);

/// Reads the header. Damaged or Unsupported on failure; the size is not held against the limits here.
/// Source: the published description of the Softimage 3D picture format.
Result<SoftimageLayout> readSoftimageLayout(const QByteArray& head);

} // namespace quorvia::engine
