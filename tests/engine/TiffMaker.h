// Puts TIFF files together field by field, for the variants that no tool writes.
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>

namespace quorvia::test {

class TiffMaker
{
  public:
    /// A page of one strip; `pixels` as they shall stand in the file.
    void page(int width, int height, int bits, int samples, int photometric, const QByteArray& pixels);
    /// Sets or replaces a field; type 3 is 16 bits, 4 is 32 bits, 7 is bytes.
    void set(int tag, int type, const QList<quint32>& values);
    /// The same from 16-bit values that stand low byte first in `bytes`.
    void setShorts(int tag, const QByteArray& bytes);
    /// Tiles instead of strips.
    void tile(int width, int height);
    /// The file: header, directory, values, pixels.
    QByteArray bytes() const;

    bool bigEndian = false;
    QList<QByteArray> strips; ///< or tiles
    quint32 next = 0;         ///< where the next page is said to be

  private:
    struct Field
    {
        int type = 3;
        QList<quint32> values;
    };
    QByteArray number(quint32 value, int bytes) const;

    QMap<int, Field> m_fields;
    bool m_tiled = false;
};

/// `tiff` (classic, low byte first, one page) with another orientation.
QByteArray withOrientation(const QByteArray& tiff, int orientation);

/// `tiff` with all its directories copied in front of its strips or tiles, so that a cut takes pixels only.
/// One page; as it is when it is no classic file.
QByteArray directoryFirst(const QByteArray& tiff);

} // namespace quorvia::test
