// One run of any viewer, timed by what stands on the screen.
//   viewer_run SCREEN open SECONDS COMMAND...         opens a picture whose marks are magenta
//   viewer_run SCREEN walk KEY COUNT PAUSE COMMAND... opens a folder's first picture and walks COUNT steps,
//   each
//                                                     begun PAUSE milliseconds after the picture before stood
//   viewer_run SCREEN hold KEY SECONDS COMMAND...     the same with the key held
// SCREEN is the file of an Xvfb that was started with -fbdir. KEY is the name of a keysym. Pictures are found
// by PictureFinder; in the folder, number i (from 0) has marks with the code i % 6 + 1. Prints lines of a
// name and numbers: milliseconds, kilobytes and pixels. 1 when no picture came.
#include "PictureFinder.h"
#include "ProcessTree.h"
#include "ScreenFile.h"

#include <sys/wait.h>
#include <unistd.h>
#include <X11/extensions/XTest.h>
#include <X11/XKBlib.h>
#include <X11/Xlib.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace quorvia::bench;
using Clock = std::chrono::steady_clock;

constexpr int magenta = 5;
constexpr int colors = 6;
constexpr double patience = 10'000; // milliseconds for a step of a walk

double millisecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

void sleepMilliseconds(double milliseconds)
{
    usleep(useconds_t(milliseconds * 1000));
}

pid_t start(char* words[])
{
    const pid_t child = fork();
    if (child == 0) {
        setpgid(0, 0);
        execvp(words[0], words);
        _exit(127);
    }
    return child;
}

/// The code of the whole picture on the screen, 0 for none.
int shownCode(const ScreenPixels& screen)
{
    for (int code = 1; code <= colors; ++code) {
        if (!findPicture(screen, code).isEmpty())
            return code;
    }
    return 0;
}

/// Ends the program and all of its group, and waits until its picture is gone.
void end(pid_t child, const ScreenPixels& screen)
{
    kill(child, SIGTERM);
    const auto begin = Clock::now();
    bool ended = false;
    while (!(ended = waitpid(child, nullptr, WNOHANG) != 0) && millisecondsSince(begin) < 3000)
        sleepMilliseconds(10);
    kill(-child, SIGKILL);
    if (!ended)
        waitpid(child, nullptr, 0);
    while (shownCode(screen) != 0 && millisecondsSince(begin) < 6000)
        sleepMilliseconds(20);
    sleepMilliseconds(100); // the window manager puts its things away
}

/// Waits for the picture with marks of `code`; empty after `limit` milliseconds or when `child` has ended.
Place waitFor(const ScreenPixels& screen, int code, double limit)
{
    const auto begin = Clock::now();
    while (millisecondsSince(begin) < limit) {
        const Place place = findPicture(screen, code);
        if (!place.isEmpty())
            return place;
        sleepMilliseconds(0.4);
    }
    return {};
}

/// Milliseconds since `begin` when more than a hundredth of `place` last changed, which must then have stood
/// for 700 ms.
double lastChange(const ScreenPixels& screen, const Place& place, Clock::time_point begin)
{
    constexpr double still = 700;
    constexpr double atMost = 15'000;
    std::vector<std::uint32_t> seen;
    double last = millisecondsSince(begin);
    changedShare(screen, place, seen);
    const double first = last;
    for (double now = last; now - last < still && now - first < atMost; now = millisecondsSince(begin)) {
        if (changedShare(screen, place, seen) > 0.01)
            last = now;
        sleepMilliseconds(4);
    }
    return last;
}

/// Waits until the program has had nothing to do for half a second, or for 20 seconds: a picture can stand
/// long before its decode has ended.
void waitUntilIdle(pid_t child)
{
    constexpr double span = 500;
    constexpr long idleTicks = 1; // of 50
    const auto begin = Clock::now();
    for (long before = -1; millisecondsSince(begin) < 20'000;) {
        const long now = ticksOfTree(child);
        if (before >= 0 && now - before <= idleTicks)
            return;
        before = now;
        sleepMilliseconds(span);
    }
}

void printMemory(pid_t child)
{
    waitUntilIdle(child);
    const TreeMemory memory = memoryOfTree(child);
    std::printf("memory %ld\npeak %ld\n", memory.kilobytes, memory.peakKilobytes);
}

