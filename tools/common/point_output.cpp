// By the library's writers. The writer of codes appends, so its file is made apart; a file that is there is
// replaced as a whole.
#include "common/point_output.h"

#include <fieldscan/point_files.h>
#include <fieldscan/scan_result_files.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

#include "common/data_error.h"
#include "common/files.h"
#include "common/output_file.h"
#include "common/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

bool haveCodes(const CArray<CXYZ, CXYZ&>& points) {
    for (int i = 0; i < points.GetSize(); ++i)
        if (!points[i].code.IsEmpty())
            return true;
    return false;
}

}  // namespace

void writePoints(CArray<CXYZ, CXYZ&>& points, const std::string& out) {
    const bool toStream = out == "-", withCodes = haveCodes(points);
    std::optional<TemporaryFolder> folder;
    const fs::path place = toStream || withCodes ? folder.emplace().file() : pathOf(out);
    CString path = libraryPath(place);
    if ((withCodes ? ScanFileAdd(path, points) : WriteCSVFile(&path, points, 0)) != 1)
        throw DataError(out + ": cannot be written");
    if (withCodes && !toStream) {
        std::ifstream made(place, std::ios::binary);
        OutputFile file(out);
        file.write(std::string(std::istreambuf_iterator<char>(made), {}));
        file.commit();
    }
    if (toStream && !points.IsEmpty())  // << fails when it copies nothing
        std::cout << std::ifstream(place, std::ios::binary).rdbuf();
}
