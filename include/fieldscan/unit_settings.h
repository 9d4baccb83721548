// CTSUnit: the display units that the operator chose, and their file.
#ifndef FIELDSCAN_UNIT_SETTINGS_H
#define FIELDSCAN_UNIT_SETTINGS_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>

// The codes are those of the application; they are kept and never interpreted. File: docs/file_formats.md.
class FIELDSCAN_API CTSUnit {
public:
    CTSUnit();
    CTSUnit(const CTSUnit& other);             // as the assignment: `version` is empty
    CTSUnit& operator=(const CTSUnit& other);  // the three codes; `version` stays
    virtual ~CTSUnit();

    void Init();   // 0, 0, 1 and the version "FIELD_SCAN_UNI_FILEVER1.0"
    void Trace();  // a hook for debugging, does nothing

    // Init, then what the file holds: the first word as `version`, whatever it is, then the codes. A file of
    // version "FIELD_SCAN_UNI_FILEVER1.1" has the line of the angle; any other has none and leaves it 1. Text
    // that is no number leaves a code as Init sets it; what does not fit 32 bits gives the nearest that does.
    // Returns 1; 0 when the file cannot be opened (the record is then as it was), or when a line is missing
    // or blank or the medium fails, and then the record holds what was read before that.
    int Read(CString path);

    // Makes the file or replaces it as a whole: a failure keeps the old one. Always in version 1.1, whatever
    // `version` holds. Returns 1; 0 when the file cannot be opened, another writer keeps it, or writing
    // fails.
    int Write(CString path) const;

    CString version;  // of the file read
    int meterFeet;    // unit of distances
    int feet;         // kind of feet
    int angle;        // unit of angles
};

#endif
