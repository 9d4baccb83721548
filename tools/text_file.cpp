#include "text_file.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <utility>

#include "common/files.h"
#include "common/text.h"

namespace fs = std::filesystem;

namespace {

constexpr char kBlanks[] = " \t\v\f\r\n";

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const bool returned = end > begin && text[end - 1] == '\r';
        lines.push_back(text.substr(begin, end - begin - (returned ? 1 : 0)));
        begin = end + 1;
    }
    return lines;
}

template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')  // which the library's readers take, too
        text.remove_prefix(1);
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    std::error_code error;
    const fs::path place = fs::temp_directory_path(error);
    for (int attempt = 0; attempt < 100 && m_path.empty(); ++attempt) {
        const fs::path path = place / format("fieldscan-%08x%08x", random(), random());
        if (fs::create_directory(path, error))  // false where it exists: nobody else's is taken
            m_path = path;
    }
    if (m_path.empty())
        throw DataError(place.u8string() + ": no temporary folder can be made");
    fs::permissions(m_path, fs::perms::owner_all, error);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

TextFile::TextFile(const std::string& argument) : m_name(argument), m_path(argument) {
    std::string text;
    if (argument == "-") {
        static bool isTaken = false;
        if (std::exchange(isTaken, true))
            throw CLI::ValidationError("-", "standard input gives one file only");
        m_name = "(standard input)";
        text.assign(std::istreambuf_iterator<char>(std::cin), {});
        m_path = m_folder.emplace().file();
        std::ofstream copy(m_path, std::ios::binary);
        copy << text;
        if (!copy.flush())
            fail(0, "its temporary copy cannot be written");
    } else {
        std::error_code ignored;
        std::ifstream file(m_path, std::ios::binary);
        if (!file || fs::is_directory(m_path, ignored))
            fail(0, "cannot be opened");
        text.assign(std::istreambuf_iterator<char>(file), {});
    }
    m_lines = linesOf(text);
    // As the library's readers do where the code page is UTF-8: the mark is one character there.
    constexpr char kMark[] = "\xEF\xBB\xBF";
    if (text.rfind(kMark, 0) == 0 && CString(kMark).GetLength() == 1)
        m_lines[0].erase(0, sizeof kMark - 1);
}

const std::string& TextFile::line(std::size_t i) const {
    static const std::string none;
    return i < m_lines.size() ? m_lines[i] : none;
}

CString TextFile::path() const { return libraryPath(m_path); }

std::string TextFile::message(int line, const std::string& what) const {
    return (line > 0 ? m_name + ":" + std::to_string(line) : m_name) + ": " + what;
}

void TextFile::fail(int line, const std::string& what) const { throw DataError(message(line, what)); }

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string_view> fieldsOf(std::string_view line) {
    std::vector<std::string_view> fields;
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
        comma = line.find(',');
        fields.push_back(trimmed(line.substr(0, comma)));
        line.remove_prefix(comma == std::string_view::npos ? line.size() : comma + 1);
    }
    return fields;
}

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    for (line = trimmed(line); !line.empty(); line = trimmed(line)) {
        const std::size_t end = std::min(line.find_first_of(kBlanks), line.size());
        words.push_back(line.substr(0, end));
        line.remove_prefix(end);
    }
    return words;
}

std::optional<double> numberOf(std::string_view text) {
    const auto value = wholeNumber<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<int> integerOf(std::string_view text) { return wholeNumber<int>(text); }
