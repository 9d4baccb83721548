// A scan-area file that another program holds, as only Windows has it.
#include <fieldscan/message.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/string_utilities.h>
#include <gtest/gtest.h>

#include "platform/windows/api.h"
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
    const CString message = CString(u"ﾌｧｲﾙ名：") + path("job") +
                            u"\n\n\nﾌｧｲﾙｱｸｾｽが拒否されました。他のｱﾌﾟﾘｹｰｼｮﾝで使用している可能性があります。|";
    EXPECT_EQ(shown, message);
    EXPECT_EQ(area.Write(path("job")), 0);
    EXPECT_EQ(shown, message + message);
    CloseHandle(held);
    CKTImgMsg::SetHandler(before);
    EXPECT_EQ(get("job"), "1 1\n");
    if (usePage(932)) {
        char bytes[400];
        ASSERT_GT(ConvUniToAscii(shown, bytes, sizeof bytes), 0);
        EXPECT_EQ(std::string(bytes, 8), "\xCC\xA7\xB2\xD9\x96\xBC\x81\x46");
        EXPECT_NE(std::string(bytes).find("\n\n\n\xCC\xA7\xB2\xD9\xB1\xB8\xBE\xBD\x82\xAA\x8B\x91\x94\xDB"),
                  std::string::npos);
    }
}

}  // namespace
