// CGetAppPath: folders of the storage cards, path of the program, and names that count up.
#ifndef FIELDSCAN_STORAGE_PATHS_H
#define FIELDSCAN_STORAGE_PATHS_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>

// Where the storage cards and the program lie. Keeps the answers of the system: a member that is not empty is
// returned as it is, an empty one is looked up on every call. Use each object in one thread.
class FIELDSCAN_API CGetAppPath {
public:
    CGetAppPath();
    CGetAppPath(const CGetAppPath& other);
    CGetAppPath& operator=(const CGetAppPath& other);
    virtual ~CGetAppPath();

    void Trace();  // a hook for debugging, does nothing

    // Folder of a card slot, of any length, from the registry (docs/architecture.md, The device's registry):
    // the value "Folder" of the key System\StorageManager\Profiles\PCMCIA (CompactFlash; "2" is appended for
    // the second slot) or ...\SDMMC. Empty when there is none.
    CString GetCFCARD1Path();
    CString GetCFCARD2Path();
    CString GetSDCARDPath();

    // Full path of the running program, also when a library calls this; empty when it is unknown.
    CString GetExePath();

    // `name` with the number at its end increased by one, leading zeros kept: "P009" gives "P010", "P999"
    // "P1000", "ABC" "ABC1", the empty name "1". A name that ends with more than nine digits or with
    // 999999999 is returned unchanged, as any is when memory runs out. Only ASCII digits count. IncrStr has
    // no such limit and counts full-width digits too.
    CString MakeNextName(const CString& name) const;

    // The answers of the system; empty before the first call.
    CString cfCard1Path;
    CString cfCard2Path;
    CString sdCardPath;
    CString exePath;
};

#endif
