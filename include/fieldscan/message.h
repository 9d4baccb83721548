// CKTImgMsg: messages to the operator.
#ifndef FIELDSCAN_MESSAGE_H
#define FIELDSCAN_MESSAGE_H

#include <fieldscan/framework/string.h>
#include <fieldscan/framework/types.h>

// The only way in which the library shows anything.
class FIELDSCAN_API CKTImgMsg {
public:
    // Shows `text` to the operator and returns once it was shown: through the handler of the application if
    // one is installed, else in a message box on Windows and on standard error on other systems. `place` is
    // passed to the handler; the system places its message boxes itself. The library calls this only when a
    // scan-area file cannot be opened because access is denied or another program has it.
    static void DispMessage(const CString& text, const CRect& place = CRect());

    // Installs a handler for the whole process, null for the default, and returns the previous one. The
    // handler runs on the thread that shows the message and must not throw.
    typedef void (*Handler)(const CString& text, const CRect& place);
    static Handler SetHandler(Handler handler);
};

#endif
