// CString, CArray, calendar and the small parts of the framework.
#include <fieldscan/card.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/message.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "platform/framework/angle_wrap.h"
#include "platform/framework/calendar.h"
#include "platform/framework/line_text.h"
#include "platform/framework/truncation.h"
#include "platform/system.h"
#include "tests/print_text.h"

namespace {

std::u16string units(const CString& text) { return {text.GetString(), text.GetString() + text.GetLength()}; }

const CString kLong(u"a name that does not fit into the object itself");

TEST(CString, KeepsItsTextThroughEveryWayOfChangingStorage) {
    for (const CString& text : {CString(), CString(u"1234567"), CString(u"12345678"), kLong}) {
        CString copy(text), moved(std::move(copy));
        EXPECT_EQ(units(moved), units(text));
        EXPECT_TRUE(copy.IsEmpty());
        for (CString target : {CString(), CString(u"short"), kLong}) {
            target = moved;
            target = target.GetString();  // its own text
            CString& self = target;
            target = std::move(self);
            EXPECT_EQ(units(target), units(text));
            target += target;  // appending it to itself, growing or not
            target.Append(target.GetString() + target.GetLength() / 2, target.GetLength() / 2);
            EXPECT_EQ(units(target), units(text) + units(text) + units(text));
            EXPECT_EQ(target.GetString()[target.GetLength()], 0);
            target.Append(nullptr, 3);
            target.Append(target, -1);
            CString last(u"before");
            last = std::move(target);
            EXPECT_EQ(units(last) + units(target), units(text) + units(text) + units(text));
        }
    }
}

TEST(CString, CutsDownToWhatThereIs) {
    const CString text(u"abc.def.g");
    EXPECT_EQ(text.Left(3) + text.Mid(3, 5) + text.Right(1), text);
    EXPECT_EQ(text.Left(-1) + text.Mid(9) + text.Mid(2, 0) + text.Right(-5), CString());
    EXPECT_EQ(text.Left(99) + text.Right(99) + text.Mid(-4, 3), text + text + u"abc");
    EXPECT_EQ(text.GetAt(-1) + text.GetAt(9) + text[1000], 0);
    EXPECT_TRUE(text.Find('.') == 3 && text.Find('.', 4) == 7 && text.ReverseFind('.') == 7 &&
                text.FindOneOf(u"xgf") == 6);
    EXPECT_TRUE(text.Find(u"def") == 4 && text.Find(u"def", 5) == -1 && text.Find(CString(), 9) == 9 &&
                text.Find(CString(), 10) == -1);

    CString edited(text);
    edited.SetAt(9, 'x');
    edited.SetAt(-1, 'x');
    EXPECT_EQ(edited, text);
    EXPECT_TRUE(edited.Replace('.', '-') == 2 && edited.Insert(3, u"[]") == 11);
    EXPECT_TRUE(edited.Delete(9, 100) == 9 && edited == u"abc[]-def");
    EXPECT_EQ(CString(u" \t\v\u3000a b\r\n").Trim() + CString(u" \u3000").TrimLeft(), CString(u"a b"));
    EXPECT_EQ(CString(u"aZ\u00e4").MakeUpper(), CString(u"AZ\u00e4"));
}

TEST(CString, NeverTakesPartInPointerArithmetic) {
    const CString text(u"P1");
    const unsigned short* units = text;
    EXPECT_EQ('\\' + text + u'x' + u"y" + "z" + 0x3042 + 65U + 66L, CString(u"\\P1xyz\u3042AB"));
    EXPECT_TRUE(text == CString(u"P1 more", 7).Left(2).GetString() && units == text && text <= units &&
                units >= text);
    EXPECT_TRUE(text != CString(u"P10").GetString() && text < CString(u"P10").GetString());
    EXPECT_EQ(text[1L] + text[std::size_t{1}] + text[-1] + text[2U] + text[1LL << 32], '1' + '1');
    CString buffered(nullptr);
    std::memcpy(buffered.GetBuffer(20), u"12345678901234567890", 40);
    buffered.ReleaseBuffer(12);
    EXPECT_EQ(buffered, CString(u"123456789012"));
    buffered.GetBuffer(30)[3] = 0;
    buffered.ReleaseBuffer();
    EXPECT_EQ(buffered, CString(u"123"));
    buffered.Empty();
    std::memcpy(buffered.GetBuffer(7), u"1234567", 16);
    buffered.ReleaseBuffer();
    EXPECT_EQ(buffered + u"8", CString(u"12345678"));
    EXPECT_EQ((buffered = u'x').GetLength(), 1);
}

TEST(CString, OrdersByUnits) {
    EXPECT_TRUE(CString(u"a") < CString(u"aa") && CString(u"b") > CString(u"ab"));
    EXPECT_LT(CString(u"\u3042"), CString(u"\uff71"));  // beyond the range of a signed 16-bit number
    EXPECT_TRUE(CString(u"a") != CString(u"A") && CString(u"PCMCIA").CompareNoCase(u"pcmcia") == 0);
}

// An element that counts its living objects and leaves `unset` to whoever prepared its storage.
struct Counted {
    Counted() { ++living; }
    Counted(const Counted& other) : unset(other.unset) {
        if (--copiesLeft < 0)
            throw std::bad_alloc();
        ++living;
    }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --living; }
    int unset;
    static inline int living = 0, copiesLeft = 0;
};

