#include "commands/WelcomeTips.h"

#include <QRandomGenerator>

#include <chrono>
#include <cmath>
#include <iterator>

namespace quorvia::commands {

namespace {

constexpr const char* tips[] = {
    "Pressing 'H' will toggle the interface tabs on and off.",
    "Pressing 'F' will toggle the File/Playlist explorer on and off.",
    "You can access addional imaging functions by 'right-clicking' on an open image.",
    "To send an image via e-mail: Right-click the image then select 'Send Image via E-mail'",
    "Use 'CTRL+N' and 'CTRL+B' to navigate to the next/previous image in the filelist.",
    "Pressing 'Q' will close the open image and return to the welcome screen.",
    "Use ' [ ' and ' ] ' to navigate to the next/previous image in the filelist.",
    "Pressing 'ALT+F' will fit the main window to the size of image.",
    "Pressing 'ESC' will exit the program.",
    "Pressing 'Z' will expediently toggle the current display visibility.",
    "Pressing 'X' will expediently minimize the main window.",
    "Pressing '2' will show the image information tab.",
    "Pressing '3' will show the image filmstrip tab.",
    "Pressing 'R' will select a random image from the playlist.",
};

int draw(const UnitSource& units)
{
    return int(std::nearbyint((std::size(tips) - 1) * units() + 1));
}

} // namespace

int pickTip(int last, const UnitSource& units)
{
    const int first = draw(units);
    return first == last ? draw(units) : first;
}

QString tipText(int number)
{
    return number >= 1 && number <= int(std::size(tips)) ? QLatin1String(tips[number - 1]) : QString();
}

QStringList drawTips(int count, int& last, const std::function<UnitSource()>& seeded)
{
    QStringList texts;
    for (int i = 0; i < count; ++i) {
        last = pickTip(last, seeded());
        texts.append(tipText(last));
    }
    return texts;
}

UnitSource unitsFromClock()
{
    const auto ticks = std::chrono::steady_clock::now().time_since_epoch();
    const auto seed = quint32(std::chrono::duration_cast<std::chrono::nanoseconds>(ticks).count());
    return [generator = QRandomGenerator(seed)]() mutable { return generator.generateDouble(); };
}

} // namespace quorvia::commands
