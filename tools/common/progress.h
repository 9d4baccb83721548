// Progress of long work, shown where standard error is a terminal.
#ifndef TOOLS_COMMON_PROGRESS_H
#define TOOLS_COMMON_PROGRESS_H

#include <cstdio>

#if defined(_WIN32)
#include <io.h>
inline bool errorsGoToTerminal() { return _isatty(_fileno(stderr)) != 0; }
#else
#include <unistd.h>
inline bool errorsGoToTerminal() { return isatty(STDERR_FILENO) == 1; }
#endif

// Called with how much is done and how much there is to do, it shows the percentage in place when that
// changes; its end clears the line. Silent for short work, and where standard error goes to a file.
class ProgressLine {
public:
    explicit ProgressLine(const char* what) : m_what(what), m_shown(-1), m_terminal(errorsGoToTerminal()) {}
    ~ProgressLine() {
        if (m_shown >= 0)
            std::fprintf(stderr, "\r%*s\r", kWidth, "");
    }
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

private:
    enum { kLong = 2000, kWidth = 40 };

    const char* m_what;
    int m_shown;  // percent; -1: nothing yet
    bool m_terminal;
};

#endif
