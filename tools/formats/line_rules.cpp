// One function for each format with several sorts of lines; the others are lists of values, in apply.
#include "formats/line_rules.h"

#include <algorithm>
#include <initializer_list>
#include <limits>

#include "common/text.h"
#include "formats/cells.h"

namespace {

const char* expectedPoint(Format format) {
    return format == Format::point      ? "name,x,y,z"
           : format == Format::occupied ? "name,x,y,z and more"
                                        : "name,x,y,z or these with code, or with code,word,text";
}

std::string quoted(std::string_view field) {
    return "\"" + toUtf8(CString(std::string(field).c_str())) + "\"";
}

void requireNumber(int number, const std::vector<std::string_view>& fields, std::size_t k,
                   std::vector<Fault>& faults) {
    if (!numberOf(fields[k]))
        faults.push_back(
            {number, "expected a number as field " + std::to_string(k + 1) + ", found " + quoted(fields[k])});
}

void requireInteger(int number, const std::vector<std::string_view>& fields, std::size_t k,
                    std::vector<Fault>& faults) {
    if (!integerOf(fields[k]))
        faults.push_back({number, "expected an integer as field " + std::to_string(k + 1) + ", found " +
                                      quoted(fields[k])});
}

// Name and three numbers. An occupied-point file may have more fields, a scan result file a code, or code,
// word and text.
void addFieldFaults(int number, std::string_view line, Format format, std::vector<Fault>& faults) {
    const auto fields = fieldsOf(line);
    const std::size_t n = fields.size();
    if (n != 4 && !(format == Format::occupied && n > 4) &&
        !(format == Format::scanResult && (n == 5 || n == 7))) {
        faults.push_back({number, std::string("expected ") + expectedPoint(format) + ", found " +
                                      std::to_string(n) + (n == 1 ? " field" : " fields")});
        return;
    }
    for (std::size_t k = 1; k < 4; ++k)
        requireNumber(number, fields, k, faults);
    if (format == Format::scanResult && n == 7)
        requireInteger(number, fields, 5, faults);
}

class Rules {
public:
    explicit Rules(const TextFile& file) : m_file(file) {}

    std::vector<Fault> faults;

    void apply(Format format);

private:
    void fault(std::size_t i, const std::string& what) { faults.push_back({static_cast<int>(i) + 1, what}); }
    bool isBlank(std::size_t i) const { return ::isBlank(m_file.line(i)); }
    std::size_t size() const { return m_file.lines().size(); }

    // Goes to the next line; false with a fault where it is blank or the file ends.
    bool next(const std::string& expected) {
        const std::size_t i = m_next++;
        if (i < size() && !isBlank(i))
            return true;
        fault(i, "expected " + expected + ", found " + (i < size() ? "a blank line" : "the end"));
        return false;
    }
    std::vector<std::string_view> words() const { return wordsOf(m_file.line(m_next - 1)); }

    // The next line begins with an integer from least to most, which is returned; else a fault and -1.
    int integer(const std::string& what, int least = 0, int most = std::numeric_limits<int>::max()) {
        const std::string expected = "an integer, " + what;
        if (!next(expected))
            return -1;
        const auto value = integerOf(words()[0]);
        if (value && *value >= least && *value <= most)
            return *value;
        fault(m_next - 1, "expected " + expected);
        return -1;
    }
    // The next line has `skipped` words and then `count` numbers.
    void numbers(std::size_t skipped, std::size_t count, const std::string& expected) {
        if (!next(expected))
            return;
        const auto all = words();
        bool good = all.size() >= skipped + count;
        for (std::size_t i = skipped; good && i < skipped + count; ++i)
            good = numberOf(all[i]).has_value();
        if (!good)
            fault(m_next - 1, "expected " + expected);
    }
    void realLines(std::initializer_list<const char*> whats) {
        for (const char* what : whats)
            numbers(0, 1, std::string("a number, ") + what);
    }
    void requireEnd(const char* what) {
        for (std::size_t i = m_next; i < size(); ++i)
            if (!isBlank(i))
                return fault(i, std::string("expected the end of the file: ") + what);
    }

