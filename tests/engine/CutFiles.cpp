#include "CutFiles.h"

#include "CodecFixtures.h"
#include "HostileBytes.h"
#include "IndependentReader.h"

namespace quorvia::test {

namespace {

using engine::ErrorKind;
using engine::Picture;
using engine::Result;

QString cutFault(const Result<Picture>& part, const Picture& whole, bool shown)
{
    if (!part) {
        if (shown)
            return QStringLiteral("a shorter file shows more");
        return part.error().kind == ErrorKind::Damaged ? QString() : QStringLiteral("not called damaged");
    }
    if (part->image.size() != whole.image.size())
        return QStringLiteral("another size");
    return part->complete ? difference(part->image, whole.image) : QString();
}

} // namespace

QString everyCutFault(const engine::Codec& codec, const QByteArray& file)
{
    const Result<Picture> whole = decodeBytes(codec, file);
    if (!whole || !whole->complete)
        return QStringLiteral("the whole file is not good");
    bool shown = false;
    bool sawPart = false;
    for (int length = 0; length < file.size(); ++length) {
        const QByteArray cut = file.left(length);
        QString fault = misbehaviour(codec, cut);
        const Result<Picture> part = decodeBytes(codec, cut);
        if (fault.isEmpty())
            fault = cutFault(part, *whole, shown);
        if (!fault.isEmpty())
            return QStringLiteral("cut to %1 bytes: %2").arg(length).arg(fault);
        shown = shown || part;
        sawPart = sawPart || (part && !part->complete);
    }
    return sawPart ? QString() : QStringLiteral("no part shows an incomplete picture");
}

} // namespace quorvia::test
