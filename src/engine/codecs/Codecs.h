// The codecs of the table, one accessor a format family. Each stands in its own file; everybody but the table
// and the tests asks codecTable().
#pragma once

#include "engine/Codec.h"

namespace quorvia::engine {

const Codec& jpegCodec(); ///< JPEG in all its DCT forms; hands lossless ones on
const Codec& losslessJpegCodec();
const Codec& pngCodec();
const Codec& gifCodec();
const Codec& tiffCodec();
const Codec& bmpCodec();
const Codec& icoCodec();
const Codec& tgaCodec();
const Codec& softimageCodec(); ///< Softimage PIC
const Codec& wmfCodec();
const Codec& wpgCodec();
const Codec& pnmCodec();
const Codec& pcxCodec();
const Codec& dcxCodec();
const Codec& utahRleCodec();
const Codec& pictCodec(); ///< Macintosh PICT
const Codec& webpCodec();
const Codec& avifCodec(); ///< AVIF and HEIF
const Codec& jpegXlCodec();

} // namespace quorvia::engine