    void points(Format format);
    void imageCoordinates();
    void camera();
    void scanArea();
    void scanArea2();
    int entry(char digit, const std::string& name);

    const TextFile& m_file;
    std::size_t m_next = 0;
};

void Rules::points(Format format) {
    for (std::size_t i = 0; i < size(); ++i) {
        if (!isBlank(i)) {
            addPointFaults(static_cast<int>(i) + 1, m_file.line(i), format, faults);
            continue;
        }
        const auto here = m_file.lines().begin() + static_cast<int>(i);
        const auto holdsSomething = [](const std::string& line) { return !::isBlank(line); };
        if (format != Format::occupied && std::any_of(here, m_file.lines().end(), holdsSomething))
            return fault(i, kBlankWithin);
    }
}

void Rules::imageCoordinates() {
    m_next = 1;
    const std::string size = "width and height in pixels";
    if (next(size) && (words().size() < 2 || !integerOf(words()[0]) || !integerOf(words()[1])))
        fault(m_next - 1, "expected " + size);
    const int count = integer("the number of points");
    for (int i = 0; i < count && m_next <= this->size(); ++i)
        numbers(1, 2, "point " + std::to_string(i + 1) + " of " + std::to_string(count) + ": name x y");
    if (count >= 0)
        requireEnd("the points that line 3 counts are complete");
}

void Rules::camera() {
    realLines({"the focal length", "x of the principal point", "y of the principal point"});
    integer("the distortion model, 0 to 4", 0, 4);
    const int parameters = integer("the number of distortion parameters");
    for (int i = 0; i < parameters && m_next <= size(); ++i)
        realLines({"a distortion parameter"});
    realLines({"the x resolution", "the y resolution"});
    const int marks = integer("the number of fiducial marks");
    for (int i = 0; i < marks && m_next <= size(); ++i)
        numbers(1, 2, "fiducial mark " + std::to_string(i) + ": name x y");
}

void Rules::scanArea() {
    const std::string corner = "a corner: horizontal and zenith angle";
    const std::string counts = "the numbers of columns and rows";
    if (next(counts) && (words().size() < 2 || !integerOf(words()[0]) || !integerOf(words()[1])))
        fault(m_next - 1, "expected " + counts);
    numbers(0, 2, corner);
    numbers(0, 2, corner);
    while (m_next < size())
        numbers(0, 2, "a shot: horizontal and zenith angle, image name");
}

// The next line is "name,number,a,b,c,dddd" with `digit` first in dddd; it is split from its end, since the
// name may hold commas. Returns the number; else a fault and -1.
int Rules::entry(char digit, const std::string& name) {
    const std::string expected = (name.empty() ? "a shot: name" : name) + ",number,a,b,c," + digit + "ddd";
    if (!next(expected))
        return -1;
    const auto fields = fieldsOf(m_file.line(m_next - 1));
    const std::size_t n = fields.size();
    if (n >= 6 && integerOf(fields[n - 5]) && numberOf(fields[n - 4]) && numberOf(fields[n - 3]) &&
        numberOf(fields[n - 2]) && fields[n - 1].size() == 4 && fields[n - 1][0] == digit &&
        (name.empty() || fields[0] == name))
        return *integerOf(fields[n - 5]);
    fault(m_next - 1, "expected " + expected);
    return -1;
}

void Rules::scanArea2() {
    m_next = 1;
    entry('1', "columns");
    entry('2', "rows");
    const int shots = entry('3', "shots"), vertices = entry('4', "outline");
    for (int i = 0; i < 2; ++i)
        numbers(0, 2, "a corner: horizontal and zenith angle");
    for (int i = 0; i < shots && m_next <= size(); ++i) {
        const int index = entry('5', "");
        if (index >= 0 && index != i)
            fault(m_next - 1, "expected shot " + std::to_string(i) + ", found " + std::to_string(index));
    }
    for (int i = 0; i < vertices && m_next <= size(); ++i)
        numbers(0, 2, "vertex " + std::to_string(i + 1) + " of the outline: horizontal and zenith angle");
}

void Rules::apply(Format format) {
    m_next = 1;  // after a version line
    switch (format) {
        case Format::unknown:
            fault(0, kUnknownFormat + foundInstead(m_file.lines()));
            if (isUtf16(m_file.lines()))
                return;  // the bytes of every line form no text
            break;
        case Format::point:
        case Format::occupied:
        case Format::scanResult:
            points(format);
            break;
        case Format::versionedScan:
            for (std::size_t i = 1; i < size(); ++i)
                addVersionedFaults(static_cast<int>(i) + 1, m_file.line(i), faults);
            break;
        case Format::imageCoordinate:
            imageCoordinates();
            break;
        case Format::camera:
            m_next = 0;
            camera();
            break;
        case Format::scanArea:
            m_next = 0;
            scanArea();
            break;
        case Format::scanArea2:
            scanArea2();
            break;
        case Format::panorama:
            realLines({"the vertical angle of the top-left corner", "its horizontal angle",
                       "the vertical angle of a pixel", "its horizontal angle"});
            break;
        case Format::exterior:
            realLines({"X0", "Y0", "Z0", "omega", "phi", "kappa"});
            break;
        case Format::unitSettings:
            integer("meter-feet");
            integer("feet");
            if (trimmed(m_file.line(0)) == "FIELD_SCAN_UNI_FILEVER1.1")
                integer("angle");
            break;
        case Format::range:
            integer("the axes, 0 or 1", 0, 1);
            integer("the unit, 0 to 2", 0, 2);
            integer("the number of points");
            numbers(0, 3, "the lower corner x y z");
            numbers(0, 3, "the upper corner x y z");
            break;
    }
    if (m_file.line(0).rfind("\xEF\xBB\xBF", 0) == 0)  // TextFile drops it in UTF-8
        fault(0, kByteOrderMark);
    if (const auto foreign = foreignBytes(m_file))
        faults.push_back(*foreign);
    std::stable_sort(faults.begin(), faults.end(),
                     [](const Fault& a, const Fault& b) { return a.line < b.line; });
}

}  // namespace

