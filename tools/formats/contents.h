// What a file holds, as the library reads it.
#ifndef TOOLS_FORMATS_CONTENTS_H
#define TOOLS_FORMATS_CONTENTS_H

#include <fieldscan/fieldscan.h>

#include "formats/format.h"

// Each format fills the members that it has; the others are empty.
struct Contents {
    CArray<CXYZ, CXYZ&> points;  // point, occupied-point, scan result files; image-coordinate files: pixels
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

// Returns true if the library reads the file. Plain scan result files are only written by the library: points
// are read by ReadCSVFile, codes from the fifth field.
bool readContents(const TextFile& file, Format format, Contents& contents);

#endif
