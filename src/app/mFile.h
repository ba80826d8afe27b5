// The path, file and shell helpers that the whole system shares. Free functions on native text paths; none
// keeps state.
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>

namespace quorvia::app {

/// `path` with a "/" at its end, added unless it is there; the empty path becomes "/".
QString AddBackslash(const QString& path);
/// True when `path` is a directory; false for the empty path.
bool FolderExists(const QString& path);
/// True when `path` names anything but a directory. When it names nothing as it stands, "*" and "?" in its
/// last component match names without case, hidden ones as in ListFiles(), and the first match in the order
/// of names decides. False for the empty path and for directories.
bool FileExists(const QString& path);
/// Creates every missing directory of `path` that ends in a "/", from the left; what follows the last "/" is
/// not created, and neither is a drive ("C:"). Failures pass without a word: the caller looks whether the
/// directory stands.
void MakePath(const QString& path);
/// With `part` 1 the path up to and including the last "/", with 2 what follows it. Any other part number
/// shows a message box and gives "".
QString SplitPathName(const QString& path, int part);
/// The text after the last "." of the name, case as it stands; "" when the name has none. A ":" ends the name
/// as a "/" does.
QString GetExtension(const QString& path);
/// The name without its extension and the "." before it; with `keepDirectory` the path without them.
QString GetBaseName(const QString& path, bool keepDirectory);
/// The short form of an existing path, which is the path itself here; "" when nothing exists there.
QString GetShortPath(const QString& path);
/// Last-written time, local, with milliseconds; an invalid QDateTime when the file cannot be opened for
/// reading, as no directory can.
QDateTime GetFileModified(const QString& path);
/// The three times of a file, local; false, with the times untouched, when it cannot be opened for reading.
/// `created` is the time of birth where the file system keeps it, else that of the last change of the file's
/// state.
bool GetFileTimes(const QString& path, QDateTime& created, QDateTime& modified, QDateTime& accessed);
/// The words for attribute bits 16, 1, 2, 4, 32 in that order: "Directory ReadOnly Hidden System Archive".
QString AttributeWords(unsigned bits);
/// The attribute words of the file at `path`; "" when it cannot be looked at. Bit 16: a directory; 1: nobody
/// may write; 2: the name begins with "."; 4: neither a regular file nor a directory nor a link to one; 32:
/// never.
QString AttributeText(const QString& path);
/// The size of the file at `path` as text. Level 0 bytes, 1 KB, 2 MB, 3 GB, 4 TB, levels beyond as the
/// nearest of them. `separators` groups the digits by "," and rounds half up (no decimals below level 2, two
/// from there on); without it the value stands with up to 15 digits. "0" and the unit for an empty path, for
/// a missing file and for a directory.
QString FormatFileSize(const QString& path, int level, bool separators);
/// The same for a size in bytes; below 0 counts as 0.
QString FormatSize(qint64 bytes, int level, bool separators);
/// `number` with "," between groups of three digits, whatever the user's language.
QString GroupDigits(qint64 number);
/// A text that identifies an image by path, length in bytes and last-written time (to the second, in
/// universal time); stable as long as these are. Digits and "-" only, so that it can be a file's name.
QString GetImageKey(const QString& path);
/// "True" or "False".
QString BoolText(bool value);
/// `value` becomes whether `text` reads "true", case-folded.
void TextBool(const QString& text, bool& value);

/// A `target` that is a program file, or whose name holds ".exe" (any case) and that is neither a directory
/// nor an address, is started in `directory` (empty: the present one) with `parameters`, one text that is
/// split at blanks as a command line would be: double quotes group, three of them are a quote character. Any
/// other target is opened as a document by the desktop, with the `verb` "open" (or "") or "edit", the one for
/// its default program, the other for an editor. `windowMode` says nothing here: the desktop places the
/// windows of other programs. True when started; `message` gets the fixed text of the failure, or "".
bool ShellRun(const QString& target, int windowMode, const QString& parameters, const QString& directory,
              const QString& verb, QString& message);
/// The fixed text for a shell result of 32 or below; "" for the results above, which are successes.
QString ShellMessage(int code);

/// Adds to `files` the path of every file in `directory` that matches a pattern of the ";"-separated
/// `patterns`, pattern by pattern and for each in the file system's order: a file that two patterns match is
/// added twice. Matching ignores case, "*.*" matches every name. Names that begin with "." are hidden: only a
/// pattern that begins so finds them. With `recurse` the same follows for each subdirectory that is not
/// hidden, in the file system's order; links are followed, and a directory that links reach again is passed
/// over. A directory that cannot be read adds nothing. Each directory is read once, whatever the number of
/// patterns. `goOn` is asked before each directory; once it gives false, which it then does always, no more
/// is added.
void ListFiles(const QString& directory, const QString& patterns, bool recurse, QStringList& files,
               const std::function<bool()>& goOn = {});
/// Adds to `folders` the path, without a "/" at its end, of every subdirectory of `directory` that is not
/// hidden; with `recurse` theirs too, each after its parent, links as in ListFiles().
void ListFolders(const QString& directory, bool recurse, QStringList& folders);
/// True when `name` matches the wildcard `pattern` ("*", "?"), ignoring case; "*.*" matches every name.
bool MatchesWildcard(const QString& name, const QString& pattern);

// Dates as text, in English and with hours from 00 to 23 whatever the user's language; "" for an invalid
// time.

/// "MMDDYYYYHHMMSS", for cache and key names.
QString KeyDate(const QDateTime& time);
/// "mm-dd-yyyy" and "hh:mm:ss", for the log.
QString LogDate(const QDateTime& time);
QString LogTime(const QDateTime& time);
/// "mmddyyyy" and "hhmmss", for acquired images' names.
QString AcquiredDate(const QDateTime& time);
QString AcquiredTime(const QDateTime& time);
/// "mmmm dd, yyyy", for dates on display.
QString DisplayDate(const QDateTime& time);

} // namespace quorvia::app
