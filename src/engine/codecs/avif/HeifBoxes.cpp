#include "engine/codecs/avif/HeifBoxes.h"

#include <QtEndian>

#include <algorithm>
#include <limits>

namespace quorvia::engine {

namespace {

constexpr int boxHead = 8;

quint32 longAt(const QByteArray& bytes, qsizetype offset)
{
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

bool isPictureBrand(const QByteArray& brand)
{
    static constexpr const char* brands[] = {"avif", "avis", "heic", "heix", "heim", "heis", "hevc",
                                             "hevx", "hevm", "hevs", "mif1", "mif2", "msf1", "miaf"};
    return std::any_of(std::begin(brands), std::end(brands),
                       [&](const char* known) { return brand == known; });
}

} // namespace

bool isHeif(const QByteArray& head)
{
    constexpr int firstCompatible = 16;
    if (head.size() < firstCompatible || head.mid(4, 4) != "ftyp")
        return false;
    if (isPictureBrand(head.mid(boxHead, 4)))
        return true;
    const qsizetype end = std::min<qsizetype>(longAt(head, 0), head.size());
    for (qsizetype at = firstCompatible; at + 4 <= end; at += 4) {
        if (isPictureBrand(head.mid(at, 4)))
            return true;
    }
    return false;
}

qint64 promisedHeifLength(const QByteArray& file)
{
    qint64 at = 0;
    while (at + boxHead <= file.size()) {
        qint64 length = longAt(file, at);
        if (length == 1 && at + 2 * boxHead <= file.size()) {
            const quint64 wide = qFromBigEndian<quint64>(file.constData() + at + boxHead);
            length = qint64(std::min<quint64>(wide, std::numeric_limits<qint32>::max()));
        }
        if (length < boxHead) // 0: up to the end of the file
            return file.size();
        at += length;
    }
    return std::max<qint64>(at, file.size());
}

} // namespace quorvia::engine
