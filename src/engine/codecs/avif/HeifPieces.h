// The bytes of an item, which may lie in pieces. Cheap: nothing is copied but what is asked for.
#pragma once

#include <QByteArray>
#include <QList>

namespace quorvia::engine {

class HeifPieces
{
  public:
    HeifPieces() = default;
    /// One piece, the whole of `bytes`.
    HeifPieces(const QByteArray& bytes) { append(bytes); }

    void append(const QByteArray& piece)
    {
        m_pieces.append(piece);
        m_size += piece.size();
    }
    void append(const HeifPieces& other)
    {
        m_pieces.append(other.m_pieces);
        m_size += other.m_size;
    }
    qint64 size() const { return m_size; }

    /// A copy of `count` bytes from `at` on, fewer when the end comes before. `at` is at least 0.
    QByteArray bytes(qint64 at, qint64 count) const
    {
        QByteArray found;
        for (const QByteArray& piece : m_pieces) {
            if (found.size() >= count)
                break;
            if (at < piece.size())
                found += piece.mid(at, count - found.size());
            at = at > piece.size() ? at - piece.size() : 0;
        }
        return found;
    }

  private:
    QList<QByteArray> m_pieces;
    qint64 m_size = 0;
};

} // namespace quorvia::engine
