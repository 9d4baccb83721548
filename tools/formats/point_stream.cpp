// Reads what the library's readers of point files read, with the rules of line_rules.h on each line.
#include "formats/point_stream.h"

#include <algorithm>
#include <utility>

#include "common/data_error.h"
#include "formats/cells.h"

namespace {

const std::optional<Fault>& earlier(const std::optional<Fault>& a, const std::optional<Fault>& b) {
    return b && (!a || b->line < a->line) ? b : a;
}

// "name,x,y,z" with three numbers and no more; the most frequent line by far.
bool isPlain(std::string_view line, std::string_view& name, double (&xyz)[3]) {
    const std::size_t comma = line.find(',');
    if (comma == std::string_view::npos || line.find('\r') != std::string_view::npos)
        return false;
    name = line.substr(0, comma);
    line.remove_prefix(comma + 1);
    for (int i = 0; i < 3; ++i) {
        const std::size_t end = line.find(',');
        if ((end == std::string_view::npos) != (i == 2))
            return false;
        const auto number = numberOf(trimmed(line.substr(0, end)));
        if (!number)
            return false;
        xyz[i] = *number;
        line.remove_prefix(i == 2 ? line.size() : end + 1);
    }
    return true;
}

}  // namespace

void PointFaults::takeBytes(int number, std::string_view line) {
    m_foreign.take(number, line);
    if (number == 1 && line.substr(0, 3) == "\xEF\xBB\xBF")
        m_mark = {1, kByteOrderMark};
    m_hasFault = m_hasFault || m_mark || m_foreign.any();
}

void PointFaults::noteBlankWithin() {
    if (m_blank == 0)
        return;
    m_hasFault = true;
    for (std::optional<Fault>* each : {&m_point, &m_scanResult})
        if (!*each)
            *each = {m_blank, kBlankWithin};
}

void PointFaults::takePoint(int, std::string_view line) {
    m_finder.takePoint(line);
    noteBlankWithin();
}

void PointFaults::takeOther(int number, std::string_view line) {
    m_finder.take(line);
    if (isBlank(line)) {
        m_blank = m_blank == 0 ? number : m_blank;
        return;
    }
    noteBlankWithin();
    for (const auto& [fault, format] :
         {std::pair(&m_point, Format::point), std::pair(&m_occupied, Format::occupied),
          std::pair(&m_scanResult, Format::scanResult)}) {
        std::vector<Fault> faults;
        if (!*fault)
            addPointFaults(number, line, format, faults);
        if (!faults.empty())
            *fault = faults[0];
        m_hasFault = m_hasFault || *fault;
    }
}

const std::optional<Fault>& PointFaults::ofLines() const {
    const Format now = format();
    return now == Format::occupied ? m_occupied : now == Format::scanResult ? m_scanResult : m_point;
}

bool PointFaults::isFaulty() const { return m_hasFault && (ofLines() || m_mark || m_foreign.any()); }

std::optional<Fault> PointFaults::first() const {
    return earlier(earlier(ofLines(), m_mark), m_foreign.fault());
}

std::optional<Fault> PointFaults::soFar() const {
    auto fault = first();
    if (fault && !m_finder.hasPoint())
        fault->what += foundInstead(m_finder.firstLines());
    return fault;
}

std::optional<Fault> PointFaults::ofFile() const {
    if (!hasPointLines(format()))
        return Fault{1, kExpectedPoints + foundInstead(m_finder.firstLines())};
    return first();
}

PointStream::PointStream(const std::string& argument, LineForm form)
    : m_reader(argument), m_form(std::move(form)) {}

void PointStream::takeLine(std::string_view line, PointBlock& block) {
    const int number = m_reader.number();
    if (number == 1)
        line = withoutByteOrderMark(line);
    m_faults.takeBytes(number, line);
    if (m_form) {
        const auto formed = m_form(line, number);
        if (!formed)
            return;
        line = *formed;
    }
    const auto add = [&](std::string_view name, const double(&xyz)[3]) {
        CXYZ point(pointName(name), xyz[0], xyz[1], xyz[2]);
        block.points.Add(point);
        block.lines.push_back(number);
    };
    std::string_view name;
    double xyz[3];
    if (isPlain(line, name, xyz)) {
        m_faults.takePoint(number, line);
        if (m_wantsPoints && !m_faults.isFaulty())
            add(name, xyz);
        return;
    }
    m_faults.takeOther(number, line);
    if (!m_wantsPoints || m_faults.isFaulty())
        return;
    for (; !line.empty(); line.remove_prefix(std::min(line.find('\r'), line.size() - 1) + 1)) {
        const auto fields = fieldsOf(line.substr(0, line.find('\r')));
        if (fields.size() < 4)  // a blank line
            continue;
        for (std::size_t i = 0; i < 3; ++i)
            xyz[i] = numberOf(fields[i + 1]).value_or(0.0);
        add(fields[0], xyz);
    }
}

bool PointStream::next(PointBlock& block, Pass pass) {
    block.points.SetSize(0);
    block.lines.clear();
    bool atEnd = false, isTaken = false;
    const auto mayGoOn = [&] {
        return !atEnd && !m_faultOfForm && (pass == Pass::check || !m_faults.isFaulty()) &&
               (!isTaken || m_reader.hasLine());
    };
    for (std::string_view line; mayGoOn();) {
        atEnd = !m_reader.next(line);
        isTaken = isTaken || !atEnd;
        try {
            if (!atEnd)
                takeLine(withoutEnd(line), block);
        } catch (const Fault& fault) {
            m_faultOfForm = fault;  // for the next call, after the points before it
        }
    }
    if (isTaken)
        return true;
    if (const auto fault = m_faultOfForm ? m_faultOfForm : atEnd ? m_faults.ofFile() : m_faults.soFar())
        m_reader.fail(fault->line, fault->what);
    return false;
}

bool PointStream::readOnce(const char* what, bool isShown, Pass pass, const Take& take) {
    ProgressLine progress(what, isShown);
    m_progress = &progress;
    bool goesOn = true;
    for (PointBlock block; goesOn && next(block, pass);) {
        goesOn = take(block, pass);
        progress.reading(m_reader.position(), m_reader.length());
    }
    m_progress = nullptr;
    return goesOn;
}

bool PointStream::read(const char* what, CheckFirst checkFirst, const Take& take) {
    if (checkFirst != CheckFirst::nothing && m_reader.canRewind()) {
        m_wantsPoints = checkFirst == CheckFirst::points;
        readOnce("Checking the points", true, Pass::check, take);
        m_wantsPoints = true;
        m_reader.rewind();
        const Format format = m_faults.format();
        m_faults = PointFaults();
        m_faults.setFormat(format);
    }
    // Results that scroll by are progress themselves.
    const bool isShown = checkFirst == CheckFirst::nothing || !resultsGoToTerminal();
    return readOnce(what, isShown, Pass::results, take);
}

void PointStream::warn(const std::string& what) {
    if (m_progress)
        m_progress->clear();
    std::fprintf(stderr, "%s\n", messageFor(m_reader.name(), 0, what).c_str());
}
