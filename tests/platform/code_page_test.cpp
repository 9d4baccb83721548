// The code pages of text files.
#include <gtest/gtest.h>
#if !defined(_WIN32)
#include <iconv.h>
#endif

#include <string>
#include <tuple>
#include <utility>

#include "platform/system.h"
#include "tests/print_text.h"

using namespace fieldscan;

namespace {

std::u16string read(unsigned int page, const std::string& bytes) {
    const std::string padded = bytes + "\x80\x80\x80";  // trail bytes after the end, which are not read
    CString out;
    system::appendWide(page, padded.data(), bytes.size(), out);
    return std::u16string(out.GetString(), out.GetString() + out.GetLength());
}

std::string write(unsigned int page, const std::u16string& text) {
    const std::u16string padded = text + u'\xDE00';  // likewise
    std::string out;
    system::appendAnsi(page, reinterpret_cast<const unsigned short*>(padded.data()),
                       static_cast<int>(text.size()), out);
    return out;
}

const std::pair<unsigned int, const char*> kPages[] = {
    {system::kShiftJis, "CP932"}, {system::kWestern, "CP1252"}, {system::kLatin1, "ISO-8859-1"}};

#if !defined(_WIN32)

// The C library's conversion; empty where it has none.
std::string convert(iconv_t converter, std::string from) {
    char to[16];
    char *input = &from[0], *output = to;
    std::size_t left = from.size(), room = sizeof to;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    return iconv(converter, &input, &left, &output, &room) == 0 ? std::string(to, output) : "";
}

// Every character of one or two bytes. What has no such bytes is left to the tests below.
TEST(CodePage, ConvertsAsTheCLibraryDoes) {
    for (const auto& [page, name] : kPages) {
        const iconv_t reader = iconv_open("UTF-16LE", name), writer = iconv_open(name, "UTF-16LE");
        if (reader == reinterpret_cast<iconv_t>(-1))
            GTEST_SKIP() << "the C library has no " << name;
        int written = 0;
        for (int a = 0; a < 0x10000; ++a) {
            std::string bytes(1, static_cast<char>(a & 0xFF));
            if (a > 0xFF)
                bytes.insert(0, 1, static_cast<char>(a >> 8));
            const std::string unit = convert(reader, bytes);
            if (unit.size() != 2)
                continue;
            const std::u16string text(1, static_cast<char16_t>(static_cast<unsigned char>(unit[1]) << 8 |
                                                               static_cast<unsigned char>(unit[0])));
            ASSERT_EQ(read(page, bytes), text) << name << ' ' << a;
            if (convert(writer, unit) == bytes) {  // else another pair has the same character
                ASSERT_EQ(write(page, text), bytes) << name << ' ' << a;
                ++written;
            }
        }
        EXPECT_GT(written, page == system::kShiftJis ? 9000 : 250);
        iconv_close(reader);
        iconv_close(writer);
    }
}

#endif

TEST(CodePage, ReadsBrokenBytesWithoutLosingAny) {
    const std::tuple<unsigned int, const char*, const char16_t*> rows[] = {
        {system::kShiftJis, "\x83,A\n", u"\u0083,A\n"},                  // a lead byte before a comma
        {system::kShiftJis, "1,\x88\n2", u"1,\u0088\n2"},                // before a line end
        {system::kShiftJis, "A\xE0", u"A\u00E0"},                        // at the end
        {system::kShiftJis, "\x85\x41", u"\u0085A"},                     // a row without characters
        {system::kShiftJis, "\x81\xAD\x82\xA0", u"\u0081\uFF6D\u3042"},  // a hole
        {system::kShiftJis, "\x81\x7F\x81\xFD", u"\u0081\u007F\u0081\uF8F1"},
        {system::kShiftJis, "\x95\x5C,\x5C~", u"\u8868,\\~"},  // a trail byte that is a backslash
        {system::kShiftJis, "\xFF\xFA\xFF\xFA\x40", u"\uF8F3\u00FA\uF8F3\u2170"},
        {system::kUtf8, "\xC3,\xC3\xA9", u"\u00C3,\u00E9"},                // a lead byte before a comma
        {system::kUtf8, "\xE5\xB1\n", u"\u00E5\u00B1\n"},                  // truncated by a line end
        {system::kUtf8, "A\xF0\x9F\x98", u"A\u00F0\u009F\u0098"},          // by the end
        {system::kUtf8, "\x80\xBF,", u"\u0080\u00BF,"},                    // only trail bytes
        {system::kUtf8, "\xC0\xAF\xC1\xBF", u"\u00C0\u00AF\u00C1\u00BF"},  // too long a form
        {system::kUtf8, "\xE0\x9F\xBF", u"\u00E0\u009F\u00BF"},
        {system::kUtf8, "\xF0\x8F\xBF\xBF", u"\u00F0\u008F\u00BF\u00BF"},
        {system::kUtf8, "\xED\xA0\x80\xED\xBF\xBF", u"\u00ED\u00A0\u0080\u00ED\u00BF\u00BF"},  // surrogates
        {system::kUtf8, "\xED\x9F\xBF\xEE\x80\x80", u"\uD7FF\uE000"},
        {system::kUtf8, "\xF4\x8F\xBF\xBF\xF4\x90\x80\x80", u"\U0010FFFF\u00F4\u0090\u0080\u0080"},
        {system::kUtf8, "\xF5\x80\x80\x80\xFE\xFF", u"\u00F5\u0080\u0080\u0080\u00FE\u00FF"},
        {system::kUtf8, "\xEF\xBF\xBD\xF0\x90\x80\x80", u"\uFFFD\U00010000"},
        {system::kWestern, "\x80,\x81\x9F\xFF", u"\u20AC,\u0081\u0178\u00FF"},
        {system::kLatin1, "\x80,\x9F\xFF", u"\u0080,\u009F\u00FF"},
    };
    for (const auto& [page, bytes, text] : rows)
        EXPECT_EQ(read(page, bytes), text) << page;
}

// Bytes with a character of their own on the instrument's system, and characters that only look like those of
// the page.
TEST(CodePage, WritesTheSystemsOwnBytesAndNoLookAlikes) {
    const std::u16string own932 = u"\u0080\uF8F0\uF8F1\uF8F2\uF8F3",
                         own1252 = u"\u0081\u008D\u008F\u0090\u009D";
    EXPECT_EQ(write(system::kShiftJis, own932), "\x80\xA0\xFD\xFE\xFF");
    EXPECT_EQ(read(system::kShiftJis, "\x80\xA0\xFD\xFE\xFF"), own932);
    EXPECT_EQ(write(system::kWestern, own1252), "\x81\x8D\x8F\x90\x9D");
    EXPECT_EQ(read(system::kWestern, "\x81\x8D\x8F\x90\x9D"), own1252);
    EXPECT_EQ(write(system::kShiftJis, u"\u00A2\u00A3\u00A5\u00AC\u2014\u2016\u203E\u2212\u301C"),
              "?????????");
}

TEST(CodePage, WritesOneReplacementForACharacterThatThePageLacks) {
    const std::u16string text =
        u"a\U0001F600b\u26F0" + std::u16string{0xD83D, 'c', 0xDE00, 0xD83D, 0xD83D, 0xDE00, 0xD83D};
    for (const auto& [page, name] : kPages)
        EXPECT_EQ(write(page, text), "a?b??c????") << name;
    EXPECT_EQ(write(system::kUtf8, text), u8"a\U0001F600b\u26F0\uFFFDc\uFFFD\uFFFD\U0001F600\uFFFD");
}

// They are converted piece by piece. The first and the last character of each length.
TEST(CodePage, LongTextsComeBack) {
    for (std::size_t shift = 0; shift < 8; ++shift) {
        std::u16string text(shift, u'~');
        while (text.size() < 1000)
            text += u"\u007F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF";
        EXPECT_EQ(read(system::kUtf8, write(system::kUtf8, text)), text) << shift;
    }
}

TEST(CodePage, AppendsAfterWhatIsThereAndKeepsZeroes) {
    const std::string bytes("A\0\xE3\x81\x82", 5);
    CString wide(u"X");
    system::appendWide(system::kUtf8, bytes.data(), bytes.size(), wide);
    EXPECT_EQ(wide, CString(u"XA\0\u3042", 4));
    std::string back = "Y";
    system::appendAnsi(system::kUtf8, wide, wide.GetLength(), back);
    EXPECT_EQ(back, "YX" + bytes);
    system::appendAnsi(system::kShiftJis, nullptr, 0, back);
    system::appendWide(system::kShiftJis, nullptr, 0, wide);
    EXPECT_EQ(back.size(), 7u);
    EXPECT_EQ(wide.GetLength(), 4);
}

}  // namespace
