#include "commands/SizeFields.h"

#include <algorithm>
#include <cmath>

namespace quorvia::commands {

namespace {

constexpr int largest = 65535; // pixels or percent
constexpr double hundred = 100;

/// `value` without what no image can have.
double bounded(double value)
{
    return std::clamp(value, 0.0, double(largest));
}

int rounded(double value)
{
    return int(std::lround(bounded(value)));
}

/// `follower` gets the proportions that the originals have to the target of `leader`.
void follow(SizeField& follower, const SizeField& leader)
{
    if (leader.original > 0)
        follower.target = bounded(leader.target * follower.original / leader.original);
}

} // namespace

int wholeNumber(const QString& text)
{
    int number = 0;
    for (const QChar letter : text.trimmed()) {
        if (letter < u'0' || letter > u'9')
            break;
        number = std::min(number * 10 + (letter.unicode() - u'0'), largest);
    }
    return number;
}

QString SizeField::text() const
{
    if (unit == SizeUnit::Pixels)
        return QString::number(rounded(target));
    return QString::number(original > 0 ? rounded(target * hundred / original) : 0);
}

void SizeField::take(const QString& text)
{
    const int number = wholeNumber(text);
    target = unit == SizeUnit::Pixels ? number : bounded(number * double(original) / hundred);
}

SizeFields SizeFields::of(QSize pixels)
{
    const auto field = [](int length) {
        return SizeField{.target = double(std::max(length, 0)), .original = std::max(length, 0)};
    };
    return {.width = field(pixels.width()), .height = field(pixels.height())};
}

void SizeFields::takeWidth(const QString& text, bool leads)
{
    width.take(text);
    if (leads && constrained)
        follow(height, width);
}

void SizeFields::takeHeight(const QString& text, bool leads)
{
    height.take(text);
    if (leads && constrained)
        follow(width, height);
}

void SizeFields::constrain(bool on)
{
    constrained = on;
    if (on)
        follow(width, height);
}

QSize SizeFields::target() const
{
    return {rounded(width.target), rounded(height.target)};
}

} // namespace quorvia::commands
