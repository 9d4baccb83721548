// Progress of long work, shown where standard error is a terminal.
#ifndef TOOLS_COMMON_PROGRESS_H
#define TOOLS_COMMON_PROGRESS_H

#include <chrono>
#include <cstdio>

#if defined(_WIN32)
#include <io.h>
inline bool errorsGoToTerminal() { return _isatty(_fileno(stderr)) != 0; }
inline bool resultsGoToTerminal() { return _isatty(_fileno(stdout)) != 0; }
#else
#include <unistd.h>
inline bool errorsGoToTerminal() { return isatty(STDERR_FILENO) == 1; }
inline bool resultsGoToTerminal() { return isatty(STDOUT_FILENO) == 1; }
#endif

// Called with how much is done and how much there is to do, it shows the percentage in place when that
// changes; its end clears the line. Silent for short work, and where standard error goes to a file.
class ProgressLine {
public:
    explicit ProgressLine(const char* what, bool isWanted = true)
        : m_what(what), m_shown(-1), m_terminal(isWanted && errorsGoToTerminal()) {}
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void operator()(int done, int total) {
        if (!m_terminal || total < kLong)
            return;
        const int percent = static_cast<int>(100LL * done / total);
        if (percent != m_shown)
            std::fprintf(stderr, "\r%-*s %3d %%", kWidth - 6, m_what, percent);
        m_shown = percent;
    }

    // The same for what is read, in bytes; the length is -1 for a pipe. Shown from the first half second on.
    void reading(long long done, long long length) {
        const auto now = Clock::now();
        if (!m_terminal || now < m_due)
            return;
        m_due = now + std::chrono::milliseconds(100);
        if (length > 0)
            std::fprintf(stderr, "\r%-*s %3d %%", kWidth - 6, m_what, static_cast<int>(100 * done / length));
        else
            std::fprintf(stderr, "\r%-*s %6lld MB", kWidth - 10, m_what, done / 1000000);
        m_shown = 0;
    }

    // Makes room for a message; the line comes back with the next call.
    void clear() {
        if (m_shown >= 0)
            std::fprintf(stderr, "\r%*s\r", kWidth, "");
        m_shown = -1;
    }

private:
    using Clock = std::chrono::steady_clock;
    enum { kLong = 2000, kWidth = 40 };

    const char* m_what;
    int m_shown;  // percent; -1: nothing yet
    bool m_terminal;
    Clock::time_point m_due = Clock::now() + std::chrono::milliseconds(500);
};

#endif
