#include "platform/DesktopEntries.h"

#include "platform/BaseDirectories.h"
#include "platform/FileStatus.h"
#include "platform/GioParts.h"
#include "platform/TextFile.h"

#include <QFileInfo>

#include <algorithm>
#include <climits>
#include <memory>
#include <utility>

namespace quorvia::platform {

namespace {

constexpr char entryGroup[] = "Desktop Entry";

struct FreeKeys
{
    void operator()(GKeyFile* keys) const { g_key_file_free(keys); }
};
using KeyFile = std::unique_ptr<GKeyFile, FreeKeys>;

struct FreeWords
{
    void operator()(gchar** words) const { g_strfreev(words); }
};

gio::Text valueOf(const KeyFile& keys, const char* key)
{
    return gio::Text(g_key_file_get_string(keys.get(), entryGroup, key, nullptr));
}

bool isFound(const char* program)
{
    return gio::Text(g_find_program_in_path(program)) != nullptr;
}

/// True when the first word of `command` is a program. An entry without a command is started over the bus.
bool hasProgram(const gio::Text& command)
{
    if (!command || *command == 0)
        return true;
    gchar** raw = nullptr;
    if (!g_shell_parse_argv(command.get(), nullptr, &raw, nullptr))
        return false;
    const std::unique_ptr<gchar*, FreeWords> words(raw);
    return isFound(*words);
}

/// The entry `id` below `directory`, which ends in "/"; with each "-" taken for a subdirectory where there is
/// one.
QString entryBelow(const QString& directory, const QString& id)
{
    if (isRegularFile(directory + id))
        return directory + id;
    for (qsizetype at = id.indexOf(u'-'); at > 0; at = id.indexOf(u'-', at + 1)) {
        const QString below = directory + id.left(at) + u'/';
        if (!isDirectory(below))
            continue;
        if (QString found = entryBelow(below, id.mid(at + 1)); !found.isEmpty())
            return found;
    }
    return {};
}

bool isPlain(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || QByteArray("/._+-@:,").contains(character) ||
           static_cast<unsigned char>(character) >= 0x80;
}

/// Where the first word of a command ends: at a blank, unless it is quoted.
qsizetype endOfWord(const QByteArray& command)
{
    if (!command.startsWith('"')) {
        const qsizetype blank = command.indexOf(' ');
        return blank < 0 ? command.size() : blank;
    }
    const qsizetype quote = command.indexOf('"', 1);
    return quote < 0 ? command.size() : quote + 1;
}

} // namespace

QStringList applicationsDirectories()
{
    QStringList directories{dataHome() + QStringLiteral("/applications")};
    for (const QString& each : dataDirectories())
        directories.append(each + QStringLiteral("/applications"));
    directories.removeDuplicates();
    return directories;
}

QString entryPath(const QString& id)
{
    // Each "-" of an id may be a directory: what is too long for a name is not worth the search.
    if (id.isEmpty() || id.contains(u'/') || QFile::encodeName(id).size() > NAME_MAX)
        return {};
    for (const QString& directory : applicationsDirectories()) {
        if (QString found = entryBelow(directory + u'/', id); !found.isEmpty())
            return found;
    }
    return {};
}

QString entryId(const QString& path)
{
    for (const QString& directory : applicationsDirectories()) {
        if (path.startsWith(directory + u'/'))
            return path.mid(directory.size() + 1).replace(u'/', u'-');
    }
    return QFileInfo(path).fileName();
}

bool isUsableEntry(const QString& path)
{
    QByteArray text;
    if (readTextFile(path, text) != TextRead::Done)
        return false;
    const KeyFile keys(g_key_file_new());
    if (!g_key_file_load_from_data(keys.get(), text.constData(), gsize(text.size()), G_KEY_FILE_NONE,
                                   nullptr))
        return false;
    const gio::Text kind = valueOf(keys, "Type");
    const gio::Text tried = valueOf(keys, "TryExec");
    const bool isHidden = g_key_file_get_boolean(keys.get(), entryGroup, "Hidden", nullptr);
    return kind && qstrcmp(kind.get(), "Application") == 0 && !isHidden &&
           (!tried || *tried == 0 || isFound(tried.get())) && hasProgram(valueOf(keys, "Exec"));
}

QByteArray execWord(const QString& program)
{
    QByteArray path = QFile::encodeName(program);
    if (std::all_of(path.cbegin(), path.cend(), isPlain))
        return path;
    // Two layers: within quotes a backslash stands before four characters, and the file doubles every
    // backslash.
    QByteArray word = "\"";
    for (const char character : std::as_const(path)) {
        if (character == '\\')
            word += "\\\\\\\\";
        else if (character == '"' || character == '`' || character == '$')
            word += QByteArray("\\\\") + character;
        else if (character == '%')
            word += "%%";
        else
            word += character;
    }
    return word + '"';
}

QByteArray withProgram(const QByteArray& text, const QString& program)
{
    QList<QByteArray> lines = text.split('\n');
    const QByteArray key = "Exec=";
    for (QByteArray& line : lines) {
        if (!line.startsWith(key))
            continue;
        const QByteArray command = line.mid(key.size());
        line = key + execWord(program) + command.mid(endOfWord(command));
    }
    return lines.join('\n');
}

} // namespace quorvia::platform
