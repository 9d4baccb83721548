// Point files, occupied-point files and image-coordinate files. Formats: docs/file_formats.md.
#ifndef FIELDSCAN_POINT_FILES_H
#define FIELDSCAN_POINT_FILES_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/framework/types.h>
#include <fieldscan/points.h>

// Text files of lines in the ANSI code page, each ended by a line feed. All functions return 1 for success
// and 0 for failure; nothing is shown and nothing is thrown. A null path counts as an empty one, which is a
// failure.
//
// Readers empty the list first. A missing file is a failure when mustExist is 1; otherwise it is made, empty.
// A device is refused: one without end would fill the memory. A byte order mark at the start, as spreadsheets
// write one, is skipped where the code page is UTF-8.
//
// Names may have any length, lines up to 16 MiB. White space at both ends of a field is removed: that of
// ASCII and the ideographic blank U+3000. A NUL is a character like any other. A number is read as atof reads
// it; a field that is no number reads as 0.
//
// When the medium fails before the end of the file, or a line is too long, readers return 0 and keep what
// they have read.

// Reads lines "name,x,y,z". Each line gives a point from its first four fields; missing ones count as empty,
// further ones are ignored. An empty or blank line ends the file. A last line without line feed that has
// fewer than four fields, or no number in the fourth, was cut off while it was written, and is left out.
// Returns 0 when the file cannot be made or opened.
[[nodiscard]] FIELDSCAN_API int ReadCSVFile(CString* path, CArray<CXYZ, CXYZ&>& points, int mustExist);

// Writes lines "name,x,y,z" with six decimals; "nan" and "inf", as printf writes them, are read back as such.
// append 1 adds to a file that must exist, as ScanFileAdd does (scan_result_files.h). Any other value makes
// the file or replaces it as a whole: see Replacing in docs/reliability.md.
//
// Returns 0, and the file is not touched, when a name would not be read back: one with a comma, a line end or
// a NUL, or with a byte order mark as its first character. Returns 0 also when the file cannot be opened,
// when another writer has it for more than about a second, and when writing fails; a file that was to be
// replaced is unchanged then.
[[nodiscard]] FIELDSCAN_API int WriteCSVFile(CString* path, CArray<CXYZ, CXYZ&>& points, int append);

// As ReadCSVFile, but a carriage return ends a line too, and empty and blank lines are skipped.
[[nodiscard]] FIELDSCAN_API int ReadOccInfoFile(CString* path, CArray<CXYZ, CXYZ&>& points, int mustExist);

// Reads the image name, the image size in pixels, the number of points, then lines "name x y" in pixels; z is
// 0. A point name ends at its first blank. A size that is no number leaves `size` unchanged, a coordinate
// that is none reads as 0. The image name of an empty file is empty.
//
// Returns 1, with an empty list when the number of points is below 1 or no number. Returns 0 when the file
// cannot be opened, when the line of the size or of the number of points is missing, blank or begins with a
// NUL, or when a point line is or does. In the last case the points that were read stay, and the list has the
// number of points that the file gives, zeros after those; when the file is too short for that many lines,
// only those.
[[nodiscard]] FIELDSCAN_API int ReadImcFile(CString* path, CString* imageName, CSize& size,
                                            CArray<CXYZ, CXYZ&>& points, int mustExist);

// Makes the file or replaces it as a whole, as WriteCSVFile does, with ten decimals. Returns 0, and the file
// is not touched, when the image name has a line end or a NUL, or when a point has no name or one with white
// space: its coordinates would be read back shifted. Returns 0 also when the file cannot be opened, another
// writer has it, or writing fails.
[[nodiscard]] FIELDSCAN_API int WriteImcFile(CString* path, CString* imageName, CSize& size,
                                             CArray<CXYZ, CXYZ&>& points);

// CRTCard::GetFileTitle: the file name without folder and extension.
FIELDSCAN_API int EditFileName(CString path, CString& title);

// The number at the start of the text, as atof reads it; 0 where there is none.
FIELDSCAN_API double CStringToDBL(CString text);

#endif
