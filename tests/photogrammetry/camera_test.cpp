// Camera record and camera file; instrument camera records.
#include <fieldscan/instrument_camera.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/temp_folder.h"

namespace {

struct CameraFile : public TempFolder {
    CCamera camera;
    // That of the pages, with a second mark.
    std::string sample = get(FIELDSCAN_DOCS "/samples/camera.txt") + kanji() +
                         "\t12.500000\t-7.000000\t// coordinates of fiducial mark 1 [mm]\n";
    CameraFile() { sample.replace(sample.find("1\t\t\t\t\t// number of fid"), 1, "2"); }
};

TEST_F(CameraFile, IsWrittenAsItWasRead) {
    put("in", sample);
    EXPECT_EQ(camera.Read(path("in")), 1);
    EXPECT_EQ(camera.marks[1].name, CString(kanji().c_str()));
    EXPECT_EQ(camera.markNames[1], CString(kanji().c_str()));
    camera.title = u"left";
    camera.dist.AddDist(1, 2);
    camera.marks[0].name = u"not M1";
    camera.markNames.RemoveAt(1);
    const CCamera copy(camera);
    EXPECT_EQ(copy.title, CString(u"left"));
    EXPECT_EQ(copy.dist.radius[0], 1.0);
    EXPECT_EQ(copy.dist.dist[0], 2.0);
    EXPECT_EQ(copy.innType, 1);
    put("out.cam", sample + sample);  // longer than what replaces it
    EXPECT_EQ(copy.Write(path("out.cam")), 1);
    EXPECT_EQ(get("out.cam"), sample) << "neither title nor table";
}

TEST_F(CameraFile, KeepsWhatWasReadOfAFileThatIsCut) {
    for (std::size_t lines = 0, end = 0; lines < 14; ++lines, end = sample.find('\n', end) + 1) {
        put("cut", sample.substr(0, end));
        camera.title = u"left";
        EXPECT_EQ(camera.Read(path("cut")), 0) << lines;
        EXPECT_EQ(camera.innType, 0) << lines;
        EXPECT_TRUE(camera.title.IsEmpty()) << lines;
        EXPECT_EQ(camera.marks.GetSize(), lines == 13) << lines;
        EXPECT_EQ(camera.Write(path("cut")), 1);  // the same lines, but for the number of marks
        EXPECT_EQ(get("cut").compare(0, end, sample, 0, end) == 0, lines < 12) << lines;
    }
}

TEST_F(CameraFile, ReadsFilesOfEveryKind) {
    const std::string none = "50 mm\r\n 1e-1\n-.2,\n0\n0\n.01\n.02\n",
                      same = "50 0.1 -0.2 0 0 0 0 0.01 0.02 ", ten = "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n";
    const std::pair<std::string, std::string> rows[] = {
        {none + "0\nx\n1 2\n", "1 " + same + "0"},
        {none + "0\n5\n1 2\n3\n\nx 7\n 4 5 6\n8 9\n", "1 " + same + "0~1/2~4/5"},
        {none + "0\n2147483647\n1 2\n3 4", "1 " + same + "0~1/2~3/4"},
        {none + "2147483647\nA 1 2\n", "0 " + same + "0|1/1/2"},
        {none + "2\n" + kanji() + " 1 2\nlong x 4\n\n1 2\n", "1 " + same + "1|1/1/2|4/0/0"},
        {none + "1\n \n", "0 " + same + "0"},
        {none + "1\nA 1 2", "1 " + same + "1|1/1/2"},
        {"x\ny\nz\nm\nn\nx\ny\nm\n2\n3 4\n", "1 0 0 0 0 0 0 0 0 0 0~3/4"},
        {"1\n \n3\n", "0 1 0 0 0 0 0 0 0 0 0"},
        {"1\n2\n3\n1\n \n.5\n.25\n0\n", "0 1 2 3 1 4 0 0 0 0 0"},
        {"1\n2\n3\n1\n2\n7\n \n.5\n.25\n0\n", "0 1 2 3 1 4 7 0 0 0 0"},
        {"1\n2\n3\n4\n12\n" + ten + "11\nx\n.5\n.25\n0\n", "1 1 2 3 4 8 1 10 0.5 0.25 0"},
        {"1\n2\n3\n7\n-1\n.5\n.25\n-1\n", "1 1 2 3 0 0 0 0 0.5 0.25 0"},
        {"1\n2\n3\n1\n1000000\n" + ten, "0 1 2 3 1 4 1 10 0 0 0"}};
    for (const auto& [bytes, expected] : rows) {
        put("in", bytes);
        std::ostringstream text;
        const CDist& dist = camera.dist;
        text << camera.Read(path("in")) << ' ' << camera.focal << ' ' << camera.pp.x << ' ' << camera.pp.y
             << ' ' << dist.model << ' ' << dist.numPara << ' ' << dist.para[0] << ' ' << dist.para[9] << ' '
             << camera.res.x << ' ' << camera.res.y << ' ' << camera.innType;
        for (int i = 0; i < camera.marks.GetSize(); ++i)
            text << '|' << camera.markNames[i].GetLength() << '/' << camera.marks[i].x << '/'
                 << camera.marks[i].y;
        for (int i = 0; i < dist.radius.GetSize(); ++i)
            text << '~' << dist.radius[i] << '/' << dist.dist[i];
        EXPECT_EQ(text.str(), expected) << bytes;
    }
}

TEST_F(CameraFile, ReportsFailures) {
    camera.focal = 1;
    for (const CString& bad : {CString(), path("none/x"), CString(folder.c_str())}) {
        EXPECT_EQ(camera.Write(bad), 0);
        EXPECT_EQ(camera.Read(bad), 0);
    }
    EXPECT_EQ(camera.Write(u"/dev/full"), 0);
    EXPECT_EQ(camera.focal, 1.0) << "not opened, not touched";
    EXPECT_EQ(camera.Read(u"/proc/self/mem"), 0);
    EXPECT_EQ(camera.focal, 0.0);
}

TEST_F(CameraFile, HasAsManyParametersAsThereAre) {
    for (const auto& [parameters, count] : {std::pair(2147483647, "\n10"), {-1, "\n0"}}) {
        camera.dist.numPara = parameters;
        EXPECT_EQ(camera.Write(path("x")), 1);
        EXPECT_NE(get("x").find(count + std::string("\t\t\t\t\t// number of dis")), std::string::npos);
    }
}

TEST(InstrumentCamera, ImagesInAnArrayBeginAtZero) {
    CImgTS instrument;
    for (const int size : {3, 1, 3}) {  // the last time in storage that was used
        instrument.images.SetSize(size);
        CImgVH& last = instrument.images[size - 1];
        EXPECT_EQ(last.v, size == 1 ? 5 : 0);
        EXPECT_EQ(last.h, size == 1 ? 5 : 0);
        instrument.images[0].v = instrument.images[0].h = last.v = last.h = 5;
        EXPECT_EQ(CImgVH(last).h, 5);
    }
}

}  // namespace
