// Menus and toolbar in the main window: builds them from the definition, fills the bands that open, hands on
// what is clicked, and keeps all tools in line with the facts.
#pragma once

#include "commands/BandFilling.h"
#include "commands/CommandState.h"
#include "commands/InterfaceFile.h"
#include "commands/MenuBuild.h"
#include "commands/ShortcutTable.h"

#include <QObject>

#include <functional>

namespace quorvia::output {
class Slideshow;
}
namespace quorvia::platform {
class ToolControl;
}

namespace quorvia::viewer {

class InterfaceTools : public QObject, private commands::MenuHost
{
    Q_OBJECT

  public:
    struct Parts
    {
        platform::ToolControl* ab1;
        output::Slideshow* slideshow;
        commands::BandContents contents; ///< of the bands that are filled when they open
        std::function<void(const QString&)> runTool;
        std::function<void()> updateToolbar; ///< with the marks of the views, after a build
        std::function<void()> placePanes;    ///< after the toolbar showed or changed its size
    };

    explicit InterfaceTools(Parts parts);

    /// See MenuBuild.
    void OpenMenuX(bool rebuild) { m_build.OpenMenuX(rebuild); }
    /// Opens the context menu at `at`, a place of the screen in pixels, with its first row chosen.
    void openMenuByKeys(QPoint at);
    /// True once there are menu and toolbar.
    bool isBuilt() const { return m_build.isBuilt(); }
    /// Brings all tools but the marks of the views in line with `facts`.
    void apply(const commands::CommandFacts& facts);
    /// Brings the marks of the views in line.
    void applyViewMarks(const commands::CommandFacts& facts);

    const commands::ShortcutTable& shortcuts() const { return m_shortcuts; }
    /// The caption of the tool `name` on the band `bRecent`, a directory; empty when there is none.
    QString recentDirectory(const QString& name) const;
    /// The file of the tool `name` on the band `bFiles`; empty when there is none.
    QString listedFile(const QString& name) const;
    /// Opens the menu of one image of the filmstrip, `file`, at the mouse.
    void openImageMenu(const QString& file);
    /// The file that menu was opened for last; empty before.
    QString imageOfMenu() const;

  private:
    // --- commands::MenuHost
    void setWidth(int width) override;
    void setHeight(int height) override;
    void recalculateLayout() override;
    void show() override;
    void popUp(platform::ToolBand* band) override;

    void openBand(platform::ToolBand* band, bool& cancel);
    void followDelay(platform::Tool* tool, bool chosen);
    platform::Tool* toolOn(const char* band, const QString& name) const;

    Parts m_parts;
    commands::ShortcutTable m_shortcuts;
    commands::InterfaceFile m_file;
    commands::MenuBuild m_build;
};

} // namespace quorvia::viewer
