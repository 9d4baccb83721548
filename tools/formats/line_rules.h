// What the lines of each format must hold.
#ifndef TOOLS_FORMATS_LINE_RULES_H
#define TOOLS_FORMATS_LINE_RULES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/format.h"

struct Fault {
    int line;  // from 1; 0: the file as a whole
    std::string what;
};

// The faults of a file, sorted by line; empty when it has none. The library's readers take what is no number
// for 0, or refuse a file without saying where; these rules are those of docs/file_formats.md, line by line.
std::vector<Fault> lineFaults(const TextFile& file, Format format);

// Adds the faults of a line that is not blank: of a point, occupied-point or scan result file, and of a
// versioned scan file after its first line.
void addPointFaults(int number, std::string_view line, Format format, std::vector<Fault>& faults);
void addVersionedFaults(int number, std::string_view line, std::vector<Fault>& faults);

// Faults of files as a whole: no format or no points, a blank line within a point or scan result file, a byte
// order mark where it is text.
extern const char kUnknownFormat[];
extern const char kExpectedPoints[];
extern const char kBlankWithin[];
extern const char kByteOrderMark[];

// The first line of which bytes form no character of the code page, and how many there are.
class ForeignLines {
public:
    void take(int number, std::string_view line);
    bool any() const { return m_count > 0; }
    std::optional<Fault> fault() const;

private:
    int m_first = 0, m_count = 0;
};
std::optional<Fault> foreignBytes(const TextFile& file);

#endif
