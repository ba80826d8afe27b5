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
    bool hidden;
};

/// `directory` ends in "/".
void addMatches(const QString& directory, const std::vector<DirectoryEntry>& entries,
                const QStringList& patterns, QStringList& files)
{
    std::vector<FileName> names;
    names.reserve(entries.size());
    for (const DirectoryEntry& entry : entries) {
        if (entry.kind == EntryKind::File)
            names.push_back({entry.name, folded(entry.name), entry.isHidden()});
    }
    for (const QString& pattern : patterns) {
        const bool showHidden = pattern.startsWith(u'.');
        for (const FileName& file : names) {
            if ((showHidden || !file.hidden) && matchesFolded(file.folded, pattern))
                files.append(directory + file.name);
        }
    }
}

bool isSubdirectory(const DirectoryEntry& entry)
{
    return entry.kind == EntryKind::Directory && !entry.isHidden();
}

void walkFiles(const QString& directory, const QStringList& patterns, bool recurse,
               EnteredDirectories& entered, QStringList& files)
{
    if (!entered.enter(directory))
        return;
    const std::vector<DirectoryEntry> entries = readDirectory(directory);
    addMatches(directory, entries, patterns, files);
    if (!recurse)
        return;
    for (const DirectoryEntry& entry : entries) {
        if (isSubdirectory(entry))
            walkFiles(directory + entry.name + u'/', patterns, recurse, entered, files);
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

void ListFiles(const QString& directory, const QString& patterns, bool recurse, QStringList& files)
{
    if (directory.isEmpty())
        return;
    EnteredDirectories entered;
    walkFiles(AddBackslash(directory), folded(patterns).split(u';', Qt::SkipEmptyParts), recurse, entered,
              files);
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
