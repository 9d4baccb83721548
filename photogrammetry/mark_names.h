// Names of fiducial marks.
#ifndef FIELDSCAN_PHOTOGRAMMETRY_MARK_NAMES_H
#define FIELDSCAN_PHOTOGRAMMETRY_MARK_NAMES_H

#include <fieldscan/camera.h>

namespace fieldscan {

// The name of mark `i`: what markNames has for it, else the mark's own.
inline const CString& markName(const CCamera& camera, int i) {
    return i < camera.markNames.GetSize() && !camera.markNames[i].IsEmpty() ? camera.markNames[i]
                                                                            : camera.marks[i].name;
}

}  // namespace fieldscan

#endif
