// Which tools are enabled and checked: the facts, gathered once, and one table over them. Bringing a model in
// line touches some fifty tools and nothing else; no image work and no disk.
#pragma once

#include <QString>

namespace quorvia::platform {
class ToolModel;
}

namespace quorvia::commands {

/// What the state of the tools follows from.
struct CommandFacts
{
    bool hasImage = false; ///< as hasImage() tells
    bool bestFit = false;
    bool interfaceHidden = false;
    bool slideRunning = false; ///< `tSlide` is enabled
    bool listNonEmpty = false; ///< the active list has entries
    bool listShown = false;    ///< the band `bPlay` is visible
    int rows = 1;              ///< of the filmstrip
    QString slidemode;         ///< as the slideshow holds it
    QString selectedTab;       ///< key of the tab strip's selected tab
};

/// Brings the tools of `model` in line with `facts`, all but the marks of the views; the copies on the bands
/// `bWallpaper`, `bSlide` and `bFilmStrip` too, which do not follow their tools. A tool that the table does
/// not name keeps its state, and so does either half that the table leaves alone; one that is not there costs
/// nothing.
void applyState(platform::ToolModel& model, const CommandFacts& facts);
/// Brings the check marks of the view tools in line: `miViewNormal`, `miViewInformation`, `miViewFilmstrip`
/// and `miInterfaceTabs`.
void applyViewMarks(platform::ToolModel& model, const CommandFacts& facts);

/// Whether there is an image to work on: its file exists, and the selected tab is one that shows it. The
/// picture of a file that has gone does not count.
bool hasImage(bool fileExists, const QString& selectedTab);

/// Whether `pWelcome` shows.
bool showsWelcome(const CommandFacts& facts);
/// What the item "INFO4" of `pWelcome` says of the number of images opened so far.
QString viewedText(int imageOpenCount);
/// How often the panel of the file list looks at its folder, in milliseconds.
int listUpdateInterval(bool listShown);

} // namespace quorvia::commands
