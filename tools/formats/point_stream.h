// Points of a long file or a pipe, as many at a time as a piece of it holds.
#ifndef TOOLS_FORMATS_POINT_STREAM_H
#define TOOLS_FORMATS_POINT_STREAM_H

#include <fieldscan/framework/array.h>
#include <fieldscan/points.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/progress.h"
#include "formats/line_reader.h"
#include "formats/line_rules.h"

struct PointBlock {
    CArray<CXYZ, CXYZ&> points;
    std::vector<int> lines;  // that the points are on, from 1
};

// The first faults of the lines so far, under each of the formats that a file of points may turn out to have.
class PointFaults {
public:
    void takeBytes(int number, std::string_view line);  // as they are in the file
    void takePoint(int number, std::string_view line);  // "name,x,y,z"
    void takeOther(int number, std::string_view line);
    // Of the lines so far, unless it is known.
    Format format() const { return m_known ? *m_known : m_finder.format(); }
    void setFormat(Format format) { m_known = format; }
    bool isFaulty() const;  // the lines so far
    // Of the lines so far, and of a file that ends with them.
    std::optional<Fault> soFar() const;
    std::optional<Fault> ofFile() const;

private:
    void noteBlankWithin();
    const std::optional<Fault>& ofLines() const;
    std::optional<Fault> first() const;

    FormatFinder m_finder;
    std::optional<Format> m_known;
    ForeignLines m_foreign;
    std::optional<Fault> m_point, m_occupied, m_scanResult;
    std::optional<Fault> m_mark;  // a byte order mark
    int m_blank = 0;              // the first blank line
    bool m_hasFault = false;      // under one of the formats
};

class PointStream {
public:
    // Makes "name,x,y,z", or a line of the formats below, of a line of another format; nothing of a line to
    // be left out. Line numbers begin with 1 in each reading. May throw Fault.
    using LineForm = std::function<std::optional<std::string_view>(std::string_view line, int number)>;

    enum class Pass { check, results };
    // nothing: for results that go to a file, which need no check before the first of them.
    enum class CheckFirst { nothing, lines, points };  // lines: `take` gets blocks without points
    // Takes a block of points and returns false when it wants no more.
    using Take = std::function<bool(PointBlock& block, Pass pass)>;

    // Throws as LineReader does.
    explicit PointStream(const std::string& argument, LineForm form = nullptr);

    // Calls `take` with the points of a point, occupied-point or scan result file, block after block. A file
    // that is to be checked first is read twice, so that nothing is printed of one with a fault. Standard
    // input and pipes are read once, and their points before a fault are taken. Throws DataError with the
    // first fault. False if `take` wanted no more.
    bool read(const char* what, CheckFirst checkFirst, const Take& take);

    Format format() const { return m_faults.format(); }  // of the lines so far
    void warn(const std::string& what);                  // a message on standard error, between the progress
    [[noreturn]] void fail(int line, const std::string& what) const { m_reader.fail(line, what); }

private:
    bool next(PointBlock& block, Pass pass);
    void takeLine(std::string_view line, PointBlock& block);
    bool readOnce(const char* what, bool isShown, Pass pass, const Take& take);

    LineReader m_reader;
    LineForm m_form;
    bool m_wantsPoints = true;
    PointFaults m_faults;
    std::optional<Fault> m_faultOfForm;
    ProgressLine* m_progress = nullptr;
};

#endif
