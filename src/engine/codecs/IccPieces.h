// An ICC profile out of a JPEG: in up to 255 segments, each with its number and the count of all, in any
// order. Nothing throws and nothing needs a destructor before its end: libjpeg may jump across.
#pragma once

#include <QByteArray>

#include <array>

namespace quorvia::engine {

class IccPieces
{
  public:
    /// A piece begins: `number` (from 1) of `count`.
    void begin(int number, int count) noexcept;
    /// Some of its bytes.
    void add(const void* bytes, qsizetype length) noexcept;
    /// The profile; empty unless each piece came once, within maxProfileBytes. The pieces are gone then.
    QByteArray take() noexcept;

  private:
    std::array<QByteArray, 256> m_pieces; ///< by number
    std::array<bool, 256> m_came = {};
    qsizetype m_length = 0;
    int m_now = 0;   ///< number of the piece under way
    int m_taken = 0; ///< pieces so far
    int m_count = 0; ///< pieces that there should be
    bool m_broken = false;
};

} // namespace quorvia::engine
