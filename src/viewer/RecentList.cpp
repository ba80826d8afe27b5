#include "viewer/RecentList.h"

namespace quorvia::viewer {

namespace {
constexpr QLatin1Char separator(';');
}

QStringList recentFromText(const QString& text)
{
    return text.split(separator);
}

QString recentToText(const QStringList& recent)
{
    return recent.join(separator);
}

QStringList withRecent(const QStringList& recent, const QString& directory)
{
    QString joined = recentToText(recent);
    joined.remove(QStringLiteral(";;"));
    const QString entry = separator + directory;
    if (!joined.contains(entry))
        joined += entry;
    return recentFromText(joined);
}

} // namespace quorvia::viewer
