// Puts Macintosh pictures together opcode by opcode: the variants that no program here writes.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QList>
#include <QRect>

namespace quorvia::test {

class PictMaker
{
  public:
    /// `version` is 1 or 2.
    PictMaker(QSize size, int version, bool prefixed = true) : m_version(version)
    {
        m_bytes = QByteArray(prefixed ? 512 : 0, '\0');
        m_start = m_bytes.size();
        word(0);
        rectangle(QRect(QPoint(0, 0), size));
        m_bytes += version == 1 ? QByteArray::fromHex("1101") : QByteArray::fromHex("001102ff");
        if (version == 2) {
            op(0x0C00);
            m_bytes += QByteArray::fromHex("ffff0000 00000000 00000000") + QByteArray(12, '\0');
        }
    }

    PictMaker& op(int code)
    {
        if (m_version == 2) {
            m_bytes += QByteArray((m_bytes.size() - m_start) % 2, '\0');
            word(code);
        } else {
            m_bytes += char(code);
        }
        return *this;
    }
    PictMaker& word(int value)
    {
        m_bytes += char(value >> 8 & 255);
        m_bytes += char(value & 255);
        return *this;
    }
    PictMaker& longWord(qint64 value) { return word(int(value >> 16)).word(int(value & 0xFFFF)); }
    PictMaker& rectangle(const QRect& r)
    {
        return word(r.top()).word(r.left()).word(r.top() + r.height()).word(r.left() + r.width());
    }
    PictMaker& raw(const QByteArray& bytes)
    {
        m_bytes += bytes;
        return *this;
    }

    /// What stands in front of the pixels of a map of pixels: `rowBytes` and `bounds` first.
    PictMaker& pixmap(int rowBytes, QSize size, int packType, int bits, int components)
    {
        word(rowBytes | 0x8000).rectangle(QRect(QPoint(0, 0), size));
        word(0).word(packType).longWord(0).longWord(72 << 16).longWord(72 << 16);
        word(bits > 8 ? 16 : 0).word(bits).word(components).word(bits > 16 ? 8 : (bits > 8 ? 5 : bits));
        return longWord(0).longWord(0).longWord(0);
    }
    PictMaker& colors(const QList<QRgb>& palette)
    {
        longWord(0).word(0).word(int(palette.size()) - 1);
        for (int i = 0; i < palette.size(); ++i)
            word(i).word(qRed(palette[i]) * 257).word(qGreen(palette[i]) * 257).word(qBlue(palette[i]) * 257);
        return *this;
    }
    PictMaker& place(const QRect& source, const QRect& target)
    {
        return rectangle(source).rectangle(target).word(0);
    }
    PictMaker& place(QSize size) { return place(QRect(QPoint(0, 0), size), QRect(QPoint(0, 0), size)); }

    /// A row packed by units of `unit` bytes, with its length in front as a byte or a word.
    PictMaker& packedRow(const QByteArray& row, bool wide, int unit = 1)
    {
        QByteArray packed;
        for (qsizetype at = 0; at < row.size();) {
            qsizetype run = unit;
            while (at + run < row.size() && run / unit < 128 && row.mid(at, unit) == row.mid(at + run, unit))
                run += unit;
            if (run > unit) {
                packed += char(257 - run / unit);
                packed += row.mid(at, unit);
                at += run;
            } else {
                const qsizetype length = qMin<qsizetype>(row.size() - at, 5 * unit);
                packed += char(length / unit - 1);
                packed += row.mid(at, length);
                at += length;
            }
        }
        if (wide)
            word(int(packed.size()));
        else
            m_bytes += char(packed.size());
        m_bytes += packed;
        return *this;
    }

    QByteArray file() const
    {
        PictMaker whole = *this;
        return whole.op(0xFF).m_bytes;
    }

  private:
    QByteArray m_bytes;
    qsizetype m_start = 0;
    int m_version;
};

} // namespace quorvia::test
