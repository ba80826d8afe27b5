// The web addresses of the program that more than one room names: configuration, kept in one place.
#pragma once

namespace quorvia::app::address {

inline constexpr char productPage[] = "https://www.halvexa.example/quorvia/";

} // namespace quorvia::app::address
