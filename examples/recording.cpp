// Records points as they are measured: a power cut costs only the point being written. After a restart the
// recorded points are there and a cut line is removed. A name that would not read back is refused.
//
// Prints:
//   0 points are there
//   P001        recorded
//   P002        recorded
//   P003        recorded
//   -- power cut, restart
//   3 points are there: P001, P002, P003
//   P004        recorded
//   kerb, left  refused
//   kerb left   recorded
//   5 points are there: P001, P002, P003, P004, kerb left
//   profile_7.csv
//     P001,5534218.440000,461873.150000,212.640000,PROFILE
//     P002,5534213.440000,461873.150000,212.740000,PROFILE
//     P003,5534208.440000,461873.150000,212.840000,PROFILE
//     P004,5534203.440000,461873.150000,212.940000,PROFILE
//     kerb left,5534203.440000,461876.150000,212.810000,PROFILE
#include <fieldscan/fieldscan.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

constexpr char kFile[] = "profile_7.csv";

std::string narrow(const CString& text) {
    char buffer[64];
    CStringToChar(text, buffer, sizeof buffer);
    return buffer;
}

// When ScanFileAdd returns 1, the point is on the medium.
bool record(const CString& name, double north, double east, double height) {
    CXYZ point(name, north, east, height);
    point.code = u"PROFILE";
    const bool recorded = ScanFileAdd(kFile, point) == 1;
    std::printf("%-10s  %s\n", narrow(name).c_str(), recorded ? "recorded" : "refused");
    return recorded;
}

// Reads the points that the job holds, and returns the name of the next one.
CString resume() {
    CString path(kFile);
    CArray<CXYZ, CXYZ&> points;
    if (!ReadCSVFile(&path, points, 0))  // 0: a missing file is made
        std::printf("the file is not readable to its end; ");
    std::printf("%d points are there", points.GetSize());
    for (int i = 0; i < points.GetSize(); ++i)
        std::printf("%s %s", i == 0 ? ":" : ",", narrow(points[i].name).c_str());
    std::printf("\n");
    return points.IsEmpty() ? CString(u"P001")
                            : CGetAppPath().MakeNextName(points[points.GetUpperBound()].name);
}

// Leaves the file as a power cut may: half of a line has reached the medium.
void cutPower() {
    std::ofstream(kFile, std::ios::app | std::ios::binary) << "P004,5534203.1";
    std::printf("-- power cut, restart\n");
}

void printFile() {
    std::printf("%s\n", kFile);
    std::ifstream file(kFile);
    for (std::string line; std::getline(file, line);)
        std::printf("  %s\n", line.c_str());
}

}  // namespace

int main() {
    std::remove(kFile);  // a new job
    CString name = resume();
    for (const double distance : {0.0, 5.0, 10.0}) {
        if (!record(name, 5534218.44 - distance, 461873.15, 212.64 + 0.02 * distance))
            return 1;
        StrPlusOne(name);
    }
    cutPower();

    name = resume();
    record(name, 5534203.44, 461873.15, 212.94);
    record(u"kerb, left", 5534203.44, 461876.15, 212.81);  // a comma ends the name when it is read
    record(u"kerb left", 5534203.44, 461876.15, 212.81);
    resume();
    printFile();
}
