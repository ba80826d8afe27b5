// One run of any viewer, timed by what stands on the screen.
//   viewer_run SCREEN open SECONDS COMMAND...         opens a picture whose marks are magenta
//   viewer_run SCREEN walk KEY COUNT PAUSE COMMAND... opens a folder's first picture and walks COUNT steps;
//                                                     PAUSE milliseconds after a picture stood comes the key
//   viewer_run SCREEN hold KEY SECONDS COMMAND...     the same with the key held
// SCREEN is the file of an Xvfb that was started with -fbdir. KEY is the name of a keysym. Pictures are found
// by PictureFinder; in the folder, number i (from 0) has marks with the code i % 6 + 1. Prints lines of a
// name and numbers: milliseconds, kilobytes, pictures a second; nothing about a picture or a program that was
// not there. 1 when no picture came or a walk ended early, 2 when it could not measure.
#include "PictureFinder.h"
#include "ProcessTree.h"
#include "ScreenFile.h"
#include "StartedProgram.h"

#include <unistd.h>
#include <X11/extensions/XTest.h>
#include <X11/XKBlib.h>
#include <X11/Xlib.h>

#include <chrono>
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

/// The code of the whole picture on the screen, 0 for none.
int shownCode(const ScreenPixels& screen)
{
    for (int code = 1; code <= colors; ++code) {
        if (!findPicture(screen, code).isEmpty())
            return code;
    }
    return 0;
}

/// Waits until no picture stands on the screen; false when one still does after `limit` milliseconds.
bool waitUntilClear(const ScreenPixels& screen, double limit)
{
    const auto begin = Clock::now();
    while (shownCode(screen) != 0) {
        if (millisecondsSince(begin) >= limit)
            return false;
        sleepMilliseconds(20);
    }
    return true;
}

/// Ends the program and waits until its picture is gone.
void end(StartedProgram& program, const ScreenPixels& screen)
{
    program.end(3000);
    waitUntilClear(screen, 3000);
    sleepMilliseconds(100); // the window manager puts its things away
}

/// Waits for the picture with marks of `code`; empty after `limit` milliseconds or when `program` has ended.
Place waitFor(const ScreenPixels& screen, StartedProgram& program, int code, double limit)
{
    const auto begin = Clock::now();
    while (millisecondsSince(begin) < limit && !program.hasEnded()) {
        const Place place = findPicture(screen, code);
        if (!place.isEmpty())
            return place;
        sleepMilliseconds(0.4);
    }
    return {};
}

/// Milliseconds since `begin` when `place` last was another by more than a hundredth than at the change
/// before; it must then have stood for 700 ms.
double lastChange(const ScreenPixels& screen, const Place& place, Clock::time_point begin)
{
    constexpr double still = 700;
    constexpr double atMost = 15'000;
    constexpr double change = 0.01;
    std::vector<std::uint32_t> seen;
    double last = millisecondsSince(begin);
    changedShare(screen, place, seen, change);
    const double first = last;
    for (double now = last; now - last < still && now - first < atMost; now = millisecondsSince(begin)) {
        if (changedShare(screen, place, seen, change) > change)
            last = now;
        sleepMilliseconds(4);
    }
    return last;
}

/// Waits until the program has had nothing to do for half a second, or for 20 seconds: a picture can stand
/// long before its decode has ended.
void waitUntilIdle(const StartedProgram& program)
{
    constexpr double span = 500;
    constexpr long idleTicks = 1; // of 50
    const auto begin = Clock::now();
    for (long before = -1; millisecondsSince(begin) < 20'000;) {
        const long now = ticksOfTree(program.process());
        // Less than before: a part of it has ended and took its count along, which says nothing.
        if (before >= 0 && now >= before && now - before <= idleTicks)
            return;
        before = now;
        sleepMilliseconds(span);
    }
}

/// Prints what the program takes when it has come to rest; nothing when it has ended.
void printMemory(const StartedProgram& program)
{
    waitUntilIdle(program);
    const TreeMemory memory = memoryOfTree(program.process());
    if (memory.kilobytes > 0 && memory.peakKilobytes > 0)
        std::printf("memory %ld\npeak %ld\n", memory.kilobytes, memory.peakKilobytes);
}

