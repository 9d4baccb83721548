// Files whose lines are in order, as the subcommands take them that compute.
#ifndef TOOLS_FORMATS_CHECKED_FILES_H
#define TOOLS_FORMATS_CHECKED_FILES_H

#include "formats/contents.h"

// Reads a file of this format. Throws DataError with the first fault of its lines, or when the library
// refuses it.
void readChecked(const TextFile& file, Format format, Contents& contents);

// Reads the points of a point, occupied-point or scan result file and returns which of them it is. Throws
// DataError, for a file of another format too.
Format readCheckedPoints(const TextFile& file, CArray<CXYZ, CXYZ&>& points);

#endif
