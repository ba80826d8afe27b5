#include "engine/ColorConversion.h"

#include "engine/Bands.h"
#include "engine/ColorTables.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <mutex>
#include <new>

namespace quorvia::engine {

namespace {

constexpr quint32 tag(const char (&name)[5])
{
    return quint32(uchar(name[0])) << 24 | quint32(uchar(name[1])) << 16 | quint32(uchar(name[2])) << 8 |
           quint32(uchar(name[3]));
}

quint32 numberAt(const QByteArray& bytes, qsizetype offset)
{
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

/// Without looking for one made before; null for none.
std::shared_ptr<const ColorConversion> make(const QByteArray& profile)
{
    const auto model = colorModelOf(profile);
    if (!model)
        return nullptr;
    try {
        const auto sampler = ProfileSampler::open(profile, *model);
        return sampler ? makeConversion(*sampler, *model) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// The last conversions made, profiles without one among them.
class Kept
{
  public:
    std::optional<std::shared_ptr<const ColorConversion>> find(const QByteArray& profile)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
            return entry.profile.isSharedWith(profile) || entry.profile == profile;
        });
        if (found == m_entries.end())
            return {};
        std::rotate(m_entries.begin(), found, found + 1); // the last used stands first
        return m_entries.front().conversion;
    }

    void add(const QByteArray& profile, const std::shared_ptr<const ColorConversion>& conversion)
    {
        const std::lock_guard lock(m_mutex);
        m_entries.back() = {profile, conversion};
        std::rotate(m_entries.begin(), m_entries.end() - 1, m_entries.end());
    }

  private:
    struct Entry
    {
        QByteArray profile;
        std::shared_ptr<const ColorConversion> conversion;
    };
    std::mutex m_mutex;
    std::array<Entry, 4> m_entries;
};

bool isNeutral(const QList<QRgb>& table)
{
    return std::all_of(table.begin(), table.end(), [](QRgb color) {
        return qRed(color) == qGreen(color) && qGreen(color) == qBlue(color);
    });
}

/// Calls `row(bits)` for the first `rows` rows of `image`, which is not shared, on all cores; about `cost` ns
/// a pixel.
template <class Row>
void forRows(QImage& image, int rows, int cost, const Row& row)
{
    uchar* const bits = image.bits();
    const qsizetype stride = image.bytesPerLine();
    const int bands = bandCount(rows, qint64(image.width()) * rows * cost);
    inBands(rows, bands, [&](int, int from, int to) {
        for (int y = from; y < to; ++y)
            row(bits + y * stride);
    });
}

QImage convertedGray(QImage image, const QList<QRgb>& table)
{
    if (!isNeutral(table)) {
        image.reinterpretAsFormat(QImage::Format_Indexed8);
        image.setColorTable(table);
        return image;
    }
    if (!image.bits())
        return {};
    const int width = image.width();
    forRows(image, image.height(), 1, [&table, width](uchar* row) {
        std::transform(row, row + width, row, [&table](uchar value) { return uchar(qRed(table[value])); });
    });
    return image;
}

} // namespace

std::optional<ColorModel> colorModelOf(const QByteArray& profile)
{
    constexpr qsizetype headerBytes = 128;
    if (profile.size() < headerBytes || profile.size() > maxProfileBytes ||
        numberAt(profile, 36) != tag("acsp"))
        return {};
    switch (numberAt(profile, 12)) {
    case tag("scnr"):
    case tag("mntr"):
    case tag("prtr"):
    case tag("spac"):
        break;
    default:
        return {};
    }
    switch (numberAt(profile, 16)) {
    case tag("GRAY"):
        return ColorModel::Gray;
    case tag("RGB "):
        return ColorModel::Rgb;
    case tag("CMYK"):
        return ColorModel::Cmyk;
    default:
        return {};
    }
}

ColorConversion::~ColorConversion() = default;

void ColorConversion::convert(QRgb*, qsizetype) const {}

void ColorConversion::convertInks(const uchar*, QRgb*, qsizetype, bool) const {}

std::shared_ptr<const ColorConversion> ColorConversion::of(const QByteArray& profile)
{
    if (profile.isEmpty())
        return nullptr;
    static Kept kept;
    if (const auto known = kept.find(profile))
        return *known;
    auto made = make(profile);
    kept.add(profile, made);
    return made;
}

QList<QRgb> ColorConversion::grayTable() const
{
    QList<QRgb> grays;
    for (int i = 0; i < 256; ++i)
        grays.append(qRgb(i, i, i));
    return converted(std::move(grays));
}

QList<QRgb> ColorConversion::converted(QList<QRgb> palette) const
{
    convert(palette.data(), palette.size());
    return palette;
}

QImage converted(QImage image, const ColorConversion& conversion)
{
    switch (image.format()) {
    case QImage::Format_Mono:
    case QImage::Format_Indexed8:
        image.setColorTable(conversion.converted(image.colorTable()));
        return image;
    case QImage::Format_Grayscale8:
        return convertedGray(std::move(image), conversion.grayTable());
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
        break;
    default:
        return image;
    }
    if (!image.bits())
        return {};
    constexpr int cost = 5;
    const int width = image.width();
    forRows(image, image.height(), cost,
            [&conversion, width](uchar* row) { conversion.convert(reinterpret_cast<QRgb*>(row), width); });
    return image;
}

QImage toSrgb(QImage image, const QByteArray& profile)
{
    const auto conversion = ColorConversion::of(profile);
    if (!conversion || conversion->model() == ColorModel::Cmyk)
        return image;
    return converted(std::move(image), *conversion);
}

bool convertInks(QImage& image, int rows, const ColorConversion& conversion, bool inverted,
                 const CancelFlag& cancel)
{
    constexpr int cost = 20;
    const int width = image.width();
    forRows(image, rows, cost, [&](uchar* row) {
        if (!cancel.load(std::memory_order_relaxed))
            conversion.convertInks(row, reinterpret_cast<QRgb*>(row), width, inverted);
    });
    return !cancel;
}

} // namespace quorvia::engine
