// From the bytes of a scanner's frames to the rows of a picture with 8 bits a sample. Pure arithmetic; the
// dear thing is the picture, which is held whole and never becomes larger than the budget.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quorvia::scan {

/// What one frame brings of a picture.
enum class Channels { Gray, Rgb, Red, Green, Blue };

struct FrameFormat
{
    Channels channels = Channels::Gray;
    int depth = 8; ///< bits a sample: 1, 8 or 16
    int width = 0; ///< pixels
    int bytesPerLine = 0;
    int lines = -1; ///< -1: not known before the end
};

/// The most pixels that a side may have: as many as fit into the JPEG file that a scan becomes.
inline constexpr int largestSide = 65500;

/// Bytes of a line of `format` that hold samples; the rest of a line is padding.
std::int64_t sampleBytes(const FrameFormat& format);

/// Converts one line of a frame, which has bytesPerLine bytes, into its place in `row`: 1 byte a pixel for
/// grey, else 3, of which a frame of one colour fills its own. Samples of 16 bits are in the machine's order.
void convertLine(const FrameFormat& format, std::span<const std::uint8_t> line, std::span<std::uint8_t> row);

/// A picture as it goes into a file: rows from the top, 1 or 3 bytes a pixel.
struct RawPicture
{
    int width = 0;
    int height = 0;
    int bytesPerPixel = 1;
    std::vector<std::uint8_t> bytes;
};

/// Puts a picture together from one frame, or from three of one colour each.
class PictureBuilder
{
  public:
    /// The picture may take `budget` bytes.
    explicit PictureBuilder(std::int64_t budget) : m_budget(budget) {}

    /// Begins the next frame. Why it cannot be taken; empty when it can.
    std::string beginFrame(const FrameFormat& format);
    /// Takes the next bytes of the frame, cut anywhere. False when the picture becomes too large. What comes
    /// beyond the number of lines that was told is dropped.
    bool add(std::span<const std::uint8_t> bytes);
    /// How much of the picture is there, 0 to 1; below 0 while its number of lines is not known.
    double progress() const;
    /// The picture of the frames so far, as high as the shortest of them; a line that is not whole counts for
    /// nothing. `why` tells what is missing, and the picture is empty then.
    RawPicture take(std::string& why);

  private:
    bool isFull() const { return m_format.lines >= 0 && m_linesOfFrame >= m_format.lines; }
    bool takeLine();
    void endFrame();

    std::int64_t m_budget;
    FrameFormat m_format;
    RawPicture m_picture;
    std::vector<std::uint8_t> m_line; ///< what has come of the line in hand
    int m_linesOfFrame = 0;
    int m_shortest = -1; ///< lines of the frame that has fewest
    unsigned m_seen = 0; ///< a bit a colour
    int m_frames = 0;
};

} // namespace quorvia::scan
