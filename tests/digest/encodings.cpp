// Numbers as text and code pages, inside the library: the systems' own, which other tests compare with, are
// not there on every target.
#include <cstring>
#include <string>

#include "platform/framework/code_page.h"
#include "platform/framework/number_text.h"
#include "platform/system.h"
#include "tests/digest/digest.h"

namespace {

using namespace fieldscan;

const Family numberText("number_text", 5000, kExact, [](Results& out, Random& random, int i) {
    double value = random.around(i % 2 ? 2e6 : 1e-3);
    if (i % 4 == 0) {
        const std::int64_t halves[] = {random.bits(), random.bits()};
        const std::uint64_t bits =
            static_cast<std::uint64_t>(halves[0]) << 32 ^ static_cast<std::uint64_t>(halves[1]);
        std::memcpy(&value, &bits, sizeof value);
    }
    std::string text;
    appendFixed(text, value, i % 12, i % 7 * 4, i % 3 == 0);
    appendExponent(text, value, i % 17);
    appendInt(text, random.bits(), i % 14, i % 3 == 0);
    out << text.c_str() << parseDouble(text) << parseInt(text, i % 37);
    const CString wide = random.text(u"00123456789.e+-xXaAfFpPinINTY ", 30);
    std::string number;
    for (int k = 0; k < wide.GetLength(); ++k)
        number += static_cast<char>(wide[k]);
    std::size_t used = 0;
    out << parseDouble(number, &used) << static_cast<int>(used) << parseInt(number, 0, &used)
        << static_cast<int>(used);
});

// All units with the high byte i, all pairs of bytes with the first byte i.
const Family codePages("code_pages", 256, kExact, [](Results& out, Random&, int i) {
    for (const unsigned int page : {system::kUtf8, system::kShiftJis, system::kWestern, system::kLatin1}) {
        std::string bytes;
        CString text;
        for (int low = 1; low < 256; ++low) {
            const unsigned short unit = static_cast<unsigned short>(i << 8 | low);
            const char pair[] = {static_cast<char>(i), static_cast<char>(low)};
            appendEncoded(page, &unit, 1, bytes);
            appendDecoded(page, pair, 2, text);
        }
        out << bytes.c_str() << text;
    }
});

}  // namespace
