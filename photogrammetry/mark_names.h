// Names of fiducial marks, the same for the camera file and the inner orientation.
#ifndef FIELDSCAN_PHOTOGRAMMETRY_MARK_NAMES_H
#define FIELDSCAN_PHOTOGRAMMETRY_MARK_NAMES_H

#include <fieldscan/camera.h>

namespace fieldscan {

// The name of mark `i`: that in markNames; if it is missing or empty, the mark's own.
inline const CString& markName(const CCamera& camera, int i) {
    return i < camera.markNames.GetSize() && !camera.markNames[i].IsEmpty() ? camera.markNames[i]
                                                                            : camera.marks[i].name;
}

}  // namespace fieldscan

#endif
