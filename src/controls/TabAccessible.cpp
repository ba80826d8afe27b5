#include "controls/TabAccessible.h"

#include "controls/TabSurface.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <map>

namespace quorvia::controls {

namespace {

/// One tab. It stands for the tab that has its index at the time of the question.
class TabItem : public QAccessibleInterface, public QAccessibleActionInterface
{
  public:
    TabItem(TabSurface* surface, int index) : m_surface(surface), m_index(index) {}

    bool isValid() const override { return m_index <= m_surface->tabs().count(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_surface); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::PageTab; }

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const TabRecord& tab = m_surface->tabs().at(m_index);
        return {m_surface->mapToGlobal(QPoint(tab.Left, 0)), QSize(tab.Width, m_surface->height())};
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const TabRecord& tab = m_surface->tabs().at(m_index);
        state.selectable = true;
        state.focusable = true;
        state.selected = tab.Selected;
        state.focused = tab.Selected && m_surface->hasFocus();
        state.disabled = !m_surface->isEnabled();
        state.invisible = !m_surface->isVisible();
        state.offscreen = !m_surface->visibleRegion().intersects(QRect(tab.Left, 0, tab.Width, 1));
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid())
            return {};
        const TabRecord& tab = m_surface->tabs().at(m_index);
        if (kind == QAccessible::Name)
            return tab.Caption;
        return kind == QAccessible::Description ? tab.ToolTip : QString();
    }

    void setText(QAccessible::Text, const QString&) override {}

    void* interface_cast(QAccessible::InterfaceType kind) override
    {
        return kind == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override { return {pressAction()}; }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }
    void doAction(const QString& action) override
    {
        if (action == pressAction() && isValid() && m_surface->isEnabled())
            Q_EMIT m_surface->tabPressed(m_index);
    }

  private:
    TabSurface* m_surface; ///< the item goes with it
    int m_index;
};

class TabItems : public QAccessibleWidget
{
  public:
    explicit TabItems(TabSurface* surface)
        : QAccessibleWidget(surface, QAccessible::PageTabList), m_surface(surface)
    {
    }

    ~TabItems() override
    {
        for (const auto& [index, id] : m_ids)
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return m_surface->tabs().count(); }

    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        const auto found = m_ids.find(index);
        if (found != m_ids.end())
            return QAccessible::accessibleInterface(found->second);
        auto* const item = new TabItem(m_surface, index + 1); // from here on it is the toolkit's
        m_ids.emplace(index, QAccessible::registerAccessibleInterface(item));
        return item;
    }

    int indexOfChild(const QAccessibleInterface* wanted) const override
    {
        for (int index = 0; index < childCount(); ++index) {
            if (child(index) == wanted)
                return index;
        }
        return -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        return child(m_surface->tabAtPosition(m_surface->mapFromGlobal(QPoint(x, y))) - 1);
    }

    QAccessibleInterface* focusChild() const override
    {
        return m_surface->hasFocus() ? child(m_surface->tabs().selected() - 1) : nullptr;
    }

  private:
    TabSurface* m_surface;
    mutable std::map<int, QAccessible::Id> m_ids; ///< of the tabs asked for so far, by their 0-based index
};

QAccessibleInterface* makeTabItems(const QString&, QObject* object)
{
    auto* const surface = qobject_cast<TabSurface*>(object);
    return surface ? new TabItems(surface) : nullptr;
}

} // namespace

void installTabAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(makeTabItems);
        return true;
    }();
    Q_UNUSED(installed);
}

} // namespace quorvia::controls
