// CGetAppPath: where the storage cards and the program lie, and names that count up.
#ifndef FIELDSCAN_STORAGE_PATHS_H
#define FIELDSCAN_STORAGE_PATHS_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>

// Keeps what the system has answered: a field that is not empty is returned without asking again, an empty
// one is looked up with every call. Use an object from one thread.
class FIELDSCAN_API CGetAppPath {
public:
    CGetAppPath();
    CGetAppPath(const CGetAppPath& other);
    CGetAppPath& operator=(const CGetAppPath& other);
    virtual ~CGetAppPath();

    void Trace();  // a hook for debugging, does nothing

    // Folder of a card slot as the registry has it (docs/architecture.md, The device's registry): the value
    // "Folder" of the key System\StorageManager\Profiles\PCMCIA (CompactFlash; the second slot has a "2"
    // behind it) or ...\SDMMC. Empty when there is none, and the field stays empty.
    CString GetCFCARD1Path();
    CString GetCFCARD2Path();
    CString GetSDCARDPath();

    // Full path of the running program; empty when it cannot be told.
    CString GetExePath();

    // `name` with the number at its end counted up by one, its leading zeros kept: "P009" gives "P010",
    // "P999" "P1000", "ABC" "ABC1", the empty name "1". A name that ends with more than nine digits, or with
    // 999999999, comes back as it is (so it does when memory runs out). Digits are those of ASCII. IncrStr
    // has no such limit and counts full-width digits too.
    CString MakeNextName(const CString& name) const;

    // What the system has answered; empty until then.
    CString cfCard1Path;
    CString cfCard2Path;
    CString sdCardPath;
    CString exePath;
};

#endif
