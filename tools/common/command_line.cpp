// On Windows argv is in the code page, which lacks letters of file names; the wide command line has all.
#include "common/command_line.h"

#if defined(_WIN32)

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>

namespace {

std::string utf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');  // with the final zero
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
    bytes.pop_back();
    return bytes;
}

unsigned int consolePage = 0;  // before; 0: no console

}  // namespace

std::vector<std::string> commandLineWords(int argc, char** argv) {
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!wide)  // no memory
        return std::vector<std::string>(argv + (argc > 0), argv + argc);
    std::vector<std::string> words;
    for (int i = 1; i < count; ++i)
        words.push_back(utf8(wide[i]));
    LocalFree(wide);
    return words;
}

StandardStreams::StandardStreams() {
    consolePage = GetConsoleOutputCP();
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    if (consolePage != 0)
        SetConsoleOutputCP(CP_UTF8);
}

StandardStreams::~StandardStreams() {
    if (consolePage != 0)
        SetConsoleOutputCP(consolePage);
}

bool StandardStreams::readerIsGone() const { return false; }

#else

#include <csignal>

namespace {

volatile std::sig_atomic_t brokenPipes = 0;

}  // namespace

std::vector<std::string> commandLineWords(int argc, char** argv) {
    return std::vector<std::string>(argv + (argc > 0), argv + argc);
}

StandardStreams::StandardStreams() {
    std::signal(SIGPIPE, [](int) { brokenPipes = 1; });
}

StandardStreams::~StandardStreams() { std::signal(SIGPIPE, SIG_DFL); }

bool StandardStreams::readerIsGone() const { return brokenPipes != 0; }

#endif
