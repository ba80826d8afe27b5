// How a control of a room above is told to screen readers by an interface of its own.
#pragma once

#include <QAccessible>

namespace quorvia::platform {

/// Makes the `Access` of an object that is a `Widget`; null for any other. For QAccessible::installFactory(),
/// which knows the ones that it has, so that each control may install its own.
template <class Widget, class Access>
QAccessibleInterface* accessOf(const QString& /*className*/, QObject* object)
{
    auto* const widget = qobject_cast<Widget*>(object);
    return widget ? new Access(widget) : nullptr;
}

} // namespace quorvia::platform
