// A scan area from a file, ready for points or for a picture.
#ifndef TOOLS_AREA_H
#define TOOLS_AREA_H

#include "scan_job/scan_job.h"
#include "text_file.h"

// From a scan-area file of either version, or from an outline: a point file of lines "name,horizontal
// angle,zenith angle,0" in degrees. Throws DataError when the lines are faulty, the area fails its checks, or
// the file has no outline where `needsOutline`.
void readArea(const TextFile& file, ScanJob& job, bool needsOutline);

#endif
