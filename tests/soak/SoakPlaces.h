// Where a soak keeps what: all of it below one home.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::test {

struct SoakPlaces
{
    QString home; ///< without "/" at its end

    QString pictures() const { return home + QStringLiteral("/pics"); }
    QString sources() const { return home + QStringLiteral("/sources"); }
    QString notes() const { return home + QStringLiteral("/.soak"); }
    QString journal() const { return notes() + QStringLiteral("/journal"); }
    QString originals() const { return notes() + QStringLiteral("/originals"); }
    QString templates() const { return notes() + QStringLiteral("/templates"); }
    QString trash() const { return home + QStringLiteral("/.local/share/Trash/files"); }
    /// Where the user would look for a picture of his: not among scratch files, caches and records.
    QStringList kept() const { return {pictures(), sources(), trash()}; }
    QString log() const { return home + QStringLiteral("/.local/state/quorvia/qolog.log"); }
    QString userStore() const { return home + QStringLiteral("/.config/halvexa/user.db"); }
    QString machineStore() const { return home + QStringLiteral("/machine/machine.db"); }
};

} // namespace quorvia::test
