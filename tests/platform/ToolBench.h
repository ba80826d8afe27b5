// What the tests of menus and toolbar share: a model with tools of each kind, and a record of what is told.
#pragma once

#include "platform/ToolModel.h"

#include <QStringList>

namespace quorvia::platform {

inline QString text(const char* latin)
{
    return QString::fromLatin1(latin);
}

/// A tool of `model`, with its name for a caption where none is given.
inline Tool* addTool(ToolModel& model, const char* name, ToolKind kind = ToolKind::Plain,
                     const char* subBand = "", const char* caption = nullptr)
{
    Tool* const tool = model.addTool(1000 + model.toolCount(), text(name));
    tool->set(&ToolValues::caption, text(caption ? caption : name));
    tool->set(&ToolValues::kind, kind);
    tool->set(&ToolValues::subBand, text(subBand));
    return tool;
}

/// Writes down, in order, what menus and toolbar tell: "open b", "close b", "click t", "text t=x", "end t=x".
class ToolRecord : public QObject
{
  public:
    explicit ToolRecord(ToolModel& model)
    {
        connect(&model, &ToolModel::ToolClick, this, [this](const QString& name) { add("click", name); });
        connect(&model, &ToolModel::BandOpen, this, [this](ToolBand* band, bool& cancel) {
            add("open", band->name());
            cancel = cancelled.contains(band->name());
        });
        connect(&model, &ToolModel::BandClose, this, [this](ToolBand* band) { add("close", band->name()); });
        connect(&model, &ToolModel::TextChange, this,
                [this](Tool* tool) { add("text", tool->name() + QLatin1Char('=') + tool->values().text); });
        connect(&model, &ToolModel::SelectionChange, this,
                [this](Tool* tool) { add("end", tool->name() + QLatin1Char('=') + tool->values().text); });
    }

    /// What was written since the last call, joined by "; ".
    QString take() { return std::exchange(m_lines, {}).join(QLatin1String("; ")); }

    QStringList lines() const { return m_lines; }

    QStringList cancelled; ///< bands that are kept closed

  private:
    void add(const char* what, const QString& which)
    {
        m_lines.append(QLatin1String(what) + QLatin1Char(' ') + which);
    }

    QStringList m_lines;
};

} // namespace quorvia::platform
