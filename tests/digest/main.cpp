// Prints a digest of the library's results, or compares it with one that was made elsewhere:
//
//   digest            one line a family: "exact NAME HASH" or "near NAME TOLERANCE SUM ..."
//   digest FILE       what differs from FILE, and status 1 when anything does
//   digest FILE SET   with no wider instruction set than baseline, avx2 or avx512; 77 where there is none
//   such
//
// expected.txt is what it prints on x86-64 Linux.
#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

#include "numerics/instruction_set.h"
#include "tests/digest/digest.h"

namespace {

using Words = std::vector<std::string>;      // of a line
using Lines = std::map<std::string, Words>;  // by family

template <class... Form>
std::string numberText(Form... form) {
    char text[32];
    return {text, std::to_chars(text, std::end(text), form...).ptr};
}

double numberOf(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

Lines computed() {
    Lines lines;
    for (const Family* family = Family::first; family; family = family->next) {
        const bool exact = family->tolerance == kExact;
        const Results results = family->results();
        Words& line = lines[family->name] = {exact ? "exact" : "near", family->name};
        line.push_back(exact ? numberText(results.hash(), 16) : numberText(family->tolerance));
        for (const double sum : results.sums())
            line.push_back(numberText(sum, std::chars_format::scientific, 16));
    }
    return lines;
}

Lines linesOf(std::istream&& in) {
    Lines lines;
    for (std::string text; std::getline(in, text);) {
        std::istringstream stream(text);
        const Words line{std::istream_iterator<std::string>(stream), {}};
        lines[line.at(1)] = line;
    }
    return lines;
}

// Prints in what two lines of a family differ.
bool agree(const std::string& name, const Words& line, const Words& expected) {
    bool same = line.size() == expected.size();
    for (std::size_t i = 0; same && i < line.size(); ++i) {
        same = line[i] == expected[i] ||
               (i >= 3 && std::fabs(numberOf(line[i]) - numberOf(expected[i])) <= numberOf(line[2]));
        if (!same)
            std::cout << name << ": " << line[i] << ", expected " << expected[i] << '\n';
    }
    if (line.size() != expected.size())
        std::cout << name << ": only on one side, or of another length\n";
    return same;
}

constexpr std::string_view kSets[] = {"baseline", "avx2", "avx512"};

}  // namespace

int main(int argc, char** argv) {
    constexpr int kSkipped = 77;
    for (int set = 0; argc > 2 && set < 3; ++set) {
        if (argv[2] == kSets[set] &&
            !fieldscan::limitInstructionSet(static_cast<fieldscan::InstructionSet>(set))) {
            std::cout << "this machine has no " << kSets[set] << '\n';
            return kSkipped;
        }
    }
    Lines here = computed(), expected = argc > 1 ? linesOf(std::ifstream(argv[1])) : Lines(), all = here;
    all.insert(expected.begin(), expected.end());
    int differing = 0;
    for (const auto& [name, line] : all) {
        if (argc > 1)
            differing += !agree(name, here[name], expected[name]);
        for (std::size_t i = 0; argc < 2 && i < line.size(); ++i)
            std::cout << line[i] << (i + 1 < line.size() ? ' ' : '\n');
    }
    if (argc > 1)
        std::cout << all.size() - static_cast<std::size_t>(differing) << " of " << all.size()
                  << " families agree, computed with " << kSets[static_cast<int>(fieldscan::instructionSet())]
                  << '\n';
    return differing == 0 ? 0 : 1;
}
