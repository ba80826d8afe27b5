// The maker's web addresses: configuration, kept in one place.
#pragma once

namespace quorvia::system::address {

inline constexpr char frontPage[] = "https://www.halvexa.example/";
inline constexpr char productPage[] = "https://www.halvexa.example/quorvia/";
inline constexpr char shellMenuPage[] = "https://www.halvexa.example/quorvia/shell-menu/";

} // namespace quorvia::system::address
