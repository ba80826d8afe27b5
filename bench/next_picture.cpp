// Times the step to the next picture: key pressed to the whole picture on the screen.
// next_picture PROGRAM FOLDER COUNT PAUSE walks the first COUNT pictures of FOLDER with the Right key, each
// key PAUSE milliseconds after the picture before it was there, and prints the steps' median and the
// program's peak memory. PAUSE "held" sends the key thirty times a second instead, as a held key does, and
// prints the time from picture to picture. The pictures are 3:2, in the order of their names, with marks in
// the middle and towards the corners whose colours count: picture number i (from 0) has the colour of the
// bits of i % 6 + 1, lowest bit red, then green, then blue. Keys are sent to the program's window as events.
// With "full" behind, it goes to full screen first, prints how long that took, and walks there.
#include "PictureProbes.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <X11/keysym.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using quorvia::bench::placesOfFullPicture;
using quorvia::bench::placesOfPicture;
using quorvia::bench::Points;

double millisecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

bool hasColor(Display* display, std::pair<int, int> place, int code)
{
    XImage* image =
        XGetImage(display, DefaultRootWindow(display), place.first, place.second, 1, 1, AllPlanes, ZPixmap);
    if (!image)
        return false;
    const unsigned long pixel = XGetPixel(image, 0, 0);
    XDestroyImage(image);
    const auto channel = [pixel, code](int shift, int bit) {
        const unsigned long value = pixel >> shift & 0xff;
        return (code >> bit & 1) != 0 ? value > 235 : value < 20;
    };
    return channel(16, 0) && channel(8, 1) && channel(0, 2);
}

/// Waits for picture `number`; false when it does not come within ten seconds.
bool stands(Display* display, const Points& points, int number)
{
    const auto begin = Clock::now();
    const int code = number % 6 + 1;
    while (millisecondsSince(begin) < 10'000) {
        if (std::all_of(points.begin(), points.end(),
                        [&](const auto& point) { return hasColor(display, point, code); }))
            return true;
        usleep(100);
    }
    return false;
}

/// The largest window of the screen, which is the program's.
Window programWindow(Display* display)
{
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    Window found = 0;
    int most = 0;
    for (unsigned i = 0; i < count; ++i) {
        XWindowAttributes facts = {};
        XGetWindowAttributes(display, children[i], &facts);
        if (facts.map_state == IsViewable && facts.width * facts.height > most) {
            most = facts.width * facts.height;
            found = children[i];
        }
    }
    if (children)
        XFree(children);
    return found;
}

void press(Display* display, Window window, KeySym symbol, unsigned modifiers = 0)
{
    XKeyEvent key = {};
    key.display = display;
    key.window = window;
    key.root = DefaultRootWindow(display);
    key.same_screen = True;
    key.keycode = XKeysymToKeycode(display, symbol);
    key.state = modifiers;
    for (const int type : {KeyPress, KeyRelease}) {
        key.type = type;
        XSendEvent(display, window, False, type == KeyPress ? KeyPressMask : KeyReleaseMask,
                   reinterpret_cast<XEvent*>(&key));
    }
    XFlush(display);
}

/// The time of each step to pictures 1 up to `count`, each begun `pause` milliseconds after the last.
std::vector<double> walk(Display* display, Window window, const Points& points, int count, int pause)
{
    std::vector<double> times;
    for (int number = 1; number < count; ++number) {
        usleep(static_cast<useconds_t>(pause) * 1000);
        const auto begin = Clock::now();
        press(display, window, XK_Right);
        if (!stands(display, points, number))
            break;
        times.push_back(millisecondsSince(begin));
    }
    return times;
}

/// The number of the colour of the whole picture on the screen, -1 for none.
int wholeColor(Display* display, const Points& points)
{
    for (int code = 1; code <= 6; ++code) {
        if (std::all_of(points.begin(), points.end(),
                        [&](const auto& point) { return hasColor(display, point, code); }))
            return code;
    }
    return -1;
}

/// The times from picture to picture while the key is held until `count` - 1 others were seen.
std::vector<double> hold(Display* display, Window window, const Points& points, int count)
{
    constexpr double repeat = 1000.0 / 30;
    std::vector<double> times;
    int shown = wholeColor(display, points);
    auto pressed = Clock::now();
    auto before = Clock::now();
    press(display, window, XK_Right);
    while (static_cast<int>(times.size()) < count - 1 && millisecondsSince(before) < 10'000) {
        if (millisecondsSince(pressed) >= repeat) {
            pressed = Clock::now();
            press(display, window, XK_Right);
        }
        const int color = wholeColor(display, points);
        if (color < 0 || color == shown) {
            usleep(500);
            continue;
        }
        times.push_back(millisecondsSince(before));
        before = Clock::now();
        shown = color;
    }
    return times;
}

/// Brings picture `number`, which is on show, on the whole screen, where `points` tell it; the window that it
/// is in then, or none.
Window goFull(Display* display, Window window, const Points& points, int number)
{
    const auto begin = Clock::now();
    press(display, window, XK_f, ControlMask);
    if (!stands(display, points, number))
        return None;
    std::printf("%7.1f ms to full screen, ", millisecondsSince(begin));
    usleep(1'500'000); // the neighbours are read ahead for it
    return programWindow(display);
}

} // namespace

int main(int argc, char* argv[])
{
    Display* display = XOpenDisplay(nullptr);
    const bool full = argc == 6 && std::string(argv[5]) == "full";
    if (!(argc == 5 || full) || !display) {
        std::fprintf(stderr, "usage: next_picture PROGRAM FOLDER COUNT PAUSE|held [full], with a display\n");
        return 2;
    }
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(argv[2]))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    const int count = std::min(std::atoi(argv[3]), static_cast<int>(files.size()));
    const std::string pause = argv[4];
    if (count < 2) {
        std::fprintf(stderr, "too few pictures in %s\n", argv[2]);
        return 2;
    }
    const pid_t child = fork();
    if (child == 0) {
        execl(argv[1], argv[1], files[0].c_str(), nullptr);
        _exit(127);
    }
    Points points = placesOfPicture(display);
    std::vector<double> times;
    if (stands(display, points, 0)) {
        Window window = programWindow(display);
        usleep(1'500'000);                // the list stands, and what follows the first picture is done
        press(display, window, XK_Right); // makes the picture on show the list's current entry
        usleep(1'500'000);
        if (full) {
            points = placesOfFullPicture(display);
            window = goFull(display, window, points, 0);
        }
        if (window != None)
            times = pause == "held" ? hold(display, window, points, count)
                                    : walk(display, window, points, count, std::atoi(argv[4]));
    }
    kill(child, SIGTERM);
    rusage usage = {};
    wait4(child, nullptr, 0, &usage);
    XCloseDisplay(display);
    if (static_cast<int>(times.size()) != count - 1) {
        std::fprintf(stderr, "picture %zu did not come\n", times.size() + 1);
        return 1;
    }
    std::sort(times.begin(), times.end());
    std::printf("%7.1f ms median (%.1f to %.1f, nine of ten within %.1f), %d steps, %ld MB peak\n",
                times[times.size() / 2], times.front(), times.back(), times[times.size() * 9 / 10], count - 1,
                usage.ru_maxrss / 1024);
    return 0;
}
