// A menu build over a host that keeps what it is told, without a window.
#pragma once

#include "commands/DesignedTools.h"
#include "commands/MenuBuild.h"

#include <QStringList>

namespace quorvia::test {

class RecordingHost : public commands::MenuHost
{
  public:
    explicit RecordingHost(platform::ToolModel* model) : m_model(model) {}

    void setWidth(int width) override { m_calls << QStringLiteral("width %1").arg(width); }
    void setHeight(int height) override { m_calls << QStringLiteral("height %1").arg(height); }
    void recalculateLayout() override
    {
        m_calls << QStringLiteral("layout");
        if (platform::ToolBand* const toolbar = m_model->band(QStringLiteral("Toolbar"))) {
            toolbar->setSize(m_layout);
            toolbar->setVisible(false); // the build is to show it after this
            if (const auto* const tool = toolbar->tool(QStringLiteral("miSlideShowMenu")))
                m_kindAtLayout = tool->values().kind;
        }
    }
    void show() override { m_calls << QStringLiteral("show"); }
    void popUp(platform::ToolBand* band) override { m_calls << QStringLiteral("pop up ") + band->name(); }

    QSize m_layout{4500, 480}; ///< what a layout makes of the toolbar, twips
    QStringList m_calls;
    platform::ToolKind m_kindAtLayout = platform::ToolKind::Separator;

  private:
    platform::ToolModel* m_model;
};

struct BuildStage
{
    BuildStage() { commands::addDesignedTools(model); }

    /// Builds from these sections.
    void run(const QString& menuSection, const QString& toolbarSection = QString())
    {
        menu = menuSection;
        toolbar = toolbarSection;
        build.OpenMenuX(true);
    }
    platform::ToolBand* band(const QString& name) const { return model.band(name); }
    /// The names of the tools of a band, in their order.
    QStringList namesOn(const QString& name) const
    {
        return listed(name, [](const platform::Tool& tool) { return tool.name(); });
    }
    QStringList captionsOn(const QString& name) const
    {
        return listed(name, [](const platform::Tool& tool) { return tool.values().caption; });
    }
    /// The tool at a place of the context menu, 0-based.
    const platform::Tool& item(int index) const { return *band(QStringLiteral("NewImage"))->toolAt(index); }

    platform::ToolModel model;
    commands::ShortcutTable shortcuts;
    RecordingHost host{&model};
    QString menu;
    QString toolbar;
    bool postrel = false;
    double twipsPerPixel = 15;
    int updates = 0;
    commands::MenuBuild build{{.model = &model,
                               .shortcuts = &shortcuts,
                               .host = &host,
                               .menuString = [this] { return menu; },
                               .toolbarString = [this] { return toolbar; },
                               .postrelIsThere = [this] { return postrel; },
                               .twipsPerPixelX = [this] { return twipsPerPixel; },
                               .updateTools = [this] { ++updates; }}};

  private:
    template <class Text>
    QStringList listed(const QString& name, Text text) const
    {
        QStringList texts;
        const platform::ToolBand* const listedBand = band(name);
        for (int index = 0; listedBand && index < listedBand->toolCount(); ++index)
            texts << text(*listedBand->toolAt(index));
        return texts;
    }
};

} // namespace quorvia::test
