#include "StbReader.h"

#include <QTest>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wall"
#pragma GCC diagnostic ignored "-Wextra"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wunused-function"
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PIC
#define STBI_NO_STDIO
#include <stb/stb_image.h>
#pragma GCC diagnostic pop

namespace quorvia::test {

Rgba readByStb(const QByteArray& file)
{
    int width = 0;
    int height = 0;
    int channels = 0;
    stbi_uc* pixels = stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(file.constData()),
                                            int(file.size()), &width, &height, &channels, STBI_rgb_alpha);
    if (!pixels) {
        QTest::qFail(stbi_failure_reason(), __FILE__, __LINE__);
        return {};
    }
    Rgba picture{QSize(width, height),
                 QByteArray(reinterpret_cast<const char*>(pixels), qsizetype(4) * width * height)};
    stbi_image_free(pixels);
    return picture;
}

} // namespace quorvia::test
