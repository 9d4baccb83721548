// String utilities: names that count up, point codes, items of a line, fields of fixed width.
#ifndef FIELDSCAN_STRING_UTILITIES_H
#define FIELDSCAN_STRING_UTILITIES_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>

// 8-bit text is in the ANSI code page (docs/architecture.md, Text) and ends at its zero byte. White space is
// that of CString, the ideographic blank included. A null text counts as the empty one. Nothing is thrown;
// when memory runs out, the result is 0.

// ---- Names that count ----

// Adds `step` to the decimal number at the end of `text`. The number keeps its width, leading zeros included,
// and grows when it needs another digit: "P009" and 1 give "P010", "P999" and 1 "P1000", "P1000" and -1
// "P0999". It may have any number of digits. Full-width digits (U+FF10 to U+FF19) count too and stay
// full-width; added digits have the width of the first one. A text that does not end with a digit has the
// number 0 without digits: "ABC" and 1 give "ABC1"; a step of 0 changes no text. Returns 1; 0, with `text`
// unchanged, when the number would become negative.
FIELDSCAN_API int IncrStr(CString& text, int step);
FIELDSCAN_API int StrPlusOne(CString& text);   // IncrStr by 1
FIELDSCAN_API int StrMinusOne(CString& text);  // IncrStr by -1

// ---- Codes and items ----

// 1 when two point codes are equal apart from white space at both ends, else 0. Case counts.
FIELDSCAN_API int IsSameCode(const CString& a, const CString& b);

// Item `index`, from 0, of the text split at `separator`, without white space at both ends. A text has one
// item more than it has separators; that of the empty text is empty. `item` may be `text` itself. Returns 1;
// 0, with an empty item, when there is no item with that index.
FIELDSCAN_API int CutItemInStr(const CString& text, int index, CString& item, unsigned short separator = ',');

// ---- Between 8-bit and wide text ----

// The text up to its first zero unit in 8 bits: as many whole characters as fit into size - 1 bytes, then a
// zero byte. A character that the code page lacks becomes "?". Returns the number of bytes before the zero
// byte; 0, with nothing written, when `out` is null or size < 1.
FIELDSCAN_API int ConvUniToAscii(const unsigned short* text, char* out, int size);
FIELDSCAN_API int CStringToChar(const CString& text, char* out, int size);

// The integer at the start of the text, as atoi reads it, after white space of ASCII; 0 when there is none. A
// number beyond 32 bits gives the nearest that fits.
FIELDSCAN_API int CStringToInt(const CString& text);

// ---- Fields of fixed width ----
// `width` counts bytes, in the wide functions units; `out` has room for width + 1 of them and may be `text`
// itself. A null `out` or a negative width gives 0 with nothing written. No more than `width` of `text` is
// read, so a field of a record needs no closing zero. A field has whole characters only: one that does not
// fit in is left out.

// Copies the field at the start of `text` without white space at its end, and a zero after it. Returns its
// length.
FIELDSCAN_API int Scopy(char* out, const char* text, int width);
FIELDSCAN_API int TScopy(unsigned short* out, const unsigned short* text, int width);
// The same, filled up with blanks to exactly `width`, which is returned.
FIELDSCAN_API int ScopyPad(char* out, const char* text, int width);
FIELDSCAN_API int TScopyPad(unsigned short* out, const unsigned short* text, int width);

// ---- Double-byte characters ----
// Those of code page 932; 0 in every other one, UTF-8 included. Only the lower eight bits of `byte` count, so
// that a negative char may be passed.

FIELDSCAN_API int IsDbcsLead(int byte);   // 1 for 81-9F and E0-FC: it can be the first byte of two
FIELDSCAN_API int IsDbcsTrail(int byte);  // 1 for 40-7E and 80-FC: it can be the second
// 1 when the byte at `index` is the second one of a character, found by reading the text from its start.
FIELDSCAN_API int IsDbcsTrailAt(const char* text, int index);

#endif
