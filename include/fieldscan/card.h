// CRTCard: files on the storage cards.
#ifndef FIELDSCAN_CARD_H
#define FIELDSCAN_CARD_H

#include <fieldscan/framework/string.h>

#if defined(_WIN32)
// <windows.h>, included before this header or after it, may define this as one of the two names below. A call
// then has the same effect.
#pragma push_macro("GetFileTitle")
#undef GetFileTitle
#endif

// A storage card, and queries about files, on the card or elsewhere.
class FIELDSCAN_API CRTCard {
public:
    // `path`: folder of the card; may be empty.
    CRTCard(const CString& path = CString());
    CRTCard(const CRTCard& other);
    virtual ~CRTCard();
    CRTCard& operator=(const CRTCard& other);

    void Trace();  // a hook for debugging, does nothing

    // 1 when `path` names an existing file; 0 when it names a folder or nothing, on Windows also for a device
    // ("NUL", "COM1").
    int IsFile(CString path);

    // The file name without the folder and without its last "." and what follows it: "\Card\A.B.csv" gives
    // "A.B". A name that begins with its only "." is kept whole. On Windows the colon of a drive ends the
    // folder too: "C:x.csv" gives "x". Returns 1; 0 with an empty title when the path is empty or ends with a
    // separator.
    int GetFileTitle(CString path, CString& title);
#if defined(_WIN32)
    int GetFileTitleA(CString path, CString& title) { return GetFileTitle(path, title); }
    int GetFileTitleW(CString path, CString& title) { return GetFileTitle(path, title); }
#endif

private:
    CString m_path;
};

#if defined(_WIN32)
#pragma pop_macro("GetFileTitle")
#endif

#endif
