// The scan job as a picture: horizontal angle to the right, elevation upward.
#ifndef EXAMPLES_SCAN_JOB_PICTURE_H
#define EXAMPLES_SCAN_JOB_PICTURE_H

#include "scan_job.h"

// Writes an SVG file of the area with a margin around it. Returns how many points lie beyond that view: far
// ones are left out, because a view of all of them would leave little room for the area itself. Throws
// std::runtime_error when the file cannot be written.
int drawPicture(const ScanJob& job, const std::filesystem::path& path);

#endif
