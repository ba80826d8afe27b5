// The ICC profile of a lossless JPEG: in up to 255 APP2 segments, each marked with its number and the count
// of all. Cheap.
#pragma once

#include "engine/codecs/IccPieces.h"
#include "engine/codecs/losslessjpeg/LosslessJpegMarkers.h"

#include <QByteArray>
#include <QList>

namespace quorvia::engine {

/// Collects the pieces of a profile.
class LosslessProfileReader
{
  public:
    /// Takes the body of an APP2 segment; one that is no piece of a profile is left alone.
    void take(ByteSpan body);
    /// The profile when all pieces came; else empty. Once.
    QByteArray profile() { return m_pieces.take(); }

  private:
    IccPieces m_pieces;
};

/// True when `profile` is an ICC profile for grey (`gray`) or RGB colours.
bool isProfileFor(const QByteArray& profile, bool gray);

/// The bodies of the APP2 segments that hold `profile`; none when it is empty or longer than they can be.
QList<QByteArray> profilePieces(const QByteArray& profile);

} // namespace quorvia::engine
