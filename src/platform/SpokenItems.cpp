#include "platform/SpokenItems.h"

#include <utility>

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

SpokenItems::SpokenItems(QWidget* list, QAccessible::Role role) : QAccessibleWidget(list, role)
{
    m_reorder.setSingleShot(true);
    QObject::connect(&m_reorder, &QTimer::timeout, list, [list] {
        QAccessibleEvent reorder(list, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&reorder);
    });
}

SpokenItems::~SpokenItems()
{
    dropItems();
}

void SpokenItems::forgetItems()
{
    dropItems();
    if (QAccessible::isActive() && !m_reorder.isActive())
        m_reorder.start(0);
}

void SpokenItems::dropItems()
{
    const auto dropped = std::exchange(m_ids, {});
    for (const auto& [index, id] : dropped)
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
    const auto* const item = dynamic_cast<const SpokenItem*>(wanted);
    return item && item->isOf(widget()) ? item->index() : -1;
}

} // namespace quorvia::platform
