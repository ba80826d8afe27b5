// Puts metafiles together record by record, and the pixels that they must give, for the tests.
#pragma once

#include "CodecFixtures.h"

#include <QByteArray>
#include <QColor>
#include <QList>
#include <QSize>
#include <QtEndian>

#include <algorithm>
#include <functional>

namespace quorvia::test {

/// A metafile under construction. Coordinates are given in the order of the records: y before x.
class WmfMaker
{
  public:
    /// A placeable metafile whose box is `size` at 96 units an inch, with a window of the same size: units
    /// are pixels.
    static WmfMaker pixels(QSize size)
    {
        return WmfMaker().placed(0, 0, size.width(), size.height(), 96).window(0, 0, size);
    }

    WmfMaker& placed(int left, int top, int right, int bottom, int inch)
    {
        m_placeable = number<quint32>(0x9AC6CDD7) + words({0, left, top, right, bottom, inch, 0, 0});
        quint16 checksum = 0;
        for (qsizetype at = 0; at < m_placeable.size(); at += 2)
            checksum ^= qFromLittleEndian<quint16>(m_placeable.constData() + at);
        m_placeable += number<quint16>(checksum);
        return *this;
    }
    WmfMaker& window(int left, int top, QSize extent)
    {
        return record(0x0103, {8})
            .record(0x020B, {top, left})
            .record(0x020C, {extent.height(), extent.width()});
    }
    WmfMaker& record(int function, const QList<int>& parameters = {}, const QByteArray& tail = {})
    {
        const QByteArray padded = tail.size() % 2 == 0 ? tail : tail + '\0';
        m_records += number<quint32>(quint32(3 + parameters.size() + padded.size() / 2));
        m_records += number<quint16>(quint16(function)) + words(parameters) + padded;
        return *this;
    }
    WmfMaker& pen(int style, int width, QRgb color)
    {
        return record(0x02FA, {style, width, 0, low(color), high(color)});
    }
    WmfMaker& brush(int style, QRgb color, int hatch = 0)
    {
        return record(0x02FC, {style, low(color), high(color), hatch});
    }
    WmfMaker& font(int height, const QByteArray& face, int charset = 0, int escapement = 0, int width = 0,
                   bool underline = false)
    {
        QByteArray name = face;
        name.resize(32, '\0');
        return record(0x02FB,
                      {height, width, escapement, escapement, 400, underline ? 256 : 0, charset << 8, 0, 0},
                      name);
    }
    WmfMaker& select(int number) { return record(0x012D, {number}); }
    /// Makes a pen of no colour and a plain brush as objects `first` and `first` + 1 and selects them.
    WmfMaker& fillWith(QRgb color, int first = 0)
    {
        return pen(5, 0, 0).brush(0, color).select(first).select(first + 1);
    }
    WmfMaker& rectangle(int left, int top, int right, int bottom)
    {
        return record(0x041B, {bottom, right, top, left});
    }
    WmfMaker& line(int fromX, int fromY, int toX, int toY)
    {
        return record(0x0214, {fromY, fromX}).record(0x0213, {toY, toX});
    }
    WmfMaker& text(int x, int y, const QByteArray& letters)
    {
        QByteArray tail = letters.size() % 2 == 0 ? letters : letters + '\0';
        return record(0x0521, {int(letters.size())}, tail + words({y, x}));
    }

    /// The whole file, with or without the record that ends it.
    QByteArray file(bool withEnd = true) const
    {
        const QByteArray records = m_records + (withEnd ? number<quint32>(3) + words({0}) : QByteArray());
        QByteArray header = words({1, 9, 0x0300}) + number<quint32>(quint32(9 + records.size() / 2));
        header += words({16}) + number<quint32>(quint32(records.size() / 2)) + words({0});
        return m_placeable + header + records;
    }
    /// Bytes before the first record.
    qsizetype headLength() const { return m_placeable.size() + 18; }

    static int low(QRgb color) { return qRed(color) | qGreen(color) << 8; }
    static int high(QRgb color) { return qBlue(color); }

    template <class T>
    static QByteArray number(T value)
    {
        const T little = qToLittleEndian(value);
        return QByteArray(reinterpret_cast<const char*>(&little), sizeof little);
    }
    static QByteArray words(const QList<int>& values)
    {
        QByteArray bytes(2 * values.size(), Qt::Uninitialized);
        for (qsizetype i = 0; i < values.size(); ++i)
            qToLittleEndian(quint16(values[i]), bytes.data() + 2 * i);
        return bytes;
    }

    /// A bitmap without file header. `pixel` gives the palette's number or, for 24 bits, the colour of a
    /// pixel (from the top left); `palette` holds colours as four bytes or numbers as two.
    static QByteArray dib(QSize size, int bits, const QByteArray& palette, int colors,
                          const std::function<quint32(int x, int y)>& pixel)
    {
        QByteArray bytes = number<quint32>(40) + number<qint32>(size.width()) + number<qint32>(size.height());
        bytes += words({1, bits}) + QByteArray(16, '\0') + number<quint32>(quint32(colors));
        bytes += QByteArray(4, '\0') + palette;
        for (int y = size.height() - 1; y >= 0; --y) {
            QByteArray row((qsizetype(size.width()) * bits + 31) / 32 * 4, '\0');
            for (int x = 0; x < size.width(); ++x) {
                const quint32 value = pixel(x, y);
                if (bits == 24) {
                    row[3 * x] = char(qBlue(value));
                    row[3 * x + 1] = char(qGreen(value));
                    row[3 * x + 2] = char(qRed(value));
                } else {
                    const int shift = 8 - bits - x * bits % 8;
                    row[x * bits / 8] = char(row[x * bits / 8] | int(value) << shift);
                }
            }
            bytes += row;
        }
        return bytes;
    }
    static QByteArray colorTable(const QList<QRgb>& colors)
    {
        QByteArray bytes;
        for (const QRgb color : colors)
            bytes += number<quint32>(color & 0xFFFFFF);
        return bytes;
    }

  private:
    QByteArray m_placeable;
    QByteArray m_records;
};

/// White paper that the expected pixels are laid on by hand.
class Paper
{
  public:
    explicit Paper(QSize size) : m_size(size), m_pixels(4 * qsizetype(size.width()) * size.height(), '\xFF')
    {
    }

    Paper& dot(int x, int y, QRgb color)
    {
        char* at = m_pixels.data() + 4 * (qsizetype(y) * m_size.width() + x);
        at[0] = char(qRed(color));
        at[1] = char(qGreen(color));
        at[2] = char(qBlue(color));
        return *this;
    }
    /// Pixels from `left`, `top` up to, but not with, `right`, `bottom`.
    Paper& box(int left, int top, int right, int bottom, QRgb color)
    {
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x)
                dot(x, y, color);
        }
        return *this;
    }
    Paper& paint(int left, int top, int right, int bottom, const std::function<QRgb(int x, int y)>& color)
    {
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x)
                dot(x, y, color(x, y));
        }
        return *this;
    }
    Rgba rgba() const { return {m_size, m_pixels}; }

  private:
    QSize m_size;
    QByteArray m_pixels;
};

} // namespace quorvia::test
