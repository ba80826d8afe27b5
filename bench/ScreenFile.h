// The screen of an X server that keeps its pixels in a file (Xvfb -fbdir), mapped into memory: looking at it
// costs the server nothing, so that the one who watches slows nobody down.
#pragma once

#include "PictureFinder.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <string>

namespace quorvia::bench {

class ScreenFile
{
  public:
    /// Maps `path`, a window dump with 32 bits a pixel, lowest byte first.
    explicit ScreenFile(const std::string& path)
    {
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat facts = {};
        if (file < 0 || fstat(file, &facts) != 0)
            return;
        m_size = std::size_t(facts.st_size);
        void* mapped = mmap(nullptr, m_size, PROT_READ, MAP_SHARED, file, 0);
        close(file);
        if (mapped == MAP_FAILED)
            return;
        m_bytes = static_cast<const unsigned char*>(mapped);
        readHeader();
    }
    ~ScreenFile()
    {
        if (m_bytes)
            munmap(const_cast<unsigned char*>(m_bytes), m_size);
    }
    ScreenFile(const ScreenFile&) = delete;
    ScreenFile& operator=(const ScreenFile&) = delete;

    /// The pixels as they are now and will be; without pixels when the file cannot be read.
    const ScreenPixels& screen() const { return m_screen; }

  private:
    /// Word `index` of the header, whose words have their highest byte first.
    std::size_t word(std::size_t index) const
    {
        const unsigned char* at = m_bytes + index * 4;
        return std::size_t(at[0]) << 24 | std::size_t(at[1]) << 16 | std::size_t(at[2]) << 8 | at[3];
    }

    void readHeader()
    {
        enum : std::size_t {
            HeaderSize = 0,
            Width = 4,
            Height = 5,
            BitsPerPixel = 11,
            BytesPerLine = 12,
            Colors = 19
        };
        constexpr std::size_t headerWords = 25;
        constexpr std::size_t colorBytes = 12;
        if (m_size < headerWords * 4 || word(BitsPerPixel) != 32)
            return;
        const std::size_t begin = word(HeaderSize) + word(Colors) * colorBytes;
        if (begin % 4 != 0 || begin + word(BytesPerLine) * word(Height) > m_size)
            return;
        m_screen = {reinterpret_cast<const std::uint32_t*>(m_bytes + begin), int(word(Width)),
                    int(word(Height)), int(word(BytesPerLine) / 4)};
    }

    const unsigned char* m_bytes = nullptr;
    std::size_t m_size = 0;
    ScreenPixels m_screen;
};

} // namespace quorvia::bench
