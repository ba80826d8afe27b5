#include "engine/codecs/losslessjpeg/LosslessJpegProfile.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr char mark[] = "ICC_PROFILE"; // with its zero
constexpr size_t headLength = sizeof mark + 2;
constexpr qsizetype mostPieces = 255;
constexpr qsizetype pieceLength = 65533 - qsizetype(headLength);

} // namespace

void LosslessProfileReader::take(ByteSpan body)
{
    const bool isPiece = body.size() >= headLength &&
                         std::equal(mark, mark + sizeof mark, body.begin(),
                                    [](char wanted, uchar byte) { return uchar(wanted) == byte; });
    if (!isPiece)
        return;
    m_pieces.begin(body[sizeof mark], body[sizeof mark + 1]);
    m_pieces.add(body.data() + headLength, qsizetype(body.size() - headLength));
}

bool isProfileFor(const QByteArray& profile, bool gray)
{
    constexpr qsizetype headerLength = 128;
    constexpr qsizetype modelAt = 16;
    return profile.size() > headerLength &&
           profile.mid(modelAt, 4) == (gray ? QByteArrayLiteral("GRAY") : QByteArrayLiteral("RGB "));
}

QList<QByteArray> profilePieces(const QByteArray& profile)
{
    const qsizetype count = (profile.size() + pieceLength - 1) / pieceLength;
    QList<QByteArray> pieces;
    for (qsizetype i = 0; i < count && count <= mostPieces; ++i)
        pieces.append(QByteArray(mark, sizeof mark) + char(i + 1) + char(count) +
                      profile.mid(i * pieceLength, pieceLength));
    return pieces;
}

} // namespace quorvia::engine
