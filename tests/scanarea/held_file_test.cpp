// A scan-area file that another program holds, as only Windows has it.
#include <fieldscan/message.h>
#include <fieldscan/scan_area.h>
#include <gtest/gtest.h>

#include "platform/windows/api.h"
#include "tests/scanarea/scan_areas.h"
#include "tests/temp_folder.h"

namespace {

using HeldFile = TempFolder;

CString shown;

TEST_F(HeldFile, IsReportedOnceAndStaysAsItWas) {
    put("job", "1 1\n");
    const CKTImgMsg::Handler before =
        CKTImgMsg::SetHandler([](const CString& text, const CRect&) { shown += text + u"|"; });
    const HANDLE held =
        CreateFileW((folder / "job").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    CScanArea area;
    EXPECT_EQ(area.Read(path("job")), 0);
    EXPECT_EQ(shown, accessDenied(path("job")));
    EXPECT_EQ(area.Write(path("job")), 0);
    EXPECT_EQ(shown, accessDenied(path("job")) + accessDenied(path("job")));
    CloseHandle(held);
    const HANDLE shared = CreateFileW((folder / "job").c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(area.Write(path("job")), 0) << "others may write it but not replace it";
    EXPECT_EQ(shown, accessDenied(path("job")) + accessDenied(path("job")) + accessDenied(path("job")));
    CloseHandle(shared);
    CKTImgMsg::SetHandler(before);
    EXPECT_EQ(get("job"), "1 1\n");
}

}  // namespace
