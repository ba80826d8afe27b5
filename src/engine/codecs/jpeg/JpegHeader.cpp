#include "engine/codecs/jpeg/JpegHeader.h"

#include <array>

namespace quorvia::engine {

namespace {

// Bounds for hostile files; real ones have some tens of segments and no stray bytes.
constexpr int maxSegments = 65536;
constexpr qint64 maxStrayBytes = 1 << 20;

constexpr int startOfImage = 0xd8;
constexpr int endOfImage = 0xd9;
constexpr int startOfScan = 0xda;

/// Bytes by offset, read in windows.
class Window
{
  public:
    explicit Window(const ByteSource& source) : m_source(source) {}

    /// The byte at `offset`, -1 past the end.
    int at(qint64 offset)
    {
        if (offset < m_first || offset >= m_first + m_count) {
            m_first = offset;
            m_count = m_source.read(offset, m_bytes.data(), static_cast<qint64>(m_bytes.size()));
            if (m_count <= 0)
                return -1;
        }
        return m_bytes[static_cast<size_t>(offset - m_first)];
    }

    /// The big-endian 16-bit number at `offset`, -1 past the end.
    int wordAt(qint64 offset)
    {
        const int high = at(offset);
        const int low = at(offset + 1);
        return high < 0 || low < 0 ? -1 : high << 8 | low;
    }

  private:
    const ByteSource& m_source;
    std::array<uchar, 4096> m_bytes;
    qint64 m_first = 0;
    qint64 m_count = 0;
};

/// Moves `offset` behind the next marker and returns its code; -1 when there is none.
int nextMarker(Window& window, qint64& offset)
{
    const qint64 last = offset + maxStrayBytes;
    while (offset < last) {
        const int byte = window.at(offset++);
        if (byte < 0)
            return -1;
        if (byte != 0xff)
            continue;
        int code = window.at(offset++);
        while (code == 0xff && offset < last)
            code = window.at(offset++);
        if (code < 0)
            return -1;
        if (code != 0)
            return code;
    }
    return -1;
}

bool isFrameHeader(int code)
{
    // C4, C8 and CC are Huffman tables, a reserved code and arithmetic conditioning.
    return code >= 0xc0 && code <= 0xcf && code != 0xc4 && code != 0xc8 && code != 0xcc;
}

bool standsAlone(int code)
{
    return code == 0x01 || (code >= 0xd0 && code <= startOfImage);
}

Error noFrame()
{
    return Error{ErrorKind::Damaged, QStringLiteral("no frame header before the end of the JPEG header")};
}

} // namespace

Result<JpegFrame> readJpegFrame(const ByteSource& source)
{
    Window window(source);
    qint64 offset = 0;
    for (int segment = 0; segment < maxSegments; ++segment) {
        const int code = nextMarker(window, offset);
        if (code < 0 || code == startOfScan || code == endOfImage)
            return noFrame();
        if (standsAlone(code))
            continue;
        const int length = window.wordAt(offset);
        if (length < 2)
            return noFrame();
        if (isFrameHeader(code)) {
            constexpr int frameLength = 8; // without the components
            const int components = window.at(offset + 7);
            if (length < frameLength || components < 0)
                return noFrame();
            return JpegFrame{code - 0xc0, window.at(offset + 2),
                             QSize(window.wordAt(offset + 5), window.wordAt(offset + 3)), components, offset};
        }
        offset += length;
    }
    return noFrame();
}

} // namespace quorvia::engine
