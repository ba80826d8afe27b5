#include "engine/codecs/wmf/WmfCharset.h"

#include <iconv.h>

#include <algorithm>
#include <array>

namespace quorvia::engine {

namespace {

struct Charset
{
    int number;
    const char* name;                               ///< as the C library calls it
    std::array<std::array<uchar, 2>, 3> leads = {}; ///< first bytes of letters of two bytes, from and to
};

constexpr std::array charsets = {
    Charset{0, "CP1252"},
    Charset{77, "MACINTOSH"},
    Charset{128, "CP932", {{{0x81, 0x9F}, {0xE0, 0xFC}}}},
    Charset{129, "CP949", {{{0x81, 0xFE}}}},
    Charset{130, "JOHAB", {{{0x84, 0xD3}, {0xD8, 0xDE}, {0xE0, 0xF9}}}},
    Charset{134, "GBK", {{{0x81, 0xFE}}}},
    Charset{136, "BIG5", {{{0x81, 0xFE}}}},
    Charset{161, "CP1253"},
    Charset{162, "CP1254"},
    Charset{163, "CP1258"},
    Charset{177, "CP1255"},
    Charset{178, "CP1256"},
    Charset{186, "CP1257"},
    Charset{204, "CP1251"},
    Charset{222, "CP874"},
    Charset{238, "CP1250"},
    Charset{255, "CP437"},
};

const Charset& charsetOf(int number)
{
    const auto* found = std::find_if(charsets.begin(), charsets.end(),
                                     [number](const Charset& one) { return one.number == number; });
    return found != charsets.end() ? *found : charsets.front();
}

bool isLead(const Charset& charset, uchar byte)
{
    return std::any_of(charset.leads.begin(), charset.leads.end(), [byte](const auto& range) {
        return range[0] != 0 && byte >= range[0] && byte <= range[1];
    });
}

/// The C library's converter from one charset to UTF-16.
class Converter
{
  public:
    explicit Converter(const char* charset) : m_handle(iconv_open("UTF-16LE", charset)) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter()
    {
        if (isOpen())
            iconv_close(m_handle);
    }

    /// The one letter in `bytes`; the replacement character when it is none.
    QString letter(QByteArray bytes) const
    {
        QString unknown{QChar{QChar::ReplacementCharacter}};
        if (!isOpen())
            return unknown;
        std::array<char16_t, 8> out = {};
        char* from = bytes.data();
        size_t fromLeft = size_t(bytes.size());
        char* to = reinterpret_cast<char*>(out.data());
        size_t toLeft = sizeof out;
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        const size_t result = iconv(m_handle, &from, &fromLeft, &to, &toLeft);
        iconv(m_handle, nullptr, nullptr, &to, &toLeft); // some charsets hold a letter back for its accent
        const size_t units = (sizeof out - toLeft) / sizeof(char16_t);
        if (result == size_t(-1) || units == 0)
            return unknown;
        return QString::fromUtf16(out.data(), qsizetype(units));
    }

  private:
    bool isOpen() const { return reinterpret_cast<std::intptr_t>(m_handle) != -1; }

    iconv_t m_handle;
};

} // namespace

QList<WmfLetter> wmfLetters(const QByteArray& text, int charset)
{
    const Charset& known = charsetOf(charset);
    const Converter converter(known.name);
    QList<WmfLetter> letters;
    letters.reserve(text.size());
    for (qsizetype at = 0; at < text.size();) {
        const auto first = uchar(text[at]);
        const int bytes = isLead(known, first) && at + 1 < text.size() ? 2 : 1;
        const bool plain = first >= 0x20 && first < 0x7F && bytes == 1;
        letters.append(
            {plain ? QString(QLatin1Char(char(first))) : converter.letter(text.mid(at, bytes)), bytes});
        at += bytes;
    }
    return letters;
}

} // namespace quorvia::engine
