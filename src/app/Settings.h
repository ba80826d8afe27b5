// The catalogue of settings: every stored key with its section, name and default, as one typed table.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>
#include <span>

namespace quorvia::app {

/// A stored number; `fallback` is empty where the caller passes the present value of the control.
struct NumberKey
{
    const char* section;
    const char* name;
    std::optional<int> fallback;
};

/// A stored text; `fallback` null where the caller passes one.
struct TextKey
{
    const char* section;
    const char* name;
    const char* fallback;
};

namespace setting {
// declared by Settings.cpp's table; see there
} // namespace setting

} // namespace quorvia::app
