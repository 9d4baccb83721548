// Opening of scan-area files, with a message to the operator if it is refused.
#ifndef FIELDSCAN_SCANAREA_FILE_ACCESS_H
#define FIELDSCAN_SCANAREA_FILE_ACCESS_H

#include <fieldscan/framework/file.h>

#include "platform/framework/rewritten_file.h"

namespace fieldscan {

// False if the file cannot be opened. A message is shown if access is denied or another program has the file.
bool openForReading(CFile& file, const CString& path);
bool openForRewriting(RewrittenFile& file, const CString& path);

}  // namespace fieldscan

#endif
