// The words of the command line and the standard streams, as the system has them.
#ifndef TOOLS_COMMON_COMMAND_LINE_H
#define TOOLS_COMMON_COMMAND_LINE_H

#include <string>
#include <vector>

// The words after the name of the program, in UTF-8.
std::vector<std::string> commandLineWords(int argc, char** argv);

// Standard streams of bytes, and text in UTF-8 on the console, while this lives.
class StandardStreams {
public:
    StandardStreams();
    ~StandardStreams();
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;
    // True after a reader such as head has seen enough and closed the pipe. The program goes on, so that its
    // temporary files are removed.
    bool readerIsGone() const;
};

#endif
