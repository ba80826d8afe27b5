// Pages decoded before anybody asked for them: a store under a byte cap, least recently used out first. A
// plain value without threads or files; LoadPool guards it. Looking up is cheap. What is pushed out is handed
// back, so that the caller frees it where that may take its time.
#pragma once

#include "engine/ImageLoader.h"

#include <functional>
#include <optional>
#include <vector>

namespace quorvia::engine {

/// What stands ready of one page.
struct ReadyPage
{
    PageKey key;
    PageHeader header;
    Picture shown;                    ///< at the size that it is shown at, or full
    std::optional<Picture> full = {}; ///< every pixel, where decoding gave it anyway

    /// True when a load for `box` (device pixels; empty: every pixel) can be answered from this.
    bool serves(QSize box) const;
    /// What answers a load for `box` first; only when serves() is true.
    const Picture& firstFor(QSize box) const;
    /// True when that has just the size at which best fit shows the page in `box`.
    bool isMadeFor(QSize box) const;
    /// Bytes of the pixels and profiles; pixels that both pictures share count once.
    qint64 bytes() const;
};

class ReadAheadCache
{
  public:
    static constexpr qint64 usualCap = qint64(512) << 20;

    qint64 cap() const { return m_cap; }
    /// Pages beyond the new cap (bytes) go, the least recently used first. Returns what went.
    std::vector<ReadyPage> setCap(qint64 bytes);
    /// Bytes that are kept.
    qint64 bytes() const { return m_bytes; }

    /// Keeps `page` in place of whatever stood for the same path and page number. Room is made by dropping
    /// full pictures first, then pages, the least recently used first, but never of the paths in `spared`:
    /// when that is not enough, or `page` alone is beyond the cap, it is not kept. Its own full picture is
    /// only kept when there is room without dropping anything. Returns what went, `page` when that was it.
    std::vector<ReadyPage> insert(ReadyPage page, const QStringList& spared = {});

    /// The page of exactly `key` when it serves `box`, which makes it the most recently used one; else null.
    /// The pointer is good until the next change.
    const ReadyPage* find(const PageKey& key, QSize box);

    /// Takes out what stands for the path and page of `key` as it was before the file changed.
    std::vector<ReadyPage> dropOutdated(const PageKey& key);
    /// Takes out whatever stands for `path`.
    std::vector<ReadyPage> drop(const QString& path);

  private:
    ReadyPage takeOut(size_t index);
    std::vector<ReadyPage> takeOutAll(const std::function<bool(const PageKey&)>& goes);
    /// Bytes that makeRoom() can free at most.
    qint64 freeable(const QStringList& spared) const;
    /// Drops from the least recently used end until `wanted` more bytes fit.
    void makeRoom(qint64 wanted, const QStringList& spared, std::vector<ReadyPage>& gone);

    std::vector<ReadyPage> m_pages; ///< least recently used first; few, so that a search is nothing
    qint64 m_bytes = 0;
    qint64 m_cap = usualCap;
};

/// `picture` as best fit shows it in `box`: area-averaged to fittedSize() of its page, in a format that
/// codecs give. The picture itself when it has that size, or when it is the smaller one. Nothing when
/// `cancel` was set meanwhile or no memory is left.
std::optional<Picture> atShownSize(const Picture& picture, QSize box, const CancelFlag& cancel);

} // namespace quorvia::engine
