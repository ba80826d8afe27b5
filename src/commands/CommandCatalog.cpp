#include "commands/CommandCatalog.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quorvia::commands {

namespace {

using enum CommandGroup;

constexpr std::array catalog = {
    CommandText{"miOpen", Files, "ask for an image and open it"},
    CommandText{"miSave", Files, "ask for a name and save the image"},
    CommandText{"miPrint", Files, "print the image"},
    CommandText{"miRename", Files, "ask for another name for the file"},
    CommandText{"miDelete", Files, "move the file to the trash"},
    CommandText{"miThumbDelete", Files, "move the file of the strip's menu to the trash"},
    CommandText{"miEmailImage", Files, "send the image by mail"},
    CommandText{"miEdit", Files, "open the file in the editor for images"},
    CommandText{"miRefresh", Files, "read the image and the list anew"},
    CommandText{"miCloseImage", Files, "close the image"},
    CommandText{"miRecentClear", Files, "forget the recent directories"},

    CommandText{"miNext", Walking, "go to the next image"},
    CommandText{"miPrevious", Walking, "go to the previous image"},
    CommandText{"miLoadFirst", Walking, "go to the first image of the list"},
    CommandText{"miRandom", Walking, "go to an image by chance"},

    CommandText{"miBestFit", View, "change between best fit and actual size"},
    CommandText{"miActualSize", View, "change between actual size and best fit"},
    CommandText{"miZoomIn", View, "zoom in"},
    CommandText{"miZoomOut", View, "zoom out"},
    CommandText{"miFullScreen", View, "show the image on the whole screen"},
    CommandText{"miThumbFull", View, "show the image of the strip's menu on the whole screen"},
    CommandText{"miViewNormal", View, "show the image alone"},
    CommandText{"miViewInformation", View, "show what is known of the file"},
    CommandText{"miViewFilmstrip", View, "show a strip of the image's neighbours"},
    CommandText{"miFileList", View, "show or hide the panel of folders and playlists"},
    CommandText{"miEXIFView", View, "show or hide the summary beside the image"},
    CommandText{"miHideInterface", View, "show or hide what the tabs have below the image"},
    CommandText{"miFilm1", View, "one row of small images in the strip"},
    CommandText{"miFilm2", View, "two rows of small images in the strip"},
    CommandText{"miFilm3", View, "three rows of small images in the strip"},
    CommandText{"miQuickHide", View, "hide all pictures, or show them again"},

    CommandText{"miSlideShow", SlideShow, "start or stop the slide show"},
    CommandText{"xSlideShow", SlideShow, "start the slide show on the whole screen"},
    CommandText{"tSldAdvance", SlideShow, "slide show from first to last"},
    CommandText{"tSldReverse", SlideShow, "slide show from last to first"},
    CommandText{"tSldRandom", SlideShow, "slide show in no order"},

    CommandText{"miCopy", Edits, "copy the image to the clipboard"},
    CommandText{"miPaste", Edits, "look at what the clipboard holds"},
    CommandText{"miRotateClock", Edits, "rotate the image to the right, in its file too"},
    CommandText{"miRotateCounter", Edits, "rotate the image to the left, in its file too"},
    CommandText{"miBevel", Edits, "raise the edges of the image"},
    CommandText{"miCustomResize", Edits, "ask for a size and give it to the image"},
    CommandText{"miThumb80x80", Edits, "resize the image to 80 x 80 pixels"},
    CommandText{"miThumb120x120", Edits, "resize the image to 120 x 120 pixels"},
    CommandText{"miThumb240x240", Edits, "resize the image to 240 x 240 pixels"},
    CommandText{"miThumb320x320", Edits, "resize the image to 320 x 320 pixels"},
    CommandText{"miThumb480x480", Edits, "resize the image to 480 x 480 pixels"},
    CommandText{"miThumb80x60", Edits, "resize the image to 80 x 60 pixels"},
    CommandText{"miThumb120x90", Edits, "resize the image to 120 x 90 pixels"},
    CommandText{"miThumb240x180", Edits, "resize the image to 240 x 180 pixels"},
    CommandText{"miThumb320x240", Edits, "resize the image to 320 x 240 pixels"},
    CommandText{"miThumb480x360", Edits, "resize the image to 480 x 360 pixels"},
    CommandText{"miWallpaperS", Edits, "make the image the wallpaper, stretched"},
    CommandText{"miWallpaperT", Edits, "make the image the wallpaper, tiled"},
    CommandText{"miWallpaperC", Edits, "make the image the wallpaper, centred"},

    CommandText{"miPlaylistEditor", Tools, "make and change playlists"},
    CommandText{"miScan", Tools, "take an image from a scanner"},
    CommandText{"miRunMorphane", Tools, "open the image in Morphane"},
    CommandText{"miRunTessary", Tools, "start Tessary"},
    CommandText{"miRunNomalux", Tools, "start Nomalux"},

    CommandText{"miWebsite", Web, "visit the website of Quorvia"},
    CommandText{"miHVXAWebsite", Web, "visit the website, as miWebsite does"},
    CommandText{"miLindoraCenter", Web, "visit the Lindora Center"},
    CommandText{"miHVXAImageGallery", Web, "visit the image gallery"},
    CommandText{"miWebMorphane", Web, "visit the page of Morphane"},
    CommandText{"miWebTessary", Web, "visit the page of Tessary"},
    CommandText{"miWebNomalux", Web, "visit the page of Nomalux"},
    CommandText{"miURLcomments", Web, "write a comment"},
    CommandText{"miURLfeature", Web, "suggest a feature"},
    CommandText{"miURLbugreport", Web, "report a fault"},
    CommandText{"miAutoUpdate", Web, "ask, and look for a newer version"},
    CommandText{"miAutoUpdateInstall", Web, "look for a newer version, as after an installation"},

    CommandText{"miHide", Program, "do not show the main window"},
    CommandText{"miShow", Program, "show the main window"},
    CommandText{"miPref", Program, "change the options"},
    CommandText{"miCustomizeToolbar", Program, "say that the toolbar cannot be changed here"},
    CommandText{"miHelp", Program, "read the help pages"},
    CommandText{"miHelpShortcuts", Program, "read which keys do what"},
    CommandText{"miExit", Program, "end the program"},

    CommandText{"tOpenx", OtherNames, "miOpen"},
    CommandText{"miOpenMenu", OtherNames, "miOpen"},
    CommandText{"miFilelistMenu", OtherNames, "miFileList"},
    CommandText{"miInterfaceTabs", OtherNames, "miHideInterface"},
    CommandText{"miInformation", OtherNames, "miViewInformation"},
    CommandText{"miWallpaper", OtherNames, "miWallpaperS"},
    CommandText{"miWallpaperMenu", OtherNames, "miWallpaperS"},
    CommandText{"FileListUpdated", OtherNames, "bring the strip in line with the list"},
};

} // namespace

std::span<const CommandText> commandCatalog()
{
    return catalog;
}

const char* headingOf(CommandGroup group)
{
    constexpr std::array headings = {"Files",      "From image to image",       "View",    "Slide show",
                                     "Edits",      "Playlists and other tools", "The web", "The program",
                                     "Other names"};
    static_assert(headings.size() == std::size_t(OtherNames) + 1);
    return headings[std::size_t(group)];
}

bool isForCommandLine(const CommandText& command)
{
    constexpr std::array<std::string_view, 3> inner = {"miThumbFull", "miThumbDelete", "FileListUpdated"};
    return std::find(inner.begin(), inner.end(), std::string_view(command.name)) == inner.end();
}

} // namespace quorvia::commands
