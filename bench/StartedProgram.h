// A program that was started to be measured, in a process group of its own, so that all of it can be ended.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace quorvia::bench {

class StartedProgram
{
  public:
    /// Starts `words`, a command line that ends with null. One that cannot be started ends at once.
    explicit StartedProgram(char* words[]) : m_process(fork())
    {
        if (m_process == 0) {
            setpgid(0, 0);
            execvp(words[0], words);
            _exit(127);
        }
        if (m_process < 0) {
            std::perror("fork");
            std::exit(2); // could not measure
        }
        setpgid(m_process, m_process); // whoever comes first
    }
    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    pid_t process() const { return m_process; }

    /// True when it has ended, and all that it left in its group.
    bool hasEnded()
    {
        if (!m_reaped)
            m_reaped = waitpid(m_process, nullptr, WNOHANG) != 0;
        return m_reaped && kill(-m_process, 0) != 0;
    }

    /// Asks it to end, and ends what is left of its group `patience` milliseconds later.
    void end(int patience)
    {
        constexpr int step = 10;
        if (!m_reaped)
            kill(m_process, SIGTERM);
        for (int waited = 0; !hasEnded() && waited < patience; waited += step)
            usleep(step * 1000);
        kill(-m_process, SIGKILL);
        if (!m_reaped)
            waitpid(m_process, nullptr, 0);
        m_reaped = true;
    }

  private:
    pid_t m_process;
    bool m_reaped = false;
};

} // namespace quorvia::bench
