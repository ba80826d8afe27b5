#include "collections/Navigation.h"

#include <QRandomGenerator>

#include <bit>

namespace quorvia::collections {

int nextIndex(int index, int count, const std::function<bool(int)>& exists)
{
    const auto stands = [&](int i) { return i >= 0 && i < count && exists(i); };
    int target = 0;
    if (index != -1 && index < count - 1) {
        target = index + 1;
        while (target < count && !stands(target))
            ++target;
    }
    if (stands(target))
        return target;
    target = 0;
    while (target <= index + 1 && !stands(target))
        ++target;
    return target;
}

int previousIndex(int index, int count)
{
    return index > 0 ? index - 1 : count - 1;
}

int randomIndex(double unit, int count)
{
    return static_cast<int>(unit * count);
}

float secondsSinceMidnight(QTime time)
{
    constexpr double millisecondsASecond = 1000;
    return static_cast<float>(time.msecsSinceStartOfDay() / millisecondsASecond);
}

double randomUnit(float seconds)
{
    return QRandomGenerator(std::bit_cast<quint32>(seconds)).generateDouble();
}

} // namespace quorvia::collections
