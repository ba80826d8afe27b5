// Makes broken files from a good one: the same ones for the same seed. For tests that only ask that nothing
// crashes, hangs or fills the memory.
#pragma once

#include <QByteArray>

#include <random>

namespace quorvia::test {

class Mutator
{
  public:
    Mutator(QByteArray good, quint32 seed);

    /// The next broken child of the good file: one to three of flipped bits, overwritten bytes, extremes in
    /// what may be a length field, a cut end, a range repeated, removed, zeroed or moved, garbage at the end.
    QByteArray next();

  private:
    void breakOnce(QByteArray& bytes);
    void flipBits(QByteArray& bytes);
    void overwrite(QByteArray& bytes);
    void setExtreme(QByteArray& bytes);
    void repeatRange(QByteArray& bytes);
    void removeRange(QByteArray& bytes);
    void zeroRange(QByteArray& bytes);
    void moveRange(QByteArray& bytes);
    void addGarbage(QByteArray& bytes);
    /// A number from 0 to `below` - 1; 0 when `below` is less than 1.
    qsizetype pick(qsizetype below);
    /// An offset into `bytes`; half of them lie in the first 256 bytes, where the headers are.
    qsizetype pickOffset(const QByteArray& bytes);

    QByteArray m_good;
    std::mt19937 m_random;
};

} // namespace quorvia::test
