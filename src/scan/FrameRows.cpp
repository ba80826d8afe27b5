#include "scan/FrameRows.h"

#include <algorithm>
#include <cstring>

namespace quorvia::scan {

namespace {

constexpr unsigned allColors = 7;

int channelsOf(const FrameFormat& format)
{
    return format.channels == Channels::Rgb ? 3 : 1;
}

int bytesPerPixel(const FrameFormat& format)
{
    return format.channels == Channels::Gray ? 1 : 3;
}

/// Where the first sample of a frame goes within a pixel.
int offsetOf(Channels channels)
{
    switch (channels) {
    case Channels::Green:
        return 1;
    case Channels::Blue:
        return 2;
    default:
        return 0;
    }
}

unsigned colorsOf(Channels channels)
{
    const bool isOne = channels == Channels::Red || channels == Channels::Green || channels == Channels::Blue;
    return isOne ? 1U << offsetOf(channels) : allColors;
}

/// Sample `channel` of pixel `x`. A line of single bits has eight pixels of a channel in each byte, the
/// channels byte by byte; a grey bit that is set is black, a colour's is full.
std::uint8_t sampleAt(const FrameFormat& format, std::span<const std::uint8_t> line, int x, int channel)
{
    constexpr std::uint8_t full = 255;
    const int channels = channelsOf(format);
    const std::size_t index = std::size_t(x) * channels + channel;
    if (format.depth == 8)
        return line[index];
    if (format.depth == 16) {
        std::uint16_t sample = 0;
        std::memcpy(&sample, &line[index * 2], sizeof sample);
        return std::uint8_t((sample * std::uint32_t(full) + 32767) / 65535);
    }
    const std::uint8_t eight = line[std::size_t(x / 8) * channels + channel];
    const bool isSet = eight >> (7 - x % 8) & 1;
    return isSet == (format.channels == Channels::Gray) ? 0 : full;
}

std::string unsoundness(const FrameFormat& format)
{
    if (format.depth != 1 && format.depth != 8 && format.depth != 16)
        return "samples of " + std::to_string(format.depth) + " bits are not known";
    if (format.width < 1 || format.width > largestSide || format.lines > largestSide || format.lines == 0)
        return "no picture has " + std::to_string(format.width) + " x " + std::to_string(format.lines) +
               " pixels";
    if (format.bytesPerLine < sampleBytes(format) || format.bytesPerLine > 8 * (largestSide + 1))
        return "lines of " + std::to_string(format.bytesPerLine) + " bytes do not hold " +
               std::to_string(format.width) + " pixels";
    return {};
}

} // namespace

std::int64_t sampleBytes(const FrameFormat& format)
{
    if (format.depth == 1)
        return (std::int64_t(format.width) + 7) / 8 * channelsOf(format);
    return std::int64_t(format.width) * channelsOf(format) * (format.depth / 8);
}

void convertLine(const FrameFormat& format, std::span<const std::uint8_t> line, std::span<std::uint8_t> row)
{
    const int channels = channelsOf(format);
    const int step = bytesPerPixel(format);
    const int offset = offsetOf(format.channels);
    for (int x = 0; x < format.width; ++x) {
        for (int channel = 0; channel < channels; ++channel)
            row[std::size_t(x) * step + offset + channel] = sampleAt(format, line, x, channel);
    }
}

std::string PictureBuilder::beginFrame(const FrameFormat& format)
{
    if (std::string why = unsoundness(format); !why.empty())
        return why;
    if (m_frames > 0) {
        endFrame();
        if (format.width != m_picture.width || bytesPerPixel(format) != m_picture.bytesPerPixel)
            return "the frames of one picture differ";
    }
    const std::int64_t whole = std::int64_t(format.width) * bytesPerPixel(format) * std::max(format.lines, 1);
    if (whole > m_budget)
        return "the picture would take " + std::to_string(whole) + " bytes";
    m_picture.width = format.width;
    m_picture.bytesPerPixel = bytesPerPixel(format);
    m_format = format;
    m_line.clear();
    m_linesOfFrame = 0;
    m_seen |= colorsOf(format.channels);
    ++m_frames;
    return {};
}

bool PictureBuilder::add(std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty() && !isFull()) {
        const std::size_t missing = std::size_t(m_format.bytesPerLine) - m_line.size();
        const std::span<const std::uint8_t> part = bytes.first(std::min(missing, bytes.size()));
        m_line.insert(m_line.end(), part.begin(), part.end());
        bytes = bytes.subspan(part.size());
        if (m_line.size() == std::size_t(m_format.bytesPerLine) && !takeLine())
            return false;
    }
    return true;
}

bool PictureBuilder::takeLine()
{
    const std::size_t rowBytes = std::size_t(m_picture.width) * m_picture.bytesPerPixel;
    const std::size_t begin = rowBytes * std::size_t(m_linesOfFrame);
    if (m_linesOfFrame >= largestSide || std::int64_t(begin + rowBytes) > m_budget)
        return false;
    if (m_picture.bytes.size() < begin + rowBytes)
        m_picture.bytes.resize(begin + rowBytes);
    convertLine(m_format, m_line, std::span(m_picture.bytes).subspan(begin, rowBytes));
    m_line.clear();
    ++m_linesOfFrame;
    return true;
}

void PictureBuilder::endFrame()
{
    m_shortest = m_shortest < 0 ? m_linesOfFrame : std::min(m_shortest, m_linesOfFrame);
}

double PictureBuilder::progress() const
{
    if (m_format.lines < 1)
        return -1;
    const double ofFrame = double(m_linesOfFrame) / m_format.lines;
    if (colorsOf(m_format.channels) == allColors)
        return ofFrame;
    return std::min((m_frames - 1 + ofFrame) / 3, 1.0);
}

RawPicture PictureBuilder::take(std::string& why)
{
    endFrame();
    if (m_frames == 0 || m_shortest < 1)
        why = "no line of a picture came";
    else if (m_seen != allColors)
        why = "a colour is missing";
    if (!why.empty())
        return {};
    RawPicture picture = std::move(m_picture);
    picture.height = m_shortest;
    picture.bytes.resize(std::size_t(picture.width) * picture.bytesPerPixel * picture.height);
    m_picture = {};
    return picture;
}

} // namespace quorvia::scan
