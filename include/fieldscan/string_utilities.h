// Small operations on texts: names that count, codes, items of a line, fields of fixed width.
#ifndef FIELDSCAN_STRING_UTILITIES_H
#define FIELDSCAN_STRING_UTILITIES_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>

// 8-bit text is in the ANSI code page (docs/architecture.md, Text) and ends at its zero byte. White space is
// that of CString, the ideographic blank included. A null text counts as the empty one. Nothing is thrown;
// where memory runs out the result is 0.

// ---- Names that count ----

// Counts the decimal number at the end of `text` by `step`, up or down. Its width stays, leading zeros
// included, and grows where the number needs a digit more: "P009" and 1 give "P010", "P999" and 1 "P1000",
// "P1000" and -1 "P0999". Any number of digits counts. Full-width digits (U+FF10 to U+FF19) count too and
// stay full-width; digits that come in front take the width of the first. A text that ends with none has the
// number 0 in no digits: "ABC" and 1 give "ABC1"; a step of 0 changes no text.
// Returns 1; 0 when the number would become negative, and then `text` is as it was.
FIELDSCAN_API int IncrStr(CString& text, int step);
FIELDSCAN_API int StrPlusOne(CString& text);   // IncrStr by 1
FIELDSCAN_API int StrMinusOne(CString& text);  // IncrStr by -1

// ---- Codes and items ----

// 1 when two point codes are the same but for white space at both ends, else 0. Case counts.
FIELDSCAN_API int IsSameCode(const CString& a, const CString& b);

// Item `index`, from 0, of the text split at `separator`, without white space at both ends. A text has one
// item more than separators: the empty one has one, which is empty. `item` may be `text` itself.
// Returns 1; 0 with an empty item when there is none of that index.
FIELDSCAN_API int CutItemInStr(const CString& text, int index, CString& item, unsigned short separator = ',');

// ---- Between 8-bit and wide text ----

// The text up to its first zero unit, in 8 bits: as many whole characters as fit into size - 1 bytes, and a
// zero byte behind them. A character that the page lacks becomes "?".
// Returns the count of bytes before the zero byte; 0 with nothing written when `out` is null or size < 1.
FIELDSCAN_API int ConvUniToAscii(const unsigned short* text, char* out, int size);
FIELDSCAN_API int CStringToChar(const CString& text, char* out, int size);

// The integer at the start of the text, as atoi reads it (white space of ASCII before it); 0 where there is
// none. One that does not fit 32 bits gives the nearest that does.
FIELDSCAN_API int CStringToInt(const CString& text);

// ---- Fields of fixed width ----
// `width` counts bytes, in the wide twins units; `out` holds width + 1 of them and may be `text` itself. A
// null `out` or a negative width gives 0 with nothing written. `text` ends at its zero or after `width`: no
// more is read, so a field of a record needs no zero. A field holds whole characters: one that begins in it
// and would pass its end is left out.

// The field at the start of `text`, without white space at its end, and a zero behind it. Returns its length.
FIELDSCAN_API int Scopy(char* out, const char* text, int width);
FIELDSCAN_API int TScopy(unsigned short* out, const unsigned short* text, int width);
// The same field, filled up with blanks to exactly `width`, which is returned.
FIELDSCAN_API int ScopyPad(char* out, const char* text, int width);
FIELDSCAN_API int TScopyPad(unsigned short* out, const unsigned short* text, int width);

// ---- Double-byte characters ----
// Of code page 932; 0 in every other one, UTF-8 included. Of `byte` the low eight bits count, so that a char
// may be passed whatever its sign.

FIELDSCAN_API int IsDbcsLead(int byte);   // 1 for 81-9F and E0-FC: it can be the first byte of two
FIELDSCAN_API int IsDbcsTrail(int byte);  // 1 for 40-7E and 80-FC: it can be the second
// 1 when the byte at `index` is the second one of a character, which only the text from its start on can
// tell.
FIELDSCAN_API int IsDbcsTrailAt(const char* text, int index);

#endif
