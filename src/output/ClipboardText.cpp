#include "output/ClipboardText.h"

#include "engine/Limits.h"
#include "output/ClipboardLayout.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quorvia::output {

namespace {

constexpr QSize aroundText(200, 200); // twips that the picture has beyond its text
constexpr int lineFlags = Qt::TextSingleLine | Qt::TextExpandTabs;

bool endsLine(QChar letter)
{
    return letter == u'\n' || letter == u'\r' || letter == QChar::LineSeparator ||
           letter == QChar::ParagraphSeparator;
}

/// Where the line after the one that ends at `end` begins.
qsizetype nextLine(const QString& text, qsizetype end)
{
    const bool isPair = end + 1 < text.size() && text[end] == u'\r' && text[end + 1] == u'\n';
    return end + (isPair ? 2 : 1);
}

/// An image without pixels worth mention, for the measures of text as images of `ratio` print it.
QImage measure(double ratio)
{
    QImage image(1, 1, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    return image;
}

double widestOf(const QStringList& lines, const QFontMetricsF& metrics)
{
    double widest = 0;
    for (const QString& line : lines)
        widest = std::max(widest, metrics.size(lineFlags, line).width());
    return widest;
}

void print(QImage& image, const QStringList& lines, const QFont& font, double lineHeight)
{
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::black);
    QRectF place(0, 0, image.width() / image.devicePixelRatio(), lineHeight);
    for (const QString& line : lines) {
        painter.drawText(place, lineFlags | Qt::TextDontClip | Qt::AlignLeft | Qt::AlignAbsolute, line);
        place.translate(0, lineHeight);
    }
}

} // namespace

bool isClipboardText(const QString& text)
{
    return std::any_of(text.begin(), text.end(), [](QChar letter) { return !letter.isSpace(); });
}

TextBounds TextBounds::machine()
{
    constexpr int bytesPerPixel = 4;
    const engine::Limits limits = engine::Limits::machine();
    TextBounds bounds;
    bounds.maxSide = limits.maxSide;
    bounds.maxPixels = std::min(bounds.maxPixels, limits.maxBytes / bytesPerPixel);
    return bounds;
}

QStringList printedLines(const QString& text, int lineHeight, const TextBounds& bounds, bool& cut)
{
    QStringList lines;
    const qsizetype most = std::max(1, bounds.maxSide / std::max(lineHeight, 1));
    qint64 letters = bounds.maxLetters;
    qsizetype begin = 0;
    cut = false;
    while (begin <= text.size()) {
        if (lines.size() == most || letters <= 0) {
            cut = true;
            break;
        }
        const auto from = text.begin() + begin;
        const qsizetype length = std::find_if(from, text.end(), endsLine) - from;
        // No letter is narrower than a pixel, but for those that go with another one.
        const qsizetype taken = std::min({length, qsizetype(bounds.maxSide), qsizetype(letters)});
        cut = cut || taken < length;
        lines.append(text.mid(begin, taken));
        letters -= taken + 1;
        begin = nextLine(text, begin + length);
    }
    return lines;
}

PrintedText printText(const QString& text, const QFont& font, double ratio, const TextBounds& bounds)
{
    const QImage device = measure(ratio);
    const QFont printed(font, &device);
    const QFontMetricsF metrics(printed, &device);
    const double lineHeight = std::ceil(metrics.lineSpacing());
    PrintedText result;
    const QStringList lines = printedLines(text, int(std::ceil(lineHeight * ratio)), bounds, result.cut);
    const QSizeF inside(std::ceil(widestOf(lines, metrics) * ratio),
                        std::ceil(lineHeight * double(lines.size()) * ratio));
    const QSize whole = inside.toSize() + devicePixels(aroundText, ratio);
    QSize size = whole.boundedTo(QSize(bounds.maxSide, bounds.maxSide));
    size.setHeight(
        int(std::min<qint64>(size.height(), std::max<qint64>(1, bounds.maxPixels / size.width()))));
    result.cut = result.cut || size != whole;
    result.image = QImage(size, QImage::Format_RGB32);
    if (result.image.isNull())
        return result;
    result.image.setDevicePixelRatio(ratio);
    print(result.image, lines, printed, lineHeight);
    result.image.setDevicePixelRatio(1);
    return result;
}

} // namespace quorvia::output
