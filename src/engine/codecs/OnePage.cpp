#include "engine/codecs/OnePage.h"

#include "engine/codecs/PageNumber.h"
#include "engine/Limits.h"

namespace quorvia::engine {

Result<PageHeader> OnePageDecoder::header(int page)
{
    if (const Status there = onlyPage(page); !there)
        return there.error();
    Result<PageHeader> told = facts();
    if (!told)
        return told;
    if (const Status allowed = checkSize(told->size); !allowed)
        return allowed.error();
    return told;
}

Result<Picture> OnePageDecoder::decode(int page, QSize box, const CancelFlag& cancel)
{
    const Result<PageHeader> told = header(page);
    if (!told)
        return told.error();
    return decodePage(*told, box, cancel);
}

Picture OnePageDecoder::blank(const PageHeader& facts, QImage::Format format)
{
    Picture picture;
    picture.image = allocateImage(facts.size, format);
    picture.fullSize = facts.size;
    picture.bitsPerPixel = facts.bitsPerPixel;
    return picture;
}

} // namespace quorvia::engine
