// The text of a mimeapps.list: which desktop entries stand for a type, and changes to that which leave every
// other byte as it is. What is added can be told from what was there, so that taking it out gives the very
// same text again. Plain functions, each a walk through the text.
#pragma once

#include <QByteArray>
#include <QList>

namespace quorvia::platform {

/// Names of groups.
inline constexpr char defaultApplications[] = "Default Applications";
inline constexpr char addedAssociations[] = "Added Associations";
inline constexpr char removedAssociations[] = "Removed Associations";

/// The ids of the line of `type` in `group`; of several lines the last one counts, as for the desktop. Empty
/// when there is none.
QList<QByteArray> idsOf(const QByteArray& text, const QByteArray& group, const QByteArray& type);
/// True when `group` has a line of `type`, were it without ids.
bool hasLine(const QByteArray& text, const QByteArray& group, const QByteArray& type);

/// `text` with `id` as the first of the line of `type`: of each such line, since programs differ in which of
/// several they take. A missing line comes directly below the group's head, a missing group at the end, under
/// a comment that says whose it is.
QByteArray withFirst(const QByteArray& text, const QByteArray& group, const QByteArray& type,
                     const QByteArray& id);
/// `text` without `id` in the lines of `type`, or of all types when that is empty; a line that held nothing
/// else goes, and a group under our comment that has no line any more.
QByteArray withoutId(const QByteArray& text, const QByteArray& group, const QByteArray& type,
                     const QByteArray& id);

/// What a file begins with that was not there before: a comment that says so.
QByteArray freshText();
/// True when nothing stands in `text` beside that comment: the file may go.
bool isFresh(const QByteArray& text);

} // namespace quorvia::platform
