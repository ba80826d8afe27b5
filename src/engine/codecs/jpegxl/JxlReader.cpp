#include "engine/codecs/jpegxl/JxlReader.h"

#include "engine/ColorConversion.h"
#include "engine/Limits.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

/// Bytes that are fed at a time where no pixels are decoded.
qint64 pieceOf(qint64 fileBytes)
{
    return std::clamp<qint64>(fileBytes / 64, 2048, 256 * 1024);
}

/// The same where `bytes` stand for `pixels`: each piece for a quarter of a million or so. Few bytes of many
/// may hold nearly all of the pixels, so that a piece is small however many there are.
qint64 pieceFor(qint64 pixels, qint64 bytes)
{
    constexpr qint64 pixelsAtOnce = qint64(1) << 18;
    constexpr qint64 least = 16; // the library looks at what has come so far anew for each piece
    constexpr qint64 most = 256;
    return std::clamp(bytes / (pixels / pixelsAtOnce + 1), least, most);
}

/// The most bytes that wait for the library to take them.
qint64 mostWaiting()
{
    return std::min(qint64(1) << 30, Limits::machine().maxBytes / 4);
}

JxlColorEncoding srgb(bool grey)
{
    JxlColorEncoding color = {};
    color.color_space = grey ? JXL_COLOR_SPACE_GRAY : JXL_COLOR_SPACE_RGB;
    color.white_point = JXL_WHITE_POINT_D65;
    color.primaries = JXL_PRIMARIES_SRGB;
    color.transfer_function = JXL_TRANSFER_FUNCTION_SRGB;
    color.rendering_intent = JXL_RENDERING_INTENT_RELATIVE;
    return color;
}

bool isSrgb(const JxlColorEncoding& color)
{
    return color.white_point == JXL_WHITE_POINT_D65 &&
           color.transfer_function == JXL_TRANSFER_FUNCTION_SRGB &&
           (color.color_space == JXL_COLOR_SPACE_GRAY ||
            (color.color_space == JXL_COLOR_SPACE_RGB && color.primaries == JXL_PRIMARIES_SRGB));
}

} // namespace

JxlReader::JxlReader(const JxlLibrary& library, const ByteSource& source, int events)
    : m_library(library), m_source(source), m_decoder(library.Create(nullptr), library.Destroy)
{
    if (!m_decoder)
        return;
    library.SubscribeEvents(get(), events);
    library.SetUnpremultiplyAlpha(get(), JXL_TRUE);
}

void JxlReader::tellLayers()
{
    m_library.SetCoalescing(get(), JXL_FALSE);
}

JxlFrameHeader JxlReader::frame() const
{
    JxlFrameHeader header = {};
    m_library.GetFrameHeader(get(), &header);
    return header;
}

qint64 JxlReader::position()
{
    const size_t left = m_library.ReleaseInput(get());
    m_library.SetInput(get(), m_bytes.data() + (m_bytes.size() - left), left);
    return m_offset - qint64(left);
}

void JxlReader::feedFor(std::vector<JxlStretch> stretches)
{
    m_stretches = std::move(stretches);
    m_offset -= qint64(takeBack()); // to be fed anew, in smaller pieces
    m_bytes.clear();
}

size_t JxlReader::takeBack()
{
    const size_t left = m_library.ReleaseInput(get());
    m_bytes.erase(m_bytes.begin(), m_bytes.end() - std::ptrdiff_t(left));
    return left;
}

qint64 JxlReader::nextPiece() const
{
    if (m_stretches.empty())
        return pieceOf(m_source.size());
    const auto next =
        std::upper_bound(m_stretches.begin(), m_stretches.end(), m_offset,
                         [](qint64 offset, const JxlStretch& stretch) { return offset < stretch.begin; });
    const JxlStretch& here = *std::prev(next);
    const qint64 end = next == m_stretches.end() ? m_source.size() : next->begin;
    const qint64 piece = pieceFor(here.pixels, end - here.begin);
    return end > m_offset ? std::min(piece, end - m_offset) : piece;
}

std::optional<JxlEnd> JxlReader::feed()
{
    const size_t left = takeBack();
    if (qint64(left) > mostWaiting())
        return JxlEnd::Broken;
    const qint64 piece = nextPiece();
    m_bytes.resize(left + size_t(piece));
    const qint64 got = std::max<qint64>(m_source.read(m_offset, m_bytes.data() + left, piece), 0);
    m_offset += got;
    m_bytes.resize(left + size_t(got));
    if (got == 0)
        return JxlEnd::Cut;
    m_library.SetInput(get(), m_bytes.data(), m_bytes.size());
    return std::nullopt;
}

JxlEnd JxlReader::run(const CancelFlag& cancel, JxlDecoderStatus& event)
{
    for (;;) {
        if (cancel)
            return JxlEnd::Cancelled;
        event = m_library.ProcessInput(get());
        switch (event) {
        case JXL_DEC_SUCCESS:
            return JxlEnd::Done;
        case JXL_DEC_ERROR:
            return JxlEnd::Broken;
        case JXL_DEC_NEED_MORE_INPUT:
            if (const auto end = feed())
                return *end;
            break;
        default:
            return JxlEnd::Event;
        }
    }
}

JxlBasicInfo JxlReader::info() const
{
    JxlBasicInfo info = {};
    m_library.GetBasicInfo(get(), &info);
    return info;
}

bool JxlReader::hasInk(const JxlBasicInfo& info) const
{
    for (size_t i = 0; i < info.num_extra_channels; ++i) {
        JxlExtraChannelInfo channel = {};
        if (m_library.GetExtraChannelInfo(get(), i, &channel) == JXL_DEC_SUCCESS &&
            channel.type == JXL_CHANNEL_BLACK)
            return true;
    }
    return false;
}

QByteArray JxlReader::settleColors(const JxlBasicInfo& info)
{
    constexpr JxlColorProfileTarget target = JXL_COLOR_PROFILE_TARGET_DATA;
    if (!info.uses_original_profile) {
        const JxlColorEncoding wanted = srgb(info.num_color_channels == 1);
        m_library.SetPreferredColorProfile(get(), &wanted);
    }
    JxlColorEncoding color = {};
    if (m_library.GetColorAsEncodedProfile(get(), nullptr, target, &color) == JXL_DEC_SUCCESS &&
        isSrgb(color))
        return {};
    size_t length = 0;
    if (m_library.GetICCProfileSize(get(), nullptr, target, &length) != JXL_DEC_SUCCESS ||
        length > size_t(maxProfileBytes))
        return {};
    QByteArray profile(qsizetype(length), '\0');
    auto* bytes = reinterpret_cast<uint8_t*>(profile.data());
    if (m_library.GetColorAsICCProfile(get(), nullptr, target, bytes, length) != JXL_DEC_SUCCESS)
        return {};
    return profile;
}

} // namespace quorvia::engine
