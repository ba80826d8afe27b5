#include "Mutator.h"

#include <algorithm>
#include <iterator>

namespace quorvia::test {

namespace {

constexpr qsizetype longestRange = 4096;

} // namespace

Mutator::Mutator(QByteArray good, quint32 seed) : m_good(std::move(good)), m_random(seed) {}

QByteArray Mutator::next()
{
    QByteArray bytes = m_good;
    const qsizetype times = 1 + pick(3);
    for (qsizetype i = 0; i < times && !bytes.isEmpty(); ++i)
        breakOnce(bytes);
    return bytes;
}

void Mutator::breakOnce(QByteArray& bytes)
{
    switch (pick(9)) {
    case 0:
        return flipBits(bytes);
    case 1:
        return overwrite(bytes);
    case 2:
    case 3:
        return setExtreme(bytes);
    case 4:
        return bytes.truncate(pick(bytes.size()));
    case 5:
        return repeatRange(bytes);
    case 6:
        return pick(2) ? removeRange(bytes) : zeroRange(bytes);
    case 7:
        return moveRange(bytes);
    default:
        return addGarbage(bytes);
    }
}

void Mutator::flipBits(QByteArray& bytes)
{
    for (qsizetype i = pick(8); i >= 0; --i) {
        char& byte = bytes[pickOffset(bytes)];
        byte = char(byte ^ (1 << pick(8)));
    }
}

void Mutator::overwrite(QByteArray& bytes)
{
    for (qsizetype i = pick(16); i >= 0; --i)
        bytes[pickOffset(bytes)] = char(pick(256));
}

void Mutator::setExtreme(QByteArray& bytes)
{
    static constexpr quint32 extremes[] = {0,      1,      0x7f,       0x80,       0xff,       0x7fff,
                                           0x8000, 0xffff, 0x7fffffff, 0x80000000, 0xfffffffe, 0xffffffff};
    const quint32 value = extremes[pick(std::size(extremes))];
    const qsizetype width = pick(2) ? 4 : 2;
    const bool bigEndian = pick(2) == 1;
    const qsizetype first = pickOffset(bytes);
    for (qsizetype i = 0; i < width && first + i < bytes.size(); ++i)
        bytes[first + i] = char(value >> (8 * (bigEndian ? width - 1 - i : i)));
}

void Mutator::repeatRange(QByteArray& bytes)
{
    const qsizetype first = pickOffset(bytes);
    const QByteArray range = bytes.mid(first, 1 + pick(longestRange));
    bytes.insert(first, range);
}

void Mutator::removeRange(QByteArray& bytes)
{
    bytes.remove(pickOffset(bytes), 1 + pick(longestRange));
}

void Mutator::zeroRange(QByteArray& bytes)
{
    const qsizetype first = pickOffset(bytes);
    const qsizetype count = std::min(bytes.size() - first, 1 + pick(longestRange));
    std::fill_n(bytes.begin() + first, count, char(0));
}

void Mutator::moveRange(QByteArray& bytes)
{
    const qsizetype first = pickOffset(bytes);
    const QByteArray range = bytes.mid(first, 1 + pick(longestRange));
    bytes.remove(first, range.size());
    bytes.insert(pick(bytes.size() + 1), range);
}

void Mutator::addGarbage(QByteArray& bytes)
{
    for (qsizetype i = pick(longestRange); i >= 0; --i)
        bytes.append(char(pick(256)));
}

qsizetype Mutator::pick(qsizetype below)
{
    return below < 1 ? 0 : qsizetype(m_random() % quint64(below));
}

qsizetype Mutator::pickOffset(const QByteArray& bytes)
{
    constexpr qsizetype headerLength = 256;
    return pick(2) ? pick(bytes.size()) : pick(std::min(bytes.size(), headerLength));
}

} // namespace quorvia::test
