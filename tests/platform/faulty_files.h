// Faults of the medium, made to order.
#ifndef FIELDSCAN_TESTS_PLATFORM_FAULTY_FILES_H
#define FIELDSCAN_TESTS_PLATFORM_FAULTY_FILES_H

namespace fieldscan {
namespace faults {

enum Fault {
    none,
    memory,    // operator new throws
    open,      // access denied
    openFull,  // no room for another file
    read,
    write,
    writeHalf,   // half of it is written, the rest is refused
    writeShort,  // half of it is written at first: no fault
    flush,
    close,
    replace
};

// Call number `call` of that kind, counted from here, fails.
void arm(Fault fault, int call);
bool hasHappened();
int openCount();  // files that are open now

}  // namespace faults
}  // namespace fieldscan

#endif
