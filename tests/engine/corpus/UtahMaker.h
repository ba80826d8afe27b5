// Puts Utah run-length files together code by code: the variants that no program here writes.
#pragma once

#include <QByteArray>
#include <QSize>

namespace quorvia::test {

class UtahMaker
{
  public:
    enum Flag { ClearFirst = 1, NoBackground = 2, Alpha = 4, Comment = 8 };

    UtahMaker(QSize size, int channels, int flags, QByteArray background = {}, int maps = 0, int mapBits = 0,
              const QByteArray& mapAndComment = {})
    {
        m_bytes = QByteArray::fromHex("52cc");
        word(0);
        word(0);
        word(size.width());
        word(size.height());
        for (const int byte : {flags, channels, 8, maps, mapBits})
            m_bytes += char(byte);
        if (flags & NoBackground)
            background = QByteArray(1, '\0');
        else if (background.size() % 2 == 0)
            background += '\0';
        m_bytes += background + mapAndComment;
    }

    /// Puts the corner off the origin of the virtual screen, which does not move the picture.
    UtahMaker& at(int x, int y)
    {
        m_bytes[2] = char(x);
        m_bytes[4] = char(y);
        return *this;
    }
    UtahMaker& skipLines(int count) { return code(1, count); }
    UtahMaker& color(int channel) { return code(2, channel); }
    UtahMaker& skipPixels(int count) { return code(3, count); }
    UtahMaker& pixels(const QByteArray& values)
    {
        code(5, int(values.size()) - 1);
        m_bytes += values + QByteArray(values.size() % 2, '\0');
        return *this;
    }
    UtahMaker& run(int count, int value)
    {
        code(6, count - 1);
        word(value);
        return *this;
    }
    /// The file, with or without the code that ends it.
    QByteArray file(bool ended = true) const
    {
        return ended ? m_bytes + QByteArray::fromHex("0700") : m_bytes;
    }

  private:
    void word(int value)
    {
        m_bytes += char(value & 255);
        m_bytes += char(value >> 8 & 255);
    }
    UtahMaker& code(int code, int operand)
    {
        const bool isLong = operand > 255;
        m_bytes += char(isLong ? code | 0x40 : code);
        m_bytes += char(isLong ? 0 : operand);
        if (isLong)
            word(operand);
        return *this;
    }

    QByteArray m_bytes;
};

} // namespace quorvia::test
