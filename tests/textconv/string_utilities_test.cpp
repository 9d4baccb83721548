// String utilities; names of files.
#include <fieldscan/string_utilities.h>
#include <fieldscan/survey.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "tests/temp_folder.h"

namespace {

using StringUtilities = TempFolder;  // clears the code page

TEST_F(StringUtilities, NamesCountInTheWidthOfTheirDigits) {
    // clang-format off
    const std::tuple<const char16_t*, int, const char16_t*> rows[] = {
        {u"P009", 1, u"P010"}, {u"P999", 1, u"P1000"}, {u"99", 901, u"1000"}, {u"10", -1, u"09"},
        {u"AB9", 2147483647, u"AB2147483656"}, {u"A1B07", -7, u"A1B00"},
        // As an operator types them with a Japanese keyboard.
        {u"測点００９", 1, u"測点０１０"}, {u"Ｐ９９", 1, u"Ｐ１００"}, {u"Ｐ１０", -1, u"Ｐ０９"}, {u"P９9", 1, u"P１０0"},
        {u"P9９", 1, u"P10０"}, {u"Ｐ", 1, u"Ｐ1"}, {u"/：", 1, u"/：1"}, {u"P９／", 1, u"P９／1"}};
    // clang-format on
    for (const auto& [before, step, after] : rows) {
        CString text(before);
        EXPECT_EQ(IncrStr(text, step), 1) << step;
        EXPECT_EQ(text, CString(after));
    }
    for (const char16_t* nought : {u"", u"A0", u"Ｐ０"}) {
        CString text(nought);
        EXPECT_EQ(StrMinusOne(text), 0);
        EXPECT_EQ(text, CString(nought));
    }
    CString nines('9', 40);
    EXPECT_EQ(StrPlusOne(nines), 1);
    EXPECT_EQ(nines, u'1' + CString('0', 40));
}

TEST_F(StringUtilities, CodesAndItems) {
    EXPECT_EQ(IsSameCode(u" WALL\t\u3000", u"\u3000WALL"), 1);
    EXPECT_EQ(IsSameCode(u"WALL", u"Wall"), 0);
    const char16_t* const items[] = {nullptr, u"a", u"b", u"d", u"", nullptr};
    for (int i = 0; i < 6; ++i) {
        CString item = u"a, b\u3000,d,";
        EXPECT_EQ(CutItemInStr(item, i - 1, item), items[i] ? 1 : 0) << i;
        EXPECT_EQ(item, CString(items[i])) << i;
    }
    CString item;
    EXPECT_EQ(CutItemInStr(u"", 0, item), 1);
    EXPECT_EQ(CutItemInStr(u"a,b;c", 1, item, ';'), 1);
    EXPECT_EQ(item, u"c");
    EXPECT_EQ(CStringToInt(u" -12.5x"), -12);
    EXPECT_EQ(CStringToInt(u"99999999999"), 2147483647);
}

// The result and the text of `call` in width + 1 bytes, beyond which it must not write.
template <class Call>
std::string filled(int width, Call call) {
    std::string bytes(static_cast<std::size_t>(width) + 5, '#');
    const int result = call(bytes.data());
    return bytes.substr(bytes.size() - 4) == "####" ? std::to_string(result) + bytes.c_str() : "overrun";
}

TEST_F(StringUtilities, FieldsHoldWholeCharacters) {
    const std::string blank932 = "\x81\x40", blank8 = "\xE3\x80\x80", face = "\xF0\x9F\x98\x80";
    // The page, a width, a text; of a field of the width, its bytes, padded, and the wide text in width + 1
    // bytes.
    const std::tuple<unsigned int, int, std::string, std::string, std::string, std::string> rows[] = {
        {65001, 5, "P1 \t CODE", "2P1", "5P1   ", "5P1 \t "},
        {65001, 4, "\xE5\xB2\xB3\xC3\xA9", "3\xE5\xB2\xB3", "4\xE5\xB2\xB3 ", "3\xE5\xB2\xB3"},
        {65001, 5, blank8 + "\xC3", "4" + blank8 + "\xC3", "5" + blank8 + "\xC3 ", "5" + blank8 + "\xC3\x83"},
        {65001, 5, face + "ab", "5" + face + "a", "5" + face + "a", "5" + face + "a"},
        {65001, 2, "\xFF\xF5 ", "2\xFF\xF5", "2\xFF\xF5", "2\xC3\xBF"},
        {932, 3, "\x8A\x78\x8A\x78", "2\x8A\x78", "3\x8A\x78 ", "2\x8A\x78"},
        {932, 4, "\xB1" + blank932, "1\xB1", "4\xB1   ", "3\xB1" + blank932},
        {65001, 2, "\xF5\xBF\xBF\xBF", "2\xF5\xBF", "2\xF5\xBF", "2\xC3\xB5"},
        {1252, 1, "\xE9\x8A\x78", "1\xE9", "1\xE9", "1\xE9"},
        {1252, 0, "abc", "0", "0", "0"},
        {1252, -1, "abc", "0####", "0####", "0####"}};
    for (const auto& [page, fieldWidth, bytes, field, padded, narrow] : rows) {
        if (!usePage(page))
            continue;
        const int w = fieldWidth;
        const char* const text = bytes.c_str();
        EXPECT_EQ(filled(w, [&](char* out) { return Scopy(out, text, w); }), field);
        EXPECT_EQ(filled(w, [&](char* out) { return ScopyPad(out, text, w); }), padded);
        EXPECT_EQ(filled(w, [&](char* out) { return CStringToChar(text, out, w + 1); }), narrow);
    }
    EXPECT_EQ(filled(3, [](char* out) { return ScopyPad(out, nullptr, 3); }), "3   ");
    EXPECT_EQ(Scopy(nullptr, "abc", 3), 0);
    EXPECT_EQ(ConvUniToAscii(CString(u"a"), nullptr, 9), 0);
}

TEST_F(StringUtilities, WideFieldsHoldWholeCharacters) {
    unsigned short wide[8];
    EXPECT_EQ(TScopy(wide, CString(u"P \u3000Q"), 3), 1);
    EXPECT_EQ(CString(wide), u"P");
    EXPECT_EQ(TScopy(wide, CString(u"a\U0001F600"), 2), 1);
    EXPECT_EQ(CString(wide), u"a") << "half a pair";
    EXPECT_EQ(TScopyPad(wide, wide, 3), 3);
    EXPECT_EQ(CString(wide), u"a  ") << "in place";
    const unsigned short half[] = {'P', 0xD83D};
    EXPECT_EQ(TScopy(wide, half, 2), 1);
}

// A field of a record has no zero byte: the next one begins right after it.
TEST_F(StringUtilities, WhatFollowsAFieldChangesNothing) {
    const std::tuple<unsigned int, int, std::string, std::string, int> rows[] = {
        {932, 3, "P1\x8A", "\x78", 2},       {932, 3, "P1\x8A", " ", 2},
        {65001, 3, "P1\xC3", "\xA9", 2},     {65001, 3, "P1\xC3", "Q", 2},
        {65001, 4, "P\xE3\x80\x80", "Q", 1}, {65001, 3, "P\xE5\xB2", "\xB3", 1},
        {65001, 3, "P\xE5Q", "\xB3", 3},     {1252, 3, "P1\xC3", "\xA9", 3}};
    for (const auto& [page, width, field, next, length] : rows) {
        if (!usePage(page))
            continue;
        const std::string record = field + next;
        char out[8];
        EXPECT_EQ(Scopy(out, record.data(), width), length) << record;
        EXPECT_EQ(out, field.substr(0, static_cast<std::size_t>(length)));
        const std::vector<char> unterminated(field.begin(), field.end());
        EXPECT_EQ(Scopy(out, unterminated.data(), width), length) << "the end of what may be read";
    }
}

TEST_F(StringUtilities, DoubleByteCharacters) {
    for (const unsigned int page : {65001u, 1252u, 932u}) {
        if (!usePage(page))
            continue;
        EXPECT_EQ(IsDbcsLead(0x81), page == 932) << page;
        EXPECT_EQ(IsDbcsTrail(0x40), page == 932) << page;
        EXPECT_EQ(IsDbcsTrailAt("\x81\x40", 1), page == 932) << page;
    }
    if (!usePage(932))
        return;
    std::string edges, seconds;
    for (int byte = -1; byte < 256; ++byte)
        for (const auto& [name, test] : {std::make_pair("L", IsDbcsLead), std::make_pair("T", IsDbcsTrail)})
            edges += test(byte) != test(byte + 1) ? name + std::to_string(byte) : "";
    EXPECT_EQ(edges, "T63T126T127L128L159L223L252T252");
    EXPECT_EQ(IsDbcsLead('\x81'), 1);
    EXPECT_EQ(IsDbcsTrail('\x80'), 1);
    EXPECT_EQ(IsDbcsTrailAt(nullptr, 1), 0);
    // A second byte in the range of first ones, a first one before a blank, half-width, the end.
    for (int i = -1; i < 10; ++i)
        seconds += std::to_string(IsDbcsTrailAt("\x83\x83\x83\x5C\x81 \xB1\x83", i));
    EXPECT_EQ(seconds, "00101000000");
    EXPECT_EQ(IsDbcsTrailAt("\x83\x83", std::numeric_limits<int>::max()), 0);
}

TEST(FileNames, ThatACardTakes) {
    for (const char16_t* good : {u"JOB 1.csv", u"CONE.txt", u"COM0", u"COMA", u"COM10", u"ABC1", u"x.CON"})
        EXPECT_EQ(CCalcXYZHV::ChkFileFolderName(good), 1) << testing::PrintToString(CString(good));
    for (const char16_t* bad : {u"", u"a ", u"..", u"con", u"Nul.a.b", u"PRN .x", u"aux", u"lpt9", u"COM1"})
        EXPECT_EQ(CCalcXYZHV::ChkFileFolderName(bad), 0) << testing::PrintToString(CString(bad));
    EXPECT_EQ(CCalcXYZHV::ChkFileFolderName(CString('n', 255)), 1);
    EXPECT_EQ(CCalcXYZHV::ChkFileFolderName(CString('n', 256)), 0);
    for (const char letter : std::string("\\/:*?\"<>|\x1F\0", 11))
        EXPECT_EQ(CCalcXYZHV::ChkFileFolderName(u'a' + CString(static_cast<unsigned short>(letter)) + u"b"),
                  0)
            << letter;
}

}  // namespace
