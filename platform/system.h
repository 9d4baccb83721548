// All that the library asks of the operating system. posix/ and windows/ implement it; nothing else in the
// library calls the system.
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

// A mode bit besides those of CFile: every write goes to the end that the file has at that time.
constexpr unsigned int kAppending = 0x10000;

// Opens a file; `mode` has the bits of CFile. Returns kNoFile and sets `cause` when that fails; a folder is
// access denied.
//
// A file that is open for writing belongs to its handle: a second writer, in this process or another one,
// tries again for about a second and then gets a sharing violation. On a file system without locks writers
// are not kept apart, and `locked` becomes false.
FileHandle openFile(const CString& path, unsigned int mode, CFile::Cause& cause, bool* locked = nullptr);
// Bytes read (0 at the end), -1 on failure.
long long readFile(FileHandle file, void* buffer, std::size_t count);
// Bytes read from `offset` on, as readFile; the position stays.
long long readFileAt(FileHandle file, void* buffer, std::size_t count, long long offset);
// Bytes written, which may be fewer than asked for; -1 on failure.
long long writeFile(FileHandle file, const void* buffer, std::size_t count);
// Moves the position by `offset`, counted from the end of the file or from the position; returns the new one,
// -1 on failure.
long long seekFile(FileHandle file, long long offset, bool fromEnd);
bool rewindFile(FileHandle file);                 // moves the position to the start
long long fileLength(FileHandle file);            // in bytes, -1 on failure
bool cutFile(FileHandle file, long long length);  // keeps the first `length` bytes
bool flushFile(FileHandle file);                  // brings what was written to the medium
bool closeFile(FileHandle file);
bool isFile(const CString& path);         // an existing file, not a folder
void removeFile(const CString& path);     // ignores failures
void flushFolderOf(const CString& path);  // brings a new file's name to the medium; ignores failures

// Waits before the next try for a file that another writer has: 1 ms after the first (`tries` 0), 1 ms longer
// each time, at most 10 ms. False after the hundredth, about a second after the first.
bool waitForFile(int tries);

// A file that is being replaced as a whole. What is written goes to a new file in the same folder, with the
// rights and the owner of the old one. Its name is ".fieldscan-" and a hash of the old one's name, the same
// each time: the next replacement finds and removes what a killed program left.
//
// The old file itself is written, from its start, when it has several names or is a device, and when the
// system refuses the new one for another reason than lack of room.
class Replacement {
public:
    virtual ~Replacement() = default;  // removes a new file that was not committed
    virtual FileHandle file() const = 0;
    // Flushes what was written, gives it the place of the old file and flushes the folder. When that fails,
    // the old file is as it was, unless it was written itself.
    virtual bool commit() = 0;
};

// Returns null and sets `cause` when the old file may not be written or belongs to another writer (openFile),
// or when there is no room for a new one.
std::unique_ptr<Replacement> beginReplacement(const CString& path, CFile::Cause& cause);

// ---- Memory ----

// Announces that these bytes will all be written, so that the system can provide large pages.
void expectFilled(void* memory, std::size_t bytes);

// ---- Text ----

// Code pages by the numbers of the instrument's system.
constexpr unsigned int kUtf8 = 65001;
constexpr unsigned int kLatin1 = 28591;
constexpr unsigned int kShiftJis = 932;
constexpr unsigned int kWestern = 1252;

// The code page of 8-bit text in files. It may change between operations: ask once in each.
unsigned int ansiCodePage();
// Appends the text in `codePage`. A character that the page lacks becomes "?"; in UTF-8 half a surrogate pair
// becomes U+FFFD.
void appendAnsi(unsigned int codePage, const unsigned short* text, int length, std::string& out);
// Appends the bytes as UTF-16. No byte is lost: one without a meaning in the page becomes the character of
// the same number.
void appendWide(unsigned int codePage, const char* bytes, std::size_t count, CString& out);

// ---- Clock, configuration, messages ----

// 100-nanosecond intervals since 1601-01-01 00:00 UTC.
unsigned long long fileTimeNow();
// The same at the last tick of the system's clock, at most a few milliseconds ago; much faster.
unsigned long long fileTimeOfLastTick();
// Local time minus UTC at present, in seconds.
long long localOffsetSeconds();
// The text value `name` of the registry key HKEY_LOCAL_MACHINE\`key`; false when there is none.
bool registryText(const CString& key, const CString& name, CString& text);
// Full path of the running program; false when it is unknown.
bool modulePath(CString& path);
// Shows a message to the operator, where the system places it.
void showMessage(const CString& text, const CRect& place);

}  // namespace system
}  // namespace fieldscan

#endif
