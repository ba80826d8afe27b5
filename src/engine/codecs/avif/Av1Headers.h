// The headers in an AV1 stream, as far as they decide how large its frames are.
#pragma once

#include <QByteArray>
#include <QList>
#include <QSize>

namespace quorvia::engine {

/// What a sequence header tells of the frames behind it (AV1 specification, 5.5).
struct Av1Sequence
{
    /// A tool that the sequence turns off or on, or leaves to each frame.
    enum class Use : quint8 { Off, On, ByFrame };

    /// One of the ways to decode the stream, by its layers.
    struct OperatingPoint
    {
        quint32 layers = 0; ///< a bit for each temporal layer, from bit 8 on one for each spatial; 0 is all
        bool hasModel = false;
    };

    QSize size;             ///< of the largest frame, by what it tells; empty when it is cut
    bool isReduced = false; ///< of a still picture: its frames cannot differ
    int widthBits = 0;
    int heightBits = 0;
    int frameNumberBits = 0; ///< 0: frames have no numbers
    int differenceBits = 0;  ///< of two frames' numbers
    int orderBits = 0;       ///< 0: frames have no place in an order
    int shownTimeBits = 0;   ///< 0: no frame tells when it is shown
    int removalTimeBits = 0; ///< 0: there is no decoder model
    Use screenTools = Use::ByFrame;
    Use wholeMotion = Use::ByFrame;
    QList<OperatingPoint> points;
};

/// The layer of a unit, both counted from 0.
struct Av1Layer
{
    int temporal = 0;
    int spatial = 0;
};

/// More than the bytes of a frame header up to its size.
constexpr qint64 longestAv1FrameHead = 192;

/// Reads a sequence header, without the unit's own head.
Av1Sequence av1Sequence(const QByteArray& header);

/// The size that the frame header `header`, without the unit's own head, gives its frame beside that of its
/// sequence (AV1 specification, 5.9.2 to 5.9.7): a frame may call for another, and nothing keeps that from
/// being larger. Empty when it does not, or takes the size of a frame before it.
QSize av1FrameSize(const Av1Sequence& sequence, const QByteArray& header, Av1Layer layer);

} // namespace quorvia::engine
