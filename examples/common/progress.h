// Progress of long work, shown to a person only.
#ifndef EXAMPLES_COMMON_PROGRESS_H
#define EXAMPLES_COMMON_PROGRESS_H

#include <cstdio>

#if defined(_WIN32)
#include <io.h>
inline bool errorsGoToTerminal() { return _isatty(_fileno(stderr)) != 0; }
#else
#include <unistd.h>
inline bool errorsGoToTerminal() { return isatty(STDERR_FILENO) == 1; }
#endif

// Calls it with what is done and what there is to do; it shows a change of the percentage, in place, and
// clears the line in the end. Silent for short work, and where standard error goes to a file.
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
    int m_shown;  // -1: nothing yet
    bool m_terminal;
};

#endif
