// Every file operation with every fault of the medium: it fails, keeps what was there, and leaves no file
// open.
#include <fieldscan/camera.h>
#include <fieldscan/helmert.h>
#include <fieldscan/key_sort.h>
#include <fieldscan/least_squares.h>
#include <fieldscan/message.h>
#include <fieldscan/panorama_files.h>
#include <fieldscan/point_files.h>
#include <fieldscan/range.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/scan_result_files.h>
#include <fieldscan/unit_settings.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/platform/faulty_files.h"
#include "tests/temp_folder.h"

namespace faults = fieldscan::faults;

namespace {

class Faults : public TempFolder {
protected:
    enum Kind { reads, appends, rewrites, overwrites };
    struct Operation {
        const char* name;
        Kind kind;
        std::function<int()> run;
    };

    void SetUp() override {
        TempFolder::SetUp();
        for (int i = 0; i < 3000; ++i) {  // more than a buffer holds
            CXYZ point(CString(u"P") + static_cast<unsigned short>('A' + i % 26), i, -i, 0.5);
            points.Add(point);
            numbers.Add(i);
            texts.Add(u"text");
            area.imageNames.Add(u"image.jpg");
        }
        camera.marks.Copy(points);
        range.AddPoint(points[0]);
        file = path("file");
        CKTImgMsg::SetHandler([](const CString&, const CRect&) {});
    }
    void TearDown() override {
        CKTImgMsg::SetHandler(nullptr);
        TempFolder::TearDown();
    }
    // A file of each operation, in its place as "file", or none there.
    void prepare(const Operation& operation, bool present) {
        faults::arm(faults::none, 0);
        std::filesystem::remove(folder / "file");
        if (!present) {
        } else if (operation.kind == reads) {
            for (const Operation& writer : operations())
                if (writer.kind != reads && std::string(writer.name) == operation.name && writer.run() != 1)
                    FAIL() << writer.name;
        } else {
            put("file", old);
        }
        before = get("file");
    }
    // Whether a call that failed left what it may leave, and no file open.
    bool kept(const Operation& operation, bool present, int result) const {
        const std::string after = get("file");
        return faults::openCount() == 0 && !exists("file.new~") &&
               (operation.kind == overwrites || (after == before && exists("file") == present) ||
                (operation.kind == rewrites && result == 1) ||
                (operation.kind == appends && after.compare(0, before.size(), before) == 0));
    }
    std::vector<Operation> operations() {
        static double v[6];
        return {{"points", rewrites, [&] { return WriteCSVFile(&file, points, 0); }},
                {"points", reads, [&] { return ReadCSVFile(&file, back, 1); }},
                {"points", reads, [&] { return ReadOccInfoFile(&file, back, 0); }},
                {"points behind others", appends, [&] { return WriteCSVFile(&file, points, 1); }},
                {"image coordinates", rewrites, [&] { return WriteImcFile(&file, &name, size, points); }},
                {"image coordinates", reads, [&] { return ReadImcFile(&file, &name, size, back, 1); }},
                {"scan point", appends, [&] { return ScanFileAdd(file, points[0]); }},
                {"scan point with text", appends, [&] { return ScanFileAdd(file, points[0], u"text"); }},
                {"scan points", appends, [&] { return ScanFileAdd(file, points); }},
                {"versioned point", appends, [&] { return KVX4NP_CSVFileAdd(file, points[0], 1, 2, u""); }},
                {"versioned points", overwrites,
                 [&] { return KVX4NP_CSVFileWrite(file, points, numbers, numbers, texts, 0); }},
                {"versioned points", reads,
                 [&] { return KVX4NP_ReadCSVFile(file, back, numbersBack, moreBack, textsBack); }},
                {"versioned points behind others", appends,
                 [&] { return KVX4NP_CSVFileWrite(file, points, numbers, numbers, texts, 1); }},
                {"camera", rewrites, [&] { return camera.Write(file); }},
                {"camera", reads, [&] { return CCamera().Read(file); }},
                {"scan area", rewrites, [&] { return area.Write(file); }},
                {"scan area", reads, [&] { return CScanArea().Read(file); }},
                {"scan area 2", rewrites, [&] { return area.Write2(file); }},
                {"scan area 2", reads, [&] { return CScanArea().Read2(file); }},
                {"panorama", rewrites, [&] { return KVX4NP_WritePanoramaInfo(file, 1, 2, 3, 4); }},
                {"panorama", reads, [&] { return KVX4NP_ReadPanoramaInfo(file, v[0], v[1], v[2], v[3]); }},
                {"orientation", rewrites, [&] { return WriteExtFile(file, 1, 2, 3, 4, 5, 6); }},
                {"orientation", reads, [&] { return ReadExtFile(file, v[0], v[1], v[2], v[3], v[4], v[5]); }},
                {"units", rewrites, [&] { return CTSUnit().Write(file); }},
                {"units", reads, [&] { return CTSUnit().Read(file); }},
                {"range", rewrites, [&] { return range.Write(file, RANGE_MATH, RANGE_USFEET); }},
                {"range", reads, [&] { return CRange().Read(file); }}};
    }

