// Times programs from their start to the picture on the screen, in turn, and prints each one's median and
// peak memory. first_picture RUNS WARMUP COMMAND [ARGUMENT...] [-- COMMAND ...]... A picture stands when the
// probed places of the screen are magenta: its middle, and for a command that begins with "5:" (as in
// 5:/path/quorvia) also four places towards its corners. Each program is ended by its process id.
#include "PictureProbes.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using quorvia::bench::middleOfScreen;
using quorvia::bench::placesOfPicture;
using quorvia::bench::Points;

struct Candidate
{
    std::vector<std::string> command;
    bool wholePicture = false;
    std::vector<double> milliseconds;
    std::vector<long> kilobytes;
};

bool isMagenta(Display* display, int x, int y)
{
    XImage* image = XGetImage(display, DefaultRootWindow(display), x, y, 1, 1, AllPlanes, ZPixmap);
    if (!image)
        return false;
    const unsigned long pixel = XGetPixel(image, 0, 0);
    XDestroyImage(image);
    return (pixel >> 16 & 0xff) > 235 && (pixel >> 8 & 0xff) < 20 && (pixel & 0xff) > 235;
}

/// One run; false when no picture came within ten seconds.
bool run(Display* display, Candidate& candidate, bool counts)
{
    const Points points = candidate.wholePicture ? placesOfPicture(display) : middleOfScreen(display);
    std::vector<char*> words;
    for (std::string& word : candidate.command)
        words.push_back(word.data());
    words.push_back(nullptr);
    const auto begin = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execv(words[0], words.data());
        _exit(127);
    }
    bool stands = false;
    while (!stands && Clock::now() - begin < std::chrono::seconds(10)) {
        stands = std::all_of(points.begin(), points.end(), [display](const auto& point) {
            return isMagenta(display, point.first, point.second);
        });
        if (!stands)
            usleep(300);
    }
    const double time = std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
    usleep(700'000); // what follows the first picture counts for the memory
    kill(child, SIGTERM);
    rusage usage = {};
    wait4(child, nullptr, 0, &usage);
    for (int i = 0; i < 400 && isMagenta(display, points[0].first, points[0].second); ++i)
        usleep(5000);
    if (counts) {
        candidate.milliseconds.push_back(time);
        candidate.kilobytes.push_back(usage.ru_maxrss);
    }
    return stands;
}

template <class T>
T median(std::vector<T> values)
{
    std::nth_element(values.begin(), values.begin() + long(values.size() / 2), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char* argv[])
{
    std::vector<Candidate> candidates(1);
    for (int i = 3; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--")
            candidates.emplace_back();
        else
            candidates.back().command.push_back(word);
    }
    Display* display = XOpenDisplay(nullptr);
    if (argc < 4 || !display) {
        std::fprintf(stderr,
                     "usage: first_picture RUNS WARMUP COMMAND... [-- COMMAND...]..., with a display\n");
        return 2;
    }
    for (Candidate& candidate : candidates) {
        if (candidate.command[0].rfind("5:", 0) == 0) {
            candidate.wholePicture = true;
            candidate.command[0].erase(0, 2);
        }
    }
    const int runs = std::atoi(argv[1]);
    const int warmup = std::atoi(argv[2]);
    for (int i = 0; i < runs + warmup; ++i) {
        for (Candidate& candidate : candidates) {
            if (!run(display, candidate, i >= warmup)) {
                std::fprintf(stderr, "no picture from %s\n", candidate.command[0].c_str());
                return 1;
            }
        }
    }
    for (const Candidate& candidate : candidates) {
        const auto [least, most] =
            std::minmax_element(candidate.milliseconds.begin(), candidate.milliseconds.end());
        std::printf("%7.1f ms (%.1f to %.1f)  %4ld MB peak ", median(candidate.milliseconds), *least, *most,
                    median(candidate.kilobytes) / 1024);
        for (const std::string& word : candidate.command)
            std::printf(" %s", word.substr(word.rfind('/') + 1).c_str());
        std::printf("\n");
    }
    XCloseDisplay(display);
    return 0;
}
