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

#include <functional>
#include <string>
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
    }
    // A file of each operation, in its place as "file".
    void prepare(const Operation& operation) {
        faults::arm(faults::none, 0);
        std::filesystem::remove(folder / "file");
        if (operation.kind == reads) {
            for (const Operation& writer : operations())
                if (writer.kind != reads && std::string(writer.name) == operation.name && writer.run() != 1)
                    FAIL() << writer.name;
        } else {
            put("file", old);
        }
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
    file = path("file");
    int injected = 0;
    CKTImgMsg::SetHandler([](const CString&, const CRect&) {});
    for (const Operation& operation : operations()) {
        for (const auto fault :
             {faults::open, faults::openFull, faults::read, faults::write, faults::writeHalf,
              faults::writeShort, faults::flush, faults::close, faults::replace}) {
            for (int call = 1;; ++call) {
                prepare(operation);
                const std::string before = get("file");
                faults::arm(fault, call);
                const int result = operation.run();
                const bool happened = faults::hasHappened();
                faults::arm(faults::none, 0);
                if (!happened)
                    break;
                ++injected;
                const auto where = [&] {
                    return std::string(operation.name) + ", fault " + std::to_string(fault) + ", call " +
                           std::to_string(call);
                };
                // A file that was read is closed without asking for more; nor is what rewriting opens first,
                // to see whether it may, and where no file can be made beside it the old one is written. A
                // file that may not be read may be appended to.
                const bool harmless = fault == faults::writeShort ||
                                      (fault == faults::close && operation.kind == reads) ||
                                      (fault == faults::close && operation.kind == rewrites && call == 1) ||
                                      (fault == faults::open && operation.kind == rewrites && call == 2) ||
                                      (fault == faults::open && operation.kind == appends);
                EXPECT_EQ(result, harmless ? 1 : 0) << where();
                const std::string after = get("file");
                const bool kept = operation.kind == overwrites || after == before ||
                                  (operation.kind == rewrites && result == 1) ||
                                  (operation.kind == appends && after.compare(0, before.size(), before) == 0);
                EXPECT_TRUE(kept) << where();
                EXPECT_EQ(faults::openCount(), 0) << where();
                EXPECT_FALSE(exists("file.new~")) << where();
                ASSERT_LT(call, 10000);
            }
        }
    }
    CKTImgMsg::SetHandler(nullptr);
    RecordProperty("injected", injected);
    EXPECT_GT(injected, 150);
}

// What throws here is a caller's own copy of an argument, or a list that the caller lets grow.
TEST_F(Faults, MemoryEnds) {
    file = path("file");
    std::vector<Operation> all = operations();
    CLeastSq engine, spoiled;
    CHelmert helmert;
    CPolyline line;
    CPolyline smooth;
    for (int i = 0; i < 40; ++i)
        line.AddVertex(CVertex(i % 7, i % 5, i, 0));
    const auto solve = [&] {
        int status = engine.Create(60, 20);
        for (int k = 0; status && k < 60 * 21; ++k)
            status = engine.SetObeq(k % 21, k * 7919 % 1000 * 0.01 + (k % 21 == k / 21 % 21)) && true;
        return status && engine.Solve() ? 1 : 0;
    };
    all.insert(all.end(), {{"adjustment", overwrites, solve},
                           {"adjustment grows", overwrites, [&] { return spoiled.SetObeq(0, 1.0); }},
                           {"Helmert", overwrites,
                            [&] {
                                const int pairs = helmert.SetPoints(points, points);
                                EXPECT_EQ(pairs, helmert.targetPoints.GetSize());
                                return pairs > 0 && helmert.CalPara();
                            }},
                           {"key sort", overwrites,
                            [&] {
                                CArray<double, double> keys;
                                CArray<int, int> order;
                                keys.SetSize(100);
                                keys[50] = 1.0;
                                QuickSortKey(keys, order, 1);
                                EXPECT_EQ(order.GetSize() % 100, 0);
                                return !order.IsEmpty();
                            }},
                           {"spline", overwrites,
                            [&] {
                                smooth = line;
                                return smooth.Spline(4);
                            }},
                           {"interpolation", overwrites, [&] {
                                smooth = line;
                                return smooth.InterpolateVertex(0.1);
                            }}});
    CKTImgMsg::SetHandler([](const CString&, const CRect&) {});
    for (const Operation& operation : all) {
        for (int call = 1;; call += 1 + call / 8) {
            prepare(operation);
            const std::string before = get("file");
            spoiled.Create(1, 1);
            faults::arm(faults::memory, call);
            int result = 0;
            try {
                result = operation.run();
            } catch (const std::bad_alloc&) {}
            const bool happened = faults::hasHappened();
            faults::arm(faults::none, 0);
            if (!happened)
                break;
            const std::string after = get("file");
            const bool kept = operation.kind == overwrites || after == before ||
                              (operation.kind == rewrites && result == 1) ||
                              (operation.kind == appends && after.compare(0, before.size(), before) == 0);
            EXPECT_TRUE(kept && faults::openCount() == 0) << operation.name << ", allocation " << call;
            EXPECT_TRUE(result == 0 || operation.kind != reads) << operation.name << ", allocation " << call;
        }
    }
    CKTImgMsg::SetHandler(nullptr);
    EXPECT_EQ(solve(), 1) << "objects that saw failures work on";
}

}  // namespace
