// What is no fault of a file but may surprise.
#ifndef TOOLS_FORMATS_NOTES_H
#define TOOLS_FORMATS_NOTES_H

#include <vector>

#include "formats/line_rules.h"

// An empty file, and names that come again in a file of points; sorted by line.
std::vector<Fault> notesOn(const TextFile& file, Format format);

// True if the points of a file that is taken for another one seem to have decimal commas between commas:
// every line has seven fields, and all numbers are whole ones.
bool seemsToHaveDecimalCommas(const TextFile& file);

#endif
