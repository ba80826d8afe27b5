#include "collections/PlaylistIntake.h"

#include "app/Log.h"
#include "collections/QolText.h"
#include "platform/FileStatus.h"
#include "platform/LongWork.h"

#include <QObject>

namespace quorvia::collections {

bool canBeAdded(const QString& file)
{
    if (!platform::isFile(file))
        return false;
    if (!fitsOnALine(file))
        app::WriteLog(QStringLiteral("Cannot stand in a playlist: ") + file);
    return fitsOnALine(file);
}

std::optional<QStringList> addable(const QStringList& files, QWidget* owner)
{
    const QStringList given = files; // the caller's may change while events run
    QStringList added;
    platform::LongWork work(owner, QObject::tr("Adding images..."));
    for (int i = 0; i < int(given.size()); ++i) {
        if (!work.goOn(i, int(given.size())))
            return {};
        if (canBeAdded(given.at(i)))
            added.append(given.at(i));
    }
    return added;
}

} // namespace quorvia::collections
