#include "engine/codecs/losslessjpeg/LosslessJpegEncode.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/losslessjpeg/LosslessJpegHuffman.h"
#include "engine/codecs/losslessjpeg/LosslessJpegProfile.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace quorvia::engine {

namespace {

constexpr int longestSide = 65535;
constexpr int startValue = 128; // predicts the first sample of 8 bits
constexpr int predictors = 7;

/// The components of a row, each `width` samples.
using SampleRow = std::vector<std::vector<uchar>>;

/// Gives the rows of an image from top to bottom as components.
class SampleRows
{
  public:
    SampleRows(const QImage& image, bool gray) : m_image(image), m_gray(gray) {}

    int components() const { return m_gray ? 1 : 3; }
    /// Row `y`; false when there is no memory. Cheap in order, a strip is converted at a time.
    bool read(int y, SampleRow& row);

  private:
    bool convertStrip(int y);

    const QImage& m_image;
    bool m_gray;
    QImage m_strip;
    int m_first = -stripRows;
};

bool SampleRows::convertStrip(int y)
{
    const bool alpha = m_image.hasAlphaChannel();
    const QImage::Format format = m_gray  ? QImage::Format_Grayscale8
                                  : alpha ? QImage::Format_ARGB32
                                          : QImage::Format_RGB32;
    m_first = y - y % stripRows;
    m_strip = rowsAs(m_image, m_first, std::min(stripRows, m_image.height() - m_first), format);
    if (!m_gray && alpha)
        m_strip = overWhite(std::move(m_strip));
    return !m_strip.isNull();
}

bool SampleRows::read(int y, SampleRow& row)
{
    if ((y < m_first || y >= m_first + stripRows) && !convertStrip(y))
        return false;
    const uchar* line = m_strip.constScanLine(y - m_first);
    const auto width = size_t(m_image.width());
    row.resize(size_t(components()));
    for (std::vector<uchar>& samples : row)
        samples.resize(width);
    if (m_gray) {
        std::copy_n(line, width, row[0].begin());
        return true;
    }
    const auto* pixels = reinterpret_cast<const QRgb*>(line);
    for (size_t x = 0; x < width; ++x) {
        row[0][x] = uchar(qRed(pixels[x]));
        row[1][x] = uchar(qGreen(pixels[x]));
        row[2][x] = uchar(qBlue(pixels[x]));
    }
    return true;
}

/// What T.81, table H.1 predicts from the samples on the left, above, and above on the left.
int prediction(int predictor, int left, int above, int aboveLeft)
{
    switch (predictor) {
    case 1:
        return left;
    case 2:
        return above;
    case 3:
        return aboveLeft;
    case 4:
        return left + above - aboveLeft;
    case 5:
        return left + ((above - aboveLeft) >> 1);
    case 6:
        return above + ((left - aboveLeft) >> 1);
    default:
        return (left + above) >> 1;
    }
}

/// The difference of sample `x` of a row from its prediction; `above` is empty for the first row.
int differenceAt(int predictor, const std::vector<uchar>& here, const std::vector<uchar>& above, size_t x)
{
    if (above.empty())
        return here[x] - (x == 0 ? startValue : here[x - 1]);
    if (x == 0)
        return here[0] - above[0];
    return here[x] - prediction(predictor, here[x - 1], above[x], above[x - 1]);
}

/// The predictor that leaves the fewest bits in some rows all over the picture; 0 when there is no memory.
int bestPredictor(SampleRows& rows, QSize size)
{
    constexpr int looks = 32;
    std::array<qint64, predictors + 1> bits = {};
    SampleRow above;
    SampleRow here;
    const int step = std::max(2, size.height() / looks);
    for (int y = 1; y < size.height(); y += step) {
        if (!rows.read(y - 1, above) || !rows.read(y, here))
            return 0;
        for (size_t i = 0; i < here.size(); ++i) {
            for (size_t x = 1; x < here[i].size(); ++x) {
                for (int predictor = 1; predictor <= predictors; ++predictor)
                    bits[size_t(predictor)] += jpegCategory(differenceAt(predictor, here[i], above[i], x));
            }
        }
    }
    return int(std::min_element(bits.begin() + 1, bits.end()) - bits.begin());
}

/// Calls `take(component, difference)` for every sample in the order of an interleaved scan; false when there
/// is no memory.
template <class Take>
bool forEachDifference(SampleRows& rows, QSize size, int predictor, const Take& take)
{
    SampleRow above(size_t(rows.components()));
    SampleRow here;
    for (int y = 0; y < size.height(); ++y) {
        if (!rows.read(y, here))
            return false;
        for (size_t x = 0; x < size_t(size.width()); ++x) {
            for (size_t i = 0; i < here.size(); ++i)
                take(i, differenceAt(predictor, here[i], above[i], x));
        }
        std::swap(above, here);
    }
    return true;
}

/// Appends bits, the highest first, and a zero behind each byte FF.
class BitWriter
{
  public:
    explicit BitWriter(QByteArray& out) : m_out(out) {}

