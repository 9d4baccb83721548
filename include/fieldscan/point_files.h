// Point files, occupied-point files and image-coordinate files. Formats: docs/file_formats.md.
#ifndef FIELDSCAN_POINT_FILES_H
#define FIELDSCAN_POINT_FILES_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/framework/types.h>
#include <fieldscan/points.h>

// Text files of lines in the ANSI code page, each ended by a line feed. All functions return 1 for success
// and 0 for failure; nothing is shown and nothing is thrown. A null path counts as an empty one, which fails.
//
// Readers pass over a byte order mark where the code page is UTF-8, as spreadsheets write one. They refuse
// devices that are not files: one without end would fill the memory.
//
// Readers empty the list first. A missing file fails when mustExist is 1; otherwise it is made, empty, and
// read. Names may have any length, lines up to 16 MiB; blanks at both ends of a field go. A number is read as
// atof reads it: what is none is 0. Blanks are those of ASCII and the ideographic one.

// When the medium fails before the end of the file, or a line is longer, readers keep what they read and
// return 0.

// "name,x,y,z" lines. Each line gives a point, from its first four fields; missing ones count as empty, those
// beyond do not count. An empty line ends the file. A last line without line feed and with fewer than four
// fields, or without a number in the fourth, was cut off while it was written: it is left out. Returns 0 when
// the file cannot be made or opened.
FIELDSCAN_API int ReadCSVFile(CString* path, CArray<CXYZ, CXYZ&>& points, int mustExist);

// Six decimals; a coordinate that is no number is written as printf writes it ("nan", "inf") and comes back
// so. append 1 adds to a file that must exist, as ScanFileAdd does (scan_result_files.h). Any other value
// makes the file or replaces it as a whole: see Replacing in docs/reliability.md.
//
// Returns 0, and the file is not touched, when a name holds a comma, a line end or a NUL, which would come
// back as something else. Returns 0 also when the file cannot be opened, when another writer keeps it for
// more than about a second, and when writing fails; a file that was to be replaced is then as it was.
FIELDSCAN_API int WriteCSVFile(CString* path, CArray<CXYZ, CXYZ&>& points, int append);

// As ReadCSVFile, but a line ends at a carriage return too and empty lines are skipped.
FIELDSCAN_API int ReadOccInfoFile(CString* path, CArray<CXYZ, CXYZ&>& points, int mustExist);

// Image name, image size in pixels, count, then "name x y" lines: pixel coordinates. z is 0. A point name
// ends at its first blank. Returns 0 when the file cannot be opened, when one of the two lines behind the
// image name is missing or blank, or when a point line is: the list then has the size that the count line
// says (or only what was read, when the file is too short to hold that many lines), and what was read stays.
// A line that holds something else leaves its values as they are (size) or at zero; a count below 1 gives 1
// with an empty list. The image name is empty when the file is.
FIELDSCAN_API int ReadImcFile(CString* path, CString* imageName, CSize& size, CArray<CXYZ, CXYZ&>& points,
                              int mustExist);

// Ten decimals; makes the file or replaces it as a whole, as WriteCSVFile does. Returns 0, and the file is
// not touched, when the image name holds a line end or a NUL, or a point has no name or one with white space,
// whose coordinates would come back shifted; 0 also when the file cannot be opened, another writer keeps it,
// or writing fails.
FIELDSCAN_API int WriteImcFile(CString* path, CString* imageName, CSize& size, CArray<CXYZ, CXYZ&>& points);

// The name of the file without folder and extension, as CRTCard::GetFileTitle gives it, with its result.
FIELDSCAN_API int EditFileName(CString path, CString& title);

// The number at the start of the text, as atof reads it; 0 where there is none.
FIELDSCAN_API double CStringToDBL(CString text);

#endif
