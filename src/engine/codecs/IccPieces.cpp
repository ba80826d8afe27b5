#include "engine/codecs/IccPieces.h"

#include "engine/codecs/Growing.h"
#include "engine/ColorConversion.h"

#include <utility>

namespace quorvia::engine {

void IccPieces::begin(int number, int count) noexcept
{
    const bool fits = number >= 1 && number <= count && number < int(m_pieces.size()) &&
                      (m_taken == 0 || count == m_count) && !m_came[size_t(number)];
    m_broken = m_broken || !fits;
    if (m_broken)
        return;
    m_came[size_t(number)] = true;
    m_now = number;
    m_count = count;
    ++m_taken;
}

void IccPieces::add(const void* bytes, qsizetype length) noexcept
{
    m_length += length;
    m_broken = m_broken || m_length > maxProfileBytes || !appended(m_pieces[size_t(m_now)], bytes, length);
}

QByteArray IccPieces::take() noexcept
{
    QByteArray profile;
    bool whole = !m_broken && m_taken > 0 && m_taken == m_count;
    for (int number = 1; whole && number <= m_count; ++number) {
        const QByteArray piece = std::exchange(m_pieces[size_t(number)], {});
        whole = appended(profile, piece.constData(), piece.size());
    }
    m_pieces.fill({});
    return whole ? profile : QByteArray();
}

} // namespace quorvia::engine
