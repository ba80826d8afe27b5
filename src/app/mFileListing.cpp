// Wildcards and the lists of files and folders.
#include "app/DirectoryReader.h"
#include "app/mFile.h"
#include "platform/FileStatus.h"

#include <sys/stat.h>

#include <set>
#include <utility>
#include <vector>

namespace quorvia::app {

namespace {

/// Case-folded unit by unit, so that "?" still stands for one character.
QString folded(const QString& text)
{
    QString result = text;
    for (QChar& character : result)
        character = character.toCaseFolded();
    return result;
}

/// Position behind the character of `name` at `at`; a character beyond the first 65,536 takes two units.
qsizetype nextCharacter(const QString& name, qsizetype at)
{
    const bool pair = name[at].isHighSurrogate() && at + 1 < name.size() && name[at + 1].isLowSurrogate();
    return at + (pair ? 2 : 1);
}

/// Both folded. Goes back to the latest "*" only, so the cost is at most the product of the two lengths.
bool matchesFolded(const QString& name, const QString& pattern)
{
    if (pattern == QLatin1String("*.*"))
        return true;
    qsizetype at = 0;
    qsizetype in = 0;
    qsizetype star = -1;     // the latest "*" passed
    qsizetype afterStar = 0; // where in the name what follows it was tried last
    while (at < name.size()) {
        if (in < pattern.size() && pattern[in] == u'*') {
            star = in++;
            afterStar = at;
        } else if (in < pattern.size() && pattern[in] == u'?') {
            at = nextCharacter(name, at);
            ++in;
        } else if (in < pattern.size() && pattern[in] == name[at]) {
            ++at;
            ++in;
        } else if (star >= 0) {
            in = star + 1;
            at = afterStar = nextCharacter(name, afterStar);
        } else {
            return false;
        }
    }
    while (in < pattern.size() && pattern[in] == u'*')
        ++in;
    return in == pattern.size();
}

/// A folded pattern. Most are "*.ext", which a look at the end of the name answers.
class Pattern
{
  public:
    explicit Pattern(const QString& text)
        : m_text(text),
          m_isEnding(text.startsWith(u'*') && text.lastIndexOf(u'*') == 0 && !text.contains(u'?'))
    {
    }
    bool findsHidden() const { return m_text.startsWith(u'.'); }
    bool matches(const QString& name) const
    {
        return m_isEnding ? name.endsWith(QStringView(m_text).mid(1)) : matchesFolded(name, m_text);
    }

  private:
    QString m_text;
    bool m_isEnding;
};

std::vector<Pattern> patternsOf(const QString& list)
{
    std::vector<Pattern> patterns;
    for (const QString& text : folded(list).split(u';', Qt::SkipEmptyParts))
        patterns.emplace_back(text);
    return patterns;
}

/// The directories that a walk has entered, by their identity, so that links that lead back end it.
class EnteredDirectories
{
  public:
    /// True the first time that the directory at `path` is entered.
    bool enter(const QString& path)
    {
        struct stat status = {};
        return platform::fileStatus(path, status) == 0 &&
               m_entered.insert(std::pair(status.st_dev, status.st_ino)).second;
    }

  private:
    std::set<std::pair<dev_t, ino_t>> m_entered;
};

struct FileName
{
    QString name;
    QString folded;
    bool hidden = false;
};

/// `directory` ends in "/".
void addMatches(const QString& directory, const std::vector<DirectoryEntry>& entries,
                const std::vector<Pattern>& patterns, QStringList& files)
{
    std::vector<FileName> names;
    names.reserve(entries.size());
    for (const DirectoryEntry& entry : entries) {
        if (entry.kind == EntryKind::File)
            names.push_back({entry.name, folded(entry.name), entry.isHidden()});
    }
    for (const Pattern& pattern : patterns) {
        for (const FileName& file : names) {
            if ((!file.hidden || pattern.findsHidden()) && pattern.matches(file.folded))
                files.append(directory + file.name);
        }
    }
}

bool isSubdirectory(const DirectoryEntry& entry)
{
    return entry.kind == EntryKind::Directory && !entry.isHidden();
}

/// What a walk for files carries along.
struct FileWalk
{
    std::vector<Pattern> patterns;
    bool recurse;
    const std::function<bool()>& goOn;
    QStringList& files;
    EnteredDirectories entered = {};
};

void walkFiles(const QString& directory, FileWalk& walk)
{
    if ((walk.goOn && !walk.goOn()) || !walk.entered.enter(directory))
        return;
    const std::vector<DirectoryEntry> entries = readDirectory(directory);
    addMatches(directory, entries, walk.patterns, walk.files);
    if (!walk.recurse)
        return;
    for (const DirectoryEntry& entry : entries) {
        if (isSubdirectory(entry))
            walkFiles(directory + entry.name + u'/', walk);
    }
}

void walkFolders(const QString& directory, bool recurse, EnteredDirectories& entered, QStringList& folders)
{
    for (const DirectoryEntry& entry : readDirectory(directory)) {
        if (!isSubdirectory(entry))
            continue;
        const QString folder = directory + entry.name;
        if (!recurse) {
            folders.append(folder);
        } else if (entered.enter(folder)) {
            folders.append(folder);
            walkFolders(folder + u'/', recurse, entered, folders);
        }
    }
}

} // namespace

bool MatchesWildcard(const QString& name, const QString& pattern)
{
    return matchesFolded(folded(name), folded(pattern));
}

void ListFiles(const QString& directory, const QString& patterns, bool recurse, QStringList& files,
               const std::function<bool()>& goOn)
{
    if (directory.isEmpty())
        return;
    FileWalk walk{.patterns = patternsOf(patterns), .recurse = recurse, .goOn = goOn, .files = files};
    walkFiles(AddBackslash(directory), walk);
}

void ListFolders(const QString& directory, bool recurse, QStringList& folders)
{
    if (directory.isEmpty())
        return;
    EnteredDirectories entered;
    entered.enter(directory);
    walkFolders(AddBackslash(directory), recurse, entered, folders);
}

} // namespace quorvia::app
