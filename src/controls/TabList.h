// The tabs of a strip and which of them is selected: a value without a widget. Indexes are 1-based; 0 stands
// for none. Every operation is linear in the number of tabs at most.
#pragma once

#include "controls/ControlStatus.h"
#include "controls/TabMetrics.h"

#include <QString>

#include <variant>
#include <vector>

namespace quorvia::controls {

/// One tab.
struct TabRecord
{
    QString Key;     ///< its own among the tabs, or empty
    QString Caption; ///< shown text
    QString ToolTip; ///< shown while the pointer rests on the tab
    int Left = 0;    ///< in pixels of the surface that the tabs are painted on
    int Width = 0;   ///< in pixels
    bool Selected = false;
    bool Hover = false; ///< the pointer is over this tab
};

/// A tab by its index or by its key. A key is compared exactly.
using TabRef = std::variant<int, QString>;

class TabList
{
  public:
    /// The error of a key that another tab has.
    static constexpr int keyExists = 8601;

    int count() const { return static_cast<int>(m_tabs.size()); }
    /// The index of the selected tab; 0 when there is none.
    int selected() const { return m_selected; }
    /// The index of the tab that the pointer is over; 0 when there is none.
    int hovered() const;
    /// The tab `index`, from 1 to count().
    const TabRecord& at(int index) const { return m_tabs[static_cast<std::size_t>(index - 1)]; }
    /// The index of a tab; 0 when it is not found. That is never an error: the operations below then go on
    /// with no tab.
    int indexOf(const TabRef& tab) const;

    /// Adds a tab in front of the tab with the key `before`, or behind all when `before` is empty or not
    /// found. The first tab of all is selected. Error 8601 when a tab has the key already, an empty one
    /// included; nothing is added then.
    ControlStatus add(const QString& caption, const QString& key, const QString& toolTip,
                      const QString& before);
    /// Takes a tab out. When it was the selected one, the tab that now has its index is selected, or the last
    /// one. True when that selected a tab.
    bool remove(const TabRef& tab);
    void clear();
    void setCaption(const TabRef& tab, const QString& caption);
    void setToolTip(const TabRef& tab, const QString& toolTip);
    /// Selects a tab, or none when it is not found. True when a tab is selected now, though it was before.
    bool select(const TabRef& tab);
    /// Marks tab `index` as the one under the pointer, or none. True when that is a change.
    bool hover(int index);

    /// The places of all tabs, in their order.
    std::vector<TabSpan> spans() const;
    /// Takes over a place for each tab.
    void place(const std::vector<TabSpan>& spans);

  private:
    TabRecord* find(const TabRef& tab);
    void choose(int index);

    std::vector<TabRecord> m_tabs;
    int m_selected = 0;
};

} // namespace quorvia::controls
