#include "collections/QolText.h"

#include "app/mFile.h"

#include <QLocale>
#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace quorvia::collections {

namespace {

constexpr char lineEnd[] = "\r\n";
constexpr char extension[] = ".qol";

/// The next line of `rest`, which begins behind it afterwards. A file's last line needs no end.
QByteArrayView takeLine(QByteArrayView& rest)
{
    const auto* const end =
        std::find_if(rest.begin(), rest.end(), [](char byte) { return byte == '\r' || byte == '\n'; });
    const QByteArrayView line(rest.begin(), end);
    qsizetype next = line.size();
    if (next < rest.size())
        next += rest.sliced(next).startsWith(lineEnd) ? 2 : 1;
    rest = rest.sliced(next);
    return line;
}

bool isComment(QByteArrayView line)
{
    static constexpr std::array<QByteArrayView, 5> prefixes{"#", ":", "'", "Ext:", "Info:"};
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [line](QByteArrayView prefix) { return line.startsWith(prefix); });
}

QByteArrayView withoutMark(QByteArrayView bytes)
{
    constexpr QByteArrayView mark("\xEF\xBB\xBF"); // that some editors put before UTF-8
    return bytes.startsWith(mark) ? bytes.sliced(mark.size()) : bytes;
}

} // namespace

QByteArray qolText(const QStringList& files, QDate date)
{
    QByteArray text =
        "# Quorvia Playlist File - Created: " + QLocale::c().toString(date, u"MM/dd/yyyy").toLatin1() +
        " Files: " + QByteArray::number(files.size()) + lineEnd;
    if (files.isEmpty())
        return text;
    for (const QString& file : files) {
        text += file.toUtf8();
        text += lineEnd;
    }
    return text + "# End of File" + lineEnd;
}

QolLines::QolLines(const QByteArray& bytes) : m_rest(withoutMark(bytes)) {}

std::optional<QByteArrayView> QolLines::next()
{
    while (!m_rest.isEmpty()) {
        const QByteArrayView line = takeLine(m_rest);
        if (!line.isEmpty() && !isComment(line))
            return line;
    }
    return {};
}

QString qolLine(QByteArrayView line)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(line);
    return utf8.hasError() ? QString::fromLatin1(line) : text;
}

QByteArray qolContent(const QByteArray& bytes)
{
    QByteArrayView rest = withoutMark(bytes);
    if (rest.startsWith('#'))
        takeLine(rest);
    return rest.toByteArray();
}

bool fitsOnALine(const QString& file)
{
    return file.startsWith(u'/') && !file.contains(u'\n') && !file.contains(u'\r');
}

QString playlistName(const QString& path)
{
    return app::SplitPathName(path, 2).remove(QLatin1String(extension), Qt::CaseSensitive);
}

} // namespace quorvia::collections
