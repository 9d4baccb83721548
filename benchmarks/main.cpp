// race [--quick] [PART]: races all rows, or only those whose names contain PART, and prints them as a table.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "benchmarks/race.h"

namespace {

struct Scratch {
    Scratch() {
        std::string pattern = "/dev/shm/fieldscan-XXXXXX";
        if (!mkdtemp(pattern.data())) {
            std::perror("/dev/shm");
            std::exit(1);
        }
        folder = pattern;
    }
    ~Scratch() { std::filesystem::remove_all(folder); }
    std::filesystem::path folder;
};

}  // namespace

std::string scratchFile(const char* name) {
    static const Scratch scratch;
    return scratch.folder / name;
}

int main(int argc, char** argv) {
    bool quick = false;
    std::string only;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--quick") == 0)
            quick = true;
        else
            only = argv[i];
    }
    Races races(quick, only);
    raceAdjustment(races);
    raceFiles(races);
    racePolygons(races);
    raceOutlineLists(races);
    raceDistortion(races);
    raceSort(races);
    raceNames(races);
    raceGrowth(races);
    races.print();
}
