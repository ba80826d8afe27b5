#include "platform/MimeApps.h"

#include "platform/BaseDirectories.h"
#include "platform/DesktopEntries.h"
#include "platform/MimeAppsText.h"
#include "platform/TextFile.h"

#include <QDir>

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

MimeApps::List& MimeApps::list(const QString& path)
{
    const auto known = m_lists.find(path);
    if (known != m_lists.end())
        return known->second;
    List fresh;
    const TextRead outcome = readTextFile(path, fresh.text);
    fresh.before = fresh.text;
    fresh.isThere = outcome == TextRead::Done;
    fresh.isRefused = outcome == TextRead::Refused;
    return m_lists.emplace(path, std::move(fresh)).first->second;
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

/// The lists of single desktops count for defaults alone.
QString MimeApps::userList(MimeRole role, const QString& type)
{
    if (role == MimeRole::Default) {
        for (const QString& prefix : std::as_const(m_desktops)) {
            QString path = configHome() + u'/' + prefix + QLatin1String(commonList);
            if (hasLine(textOf(path), groupOf(role), type.toUtf8()))
                return path;
        }
    }
    return configHome() + u'/' + QLatin1String(commonList);
}

void MimeApps::putFirst(MimeRole role, const QString& type, const QString& id)
{
    List& changed = list(userList(role, type));
    if (!changed.isThere && changed.text.isEmpty())
        changed.text = freshText();
    changed.text = withFirst(changed.text, groupOf(role), type.toUtf8(), id.toUtf8());
}

void MimeApps::takeOut(const QString& type, const QString& id)
{
    for (const QString& path : std::as_const(m_userLists)) {
        List& changed = list(path);
        for (const MimeRole role : {MimeRole::Default, MimeRole::Offered})
            changed.text = withoutId(changed.text, groupOf(role), type.toUtf8(), id.toUtf8());
    }
}

QStringList MimeApps::save()
{
    QStringList reasons;
    for (auto& [path, changed] : m_lists) {
        if (changed.text == changed.before)
            continue;
        QString why = QStringLiteral("it cannot be read");
        const bool done =
            !changed.isRefused &&
            (isFresh(changed.text) ? removeTextFile(path, &why) : replaceTextFile(path, changed.text, &why));
        if (!done) {
            reasons.append(path + QStringLiteral(": ") + why);
            continue;
        }
        changed.isThere = !isFresh(changed.text);
        if (!changed.isThere)
            changed.text.clear();
        changed.before = changed.text;
    }
    return reasons;
}

} // namespace quorvia::platform
