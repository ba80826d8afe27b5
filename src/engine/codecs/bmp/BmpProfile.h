// The colour profile in a bitmap with a version 5 header. Costs nothing without one, else one read.
#pragma once

#include "engine/ByteSource.h"
#include "engine/codecs/bmp/BmpLayout.h"

#include <QByteArray>

namespace quorvia::engine {

/// The ICC profile of the bitmap in `source`, whose layout is `layout`. Empty without one, and when it is
/// more than maxProfileBytes, reaches past the end of the file, is broken, or not of the file's colours: RGB,
/// or grey beside a palette of greys. Bytes that fill it up to 32 bits are left out. Source: the published
/// description of the version 5 header.
QByteArray readBmpProfile(const ByteSource& source, const BmpLayout& layout);

/// True when a picture with `profile` holds nothing but steps of grey, told by 8 bits that stand for
/// themselves: pixels and profile are then those of a grey image.
bool isGreyByProfile(const QByteArray& profile, const BmpLayout& layout);

} // namespace quorvia::engine
