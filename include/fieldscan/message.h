// CKTImgMsg: messages to the operator.
#ifndef FIELDSCAN_MESSAGE_H
#define FIELDSCAN_MESSAGE_H

#include <fieldscan/framework/string.h>
#include <fieldscan/framework/types.h>

// The one way by which the library shows something.
class FIELDSCAN_API CKTImgMsg {
public:
    // Shows `text` to the operator and returns when it was shown: through the application's handler if one is
    // installed, else in a message box, or on standard error on systems without one. `place` is for the
    // handler; the system places its message boxes itself. The library itself calls this only where a
    // scan-area file cannot be opened because access is denied or another program holds it.
    static void DispMessage(const CString& text, const CRect& place = CRect());

    // Installs the application's own display for the whole process, null for the default; returns the one
    // before. The handler runs on the thread that needed the message and must not throw.
    typedef void (*Handler)(const CString& text, const CRect& place);
    static Handler SetHandler(Handler handler);
};

#endif
