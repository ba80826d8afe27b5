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

void saveEarlierOwners()
{
    MimeApps desktop;
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

struct Place
{
    QString extension;
    QString verb;
};

/// Where the user's lists name us.
QList<Place> ownPlaces(MimeApps& desktop)
{
    QList<Place> places;
    for (const QString& extension : extensionsOfOwners()) {
        for (const QString& verb : verbs()) {
            if (desktop.chosenByUser(roleOf(verb), associatedType(extension)).contains(ownEntryId()))
                places.append({extension, verb});
        }
    }
    return places;
}

/// Only where nothing is left that the user chose: that counts more than who was there at the take-over. An
/// owner that the desktop is back at by itself is not written down: the lists end as they were.
void giveBack(MimeApps& desktop, const Place& place)
{
    const QString owner = app::readEarlierOwner(place.verb, place.extension);
    if (owner == none || namesThisProgram(owner) || !platform::isRegularFile(owner) ||
        !desktop.chosenByUser(roleOf(place.verb), associatedType(place.extension)).isEmpty())
        return;
    if (GetAssociation(desktop, place.extension, place.verb) != platform::entryId(owner))
        SetAssociation(desktop, place.extension, owner, place.verb);
}

bool save(MimeApps& desktop)
{
    const QStringList reasons = desktop.save();
    for (const QString& reason : reasons)
        app::WriteLog(QStringLiteral("Associations: ") + reason);
    return reasons.isEmpty();
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
    saveEarlierOwners();
    provideOwnTypes(); // it waits: the lists are read behind it
    const QString entry = provideOwnEntry();
    MimeApps desktop;
    if (!entry.isEmpty()) {
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
    const QList<Place> places = ownPlaces(desktop);
    for (const AssociationRow& row : associationTable())
        RemoveExtensionClass(desktop, QLatin1String(row.extension));
    desktop.takeOut({}, ownEntryId()); // the desktop may have called a type by another name at the take-over
    for (const Place& place : places)
        giveBack(desktop, place);
    if (save(desktop))
        app::forgetEarlierOwners(); // what the user chooses from now on is not ours to undo
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
    markApplications();
}

} // namespace quorvia::system
