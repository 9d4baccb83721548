// The formats of the application's files, and which of them a file has by its content.
#ifndef TOOLS_FORMATS_FORMAT_H
#define TOOLS_FORMATS_FORMAT_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "formats/text_file.h"

enum class Format {
    unknown,
    point,
    occupied,
    imageCoordinate,
    scanResult,
    versionedScan,
    camera,
    scanArea,
    scanArea2,
    panorama,
    exterior,
    unitSettings,
    range
};

// Finds the format of a file from its lines: by its version line where it has one, else by its first lines:
//   image-coordinate   a name, two integers, one integer
//   scan area          two integers, then two lines of two numbers
//   camera             five lines that begin with a number, without commas
// Lines "name,x,y,z" are a point file when no line has more fields. They are an occupied-point file when all
// further fields are numbers, or a carriage return is within a line; else a scan result file. An empty file
// is a point file, since the readers make empty ones.
class FormatFinder {
public:
    void take(std::string_view line);       // the next one, without its end
    void takePoint(std::string_view line);  // the same for one that is known to be "name,x,y,z"
    Format format() const;                  // of the lines so far
    bool hasPoint() const { return m_hasPoint; }
    const std::vector<std::string>& firstLines() const { return m_first; }  // five at most

private:
    void keepFirst(std::string_view line);
    Format formatOfFirst() const;

    Format m_formatOfFirst = Format::unknown;  // of five first lines
    bool m_allBlank = true;
    bool m_hasPoint = false;
    bool m_hasMore = false;     // a line with more than four fields
    bool m_onlyNumbers = true;  // in those further fields
    bool m_hasReturn = false;   // a carriage return within a line
    std::vector<std::string> m_first;
    std::vector<std::string_view> m_fields;  // of the line, kept for its memory
};

Format formatOf(const TextFile& file);

// True for a point, occupied-point or scan result file.
bool hasPointLines(Format format);

const char* nameOf(Format format);

// By the names that the option --as takes.
extern const std::map<std::string, Format> kFormats;

#endif
