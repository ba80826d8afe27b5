#include "RandomActions.h"

#include <array>

namespace quorvia::test {

namespace {

std::mt19937 seeded(quint32 seed, int step)
{
    std::seed_seq both{seed, quint32(step)};
    return std::mt19937(both);
}

struct KindRow
{
    ActionKind kind;
    const char* name;
    int weight; ///< of 1000
};

constexpr std::array kinds{
    KindRow{ActionKind::Command, "command", 360}, KindRow{ActionKind::Key, "key", 330},
    KindRow{ActionKind::Click, "click", 100},     KindRow{ActionKind::Drag, "drag", 35},
    KindRow{ActionKind::Wheel, "wheel", 35},      KindRow{ActionKind::Resize, "resize", 25},
    KindRow{ActionKind::Open, "open", 60},        KindRow{ActionKind::Outsider, "outsider", 40},
    KindRow{ActionKind::Clipboard, "clip", 12},   KindRow{ActionKind::Terminate, "terminate", 3},
};

/// Keys that type nothing.
constexpr std::array moving{Qt::Key_Left, Qt::Key_Right,  Qt::Key_Up,       Qt::Key_Down, Qt::Key_Home,
                            Qt::Key_End,  Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Tab,  Qt::Key_Backtab};
constexpr std::array acting{Qt::Key_F1,  Qt::Key_F2,     Qt::Key_F5,        Qt::Key_F7,     Qt::Key_F10,
                            Qt::Key_F12, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Insert, Qt::Key_Menu};
/// Those of Ctrl and of Alt that do something, and one or two that do not.
constexpr std::array withCtrl{'R', 'N', 'B', 'P', 'C', 'V', 'W', '2', '1', 'F', 'O', 'S', 'E', 'A', 'X', 'Q'};
constexpr std::array plain{'K', 'F', 'R', 'Q', 'H', 'Z', 'X', '1', '2', '3', 'P', 'T', 'S', 'G', '[', ']'};

KeyPress typed(int letter)
{
    return {Qt::Key(letter), Qt::NoModifier, QString(QChar(letter)).toLower()};
}

KeyPress ctrl(int letter)
{
    return {Qt::Key(letter), Qt::ControlModifier};
}

} // namespace

StepRandom::StepRandom(quint32 seed, int step) : m_raw(seeded(seed, step)) {}

int StepRandom::below(int count)
{
    return int(m_raw() % quint32(count));
}

QString nameOf(ActionKind kind)
{
    for (const KindRow& row : kinds) {
        if (row.kind == kind)
            return QLatin1String(row.name);
    }
    return {};
}

ActionKind drawKind(StepRandom& random)
{
    int left = random.below(1000);
    for (const KindRow& row : kinds) {
        if (left < row.weight)
            return row.kind;
        left -= row.weight;
    }
    return kinds.front().kind;
}

KeyPress drawMainKey(StepRandom& random)
{
    const int which = random.below(100);
    if (which < 35)
        return {random.oneOf(moving)};
    if (which < 65)
        return typed(random.oneOf(plain));
    if (which < 80)
        return ctrl(random.oneOf(withCtrl));
    if (which < 90)
        return {random.oneOf(acting)};
    if (which < 92)
        return {Qt::Key_Escape};
    if (which < 94)
        return {Qt::Key_Return, random.oneIn(2) ? Qt::ControlModifier : Qt::NoModifier, QStringLiteral("\r")};
    if (which < 96)
        return {Qt::Key_F7, Qt::ControlModifier | Qt::AltModifier};
    if (which < 98)
        return {Qt::Key_Space, Qt::NoModifier, QStringLiteral(" ")};
    return {Qt::Key_F, Qt::AltModifier};
}

KeyPress drawDialogKey(StepRandom& random)
{
    const int which = random.below(100);
    if (which < 40)
        return {random.oneOf(moving)};
    if (which < 65)
        return typed('A' + random.below(26));
    if (which < 72)
        return typed('0' + random.below(10));
    if (which < 76)
        return {random.oneOf(acting)};
    if (which < 80)
        return ctrl(random.oneOf(withCtrl));
    if (which < 86)
        return {Qt::Key_Space, Qt::NoModifier, QStringLiteral(" ")};
    if (which < 94)
        return {Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r")};
    if (which < 95)
        return {Qt::Key_Period, Qt::NoModifier, QStringLiteral(".")};
    return {Qt::Key_Escape};
}

} // namespace quorvia::test
