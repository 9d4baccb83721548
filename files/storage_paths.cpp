// CGetAppPath: folders of the storage cards from the registry, and names that count up.
#include <fieldscan/storage_paths.h>
#include <fieldscan/string_utilities.h>

#include "platform/framework/out_of_memory.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

const char16_t kCompactFlash[] = u"System\\StorageManager\\Profiles\\PCMCIA";
const char16_t kSecureDigital[] = u"System\\StorageManager\\Profiles\\SDMMC";

// `folder`, after a look-up where it is empty: the registered folder and the number of the slot.
const CString& cardFolder(CString& folder, const char16_t* key, const char16_t* slot) {
    zeroIfOutOfMemory([&] {
        CString found;
        if (folder.IsEmpty() && system::registryText(key, u"Folder", found))
            folder = found + slot;
        return 1;
    });
    return folder;
}

}  // namespace

CGetAppPath::CGetAppPath() = default;
CGetAppPath::CGetAppPath(const CGetAppPath&) = default;
CGetAppPath& CGetAppPath::operator=(const CGetAppPath&) = default;
CGetAppPath::~CGetAppPath() = default;
void CGetAppPath::Trace() {}

CString CGetAppPath::GetCFCARD1Path() { return cardFolder(cfCard1Path, kCompactFlash, u""); }
CString CGetAppPath::GetCFCARD2Path() { return cardFolder(cfCard2Path, kCompactFlash, u"2"); }
CString CGetAppPath::GetSDCARDPath() { return cardFolder(sdCardPath, kSecureDigital, u""); }

CString CGetAppPath::GetExePath() {
    zeroIfOutOfMemory([&] {
        CString found;
        if (exePath.IsEmpty() && system::modulePath(found))
            exePath = found;
        return 1;
    });
    return exePath;
}

CString CGetAppPath::MakeNextName(const CString& name) const {
    const int length = name.GetLength();
    int digits = 0;  // the unit before the start of the name reads as 0, which is no digit
    while (name[length - digits - 1] >= '0' && name[length - digits - 1] <= '9')
        ++digits;
    CString next = name;
    zeroIfOutOfMemory([&] {
        CString number = name.Right(digits);
        if (digits <= 9 && number != u"999999999" && IncrStr(number, 1))
            next = name.Left(length - digits) + number;
        return 1;
    });
    return next;
}
