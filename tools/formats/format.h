// The formats of the application's files, and which of them a file has by its content.
#ifndef TOOLS_FORMATS_FORMAT_H
#define TOOLS_FORMATS_FORMAT_H

#include <map>
#include <string>

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

// The format of a file: by its version line where it has one, else by its first lines:
//   image-coordinate   a name, two integers, one integer
//   scan area          two integers, then two lines of two numbers
//   camera             five lines that begin with a number, without commas
// Lines "name,x,y,z" are a point file when no line has more fields. They are an occupied-point file when
// further fields are all numbers, a blank line is between points, or a carriage return within a line; else a
// scan result file. An empty file is a point file, since the readers make empty ones.
Format formatOf(const TextFile& file);

const char* nameOf(Format format);

// By the names that the option --as takes.
extern const std::map<std::string, Format> kFormats;

#endif
