#include "controls/TabList.h"

#include <algorithm>

namespace quorvia::controls {

namespace {

/// The index in a list of `count` tabs whose tab fulfils `condition`; 0 when none does.
template <class Condition>
int firstIndex(const std::vector<TabRecord>& tabs, Condition condition)
{
    const auto found = std::find_if(tabs.begin(), tabs.end(), condition);
    return found == tabs.end() ? 0 : static_cast<int>(found - tabs.begin()) + 1;
}

} // namespace

int TabList::hovered() const
{
    return firstIndex(m_tabs, [](const TabRecord& tab) { return tab.Hover; });
}

int TabList::indexOf(const TabRef& tab) const
{
    if (const int* const index = std::get_if<int>(&tab))
        return *index >= 1 && *index <= count() ? *index : 0;
    const QString& key = std::get<QString>(tab);
    return firstIndex(m_tabs, [&key](const TabRecord& record) { return record.Key == key; });
}

ControlStatus TabList::add(const QString& caption, const QString& key, const QString& toolTip,
                           const QString& before)
{
    if (indexOf(key) != 0)
        return ControlError{keyExists, QStringLiteral("Tab with specified key already exists"),
                            QStringLiteral("gnTabCtl")};
    const int follower = before.isEmpty() ? 0 : indexOf(before);
    const int index = follower == 0 ? count() + 1 : follower;
    m_tabs.insert(m_tabs.begin() + (index - 1), {.Key = key, .Caption = caption, .ToolTip = toolTip});
    if (count() == 1)
        choose(1);
    else if (index <= m_selected)
        ++m_selected;
    return {};
}

bool TabList::remove(const TabRef& tab)
{
    const int index = indexOf(tab);
    if (index == 0)
        return false;
    const bool wasSelected = index == m_selected;
    m_tabs.erase(m_tabs.begin() + (index - 1));
    if (wasSelected)
        choose(std::min(index, count()));
    else if (index < m_selected)
        --m_selected;
    return wasSelected && m_selected != 0;
}

void TabList::clear()
{
    m_tabs.clear();
    m_selected = 0;
}

void TabList::setCaption(const TabRef& tab, const QString& caption)
{
    if (TabRecord* const record = find(tab))
        record->Caption = caption;
}

void TabList::setToolTip(const TabRef& tab, const QString& toolTip)
{
    if (TabRecord* const record = find(tab))
        record->ToolTip = toolTip;
}

bool TabList::select(const TabRef& tab)
{
    choose(indexOf(tab));
    return m_selected != 0;
}

bool TabList::hover(int index)
{
    const bool changed = index != hovered();
    for (int i = 1; i <= count(); ++i)
        m_tabs[static_cast<std::size_t>(i - 1)].Hover = i == index;
    return changed;
}

std::vector<TabSpan> TabList::spans() const
{
    std::vector<TabSpan> spans;
    spans.reserve(m_tabs.size());
    for (const TabRecord& tab : m_tabs)
        spans.push_back({tab.Left, tab.Width});
    return spans;
}

void TabList::place(const std::vector<TabSpan>& spans)
{
    const std::size_t placed = std::min(spans.size(), m_tabs.size());
    for (std::size_t i = 0; i < placed; ++i) {
        m_tabs[i].Left = spans[i].Left;
        m_tabs[i].Width = spans[i].Width;
    }
}

TabRecord* TabList::find(const TabRef& tab)
{
    const int index = indexOf(tab);
    return index == 0 ? nullptr : &m_tabs[static_cast<std::size_t>(index - 1)];
}

void TabList::choose(int index)
{
    for (TabRecord& tab : m_tabs)
        tab.Selected = false;
    m_selected = index;
    if (index != 0)
        m_tabs[static_cast<std::size_t>(index - 1)].Selected = true;
}

} // namespace quorvia::controls
