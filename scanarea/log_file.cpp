// The log file of the scan on the device's internal disk.
#include <fieldscan/scan_area.h>

#include "platform/framework/appended_file.h"

using namespace fieldscan;

namespace {

const char16_t kLogFile[] = u"\\Internal Disk\\FIELD_SCAN\\log.txt";

}  // namespace

void CScanArea::WriteLogFile(CString text) {
    appendToFile(CString(kLogFile), Existing::kept, {"", 0}, [&](LineWriter& lines) { lines.append(text); });
}