class Keys
{
  public:
    Keys(Display* display, const char* name) : m_display(display), m_code(codeOf(display, name))
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
    /// The key of that name; 0 when no key is called so.
    static KeyCode codeOf(Display* display, const char* name)
    {
        const KeySym symbol = XStringToKeysym(name);
        return symbol == NoSymbol ? KeyCode(0) : XKeysymToKeycode(display, symbol);
    }

    Display* m_display;
    KeyCode m_code;
};

bool open(const ScreenPixels& screen, double limit, char* command[])
{
    const auto begin = Clock::now();
    StartedProgram program(command);
    const Place place = waitFor(screen, program, magenta, limit);
    const double first = millisecondsSince(begin);
    if (!place.isEmpty()) {
        const double last = lastChange(screen, insideOf(screen, place), begin);
        std::printf("first %.1f\nlast %.1f\n", first, last < first + 10 ? first : last);
        printMemory(program);
    }
    end(program, screen);
    return !place.isEmpty();
}

/// Opens the folder's first picture and lets the viewer come to rest. The first key only makes the picture on
/// show the current one in some viewers; what is shown after it is where the walk begins. 0 for none.
int openWalk(const ScreenPixels& screen, const Keys& keys, StartedProgram& program)
{
    constexpr double reaction = 1000;
    if (waitFor(screen, program, 1, 2 * patience).isEmpty())
        return 0;
    sleepMilliseconds(reaction);
    waitUntilIdle(program);
    keys.press();
    sleepMilliseconds(reaction);
    waitUntilIdle(program);
    return shownCode(screen);
}

bool walk(const ScreenPixels& screen, const Keys& keys, int count, int pause, char* command[])
{
    StartedProgram program(command);
    int code = openWalk(screen, keys, program);
    int steps = 0;
    for (; code != 0 && steps < count; ++steps) {
        sleepMilliseconds(pause);
        code = code % colors + 1;
        const auto begin = Clock::now();
        keys.press();
        if (waitFor(screen, program, code, patience).isEmpty())
            break;
        std::printf("step %.1f\n", millisecondsSince(begin));
    }
    if (steps > 0)
        printMemory(program);
    end(program, screen);
    return steps == count;
}

/// True when a further key brings no other picture than `shown`: the folder's last one stood already.
bool isAtEnd(const ScreenPixels& screen, const Keys& keys, const StartedProgram& program, int shown)
{
    constexpr double reaction = 1000;
    const auto stands = [&] {
        const int code = shownCode(screen);
        return code == 0 || code == shown; // 0: a message may lie over it
    };
    if (!stands()) // keys that were still waiting brought others
        return false;
    keys.press();
    sleepMilliseconds(reaction);
    waitUntilIdle(program);
    return stands();
}

/// The rate counts every picture that was seen, over the whole time of the hold, the keyboard's delay before
/// it repeats included; at the folder's end over the time until its last picture stood.
bool hold(const ScreenPixels& screen, const Keys& keys, double seconds, char* command[])
{
    StartedProgram program(command);
    int shown = openWalk(screen, keys, program);
    const bool began = shown != 0;
    if (began) {
        int seen = 0;
        double last = 0;
        const auto begin = Clock::now();
        keys.set(true);
        while (millisecondsSince(begin) < seconds * 1000 && !program.hasEnded()) {
            const int code = shownCode(screen);
            if (code != 0 && code != shown) {
                ++seen;
                last = millisecondsSince(begin);
                shown = code;
            }
            sleepMilliseconds(0.4);
        }
        const double whole = millisecondsSince(begin);
        keys.set(false);
        printMemory(program);
        const bool atEnd = seen > 0 && isAtEnd(screen, keys, program, shown);
        std::printf("rate %.2f\n", seen * 1000 / (atEnd ? last : whole));
    }
    end(program, screen);
    return began;
}

} // namespace

int main(int argc, char* argv[])
{
    Display* display = XOpenDisplay(nullptr);
    const std::string what = argc > 4 ? argv[2] : "";
    const bool complete = what == "open" || (what == "hold" && argc >= 6) || (what == "walk" && argc >= 7);
    if (!display || !complete) {
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
    // Out of the way of what comes up under a pointer, and of the look at what stands.
    XTestFakeMotionEvent(display, 0, file.screen().width - 1, file.screen().height - 1, CurrentTime);
    XSync(display, False);
    sleepMilliseconds(50); // it is painted into the screen
    if (!waitUntilClear(file.screen(), 3000)) {
        std::fprintf(stderr, "an old picture still stands on the screen\n");
        return 2;
    }
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
