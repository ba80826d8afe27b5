#include "collections/Navigation.h"

namespace quorvia::collections {

int nextIndex(int index, int count, const std::function<bool(int)>& exists)
{
    for (int i = index + 1; i < count; ++i) {
        if (exists(i))
            return i;
    }
    for (int i = 0; i <= index && i < count; ++i) {
        if (exists(i))
            return i;
    }
    return -1;
}

int previousIndex(int index, int count)
{
    return index == 0 ? count - 1 : index - 1;
}

int randomIndex(double unit, int count)
{
    return static_cast<int>(unit * count);
}

} // namespace quorvia::collections
