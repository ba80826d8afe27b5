// Softimage pictures put together packet by packet: no program at hand writes them.
#pragma once

#include "CodecFixtures.h"

#include <vector>

namespace quorvia::test {

struct SoftimageMaker
{
    struct Packet
    {
        int type = 2;        ///< 0 raw, 1 runs, 2 mixed
        int channels = 0xE0; ///< bits: 80 red, 40 green, 20 blue, 10 alpha
        int bits = 8;
    };

    Rgba picture;
    std::vector<Packet> packets = std::vector<Packet>(1);
    int fields = 3;
    int storedRows = -1;   ///< fewer rows than the header tells; -1 for all
    int wordRunFrom = 128; ///< pixels from which on mixed runs are told in 16 bits

    QByteArray bytes() const;
    /// What a reader shows: channels without a packet are 0, alpha without one is 255.
    Rgba shown() const;
};

/// A picture with runs of all lengths and noise between them.
Rgba runPicture(QSize size);

} // namespace quorvia::test
