#include "app/SlideMode.h"

namespace quorvia::app {

SlideMode slideModeOf(const QString& text)
{
    for (const SlideMode mode : {SlideMode::Reverse, SlideMode::Random}) {
        if (text == slideModeText(mode))
            return mode;
    }
    return SlideMode::Advance;
}

QString slideModeText(SlideMode mode)
{
    switch (mode) {
    case SlideMode::Reverse:
        return QStringLiteral("reverse");
    case SlideMode::Random:
        return QStringLiteral("random");
    case SlideMode::Advance:
        break;
    }
    return QStringLiteral("advance");
}

} // namespace quorvia::app
