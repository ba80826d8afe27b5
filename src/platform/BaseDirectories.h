// The user's base directories of the desktop: where programs keep settings, data and state. A look at the
// environment.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::platform {

/// `$XDG_CONFIG_HOME`, else `~/.config`; without a "/" at the end. A relative value in the environment counts
/// as unset, as the XDG Base Directory Specification asks; so in all three.
QString configHome();
/// `$XDG_DATA_HOME`, else `~/.local/share`.
QString dataHome();
/// `$XDG_STATE_HOME`, else `~/.local/state`.
QString stateHome();

/// The directories of the whole machine, in the order in which they count: `$XDG_CONFIG_DIRS`, else
/// `/etc/xdg`.
QStringList configDirectories();
/// `$XDG_DATA_DIRS`, else `/usr/local/share` and `/usr/share`.
QStringList dataDirectories();

} // namespace quorvia::platform
