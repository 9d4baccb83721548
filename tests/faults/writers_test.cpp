// Several writers of one file at once, in processes and in threads. FIELDSCAN_TEST_CALLS sets how many calls
// each of two processes makes.
#include <fieldscan/message.h>
#include <fieldscan/point_files.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/scan_result_files.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <thread>
#include <vector>

#include "tests/platform/faulty_files.h"
#include "tests/temp_folder.h"

namespace fs = std::filesystem;

namespace {

using Points = CArray<CXYZ, CXYZ&>;

int callsOfAProcess() {
    const char* const calls = std::getenv("FIELDSCAN_TEST_CALLS");
    return calls ? std::atoi(calls) : 100;
}

class Writers : public TempFolder {
protected:
    struct Writer {
        const char* name;
        std::string header;
        std::string line;  // that it adds
        std::function<int()> add;
    };

    void SetUp() override {
        TempFolder::SetUp();
        file = path("file");
        points.SetSize(1);
        points[0] = point;
    }
    std::vector<Writer> writers() {
        const std::string plain = "P1,1.000000,2.000000,3.000000", header = "FIELD_SCAN_MPT_FILEVER1.0\r\n",
                          versioned = plain + ",,0,,0.0000,0.0000\n";
        return {{"ScanFileAdd", "", plain + "\n", [&] { return ScanFileAdd(file, point); }},
                {"WriteCSVFile", "", plain + "\n", [&] { return WriteCSVFile(&file, points, 1); }},
                {"KVX4NP_CSVFileAdd", header, versioned,
                 [&] { return KVX4NP_CSVFileAdd(file, point, 0.0, 0.0, u""); }},
                {"KVX4NP_CSVFileWrite", header, versioned,
                 [&] { return KVX4NP_CSVFileWrite(file, points, none, none, noTexts, 1); }},
                {"ScanFileOpen", "", "P1,1,2,3\n", [&] {
                     CFile scan;
                     return ScanFileOpen(&scan, file) && scan.Write("P1,1,2,", 7) && scan.Write("3\n", 2) &&
                            ScanFileClose(&scan);
                 }}};
    }
    // All that is there are as many of its lines as calls gave 1.
    void expectLines(const Writer& writer, int calls) const {
        const std::string bytes = get("file");
        ASSERT_EQ(bytes.substr(0, writer.header.size()), writer.header) << writer.name;
        std::istringstream lines(bytes.substr(writer.header.size()));
        int found = 0;
        for (std::string line; std::getline(lines, line); ++found)
            ASSERT_EQ(line + "\n", writer.line) << writer.name << ", line " << found;
        EXPECT_EQ(found, calls) << writer.name;
    }
    CString file;
    const CXYZ point{u"P1", 1.0, 2.0, 3.0};
    Points points;
    CArray<double, double> none;
    CStringArray noTexts;
};

// The number that work gives in each of two processes.
int sumOfTwoProcesses(const std::function<int(int)>& work) {
    int ends[2], sum = 0;
    EXPECT_EQ(pipe(ends), 0);
    for (int process = 0; process < 2; ++process) {
        if (fork() == 0) {
            const int result = work(process);
            _exit(write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
        }
    }
    for (int process = 0, result = 0; process < 2; ++process) {
        EXPECT_EQ(read(ends[0], &result, sizeof result), static_cast<ssize_t>(sizeof result));
        wait(nullptr);
        sum += result;
    }
    close(ends[0]);
    close(ends[1]);
    return sum;
}

TEST_F(Writers, LoseNothing) {
    constexpr int kThreads = 4;  // in each process
    for (const Writer& writer : writers()) {
        put("file", writer.header);
        const int good = sumOfTwoProcesses([&](int) {
            std::atomic<int> sum{0};
            std::vector<std::thread> threads;
            for (int i = 0; i < kThreads; ++i)
                threads.emplace_back([&] {
                    for (int k = 0; k < callsOfAProcess() / kThreads; ++k)
                        sum += writer.add();
                });
            for (std::thread& thread : threads)
                thread.join();
            return sum.load();
        });
        EXPECT_GT(good, callsOfAProcess());
        expectLines(writer, good);
        RecordProperty(writer.name, good);
    }
}

// Who reads meanwhile sees one whole version or the other.
TEST_F(Writers, ThatReplaceShowNoMixture) {
    const int sizes[] = {300, 600};
    const int good = sumOfTwoProcesses([&](int process) {
        Points written, seen;
        for (int k = 0; k < sizes[process]; ++k) {
            CXYZ each(process == 0 ? u"A" : u"B", 0.0, 0.0, 0.0);
            written.Add(each);
        }
        int sum = 0;
        for (int i = 0; i < 2 * callsOfAProcess(); ++i) {
            sum += WriteCSVFile(&file, written, 0);
            EXPECT_EQ(ReadCSVFile(&file, seen, 1), 1);
            EXPECT_EQ(seen.GetSize(), sizes[seen[0].name == u"B"]);
            for (int k = 1; k < seen.GetSize(); ++k)
                EXPECT_EQ(seen[k].name, seen[0].name);
        }
        return ::testing::Test::HasFailure() ? -1000000 : sum;  // in the other process
    });
    EXPECT_GT(good, callsOfAProcess());
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
    RecordProperty("replaced", good);
}

// An appender that has opened the old file, and has not yet got it for itself, finds the new one.
TEST_F(Writers, WhoOpenedTheOldFileFindTheNewOne) {
    put("file", "old\n");
    put("new", "new\n");
    fieldscan::faults::atNextLock([&] { fs::rename(folder / "new", folder / "file"); });
    EXPECT_EQ(ScanFileAdd(file, point), 1);
    EXPECT_EQ(get("file"), "new\nP1,1.000000,2.000000,3.000000\n");
}

// A file that was not there when its replacement began is waited for too.
TEST_F(Writers, WhoMadeTheFileMeanwhileKeepIt) {
    CFile held;
    fieldscan::faults::atNextLock([&] {
        EXPECT_EQ(ScanFileOpen(&held, file), 1);
        EXPECT_EQ(held.Write("first\n", 6), 1);
    });
    EXPECT_EQ(WriteCSVFile(&file, points, 0), 0);
    EXPECT_EQ(get("file"), "first\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
}

// Where the file system has no locks, nobody takes the end of another one's line for a rest.
TEST_F(Writers, WithoutLocksLeaveUnfinishedLines) {
    put("file", "A,1,2");
    fieldscan::faults::arm(fieldscan::faults::lock, 1);
    EXPECT_EQ(ScanFileAdd(file, point), 1);
    EXPECT_TRUE(fieldscan::faults::hasHappened());
    EXPECT_EQ(get("file"), "A,1,2P1,1.000000,2.000000,3.000000\n");
    fieldscan::faults::arm(fieldscan::faults::none, 0);
}

CString shown;

TEST_F(Writers, GetASharingViolationAfterASecond) {
    put("file", "1 1\n");
    CFile held, second;
    ASSERT_EQ(held.Open(file, CFile::modeWrite), 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(second.Open(file, CFile::modeReadWrite), 0);
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(second.GetOpenFailure(), CFile::causeSharingViolation);
    EXPECT_GT(waited.count(), 0.5);
    EXPECT_LT(waited.count(), 5.0);
    EXPECT_EQ(ScanFileAdd(file, point), 0);
    EXPECT_EQ(WriteCSVFile(&file, points, 0), 0);
    const CKTImgMsg::Handler before =
        CKTImgMsg::SetHandler([](const CString& text, const CRect&) { shown += text; });
    EXPECT_EQ(CScanArea().Write(file), 0);
    CKTImgMsg::SetHandler(before);
    EXPECT_GE(shown.Find(file), 0) << "the message names the file";
    EXPECT_EQ(second.Open(file, CFile::modeRead), 1) << "readers do not wait";
    EXPECT_EQ(get("file"), "1 1\n");
}

}  // namespace
