#include "engine/codecs/webp/WebpLayout.h"

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

bool losslessAlpha(const uchar* body)
{
    return (qFromLittleEndian<quint32>(body + 1) >> 28 & 1) != 0;
}

/// Whether the still picture behind an extended header has alpha: the picture's own chunks tell, as libwebp
/// takes it, and `told` by the header where they are not found.
bool storedAlpha(const ByteSource& source, bool told)
{
    constexpr int mostChunks = 64;
    constexpr int enough = 5; // bytes of the picture
    qint64 at = firstChunk;
    for (int i = 0; i < mostChunks; ++i) {
        const QByteArray head = source.bytes(at, chunkHead + enough);
        if (head.size() < chunkHead + enough)
            return told;
        const auto* bytes = reinterpret_cast<const uchar*>(head.constData());
        if (head.startsWith("VP8L"))
            return losslessAlpha(bytes + chunkHead);
        if (head.startsWith("VP8 "))
            return told;
        if (head.startsWith("ALPH"))
            return true;
        const qint64 length = qFromLittleEndian<quint32>(bytes + 4);
        at += chunkHead + length + length % 2;
    }
    return told;
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
        if (!layout.isAnimated)
            layout.hasAlpha = storedAlpha(source, layout.hasAlpha);
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
        layout.hasAlpha = losslessAlpha(body);
        return layout;
    }
    return Error{
        ErrorKind::Unsupported,
        QStringLiteral("a WebP file that begins with a chunk \"%1\"").arg(QString::fromLatin1(kind))};
}

} // namespace quorvia::engine
