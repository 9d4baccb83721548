// What the library asks of the operating system: the whole seam. One folder implements it for each system
// (posix/, windows/); nothing else in the library calls the system or has a conditional for it.
#ifndef FIELDSCAN_PLATFORM_SYSTEM_H
#define FIELDSCAN_PLATFORM_SYSTEM_H

#include <fieldscan/framework/file.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/framework/types.h>

#include <cstddef>
#include <string>

namespace fieldscan {
namespace system {

// ---- Files ----

using FileHandle = long long;
constexpr FileHandle kNoFile = -1;

// Opens by the mode bits of CFile; a folder is refused with access denied. kNoFile with `cause` set when it
// fails.
FileHandle openFile(const CString& path, unsigned int mode, CFile::Cause& cause);
// Bytes read (0 at the end), -1 on failure.
long long readFile(FileHandle file, void* buffer, std::size_t count);
// Bytes written, which may be fewer than asked for; -1 on failure.
long long writeFile(FileHandle file, const void* buffer, std::size_t count);
// The new position, -1 on failure. `fromEnd`: the offset counts from the end, else from the position.
long long seekFile(FileHandle file, long long offset, bool fromEnd);
bool rewindFile(FileHandle file);
long long fileLength(FileHandle file);
bool flushFile(FileHandle file);
bool closeFile(FileHandle file);
bool isFile(const CString& path);  // an existing file, not a folder

// Whether another file may take the place of `path`: a plain file under one name. False for links and
// devices.
bool isReplaceable(const CString& path);
// Puts the closed file `from` in the place of `to`, with the rights that `to` has; the medium holds one of
// the two at any time, as far as its file system goes. False when it cannot, and both are then as they were.
bool replaceFile(const CString& from, const CString& to);
void removeFile(const CString& path);

// ---- Memory ----

// Tells the system that this much memory is about to be filled, so that it can give it in large pages.
void expectFilled(void* memory, std::size_t bytes);

// ---- Text ----

// Code page numbers as the instrument's system counts them.
constexpr unsigned int kUtf8 = 65001;
constexpr unsigned int kLatin1 = 28591;
constexpr unsigned int kShiftJis = 932;
constexpr unsigned int kWestern = 1252;

// The code page of 8-bit text in files. Asked once an operation, since it may change between them.
unsigned int ansiCodePage();
// Appends the text in `codePage`; a character that the page lacks becomes "?" (U+FFFD in UTF-8).
void appendAnsi(unsigned int codePage, const unsigned short* text, int length, std::string& out);
// Appends the bytes as UTF-16. No byte is lost: one that the page gives no meaning stands for the character
// of the same number.
void appendWide(unsigned int codePage, const char* bytes, std::size_t count, CString& out);

// ---- Clock, configuration, messages ----

// 100-nanosecond intervals since 1601-01-01 00:00 UTC.
unsigned long long fileTimeNow();
// The same at the last tick of the system's clock, some milliseconds ago at most; read much faster.
unsigned long long fileTimeOfLastTick();
// Local time minus UTC, as it is now, in seconds.
long long localOffsetSeconds();
// The text value `name` below HKEY_LOCAL_MACHINE\`key`; false when there is none.
bool registryText(const CString& key, const CString& name, CString& text);
// Full path of the running program; false when it cannot be told.
bool modulePath(CString& path);
// Shows a message to the operator the way this system does.
void showMessage(const CString& text, const CRect& place);

}  // namespace system
}  // namespace fieldscan

#endif
