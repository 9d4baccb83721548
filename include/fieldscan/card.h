// CRTCard: files on the storage cards.
#ifndef FIELDSCAN_CARD_H
#define FIELDSCAN_CARD_H

#include <fieldscan/framework/string.h>

#if defined(_WIN32)
// <windows.h> may define this as one of the two names below, before this header or after it: a call means the
// same member all the same.
#pragma push_macro("GetFileTitle")
#undef GetFileTitle
#endif

// A storage card, and questions about files wherever they lie.
class FIELDSCAN_API CRTCard {
public:
    // `path` is the folder of a card; none, or a null pointer, gives the empty path.
    CRTCard(const CString& path = CString());
    CRTCard(const CRTCard& other);
    virtual ~CRTCard();
    CRTCard& operator=(const CRTCard& other);

    void Trace();  // a hook for debugging, does nothing

    // 1 when `path` names an existing file, 0 when it does not, or names a folder.
    int IsFile(CString path);

    // The name of the file without folder and without what follows its last "." ("\Card\A.B.csv" gives
    // "A.B"; a name that begins with its only "." is kept whole). Returns 1; 0 with an empty title when the
    // path names no file: it is empty or ends with a separator.
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
