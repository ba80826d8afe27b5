// Which programs the desktop opens a type of file with, and the user's say in it. Reads the lists of user and
// machine when they are first asked for, and keeps changes until they are saved, all at once. GIO is not
// asked: it sees a change of its lists only some time after it was made.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <map>

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

    /// The id of the entry that the desktop opens `type` with, or offers first; empty when there is none.
    /// Entries that are missing or cannot be started are passed over, as the desktop does.
    QString first(MimeRole role, const QString& type);
    /// Puts `id` before all others of the user's list: in the list of the running desktop when that has a say
    /// in `type`, else in the common one.
    void putFirst(MimeRole role, const QString& type, const QString& id);
    /// Takes `id` out of all lists of the user's, those of other desktops too, in both roles.
    void takeOut(const QString& type, const QString& id);

    /// Writes what was changed. Empty when all of it stands; else one reason for each list that is as it was.
    QStringList save();

  private:
    struct List
    {
        QByteArray before; ///< as it was read
        QByteArray text;
        bool isThere = false;
        bool isRefused = false; ///< not to be read, and so not to be written
    };

    /// One directory with lists, in the order in which they count.
    struct Place
    {
        QString directory;
        bool isApplications; ///< holds the programs' own words about their types too
    };

    List& list(const QString& path);
    const QByteArray& textOf(const QString& path) { return list(path).text; }
    QString userList(MimeRole role, const QString& type);
    QString firstDefault(const QString& type);
    QString firstOffered(const QString& type);

    QStringList m_desktops; ///< prefixes of list names, as in "gnome-"
    QList<Place> m_places;
    QStringList m_userLists;
    std::map<QString, List> m_lists; ///< by path
};

} // namespace quorvia::platform
