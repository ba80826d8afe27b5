#include "controls/TabAccessible.h"

#include "controls/TabSurface.h"
#include "platform/AccessFactory.h"
#include "platform/SpokenItems.h"

namespace quorvia::controls {

namespace {

/// One tab.
class TabItem : public platform::SpokenItem
{
  public:
    TabItem(TabSurface* surface, int index)
        : SpokenItem(surface, index, QAccessible::PageTab), m_surface(surface)
    {
    }

    bool isValid() const override { return number() <= m_surface->tabs().count(); }

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const TabRecord& tab = m_surface->tabs().at(number());
        return {m_surface->mapToGlobal(QPoint(tab.Left, 0)), QSize(tab.Width, m_surface->height())};
    }

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid())
            return {};
        const TabRecord& tab = m_surface->tabs().at(number());
        if (kind == QAccessible::Name)
            return tab.Caption;
        return kind == QAccessible::Description ? tab.ToolTip : QString();
    }

  protected:
    bool isSelected() const override { return m_surface->tabs().at(number()).Selected; }

    bool isInSight() const override
    {
        const TabRecord& tab = m_surface->tabs().at(number());
        return m_surface->visibleRegion().intersects(QRect(tab.Left, 0, tab.Width, 1));
    }

    void press() override { Q_EMIT m_surface->tabPressed(number()); }

  private:
    /// As the tabs count, from 1.
    int number() const { return place() + 1; }

    TabSurface* m_surface;
};

class TabItems : public platform::SpokenItems
{
  public:
    explicit TabItems(TabSurface* surface)
        : SpokenItems(surface, QAccessible::PageTabList), m_surface(surface)
    {
    }

    int childCount() const override { return m_surface->tabs().count(); }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        return child(m_surface->tabAtPosition(m_surface->mapFromGlobal(QPoint(x, y))) - 1);
    }

    QAccessibleInterface* focusChild() const override
    {
        return m_surface->hasFocus() ? child(m_surface->tabs().selected() - 1) : nullptr;
    }

  protected:
    platform::SpokenItem* makeItem(int index) const override { return new TabItem(m_surface, index); }

  private:
    TabSurface* m_surface;
};

} // namespace

void installTabAccessibility()
{
    QAccessible::installFactory(platform::accessOf<TabSurface, TabItems>);
}

} // namespace quorvia::controls