TEST(CArray, GrowsByTheRule) {
    CArray<int, int> array;
    int expected = 0;
    for (int size = 0; size < 40000; ++size) {
        if (size == expected)  // max(4, min(1024, size / 8))
            expected += size / 8 < 4 ? 4 : size / 8 > 1024 ? 1024 : size / 8;
        array.Add(size);
        ASSERT_EQ(array.GetCapacity(), expected) << "at size " << size;
    }
    // A smaller size keeps the room, none frees it; never less than asked for; the step that is set.
    const int steps[][3] = {{3, -1, expected}, {0, -1, 0}, {1000, -1, 1000}, {1001, 50, 1050}};
    for (const auto& [size, step, capacity] : steps) {
        array.SetSize(size, step);
        EXPECT_EQ(array.GetCapacity(), capacity) << size;
    }
    array.SetSize(-1);
    EXPECT_TRUE(array.GetSize() == 1001 && array[1000] == 0);
}

TEST(CArray, ConstructsInZeroedStorageAndDestroysAll) {
    Counted::copiesLeft = 1000000;
    {
        CArray<Counted> array;
        array.SetSize(10);
        std::memset(&array[9].unset, 0x55, sizeof(int));
        array.SetSize(9);
        array.SetSize(10);  // the same storage again
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(array[i].unset, 0);
        EXPECT_EQ(Counted::living, 10);
        array.FreeExtra();
        Counted::copiesLeft = 5;
        EXPECT_THROW(array.SetSize(1000), std::bad_alloc);
        EXPECT_TRUE(array.GetSize() == 10 && Counted::living == 10);
    }
    EXPECT_EQ(Counted::living, 0);
}

TEST(CArray, InsertsAndRemovesElementsOfItsOwn) {
    CStringArray array;
    for (const char16_t* name : {u"a", u"b", u"a longer name, kept outside", u"d"})
        array.Add(name);
    array.Add(array[2]);  // grows while the element lies in the array
    array.InsertAt(0, array[4], 2);
    array.InsertAt(9, u"z");
    array.RemoveAt(2, 2);
    array.RemoveAt(99);
    array.RemoveAt(-1);
    array.InsertAt(-1, u"x");
    array.InsertAt(0, u"x", 0);
    CString all;
    for (int i = 0; i < array.GetSize(); ++i)
        all += array[i].Left(3) + u"|";
    EXPECT_EQ(all, CString(u"a l|a l|a l|d|a l|||z|"));
    CStringArray copy;
    copy.Copy(array);
    EXPECT_TRUE(copy.Append(array) == 8 && copy[15] == u"z");
    EXPECT_THROW(array.InsertAt(0x7fffffff, u""), std::bad_alloc);
    EXPECT_THROW(array.InsertAt(0, u"", 0x7fffffff), std::bad_alloc);
    EXPECT_THROW(array.SetAtGrow(0x7fffffff, u""), std::bad_alloc);
    array.SetAtGrow(-1, u"");
    array.RemoveAt(5, 99);
    EXPECT_EQ(array.GetSize(), 5);
    array.Reserve(100);
    array.FreeExtra();
    EXPECT_EQ(array.GetCapacity(), 5);
    array.SetAtGrow(6, array[0]);
    EXPECT_EQ(array[6].GetLength(), kLong.Left(27).GetLength());
}

