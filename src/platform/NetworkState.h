// Whether the machine is connected to a network. Asks the system for its interfaces, some tens of
// microseconds; sends nothing, and says nothing of what can be reached.
#pragma once

#include <sys/socket.h>

namespace quorvia::platform {

/// True when one of the machine's interfaces can carry a connection. Also when they cannot be looked at.
bool isConnected();

/// The rule behind it, for one address of one interface: `flags` as in IFF_UP, `address` may be null. It is
/// up and has its cable or its radio, is not the loop back, and the address is one of the internet's that was
/// given to it and not made up for want of any.
bool carriesConnection(unsigned flags, const sockaddr* address);

} // namespace quorvia::platform
