// The records of a Windows metafile, read one after the other with bounds. Cheap: a record's parameters are
// read only when they are asked for; a bitmap stays in the file.
#pragma once

#include "engine/ByteSource.h"

#include <QByteArray>
#include <QPoint>

#include <memory>
#include <optional>

namespace quorvia::engine {

/// The records that are played, by the number that stands in the file.
/// Source: the published description of the metafile's records.
enum class WmfFunction : quint16 {
    EndOfFile = 0x0000,
    SaveDc = 0x001E,
    SetPaletteEntries = 0x0037,
    CreatePalette = 0x00F7,
    CreateBrush = 0x00F8,
    SetBkMode = 0x0102,
    SetMapMode = 0x0103,
    SetRop2 = 0x0104,
    SetPolyFillMode = 0x0106,
    SetStretchMode = 0x0107,
    SetTextCharExtra = 0x0108,
    RestoreDc = 0x0127,
    InvertRegion = 0x012A,
    PaintRegion = 0x012B,
    SelectClipRegion = 0x012C,
    SelectObject = 0x012D,
    SetTextAlign = 0x012E,
    DibCreatePatternBrush = 0x0142,
    DeleteObject = 0x01F0,
    CreatePatternBrush = 0x01F9,
    SetBkColor = 0x0201,
    SetTextColor = 0x0209,
    SetTextJustification = 0x020A,
    SetWindowOrg = 0x020B,
    SetWindowExt = 0x020C,
    SetViewportOrg = 0x020D,
    SetViewportExt = 0x020E,
    OffsetWindowOrg = 0x020F,
    OffsetViewportOrg = 0x0211,
    LineTo = 0x0213,
    MoveTo = 0x0214,
    OffsetClipRegion = 0x0220,
    FillRegion = 0x0228,
    SelectPalette = 0x0234,
    CreatePen = 0x02FA,
    CreateFont = 0x02FB,
    CreateBrushIndirect = 0x02FC,
    CreateBitmapIndirect = 0x02FD,
    Polygon = 0x0324,
    Polyline = 0x0325,
    ScaleWindowExt = 0x0410,
    ScaleViewportExt = 0x0412,
    ExcludeClipRect = 0x0415,
    IntersectClipRect = 0x0416,
    Ellipse = 0x0418,
    Rectangle = 0x041B,
    SetPixel = 0x041F,
    FrameRegion = 0x0429,
    AnimatePalette = 0x0436,
    TextOut = 0x0521,
    PolyPolygon = 0x0538,
    RoundRect = 0x061C,
    PatBlt = 0x061D,
    CreateBitmap = 0x06FE,
    CreateRegion = 0x06FF,
    Arc = 0x0817,
    Pie = 0x081A,
    Chord = 0x0830,
    BitBlt = 0x0922,
    DibBitBlt = 0x0940,
    ExtTextOut = 0x0A32,
    StretchBlt = 0x0B23,
    DibStretchBlt = 0x0B41,
    SetDibToDevice = 0x0D33,
    StretchDib = 0x0F43,
};

/// The parameters of one record: 16-bit little-endian words. Words that are not there read as 0.
class WmfParams
{
  public:
    explicit WmfParams(QByteArray bytes) : m_bytes(std::move(bytes)) {}

    /// Whole words that are there.
    qsizetype words() const { return m_bytes.size() / 2; }
    /// Word `index` (from 0), signed.
    int word(qsizetype index) const;
    /// Word `index`, unsigned.
    int unsignedWord(qsizetype index) const { return word(index) & 0xFFFF; }
    /// The 32 bits at words `index` and `index` + 1.
    quint32 doubleWord(qsizetype index) const;
    /// The point whose x is word `index` and whose y is the next.
    QPoint point(qsizetype index) const { return {word(index), word(index + 1)}; }
    /// The point whose y is word `index` and whose x is the next: the usual order of parameters.
    QPoint pointYX(qsizetype index) const { return {word(index + 1), word(index)}; }
    /// Up to `length` bytes from byte `offset` on.
    QByteArray bytes(qsizetype offset, qsizetype length) const { return m_bytes.mid(offset, length); }

  private:
    QByteArray m_bytes;
};

/// Where one record lies.
struct WmfRecord
{
    WmfFunction function = WmfFunction::EndOfFile;
    int functionCode = 0; ///< as stored; its high byte tells the number of fixed words
    qint64 offset = 0;    ///< of the parameters, bytes from the start of the file
    qint64 length = 0;    ///< bytes of parameters that the file holds
    qint64 words = 0;     ///< the record's whole size as it says itself, in words
    bool whole = true;    ///< false when the file ends inside it
};

class WmfRecordReader
{
  public:
    /// Reads the records of `source` from `offset` (bytes) on.
    WmfRecordReader(std::shared_ptr<ByteSource> source, qint64 offset)
        : m_source(std::move(source)), m_offset(offset)
    {
    }

    /// The next record; none behind the last, where the file ends or where a size is nonsense.
    std::optional<WmfRecord> next();
    /// True once the end record was met: nothing is missing.
    bool reachedEnd() const { return m_reachedEnd; }
    /// The parameters of `record`; at most a megabyte of them.
    WmfParams params(const WmfRecord& record) const;
    /// What follows the first `skipped` bytes of parameters of `record`, left in the file.
    std::shared_ptr<ByteSource> tail(const WmfRecord& record, qint64 skipped) const;

  private:
    std::shared_ptr<ByteSource> m_source;
    qint64 m_offset;
    bool m_reachedEnd = false;
};

} // namespace quorvia::engine
