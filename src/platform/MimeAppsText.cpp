#include "platform/MimeAppsText.h"

#include <algorithm>
#include <utility>

namespace quorvia::platform {

namespace {

constexpr char groupComment[] = "# Group added by Quorvia";
constexpr char fileComment[] = "# File added by Quorvia";

/// One line of a text; as it stood, so that all of them joined give the text again.
struct Line
{
    QByteArray content;
    QByteArray end; ///< "\n", "\r\n", or nothing at the end of the text
};

using Lines = QList<Line>;

/// Line numbers, the second behind the last; of a group: its head is `first`.
struct Range
{
    qsizetype first;
    qsizetype last;
};

Lines linesOf(const QByteArray& text)
{
    Lines lines;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype feed = text.indexOf('\n', at);
        const qsizetype stop = feed < 0 ? text.size() : feed + 1;
        qsizetype length = feed < 0 ? stop - at : feed - at;
        if (feed > at && text[feed - 1] == '\r')
            --length;
        lines.append({text.mid(at, length), text.mid(at + length, stop - at - length)});
        at = stop;
    }
    return lines;
}

QByteArray joined(const Lines& lines)
{
    QByteArray text;
    for (const Line& line : lines)
        text += line.content + line.end;
    return text;
}

bool isHead(const QByteArray& content)
{
    return content.trimmed().startsWith('[');
}

/// All stretches under the head of `group`; a group may be opened again.
QList<Range> groupsIn(const Lines& lines, const QByteArray& group)
{
    QList<Range> groups;
    const QByteArray head = '[' + group + ']';
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines[i].content.trimmed() != head)
            continue;
        qsizetype last = i + 1;
        while (last < lines.size() && !isHead(lines[last].content))
            ++last;
        groups.append({i, last});
    }
    return groups;
}

/// An empty `type` stands for any.
bool isOfType(const QByteArray& content, const QByteArray& type)
{
    const QByteArray key = content.left(qMax(content.indexOf('='), qsizetype(0))).trimmed();
    return !key.isEmpty() && (type.isEmpty() ? !key.startsWith('#') : key == type);
}

/// The numbers of the lines of `type` (empty: of any) in all stretches of `group`.
QList<qsizetype> linesOfType(const Lines& lines, const QByteArray& group, const QByteArray& type)
{
    QList<qsizetype> numbers;
    const QList<Range> groups = groupsIn(lines, group);
    for (const Range& range : groups) {
        for (qsizetype i = range.first + 1; i < range.last; ++i) {
            if (isOfType(lines[i].content, type))
                numbers.append(i);
        }
    }
    return numbers;
}

/// A line taken apart where its value begins: behind the blanks after the sign, unless there are only blanks.
std::pair<QByteArray, QByteArray> split(const QByteArray& content)
{
    const qsizetype sign = content.indexOf('=') + 1;
    qsizetype start = sign;
    while (start < content.size() && (content[start] == ' ' || content[start] == '\t'))
        ++start;
    if (start == content.size())
        start = sign;
    return {content.left(start), content.mid(start)};
}

bool holdsIds(const QByteArray& value)
{
    const QList<QByteArray> pieces = value.split(';');
    return std::any_of(pieces.begin(), pieces.end(),
                       [](const QByteArray& piece) { return !piece.trimmed().isEmpty(); });
}

QByteArray takenOut(const QByteArray& value, const QByteArray& id)
{
    QList<QByteArray> pieces = value.split(';');
    pieces.removeIf([&id](const QByteArray& piece) { return piece.trimmed() == id; });
    return pieces.join(';');
}

/// A second ";" behind the id says that the line was there before, without any id.
QByteArray putFirst(const QByteArray& value, const QByteArray& id)
{
    if (value.split(';').first().trimmed() == id)
        return value;
    const QByteArray rest = takenOut(value, id);
    return id + (holdsIds(rest) ? ";" : ";;") + rest;
}

void takeLine(Lines& lines, qsizetype number)
{
    if (lines[number].end.isEmpty() && number > 0) // the text had no line end at its end, and shall have none
        lines[number - 1].end.clear();
    lines.removeAt(number);
}

