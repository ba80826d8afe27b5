#include "scan/Options.h"

#include <sane/saneopts.h>

#include <cstring>

namespace quorvia::scan {

namespace {

constexpr double wantedDepth = 8; // bits a sample

struct Option
{
    SANE_Int number = 0;
    const SANE_Option_Descriptor* descriptor = nullptr;
};

/// The option `name` as it is now, when it can be set.
std::optional<Option> settable(SANE_Handle device, const char* name)
{
    SANE_Int count = 0;
    if (sane_control_option(device, 0, SANE_ACTION_GET_VALUE, &count, nullptr) != SANE_STATUS_GOOD)
        return {};
    for (SANE_Int i = 1; i < count; ++i) {
        const SANE_Option_Descriptor* const one = sane_get_option_descriptor(device, i);
        if (one && one->name && std::strcmp(one->name, name) == 0 && SANE_OPTION_IS_ACTIVE(one->cap) &&
            SANE_OPTION_IS_SETTABLE(one->cap))
            return Option{i, one};
    }
    return {};
}

std::vector<std::string> namesOf(const SANE_Option_Descriptor& option)
{
    std::vector<std::string> names;
    if (option.type != SANE_TYPE_STRING || option.constraint_type != SANE_CONSTRAINT_STRING_LIST)
        return names;
    for (const SANE_String_Const* each = option.constraint.string_list; *each; ++each)
        names.emplace_back(*each);
    return names;
}

double numberOf(const SANE_Option_Descriptor& option, SANE_Word word)
{
    return option.type == SANE_TYPE_FIXED ? SANE_UNFIX(word) : word;
}

Allowed allowedBy(const SANE_Option_Descriptor& option)
{
    Allowed allowed;
    allowed.most = -1;
    if (option.constraint_type == SANE_CONSTRAINT_RANGE) {
        const SANE_Range& range = *option.constraint.range;
        allowed.least = numberOf(option, range.min);
        allowed.most = numberOf(option, range.max);
        allowed.step = numberOf(option, range.quant);
    } else if (option.constraint_type == SANE_CONSTRAINT_WORD_LIST) {
        const SANE_Word* const list = option.constraint.word_list;
        for (SANE_Word i = 1; i <= list[0]; ++i)
            allowed.values.push_back(numberOf(option, list[i]));
    }
    return allowed;
}

void setMode(SANE_Handle device, Mode mode)
{
    const std::optional<Option> option = settable(device, SANE_NAME_SCAN_MODE);
    if (!option)
        return;
    const std::optional<std::string> name = modeNamed(namesOf(*option->descriptor), mode);
    const auto room = std::size_t(option->descriptor->size);
    if (!name || name->size() >= room)
        return;
    std::vector<char> value(room);
    std::memcpy(value.data(), name->data(), name->size());
    SANE_Int info = 0;
    sane_control_option(device, option->number, SANE_ACTION_SET_VALUE, value.data(), &info);
}

/// Sets one number, as most options are; a row of several, as a curve, is left alone.
void setNumber(SANE_Handle device, const char* name, double wanted)
{
    const std::optional<Option> option = settable(device, name);
    if (!option || option->descriptor->size != SANE_Int(sizeof(SANE_Word)))
        return;
    const SANE_Value_Type type = option->descriptor->type;
    if (type != SANE_TYPE_INT && type != SANE_TYPE_FIXED)
        return;
    const double number = nearestAllowed(allowedBy(*option->descriptor), wanted);
    SANE_Word word = type == SANE_TYPE_FIXED ? SANE_FIX(number) : SANE_Word(number);
    SANE_Int info = 0;
    sane_control_option(device, option->number, SANE_ACTION_SET_VALUE, &word, &info);
}

} // namespace

void applySettings(SANE_Handle device, const Settings& settings)
{
    if (settings.mode) {
        setMode(device, *settings.mode);
        setNumber(device, SANE_NAME_BIT_DEPTH, wantedDepth);
    }
    if (settings.resolution)
        setNumber(device, SANE_NAME_SCAN_RESOLUTION, *settings.resolution);
}

} // namespace quorvia::scan
