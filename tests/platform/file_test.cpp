// CFile and the parts of the system's seam that tests can reach.
#include <fieldscan/framework/file.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/framework/line_text.h"
#include "platform/system.h"
#include "tests/temp_folder.h"

namespace fs = std::filesystem;

namespace {

using File = TempFolder;

TEST_F(File, OpensInEveryMode) {
    const unsigned create = CFile::modeCreate, write = CFile::modeWrite, both = CFile::modeReadWrite;
    const struct {
        unsigned mode;
        bool makes, empties, writes, reads;
    } rows[] = {{CFile::modeRead, false, false, false, true},
                {write, false, false, true, false},
                {both, false, false, true, true},
                {create | write, true, true, true, false},
                {create | both, true, true, true, true},
                {create | CFile::modeNoTruncate | write, true, false, true, false}};
    for (const auto& row : rows) {
        fs::remove(folder / "new");
        put("old", "before");
        CFile file;
        EXPECT_EQ(file.Open(path("new"), row.mode), row.makes) << row.mode;
        EXPECT_EQ(file.GetOpenFailure(), row.makes ? CFile::causeNone : CFile::causeNotFound) << row.mode;
        ASSERT_EQ(file.Open(path("old"), row.mode), 1) << row.mode;
        EXPECT_EQ(file.GetLength(), row.empties ? 0 : 6) << row.mode;
        EXPECT_EQ(file.Write("X", 1), row.writes) << row.mode;
        EXPECT_EQ(file.Close(), 1);
        EXPECT_EQ(get("old"), row.empties ? "X" : row.writes ? "Xefore" : "before") << row.mode;
        put("old", "before");
        char byte;
        file.Open(path("old"), row.mode);
        EXPECT_EQ(file.Read(&byte, 1), row.reads && !row.empties ? 1u : 0u) << row.mode;
    }
}

TEST_F(File, TellsWhyItCannotBeOpened) {
    CFile file;
    for (const unsigned mode :
         {0u + CFile::modeRead, 0u + CFile::modeWrite, CFile::modeCreate | CFile::modeWrite}) {
        EXPECT_EQ(file.Open(CString(folder.c_str()), mode), 0);
        EXPECT_EQ(file.GetOpenFailure(), CFile::causeAccessDenied) << "a folder, mode " << mode;
    }
    EXPECT_EQ(file.Open(path("none/file"), CFile::modeCreate | CFile::modeWrite), 0);
    EXPECT_EQ(file.GetOpenFailure(), CFile::causeNotFound);
    EXPECT_EQ(file.Open(CString(), CFile::modeRead), 0);
    EXPECT_EQ(file.GetOpenFailure(), CFile::causeOther);
    EXPECT_EQ(
        file.Open(path("x") + static_cast<unsigned short>(0) + u"y", CFile::modeCreate | CFile::modeWrite),
        0);
    EXPECT_EQ(file.GetOpenFailure(), CFile::causeOther);
    EXPECT_EQ(file.Open(CString('a', 5000), CFile::modeCreate | CFile::modeWrite), 0);
    char byte;
    EXPECT_EQ(file.IsOpen() || file.Read(&byte, 1) || file.Write("x", 1) || file.SeekToEnd() ||
                  file.SeekToBegin() || file.Flush() || file.Close(),
              false);
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

    for (const bool over : {false, true}) {
        const std::size_t longest = 16 * 1024 * 1024;
        put("long", "first\n" + std::string(longest - 1 + over, 'x') + "\nnext\n");
        CFile longFile;
        ASSERT_EQ(longFile.Open(path("long"), CFile::modeRead), 1);
        EXPECT_TRUE(fieldscan::readLine(longFile, line));
        EXPECT_EQ(fieldscan::readLine(longFile, line), !over);
        EXPECT_EQ(line.size(), over ? 0 : longest);
        EXPECT_EQ(fieldscan::readLine(longFile, line), !over);
        EXPECT_EQ(longFile.HasReadFailed(), over);
    }

    // Writing goes on where the caller has read to, not where the buffer ends.
    file.SeekToBegin();
    char three[3];
    file.Read(three, 3);
    ASSERT_EQ(file.Write("###", 3), 1);
    file.Read(three, 1);
    EXPECT_EQ(three[0], bytes[6]);
    file.SeekToEnd();
    file.Write("end", 3);
    file.Close();
    EXPECT_EQ(get("data"), bytes.substr(0, 3) + "###" + bytes.substr(6) + "end");
}

TEST_F(File, KnowsTheRunningProgram) {
    CString program;
    ASSERT_TRUE(fieldscan::system::modulePath(program));
    EXPECT_TRUE(fieldscan::system::isFile(program));
    const unsigned long long year2020 = 132223104000000000ULL;
    EXPECT_GT(fieldscan::system::fileTimeNow(), year2020);
}

}  // namespace
