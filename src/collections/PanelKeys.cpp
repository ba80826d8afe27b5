#include "collections/PanelKeys.h"

namespace quorvia::collections {

namespace {

bool isEnter(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool isJump(int key)
{
    return key == Qt::Key_Home || key == Qt::Key_End || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

bool isUpOrDown(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down;
}

bool treeKeeps(int key, Qt::KeyboardModifiers modifiers)
{
    const bool moves = isUpOrDown(key) || isJump(key) || key == Qt::Key_Left || key == Qt::Key_Right;
    const bool opens = key == Qt::Key_Plus || key == Qt::Key_Minus;
    return (moves && modifiers == Qt::NoModifier) || key == Qt::Key_Space ||
           (opens && (modifiers & ~Qt::ShiftModifier) == Qt::NoModifier);
}

bool listKeeps(int key, Qt::KeyboardModifiers modifiers)
{
    const bool selects = modifiers != Qt::NoModifier && (modifiers & Qt::AltModifier) == Qt::NoModifier;
    return isJump(key) || key == Qt::Key_Space || (isEnter(key) && modifiers == Qt::NoModifier) ||
           (isUpOrDown(key) && selects) || (key == Qt::Key_A && modifiers == Qt::ControlModifier) ||
           (key == Qt::Key_F10 && modifiers == Qt::ShiftModifier);
}

} // namespace

bool keepsKey(PanelPart part, int key, Qt::KeyboardModifiers modifiers)
{
    const Qt::KeyboardModifiers held = modifiers & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
    switch (part) {
    case PanelPart::Tree:
        return treeKeeps(key, held);
    case PanelPart::List:
        return listKeeps(key, held);
    case PanelPart::Button:
        return held == Qt::NoModifier && (key == Qt::Key_Space || isEnter(key));
    case PanelPart::NameBox:
        return (held == Qt::NoModifier && (key == Qt::Key_Space || isEnter(key))) ||
               (key == Qt::Key_Down && (held & ~Qt::AltModifier) == Qt::NoModifier);
    }
    return false;
}

} // namespace quorvia::collections
