// CKTImgMsg: messages go to the handler of the application, or to the system.
#include <fieldscan/message.h>

#include <atomic>

#include "platform/system.h"

namespace {

std::atomic<CKTImgMsg::Handler>& installedHandler() {
    static std::atomic<CKTImgMsg::Handler> handler{nullptr};
    return handler;
}

}  // namespace

void CKTImgMsg::DispMessage(const CString& text, const CRect& place) {
    if (const Handler handler = installedHandler())
        handler(text, place);
    else
        fieldscan::system::showMessage(text, place);
}

CKTImgMsg::Handler CKTImgMsg::SetHandler(Handler handler) { return installedHandler().exchange(handler); }
