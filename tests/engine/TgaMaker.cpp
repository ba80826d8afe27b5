#include "TgaMaker.h"

#include <algorithm>

namespace quorvia::test {

namespace {

void appendWord(QByteArray& out, int value)
{
    out.append(char(value & 255));
    out.append(char(value >> 8 & 255));
}

quint32 noise(int x, int y)
{
    quint32 value = quint32(x / 4) * 2654435761U ^ quint32(y) * 2246822519U;
    value = (value ^ value >> 15) * 2654435761U;
    return value ^ value >> 13;
}

QByteArray word(quint32 value, int bytes)
{
    QByteArray out;
    for (int i = 0; i < bytes; ++i)
        out.append(char(value >> 8 * i & 255));
    return out;
}

/// Each pixel as `value(x, y)` says.
template <class Value>
std::vector<QByteArray> filled(QSize size, int bytes, const Value& value)
{
    std::vector<QByteArray> pixels;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            pixels.push_back(word(value(x, y), bytes));
    }
    return pixels;
}

} // namespace

QByteArray TgaMaker::bytes() const
{
    QByteArray out;
    out.append(char(idField.size()));
    out.append(palette.isEmpty() ? '\0' : '\1');
    out.append(char(type));
    appendWord(out, paletteFirst);
    appendWord(out, paletteCount);
    out.append(char(entryBits));
    appendWord(out, 0);
    appendWord(out, 0);
    appendWord(out, size.width());
    appendWord(out, size.height());
    out.append(char(depth));
    out.append(char(descriptor));
    out += idField + palette;
    if (data.isEmpty()) {
        for (const QByteArray& pixel : pixels)
            out += pixel;
    } else {
        out += data;
    }
    if (attributesType < 0)
        return out;
    const auto area = quint32(out.size());
    QByteArray extension(495, '\0');
    extension.replace(0, 2, word(495, 2));
    extension[494] = char(attributesType);
    return out + extension + word(area, 4) + word(0, 4) + QByteArray("TRUEVISION-XFILE.", 18);
}

TgaMaker TgaMaker::packed(bool across) const
{
    TgaMaker result = *this;
    result.type |= 8;
    result.data.clear();
    const auto width = size_t(size.width());
    for (size_t at = 0; at < pixels.size();) {
        const size_t rowEnd = across ? pixels.size() : (at / width + 1) * width;
        size_t run = at + 1;
        while (run < rowEnd && run - at < 128 && pixels[run] == pixels[at])
            ++run;
        if (run - at > 1) {
            result.data.append(char(0x80 | (run - at - 1)));
            result.data += pixels[at];
            at = run;
            continue;
        }
        const size_t end = std::min({rowEnd, at + 5, pixels.size()});
        result.data.append(char(end - at - 1));
        for (; at < end; ++at)
            result.data += pixels[at];
    }
    return result;
}

Rgba TgaMaker::shown() const
{
    Rgba picture{size, QByteArray(qsizetype(4) * size.width() * size.height(), '\0')};
    for (int row = 0; row < size.height(); ++row) {
        for (int column = 0; column < size.width(); ++column) {
            const QByteArray& pixel = pixels[size_t(row) * size_t(size.width()) + size_t(column)];
            const int x = (descriptor & 0x10) != 0 ? size.width() - 1 - column : column;
            const int y = (descriptor & 0x20) != 0 ? row : size.height() - 1 - row;
            char* out = picture.pixels.data() + 4 * (qsizetype(y) * size.width() + x);
            const bool isGray = pixel.size() == 2;
            out[0] = pixel[isGray ? 0 : 2];
            out[1] = pixel[isGray ? 0 : 1];
            out[2] = pixel[0];
            out[3] = pixel.size() % 2 == 0 ? pixel.back() : char(255);
        }
    }
    return picture;
}

TgaMaker TgaMaker::trueColor(QSize size, int depth)
{
    TgaMaker maker;
    maker.size = size;
    maker.depth = depth;
    maker.pixels = filled(size, (depth + 7) / 8, noise);
    return maker;
}

TgaMaker TgaMaker::mapped(QSize size, int depth, int entryBits, int count, int first)
{
    TgaMaker maker;
    maker.size = size;
    maker.type = 1;
    maker.depth = depth;
    maker.entryBits = entryBits;
    maker.paletteFirst = first;
    maker.paletteCount = count;
    for (int i = 0; i < count; ++i)
        maker.palette += word(noise(4 * i, count), (entryBits + 7) / 8);
    maker.pixels =
        filled(size, depth / 8, [&](int x, int y) { return quint32(first) + noise(x, y) % quint32(count); });
    return maker;
}

TgaMaker TgaMaker::gray(QSize size)
{
    TgaMaker maker;
    maker.size = size;
    maker.type = 3;
    maker.depth = 16;
    maker.descriptor = 0x28;
    maker.pixels = filled(size, 2, noise);
    return maker;
}

} // namespace quorvia::test
