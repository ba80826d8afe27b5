#include "engine/codecs/WebpLayout.h"

#include <QtEndian>

namespace quorvia::engine {

namespace {

constexpr int firstChunk = 12; ///< behind "RIFF", the length and "WEBP"
constexpr int chunkHead = 8;

quint32 threeBytes(const uchar* bytes)
{
    return bytes[0] | bytes[1] << 8 | quint32(bytes[2]) << 16;
}

Error broken()
{
    return Error{ErrorKind::Damaged, QStringLiteral("the WebP file tells no size")};
}

} // namespace

bool isWebp(const QByteArray& head)
{
    return head.size() >= firstChunk && head.startsWith("RIFF") && head.mid(8, 4) == "WEBP";
}

Result<WebpLayout> readWebpLayout(const ByteSource& source)
{
    constexpr int enough = 10; // bytes of each kind of chunk that tell the size
    const QByteArray head = source.bytes(0, firstChunk + chunkHead + enough);
    if (!isWebp(head) || head.size() < firstChunk + chunkHead + enough)
        return broken();
    const QByteArray kind = head.mid(firstChunk, 4);
    const auto* body = reinterpret_cast<const uchar*>(head.constData()) + firstChunk + chunkHead;
    WebpLayout layout;
    if (kind == "VP8X") {
        constexpr int animation = 0x02;
        constexpr int alpha = 0x10;
        constexpr int profile = 0x20;
        layout.isAnimated = (body[0] & animation) != 0;
        layout.hasAlpha = (body[0] & alpha) != 0;
        layout.hasProfile = (body[0] & profile) != 0;
        layout.size = QSize(int(threeBytes(body + 4)) + 1, int(threeBytes(body + 7)) + 1);
        return layout;
    }
    if (kind == "VP8 ") {
        constexpr int sideBits = 0x3FFF; // the two bits above ask for a stretched display
        if (threeBytes(body + 3) != 0x2A019D)
            return broken();
        layout.size = QSize(qFromLittleEndian<quint16>(body + 6) & sideBits,
                            qFromLittleEndian<quint16>(body + 8) & sideBits);
        return layout;
    }
    if (kind == "VP8L") {
        constexpr quint32 sideBits = 0x3FFF;
        const quint32 facts = qFromLittleEndian<quint32>(body + 1);
        if (body[0] != 0x2F)
            return broken();
        layout.size = QSize(int(facts & sideBits) + 1, int(facts >> 14 & sideBits) + 1);
        layout.hasAlpha = (facts >> 28 & 1) != 0;
        return layout;
    }
    return Error{
        ErrorKind::Unsupported,
        QStringLiteral("a WebP file that begins with a chunk \"%1\"").arg(QString::fromLatin1(kind))};
}

} // namespace quorvia::engine
