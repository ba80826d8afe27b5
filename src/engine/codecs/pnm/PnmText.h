// The words of a portable map: numbers between blanks and comments.
#pragma once

#include "engine/codecs/SourceReader.h"

#include <QByteArray>

#include <limits>

namespace quorvia::engine {

class PnmText
{
  public:
    /// Reads `source` from `offset` (bytes), at most `length` bytes. Once `cancel` (null for none) is set,
    /// the text comes to an end.
    PnmText(const ByteSource& source, qint64 offset, qint64 length, const std::atomic<bool>* cancel = nullptr)
        : m_reader(source, offset, length, cancel), m_position(offset)
    {
    }

    /// The next character, -1 at the end. A comment counts as the line end that closes it.
    int next()
    {
        int c = raw();
        if (c == '#') {
            while (c != '\n' && c != '\r' && c >= 0)
                c = raw();
        }
        return c;
    }

    /// The next decimal number and the one character behind it; -1 at the end or when something else stands
    /// there. Numbers beyond the range of int come as its largest value.
    int number()
    {
        int c = next();
        while (isBlank(c))
            c = next();
        if (!isDigit(c))
            return -1;
        constexpr qint64 most = std::numeric_limits<int>::max();
        qint64 value = 0;
        for (; isDigit(c); c = next())
            value = std::min(value * 10 + (c - '0'), most);
        return int(value);
    }

    /// The next digit on its own, as in a plain bitmap; -1 at the end or when there is none.
    int digit()
    {
        int c = next();
        while (isBlank(c))
            c = next();
        return isDigit(c) ? c - '0' : -1;
    }

    /// The rest of the line, without its end and blanks at both sides; at most 256 characters of it.
    QByteArray line()
    {
        constexpr qsizetype longest = 256;
        QByteArray text;
        for (int c = raw(); c >= 0 && c != '\n'; c = raw()) {
            if (text.size() < longest)
                text += char(c);
        }
        return text.trimmed();
    }

    static bool isBlank(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
    static bool isDigit(int c) { return c >= '0' && c <= '9'; }

    /// Offset of the next character in the source.
    qint64 position() const { return m_position; }
    bool atEnd() const { return m_ended; }

  private:
    int raw()
    {
        const int c = m_reader.next();
        m_ended = c < 0;
        m_position += m_ended ? 0 : 1;
        return c;
    }

    SourceReader m_reader;
    qint64 m_position;
    bool m_ended = false;
};

} // namespace quorvia::engine
