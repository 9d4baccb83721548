// What the library asks of the operating system: the whole seam. One folder implements it for each system
// (posix/, windows/); nothing else in the library calls the system or has a conditional for it.
#ifndef FIELDSCAN_PLATFORM_SYSTEM_H
#define FIELDSCAN_PLATFORM_SYSTEM_H

#include <fieldscan/framework/file.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/framework/types.h>

#include <cstddef>
#include <memory>
#include <string>

namespace fieldscan {
namespace system {

// ---- Files ----

using FileHandle = long long;
constexpr FileHandle kNoFile = -1;

// A mode bit beside those of CFile: every write goes to the end of the file, wherever that is by then.
constexpr unsigned int kAppending = 0x10000;

// Opens by the mode bits of CFile; a folder is refused with access denied. kNoFile with `cause` set when it
// fails.
//
// A file that is open for writing belongs to its handle: a second writer, of this process or another one,
// tries again for about a second and then gets a sharing violation. Where the file system has no locks,
// writers are not kept apart, and `locked` becomes false.
FileHandle openFile(const CString& path, unsigned int mode, CFile::Cause& cause, bool* locked = nullptr);
// Bytes read (0 at the end), -1 on failure.
long long readFile(FileHandle file, void* buffer, std::size_t count);
// The same from `offset` on; the position stays.
long long readFileAt(FileHandle file, void* buffer, std::size_t count, long long offset);
// Bytes written, which may be fewer than asked for; -1 on failure.
long long writeFile(FileHandle file, const void* buffer, std::size_t count);
// The new position, -1 on failure. `fromEnd`: the offset counts from the end, else from the position.
long long seekFile(FileHandle file, long long offset, bool fromEnd);
bool rewindFile(FileHandle file);
long long fileLength(FileHandle file);
bool cutFile(FileHandle file, long long length);  // leaves the first `length` bytes
bool flushFile(FileHandle file);
bool closeFile(FileHandle file);
bool isFile(const CString& path);         // an existing file, not a folder
void removeFile(const CString& path);     // does nothing when that fails
void flushFolderOf(const CString& path);  // brings a new file's name to the medium, as far as the system lets

// Try number `tries` + 1 for a file that another writer holds: waits a little longer each time, up to 10 ms;
// false after the hundredth, about a second after the first.
bool waitForFile(int tries);

// A whole file that is being replaced. What is written goes to a new file beside the old one, with rights and
// owner of that; its name, ".fieldscan-" and a number made of the old one's name, is the same each time, so
// what a killed program left is found and removed by the next. It is the old file itself that is written,
// from its start, where it has several names or is a device, and where the system refuses the new one for
// another reason than lack of room.
class Replacement {
public:
    virtual ~Replacement() = default;  // what is not in its place is taken away
    virtual FileHandle file() const = 0;
    // Flushes what was written and puts it in its place, of which the folder is flushed too. False: the old
    // file is as it was, unless it was written itself.
    virtual bool commit() = 0;
};

// Null with `cause` set when the old file may not be written, belongs to another writer (openFile), or there
// is no room for a new one.
std::unique_ptr<Replacement> beginReplacement(const CString& path, CFile::Cause& cause);

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