const char kUnknownFormat[] = "expected one of the known formats (--as says which)";
const char kExpectedPoints[] = "expected lines name,x,y,z";
const char kBlankWithin[] = "expected a point: the file ends for its readers with this blank line";
const char kByteOrderMark[] = "expected no byte order mark: it is read as a part of the first word";

void ForeignLines::take(int number, std::string_view line) {
    if (!isInCodePage(line) && m_count++ == 0)
        m_first = number;
}

std::optional<Fault> ForeignLines::fault() const {
    if (m_count == 0)
        return std::nullopt;
    return Fault{m_first, "expected text in the code page (--page); bytes of " + std::to_string(m_count) +
                              (m_count == 1 ? " line form" : " lines form") + " no character of it"};
}

std::optional<Fault> foreignBytes(const TextFile& file) {
    ForeignLines foreign;
    for (std::size_t i = 0; i < file.lines().size(); ++i)
        foreign.take(static_cast<int>(i) + 1, file.line(i));
    return foreign.fault();
}

// In an occupied-point file a carriage return ends a line too.
void addPointFaults(int number, std::string_view line, Format format, std::vector<Fault>& faults) {
    if (format != Format::occupied)
        return addFieldFaults(number, line, format, faults);
    while (!line.empty()) {
        const std::size_t end = std::min(line.find('\r'), line.size());
        if (!isBlank(line.substr(0, end)))
            addFieldFaults(number, line.substr(0, end), format, faults);
        line.remove_prefix(std::min(end + 1, line.size()));
    }
}

void addVersionedFaults(int number, std::string_view line, std::vector<Fault>& faults) {
    const auto fields = fieldsOf(line);
    if (fields.size() < 9) {
        faults.push_back({number, "expected name,x,y,z,code,word,text,first,second: readers skip the line"});
        return;
    }
    for (const std::size_t k : std::initializer_list<std::size_t>{1, 2, 3, 7, 8})
        requireNumber(number, fields, k, faults);
    requireInteger(number, fields, 5, faults);
}

std::vector<Fault> lineFaults(const TextFile& file, Format format) {
    Rules rules(file);
    rules.apply(format);
    return rules.faults;
}