    void put(unsigned value, int count)
    {
        m_bits = m_bits << count | value;
        m_count += count;
        while (m_count >= 8) {
            m_count -= 8;
            append(char(m_bits >> m_count & 255));
        }
    }
    /// Fills the last byte with ones.
    void finish()
    {
        if (m_count > 0)
            put((1U << (8 - m_count)) - 1, 8 - m_count);
    }

  private:
    void append(char byte)
    {
        m_out.append(byte);
        if (byte == char(0xff))
            m_out.append('\0');
    }

    QByteArray& m_out;
    quint64 m_bits = 0;
    int m_count = 0;
};

void appendSegment(QByteArray& out, char code, const QByteArray& body)
{
    const auto length = body.size() + 2;
    out.append(char(0xff));
    out.append(code);
    out.append(char(length >> 8));
    out.append(char(length & 255));
    out.append(body);
}

QByteArray frameBody(QSize size, int components)
{
    QByteArray body(1, 8); // bits a sample
    for (const int side : {size.height(), size.width()}) {
        body.append(char(side >> 8));
        body.append(char(side & 255));
    }
    body.append(char(components));
    for (int i = 1; i <= components; ++i) {
        body.append(char(i));
        body.append("\x11", 2); // one sample each way; no quantisation table
    }
    return body;
}

QByteArray tableBody(int index, const HuffmanSpec& spec)
{
    QByteArray body(1, char(index));
    for (const int count : spec.counts)
        body.append(char(count));
    for (const uchar value : spec.values)
        body.append(char(value));
    return body;
}

QByteArray scanBody(int components, int predictor)
{
    QByteArray body(1, char(components));
    for (int i = 0; i < components; ++i) {
        body.append(char(i + 1));
        body.append(char(i << 4)); // its table
    }
    body.append(char(predictor));
    body.append(2, '\0'); // no end of a band, no point transform
    return body;
}

void putDifference(BitWriter& bits, const HuffmanCode& code, int difference, int category)
{
    bits.put(unsigned(code.code), code.length);
    const int rest = difference < 0 ? difference - 1 : difference; // its lower bits tell which one it is
    bits.put(unsigned(rest) & ((1U << category) - 1), category);
}

bool isGrayByFormat(const QImage& image)
{
    if (image.format() == QImage::Format_Grayscale16)
        return true;
    return image.depth() <= 8 && image.format() != QImage::Format_Alpha8 && image.allGray() &&
           !image.hasAlphaChannel();
}

} // namespace

Result<QByteArray> encodeLosslessJpeg(const QImage& image, const QByteArray& profile)
{
    if (image.isNull() || std::max(image.width(), image.height()) > longestSide)
        return Error{ErrorKind::Unsupported,
                     QStringLiteral("no JPEG holds %1 x %2 pixels").arg(image.width()).arg(image.height())};
    const bool gray = isGrayByFormat(image) && !isProfileFor(profile, false);
    SampleRows rows(image, gray);
    const int components = rows.components();
    const int predictor = bestPredictor(rows, image.size());
    std::vector<std::array<qint64, jpegCategories>> counts(size_t(components),
                                                           std::array<qint64, jpegCategories>{});
    const bool counted =
        predictor != 0 &&
        forEachDifference(rows, image.size(), predictor, [&](size_t component, int difference) {
            ++counts[component][size_t(jpegCategory(difference))];
        });
    if (!counted)
        return noMemoryError();

    QByteArray out = QByteArrayLiteral("\xff\xd8");
    if (components == 3)
        appendSegment(out, char(0xee), QByteArray("Adobe\0\x64\0\0\0\0\0", 12)); // version 100, no transform
    if (isProfileFor(profile, gray)) {
        for (const QByteArray& piece : profilePieces(profile))
            appendSegment(out, char(0xe2), piece);
    }
    appendSegment(out, char(0xc3), frameBody(image.size(), components));
    std::vector<std::array<HuffmanCode, jpegCategories>> codes;
    for (int i = 0; i < components; ++i) {
        const HuffmanSpec spec = bestHuffmanSpec(counts[size_t(i)]);
        appendSegment(out, char(0xc4), tableBody(i, spec));
        codes.push_back(huffmanCodes(spec));
    }
    appendSegment(out, char(0xda), scanBody(components, predictor));
    BitWriter bits(out);
    const bool written =
        forEachDifference(rows, image.size(), predictor, [&](size_t component, int difference) {
            const int category = jpegCategory(difference);
            putDifference(bits, codes[component][size_t(category)], difference, category);
        });
    if (!written)
        return noMemoryError();
    bits.finish();
    out.append("\xff\xd9", 2);
    return out;
}

} // namespace quorvia::engine
