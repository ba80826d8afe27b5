#include "OtherKeys.h"

#include <algorithm>
#include <array>

namespace quorvia::help {

namespace {

constexpr OtherKey image[] = {
    {"Double click", "show the image on the whole screen"},
    {"Right click|Menu|Shift+F10", "open the menu with all commands"},
    {"Wheel", "scroll an image that is larger than its place"},
    {"Shift+Wheel", "scroll it sideways"},
    {"Ctrl+Wheel", "zoom in and out around the pointer"},
    {"Drag", "pan, at actual size"},
    {"Ctrl+Drag|Alt+Drag", "zoom onto a rectangle, at actual size"},
    {"Ctrl+Right click|Alt+Right click", "zoom out, at actual size"},
    {"Click", "go back to 100 %, at actual size"},
    {"Drop", "open the file or folder that is dropped on the window"},
};

constexpr OtherKey strip[] = {
    {"Click", "open the image"},
    {"Drag|Wheel", "move the strip"},
    {"Right click", "open the menu of the image"},
    {"Tab", "walk to the strip from another part of the window"},
    {"Left|Right", "walk to the column beside"},
    {"Up|Down", "walk to the image before or after"},
    {"Page Up|Page Down", "walk on by what is in sight"},
    {"Home|End", "walk to the first or last image"},
    {"Enter|Space", "open the image"},
};

constexpr OtherKey list[] = {
    {"Click", "open the image"},
    {"Right click|Shift+F10", "open the menu of the selected files"},
    {"Home|End|Page Up|Page Down", "walk in the list and open the image there"},
    {"Shift+Up|Shift+Down", "select more files"},
    {"Ctrl+A", "select all files"},
    {"Enter|Space", "open the image"},
};

constexpr OtherKey tree[] = {
    {"Up|Down|Page Up|Page Down|Home|End", "walk in the tree and list the folder there"},
    {"Right|+", "open the folder's branch"},
    {"Left|-", "close it"},
    {"Tab", "walk to the next part of the panel"},
};

constexpr OtherKey information[] = {
    {"Double click", "open the folder, on the path of the image"},
    {"Enter", "the same, when the path has the focus"},
    {"Tab", "leave the description"},
};

constexpr OtherKey tabs[] = {
    {"Tab", "walk to the tabs, or to the toolbar, from another part of the window"},
    {"Left|Right|Home|End", "walk from tab to tab, or from button to button"},
    {"Enter|Space", "press the button"},
};

constexpr OtherKey fullMouse[] = {
    {"Double click", "go back to the window"},
    {"Right click", "go to the next image"},
    {"Shift+Click", "go to the previous image"},
    {"Upper edge", "move the pointer there, and a bar with buttons comes"},
    {"Any other key", "go back to the window, when pressed alone"},
};

constexpr OtherKey editor[] = {
    {"Double click", "add the file, or take the entry out of the playlist"},
    {"Enter", "add the selected files"},
    {"Ctrl+Up|Ctrl+Down", "move the selected entries up or down in the playlist"},
    {"Click", "take an image of the strips out of the selection"},
    {"Right click", "choose the number of rows of the strips"},
    {"Esc", "save and close"},
};

constexpr OtherKey print[] = {
    {"Click", "put the image at that place of the page"},
    {"Drag", "give the image that rectangle of the page"},
    {"Wheel|Up|Down|Page Up|Page Down", "scroll the page"},
    {"Shift+Wheel|Left|Right", "scroll it sideways"},
    {"Esc", "give up a rectangle that is being drawn, else close"},
};

constexpr OtherKey clipboard[] = {
    {"Wheel|Up|Down|Page Up|Page Down", "scroll a large picture"},
    {"Shift+Wheel|Left|Right", "scroll it sideways"},
    {"Esc", "close without pasting"},
};

constexpr OtherKey conversion[] = {
    {"Y|Enter", "yes"},
    {"A", "yes to all"},
    {"N", "no"},
    {"Esc", "cancel"},
};

constexpr OtherKey preferences[] = {
    {"Ctrl+Tab|Ctrl+Page Down", "turn to the next page"},
    {"Ctrl+Shift+Tab|Ctrl+Page Up", "turn to the page before"},
    {"Enter", "accept"},
    {"Esc", "cancel"},
};

constexpr OtherKey size[] = {
    {"Alt+W|Alt+H", "go to the width or the height"},
    {"Alt+C", "change the check box"},
    {"Alt+A", "apply"},
};

struct Part
{
    const char* name;
    std::span<const OtherKey> keys;
};

constexpr std::array parts = {
    Part{"image", image},
    Part{"strip", strip},
    Part{"list", list},
    Part{"tree", tree},
    Part{"information", information},
    Part{"tabs", tabs},
    Part{"fullmouse", fullMouse},
    Part{"editor", editor},
    Part{"print", print},
    Part{"clipboard", clipboard},
    Part{"conversion", conversion},
    Part{"preferences", preferences},
    Part{"size", size},
};

} // namespace

std::span<const OtherKey> otherKeys(const QString& part)
{
    const auto found = std::find_if(parts.begin(), parts.end(),
                                    [&part](const Part& each) { return part == QLatin1String(each.name); });
    return found == parts.end() ? std::span<const OtherKey>() : found->keys;
}

QStringList otherParts()
{
    QStringList names;
    for (const Part& part : parts)
        names.append(QLatin1String(part.name));
    return names;
}

QStringList separateKeys(const OtherKey& row)
{
    return QString(QLatin1String(row.keys)).split(u'|');
}

} // namespace quorvia::help
