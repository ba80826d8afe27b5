// The user's base directories of the desktop: where programs keep settings, data and state. A look at the
// environment.
#pragma once

#include <QString>

namespace quorvia::platform {

/// `$XDG_CONFIG_HOME`, else `~/.config`; without a "/" at the end. A relative value in the environment counts
/// as unset, as the XDG Base Directory Specification asks; so in all three.
QString configHome();
/// `$XDG_DATA_HOME`, else `~/.local/share`.
QString dataHome();
/// `$XDG_STATE_HOME`, else `~/.local/state`.
QString stateHome();

} // namespace quorvia::platform
