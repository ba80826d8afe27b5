// The delay of a slideshow as the user types it, in seconds. Numbers and texts only.
#pragma once

#include <QString>

namespace quorvia::output {

/// A delay that was typed: what the tool says then, and what the timer gets.
struct SlideDelay
{
    QString text;         ///< seconds
    int milliseconds = 0; ///< 1000 to 60000

    bool operator==(const SlideDelay&) const = default;
};

/// The delay of a timer in seconds, as in "2" or "2.5".
QString delayText(int milliseconds);
/// The number that `text` begins with, blanks before it aside; 0 when it begins with none.
double leadingNumber(const QString& text);
/// The delay of a typed text: "1" for a number below 1 and for a text without one, "60" for one above 60, and
/// otherwise the text as it was typed.
SlideDelay typedDelay(const QString& text);

} // namespace quorvia::output
