// Which names a file or folder on a FAT card may have: the rules of long names, and the names of devices.
#include <fieldscan/survey.h>

#include <initializer_list>

#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

constexpr int kLongestName = 255;

bool isDevice(const CString& name) {
    const int point = name.Find('.');
    int length = point < 0 ? name.GetLength() : point;
    while (name[length - 1] == ' ')  // blanks before the extension do not count
        --length;
    const CString stem = name.Left(length).MakeUpper();
    for (const char16_t* device : {u"CON", u"PRN", u"AUX", u"NUL"})
        if (stem == device)
            return true;
    const CString port = stem.Left(3);
    return stem.GetLength() == 4 && (port == u"COM" || port == u"LPT") && stem[3] >= '1' && stem[3] <= '9';
}

}  // namespace

int CCalcXYZHV::ChkFileFolderName(CString name) {
    return zeroIfOutOfMemory([&] {
        const int length = name.GetLength();
        if (length < 1 || length > kLongestName || name.FindOneOf(u"\\/:*?\"<>|") >= 0)
            return 0;
        for (int i = 0; i < length; ++i)
            if (name[i] < ' ')
                return 0;
        const unsigned short last = name[length - 1];
        return last == ' ' || last == '.' || isDevice(name) ? 0 : 1;
    });
}
