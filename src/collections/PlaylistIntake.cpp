#include "collections/PlaylistIntake.h"

#include "app/Log.h"
#include "collections/QolText.h"
#include "platform/FileStatus.h"
#include "platform/LongWork.h"

#include <QObject>

#include <utility>

namespace quorvia::collections {

bool canBeAdded(const QString& file)
{
    if (!platform::isFile(file))
        return false;
    if (!fitsOnALine(file))
        app::WriteLog(QStringLiteral("Cannot stand in a playlist: ") + file);
    return fitsOnALine(file);
}

std::optional<QStringList> addable(QStringList files, QWidget* owner) // a copy: the caller's may change
{
    QStringList added;
    platform::LongWork work(owner, QObject::tr("Adding images..."));
    for (int i = 0; i < int(files.size()); ++i) {
        if (!work.goOn(i, int(files.size())))
            return {};
        if (canBeAdded(files.at(i)))
            added.append(std::move(files[i]));
    }
    return added;
}

} // namespace quorvia::collections
