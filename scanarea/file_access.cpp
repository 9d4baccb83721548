// Opening of scan-area files, with a message to the operator if it is refused.
#include "scanarea/file_access.h"

#include <fieldscan/message.h>

#include "platform/framework/line_text.h"

namespace fieldscan {

namespace {

void showRefusal(CFile::Cause cause, const CString& path) {
    if (cause == CFile::causeAccessDenied || cause == CFile::causeSharingViolation)
        CKTImgMsg::DispMessage(CString(u"ﾌｧｲﾙ名：") + path + u"\n\n\n" +
                               u"ﾌｧｲﾙｱｸｾｽが拒否されました。他のｱﾌﾟﾘｹｰｼｮﾝで使用している可能性があります。");
}

}  // namespace

bool openForReading(CFile& file, const CString& path) {
    const bool opened = openText(file, path);
    if (!opened)
        showRefusal(file.GetOpenFailure(), path);
    return opened;
}

bool openForRewriting(RewrittenFile& file, const CString& path) {
    CFile::Cause cause;
    const bool opened = file.open(path, cause);
    if (!opened)
        showRefusal(cause, path);
    return opened;
}

}  // namespace fieldscan
