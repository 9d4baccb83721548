// Scan result files, plain and versioned. Formats: docs/file_formats.md.
#ifndef FIELDSCAN_SCAN_RESULT_FILES_H
#define FIELDSCAN_SCAN_RESULT_FILES_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/file.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>

// Measured points, recorded one by one. Text in the ANSI code page, names and codes of any length. All
// functions return 1 for success and 0 for failure; nothing is shown and nothing is thrown.
//
// Every add opens the file (making it if it is missing), appends, and closes it. When it returns 1 the points
// are on the medium, not only with the system, and so is the name of a new file. Closing after that can lose
// nothing, so its result does not count.
//
// A file belongs to one writer at a time, in this program and in others that use this library. An add that
// finds it taken tries again for about a second, then returns 0.
//
// An add returns 0, and the file is not touched, when a text would not be read back: a name with a comma, a
// line end or a NUL, or with a byte order mark as its first character; a code or text with one of these when
// further fields follow it; the last text of a line with a line end or a NUL. One such point refuses the
// whole list. A comma in the last text of a line is written; readers take what follows it for further fields.
// "nan" and "inf", as printf writes them, are read back as such.
//
// An add returns 0 also when the path is empty, when the file cannot be opened or another writer has it, and
// when a write or the flush fails. After a single point the file is then as it was. Of a list, the points
// that were written whole before the write that failed stay; when the flush fails, none. A new file that
// stays empty is removed (on Windows it may stay).
//
// A last line without line feed gets one before the new line. If it has fewer than four fields (nine in a
// versioned file), or no number in the last of them, it was cut off when the system crashed, and is removed
// instead. A number that was cut within its digits looks like a shorter one and stays. A file that may be
// written but not read is taken to end with a whole line.

// ---- Building blocks ----

// Opens for appending: made if missing, contents kept, position at the end, where every write goes. The file
// belongs to `file` until ScanFileClose: other writers wait for about a second and then fail. Returns 0 when
// the path is empty, the file cannot be opened or another writer has it. The last line is not checked. A
// child process that is forked in between shares the file until it ends.
[[nodiscard]] FIELDSCAN_API int ScanFileOpen(CFile* file, CString path);
// Brings what was written to the medium and closes. Always returns 1.
FIELDSCAN_API int ScanFileClose(CFile* file);
// Writes `header`, carriage return, line feed. Always returns 1.
FIELDSCAN_API int WriteHeader(CFile* file, CString header);
// Reads a line, after a byte order mark at the start of a file in UTF-8. Returns 1 when the line, trimmed at
// both ends, equals `header`; 0 when not, and for an empty line.
[[nodiscard]] FIELDSCAN_API int ReadHeader(CFile* file, CString header);

// ---- Plain scan result files ----

// Appends the line "name,x,y,z,code,attr[2],extra".
[[nodiscard]] FIELDSCAN_API int ScanFileAdd(CString path, CXYZ point, CString extra);
// Appends the line "name,x,y,z,code", or "name,x,y,z" when the code is empty.
[[nodiscard]] FIELDSCAN_API int ScanFileAdd(CString path, CXYZ point);
// The same for each point, with one opening.
[[nodiscard]] FIELDSCAN_API int ScanFileAdd(CString path, CArray<CXYZ, CXYZ&>& points);

// ---- Versioned scan files: the line "FIELD_SCAN_MPT_FILEVER1.0", then
//      "name,x,y,z,code,attr[2],text,first,second" lines, the last two with four decimals ----

// Writes a line for each point with its elements of `first`, `second` and `texts`; 0 or the empty text where
// one of these is shorter. append 1 adds to a file that must exist, as KVX4NP_CSVFileAdd does. Any other
// value makes the file or empties it first: when a write fails, the old points are lost and the new ones that
// were written whole stay.
[[nodiscard]] FIELDSCAN_API int KVX4NP_CSVFileWrite(CString path, CArray<CXYZ, CXYZ&>& points,
                                                    CArray<double, double>& first,
                                                    CArray<double, double>& second, CStringArray& texts,
                                                    int append);
// Appends one point. A missing or empty file gets the version line first, and one that was cut off is
// completed. In a file with another first line the last line is only ended, not removed.
[[nodiscard]] FIELDSCAN_API int KVX4NP_CSVFileAdd(CString path, CXYZ point, double first, double second,
                                                  CString text);
// Empties the four lists, then reads. Lines with fewer than nine fields are skipped, and so is a last line
// without line feed and without a number in the ninth. Fields beyond the ninth are ignored, white space at
// both ends of a field is removed. Returns 0 when the file cannot be opened or read to its end, or when its
// first line is not the version line; what was read stays, in lists of equal length.
[[nodiscard]] FIELDSCAN_API int KVX4NP_ReadCSVFile(CString path, CArray<CXYZ, CXYZ&>& points,
                                                   CArray<double, double>& first,
                                                   CArray<double, double>& second, CStringArray& texts);

#endif