    const std::string old = "what was there before\n";
    std::string before;
    CString file, name = u"image";
    CSize size;
    CArray<CXYZ, CXYZ&> points, back;
    CArray<double, double> numbers, numbersBack, moreBack;
    CStringArray texts, textsBack;
    CCamera camera;
    CScanArea area;
    CRange range;
};

TEST_F(Faults, LoseNothing) {
    int injected = 0;
    for (const Operation& operation : operations()) {
        for (const bool present : {true, false}) {
            prepare(operation, present);
            if (operation.kind != appends && operation.kind != rewrites ? !present : operation.run() != 1)
                continue;  // a list is added to an existing file alone
            for (const auto fault :
                 {faults::open, faults::openFull, faults::read, faults::write, faults::writeHalf,
                  faults::writeShort, faults::flush, faults::close, faults::replace}) {
                for (int call = 1;; ++call) {
                    prepare(operation, present);
                    faults::arm(fault, call);
                    const int result = operation.run();
                    const bool happened = faults::hasHappened();
                    faults::arm(faults::none, 0);
                    if (!happened)
                        break;
                    ++injected;
                    // A file that was read is closed without asking for more; nor is what rewriting opens
                    // first, to see whether it may, and where no file can be made beside it the old one is
                    // written. A file that may not be read may be appended to.
                    const bool harmless =
                        fault == faults::writeShort || (fault == faults::close && operation.kind == reads) ||
                        (fault == faults::close && operation.kind == rewrites && call == 1) ||
                        (fault == faults::open && operation.kind == rewrites && call == 2) ||
                        (fault == faults::openFull && operation.kind == rewrites && call == 2 && !present) ||
                        (fault == faults::open && operation.kind == appends);
                    EXPECT_TRUE(result == harmless && kept(operation, present, result))
                        << operation.name << ", fault " << fault << ", call " << call << ", result " << result
                        << (present ? "" : ", no file before");
                    ASSERT_LT(call, 10000);
                }
            }
        }
    }
    RecordProperty("injected", injected);
    EXPECT_GT(injected, 200);
}

// Places that every system has, by every operation.
TEST_F(Faults, PlacesThatRefuse) {
    for (const CString& place : {CString(u"/dev/full"), CString(u"/dev/zero"), CString(folder.c_str()),
                                 path("none/file"), path(std::string(5000, 'a'))}) {
        file = place;
        for (const Operation& operation : operations())
            // Both give bytes without end, and one takes what is written.
            if (file != (operation.kind == reads ? u"/dev/full" : u"/dev/zero")) {
                EXPECT_EQ(operation.run() + faults::openCount(), 0) << operation.name;
            }
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

// In a folder where no file can be made, what may be written is written; nothing else is touched.
TEST_F(Faults, FolderWithoutRights) {
    namespace fs = std::filesystem;
    const bool root = geteuid() == 0;
    for (const Operation& operation : operations()) {
        for (const int rights : {0666, 0444, 0}) {  // 0: no file
            if (operation.kind == reads)
                continue;
            prepare(operation, rights != 0);
            if (rights)
                fs::permissions(folder / "file", static_cast<fs::perms>(rights));
            fs::permissions(folder, static_cast<fs::perms>(0555));
            ASSERT_EQ(root ? seteuid(65534) : 0, 0);
            const int result = operation.run();
            ASSERT_EQ(root ? seteuid(0) : 0, 0);
            fs::permissions(folder, static_cast<fs::perms>(0755));
            EXPECT_TRUE(result == (rights == 0666) && (get("file") != before) == (rights == 0666) &&
                        kept(operation, rights != 0, result))
                << operation.name << ' ' << rights;
        }
    }
}

TEST_F(Faults, FullMedium) {
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("none", folder.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "no right to mount a small medium";
    for (const Operation& operation : operations()) {
        if (operation.kind == reads)
            continue;
        prepare(operation, true);
        put("rest", std::string(65536, 'x'));
        const int result = operation.run();
        const bool fits = operation.kind == appends && get("file").size() < 4096;  // into the page of the old
        EXPECT_TRUE(result == fits && kept(operation, true, result)) << operation.name;
        std::filesystem::remove(folder / "rest");
    }
    umount2(folder.c_str(), MNT_DETACH);
}

// What throws here is a caller's own copy of an argument, or a list that the caller lets grow.
TEST_F(Faults, MemoryEnds) {
    std::vector<Operation> all = operations();
    CLeastSq engine, spoiled;
    CHelmert helmert;
    CPolyline line, smooth;
    CArray<int, int> order;
    for (int i = 0; i < 40; ++i)
        line.AddVertex(CVertex(i % 7, i % 5, i, 0));
    const auto solve = [&] {
        int status = engine.Create(60, 20);
        for (int k = 0; status && k < 60 * 21; ++k)
            status = engine.SetObeq(k % 21, k * 7919 % 1000 * 0.01 + (k % 21 == k / 21 % 21)) && true;
        return status && engine.Solve() ? 1 : 0;
    };
    const auto match = [&] {
        const int pairs = helmert.SetPoints(points, points);
        EXPECT_EQ(pairs, helmert.targetPoints.GetSize());
        return pairs > 0 && helmert.CalPara();
    };
    const auto sort = [&] {
        QuickSortKey(numbers, order, 1);
        EXPECT_EQ(order.GetSize() % numbers.GetSize(), 0);
        return order.IsEmpty() ? 0 : 1;
    };
    const std::pair<const char*, std::function<int()>> computations[] = {
        {"adjustment", solve},
        {"adjustment grows", [&] { return spoiled.SetObeq(0, 1.0); }},
        {"Helmert", match},
        {"adjustment made", [] { return CLeastSq(20).Create(30, 20); }},
        {"key sort", sort},
        {"shooting grid", [] { return CScanArea().CalShootAng(CWPK(1, 0, 1), CWPK(2, 0, 3)); }},
        {"spline", [&] { return (smooth = line).Spline(4); }},
        {"interpolation", [&] { return (smooth = line).InterpolateVertex(0.1); }}};
    for (const auto& [what, run] : computations)
        all.push_back({what, overwrites, run});
    for (const Operation& operation : all) {
        for (int call = 1, present = 1; present >= 0; call += 1 + call / 8) {
            prepare(operation, present);
            spoiled.Create(1, 1);
            faults::arm(faults::memory, call);
            int result = 0;
            try {
                result = operation.run();
            } catch (const std::bad_alloc&) {}
            const bool happened = faults::hasHappened();
            faults::arm(faults::none, 0);
            if (!happened) {  // once more where no file was before
                present = operation.kind == appends || operation.kind == rewrites ? present - 1 : -1;
                call = 0;
                continue;
            }
            EXPECT_TRUE(kept(operation, present, result) && (present || result == 1 || !exists("file")) &&
                        (result == 0 || operation.kind != reads))
                << operation.name << ", allocation " << call;
        }
    }
    EXPECT_EQ(solve(), 1) << "objects that saw failures work on";
}

}  // namespace
