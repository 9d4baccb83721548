// CFile, and the lines of a file.
#include <fieldscan/framework/file.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "platform/framework/line_text.h"
#include "tests/temp_folder.h"

namespace fs = std::filesystem;

namespace {

using File = TempFolder;

TEST_F(File, OpensInEveryMode) {
    const unsigned create = CFile::modeCreate, write = CFile::modeWrite, both = CFile::modeReadWrite;
    // What the mode allows; how many bytes of "before" can be read, what is left of it after "X" is written.
    const std::tuple<unsigned, bool, unsigned, int, bool, const char*> rows[] = {
        {CFile::modeRead, false, 1, 6, false, "before"},
        {write, false, 0, 6, true, "Xefore"},
        {both, false, 1, 6, true, "Xefore"},
        {create | write, true, 0, 0, true, "X"},
        {create | both, true, 0, 0, true, "X"},
        {create | CFile::modeNoTruncate | write, true, 0, 6, true, "Xefore"}};
    for (const auto& [mode, makes, read, length, writes, after] : rows) {
        fs::remove(folder / "new");
        put("old", "before");
        CFile file;
        EXPECT_EQ(file.Open(path("new"), mode), makes) << mode;
        EXPECT_EQ(file.GetOpenFailure(), makes ? CFile::causeNone : CFile::causeNotFound) << mode;
        ASSERT_EQ(file.Open(path("old"), mode), 1) << mode;
        EXPECT_EQ(file.GetLength(), length) << mode;
        EXPECT_EQ(file.Write("X", 1), writes) << mode;
        EXPECT_EQ(file.Close(), 1) << mode;
        EXPECT_EQ(get("old"), after) << mode;
        put("old", "before");
        char byte;
        EXPECT_EQ(file.Open(path("old"), mode), 1) << mode;
        EXPECT_EQ(file.Read(&byte, 1), read) << mode;
    }
}

TEST_F(File, SaysWhyItCannotBeOpened) {
    CFile file;
    const unsigned read = CFile::modeRead, write = CFile::modeWrite, make = CFile::modeCreate | write;
    const CString aFolder(folder.c_str()), cut = path("x") + static_cast<unsigned short>(0) + u"y";
    const std::tuple<CString, unsigned, CFile::Cause> rows[] = {
        {aFolder, read, CFile::causeAccessDenied}, {aFolder, write, CFile::causeAccessDenied},
        {aFolder, make, CFile::causeAccessDenied}, {path("none/file"), make, CFile::causeNotFound},
        {CString(), read, CFile::causeOther},      {cut, make, CFile::causeOther}};
    for (const auto& [place, mode, cause] : rows) {
        EXPECT_EQ(file.Open(place, mode), 0) << mode;
        EXPECT_EQ(file.GetOpenFailure(), cause) << mode;
    }
    EXPECT_EQ(file.Open(CString('a', 5000), make), 0);
}

TEST_F(File, RefusesEverythingWhileItIsNotOpen) {
    CFile file;
    char byte;
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(file.Read(&byte, 1), 0u);
    EXPECT_EQ(file.Write("x", 1), 0);
    EXPECT_EQ(file.SeekToBegin(), 0);
    EXPECT_EQ(file.SeekToEnd(), 0);
    EXPECT_EQ(file.Flush(), 0);
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(file.GetPosition(), -1);
    EXPECT_EQ(file.GetLength(), -1);
}

TEST_F(File, ReadsWhatWasWrittenWhereverTheBufferEnds) {
    std::string bytes;
    for (int i = 0; bytes.size() < 200000; ++i)
        bytes += std::to_string(i * 7919) + (i % 5 ? "\n" : "\r\n");
    put("data", bytes);
    CFile file;
    ASSERT_EQ(file.Open(path("data"), CFile::modeReadWrite), 1);
    std::string read(bytes.size() + 10, 0);
    for (std::size_t at = 0; at < bytes.size();) {
        ASSERT_EQ(file.GetPosition(), static_cast<long long>(at));
        at += file.Read(&read[at], at % 3 ? 1 : 4093);
    }
    read.resize(bytes.size());
    EXPECT_EQ(read, bytes);

    std::string lines, line;
    file.SeekToBegin();
    while (fieldscan::readLine(file, line))
        lines += line;
    EXPECT_EQ(lines, bytes);

    // Writing goes on where the caller has read to, not where the buffer ends.
    file.SeekToBegin();
    char three[3];
    file.Read(three, 3);
    ASSERT_EQ(file.Write("###", 3), 1);
    file.Read(three, 1);
    EXPECT_EQ(three[0], bytes[6]);
    file.SeekToEnd();
    EXPECT_EQ(file.Write("end", 3), 1);
    file.Close();
    EXPECT_EQ(get("data"), bytes.substr(0, 3) + "###" + bytes.substr(6) + "end");
}

TEST_F(File, LinesOfUpTo16MiBAreRead) {
    const std::size_t longest = 16 * 1024 * 1024;
    for (const bool over : {false, true}) {
        put("long", "first\n" + std::string(longest - 1 + over, 'x') + "\nnext\n");
        CFile file;
        std::string line;
        ASSERT_EQ(file.Open(path("long"), CFile::modeRead), 1);
        EXPECT_TRUE(fieldscan::readLine(file, line));
        EXPECT_EQ(fieldscan::readLine(file, line), !over);
        EXPECT_EQ(line.size(), over ? 0 : longest);
        EXPECT_EQ(fieldscan::readLine(file, line), !over);
        EXPECT_EQ(file.HasReadFailed(), over);
    }
}

}  // namespace
