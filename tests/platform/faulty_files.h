// Faults of the medium and of memory, made to order.
#ifndef FIELDSCAN_TESTS_PLATFORM_FAULTY_FILES_H
#define FIELDSCAN_TESTS_PLATFORM_FAULTY_FILES_H

#include <functional>
#include <string>

namespace fieldscan {
namespace faults {

enum Fault {
    none,
    memory,    // operator new throws, realloc gives null
    killed,    // the program, at any call but read and close; in the middle of a write
    open,      // access denied
    openFull,  // no room for another file
    read,
    write,       // no room
    writeHalf,   // half of it is written, the rest is refused
    writeShort,  // half of it is written at first: no fault
    flush,       // of a file, not of a folder
    close,
    replace,
    replaceDenied,  // as for a mount point
    giveOwner,
    lock,  // the file system has none: no fault
    cut,
    kFaults
};

// Call number `call` of that kind, counted from here, fails.
void arm(Fault fault, int call);
bool hasHappened();
// What happens just before the next lock is taken.
void atNextLock(std::function<void()> action);
int openCount();                // files that are open now
int folderFlushes();            // since the last arm
int lastOpened();               // its descriptor
const std::string& lastMade();  // path of the last file that had to be a new one

}  // namespace faults
}  // namespace fieldscan

#endif