/// Takes `id` out of one line. True when the line is gone.
bool takeOutOfLine(Lines& lines, qsizetype number, const QByteArray& id)
{
    auto [key, value] = split(lines[number].content);
    const QByteArray rest = takenOut(value, id);
    if (rest.size() == value.size())
        return false;
    const QByteArray asEmpty = id + ";;";
    if (!holdsIds(rest) && !value.startsWith(asEmpty)) {
        takeLine(lines, number);
        return true;
    }
    lines[number].content = key + (holdsIds(rest) ? rest : value.mid(asEmpty.size()));
    return false;
}

QByteArray usualEnd(const Lines& lines)
{
    return lines.isEmpty() || lines.first().end.isEmpty() ? QByteArray("\n") : lines.first().end;
}

/// The end that an open last line gets. Behind a return, a line feed alone would make one end of both.
QByteArray endBehind(const Lines& lines)
{
    return lines.last().content.endsWith('\r') ? QByteArray("\r\n") : usualEnd(lines);
}

void appendGroup(Lines& lines, const QByteArray& group)
{
    const QByteArray end = usualEnd(lines);
    const bool open = !lines.isEmpty() && lines.last().end.isEmpty();
    if (open)
        lines.last().end = endBehind(lines);
    lines.append({groupComment, end});
    lines.append({'[' + group + ']', open ? QByteArray() : end});
}

void insertBelow(Lines& lines, qsizetype head, const QByteArray& content)
{
    const QByteArray end = lines[head].end;
    if (end.isEmpty()) // it is the last line then
        lines[head].end = endBehind(lines);
    lines.insert(head + 1, {content, end});
}

void takeEmptyGroups(Lines& lines, const QByteArray& group)
{
    for (qsizetype i = groupsIn(lines, group).size() - 1; i >= 0; --i) {
        const Range range =
            groupsIn(lines, group).at(i); // anew: the one behind may have taken our comment along
        // Our comment at its end belongs to the group that follows.
        const bool beforeOurs = lines[range.last - 1].content == groupComment && range.last < lines.size();
        const bool empty =
            std::all_of(lines.begin() + range.first + 1, lines.begin() + range.last - (beforeOurs ? 1 : 0),
                        [](const Line& line) { return line.content.trimmed().isEmpty(); });
        if (!empty || range.first == 0 || lines[range.first - 1].content != groupComment)
            continue;
        takeLine(lines, range.first);
        takeLine(lines, range.first - 1);
    }
}

} // namespace

QList<QByteArray> idsOf(const QByteArray& text, const QByteArray& group, const QByteArray& type)
{
    const Lines lines = linesOf(text);
    const QList<qsizetype> numbers = linesOfType(lines, group, type);
    QList<QByteArray> ids;
    if (numbers.isEmpty())
        return ids;
    const QList<QByteArray> pieces = split(lines[numbers.last()].content).second.split(';');
    for (const QByteArray& piece : pieces) {
        if (const QByteArray id = piece.trimmed(); !id.isEmpty())
            ids.append(id);
    }
    return ids;
}

bool hasLine(const QByteArray& text, const QByteArray& group, const QByteArray& type)
{
    return !linesOfType(linesOf(text), group, type).isEmpty();
}

QByteArray withFirst(const QByteArray& text, const QByteArray& group, const QByteArray& type,
                     const QByteArray& id)
{
    Lines lines = linesOf(text);
    const QList<qsizetype> numbers = linesOfType(lines, group, type);
    for (const qsizetype number : numbers) {
        const auto [key, value] = split(lines[number].content);
        lines[number].content = key + putFirst(value, id);
    }
    if (numbers.isEmpty()) {
        if (groupsIn(lines, group).isEmpty())
            appendGroup(lines, group);
        insertBelow(lines, groupsIn(lines, group).first().first, type + '=' + id);
    }
    return joined(lines);
}

QByteArray withoutId(const QByteArray& text, const QByteArray& group, const QByteArray& type,
                     const QByteArray& id)
{
    Lines lines = linesOf(text);
    QList<qsizetype> numbers = linesOfType(lines, group, type);
    std::reverse(numbers.begin(), numbers.end());
    bool gone = false;
    for (const qsizetype number : std::as_const(numbers))
        gone = takeOutOfLine(lines, number, id) || gone;
    if (gone)
        takeEmptyGroups(lines, group);
    return joined(lines);
}

QByteArray freshText()
{
    return QByteArray(fileComment) + '\n';
}

bool isFresh(const QByteArray& text)
{
    return text.trimmed() == fileComment;
}

} // namespace quorvia::platform
