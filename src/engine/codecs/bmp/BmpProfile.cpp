#include "engine/codecs/bmp/BmpProfile.h"

#include "engine/ColorConversion.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

bool isGrey(QRgb color)
{
    return qRed(color) == qGreen(color) && qGreen(color) == qBlue(color);
}

bool hasGreyPalette(const BmpLayout& layout)
{
    return !layout.palette.isEmpty() && std::all_of(layout.palette.begin(), layout.palette.end(), isGrey);
}

/// `profile` without the bytes that fill it up to 32 bits: writers exist that count them in.
QByteArray withoutFill(QByteArray profile)
{
    const qsizetype told = qFromBigEndian<quint32>(profile.constData());
    const qsizetype fill = profile.size() - told;
    if (fill > 0 && fill < 4)
        profile.chop(fill);
    return profile;
}

} // namespace

QByteArray readBmpProfile(const ByteSource& source, const BmpLayout& layout)
{
    if (layout.profileLength == 0 || layout.profileLength > maxProfileBytes ||
        layout.profileOffset + layout.profileLength > source.size())
        return {};
    const QByteArray profile = source.bytes(layout.profileOffset, layout.profileLength);
    if (profile.size() != layout.profileLength)
        return {};
    const auto model = colorModelOf(profile);
    const bool fits = model == ColorModel::Rgb || (model == ColorModel::Gray && hasGreyPalette(layout));
    return fits ? withoutFill(profile) : QByteArray();
}

bool isGreyByProfile(const QByteArray& profile, const BmpLayout& layout)
{
    if (layout.bitsPerPixel != 8 || colorModelOf(profile) != ColorModel::Gray)
        return false;
    for (int grey = 0; grey < layout.palette.size(); ++grey) {
        if (layout.palette[grey] != qRgb(grey, grey, grey))
            return false;
    }
    return true;
}

} // namespace quorvia::engine
