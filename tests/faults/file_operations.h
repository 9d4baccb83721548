// Every operation on files, for tests that let them fail.
#ifndef FIELDSCAN_TESTS_FAULTS_FILE_OPERATIONS_H
#define FIELDSCAN_TESTS_FAULTS_FILE_OPERATIONS_H

#include <fieldscan/fieldscan.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/platform/faulty_files.h"
#include "tests/temp_folder.h"

namespace faults = fieldscan::faults;

class FileOperations : public TempFolder {
protected:
    enum Kind { reads, appends, appendsMany, rewrites, overwrites };
    struct Operation {
        const char* name;
        Kind kind;
        std::function<int()> run;
    };

    void SetUp() override {
        TempFolder::SetUp();
        for (int i = 0; i < 3000; ++i) {  // more than a buffer holds
            CXYZ point(CString(u"longer_than_a_text_inside_") + static_cast<unsigned short>('A' + i % 26), i,
                       -i, 0.5);  // its name has to be allocated
            points.Add(point);
            numbers.Add(i);
            texts.Add(u"text");
            area.imageNames.Add(u"image.jpg");
        }
        camera.marks.Copy(points);
        EXPECT_EQ(range.AddPoint(points[0]), 1);
        file = path("file");
        CKTImgMsg::SetHandler([](const CString&, const CRect&) {});
    }
    void TearDown() override {
        CKTImgMsg::SetHandler(nullptr);
        TempFolder::TearDown();
    }
    // Makes a file of the operation, or removes it.
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
    // What a call that failed may leave: the file as it was; of a list the lines that are whole.
    bool kept(const Operation& operation, bool present) const {
        const std::string after = get("file");
        if (after == before && exists("file") == present)
            return true;
        const bool wholeLines =
            after == wanted.substr(0, after.size()) && (after.empty() || after.back() == '\n');
        return wholeLines && ((operation.kind == overwrites && (present || !after.empty())) ||
                              (operation.kind == appendsMany && after.size() > before.size()));
    }
    // No other file is left in the folder, and no file is open.
    bool tidy() const {
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.path().filename() != "file")
                return false;
        return faults::openCount() == openBefore;
    }
    std::vector<Operation> operations() {
        static double v[6];
        return {{"points", rewrites, [&] { return WriteCSVFile(&file, points, 0); }},
                {"points", reads, [&] { return ReadCSVFile(&file, back, 1); }},
                {"points", reads, [&] { return ReadOccInfoFile(&file, back, 0); }},
                {"points after others", appendsMany, [&] { return WriteCSVFile(&file, points, 1); }},
                {"image coordinates", rewrites, [&] { return WriteImcFile(&file, &name, size, points); }},
                {"image coordinates", reads, [&] { return ReadImcFile(&file, &name, size, back, 1); }},
                {"scan point", appends, [&] { return ScanFileAdd(file, points[0]); }},
                {"scan point with text", appends, [&] { return ScanFileAdd(file, points[0], u"text"); }},
                {"scan points", appendsMany, [&] { return ScanFileAdd(file, points); }},
                {"versioned point", appends, [&] { return KVX4NP_CSVFileAdd(file, points[0], 1, 2, u""); }},
                {"versioned points", overwrites,
                 [&] { return KVX4NP_CSVFileWrite(file, points, numbers, numbers, texts, 0); }},
                {"versioned points", reads,
                 [&] { return KVX4NP_ReadCSVFile(file, back, numbersBack, moreBack, textsBack); }},
                {"versioned points after others", appendsMany,
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
    int openBefore = faults::openCount();
    std::string before;
    std::string wanted;  // what the operation leaves where nothing fails
    CString file, name = u"image";
    CSize size;
    CArray<CXYZ, CXYZ&> points, back;
    CArray<double, double> numbers, numbersBack, moreBack;
    CStringArray texts, textsBack;
    CCamera camera;
    CScanArea area;
    CRange range;
};

#endif