class Keys
{
  public:
    Keys(Display* display, const char* name)
        : m_display(display), m_code(XKeysymToKeycode(display, XStringToKeysym(name)))
    {
        XkbSetAutoRepeatRate(display, XkbUseCoreKbd, 300, 33);
    }
    bool isKnown() const { return m_code != 0; }
    /// Presses or lets go, `delay` milliseconds after what was sent before.
    void set(bool down, unsigned long delay = 0) const
    {
        XTestFakeKeyEvent(m_display, m_code, down ? True : False, delay);
        XFlush(m_display);
    }
    /// A stroke too short to repeat; the call does not wait for its end.
    void press() const
    {
        set(true);
        set(false, 20);
    }

  private:
    Display* m_display;
    KeyCode m_code;
};

bool open(const ScreenPixels& screen, double limit, char* command[])
{
    const auto begin = Clock::now();
    const pid_t child = start(command);
    const Place place = waitFor(screen, magenta, limit);
    const double first = millisecondsSince(begin);
    if (!place.isEmpty()) {
        const double last = lastChange(screen, insideOf(screen, place), begin);
        const Place after = findPicture(screen, magenta);
        std::printf("first %.1f\nlast %.1f\nwidth %d\n", first, last < first + 10 ? first : last,
                    after.width);
        printMemory(child);
    }
    end(child, screen);
    return !place.isEmpty();
}

/// Opens the folder's first picture and lets the viewer come to rest. The first key only makes the picture on
/// show the current one in some viewers; what is shown after it is where the walk begins. 0 for none.
int openWalk(const ScreenPixels& screen, const Keys& keys, pid_t child)
{
    constexpr double reaction = 1000;
    if (waitFor(screen, 1, 2 * patience).isEmpty())
        return 0;
    sleepMilliseconds(reaction);
    waitUntilIdle(child);
    keys.press();
    sleepMilliseconds(reaction);
    waitUntilIdle(child);
    return shownCode(screen);
}

bool walk(const ScreenPixels& screen, const Keys& keys, int count, int pause, char* command[])
{
    const pid_t child = start(command);
    int code = openWalk(screen, keys, child);
    int steps = 0;
    for (; code != 0 && steps < count; ++steps) {
        sleepMilliseconds(pause);
        code = code % colors + 1;
        const auto begin = Clock::now();
        keys.press();
        if (waitFor(screen, code, patience).isEmpty())
            break;
        std::printf("step %.1f\n", millisecondsSince(begin));
    }
    printMemory(child);
    end(child, screen);
    return steps == count;
}

bool hold(const ScreenPixels& screen, const Keys& keys, double seconds, char* command[])
{
    const pid_t child = start(command);
    int shown = openWalk(screen, keys, child);
    const bool began = shown != 0;
    std::vector<double> times;
    const auto begin = Clock::now();
    if (began)
        keys.set(true);
    while (began && millisecondsSince(begin) < seconds * 1000) {
        const int code = shownCode(screen);
        if (code != 0 && code != shown) {
            times.push_back(millisecondsSince(begin));
            shown = code;
        }
        sleepMilliseconds(0.4);
    }
    keys.set(false);
    // The first one comes before the keyboard begins to repeat.
    if (times.size() > 2)
        std::printf("rate %.2f\n", double(times.size() - 2) * 1000 / (times.back() - times[1]));
    else
        std::printf("rate %.2f\n", double(times.size()) / seconds);
    std::printf("seen %zu\n", times.size());
    printMemory(child);
    end(child, screen);
    return began;
}

} // namespace

int main(int argc, char* argv[])
{
    Display* display = XOpenDisplay(nullptr);
    const std::string what = argc > 4 ? argv[2] : "";
    if (!display || (what != "open" && argc < 6) || (what == "walk" && argc < 7)) {
        std::fprintf(
            stderr,
            "usage: viewer_run SCREEN open SECONDS COMMAND... | walk KEY COUNT PAUSE COMMAND... | hold KEY "
            "SECONDS COMMAND..., with a display\n");
        return 2;
    }
    const ScreenFile file(argv[1]);
    if (!file.screen().pixels) {
        std::fprintf(stderr, "cannot read %s\n", argv[1]);
        return 2;
    }
    // Out of the way of what comes up under a pointer.
    XTestFakeMotionEvent(display, 0, file.screen().width - 1, file.screen().height - 1, CurrentTime);
    XFlush(display);
    if (what == "open")
        return open(file.screen(), std::atof(argv[3]) * 1000, argv + 4) ? 0 : 1;
    const Keys keys(display, argv[3]);
    if (!keys.isKnown()) {
        std::fprintf(stderr, "no key %s\n", argv[3]);
        return 2;
    }
    const bool done = what == "walk"
                          ? walk(file.screen(), keys, std::atoi(argv[4]), std::atoi(argv[5]), argv + 6)
                          : hold(file.screen(), keys, std::atof(argv[4]), argv + 5);
    return done ? 0 : 1;
}
