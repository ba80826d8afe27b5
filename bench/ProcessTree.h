// What a program and all that it started take of memory, by what the kernel tells of each process.
#pragma once

#include <sys/types.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace quorvia::bench {

struct TreeMemory
{
    long kilobytes = 0;     ///< now, shared pages by their share
    long peakKilobytes = 0; ///< the most that each ever had resident, summed
};

/// The number behind `name` in the file `path` of /proc; 0 when it is not there.
inline long numberIn(const std::string& path, const std::string& name)
{
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.rfind(name, 0) == 0)
            return std::stol(line.substr(name.size()));
    }
    return 0;
}

/// `root` and what descends from it.
inline std::vector<pid_t> processTree(pid_t root)
{
    std::vector<std::pair<pid_t, pid_t>> parents; // a process, its parent
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; }))
            parents.emplace_back(std::stoi(name), numberIn(entry.path() / "status", "PPid:"));
    }
    std::vector<pid_t> tree{root};
    for (std::size_t i = 0; i < tree.size(); ++i) {
        for (const auto& [process, parent] : parents) {
            if (parent == tree[i])
                tree.push_back(process);
        }
    }
    return tree;
}

/// The processor time that `root` and what descends from it have taken, with children that have ended, in
/// ticks of the kernel's clock.
inline long ticksOfTree(pid_t root)
{
    long ticks = 0;
    for (const pid_t process : processTree(root)) {
        std::ifstream file("/proc/" + std::to_string(process) + "/stat");
        std::string line;
        std::getline(file, line);
        // The name, which may hold blanks, ends with the last bracket; user and system time are the 12th and
        // 13th words behind it, those of its ended children the next two.
        std::istringstream words(line.substr(line.rfind(')') + 1));
        std::string word;
        for (int i = 1; i <= 15 && words >> word; ++i)
            ticks += i >= 12 ? std::stol(word) : 0;
    }
    return ticks;
}

inline TreeMemory memoryOfTree(pid_t root)
{
    TreeMemory memory;
    for (const pid_t process : processTree(root)) {
        const std::string folder = "/proc/" + std::to_string(process);
        memory.kilobytes += numberIn(folder + "/smaps_rollup", "Pss:");
        memory.peakKilobytes += numberIn(folder + "/status", "VmHWM:");
    }
    return memory;
}

} // namespace quorvia::bench
