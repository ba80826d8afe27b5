#include "CodecChecks.h"

#include "HostileBytes.h"
#include "Mutator.h"

#include <algorithm>

namespace quorvia::test {

namespace {

using engine::ByteSource;
using engine::CancelFlag;
using engine::Codec;
using engine::Picture;
using engine::Result;

/// How many pixels of `part` are those of `whole`.
qint64 equalPixels(const Rgba& part, const Rgba& whole)
{
    qint64 equal = 0;
    for (qsizetype i = 0; i < whole.pixels.size(); i += 4)
        equal +=
            std::equal(part.pixels.cbegin() + i, part.pixels.cbegin() + i + 4, whole.pixels.cbegin() + i);
    return equal;
}

QString fixtureFaultText(const Codec& codec, const Fixture& fixture)
{
    if (!codec.sniff(fixture.file.left(1024), QString()))
        return QStringLiteral("not known by its content");
    const auto decoder = codec.open(ByteSource::fromBytes(fixture.file));
    if (!decoder)
        return decoder.error().text;
    if ((*decoder)->pageCount() < fixture.page)
        return QStringLiteral("%1 pages").arg((*decoder)->pageCount());
    const auto header = (*decoder)->header(fixture.page);
    if (!header)
        return header.error().text;
    const CancelFlag go = false;
    const Result<Picture> picture = (*decoder)->decode(fixture.page, QSize(), go);
    if (!picture)
        return picture.error().text;
    if (!picture->complete)
        return QStringLiteral("not complete");
    if (header->size != picture->fullSize || header->size != picture->image.size())
        return QStringLiteral("the header tells another size");
    if (header->bitsPerPixel != picture->bitsPerPixel || header->bitsPerPixel < 1)
        return QStringLiteral("the header tells another depth");
    return firstDifference(rgbaOf(picture->image), fixture.expected, fixture.tolerance);
}

} // namespace

QString fixtureFault(const Codec& codec, const Fixture& fixture)
{
    const QString fault =
        fixture.file.isEmpty() ? QStringLiteral("no file") : fixtureFaultText(codec, fixture);
    return fault.isEmpty() ? QString() : fixture.name + QStringLiteral(": ") + fault;
}

QString corpusFault(const Codec& codec, const std::vector<Fixture>& corpus)
{
    if (corpus.size() < 10)
        return QStringLiteral("%1 fixtures").arg(corpus.size());
    QStringList faults;
    for (const Fixture& fixture : corpus) {
        const QString fault = fixtureFault(codec, fixture);
        if (!fault.isEmpty())
            faults.append(fault);
    }
    return faults.join(QLatin1Char('\n'));
}

QString cutFault(const Codec& codec, const Fixture& fixture, bool shows)
{
    constexpr qsizetype mostPlaces = 400;
    const auto whole = decoded(codec, fixture.file, fixture.page);
    if (!whole || !whole->complete)
        return fixture.name + QStringLiteral(": not whole");
    const Rgba pixels = rgbaOf(whole->image);
    const qsizetype step = std::max<qsizetype>(1, fixture.file.size() / mostPlaces);
    qint64 before = -1;
    int shown = 0;
    int places = 0;
    for (qsizetype length = 0; length < fixture.file.size(); length += step, ++places) {
        const QString where = QStringLiteral("%1, cut at %2: ").arg(fixture.name).arg(length);
        const QByteArray cut = fixture.file.left(length);
        const QString fault = misbehaviour(codec, cut);
        if (!fault.isEmpty())
            return where + fault;
        const auto part = decoded(codec, cut, fixture.page);
        if (!part && shows && before >= 0)
            return where + QStringLiteral("shows nothing where a shorter file does");
        if (!part || part->image.size() != whole->image.size())
            continue;
        ++shown;
        const qint64 equal = equalPixels(rgbaOf(part->image), pixels);
        if (part->complete && equal != pixels.pixels.size() / 4)
            return where + QStringLiteral("said to be complete");
        if (shows && equal < before)
            return where + QStringLiteral("shows less than a shorter file");
        before = equal;
    }
    if (shows && shown < places / 2)
        return QStringLiteral("%1: shown at %2 of %3 places").arg(fixture.name).arg(shown).arg(places);
    return {};
}

QString mutantFault(const Codec& codec, const std::vector<Fixture>& corpus, int count)
{
    for (int i = 0; i < count; ++i) {
        const Fixture& parent = corpus[size_t(i) % corpus.size()];
        const QString fault = misbehaviour(codec, Mutator(parent.file, quint32(i) + 1).next());
        if (!fault.isEmpty())
            return QStringLiteral("%1, seed %2: %3").arg(parent.name).arg(i + 1).arg(fault);
    }
    return {};
}

} // namespace quorvia::test
