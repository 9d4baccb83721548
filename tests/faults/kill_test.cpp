// A program that is killed while it records loses no point whose call had returned, and no record that it was
// about to replace.
#include <fieldscan/point_files.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/scan_result_files.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <random>

#include "tests/temp_folder.h"

namespace {

class Kill : public TempFolder {
protected:
    // Runs `step`(0), (1), ... in another program until it is killed, `microseconds` after its first step.
    // Returns how many steps had ended.
    static int stepsUntilKilled(unsigned long microseconds, const std::function<void(int)>& step) {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            for (int i = 0;; ++i) {
                step(i);
                if (write(ends[1], &i, sizeof i) != sizeof i)
                    _exit(1);
            }
        }
        close(ends[1]);
        int last = -1, done = 0;
        done += read(ends[0], &last, sizeof last) == sizeof last;
        usleep(static_cast<useconds_t>(microseconds));
        kill(child, SIGKILL);
        while (read(ends[0], &last, sizeof last) == sizeof last)
            ++done;
        close(ends[0]);
        waitpid(child, nullptr, 0);
        EXPECT_EQ(last, done - 1);
        return done;
    }
    std::mt19937 random{20261121};
};

CXYZ point(int i) { return CXYZ(CString(u"P") + static_cast<unsigned short>('A' + i % 26), i, -i, i * 0.5); }

TEST_F(Kill, LosesNoPointWhoseCallHadReturned) {
    int recorded = 0;
    for (int round = 0; round < 200; ++round) {
        const std::string name = "scan" + std::to_string(round);
        CString file = path(name);
        const bool versioned = round % 2 == 1;
        const auto record = [&](const CXYZ& each) {
            return versioned ? KVX4NP_CSVFileAdd(file, each, 4, 5, u"") : ScanFileAdd(file, each);
        };
        CArray<CXYZ, CXYZ&> points;
        CArray<double, double> first, second;
        CStringArray texts;
        const auto readBack = [&] {
            return versioned ? KVX4NP_ReadCSVFile(file, points, first, second, texts)
                             : ReadCSVFile(&file, points, 1);
        };
        const int done = stepsUntilKilled(random() % 8000, [&](int i) { record(point(i)); });
        recorded += done;
        // The program that starts again appends at once; a line that was cut off becomes no point.
        const bool cut = round % 4 < 2;
        if (cut)
            put(name, get(name) + "PX,1.0");
        ASSERT_EQ(record(CXYZ(u"next", 1, 2, 3)), 1) << round;
        ASSERT_EQ(readBack(), 1) << round;
        const int inFlight = points.GetSize() - done - 1;  // written, but its call had not returned
        ASSERT_TRUE(inFlight == 0 || inFlight == 1) << round;
        for (int i = 0; i < done; ++i)
            ASSERT_TRUE(points[i].name == point(i).name && points[i].z == i * 0.5) << round << ' ' << i;
        EXPECT_EQ(points[points.GetSize() - 1].name, CString(u"next")) << round;
    }
    RecordProperty("recorded", recorded);
    EXPECT_GT(recorded, 200);
}

TEST_F(Kill, LeavesTheOldRecordOrTheNewOne) {
    CScanArea records[2];
    for (int i = 0; i < 2; ++i) {
        records[i].columnCount = i;
        for (int k = 0; k < 2000 * (i + 1); ++k)
            records[i].imageNames.Add(u"image.jpg");
    }
    ASSERT_EQ(records[0].Write(path("area")), 1);
    for (int round = 0; round < 150; ++round) {
        stepsUntilKilled(random() % 8000, [&](int i) { records[i % 2].Write(path("area")); });
        CScanArea read;
        ASSERT_EQ(read.Read(path("area")), 1);
        ASSERT_EQ(read.imageNames.GetSize(), records[read.columnCount].imageNames.GetSize()) << round;
        ASSERT_LE(std::distance(std::filesystem::directory_iterator(folder), {}), 2)
            << "one file left at most";
    }
    ASSERT_EQ(records[0].Write(path("area")), 1);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "and taken away";
}

}  // namespace
