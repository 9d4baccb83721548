// One function for each format with several sorts of lines; the others are lists of values, in apply.
#include "formats/line_rules.h"

#include <fieldscan/string_utilities.h>

#include <algorithm>
#include <initializer_list>
#include <limits>

#include "common/text.h"

namespace {

// Reads the line in the code page and writes it again. A byte that is no character of the page is read as the
// Latin-1 character of that number, and written as other bytes.
bool isInCodePage(const std::string& line) {
    if (std::all_of(line.begin(), line.end(), [](char c) { return static_cast<signed char>(c) > 0; }))
        return true;
    const CString text(line.c_str());
    std::string back(2 * line.size() + 1, '\0');
    const int length = CStringToChar(text, back.data(), static_cast<int>(back.size()));
    return length == static_cast<int>(line.size()) && CString(back.c_str()) == text;
}

std::string quoted(std::string_view field) { return "\"" + utf8(CString(std::string(field).c_str())) + "\""; }

class Rules {
public:
    explicit Rules(const TextFile& file) : m_file(file) {}

    std::vector<Fault> faults;

    void apply(Format format);

private:
    void fault(std::size_t i, const std::string& what) { faults.push_back({static_cast<int>(i) + 1, what}); }
    bool isBlank(std::size_t i) const { return trimmed(m_file.line(i)).empty(); }
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

    void requireNumber(std::size_t i, const std::vector<std::string_view>& fields, std::size_t k) {
        if (!numberOf(fields[k]))
            fault(i, "expected a number as field " + std::to_string(k + 1) + ", found " + quoted(fields[k]));
    }
    void requireInteger(std::size_t i, const std::vector<std::string_view>& fields, std::size_t k) {
        if (!integerOf(fields[k]))
            fault(i,
                  "expected an integer as field " + std::to_string(k + 1) + ", found " + quoted(fields[k]));
    }
    void points(Format format, const char* expected);
    void pointLine(std::size_t i, std::string_view line, Format format, const char* expected);
    void versionedScan();
    void imageCoordinates();
    void camera();
    void scanArea();
    void scanArea2();
    int entry(char digit, const std::string& name);

    const TextFile& m_file;
    std::size_t m_next = 0;
};

// In an occupied-point file blank lines are skipped and a carriage return ends a line too.
void Rules::points(Format format, const char* expected) {
    for (std::size_t i = 0; i < size(); ++i) {
        if (isBlank(i)) {
            const auto holdsSomething = [](const std::string& line) { return !trimmed(line).empty(); };
            const auto here = m_file.lines().begin() + static_cast<int>(i);
            if (format != Format::occupied && std::any_of(here, m_file.lines().end(), holdsSomething))
                return fault(i, "expected a point: the file ends for its readers with this blank line");
            continue;
        }
        if (format != Format::occupied) {
            pointLine(i, m_file.line(i), format, expected);
            continue;
        }
        for (std::string_view rest = m_file.line(i); !rest.empty();) {
            const std::size_t end = std::min(rest.find('\r'), rest.size());
            if (!trimmed(rest.substr(0, end)).empty())
                pointLine(i, rest.substr(0, end), format, expected);
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
}

// Name and three numbers. An occupied-point file may have more fields, a scan result file a code, or code,
// word and text.
void Rules::pointLine(std::size_t i, std::string_view line, Format format, const char* expected) {
    const auto fields = fieldsOf(line);
    const std::size_t n = fields.size();
    if (n != 4 && !(format == Format::occupied && n > 4) &&
        !(format == Format::scanResult && (n == 5 || n == 7)))
        return fault(i, std::string("expected ") + expected + ", found " + std::to_string(n) +
                            (n == 1 ? " field" : " fields"));
    for (std::size_t k = 1; k < 4; ++k)
        requireNumber(i, fields, k);
    if (format == Format::scanResult && n == 7)
        requireInteger(i, fields, 5);
}

void Rules::versionedScan() {
    for (std::size_t i = 1; i < size(); ++i) {
        const auto fields = fieldsOf(m_file.line(i));
        if (fields.size() < 9) {
            fault(i, "expected name,x,y,z,code,word,text,first,second: readers skip the line");
            continue;
        }
        for (const std::size_t k : std::initializer_list<std::size_t>{1, 2, 3, 7, 8})
            requireNumber(i, fields, k);
        requireInteger(i, fields, 5);
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
            fault(0, "expected one of the known formats (--as says which)");
            break;
        case Format::point:
            points(format, "name,x,y,z");
            break;
        case Format::occupied:
            points(format, "name,x,y,z and more");
            break;
        case Format::scanResult:
            points(format, "name,x,y,z or these with code, or with code,word,text");
            break;
        case Format::versionedScan:
            versionedScan();
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
        fault(0, "expected no byte order mark: it is read as a part of the first word");
    std::size_t foreign = 0, first = 0;
    for (std::size_t i = 0; i < size(); ++i)
        if (!isInCodePage(m_file.line(i)) && foreign++ == 0)
            first = i;
    if (foreign > 0)
        fault(first, "expected text in the code page (--page); bytes of " + std::to_string(foreign) +
                         (foreign == 1 ? " line form" : " lines form") + " no character of it");
    std::stable_sort(faults.begin(), faults.end(),
                     [](const Fault& a, const Fault& b) { return a.line < b.line; });
}

}  // namespace

std::vector<Fault> lineFaults(const TextFile& file, Format format) {
    Rules rules(file);
    rules.apply(format);
    return rules.faults;
}
