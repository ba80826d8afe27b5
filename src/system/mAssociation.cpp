#include "system/mAssociation.h"

#include "app/Log.h"
#include "app/Settings.h"
#include "platform/DesktopEntries.h"
#include "platform/FileStatus.h"
#include "platform/MimeApps.h"
#include "system/AssociationTable.h"
#include "system/DesktopPresence.h"

namespace quorvia::system {

namespace {

using platform::MimeApps;
using platform::MimeRole;

constexpr QLatin1String openVerb("Open");
constexpr QLatin1String none("(none)");

QStringList verbs()
{
    return {openVerb, QLatin1String("Preview")};
}

MimeRole roleOf(const QString& verb)
{
    return verb == openVerb ? MimeRole::Default : MimeRole::Offered;
}

QString withPoint(const QString& extension)
{
    return extension.startsWith(u'.') ? extension : u'.' + extension;
}

/// A name at the very beginning would be no path of ours.
bool namesThisProgram(const QString& path)
{
    return path.indexOf(ownEntryId()) > 0;
}

void saveEarlierOwners(MimeApps& desktop)
{
    for (const QString& extension : extensionsOfOwners()) {
        for (const QString& verb : verbs()) {
            const QString owner = earlierOwnerPath(GetAssociation(desktop, extension, verb));
            if (!owner.isEmpty())
                app::saveEarlierOwner(verb, extension, owner);
        }
    }
}

void takeOver(MimeApps& desktop, const QString& entry)
{
    for (const QString& verb : verbs()) {
        for (const AssociationRow& row : associationTable())
            SetAssociation(desktop, QLatin1String(row.extension), entry, verb);
    }
}

/// An owner that the desktop is back at by itself is not written down: the lists end as they were.
void giveBack(MimeApps& desktop, const QString& extension, const QString& verb)
{
    const QString owner = app::readEarlierOwner(verb, extension);
    if (owner == none || namesThisProgram(owner) || !platform::isRegularFile(owner))
        return;
    if (GetAssociation(desktop, extension, verb) != platform::entryId(owner))
        SetAssociation(desktop, extension, owner, verb);
}

void save(MimeApps& desktop)
{
    const QStringList reasons = desktop.save();
    for (const QString& reason : reasons)
        app::WriteLog(QStringLiteral("Associations: ") + reason);
}

} // namespace

QString earlierOwnerPath(const QString& id)
{
    const QString suffix = QStringLiteral(".desktop");
    const qsizetype at = id.indexOf(suffix, 0, Qt::CaseInsensitive);
    if (at < 0)
        return {};
    const QString path = platform::entryPath(id.left(at) + suffix);
    return namesThisProgram(path) ? QString() : path;
}

void ApplyAssociations()
{
    if (app::read(app::setting::Associate) != 1)
        return;
    MimeApps desktop;
    saveEarlierOwners(desktop);
    provideOwnTypes();
    if (const QString entry = provideOwnEntry(); !entry.isEmpty()) {
        takeOver(desktop, entry);
        save(desktop);
    }
    app::save(app::setting::Associate, 0);
    NotifyAssociationsChanged();
}

void RestoreAssociations()
{
    removeOwnEntry(); // before anybody asks what the desktop offers without us
    MimeApps desktop;
    for (const AssociationRow& row : associationTable())
        RemoveExtensionClass(desktop, QLatin1String(row.extension));
    for (const QString& extension : extensionsOfOwners()) {
        for (const QString& verb : verbs())
            giveBack(desktop, extension, verb);
    }
    save(desktop);
    removeOwnTypes();
    NotifyAssociationsChanged();
}

QString GetAssociation(MimeApps& desktop, const QString& extension, const QString& verb)
{
    return desktop.first(roleOf(verb), associatedType(withPoint(extension)));
}

void SetAssociation(MimeApps& desktop, const QString& extension, const QString& command, const QString& verb)
{
    const QString type = associatedType(withPoint(extension));
    if (!type.isEmpty())
        desktop.putFirst(roleOf(verb), type, platform::entryId(command));
}

void RemoveExtensionClass(MimeApps& desktop, const QString& extension)
{
    for (const QString& type : typesEverAssociated(withPoint(extension)))
        desktop.takeOut(type, ownEntryId());
}

void NotifyAssociationsChanged()
{
    if (ownEntryIsNews())
        refreshApplications();
}

} // namespace quorvia::system
