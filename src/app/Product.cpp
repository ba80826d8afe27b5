#include "app/Product.h"

namespace quorvia::app {

QString productTitle()
{
    return QStringLiteral("Quorvia");
}

QString makerName()
{
    return QStringLiteral("Halvexa");
}

Version productVersion()
{
    return {QUORVIA_VERSION_MAJOR, QUORVIA_VERSION_MINOR, QUORVIA_VERSION_REVISION};
}

QString versionText(const Version& version, const QString& separator)
{
    return QString::number(version.major) + separator + QString::number(version.minor) + separator +
           QString::number(version.revision);
}

QString GetAppDisplayName()
{
    return productTitle() + QStringLiteral(" v") + versionText(productVersion(), QStringLiteral("."));
}

} // namespace quorvia::app
