// CRTCard: files and the titles of their names.
#include <fieldscan/card.h>

#include <algorithm>

#include "platform/framework/out_of_memory.h"
#include "platform/system.h"

CRTCard::CRTCard(const CString& path) : m_path(path) {}

CRTCard::CRTCard(const CRTCard& other) : m_path(other.m_path) {}

CRTCard::~CRTCard() {}

CRTCard& CRTCard::operator=(const CRTCard& other) {
    m_path = other.m_path;
    return *this;
}

void CRTCard::Trace() {}

int CRTCard::IsFile(CString path) {
    return fieldscan::zeroIfOutOfMemory([&] { return fieldscan::system::isFile(path) ? 1 : 0; });
}

int CRTCard::GetFileTitle(CString path, CString& title) {
    int separator = std::max(path.ReverseFind('\\'), path.ReverseFind('/'));
#if defined(_WIN32)
    if (path.Find(':') == 1)  // of a drive; "C:x.csv" is in its current folder
        separator = std::max(separator, 1);
#endif
    return fieldscan::zeroIfOutOfMemory([&] {
        title = path.Mid(separator + 1);
        const int dot = title.ReverseFind('.');
        if (dot > 0)
            title = title.Left(dot);
        return title.IsEmpty() ? 0 : 1;
    });
}
