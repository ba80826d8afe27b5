// The path, file and shell helpers that the whole system shares. Free functions on native text paths; none
// keeps state.
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

namespace quorvia::app {

/// `path` with a "/" at its end.
QString AddBackslash(const QString& path);
/// True when `path` is a directory; false for the empty path.
bool FolderExists(const QString& path);
/// True when `path` names a file. Without such a file, "*" and "?" in its last component match names without
/// case, and the first match decides. False for the empty path and for directories.
bool FileExists(const QString& path);
/// Creates every missing directory of `path` that ends in a "/"; what follows the last "/" is not created.
/// Failures pass without a word: the caller looks whether the directory stands.
void MakePath(const QString& path);
/// Part 1: up to and including the last "/"; part 2: what follows it. Any other part number shows a message
/// box and gives "".
QString SplitPathName(const QString& path, int part);
/// The text after the last "." of the name, case as it stands; "" when the name has none.
QString GetExtension(const QString& path);
/// The name without its extension; with `keepDirectory` the path without it.
QString GetBaseName(const QString& path, bool keepDirectory);
/// The short form of an existing path, which is the path itself here; "" when nothing exists there.
QString GetShortPath(const QString& path);
/// Last-written time, local, with milliseconds; an invalid QDateTime when the file cannot be opened for
/// reading.
QDateTime GetFileModified(const QString& path);
/// The three times of a file, local; false, with the times untouched, when it cannot be opened for reading.
bool GetFileTimes(const QString& path, QDateTime& created, QDateTime& modified, QDateTime& accessed);
/// The words for attribute bits 16, 1, 2, 4, 32 in that order: "Directory ReadOnly Hidden System Archive".
QString AttributeWords(unsigned bits);
/// The attribute words of the file at `path`; "" when it cannot be looked at.
QString AttributeText(const QString& path);
/// The size of the file at `path` as text. Level 0 bytes, 1 KB, 2 MB, 3 GB, 4 TB; `separators` groups the
/// digits and rounds (no decimals below level 2, two from there on). "0" and the unit for an empty path.
QString FormatFileSize(const QString& path, int level, bool separators);
/// The same for a size in bytes.
QString FormatSize(qint64 bytes, int level, bool separators);
/// A text that identifies an image by path, length and last-written time; stable as long as these are.
QString GetImageKey(const QString& path);
/// "True" or "False".
QString BoolText(bool value);
/// `value` becomes whether `text` reads "true", case-folded.
void TextBool(const QString& text, bool& value);

/// Starts or opens `target`; see mFile.cpp for what each argument means here. `message` gets the fixed text
/// of the failure, or "".
bool ShellRun(const QString& target, int windowMode, const QString& parameters, const QString& directory,
              const QString& verb, QString& message);
/// The fixed text for a shell result of 32 or below.
QString ShellMessage(int code);

/// Adds to `files` the path of every file in `directory` that matches a pattern of the ";"-separated
/// `patterns`, pattern by pattern: a file that two patterns match is added twice. Matching ignores case,
/// "*.*" matches every name. With `recurse` the same follows for each subdirectory, in the file system's
/// order.
void ListFiles(const QString& directory, const QString& patterns, bool recurse, QStringList& files);
/// Adds to `folders` the path of every subdirectory of `directory`; with `recurse` theirs too, each after its
/// parent.
void ListFolders(const QString& directory, bool recurse, QStringList& folders);
/// True when `name` matches the wildcard `pattern` ("*", "?"), ignoring case; "*.*" matches every name.
bool MatchesWildcard(const QString& name, const QString& pattern);

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
