#include "output/SlideDelay.h"

#include <QRegularExpression>

#include <cmath>

namespace quorvia::output {

namespace {

constexpr double millisecondsASecond = 1000;
constexpr double shortest = 1; // seconds
constexpr double longest = 60;

} // namespace

QString delayText(int milliseconds)
{
    constexpr int allDigits = 15;
    return QString::number(milliseconds / millisecondsASecond, 'g', allDigits);
}

double leadingNumber(const QString& text)
{
    static const QRegularExpression number(
        QStringLiteral("^\\s*([+-]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?)"));
    return number.match(text).captured(1).toDouble(); // 0 for none, infinite for one beyond all bounds
}

SlideDelay typedDelay(const QString& text)
{
    const double seconds = leadingNumber(text);
    if (seconds < shortest)
        return {QString::number(shortest), int(shortest * millisecondsASecond)};
    if (seconds > longest)
        return {QString::number(longest), int(longest * millisecondsASecond)};
    return {text, int(std::lround(seconds * millisecondsASecond))};
}

} // namespace quorvia::output
