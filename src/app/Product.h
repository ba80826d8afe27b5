// Who this program is.
#pragma once

#include <QString>

namespace quorvia::app {

struct Version
{
    int major;
    int minor;
    int revision;
};

/// The application title, "Quorvia".
QString productTitle();
/// The maker's name, "Halvexa".
QString makerName();
/// The version record of the running program.
Version productVersion();
/// `version` as major, minor and revision joined by `separator`.
QString versionText(const Version& version, const QString& separator);
/// The window title: the product's title, " v" and the version.
QString GetAppDisplayName();

} // namespace quorvia::app
