// Several writers of one file at once, in processes and in threads. FIELDSCAN_TEST_CALLS sets how many calls
// each of two processes makes.
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "tests/faults/file_operations.h"

namespace fs = std::filesystem;

namespace {

using Writers = FileOperations;

int callsOfAProcess() {
    const char* const calls = std::getenv("FIELDSCAN_TEST_CALLS");
    return calls ? std::atoi(calls) : 100;
}

// What ScanFileAdd writes for the first of the points.
const std::string kLine = "longer_than_a_text_inside_A,0.000000,0.000000,0.500000\n";

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
    std::vector<Operation> writers = operations();
    writers.push_back({"scan file", appends, [&] {
                           CFile scan;
                           return ScanFileOpen(&scan, file) && scan.Write("P1,1,2,", 7) &&
                                  scan.Write("3\n", 2) && ScanFileClose(&scan);
                       }});
    for (const Operation& writer : writers) {
        if (writer.kind != appends)
            continue;
        prepare(writer, false);
        ASSERT_EQ(writer.run(), 1) << writer.name;
        std::string lines = get("file");
        const std::string line = lines.substr(lines.rfind('\n', lines.size() - 2) + 1);
        const int good = sumOfTwoProcesses([&](int) {
            std::atomic<int> sum{0};
            std::vector<std::thread> threads;
            for (int i = 0; i < kThreads; ++i)
                threads.emplace_back([&] {
                    for (int k = 0; k < callsOfAProcess() / kThreads; ++k)
                        sum += writer.run();
                });
            for (std::thread& thread : threads)
                thread.join();
            return sum.load();
        });
        EXPECT_GT(good, callsOfAProcess()) << writer.name;
        for (int i = 0; i < good; ++i)
            lines += line;
        EXPECT_EQ(get("file"), lines) << writer.name;
    }
}

// Who reads meanwhile sees one whole version or the other.
TEST_F(Writers, ThatReplaceShowNoMixture) {
    const int sizes[] = {300, 600};
    const int good = sumOfTwoProcesses([&](int process) {
        CArray<CXYZ, CXYZ&> written;
        written.SetSize(sizes[process]);
        for (int k = 0; k < written.GetSize(); ++k)
            written[k].name = process == 0 ? u"A" : u"B";
        int sum = 0;
        for (int i = 0; i < 2 * callsOfAProcess(); ++i) {
            sum += WriteCSVFile(&file, written, 0);
            if (ReadCSVFile(&file, back, 1) != 1 || back.IsEmpty())
                return -1000000;
            EXPECT_EQ(back.GetSize(), sizes[back[0].name == u"B"]);
            EXPECT_EQ(back[back.GetSize() - 1].name, back[0].name);
        }
        return HasFailure() ? -1000000 : sum;
    });
    EXPECT_GT(good, callsOfAProcess());
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
}

// An appender that has opened the old file, and has not yet got it for itself, finds the new one.
TEST_F(Writers, WhoOpenedTheOldFileFindTheNewOne) {
    put("file", "old\n");
    put("new", "new\n");
    faults::atNextLock([&] { fs::rename(folder / "new", folder / "file"); });
    EXPECT_EQ(ScanFileAdd(file, points[0]), 1);
    EXPECT_EQ(get("file"), "new\n" + kLine);
}

// A file that was not there when its replacement began is waited for too.
TEST_F(Writers, WhoMadeTheFileMeanwhileKeepIt) {
    CFile held;
    faults::atNextLock([&] {
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
    faults::arm(faults::lock, 1);
    EXPECT_EQ(ScanFileAdd(file, points[0]), 1);
    EXPECT_TRUE(faults::hasHappened());
    EXPECT_EQ(get("file"), "A,1,2" + kLine);
    faults::arm(faults::none, 0);
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
    EXPECT_EQ(ScanFileAdd(file, points[0]), 0);
    EXPECT_EQ(WriteCSVFile(&file, points, 0), 0);
    CKTImgMsg::SetHandler([](const CString& text, const CRect&) { shown += text; });
    EXPECT_EQ(CScanArea().Write(file), 0);
    EXPECT_GE(shown.Find(file), 0) << "the message names the file";
    EXPECT_EQ(second.Open(file, CFile::modeRead), 1) << "readers do not wait";
    EXPECT_EQ(get("file"), "1 1\n");
}

}  // namespace
