#include "engine/ReadAhead.h"

#include "engine/Resample.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace quorvia::engine {

namespace {

qint64 bytesOf(const Picture& picture)
{
    return picture.image.sizeInBytes() + picture.profile.size();
}

bool samePlace(const PageKey& a, const PageKey& b)
{
    return a.path == b.path && a.page == b.page;
}

bool covers(const Picture& picture, QSize box)
{
    const QSize wanted = fittedSize(picture.fullSize, box);
    return picture.image.width() >= wanted.width() && picture.image.height() >= wanted.height();
}

} // namespace

bool ReadyPage::serves(QSize box) const
{
    return full || covers(shown, box);
}

const Picture& ReadyPage::firstFor(QSize box) const
{
    return covers(shown, box) || !full ? shown : *full;
}

bool ReadyPage::isMadeFor(QSize box) const
{
    return firstFor(box).image.size() == fittedSize(header.size, box);
}

qint64 ReadyPage::bytes() const
{
    const bool shared = full && full->image.constBits() == shown.image.constBits();
    return bytesOf(shown) + (full && !shared ? bytesOf(*full) : 0);
}

std::vector<ReadyPage> ReadAheadCache::setCap(qint64 bytes)
{
    m_cap = bytes;
    std::vector<ReadyPage> gone;
    makeRoom(0, {}, gone);
    return gone;
}

std::vector<ReadyPage> ReadAheadCache::insert(ReadyPage page, const QStringList& spared)
{
    std::vector<ReadyPage> gone;
    const auto old = std::find_if(m_pages.begin(), m_pages.end(),
                                  [&page](const ReadyPage& other) { return samePlace(other.key, page.key); });
    if (old != m_pages.end())
        gone.push_back(takeOut(static_cast<size_t>(old - m_pages.begin())));

    if (page.full && m_bytes + page.bytes() > m_cap)
        gone.push_back({page.key, page.header, *std::exchange(page.full, std::nullopt)});
    const qint64 wanted = page.bytes();
    if (m_bytes - freeable(spared) + wanted > m_cap) { // nothing goes in vain
        gone.push_back(std::move(page));
        return gone;
    }
    makeRoom(wanted, spared, gone);
    m_bytes += wanted;
    m_pages.push_back(std::move(page));
    return gone;
}

const ReadyPage* ReadAheadCache::find(const PageKey& key, QSize box)
{
    const auto found = std::find_if(m_pages.begin(), m_pages.end(), [&](const ReadyPage& page) {
        return page.key == key && page.serves(box);
    });
    if (found == m_pages.end())
        return nullptr;
    std::rotate(found, found + 1, m_pages.end());
    return &m_pages.back();
}

std::vector<ReadyPage> ReadAheadCache::dropOutdated(const PageKey& key)
{
    return takeOutAll([&key](const PageKey& kept) { return samePlace(kept, key) && kept != key; });
}

std::vector<ReadyPage> ReadAheadCache::drop(const QString& path)
{
    return takeOutAll([&path](const PageKey& kept) { return kept.path == path; });
}

std::vector<ReadyPage> ReadAheadCache::takeOutAll(const std::function<bool(const PageKey&)>& goes)
{
    std::vector<ReadyPage> gone;
    for (size_t i = m_pages.size(); i-- > 0;) {
        if (goes(m_pages[i].key))
            gone.push_back(takeOut(i));
    }
    return gone;
}

ReadyPage ReadAheadCache::takeOut(size_t index)
{
    ReadyPage page = std::move(m_pages[index]);
    m_pages.erase(m_pages.begin() + static_cast<std::ptrdiff_t>(index));
    m_bytes -= page.bytes();
    return page;
}

qint64 ReadAheadCache::freeable(const QStringList& spared) const
{
    qint64 bytes = 0;
    for (const ReadyPage& page : m_pages)
        bytes += spared.contains(page.key.path) ? page.bytes() - bytesOf(page.shown) : page.bytes();
    return bytes;
}

void ReadAheadCache::makeRoom(qint64 wanted, const QStringList& spared, std::vector<ReadyPage>& gone)
{
    for (ReadyPage& page : m_pages) {
        if (m_bytes + wanted <= m_cap)
            return;
        if (!page.full || page.shown.isFull())
            continue;
        const qint64 before = page.bytes();
        gone.push_back({page.key, page.header, *std::exchange(page.full, std::nullopt)});
        m_bytes -= before - page.bytes();
    }
    for (size_t i = 0; i < m_pages.size() && m_bytes + wanted > m_cap;) {
        if (spared.contains(m_pages[i].key.path))
            ++i;
        else
            gone.push_back(takeOut(i));
    }
}

std::optional<Picture> atShownSize(const Picture& picture, QSize box, const CancelFlag& cancel)
{
    const QSize size = fittedSize(picture.fullSize, box);
    const QSize here = picture.image.size();
    if (here == size || here.width() < size.width() || here.height() < size.height())
        return picture;
    const auto format = picture.image.hasAlphaChannel()                       ? QImage::Format_ARGB32
                        : picture.image.format() == QImage::Format_Grayscale8 ? QImage::Format_Grayscale8
                                                                              : QImage::Format_RGB32;
    Picture shown = picture;
    shown.image = allocateImage(size, format);
    if (shown.image.isNull())
        return std::nullopt;
    constexpr int rowsAtOnce = 128; // between two looks at the flag
    for (int y = 0; y < size.height(); y += rowsAtOnce) {
        if (cancel)
            return std::nullopt;
        const QRect part(0, y, size.width(), std::min(rowsAtOnce, size.height() - y));
        const QImage rows =
            resampled(picture.image, size, part, Filter::Area, Filter::Area).convertToFormat(format);
        if (rows.isNull())
            return std::nullopt;
        for (int row = 0; row < part.height(); ++row)
            std::memcpy(shown.image.scanLine(y + row), rows.constScanLine(row),
                        static_cast<size_t>(std::min(rows.bytesPerLine(), shown.image.bytesPerLine())));
    }
    return shown;
}

} // namespace quorvia::engine
