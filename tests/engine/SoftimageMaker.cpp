#include "SoftimageMaker.h"

#include <algorithm>
#include <bit>

namespace quorvia::test {

namespace {

constexpr int alphaChannel = 0x10;

void appendWord(QByteArray& out, int value)
{
    out.append(char(value >> 8));
    out.append(char(value & 255));
}

/// The bytes of the channels in `channels` of the pixel at `rgba`.
QByteArray unit(const uchar* rgba, int channels)
{
    QByteArray out;
    for (int i = 0; i < 8; ++i) {
        if ((channels & 0x80 >> i) != 0)
            out.append(i < 4 ? char(rgba[i]) : '\x55'); // the lower channels are for other uses
    }
    return out;
}

QByteArray packedRow(const std::vector<QByteArray>& units, const SoftimageMaker::Packet& packet,
                     int wordRunFrom)
{
    QByteArray out;
    const size_t longest = packet.type == 1 ? 255 : 65535;
    for (size_t at = 0; at < units.size();) {
        size_t end = at + 1;
        while (end < units.size() && end - at < longest && units[end] == units[at])
            ++end;
        const size_t length = end - at;
        if (packet.type == 0) {
            out += units[at];
            end = at + 1;
        } else if (packet.type == 1) {
            out += char(length) + units[at];
        } else if (length > 1) {
            if (int(length) < wordRunFrom && length <= 128) {
                out.append(char(127 + length));
            } else {
                out.append(char(128));
                appendWord(out, int(length));
            }
            out += units[at];
        } else {
            end = std::min(at + 1, units.size());
            while (end < units.size() && end - at < 128 && units[end] != units[end - 1])
                ++end;
            out.append(char(end - at - 1));
            for (size_t i = at; i < end; ++i)
                out += units[i];
        }
        at = end;
    }
    return out;
}

} // namespace

QByteArray SoftimageMaker::bytes() const
{
    QByteArray out =
        QByteArray::fromHex("5380f634 40000000") + QByteArray("made for a test").leftJustified(80, '\0');
    out += "PICT";
    appendWord(out, picture.size.width());
    appendWord(out, picture.size.height());
    out += QByteArray::fromHex("3f800000");
    appendWord(out, fields);
    appendWord(out, 0);
    for (size_t i = 0; i < packets.size(); ++i) {
        out.append(i + 1 < packets.size() ? '\1' : '\0');
        out.append(char(packets[i].bits));
        out.append(char(packets[i].type));
        out.append(char(packets[i].channels));
    }
    const int rows = storedRows < 0 ? picture.size.height() : storedRows;
    for (int y = 0; y < rows; ++y) {
        for (const Packet& packet : packets) {
            std::vector<QByteArray> units;
            units.reserve(size_t(picture.size.width()));
            for (int x = 0; x < picture.size.width(); ++x)
                units.push_back(unit(picture.at(x, y), packet.channels));
            out += packedRow(units, packet, wordRunFrom);
        }
    }
    return out;
}

Rgba SoftimageMaker::shown() const
{
    int channels = 0;
    for (const Packet& packet : packets)
        channels |= packet.channels;
    Rgba result = picture;
    for (qsizetype i = 0; i < result.pixels.size(); ++i) {
        const int channel = 0x80 >> i % 4;
        if ((channels & channel) == 0)
            result.pixels[i] = channel == alphaChannel ? char(255) : '\0';
    }
    return result;
}

Rgba runPicture(QSize size)
{
    Rgba picture = samplePicture(size);
    int x = 0;
    for (int length = 1; x < size.width() * size.height(); ++length) {
        char* first = picture.pixels.data() + qsizetype(4) * x;
        const int end = std::min(x + (length * 7) % 301, size.width() * size.height());
        for (int i = x + 1; i < end; ++i)
            std::copy_n(first, 4, picture.pixels.data() + qsizetype(4) * i);
        x = end + length % 4;
    }
    return picture;
}

} // namespace quorvia::test
