#include "platform/PrintDocument.h"

#include "platform/PdfFile.h"
#include "platform/Reason.h"

#include <QPainter>

#include <zlib.h>

#include <vector>

namespace quorvia::platform {

namespace {

constexpr int channels = 3;

/// Packs bytes into a document.
class Packer
{
  public:
    explicit Packer(PdfFile& file) : m_file(file), m_room(roomBytes)
    {
        // A photo of A4 at 300 pixels to the inch, each row less the one above: 0.27 s and 15.6 MB of 26.1.
        // The default strategy takes 0.43 s and 17.3 MB at level 1, 0.94 s and 16.8 MB at level 6; rows as
        // they are 0.68 s and 23.1 MB.
        constexpr int level = 1;
        constexpr int bits = 15; // of the window: 32 KiB
        constexpr int memory = 8;
        m_isReady = deflateInit2(&m_state, level, Z_DEFLATED, bits, memory, Z_RLE) == Z_OK;
    }
    ~Packer() { deflateEnd(&m_state); }
    Packer(const Packer&) = delete;
    Packer& operator=(const Packer&) = delete;

    /// False when there was no memory for it.
    bool isReady() const { return m_isReady; }
    void put(const std::vector<uchar>& bytes)
    {
        m_state.next_in = const_cast<uchar*>(bytes.data()); // it only reads there
        m_state.avail_in = uInt(bytes.size());
        pack(Z_NO_FLUSH);
    }
    void finish() { pack(Z_FINISH); }

  private:
    void pack(int flush)
    {
        do {
            m_state.next_out = m_room.data();
            m_state.avail_out = roomBytes;
            deflate(&m_state, flush);
            m_file.put(QByteArrayView(m_room.data(), roomBytes - qsizetype(m_state.avail_out)));
        } while (m_state.avail_out == 0);
    }

    static constexpr uInt roomBytes = 65536;

    PdfFile& m_file;
    std::vector<uchar> m_room;
    z_stream m_state = {};
    bool m_isReady = false;
};

/// The rows of a picture, one after the other, with a byte for each colour.
class Rows
{
  public:
    explicit Rows(const QImage& picture)
        : m_picture(picture), m_row(picture.width(), 1, QImage::Format_RGB888), m_painter(&m_row)
    {
    }

    /// False when there was no memory for it.
    bool isReady() const { return m_painter.isActive(); }
    /// The row `y`, to be used up to the next call.
    const uchar* at(int y)
    {
        QImage line(m_picture.constScanLine(y), m_picture.width(), 1, m_picture.bytesPerLine(),
                    m_picture.format());
        line.setColorTable(m_picture.colorTable());
        if (line.hasAlphaChannel())
            m_painter.fillRect(m_row.rect(), Qt::white);
        m_painter.drawImage(0, 0, line);
        return m_row.constScanLine(0);
    }

  private:
    const QImage& m_picture;
    QImage m_row;
    QPainter m_painter; ///< one for all rows, which takes no memory with each
};

/// Packs `picture`; false when there is no memory. Each row is the difference to the one above, with a 2
/// before it that says so (ISO 32000-1, 7.4.4.4).
bool putPixels(PdfFile& file, const QImage& picture)
{
    constexpr uchar lessAbove = 2;
    const size_t length = size_t(picture.width()) * channels;
    Packer packer(file);
    Rows rows(picture);
    if (!packer.isReady() || !rows.isReady())
        return false;
    std::vector<uchar> above(length);
    std::vector<uchar> packed(length + 1, lessAbove);
    for (int y = 0; y < picture.height() && file.isWhole(); ++y) {
        const uchar* const row = rows.at(y);
        for (size_t i = 0; i < length; ++i) {
            packed[i + 1] = uchar(row[i] - above[i]);
            above[i] = row[i];
        }
        packer.put(packed);
    }
    packer.finish();
    return true;
}

/// The object of the picture; 0 when there is no memory.
int putPicture(PdfFile& file, const QImage& picture)
{
    const QByteArray width = QByteArray::number(picture.width());
    const int number = file.beginObject();
    file.put("<< /Type /XObject /Subtype /Image /Width " + width + " /Height " +
             QByteArray::number(picture.height()) +
             " /ColorSpace /DeviceRGB /BitsPerComponent 8 /Interpolate false /Filter /FlateDecode"
             " /DecodeParms << /Predictor 12 /Colors 3 /BitsPerComponent 8 /Columns " +
             width + " >> /Length " + PdfFile::reference(number + 1) + " >>\nstream\n");
    const qint64 start = file.size();
    if (!putPixels(file, picture))
        return 0;
    const qint64 length = file.size() - start;
    file.put("\nendstream");
    file.endObject();
    file.object(QByteArray::number(length)); // known only now
    return number;
}

/// What is drawn: the picture, a unit square, made as large as `target` (8.3.4). The page counts from below.
QByteArray drawing(const QSize& paper, const QRect& target)
{
    const int below = paper.height() - target.y() - target.height();
    return "q " + PdfFile::points(target.width()) + " 0 0 " + PdfFile::points(target.height()) + ' ' +
           PdfFile::points(target.x()) + ' ' + PdfFile::points(below) + " cm /Picture Do Q";
}

} // namespace

bool writePdfPage(QIODevice& file, const QSize& paper, const QImage& picture, const QRect& target,
                  const QString& title, QString* why)
{
    if (picture.isNull() || target.isEmpty() || paper.isEmpty())
        return fail(why, QStringLiteral("there is no picture or no page"));
    PdfFile pdf(file);
    const int image = putPicture(pdf, picture);
    if (image == 0)
        return fail(why, QStringLiteral("the page cannot be written: there is no memory"));
    const QByteArray content = drawing(paper, target);
    const int contents = pdf.object("<< /Length " + QByteArray::number(content.size()) + " >>\nstream\n" +
                                    content + "\nendstream");
    const int page = contents + 1;
    const int pages = contents + 2;
    pdf.object("<< /Type /Page /Parent " + PdfFile::reference(pages) + " /MediaBox [0 0 " +
               PdfFile::points(paper.width()) + ' ' + PdfFile::points(paper.height()) +
               "] /Resources << /ProcSet [/PDF /ImageC] /XObject << /Picture " + PdfFile::reference(image) +
               " >> >> /Contents " + PdfFile::reference(contents) + " >>");
    pdf.object("<< /Type /Pages /Kids [" + PdfFile::reference(page) + "] /Count 1 >>");
    const int root = pdf.object("<< /Type /Catalog /Pages " + PdfFile::reference(pages) + " >>");
    const int info = pdf.object("<< /Title " + PdfFile::text(title) + " >>");
    QString reason;
    return pdf.finish(root, info, &reason) ||
           fail(why, QStringLiteral("the page cannot be written: ") + reason);
}

} // namespace quorvia::platform
