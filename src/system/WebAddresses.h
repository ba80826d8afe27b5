// The maker's web addresses: configuration, kept in one place.
#pragma once

#include "app/WebAddresses.h"

namespace quorvia::system::address {

inline constexpr char frontPage[] = "https://www.halvexa.example/";
using app::address::productPage;
inline constexpr char shellMenuPage[] = "https://www.halvexa.example/quorvia/shell-menu/";

} // namespace quorvia::system::address
