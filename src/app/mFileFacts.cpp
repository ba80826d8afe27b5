// What the file system tells of one file: times, attributes, the image key.
#include "app/mFile.h"
#include "platform/FileStatus.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace quorvia::app {

namespace {

class Descriptor
{
  public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return m_number; }

  private:
    int m_number;
};

QDateTime localTime(const statx_timestamp& stamp)
{
    // A damaged inode may hold any second; these bounds keep the milliseconds within 64 bits.
    constexpr qint64 farthest = qint64(1) << 52;
    const qint64 seconds = std::clamp<qint64>(stamp.tv_sec, -farthest, farthest);
    return QDateTime::fromMSecsSinceEpoch(seconds * 1000 + stamp.tv_nsec / 1000000);
}

/// The facts of a file that can be opened for reading; empty for all else, directories among it.
std::optional<struct statx> factsOfReadable(const QString& path)
{
    if (path.isEmpty() || path.contains(QChar(u'\0')))
        return std::nullopt;
    // Without waiting: a named pipe would otherwise hold the program until someone writes to it.
    const Descriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct statx facts = {};
    if (file.number() < 0 ||
        ::statx(file.number(), "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_BTIME, &facts) != 0 ||
        S_ISDIR(facts.stx_mode))
        return std::nullopt;
    return facts;
}

QString nameOf(QString path)
{
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return SplitPathName(path, 2);
}

/// A number from the character codes of `text`, each weighted by its place, so that names of the same letters
/// in another order differ. FNV-1a over 16-bit units.
quint32 codeNumber(const QString& text)
{
    quint32 number = 2166136261U;
    for (const QChar character : text)
        number = (number ^ character.unicode()) * 16777619U;
    return number;
}

/// Code of the character that stands `share` of the way along `path`; 0 for the empty path.
int codeAlong(const QString& path, int share)
{
    return path.isEmpty() ? 0 : path[path.size() / share].unicode();
}

} // namespace

bool GetFileTimes(const QString& path, QDateTime& created, QDateTime& modified, QDateTime& accessed)
{
    const std::optional<struct statx> facts = factsOfReadable(path);
    if (!facts)
        return false;
    created = localTime((facts->stx_mask & STATX_BTIME) != 0 ? facts->stx_btime : facts->stx_ctime);
    modified = localTime(facts->stx_mtime);
    accessed = localTime(facts->stx_atime);
    return true;
}

QDateTime GetFileModified(const QString& path)
{
    const std::optional<struct statx> facts = factsOfReadable(path);
    return facts ? localTime(facts->stx_mtime) : QDateTime();
}

QString AttributeWords(unsigned bits)
{
    static constexpr std::array<std::pair<unsigned, const char*>, 5> words = {
        {{16, " Directory"}, {1, " ReadOnly"}, {2, " Hidden"}, {4, " System"}, {32, " Archive"}}};
    QString text;
    for (const auto& [bit, word] : words) {
        if ((bits & bit) != 0)
            text += QLatin1String(word);
    }
    return text.mid(1);
}

QString AttributeText(const QString& path)
{
    struct stat status = {};
    if (platform::fileStatus(path, status) != 0 && // a link that leads nowhere is looked at itself
        platform::fileStatus(path, status, platform::Links::Keep) != 0)
        return QString();
    unsigned bits = 0;
    if (S_ISDIR(status.st_mode))
        bits |= 16;
    else if (!S_ISREG(status.st_mode))
        bits |= 4;
    if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
        bits |= 1;
    if (nameOf(path).startsWith(u'.'))
        bits |= 2;
    return AttributeWords(bits);
}

QString GetImageKey(const QString& path)
{
    struct stat status = {};
    const qint64 length = platform::fileStatus(path, status) == 0 ? status.st_size : 0;
    // In universal time: the same picture keeps its key when its user travels.
    QString key = QString::number(length) + KeyDate(GetFileModified(path).toUTC());
    const auto add = [&key](qint64 number) { key += u'-' + QString::number(number); };
    add(codeNumber(GetBaseName(path, false)));
    add(codeNumber(GetExtension(path)));
    for (const int share : {4, 2, 3})
        add(codeAlong(path, share));
    add(path.size());
    for (const char letter : {'a', 'e', 'i', 'o', 'u', 'y'})
        add(path.count(QLatin1Char(letter)));
    add(codeNumber(path)); // all of the above may agree for copies in two directories
    return key;
}

} // namespace quorvia::app
