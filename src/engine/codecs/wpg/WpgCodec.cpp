#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/OnePage.h"
#include "engine/codecs/PageNumber.h"
#include "engine/codecs/wpg/WpgBitmap.h"
#include "engine/codecs/wpg/WpgCanvas.h"
#include "engine/codecs/wpg/WpgDrawing1.h"
#include "engine/codecs/wpg/WpgDrawing2.h"
#include "engine/codecs/wpg/WpgPalette.h"
#include "engine/codecs/wpg/WpgRecords.h"
#include "engine/codecs/wpg/WpgWriter.h"
#include "engine/Toolkit.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

/// A file of bitmaps and nothing else: each one is a page, pixel for pixel.
class WpgBitmapDecoder final : public Decoder
{
  public:
    WpgBitmapDecoder(std::shared_ptr<ByteSource> source, WpgFile file, std::vector<size_t> bitmaps)
        : m_source(std::move(source)), m_file(std::move(file)), m_bitmaps(std::move(bitmaps))
    {
    }

    int pageCount() override { return int(m_bitmaps.size()); }

    Result<PageHeader> header(int page) override
    {
        if (const Status there = pageAmong(page, pageCount()); !there)
            return there.error();
        const Result<WpgBitmap> bitmap = readWpgBitmap(*m_source, m_file, recordOf(page));
        if (!bitmap)
            return bitmap.error();
        return PageHeader{bitmap->size(), bitmap->bitsPerPixel};
    }

    Result<Picture> decode(int page, QSize, const CancelFlag& cancel) override
    {
        if (const Status there = pageAmong(page, pageCount()); !there)
            return there.error();
        const size_t record = recordOf(page);
        const Result<WpgBitmap> bitmap = readWpgBitmap(*m_source, m_file, record);
        if (!bitmap)
            return bitmap.error();
        return decodeWpgBitmap(*m_source, *bitmap, m_palettes.at(m_file, record, *m_source), cancel);
    }

  private:
    size_t recordOf(int page) const { return m_bitmaps[size_t(page - 1)]; }

    std::shared_ptr<ByteSource> m_source;
    WpgFile m_file;
    std::vector<size_t> m_bitmaps; ///< records
    WpgPalettes m_palettes;
};

/// A file with lines, areas or text: one page, drawn.
class WpgDrawingDecoder final : public OnePageDecoder
{
  public:
    WpgDrawingDecoder(std::shared_ptr<ByteSource> source, WpgFile file, QSizeF inches)
        : m_source(std::move(source)), m_file(std::move(file)), m_inches(inches)
    {
    }

  private:
    Result<PageHeader> facts() override
    {
        constexpr int drawnBits = 24;
        return PageHeader{WpgCanvas::pixelsFor(m_inches), drawnBits};
    }

    Result<Picture> decodePage(const PageHeader& facts, QSize, const CancelFlag& cancel) override
    {
        if (!waitForToolkit(cancel) && !cancel)
            return Error{ErrorKind::Unsupported, QStringLiteral("nothing can be drawn without a screen")};
        Picture picture = blank(facts, QImage::Format_RGB32);
        if (picture.image.isNull())
            return noMemoryError();
        const bool drawn = draw(picture, cancel);
        if (cancel)
            return cancelledError();
        if (!drawn)
            return Error{ErrorKind::Damaged, QStringLiteral("the drawing shows nothing")};
        return picture;
    }

    bool draw(Picture& picture, const CancelFlag& cancel) const
    {
        WpgCanvas canvas(picture.image, m_inches, cancel);
        picture.complete = m_file.whole;
        if (m_file.version == 1)
            playWpg1(m_file, *m_source, canvas);
        else
            picture.complete = playWpg2(m_file, *m_source, canvas) && picture.complete;
        picture.complete = picture.complete && !canvas.exhausted();
        return canvas.drawn() > 0;
    }

    std::shared_ptr<ByteSource> m_source;
    WpgFile m_file;
    QSizeF m_inches;
};

class WpgCodec final : public Codec
{
  public:
    WpgCodec() : Codec(QStringLiteral("WPG"), {QStringLiteral("wpg")}, {QStringLiteral("wpg")}) {}

    bool sniff(const QByteArray& head, const QString&) const override { return isWpg(head); }
    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override;
    Result<QByteArray> encode(const QImage& image, const QString&, const EncodeOptions&) const override
    {
        return writeWpg(image);
    }
};

Result<std::unique_ptr<Decoder>> WpgCodec::open(std::shared_ptr<ByteSource> source) const
{
    Result<WpgFile> read = readWpgRecords(*source);
    if (!read)
        return read.error();
    WpgFile file = *std::move(read);
    const auto any = [&](bool (WpgFile::*is)(const WpgRecord&) const) {
        return std::any_of(file.records.begin(), file.records.end(),
                           [&](const WpgRecord& record) { return (file.*is)(record); });
    };
    const QSizeF inches = file.version == 1 ? wpg1Extent(file, *source) : wpg2Extent(file, *source);
    if (any(&WpgFile::isDrawing) && !inches.isEmpty())
        return std::unique_ptr<Decoder>(
            std::make_unique<WpgDrawingDecoder>(std::move(source), std::move(file), inches));

    std::vector<size_t> bitmaps;
    for (size_t i = 0; i < file.records.size(); ++i) {
        if (file.isBitmap(file.records[i]))
            bitmaps.push_back(i);
    }
    if (bitmaps.empty()) {
        if (any(&WpgFile::isPostScript))
            return Error{ErrorKind::Unsupported, QStringLiteral("the file holds only embedded PostScript")};
        return Error{ErrorKind::Damaged, QStringLiteral("the file holds no picture")};
    }
    return std::unique_ptr<Decoder>(
        std::make_unique<WpgBitmapDecoder>(std::move(source), std::move(file), std::move(bitmaps)));
}

} // namespace

const Codec& wpgCodec()
{
    static const WpgCodec codec;
    return codec;
}

} // namespace quorvia::engine
