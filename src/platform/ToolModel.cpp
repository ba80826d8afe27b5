#include "platform/ToolModel.h"

#include <algorithm>

namespace quorvia::platform {

void Tool::setPicture(int variant, const QString& icon)
{
    std::array<QString, 3> pictures = m_values.pictures;
    pictures.at(std::size_t(variant)) = icon;
    set(&ToolValues::pictures, pictures);
}

ToolBand::~ToolBand()
{
    for (Entry& entry : m_tools)
        release(entry);
}

void ToolBand::setKind(BandKind kind)
{
    if (std::exchange(m_kind, kind) != kind)
        Q_EMIT changed();
}

void ToolBand::setVisible(bool visible)
{
    if (std::exchange(m_visible, visible) != visible)
        Q_EMIT changed();
}

Tool* ToolBand::toolAt(int index) const
{
    return index >= 0 && index < toolCount() ? m_tools[std::size_t(index)].copy.get() : nullptr;
}

Tool* ToolBand::tool(const QString& name) const
{
    const auto found = std::find_if(m_tools.begin(), m_tools.end(),
                                    [&name](const Entry& entry) { return entry.copy->name() == name; });
    return found == m_tools.end() ? nullptr : found->copy.get();
}

Tool* ToolBand::append(Tool* tool)
{
    if (!tool)
        return nullptr;
    Entry entry{std::make_unique<Tool>(tool->id(), tool->name()), m_follows ? tool : nullptr};
    Tool* const copy = entry.copy.get();
    copy->m_values = tool->values();
    if (m_follows)
        tool->m_followers.append(copy);
    m_tools.push_back(std::move(entry));
    Q_EMIT changed();
    return copy;
}

Tool* ToolBand::append(int id, const QString& name)
{
    m_tools.push_back({std::make_unique<Tool>(id, name), nullptr});
    Q_EMIT changed();
    return m_tools.back().copy.get();
}

void ToolBand::clear()
{
    std::vector<Entry> gone = std::exchange(m_tools, {});
    for (Entry& entry : gone)
        release(entry);
    Q_EMIT changed(); // while the old tools still are, so that what shows them can let go
}

void ToolBand::release(Entry& entry)
{
    if (Tool* const original = entry.original.data())
        original->m_followers.removeOne(entry.copy.get());
}

ToolModel::ToolModel() = default;
ToolModel::~ToolModel() = default;

Tool* ToolModel::addTool(int id, const QString& name)
{
    m_tools.push_back(std::make_unique<Tool>(id, name));
    Tool* const added = m_tools.back().get();
    if (Tool*& first = m_firstTools[name])
        first->m_followers.append(added);
    else
        first = added;
    return added;
}

Tool* ToolModel::tool(const QString& name) const
{
    return m_firstTools.value(name);
}

Tool* ToolModel::toolAt(int index) const
{
    return index >= 0 && index < toolCount() ? m_tools[std::size_t(index)].get() : nullptr;
}

ToolBand* ToolModel::addBand(const QString& name, BandKind kind, bool follows)
{
    if (ToolBand* const there = band(name)) {
        there->clear();
        there->setKind(kind);
        return there;
    }
    m_bands.push_back(std::make_unique<ToolBand>(name, kind, follows));
    return m_bandsByName[name] = m_bands.back().get();
}

ToolBand* ToolModel::band(const QString& name) const
{
    return m_bandsByName.value(name);
}

ToolBand* ToolModel::bandAt(int index) const
{
    return index >= 0 && index < bandCount() ? m_bands[std::size_t(index)].get() : nullptr;
}

} // namespace quorvia::platform
