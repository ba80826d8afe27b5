#include "platform/MimeApps.h"

#include "platform/BaseDirectories.h"
#include "platform/DesktopEntries.h"
#include "platform/MimeAppsText.h"
#include "platform/Reason.h"

#include <QDir>

#include <utility>

namespace quorvia::platform {

namespace {

constexpr char commonList[] = "mimeapps.list";

const char* groupOf(MimeRole role)
{
    return role == MimeRole::Default ? defaultApplications : addedAssociations;
}

QStringList desktopPrefixes()
{
    QStringList prefixes;
    const QString named = QString::fromLocal8Bit(qgetenv("XDG_CURRENT_DESKTOP"));
    const QStringList names = named.split(u':', Qt::SkipEmptyParts);
    for (const QString& name : names) {
        if (!name.contains(u'/'))
            prefixes.append(name.toLower() + u'-');
    }
    return prefixes;
}

/// The user's lists for all desktops, the common one last.
QStringList userLists()
{
    const QDir directory(configHome());
    QStringList lists;
    const QStringList names = directory.entryList({QStringLiteral("*-mimeapps.list")},
                                                  QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    for (const QString& name : names)
        lists.append(directory.filePath(name));
    lists.append(directory.filePath(QLatin1String(commonList)));
    return lists;
}

bool isUsable(const QString& id)
{
    const QString path = entryPath(id);
    return !path.isEmpty() && isUsableEntry(path);
}

} // namespace

MimeApps::MimeApps() : m_desktops(desktopPrefixes()), m_userLists(userLists())
{
    m_places.append({configHome(), false});
    for (const QString& each : configDirectories())
        m_places.append({each, false});
    for (const QString& each : applicationsDirectories())
        m_places.append({each, true});
}

void MimeApps::read(List& list)
{
    list.text.clear();
    list.outcome = readTextFile(list.path, list.text);
    list.before = list.text;
}

/// A file that was not there before says so.
void MimeApps::apply(List& list, const Change& change)
{
    const bool isNew = list.outcome == TextRead::Missing && list.text.isEmpty();
    const QByteArray changed = change(isNew ? freshText() : list.text);
    if (!isNew || !isFresh(changed))
        list.text = changed;
}

MimeApps::List& MimeApps::list(const QString& path)
{
    const auto known = m_byPath.find(path);
    if (known != m_byPath.end())
        return *known->second;
    const QString target = endOfLinks(path);
    for (List& each : m_lists) {
        if (!target.isEmpty() && each.target == target)
            return *(m_byPath[path] = &each);
    }
    List& fresh = m_lists.emplace_back();
    fresh.path = path;
    fresh.target = target;
    read(fresh);
    return *(m_byPath[path] = &fresh);
}

QString MimeApps::firstDefault(const QString& type)
{
    for (const Place& place : std::as_const(m_places)) {
        for (const QString& prefix : m_desktops + QStringList{QString()}) {
            const QString path = place.directory + u'/' + prefix + QLatin1String(commonList);
            for (const QByteArray& id : idsOf(textOf(path), defaultApplications, type.toUtf8())) {
                if (isUsable(QString::fromUtf8(id)))
                    return QString::fromUtf8(id);
            }
        }
    }
    return {};
}

QString MimeApps::firstOffered(const QString& type)
{
    QList<QByteArray> removed;
    const auto chosen = [&removed](const QList<QByteArray>& ids) -> QString {
        for (const QByteArray& id : ids) {
            if (!removed.contains(id) && isUsable(QString::fromUtf8(id)))
                return QString::fromUtf8(id);
        }
        return {};
    };
    const QByteArray name = type.toUtf8();
    for (const Place& place : std::as_const(m_places)) {
        const QByteArray& text = textOf(place.directory + u'/' + QLatin1String(commonList));
        if (QString id = chosen(idsOf(text, addedAssociations, name)); !id.isEmpty())
            return id;
        removed += idsOf(text, removedAssociations, name);
        if (!place.isApplications)
            continue;
        const QByteArray& cache = textOf(place.directory + QStringLiteral("/mimeinfo.cache"));
        if (QString id = chosen(idsOf(cache, "MIME Cache", name)); !id.isEmpty())
            return id;
    }
    return {};
}

QString MimeApps::first(MimeRole role, const QString& type)
{
    if (role == MimeRole::Default) {
        if (QString id = firstDefault(type); !id.isEmpty())
            return id;
    }
    return firstOffered(type);
}

/// Those that have a say, the first one first. The lists of single desktops count for defaults alone.
QStringList MimeApps::userListsFor(MimeRole role) const
{
    QStringList lists;
    if (role == MimeRole::Default) {
        for (const QString& prefix : m_desktops)
            lists.append(configHome() + u'/' + prefix + QLatin1String(commonList));
    }
    lists.append(configHome() + u'/' + QLatin1String(commonList));
    return lists;
}

QString MimeApps::userList(MimeRole role, const QString& type)
{
    const QStringList lists = userListsFor(role);
    for (const QString& path : lists) {
        if (hasLine(textOf(path), groupOf(role), type.toUtf8()))
            return path;
    }
    return lists.last();
}

QStringList MimeApps::chosenByUser(MimeRole role, const QString& type)
{
    QStringList chosen;
    for (const QString& path : userListsFor(role)) {
        for (const QByteArray& id : idsOf(textOf(path), groupOf(role), type.toUtf8()))
            chosen.append(QString::fromUtf8(id));
    }
    return chosen;
}

void MimeApps::putFirst(MimeRole role, const QString& type, const QString& id)
{
    List& changed = list(userList(role, type));
    changed.changes.push_back([role, type, id](const QByteArray& text) {
        return withFirst(text, groupOf(role), type.toUtf8(), id.toUtf8());
    });
    apply(changed, changed.changes.back());
}

void MimeApps::takeOut(const QString& type, const QString& id)
{
    for (const QString& path : std::as_const(m_userLists)) {
        List& changed = list(path);
        for (const MimeRole role : {MimeRole::Default, MimeRole::Offered}) {
            changed.changes.push_back([role, type, id](const QByteArray& text) {
                return withoutId(text, groupOf(role), type.toUtf8(), id.toUtf8());
            });
            apply(changed, changed.changes.back());
        }
    }
}

/// Reads the list once more: between the first time and now, others may have written it.
bool MimeApps::saveList(List& list, QString* why)
{
    List now{list.path, list.target, {}, {}, {}, list.changes};
    read(now);
    if (now.outcome == TextRead::Refused)
        return fail(why, QStringLiteral("it cannot be read"));
    for (const Change& change : now.changes)
        apply(now, change);
    if (now.text != now.before) {
        const bool goes = isFresh(now.text);
        if (!(goes ? removeTextFile(now.path, why) : replaceTextFile(now.path, now.text, why)))
            return false;
        now.outcome = goes ? TextRead::Missing : TextRead::Done;
        if (goes)
            now.text.clear();
        now.before = now.text;
    }
    now.changes.clear();
    list = now;
    return true;
}

QStringList MimeApps::save()
{
    QStringList reasons;
    for (List& each : m_lists) {
        QString why;
        if (!each.changes.empty() && !saveList(each, &why))
            reasons.append(each.path + QStringLiteral(": ") + why);
    }
    return reasons;
}

} // namespace quorvia::platform
