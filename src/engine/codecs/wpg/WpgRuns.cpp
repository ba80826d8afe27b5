#include "engine/codecs/wpg/WpgRuns.h"

#include <algorithm>
#include <array>

namespace quorvia::engine {

namespace {

constexpr int cancelEvery = 4096; // codes

void copyLiterals(SourceReader& in, int count, WpgRows& rows)
{
    for (int i = 0; i < count; ++i) {
        const int byte = in.next();
        if (byte < 0)
            return;
        rows.put(uchar(byte));
    }
}

void putRun(WpgRows& rows, int count, uchar byte)
{
    for (int i = 0; i < count; ++i)
        rows.put(byte);
}

/// One code of version 1; false at the end or where the codes make no sense.
bool unpackCode1(SourceReader& in, WpgRows& rows)
{
    const int code = in.next();
    if (code < 0)
        return false;
    const int count = code & 0x7F;
    const bool isRun = (code & 0x80) != 0;
    if (!isRun && count > 0) {
        copyLiterals(in, count, rows);
        return true;
    }
    const int value = in.next();
    if (value < 0)
        return false;
    if (!isRun)
        return rows.repeat(value);
    if (count == 0)
        putRun(rows, value, 0xFF);
    else
        putRun(rows, count, uchar(value));
    return true;
}

/// Version 2 counts in elements of one or more bytes.
class Codes2
{
  public:
    explicit Codes2(SourceReader& in) : m_in(in) {}

    /// One code; false at the end or where the codes make no sense.
    bool unpack(WpgRows& rows)
    {
        const int code = m_in.next();
        switch (code) {
        case -1:
            return false;
        case 0x7D:
            return setElementSize(m_in.next());
        case 0x7E:
            rows.differ();
            return true;
        case 0x7F:
        case 0xFD:
        case 0xFE:
        case 0xFF:
            return unpackCounted(code, m_in.next(), rows);
        default:
            break;
        }
        if (code < 0x80) {
            copyLiterals(m_in, (code + 1) * m_size, rows);
            return true;
        }
        for (int i = 0; i < m_size; ++i)
            m_element[size_t(i)] = uchar(std::max(m_in.next(), 0));
        putElements(rows, (code & 0x7F) + 1);
        return true;
    }

  private:
    bool setElementSize(int size)
    {
        m_size = size;
        m_element.fill(0);
        return size > 0;
    }

    bool unpackCounted(int code, int count, WpgRows& rows)
    {
        if (count < 0)
            return false;
        if (code == 0xFE)
            return rows.repeat(count + 1);
        if (code == 0xFD)
            putElements(rows, count + 1); // once more what ran before
        else
            putRun(rows, (count + 1) * m_size, code == 0x7F ? 0x00 : 0xFF);
        return true;
    }

    void putElements(WpgRows& rows, int count) const
    {
        for (int i = 0; i < count; ++i) {
            for (int j = 0; j < m_size; ++j)
                rows.put(m_element[size_t(j)]);
        }
    }

    SourceReader& m_in;
    std::array<uchar, 255> m_element = {};
    int m_size = 1;
};

} // namespace

WpgRows::WpgRows(qint64 rowBytes, int height, OnRow onRow)
    : m_row(size_t(rowBytes)), m_above(size_t(rowBytes)), m_onRow(std::move(onRow)), m_height(height)
{
}

void WpgRows::put(uchar byte)
{
    if (full())
        return;
    m_row[m_at++] = byte;
    if (m_at == m_row.size())
        finish();
}

bool WpgRows::repeat(int count)
{
    if (m_at != 0)
        return false;
    for (int i = 0; i < count && !full(); ++i) {
        m_row = m_above;
        finish();
    }
    return true;
}

bool WpgRows::flush()
{
    if (m_at > 0) {
        std::fill(m_row.begin() + qsizetype(m_at), m_row.end(), uchar(0));
        m_onRow(m_y, m_row.data());
    }
    return m_y > 0 || m_at > 0;
}

void WpgRows::finish()
{
    if (m_differs) {
        for (size_t i = 0; i < m_row.size(); ++i)
            m_row[i] ^= m_above[i];
        m_differs = false;
    }
    m_onRow(m_y++, m_row.data());
    std::swap(m_row, m_above);
    m_at = 0;
}

void unpackWpg(SourceReader& in, WpgPacking packing, WpgRows& rows, const CancelFlag& cancel)
{
    Codes2 codes(in);
    bool going = true;
    for (int i = 0; going && !rows.full(); ++i) {
        if (i % cancelEvery == 0 && cancel)
            return;
        switch (packing) {
        case WpgPacking::Rows: {
            const int byte = in.next();
            going = byte >= 0;
            if (going)
                rows.put(uchar(byte));
            break;
        }
        case WpgPacking::Runs1:
            going = unpackCode1(in, rows);
            break;
        case WpgPacking::Runs2:
            going = codes.unpack(rows);
            break;
        }
    }
}

} // namespace quorvia::engine
