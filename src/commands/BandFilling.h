// Fills the bands whose contents are made anew each time they open. Takes what one call to `directoryExists`
// a recent directory takes; the file list costs a tool an entry.
#pragma once

#include "platform/ToolModel.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace quorvia::commands {

/// An entry of the file list: what is shown of it and where it is.
struct ListedFile
{
    QString displayName;
    QString path;
};

/// What the bands are filled from; each is asked only when a band that needs it opens.
struct BandContents
{
    std::function<QStringList()> recentDirectories;
    std::function<bool(const QString& directory)> directoryExists;
    std::function<QList<ListedFile>()> files;
    std::function<QString()> delay; ///< of the slideshow, as its tool says it
};

/// Fills `band` when it is one of those; to be called before it shows.
void fillBand(platform::ToolModel& model, const platform::ToolBand& band, const BandContents& contents);

/// Fills `bFiles`: the files as tools `FileX1` and on, the path of each in its tag. "(none)" when there is
/// none.
void fillFiles(platform::ToolModel& model, const QList<ListedFile>& files);
/// The band that is the menu of one image of the filmstrip.
inline constexpr char imageMenuBand[] = "bFilmStrip";
/// Makes that menu the one of `file`, a native path: it goes into the band's tag, its name into the caption
/// of `miThumbDelete`.
void fillImageMenu(platform::ToolModel& model, const QString& file);
/// Sets the text of `tTime` to `delay`.
void fillDelay(platform::ToolModel& model, const QString& delay);

/// True for the control's own customise menu, which is cancelled and in whose place the context menu opens.
bool isCustomizeBand(const QString& band);

} // namespace quorvia::commands
