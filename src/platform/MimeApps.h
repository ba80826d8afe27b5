// Which programs the desktop opens a type of file with, and the user's say in it. Reads the lists of user and
// machine when they are first asked for, and keeps changes until they are saved, all at once. GIO is not
// asked: it sees a change of its lists only some time after it was made.
#pragma once

#include "platform/TextFile.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <list>
#include <map>
#include <vector>

namespace quorvia::platform {

/// Two ways in which a program may stand for a type.
enum class MimeRole {
    Default, ///< files of the type are opened with it
    Offered, ///< it is among those that are offered besides
};

class MimeApps
{
  public:
    /// Takes its places from the environment.
    MimeApps();
    MimeApps(const MimeApps&) = delete;
    MimeApps& operator=(const MimeApps&) = delete;

    /// The id of the entry that the desktop opens `type` with, or offers first; empty when there is none.
    /// Entries that are missing or cannot be started are passed over, as the desktop does.
    QString first(MimeRole role, const QString& type);
    /// Puts `id` before all others of the user's list: in the list of the running desktop when that has a say
    /// in `type`, else in the common one.
    void putFirst(MimeRole role, const QString& type, const QString& id);
    /// Takes `id` out of all lists of the user's, those of other desktops too, in both roles; an empty `type`
    /// stands for all.
    void takeOut(const QString& type, const QString& id);
    /// The ids that the user's lists name for `type`, whether they can be used or not: the running desktop's
    /// lists, as far as they count, and the common one.
    QStringList chosenByUser(MimeRole role, const QString& type);

    /// Writes what was changed. A list that others changed meanwhile is read again and the changes are made
    /// there. Empty when all of it stands; else one reason for each list that is as it was, a list that
    /// cannot be read among them.
    QStringList save();

  private:
    using Change = std::function<QByteArray(const QByteArray&)>;

    struct List
    {
        QString path;      ///< by which it was first asked for
        QString target;    ///< the file behind its links
        QByteArray before; ///< as it was read
        QByteArray text;
        TextRead outcome = TextRead::Missing;
        std::vector<Change> changes; ///< not yet saved
    };

    /// One directory with lists, in the order in which they count.
    struct Place
    {
        QString directory;
        bool isApplications; ///< holds the programs' own words about their types too
    };

    List& list(const QString& path);
    static void read(List& list);
    static void apply(List& list, const Change& change);
    static bool saveList(List& list, QString* why);
    QStringList userListsFor(MimeRole role) const;
    const QByteArray& textOf(const QString& path) { return list(path).text; }
    QString userList(MimeRole role, const QString& type);
    QString firstDefault(const QString& type);
    QString firstOffered(const QString& type);

    QStringList m_desktops; ///< prefixes of list names, as in "gnome-"
    QList<Place> m_places;
    QStringList m_userLists;
    std::list<List> m_lists;           ///< one a file
    std::map<QString, List*> m_byPath; ///< several paths may lead to one file
};

} // namespace quorvia::platform
