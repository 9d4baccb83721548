// What a file holds, as the library reads it.
#ifndef TOOLS_CONTENTS_H
#define TOOLS_CONTENTS_H

#include <fieldscan/fieldscan.h>

#include <string>

#include "format.h"

// Of each format the members that it has; the others are empty.
struct Contents {
    CArray<CXYZ, CXYZ&> points;  // point, occupied, image-coordinate (pixels), scan result files
    CArray<double, double> first, second;
    CStringArray texts;
    CString image;
    CSize size;
    CCamera camera;
    CScanArea area;
    double values[6] = {};  // panorama and exterior orientation, in the order of the file
    CTSUnit units;
    CRange range;
};

// Returns whether the library reads the file. Of plain scan result files, which it only writes, the codes are
// taken from their lines.
bool readContents(const TextFile& file, Format format, Contents& contents);

// What is wrong with a scan area, its outline included where it has one, or empty.
std::string areaFault(const CScanArea& area);

#endif
