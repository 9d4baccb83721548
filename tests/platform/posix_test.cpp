// What replaces the device's system on POSIX systems.
#include <fieldscan/framework/file.h>
#include <fieldscan/unit_settings.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/system.h"
#include "tests/temp_folder.h"

namespace fs = std::filesystem;
namespace seam = fieldscan::system;

namespace {

using Posix = TempFolder;

TEST_F(Posix, DevicesAreReadAndWrittenOnlyWhereThatEnds) {
    CFile file;
    char byte;
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(file.Open(path("pipe"), CFile::modeRead), 0);
    EXPECT_EQ(file.Open(path("pipe"), CFile::modeReadWrite), 0);
    EXPECT_EQ(file.Open(u"/dev/zero", CFile::modeRead), 0) << "it has no end";
    ASSERT_EQ(file.Open(u"/proc/self/mem", CFile::modeRead), 1);
    EXPECT_EQ(file.Read(&byte, 1), 0u) << "no such address";
    EXPECT_TRUE(file.HasReadFailed());
    ASSERT_EQ(file.Open(u"/dev/full", CFile::modeWrite), 1);
    EXPECT_FALSE(file.HasReadFailed());
    EXPECT_EQ(file.Write("x", 1), 0);
    ASSERT_EQ(file.Open(u"/dev/null", CFile::modeWrite), 1);
    EXPECT_EQ(file.Write("x", 1), 1);
    EXPECT_EQ(file.Flush(), 1) << "no medium to flush to";
}

TEST_F(Posix, ReplacesInTheCurrentFolder) {
    const fs::path before = fs::current_path();
    fs::current_path(folder);
    put("name", "old");
    EXPECT_EQ(CTSUnit().Write(u"name"), 1);
    EXPECT_EQ(get("name").substr(0, 10), "FIELD_SCAN");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
    fs::current_path(before);
}

TEST_F(Posix, FindsDevicePathsBelowTheRoot) {
    setenv("FIELDSCAN_ROOT", folder.c_str(), 1);
    fs::create_directories(folder / "Internal Disk");
    put("Internal Disk/\xE5\xB2\xB3.txt", "x");
    EXPECT_TRUE(seam::isFile(u"\\Internal Disk\\\u5cb3.txt"));
    EXPECT_FALSE(seam::isFile(u"\\Internal Disk"));
    EXPECT_FALSE(seam::isFile(u""));
}

TEST_F(Posix, ReadsTheRegistryFile) {
    const std::string text =
        "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\System\\Other]\r\n\"Folder\"=\"wrong\"\r\n"
        "[hkey_local_machine\\SYSTEM\\Profiles]\r\n; \"Folder\"=\"comment\"\r\n\"Size\"=dword:00000001\r\n"
        "\"Folder\"=\"earlier\"\r\n\"folder\"=\"Card \\\\ \\\"1\\\"\"\n\"Open\"=\"never "
        "closed\r\n\"Trailing\"=\"x\\";
    CString value;
    const auto lookUp = [&](const char16_t* name) {
        value = u"untouched";
        return seam::registryText(u"System\\Profiles", name, value);
    };
    EXPECT_FALSE(lookUp(u"Folder")) << "no file named";
    const std::string name = (folder / "device.reg").string();
    for (const std::string& file : {std::string("/dev/zero"), name}) {  // a line without end, no such file
        setenv("FIELDSCAN_REGISTRY", file.c_str(), 1);
        EXPECT_FALSE(lookUp(u"Folder")) << file;
    }
    std::string wide = "\xFF\xFE";
    for (const char c : text)
        wide += std::string(1, c) + '\0';
    for (const std::string& bytes : {text, "\xEF\xBB\xBF" + text, wide, wide + "x"}) {
        put("device.reg", bytes);
        EXPECT_TRUE(lookUp(u"Folder"));
        EXPECT_EQ(value, u"Card \\ \"1\"");
        for (const char16_t* none : {u"Size", u"Open", u"Trailing"}) {
            EXPECT_FALSE(lookUp(none)) << testing::PrintToString(CString(none));
            EXPECT_EQ(value, u"untouched");
        }
    }
}

TEST_F(Posix, TheEnvironmentNamesTheCodePage) {
    const std::pair<unsigned int, std::vector<const char*>> rows[] = {
        {seam::kUtf8, {"", "utf8", "cp65001", "EUC-JP", "CP9322"}},
        {seam::kShiftJis, {"CP932", "932", "Shift_JIS", "sjis", "Windows-31J"}},
        {seam::kWestern, {"CP1252", "1252", "windows-1252"}},
        {seam::kLatin1, {"iso-8859-1", "Latin1", "Cp28591"}}};
    for (const auto& [page, names] : rows) {
        for (const char* name : names) {
            setenv("FIELDSCAN_ANSI_CODEPAGE", name, 1);
            EXPECT_EQ(seam::ansiCodePage(), page) << name;
        }
    }
    clearEnvironment();
    EXPECT_EQ(seam::ansiCodePage(), seam::kUtf8);
}

TEST_F(Posix, ShowsMessagesAsStandardErrors) {
    testing::internal::CaptureStderr();
    seam::showMessage(u"card \u5cb3", CRect());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "card \xE5\xB2\xB3\n");
}

}  // namespace
