#include "platform/NetworkState.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <memory>

namespace quorvia::platform {

namespace {

/// 169.254.0.0/16, RFC 3927.
bool isLinkLocal(const in_addr& address)
{
    constexpr in_addr_t prefix = 0xA9FE0000;
    constexpr in_addr_t mask = 0xFFFF0000;
    return (ntohl(address.s_addr) & mask) == prefix;
}

} // namespace

bool carriesConnection(unsigned flags, const sockaddr* address)
{
    constexpr unsigned ready = IFF_UP | IFF_RUNNING;
    if (!address || (flags & ready) != ready || (flags & IFF_LOOPBACK) != 0)
        return false;
    if (address->sa_family == AF_INET)
        return !isLinkLocal(reinterpret_cast<const sockaddr_in*>(address)->sin_addr);
    if (address->sa_family == AF_INET6) {
        const in6_addr& each = reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
        return !IN6_IS_ADDR_LINKLOCAL(&each);
    }
    return false;
}

bool isConnected()
{
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0)
        return true; // whoever needs the connection will see
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> all(first, &freeifaddrs);
    for (const ifaddrs* each = all.get(); each; each = each->ifa_next) {
        if (carriesConnection(each->ifa_flags, each->ifa_addr))
            return true;
    }
    return false;
}

} // namespace quorvia::platform
