// CTSUnit: the display units chosen by the operator, and their file.
#ifndef FIELDSCAN_UNIT_SETTINGS_H
#define FIELDSCAN_UNIT_SETTINGS_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>

// The display units that the operator chose. The codes are the application's own: they are stored, never
// interpreted. File: docs/file_formats.md.
class FIELDSCAN_API CTSUnit {
public:
    CTSUnit();
    CTSUnit(const CTSUnit& other);             // copies the three codes; `version` is empty
    CTSUnit& operator=(const CTSUnit& other);  // copies the three codes; `version` stays
    virtual ~CTSUnit();

    void Init();   // 0, 0, 1 and the version "FIELD_SCAN_UNI_FILEVER1.0"
    void Trace();  // a hook for debugging, does nothing

    // Calls Init, then reads the first word as `version`, whatever it is, and the codes, one a line. `angle`
    // is read only in version "FIELD_SCAN_UNI_FILEVER1.1"; otherwise it is 1. Text that is no number leaves a
    // code as Init sets it; a number beyond 32 bits becomes the nearest that fits. A byte order mark at the
    // start is skipped where the code page is UTF-8. Returns 1; 0 when the file cannot be opened, with the
    // record unchanged, or when a line is missing, blank or begins with a NUL, or the medium fails: the
    // record then holds what was read before.
    [[nodiscard]] int Read(CString path);

    // Makes the file or replaces it as a whole, always in version 1.1, whatever `version` is. Returns 1; 0,
    // with the file unchanged, when it cannot be opened, another writer has it, or writing fails.
    [[nodiscard]] int Write(CString path) const;

    CString version;  // of the file read
    int meterFeet;    // unit of distances
    int feet;         // kind of feet
    int angle;        // unit of angles
};

#endif
