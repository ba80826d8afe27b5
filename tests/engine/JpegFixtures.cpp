#include "JpegFixtures.h"

#include <jpeglib.h>

#include <cstdio>
#include <cstdlib>

namespace quorvia::test {

namespace {

void setWord(QByteArray& file, qsizetype at, int value)
{
    file[at] = char(value >> 8);
    file[at + 1] = char(value);
}

} // namespace

QByteArray cjpeg(const QByteArray& pnm, const QStringList& options)
{
    return runTool(QStringLiteral("cjpeg"), options, pnm);
}

QByteArray colorJpeg(QSize size, const QStringList& options)
{
    return cjpeg(ppmOf(samplePicture(size)), options);
}

Rgba djpeg(const QByteArray& file, const QStringList& options)
{
    constexpr int warned = 2; // of a file that was cut short
    return fromPnm(
        runTool(QStringLiteral("djpeg"), QStringList{QStringLiteral("-pnm")} + options, file, warned));
}

qsizetype markerAt(const QByteArray& file, uchar code, qsizetype from)
{
    while (from + 4 <= file.size()) {
        if (uchar(file[from]) != 0xff)
            return -1;
        if (uchar(file[from + 1]) == code)
            return from;
        from += 2 + (uchar(file[from + 2]) << 8 | uchar(file[from + 3]));
    }
    return -1;
}

qsizetype frameAt(const QByteArray& file)
{
    for (const int code : {0xc0, 0xc1, 0xc2, 0xc3, 0xc9, 0xca}) {
        if (const qsizetype at = markerAt(file, uchar(code)); at >= 0)
            return at;
    }
    return -1;
}

QByteArray withSize(QByteArray file, int width, int height)
{
    const qsizetype frame = frameAt(file);
    setWord(file, frame + 5, height);
    setWord(file, frame + 7, width);
    return file;
}

QByteArray withoutSegments(QByteArray file, uchar code)
{
    for (qsizetype at = markerAt(file, code); at >= 0; at = markerAt(file, code))
        file.remove(at, 2 + (uchar(file[at + 2]) << 8 | uchar(file[at + 3])));
    return file;
}

QByteArray fourInkJpeg(const Rgba& picture, bool ycck)
{
    jpeg_compress_struct info = {};
    jpeg_error_mgr errors = {};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* memory = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&info, &memory, &length);
    info.image_width = JDIMENSION(picture.size.width());
    info.image_height = JDIMENSION(picture.size.height());
    info.input_components = 4;
    info.in_color_space = JCS_CMYK;
    jpeg_set_defaults(&info);
    jpeg_set_colorspace(&info, ycck ? JCS_YCCK : JCS_CMYK);
    jpeg_set_quality(&info, 95, TRUE);
    jpeg_start_compress(&info, TRUE);
    for (int y = 0; y < picture.size.height(); ++y) {
        JSAMPROW row = const_cast<JSAMPROW>(picture.at(0, y));
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    QByteArray file(reinterpret_cast<const char*>(memory), qsizetype(length));
    std::free(memory);
    return file;
}

} // namespace quorvia::test
