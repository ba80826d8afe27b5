// The order in which a slideshow steps, and the texts that it is stored by.
#pragma once

#include <QString>

namespace quorvia::app {

enum class SlideMode { Advance, Reverse, Random };

/// The mode of a stored text, compared exactly; any text that is no mode's own is Advance.
SlideMode slideModeOf(const QString& text);
/// "advance", "reverse" or "random".
QString slideModeText(SlideMode mode);

} // namespace quorvia::app
