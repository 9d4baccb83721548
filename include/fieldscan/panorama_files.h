// Panorama information and exterior orientation files, which accompany images. Formats:
// docs/file_formats.md.
#ifndef FIELDSCAN_PANORAMA_FILES_H
#define FIELDSCAN_PANORAMA_FILES_H

#include <fieldscan/export.h>

// Text files of a version line, then one value a line. Angles in degrees; the panorama functions take
// vertical before horizontal. All functions return 1 for success and 0 for failure; nothing is shown and
// nothing is thrown. A null path counts as an empty one, which is a failure.
//
// Writers make the file or replace it as a whole, with six decimals (Replacing in docs/reliability.md). They
// return 0, and the file is unchanged, when it cannot be opened, another writer has it, or writing fails.
//
// Readers return 0 when the file cannot be opened, when its first line (ReadHeader) is not the version line,
// when a value line is missing, blank (ideographic blanks too) or begins with a NUL, or when the medium
// fails. Each value is stored as soon as its line is read: after a failure the values read so far are new,
// the others unchanged. A line that begins with anything but a number repeats the value of the line before
// it, the first line 0.

// Direction of the top-left corner of a stitched panorama, and the angle that one pixel spans.
[[nodiscard]] FIELDSCAN_API int KVX4NP_WritePanoramaInfo(const unsigned short* path, double vertTopLeft,
                                                         double horzTopLeft, double vertResolution,
                                                         double horzResolution);
[[nodiscard]] FIELDSCAN_API int KVX4NP_ReadPanoramaInfo(const unsigned short* path, double& vertTopLeft,
                                                        double& horzTopLeft, double& vertResolution,
                                                        double& horzResolution);

// Exterior orientation of one image: projection centre in metres, attitude in degrees.
[[nodiscard]] FIELDSCAN_API int WriteExtFile(const unsigned short* path, double x0, double y0, double z0,
                                             double omega, double phi, double kappa);
[[nodiscard]] FIELDSCAN_API int ReadExtFile(const unsigned short* path, double& x0, double& y0, double& z0,
                                            double& omega, double& phi, double& kappa);

#endif
