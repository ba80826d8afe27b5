// The records of a WordPerfect graphic, found by walking their lengths. Cheap: a few bytes a record are read,
// at most a million records.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QByteArray>

#include <vector>

namespace quorvia::engine {

struct WpgRecord
{
    int type = 0;
    qint64 offset = 0;  ///< of the content, bytes from the start of the file
    qint64 length = 0;  ///< of the content that is there
    int subRecords = 0; ///< version 2: records that belong to this one
    int frame = -1;     ///< version 2: the record, from 0, that tells where a bitmap here lies; -1 for none
};

struct WpgFile
{
    int version = 0; ///< 1 or 2
    std::vector<WpgRecord> records;
    bool whole = false; ///< the end record was reached and no record is cut

    /// Whether the record draws lines, areas or text.
    bool isDrawing(const WpgRecord& record) const;
    /// Whether the record holds the pixels of a bitmap.
    bool isBitmap(const WpgRecord& record) const;
    bool isColorMap(const WpgRecord& record) const;
    bool isPostScript(const WpgRecord& record) const;
};

/// Record types of version 1.
namespace wpg1 {
constexpr int fillAttributes = 0x01;
constexpr int lineAttributes = 0x02;
constexpr int line = 0x05;
constexpr int polyline = 0x06;
constexpr int rectangle = 0x07;
constexpr int polygon = 0x08;
constexpr int ellipse = 0x09;
constexpr int bitmap = 0x0B;
constexpr int text = 0x0C;
constexpr int textAttributes = 0x0D;
constexpr int colorMap = 0x0E;
constexpr int start = 0x0F;
constexpr int end = 0x10;
constexpr int postScript = 0x11;
constexpr int curve = 0x13;
constexpr int placedBitmap = 0x14;
constexpr int placedPostScript = 0x1B;
} // namespace wpg1

/// Record types of version 2.
namespace wpg2 {
constexpr int start = 0x01;
constexpr int end = 0x02;
constexpr int colorMap = 0x0C;
constexpr int deepColorMap = 0x0D;
constexpr int bitmapData = 0x0E;
constexpr int textData = 0x0F;
constexpr int objectImage = 0x12;
constexpr int polyline = 0x15;
constexpr int arc = 0x19;
constexpr int bitmap = 0x1B;
constexpr int textLine = 0x1C;
constexpr int textPath = 0x1E;
constexpr int brushForeColor = 0x31;
constexpr int deepBrushForeColor = 0x32;
} // namespace wpg2

/// True when `head` begins as a WordPerfect file of the kind "graphic".
bool isWpg(const QByteArray& head);

/// Walks the records of `source`. Damaged when the header is, Unsupported for an encrypted file or an unknown
/// version.
Result<WpgFile> readWpgRecords(const ByteSource& source);

/// Reads numbers one after the other from the content of a record; 0 past its end.
class WpgNumbers
{
  public:
    explicit WpgNumbers(QByteArray bytes) : m_bytes(std::move(bytes)) {}

    int u8() { return int(take<quint8>()); }
    int u16() { return int(take<quint16>()); }
    int i16() { return int(take<qint16>()); }
    quint32 u32() { return take<quint32>(); }
    qint32 i32() { return take<qint32>(); }
    void skip(qsizetype count) { m_at += count; }
    /// Bytes that are left.
    qsizetype left() const { return std::max<qsizetype>(m_bytes.size() - m_at, 0); }
    /// Whether numbers were asked for that are not there.
    bool cut() const { return m_at > m_bytes.size(); }
    /// Bytes passed so far, those behind the end counted.
    qsizetype at() const { return m_at; }
    QByteArray rest() const { return m_bytes.mid(m_at); }

  private:
    template <class T>
    T take();

    QByteArray m_bytes;
    qsizetype m_at = 0;
};

} // namespace quorvia::engine
