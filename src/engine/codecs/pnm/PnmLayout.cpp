#include "engine/codecs/pnm/PnmLayout.h"

#include "engine/codecs/pnm/PnmText.h"

#include <algorithm>
#include <array>

namespace quorvia::engine {

namespace {

constexpr qint64 longestHeader = 1 << 20; // comments may be long, but a header is no novel
constexpr int largestMaxval = 65535;

Error brokenHeader()
{
    return Error{ErrorKind::Damaged, QStringLiteral("the header of the portable map is incomplete")};
}

Status checked(const PnmLayout& layout)
{
    if (layout.size.width() < 0 || layout.size.height() < 0)
        return brokenHeader();
    if (layout.maxval < 1 || layout.maxval > largestMaxval)
        return Error{ErrorKind::Damaged, QStringLiteral("a largest sample of %1").arg(layout.maxval)};
    return ok();
}

Result<PnmLayout> readClassic(PnmText& text, char kind)
{
    PnmLayout layout;
    layout.plain = kind <= '3';
    layout.oneIsBlack = kind == '1' || kind == '4';
    layout.bilevel = layout.oneIsBlack;
    layout.packedBits = kind == '4';
    layout.channels = kind == '3' || kind == '6' ? 3 : 1;
    const int width = text.number();
    layout.size = QSize(width, text.number());
    if (!layout.bilevel)
        layout.maxval = text.number();
    layout.pixelOffset = text.position();
    const Status good = checked(layout);
    if (!good)
        return good.error();
    return layout;
}

/// The characters of `line` before its first blank of any kind.
QByteArray firstWord(const QByteArray& line)
{
    return line.left(std::find_if(line.begin(), line.end(), PnmText::isBlank) - line.begin());
}

Result<PnmLayout> readArbitrary(PnmText& text)
{
    PnmLayout layout;
    layout.channels = 0;
    layout.maxval = 0;
    QByteArray tuple;
    for (QByteArray line = text.line(); line != "ENDHDR"; line = text.line()) {
        if (text.atEnd())
            return brokenHeader();
        const QByteArray key = firstWord(line);
        const QByteArray value = line.mid(key.size()).trimmed();
        if (key == "WIDTH")
            layout.size.setWidth(value.toInt());
        else if (key == "HEIGHT")
            layout.size.setHeight(value.toInt());
        else if (key == "DEPTH")
            layout.channels = value.toInt();
        else if (key == "MAXVAL")
            layout.maxval = value.toInt();
        else if (key == "TUPLTYPE")
            tuple += value;
    }
    layout.pixelOffset = text.position();
    const Status good = checked(layout);
    if (!good)
        return good.error();
    if (layout.channels < 1)
        return brokenHeader();
    if (layout.channels > 4 || tuple.startsWith("CMYK"))
        return Error{ErrorKind::Unsupported, QStringLiteral("an arbitrary map of %1 planes of type \"%2\"")
                                                 .arg(layout.channels)
                                                 .arg(QString::fromLatin1(tuple))};
    layout.bilevel = layout.channels == 1 && layout.maxval == 1;
    return layout;
}

bool hasMark(const QByteArray& head)
{
    if (head.size() < 3 || head[0] != 'P' || head[1] < '1' || head[1] > '7')
        return false;
    const char after = head[2];
    if (head[1] == '7') // followed by a number it is another program's thumbnail
        return after == '\n' || (after == '\r' && head.size() > 3 && head[3] == '\n');
    return PnmText::isBlank(after) || after == '#';
}

qsizetype endOfComment(const QByteArray& head, qsizetype at)
{
    while (at < head.size() && head[at] != '\n' && head[at] != '\r')
        ++at;
    return at;
}

/// True for the words that begin the lines of an arbitrary map's header.
bool isArbitraryWord(const QByteArray& word)
{
    constexpr std::array<const char*, 6> words = {"WIDTH", "HEIGHT", "DEPTH", "MAXVAL", "TUPLTYPE", "ENDHDR"};
    return std::find(words.begin(), words.end(), word) != words.end();
}

} // namespace

qint64 PnmLayout::rowBytes() const
{
    if (packedBits)
        return (qint64(size.width()) + 7) / 8;
    return qint64(size.width()) * channels * bytesPerSample();
}

int PnmLayout::bitsPerPixel() const
{
    return bilevel ? 1 : channels * bytesPerSample() * 8;
}

bool isPnm(const QByteArray& head)
{
    if (!hasMark(head))
        return false;
    constexpr qsizetype fullHead = 1024; // of what is sniffed at; a comment may be longer
    qsizetype at = 2;
    while (at < head.size() && (PnmText::isBlank(head[at]) || head[at] == '#')) {
        if (head[at] == '#')
            at = endOfComment(head, at);
        else
            ++at;
    }
    if (at >= head.size())
        return head.size() >= fullHead;
    return head[1] == '7' ? isArbitraryWord(firstWord(head.mid(at))) : PnmText::isDigit(head[at]);
}

Result<PnmLayout> readPnmLayout(const ByteSource& source)
{
    const QByteArray mark = source.bytes(0, 4);
    if (!hasMark(mark))
        return Error{ErrorKind::Damaged, QStringLiteral("no mark of a portable map")};
    PnmText text(source, 2, longestHeader);
    if (mark[1] != '7')
        return readClassic(text, mark[1]);
    text.line(); // the line of the mark
    return readArbitrary(text);
}

} // namespace quorvia::engine
