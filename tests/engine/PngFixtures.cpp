#include "PngFixtures.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::test {

namespace {

quint32 crcOf(const QByteArray& bytes)
{
    quint32 crc = 0xffffffff;
    for (const char byte : bytes) {
        crc ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) ? 0xedb88320 : 0);
    }
    return ~crc;
}

} // namespace

Rgba readWithNetpbm(const QByteArray& file)
{
    return fromPnm(runTool(QStringLiteral("pngtopam"), {QStringLiteral("-alphapam")}, file));
}

QByteArray netpbmFile(const QByteArray& pnm, const QStringList& options)
{
    return runTool(QStringLiteral("pnmtopng"), options, pnm);
}

QByteArray magickFile(const Rgba& picture, int colors, int depth, bool interlaced)
{
    QByteArray samples = picture.pixels;
    if (depth == 16) {
        samples.clear();
        for (qsizetype i = 0; i < picture.pixels.size(); ++i) {
            samples.append(picture.pixels[i]);
            samples.append(char(i * 89 + uchar(picture.pixels[i]) * 7));
        }
    }
    const bool gray = colors == 0 || colors == 4;
    QStringList arguments = {QStringLiteral("-size"),
                             QStringLiteral("%1x%2").arg(picture.size.width()).arg(picture.size.height()),
                             QStringLiteral("-endian"),
                             QStringLiteral("MSB"),
                             QStringLiteral("-depth"),
                             depth == 16 ? QStringLiteral("16") : QStringLiteral("8"),
                             QStringLiteral("rgba:-")};
    if (colors < 4)
        arguments += {QStringLiteral("-alpha"), QStringLiteral("off")};
    if (gray)
        arguments += {QStringLiteral("-colorspace"), QStringLiteral("Gray")};
    arguments += {QStringLiteral("-interlace"), interlaced ? QStringLiteral("PNG") : QStringLiteral("none"),
                  QStringLiteral("-define"),    QStringLiteral("png:color-type=%1").arg(colors),
                  QStringLiteral("-define"),    QStringLiteral("png:bit-depth=%1").arg(depth),
                  QStringLiteral("png:-")};
    return runTool(QStringLiteral("convert"), arguments, samples);
}

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray pngChunk(const char* type, const QByteArray& content)
{
    const QByteArray body = QByteArray(type) + content;
    return bigEndian(quint32(content.size())) + body + bigEndian(crcOf(body));
}

QByteArray pngHeader(quint32 width, quint32 height, int depth, int colors, int interlace)
{
    QByteArray content = bigEndian(width) + bigEndian(height);
    for (const int byte : {depth, colors, 0, 0, interlace})
        content.append(char(byte));
    return QByteArray("\x89PNG\r\n\x1a\n") + pngChunk("IHDR", content);
}

QByteArray zlibStream(const QByteArray& rows)
{
    return qCompress(rows).mid(4); // without Qt's own length
}

qsizetype pngChunkAt(const QByteArray& file, const QByteArray& type)
{
    for (qsizetype at = 8; at + 8 <= file.size();) {
        if (file.mid(at + 4, 4) == type)
            return at;
        at += 12 + qFromBigEndian<quint32>(file.constData() + at);
    }
    return -1;
}

QByteArray withChunk(QByteArray file, const QByteArray& further)
{
    return file.insert(pngChunkAt(file, "IDAT"), further);
}

Rgba coarse(Rgba picture, int levels)
{
    for (char& value : picture.pixels)
        value = char((uchar(value) * levels / 256) * 255 / std::max(levels - 1, 1));
    return picture;
}

} // namespace quorvia::test
