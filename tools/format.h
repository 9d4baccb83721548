// Which of the application's files a text is, told by its content.
#ifndef TOOLS_FORMAT_H
#define TOOLS_FORMAT_H

#include <map>
#include <string>

#include "text_file.h"

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

// Files with a version line by that line. The others by their first lines:
//   image-coordinate   a name, two integers, one integer
//   scan area          two integers, then two lines of two numbers
//   camera             five lines that begin with a number, without commas
// Lines "name,x,y,z" are a point file when no line has more; an occupied-point file when what follows is
// always a number, a blank line stands between points or a carriage return within a line; a scan result file
// otherwise. An empty file is a point file, since the readers make such ones.
Format formatOf(const TextFile& file);

const char* nameOf(Format format);

// By the words of the option --as.
extern const std::map<std::string, Format> kFormats;

#endif
