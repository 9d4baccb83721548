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
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back(work, i);
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
    int good[kThreads] = {};
    inThreads([&](int thread) {
        const std::string name = std::to_string(thread);
        CString points = path("points" + name);
        CArray<CXYZ, CXYZ&> list, back;
        for (int i = 0; i < 200; ++i)
            good[thread] += ScanFileAdd(points, CXYZ(u"P", i, thread, 0));
        good[thread] += ReadCSVFile(&points, back, 1) && back.GetSize() == 200 && back[199].y == thread;
        good[thread] += CCamera().Write(path("camera" + name)) + CCamera().Read(path("camera" + name));
        good[thread] += CScanArea().Write(path("area" + name)) + CScanArea().Read(path("area" + name));
        good[thread] += CTSUnit().Write(path("units" + name)) + CTSUnit().Read(path("units" + name));
        CGetAppPath folders;
        folders.GetSDCARDPath();
        good[thread] += !folders.GetExePath().IsEmpty();
        CKTImgMsg::SetHandler(CKTImgMsg::SetHandler(nullptr));
    });
    for (const int each : good)
        EXPECT_EQ(each, 208);
}

}  // namespace
