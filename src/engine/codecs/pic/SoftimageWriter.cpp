#include "engine/codecs/pic/SoftimageWriter.h"

#include "engine/codecs/ImageRows.h"
#include "engine/codecs/PixelRuns.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr int longestSide = 65535;
constexpr int longestShortRun = 128;
constexpr char longRun = char(128);

void appendWord(QByteArray& out, int value)
{
    out.append(char(value >> 8));
    out.append(char(value & 255));
}

QByteArray headerOf(QSize size, bool alpha)
{
    constexpr int commentLength = 80;
    QByteArray out = QByteArrayLiteral("\x53\x80\xf6\x34\x40\x6d\x70\xa4"); // the mark; version 3.71
    out.append(commentLength, '\0');
    out.append("PICT");
    appendWord(out, size.width());
    appendWord(out, size.height());
    out.append("\x3f\x80\0\0", 4); // square pixels: 1.0
    appendWord(out, 3);            // whole frames
    appendWord(out, 0);
    if (alpha)
        out.append("\1\x8\2\xe0\0\x8\2\x10", 8); // red, green, blue; then alpha
    else
        out.append("\0\x8\2\xe0", 4);
    return out;
}

void appendRuns(QByteArray& out, const QByteArray& row, int bytes)
{
    const PixelRunRules rules = byteCodedRuns(bytes, longestSide, longestShortRun);
    forEachPixelRun(row, rules, rawAppender(out, bytes), [&](const char* pixel, int count) {
        if (count <= longestShortRun) {
            out.append(char(127 + count));
        } else {
            out.append(longRun);
            appendWord(out, count);
        }
        out.append(pixel, bytes);
    });
}

void appendRow(QByteArray& out, const QRgb* pixels, int width, bool alpha, QByteArray& scratch)
{
    scratch.clear();
    for (int x = 0; x < width; ++x) {
        scratch.append(char(qRed(pixels[x])));
        scratch.append(char(qGreen(pixels[x])));
        scratch.append(char(qBlue(pixels[x])));
    }
    appendRuns(out, scratch, 3);
    if (!alpha)
        return;
    scratch.clear();
    for (int x = 0; x < width; ++x)
        scratch.append(char(qAlpha(pixels[x])));
    appendRuns(out, scratch, 1);
}

} // namespace

Result<QByteArray> writeSoftimage(const QImage& image)
{
    if (image.isNull() || std::max(image.width(), image.height()) > longestSide)
        return Error{ErrorKind::Unsupported, QStringLiteral("no Softimage picture holds %1 x %2 pixels")
                                                 .arg(image.width())
                                                 .arg(image.height())};
    const bool alpha = image.hasAlphaChannel();
    const QImage::Format format = alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    QByteArray out = headerOf(image.size(), alpha);
    QByteArray scratch;
    for (int first = 0; first < image.height(); first += stripRows) {
        const QImage rows = rowsAs(image, first, std::min(stripRows, image.height() - first), format);
        if (rows.isNull())
            return Error{ErrorKind::TooLarge, QStringLiteral("no memory to write the picture")};
        for (int y = 0; y < rows.height(); ++y)
            appendRow(out, reinterpret_cast<const QRgb*>(rows.constScanLine(y)), rows.width(), alpha,
                      scratch);
    }
    return out;
}

} // namespace quorvia::engine
