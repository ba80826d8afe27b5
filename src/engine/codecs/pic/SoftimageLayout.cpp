#include "engine/codecs/pic/SoftimageLayout.h"

#include "engine/codecs/CodecErrors.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr qint64 idAt = 88;
constexpr qint64 widthAt = 92;
constexpr qint64 heightAt = 94;
constexpr qint64 fieldsAt = 100;
constexpr qint64 packetsAt = 104;
constexpr qint64 packetLength = 4;

constexpr int shownChannels = 0xF0;
constexpr int alphaChannel = 0x10;
constexpr size_t mostPackets = 16; // a channel each and some to spare

int wordAt(const QByteArray& head, qint64 offset)
{
    return qFromBigEndian<quint16>(head.constData() + offset);
}

Error cutShort()
{
    return Error{ErrorKind::Damaged, QStringLiteral("the header of the Softimage picture is cut short")};
}

Result<SoftimagePacket> packetAt(const QByteArray& head, qint64 offset)
{
    const int bits = uchar(head[offset + 1]);
    const int type = uchar(head[offset + 2]);
    if (bits != 8)
        return unsupported(QStringLiteral("Softimage picture with %1 bits a channel").arg(bits));
    if (type > int(SoftimagePacking::Mixed))
        return unsupported(QStringLiteral("Softimage picture with channels of type %1").arg(type));
    return SoftimagePacket{SoftimagePacking(type), uchar(head[offset + 3])};
}

} // namespace

bool SoftimageLayout::hasAlpha() const
{
    return std::any_of(packets.begin(), packets.end(),
                       [](const SoftimagePacket& packet) { return (packet.channels & alphaChannel) != 0; });
}

bool isSoftimage(const QByteArray& head)
{
    return head.startsWith("\x53\x80\xf6\x34");
}

Result<SoftimageLayout> readSoftimageLayout(const QByteArray& head)
{
    if (!isSoftimage(head))
        return Error{ErrorKind::NotAnImage, QStringLiteral("no Softimage picture")};
    if (head.size() < packetsAt + packetLength)
        return cutShort();
    if (head.mid(idAt, 4) != "PICT")
        return unsupported(QStringLiteral("Softimage file that is no picture"));
    SoftimageLayout layout;
    layout.size = QSize(wordAt(head, widthAt), wordAt(head, heightAt));
    const int fields = wordAt(head, fieldsAt);
    layout.isField = fields == 1 || fields == 2;
    qint64 offset = packetsAt;
    int channels = 0;
    for (bool chained = true; chained; offset += packetLength) {
        if (offset + packetLength > head.size())
            return cutShort();
        const Result<SoftimagePacket> packet = packetAt(head, offset);
        if (!packet)
            return packet.error();
        if (packet->channels != 0)
            layout.packets.push_back(*packet);
        channels |= packet->channels;
        if (layout.packets.size() > mostPackets)
            return Error{ErrorKind::Damaged, QStringLiteral("more channel packets than there are channels")};
        chained = head[offset] != 0;
    }
    if ((channels & shownChannels) == 0)
        return unsupported(QStringLiteral("Softimage picture without colour channels"));
    layout.pixelOffset = offset;
    return layout;
}

} // namespace quorvia::engine
