#include "platform/SpokenItems.h"

#include <algorithm>

namespace quorvia::platform {

QAccessible::State SpokenItem::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    state.selectable = true;
    state.focusable = true;
    state.selected = isSelected();
    state.focused = state.selected && m_list->hasFocus();
    state.disabled = !m_list->isEnabled();
    state.invisible = !m_list->isVisible();
    state.offscreen = !isInSight();
    return state;
}

void* SpokenItem::interface_cast(QAccessible::InterfaceType kind)
{
    return kind == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

void SpokenItem::doAction(const QString& action)
{
    if (action == pressAction() && isValid() && m_list->isEnabled())
        press();
}

SpokenItems::~SpokenItems()
{
    for (const auto& [index, id] : m_ids)
        QAccessible::deleteAccessibleInterface(id);
}

QAccessibleInterface* SpokenItems::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    const auto found = m_ids.find(index);
    if (found != m_ids.end())
        return QAccessible::accessibleInterface(found->second);
    SpokenItem* const item = makeItem(index); // from here on it is the toolkit's
    m_ids.emplace(index, QAccessible::registerAccessibleInterface(item));
    return item;
}

int SpokenItems::indexOfChild(const QAccessibleInterface* wanted) const
{
    const auto found = std::find_if(m_ids.begin(), m_ids.end(), [wanted](const auto& known) {
        return QAccessible::accessibleInterface(known.second) == wanted;
    });
    return found == m_ids.end() ? -1 : found->first;
}

} // namespace quorvia::platform
