// Scan result files, plain and versioned. Formats: docs/file_formats.md.
#ifndef FIELDSCAN_SCAN_RESULT_FILES_H
#define FIELDSCAN_SCAN_RESULT_FILES_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/file.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>

// Measured points, recorded as they come. Text in the ANSI code page, names and codes of any length. All
// functions return 1 for success and 0 for failure; nothing is shown and nothing is thrown.
//
// Every add opens the file (making it if it is missing), appends, and closes it. When it returns 1 the points
// are on the medium, not only with the system, and so is the name of a new file.
//
// A file belongs to one writer at a time, in this program and among others that use this library. An add that
// finds it taken tries again for about a second, then returns 0.
//
// An add returns 0, and the file is not touched, when a text would not come back: a name with a comma, a
// line end or a NUL, or with a byte order mark as its first character; the same in code and text of a line
// with more fields after them; a line end or a NUL in the last text of a line. One such point refuses the
// whole list. A comma in the last text of a line is written; the readers take what follows it for further
// fields. A coordinate that is no number is written as printf writes it ("nan", "inf") and comes back so.
//
// It also returns 0 when the path is empty, when the file cannot be opened or another writer keeps it, and
// when a write or the flush fails. A single point then leaves the file as it was. Of a list those points
// stay, each on a whole line, that were written before the write that failed; when the flush fails, none. A
// new file that stays empty is removed (on Windows it may stay).
//
// A last line without line feed is ended first. One with fewer than four fields (nine in a versioned file),
// or without a number in the last of them, is what a call left that never returned, in a crash of the system:
// it is cut off. A number that was cut within its digits cannot be told from a shorter one. A file that may
// be written but not read is taken to end with a whole line.

// ---- Building blocks ----

// Opens for appending: made if missing, contents kept, position at the end, to which every write goes. The
// file belongs to `file` until ScanFileClose: other writers wait for about a second and then fail. 0 for an
// empty path, which touches no file, when it cannot be opened or another writer keeps it. What the last line
// is, is left to the caller. A child that the program forks meanwhile shares the file until it ends.
FIELDSCAN_API int ScanFileOpen(CFile* file, CString path);
// Brings what was written to the medium and closes. Always 1.
FIELDSCAN_API int ScanFileClose(CFile* file);
// `header`, carriage return, line feed. Always 1.
FIELDSCAN_API int WriteHeader(CFile* file, CString header);
// Reads a line and compares it, trimmed at both ends, exactly with `header`: 1 when equal; 0 when not or
// empty.
FIELDSCAN_API int ReadHeader(CFile* file, CString header);

// ---- Plain scan result files ----

// "name,x,y,z,code,attr[2],extra"
FIELDSCAN_API int ScanFileAdd(CString path, CXYZ point, CString extra);
// "name,x,y,z,code", or "name,x,y,z" when the code is empty
FIELDSCAN_API int ScanFileAdd(CString path, CXYZ point);
// The same for each point; one opening for all of them.
FIELDSCAN_API int ScanFileAdd(CString path, CArray<CXYZ, CXYZ&>& points);

// ---- Versioned scan files: the line "FIELD_SCAN_MPT_FILEVER1.0", then
//      "name,x,y,z,code,attr[2],text,first,second" lines, the last two with four decimals ----

// append 1 adds to a file that must exist; a version line that was cut off is completed, and an empty file
// gets one. Any other value makes the file or empties it first: when a write fails, the old points are gone
// and the new ones stay that were written whole. `first`, `second` and `texts` go along with `points`; where
// one is shorter, 0 or the empty text takes its place.
FIELDSCAN_API int KVX4NP_CSVFileWrite(CString path, CArray<CXYZ, CXYZ&>& points,
                                      CArray<double, double>& first, CArray<double, double>& second,
                                      CStringArray& texts, int append);
// Appends one point; a missing file is made with its version line first, and what an interrupted call left of
// that line (an empty file, the line's beginning) is completed.
FIELDSCAN_API int KVX4NP_CSVFileAdd(CString path, CXYZ point, double first, double second, CString text);
// Empties the four lists, then reads. Lines with fewer than nine fields are skipped, and a last line without
// line feed and without a number in the ninth; fields beyond the ninth do not count; blanks at both ends of a
// field go. Returns 0 when the file cannot be opened or read to its end, or its first line is not the version
// line; what was read until then stays, in lists of equal length.
FIELDSCAN_API int KVX4NP_ReadCSVFile(CString path, CArray<CXYZ, CXYZ&>& points, CArray<double, double>& first,
                                     CArray<double, double>& second, CStringArray& texts);

#endif
