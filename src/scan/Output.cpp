#include "scan/Output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace quorvia::scan {

std::string escaped(std::string_view text)
{
    std::string field;
    for (const char c : text) {
        switch (c) {
        case '\\':
            field += "\\\\";
            break;
        case '\t':
            field += "\\t";
            break;
        case '\n':
            field += "\\n";
            break;
        case '\r':
            field += "\\r";
            break;
        default:
            field += c;
        }
    }
    return field;
}

std::string pnmHeader(const RawPicture& picture)
{
    return std::string(picture.bytesPerPixel == 1 ? "P5\n" : "P6\n") + std::to_string(picture.width) + ' ' +
           std::to_string(picture.height) + "\n255\n";
}

std::string writePnm(const RawPicture& picture, const std::string& path)
{
    std::FILE* const file = std::fopen(path.c_str(), "wbe");
    if (!file)
        return path + ": " + std::strerror(errno);
    const std::string header = pnmHeader(picture);
    bool isWritten = std::fwrite(header.data(), 1, header.size(), file) == header.size() &&
                     std::fwrite(picture.bytes.data(), 1, picture.bytes.size(), file) == picture.bytes.size();
    int error = errno;
    if (std::fclose(file) != 0 && isWritten) {
        isWritten = false;
        error = errno;
    }
    if (isWritten)
        return {};
    std::remove(path.c_str());
    return path + ": " + std::strerror(error);
}

} // namespace quorvia::scan
