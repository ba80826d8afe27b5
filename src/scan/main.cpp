// Lists scanners and takes a picture from one. A program of its own beside the viewer: the drivers run in
// this process, so that one that crashes or hangs takes nothing else along.
#include "scan/Cancellation.h"
#include "scan/Output.h"
#include "scan/Session.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

using namespace quorvia::scan;

namespace {

struct CommandLine
{
    bool isList = false;
    std::string device;
    Settings settings;
    std::string output;
};

std::optional<CommandLine> parse(std::span<char* const> words)
{
    CommandLine line;
    if (words.size() == 1 && std::strcmp(words[0], "--list") == 0) {
        line.isList = true;
        return line;
    }
    if (words.size() < 3 || std::strcmp(words[0], "--acquire") != 0)
        return {};
    line.device = words[1];
    line.output = words.back();
    for (std::span<char* const> rest = words.subspan(2, words.size() - 3); !rest.empty();
         rest = rest.subspan(2)) {
        if (rest.size() < 2)
            return {};
        const std::string name = rest[0];
        const std::string value = rest[1];
        if (name == "--mode" && (value == "gray" || value == "color"))
            line.settings.mode = value == "gray" ? Mode::Gray : Mode::Color;
        else if (const double number = std::atof(value.c_str()); name == "--resolution" && number > 0)
            line.settings.resolution = number;
        else
            return {};
    }
    return line;
}

/// Bytes that a picture may take: a quarter of the machine's memory.
std::int64_t budget()
{
    constexpr std::int64_t least = 256LL * 1024 * 1024;
    return std::max(least, std::int64_t(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGESIZE) / 4);
}

/// The stream for our own words. Some drivers print to the standard output, which goes to the one for errors.
std::FILE* answers()
{
    static std::FILE* const stream = [] {
        const int kept = dup(STDOUT_FILENO);
        dup2(STDERR_FILENO, STDOUT_FILENO);
        return fdopen(kept, "w");
    }();
    return stream;
}

/// A line now and then: whoever waits sees by them that the scan goes on.
void tellProgress(double part)
{
    using Clock = std::chrono::steady_clock;
    constexpr auto interval = std::chrono::milliseconds(100);
    static Clock::time_point last;
    const Clock::time_point now = Clock::now();
    if (now - last < interval && part < 1)
        return;
    last = now;
    if (part < 0)
        std::fprintf(answers(), "progress unknown\n");
    else
        std::fprintf(answers(), "progress %.3f\n", part);
    std::fflush(answers());
}

/// The driver has yet to close the device, and may fall over that: the picture is whole all the same.
void tellThatThePictureStands()
{
    std::fputs("picture\n", answers());
    std::fflush(answers());
}

Result list(Session& session)
{
    std::vector<Device> devices;
    Result result = session.devices(devices);
    for (const Device& one : devices)
        std::fprintf(answers(), "%s\t%s\t%s\t%s\n", escaped(one.name).c_str(), escaped(one.vendor).c_str(),
                     escaped(one.model).c_str(), escaped(one.type).c_str());
    if (std::fflush(answers()) != 0 && result.outcome == Outcome::Done)
        return {Outcome::Failed, "the list could not be written"};
    return result;
}

Result acquire(Session& session, const CommandLine& line)
{
    if (Result result = session.open(line.device, line.settings); result.outcome != Outcome::Done)
        return result;
    RawPicture picture;
    if (Result result = session.acquire(budget(), tellProgress, picture); result.outcome != Outcome::Done)
        return result;
    const std::string why = writePnm(picture, line.output);
    if (!why.empty())
        return {Outcome::Failed, why};
    tellThatThePictureStands();
    return {};
}

int told(const Result& result)
{
    if (!result.why.empty())
        std::fprintf(stderr, "%s\n", result.why.c_str());
    return int(result.outcome);
}

/// Gives the exit code.
int run(const CommandLine& line)
{
    try {
        Session session;
        const int status = told(line.isList ? list(session) : acquire(session, line));
        endSoon(status);
        return status;
    } catch (const std::exception& error) { // no memory
        return told({Outcome::Failed, error.what()});
    }
}

} // namespace

int main(int argc, char* argv[])
{
    const pid_t parent = getppid();
    // The device is left in order when nobody listens, too. A handler, since drivers that ignore the signal
    // for a while give it back to the system, and one of ours stays.
    std::signal(SIGPIPE, [](int) {});
    watchForCancellation();
    prctl(PR_SET_PDEATHSIG, SIGTERM); // nobody waits for the picture any more
    if (getppid() != parent)
        return int(Outcome::Cancelled);
    const std::optional<CommandLine> line = parse(std::span(argv, std::size_t(argc)).subspan(1));
    if (!line) {
        std::fputs("Usage: quorvia-scan --list\n"
                   "       quorvia-scan --acquire NAME [--mode gray|color] [--resolution DPI] OUTPUT\n",
                   stderr);
        return int(Outcome::BadUse);
    }
    answers(); // before any driver runs
    return run(*line);
}