TEST(Calendar, CountsEveryDay) {
    int year = 1601, month = 1, day = 1;
    for (unsigned long long k = 0; k < 400000; ++k) {
        const fieldscan::CalendarTime got = fieldscan::calendarTime(k * 864000000000ULL + 12345678, 0);
        ASSERT_TRUE(got.field[0] == year && got.field[1] == month && got.field[2] == day) << k;
        const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        const int days[] = {31, 28 + leap, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        day = day == days[month - 1] ? 1 : day + 1;
        month = day > 1 ? month : month % 12 + 1;
        year += day == 1 && month == 1;
    }
    const fieldscan::CalendarTime before = fieldscan::calendarTime(0, -1);
    const std::vector<int> toTheSecond(before.field, before.field + 6);
    EXPECT_EQ(toTheSecond, (std::vector<int>{1600, 12, 31, 23, 59, 59}));
    EXPECT_EQ(fieldscan::calendarTime(12345678, 0).field[6], 234);
    EXPECT_EQ(fieldscan::calendarTime(~0ULL, 0).field[0], 60056);
    EXPECT_GE(fieldscan::calendarTime(fieldscan::system::fileTimeNow(), 0).field[0], 2020);
}

// What the formulas state: one turn more or less until the angle is in range.
double wrappedByLoop(double a) {
    while (a < 0.0)
        a += 400.0;
    while (a >= 400.0)
        a -= 400.0;
    return a;
}

TEST(Arithmetic, WrapsAsAddingTurnsWould) {
    double magnitude = 1e-300;
    for (int i = 0; i < 60000; ++i) {
        magnitude = magnitude > 2e5 ? 1e-300 * i : magnitude * 1.013 + i * 1e-9;
        for (const double a : {magnitude, -magnitude, 400.0 * (i % 100), -400.0 * (i % 100) - 1e-17}) {
            double got = a;
            fieldscan::wrapTurn(got, 400.0, false);
            ASSERT_EQ(got, wrappedByLoop(a)) << a;
        }
    }
    double unbounded = std::numeric_limits<double>::infinity();
    fieldscan::wrapTurn(unbounded, 360.0, true);
    EXPECT_EQ(unbounded, std::numeric_limits<double>::infinity());
    EXPECT_EQ(fieldscan::truncated(-1e300), std::numeric_limits<int>::min());
    EXPECT_EQ(fieldscan::truncated(2147483647.5), std::numeric_limits<int>::max());
    EXPECT_EQ(fieldscan::truncated(-2147483647.9), -2147483647);
    EXPECT_EQ(fieldscan::truncated(std::nan("")), 0);
}

TEST(Lines, SplitAndTrim) {
    std::string_view fields[3];
    EXPECT_EQ(fieldscan::splitAtCommas("a, b ,c,d", fields, 3), 3);
    EXPECT_EQ(std::string(fields[0]) + std::string(fieldscan::trimmed(fields[1])) + std::string(fields[2]),
              "abc");
    EXPECT_EQ(fieldscan::splitAtCommas("", fields, 3), 1);
    EXPECT_EQ(fieldscan::splitAtCommas(",", fields, 3), 2);
    EXPECT_EQ(fieldscan::trimmed(" \r\n"), "");
}

TEST(Card, GivesTheTitleOfAPath) {
    const std::pair<const char16_t*, const char16_t*> rows[] = {
        {u"\\Card\\A.B.csv", u"A.B"}, {u"dir.x/name", u"name"}, {u".hidden", u".hidden"},
        {u"C:\\x/y\\.", u"."},        {u"folder/", u""},        {u"", u""}};
    for (const auto& [path, expected] : rows) {
        CString title(u"before");
        EXPECT_EQ(CRTCard().GetFileTitle(path, title), *expected ? 1 : 0);
        EXPECT_EQ(title, CString(expected));
    }
    CString program;
    ASSERT_TRUE(fieldscan::system::modulePath(program));
    EXPECT_TRUE(CRTCard().IsFile(program) && !CRTCard().IsFile(program + u"x"));
}

CString shown;

TEST(Message, GoesToTheHandler) {
    const CKTImgMsg::Handler before = CKTImgMsg::SetHandler(
        [](const CString& text, const CRect& place) { shown = place.Width() ? u"" : text; });
    CKTImgMsg::DispMessage(u"card full");
    EXPECT_EQ(shown, CString(u"card full"));
    CKTImgMsg::SetHandler(before);
}

}  // namespace
