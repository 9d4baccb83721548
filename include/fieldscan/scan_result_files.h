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
// are on the medium, not only with the system. When it returns 0 what the file held before is still there,
// and a part of a line may follow it.

// ---- Building blocks ----

// Opens for appending: made if missing, contents kept, position at the end. 0 for an empty path, which
// touches no file, or when it cannot be opened.
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

// append 1 adds to a file that must exist, without another version line (one that was cut off is completed);
// any other value makes or replaces the file. `first`, `second` and `texts` go along with `points`; where one
// is shorter, 0 or the empty text stands in. Returns 0 when the path is empty, the file cannot be opened, or
// writing or closing fails.
FIELDSCAN_API int KVX4NP_CSVFileWrite(CString path, CArray<CXYZ, CXYZ&>& points,
                                      CArray<double, double>& first, CArray<double, double>& second,
                                      CStringArray& texts, int append);
// Appends one point; a missing file is made with its version line first, and what an interrupted call left of
// that line (an empty file, the line's beginning) is completed.
FIELDSCAN_API int KVX4NP_CSVFileAdd(CString path, CXYZ point, double first, double second, CString text);
// Empties the four lists, then reads. Lines with fewer than nine fields are skipped, fields beyond the ninth
// do not count; blanks at both ends of a field go. Returns 0 when the file cannot be opened or read to
// its end, or its first line is not the version line.
FIELDSCAN_API int KVX4NP_ReadCSVFile(CString path, CArray<CXYZ, CXYZ&>& points, CArray<double, double>& first,
                                     CArray<double, double>& second, CStringArray& texts);

#endif
