// Different objects used by different threads at once: all computations and all files. Under the thread
// sanitizer (preset tsan) this finds what they share.
#include <fieldscan/camera.h>
#include <fieldscan/message.h>
#include <fieldscan/point_files.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/scan_result_files.h>
#include <fieldscan/storage_paths.h>
#include <fieldscan/unit_settings.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/digest/digest.h"
#include "tests/temp_folder.h"

namespace {

constexpr int kThreads = 8;

template <class Work>
void inThreads(Work work) {
    std::thread threads[kThreads];
    for (int i = 0; i < kThreads; ++i)
        threads[i] = std::thread(work, i);
    for (std::thread& thread : threads)
        thread.join();
}

std::vector<std::uint64_t> hashes() {
    std::vector<std::uint64_t> all;
    for (const Family* family = Family::first; family; family = family->next)
        if (family->tolerance == kExact)
            all.push_back(family->results().hash());
    return all;
}

TEST(Threads, ComputeTheSame) {
    std::vector<std::uint64_t> results[kThreads];
    inThreads([&](int i) { results[i] = hashes(); });
    for (const auto& each : results)
        EXPECT_EQ(each, results[0]);
    EXPECT_GT(results[0].size(), 10u);
}

using ThreadFiles = TempFolder;

TEST_F(ThreadFiles, AreTheirOwn) {
    inThreads([&](int thread) {
        const std::string name = std::to_string(thread);
        CString points = path("points" + name);
        CArray<CXYZ, CXYZ&> back;
        for (int i = 0; i < 200; ++i)
            EXPECT_EQ(ScanFileAdd(points, CXYZ(u"P", i, thread, 0)), 1);
        EXPECT_EQ(ReadCSVFile(&points, back, 1), 1);
        EXPECT_EQ(back.GetSize(), 200);
        EXPECT_EQ(back[199].y, thread);
        EXPECT_EQ(CCamera().Write(path("camera" + name)), 1);
        EXPECT_EQ(CCamera().Read(path("camera" + name)), 1);
        EXPECT_EQ(CScanArea().Write(path("area" + name)), 1);
        EXPECT_EQ(CScanArea().Read(path("area" + name)), 1);
        EXPECT_EQ(CTSUnit().Write(path("units" + name)), 1);
        EXPECT_EQ(CTSUnit().Read(path("units" + name)), 1);
        CGetAppPath folders;
        folders.GetSDCARDPath();
        EXPECT_FALSE(folders.GetExePath().IsEmpty());
        CKTImgMsg::SetHandler(CKTImgMsg::SetHandler(nullptr));
    });
}

}  // namespace
