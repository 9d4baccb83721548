// Races of point files against fmt, fast_float and the C library. The library's points are CXYZ, those of the
// peers records of std::string and doubles.
#include <fast_float/fast_float.h>
#include <fcntl.h>
#include <fieldscan/point_files.h>
#include <fieldscan/scan_result_files.h>
#include <fmt/compile.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "benchmarks/race.h"

namespace {

constexpr std::size_t kBlock = 65536;

struct Point {
    std::string name;
    double x, y, z;
};
using Points = std::vector<Point>;

Points pointsOf(int count) {
    std::mt19937_64 engine(17);
    const auto coordinate = [&engine](double middle, double size) {  // to 0.1 mm, as they are measured
        const double offset = std::uniform_real_distribution<double>(-size, size)(engine);
        return std::round((middle + offset) * 1e4) / 1e4;
    };
    Points points;
    for (int k = 0; k < count; ++k)
        points.push_back({"P" + std::to_string(k + 1), coordinate(4470000.0, 500.0),
                          coordinate(5320000.0, 500.0), coordinate(450.0, 30.0)});
    return points;
}

CXYZ ours(const Point& p) { return CXYZ(CString(p.name.c_str()), p.x, p.y, p.z); }

void writeByFmt(const char* path, const Points& points) {
    const int file = open(path, O_CREAT | O_WRONLY | O_TRUNC, 0644);
    static char block[kBlock];
    char* end = block;
    const auto flush = [&] {
        require(write(file, block, static_cast<std::size_t>(end - block)) == end - block, path);
        end = block;
    };
    for (const Point& p : points) {
        if (static_cast<std::size_t>(end - block) > kBlock - 256)  // longer than any line here
            flush();
        end = fmt::format_to(end, FMT_COMPILE("{},{:.6f},{:.6f},{:.6f}\n"), p.name, p.x, p.y, p.z);
    }
    flush();
    close(file);
}

void writeLine(std::FILE* file, const Point& p) {
    std::fprintf(file, "%s,%.6f,%.6f,%.6f\n", p.name.c_str(), p.x, p.y, p.z);
}

void writeByFprintf(const char* path, const Points& points) {
    std::FILE* file = std::fopen(path, "wb");
    for (const Point& p : points)
        writeLine(file, p);
    std::fclose(file);
}

void readLine(const char* line, const char* end, Points& points) {
    const char* comma =
        static_cast<const char*>(std::memchr(line, ',', static_cast<std::size_t>(end - line)));
    if (!comma)
        return;
    Point& p = points.emplace_back();
    p.name.assign(line, comma);
    const char* at = comma;
    for (double* value : {&p.x, &p.y, &p.z})
        at = fast_float::from_chars(at + 1, end, *value).ptr;
}

// The part of a line at the end of a block moves to the start of the next one.
void readByFastFloat(const char* path, Points& points) {
    const int file = open(path, O_RDONLY);
    static char block[2 * kBlock];
    std::size_t kept = 0;
    for (ssize_t got; (got = read(file, block + kept, kBlock)) > 0;) {
        const char *line = block, *end = block + kept + got;
        while (const char* stop =
                   static_cast<const char*>(std::memchr(line, '\n', static_cast<std::size_t>(end - line)))) {
            readLine(line, stop, points);
            line = stop + 1;
        }
        kept = static_cast<std::size_t>(end - line);
        std::memmove(block, line, kept);
    }
    close(file);
}

void readByAtof(const char* path, Points& points) {
    std::FILE* file = std::fopen(path, "rb");
    char line[256];
    while (std::fgets(line, sizeof line, file)) {
        const char* name = std::strtok(line, ",\n");
        double values[3] = {};
        for (double& value : values)
            if (const char* field = std::strtok(nullptr, ",\n"))
                value = std::atof(field);
        if (name)
            points.push_back({name, values[0], values[1], values[2]});
    }
    std::fclose(file);
}

std::string contents(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void requireEqual(const CArray<CXYZ, CXYZ&>& a, const Points& b, const std::string& what) {
    require(static_cast<std::size_t>(a.GetSize()) == b.size(), what);
    for (int i = 0; i < a.GetSize(); ++i) {
        const Point& p = b[static_cast<std::size_t>(i)];
        require(a[i].name.Compare(CString(p.name.c_str())) == 0 && a[i].x == p.x && a[i].y == p.y &&
                    a[i].z == p.z,
                what);
    }
}

void raceCsv(Races& races) {
    const std::string writing = "WriteCSVFile, a million points", reading = "ReadCSVFile, a million points";
    if (!races.wanted(writing) && !races.wanted(reading))
        return;
    const Points points = pointsOf(races.scaled(1000000));
    const std::string file = scratchFile("points.csv");
    const char* path = file.c_str();
    CString ourPath(path);
    CArray<CXYZ, CXYZ&> ourPoints, ourRead;
    ourPoints.SetSize(static_cast<int>(points.size()));
    for (int i = 0; i < ourPoints.GetSize(); ++i)
        ourPoints[i] = ours(points[static_cast<std::size_t>(i)]);

    const Contender write = {"WriteCSVFile",
                             [&] { require(WriteCSVFile(&ourPath, ourPoints, 0) == 1, writing); }};
    const Contender fmt = {"fmt into 64 KiB", [&] { writeByFmt(path, points); }};
    const Contender printf = {"fprintf", [&] { writeByFprintf(path, points); }};
    write.run();
    const std::string wanted = contents(path);
    for (const Contender& peer : {fmt, printf}) {
        peer.run();
        require(contents(path) == wanted, peer.name);
    }
    if (races.wanted(writing))
        races.race(writing, write, {Peers{fmt}, Peers{printf}});
    if (!races.wanted(reading))
        return;

    Points theirRead;
    const auto empty = [&theirRead] { Points().swap(theirRead); };
    const Contender read = {"ReadCSVFile", [&] { require(ReadCSVFile(&ourPath, ourRead, 1) == 1, reading); },
                            [&] { ourRead.RemoveAll(); }};
    const Contender fastFloat = {"fast_float, 64 KiB", [&] { readByFastFloat(path, theirRead); }, empty};
    const Contender atof = {"fgets, strtok, atof", [&] { readByAtof(path, theirRead); }, empty};
    read.run();
    for (const Contender& peer : {fastFloat, atof}) {
        peer.prepare();
        peer.run();
        requireEqual(ourRead, theirRead, peer.name);
    }
    races.race(reading, read, {Peers{fastFloat}, Peers{atof}});
}

// True if nobody else has the file open to write, the name still means it, and its last line is whole.
bool isWholeAndOurs(std::FILE* file, const char* path) {
    const int descriptor = fileno(file);
    struct stat opened, named;
    char end[512];
    if (flock(descriptor, LOCK_EX | LOCK_NB) != 0 || fstat(descriptor, &opened) != 0 ||
        stat(path, &named) != 0 || opened.st_ino != named.st_ino || opened.st_dev != named.st_dev)
        return false;
    const off_t start = std::max<off_t>(0, opened.st_size - static_cast<off_t>(sizeof end));
    const ssize_t got = pread(descriptor, end, sizeof end, start);
    return got == opened.st_size - start && (got == 0 || end[got - 1] == '\n');
}

void raceAdding(Races& races) {
    const std::string row = "ScanFileAdd a point, 10000 points";
    if (!races.wanted(row))
        return;
    const Points points = pointsOf(races.scaled(10000));
    const std::string file = scratchFile("added.csv");
    const CString path(file.c_str());
    std::vector<CXYZ> ourPoints;
    for (const Point& p : points)
        ourPoints.push_back(ours(p));
    const auto remove = [&file] { std::filesystem::remove(file); };
    const Contender add = {"ScanFileAdd",
                           [&] {
                               for (const CXYZ& point : ourPoints)
                                   require(ScanFileAdd(path, point) == 1, "ScanFileAdd");
                           },
                           remove};
    const auto append = [&](const char* name, bool (*prepare)(std::FILE*, const char*)) {
        return Contender{name,
                         [&points, &file, prepare] {
                             for (const Point& p : points) {
                                 std::FILE* opened = std::fopen(file.c_str(), "a+b");
                                 require(prepare(opened, file.c_str()), "the file of the peers");
                                 writeLine(opened, p);
                                 std::fflush(opened);
                                 fsync(fileno(opened));
                                 std::fclose(opened);
                             }
                         },
                         remove};
    };
    const Contender unprotected = append("fopen, fprintf, fflush, fsync, fclose",
                                         [](std::FILE* opened, const char*) { return opened != nullptr; });
    const Contender asSafe = append("the same with flock, stat and pread", isWholeAndOurs);
    std::vector<std::string> written;
    for (const Contender& contender : {add, unprotected, asSafe}) {
        contender.prepare();
        contender.run();
        written.push_back(contents(file.c_str()));
    }
    require(!written[0].empty() && written[0] == written[1] && written[0] == written[2], row);
    races.race(row, add, {Peers{unprotected}, Peers{asSafe}});
}

}  // namespace

void raceFiles(Races& races) {
    raceCsv(races);
    raceAdding(races);
}
