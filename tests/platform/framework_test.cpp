// CString, CArray, calendar and the small parts of the framework.
#include <fieldscan/card.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/standard.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <limits>
#include <new>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/framework/angle_wrap.h"
#include "platform/framework/calendar.h"
#include "platform/framework/truncation.h"
#include "platform/system.h"
#include "tests/print_text.h"

namespace {

const CString kLong(u"a name that does not fit into the object itself");

TEST(CString, KeepsItsTextThroughEveryWayOfChangingStorage) {
    for (const CString& text : {CString(), CString(u"1234567"), CString(u"12345678"), kLong}) {
        const CString thrice = text + text + text;
        CString copy(text), moved(std::move(copy));
        EXPECT_EQ(moved, text);
        EXPECT_TRUE(copy.IsEmpty());
        for (CString target : {CString(), CString(u"short"), kLong}) {
            target = moved;
            target = target.GetString();  // its own text
            CString& self = target;
            target = std::move(self);
            EXPECT_EQ(target, text);
            target += target;  // to itself, growing or not
            target.Append(target.GetString() + target.GetLength() / 2, target.GetLength() / 2);
            EXPECT_EQ(target, thrice);
            EXPECT_EQ(target.GetString()[target.GetLength()], 0);
            target.Append(nullptr, 3);
            target.Append(target, -1);
            CString last(u"before");
            last = std::move(target);
            EXPECT_EQ(last, thrice);
            EXPECT_TRUE(target.IsEmpty());
        }
    }
}

TEST(CString, CutsDownToWhatThereIs) {
    const CString text(u"abc.def.g");
    const std::pair<CString, const char16_t*> parts[] = {
        {text.Left(3), u"abc"},   {text.Left(-1), u""},       {text.Left(99), u"abc.def.g"},
        {text.Right(1), u"g"},    {text.Right(-5), u""},      {text.Right(99), u"abc.def.g"},
        {text.Mid(9), u""},       {text.Mid(3, 5), u".def."}, {text.Mid(2, 0), u""},
        {text.Mid(-4, 3), u"abc"}};
    for (const auto& [part, expected] : parts)
        EXPECT_EQ(part, CString(expected));
    for (const int outside : {-1, 9, 1000})
        EXPECT_EQ(text[outside], 0) << outside;
    const std::pair<int, int> found[] = {{text.Find('.'), 3},          {text.Find('.', 4), 7},
                                         {text.ReverseFind('.'), 7},   {text.FindOneOf(u"xgf"), 6},
                                         {text.Find(u"def"), 4},       {text.Find(u"def", 5), -1},
                                         {text.Find(CString(), 9), 9}, {text.Find(CString(), 10), -1}};
    for (const auto& [position, expected] : found)
        EXPECT_EQ(position, expected);
}

TEST(CString, IsEditedInPlace) {
    CString text(u"abc.def.g");
    text.SetAt(9, 'x');
    text.SetAt(-1, 'x');
    EXPECT_EQ(text, u"abc.def.g");
    EXPECT_EQ(text.Replace('.', '-'), 2);
    EXPECT_EQ(text.Insert(3, u"[]"), 11);
    EXPECT_EQ(text.Delete(9, 100), 9);
    EXPECT_EQ(text, u"abc[]-def");
    EXPECT_EQ(CString(u" \t\v\u3000a b\r\n").Trim(), u"a b");
    EXPECT_EQ(CString(u" \u3000").TrimLeft(), u"");
    EXPECT_EQ(CString(u"aZ\u00e4").MakeUpper(), u"AZ\u00e4");
}

TEST(CString, NeverTakesPartInPointerArithmetic) {
    const CString text(u"P1"), longer(u"P10");
    const unsigned short* units = text;
    EXPECT_EQ('\\' + text + u'x' + u"y" + "z" + u'\u3042' + L'A' + longer[0], u"\\P1xyz\u3042AP");
    EXPECT_EQ(text, CString(u"P1 more", 7).Left(2).GetString());
    EXPECT_EQ(units, text);
    EXPECT_LE(text, units);
    EXPECT_GE(units, text);
    EXPECT_NE(text, longer.GetString());
    EXPECT_LT(text, longer.GetString());
    for (const unsigned short unit : {text[1L], text[std::size_t{1}]})
        EXPECT_EQ(unit, '1');
    for (const unsigned short none : {text[-1], text[2U], text[1LL << 32]})
        EXPECT_EQ(none, 0);
}

template <class Left, class Right, class = void>
struct Adds : std::false_type {};
template <class Left, class Right>
struct Adds<Left, Right, std::void_t<decltype(std::declval<Left>() + std::declval<Right>())>>
    : std::true_type {};
template <class Unit, class = void>
struct Takes : std::false_type {};
template <class Unit>
struct Takes<Unit, std::void_t<decltype(std::declval<CString&>() += std::declval<Unit>())>> : std::true_type {
};
template <class Unit>
constexpr bool joins = Adds<CString, Unit>::value&& Adds<Unit, CString>::value&& Takes<Unit>::value&&
    std::is_assignable<CString&, Unit>::value;
template <class Number>
constexpr bool joinsAnywhere = Adds<CString, Number>::value || Adds<Number, CString>::value ||
                               Takes<Number>::value || std::is_assignable<CString&, Number>::value;

enum Plain { kPlain };

// `text + 5` would append a control character, or be an address.
static_assert(joins<unsigned short> && joins<char> && joins<char16_t> && joins<wchar_t>);
static_assert(joins<const char*> && joins<const char16_t*>);
static_assert(!joinsAnywhere<int> && !joinsAnywhere<unsigned int> && !joinsAnywhere<short>);
static_assert(!joinsAnywhere<long> && !joinsAnywhere<std::size_t> && !joinsAnywhere<long long>);
static_assert(!joinsAnywhere<signed char> && !joinsAnywhere<unsigned char> && !joinsAnywhere<char32_t>);
static_assert(!joinsAnywhere<bool> && !joinsAnywhere<double> && !joinsAnywhere<Plain>);

template <class Stream, class = void>
struct Prints : std::false_type {};
template <class Stream>
struct Prints<Stream, std::void_t<decltype(std::declval<Stream&>() << CString())>> : std::true_type {};

static_assert(Prints<std::ostream>::value);
static_assert(Prints<std::ofstream>::value);
static_assert(!Prints<std::wostream>::value, "would print the address");

TEST(CString, GoesToTheStandardLibraryAndBack) {
    const std::string utf8 = u8"P1 \u5CB3 \U0001D4D0 and a long tail";
    const CString text(u"P1 \u5CB3 \U0001D4D0 and a long tail"), withNul(u"a\0b", 3);
    EXPECT_EQ(fieldscan::toUtf8(text), utf8);
    EXPECT_EQ(fieldscan::fromUtf8(utf8), text);
    EXPECT_EQ(fieldscan::toUtf8(withNul), std::string("a\0b", 3));
    EXPECT_EQ(fieldscan::fromUtf8(std::string("a\0b", 3)), withNul);
    EXPECT_EQ(fieldscan::toUtf8(CString(u"\xD800")), u8"\uFFFD");
    EXPECT_EQ(fieldscan::fromUtf8("\xE9"), u"\u00E9") << "no byte is lost";
    EXPECT_TRUE(fieldscan::toUtf16(withNul) == std::u16string_view(u"a\0b", 3));
    EXPECT_EQ(fieldscan::fromUtf16(std::u16string_view(u"a\0b", 3)), withNul);
    EXPECT_EQ(fieldscan::fromUtf16({}), CString());
    std::ostringstream stream;
    stream << "name " << text << ", " << 5;
    EXPECT_EQ(stream.str(), "name " + utf8 + ", 5");
    std::unordered_set<CString> names = {text, CString(text), withNul};
    EXPECT_EQ(names.size(), 2u);
    EXPECT_EQ(names.count(fieldscan::fromUtf8(utf8)), 1u);
}

TEST(CString, IsFilledThroughItsBuffer) {
    CString text(nullptr);
    std::memcpy(text.GetBuffer(20), u"12345678901234567890", 40);
    text.ReleaseBuffer(12);
    EXPECT_EQ(text, u"123456789012");
    text.GetBuffer(30)[3] = 0;
    text.ReleaseBuffer();
    EXPECT_EQ(text, u"123");
    text.Empty();
    std::memcpy(text.GetBuffer(7), u"1234567", 16);
    text.ReleaseBuffer();
    EXPECT_EQ(text + u"8", u"12345678");
    text = u'x';
    EXPECT_EQ(text, u"x");
}

TEST(CString, OrdersByUnits) {
    EXPECT_LT(CString(u"a"), CString(u"aa"));
    EXPECT_GT(CString(u"b"), CString(u"ab"));
    EXPECT_LT(CString(u"\u3042"), CString(u"\uff71"));  // beyond the range of a signed 16-bit number
    EXPECT_NE(CString(u"a"), CString(u"A"));
    EXPECT_EQ(CString(u"PCMCIA").CompareNoCase(u"pcmcia"), 0);
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
    EXPECT_EQ(array.GetSize(), 1001);
    EXPECT_EQ(array[1000], 0);
}

TEST(CArray, IsARangeOfTheStandardLibrary) {
    CArray<int, int> array;
    EXPECT_EQ(array.begin(), array.end());
    for (const int value : {3, 1, 2})
        array.Add(value);
    std::sort(array.begin(), array.end());
    const CArray<int, int>& constant = array;
    EXPECT_EQ(std::vector<int>(constant.begin(), constant.end()), (std::vector<int>{1, 2, 3}));
    for (int& value : array)
        value *= 2;
    EXPECT_EQ(array[2], 6);
}

// An element that may not move as bytes, because it knows its place, and how often one was moved.
struct Placed {
    Placed() noexcept : self(this) {}
    Placed(const Placed&) noexcept : self(this) { ++moves; }
    Placed& operator=(const Placed& other) {
        if (this == &other)
            ADD_FAILURE() << "assigned to itself";
        return *this;
    }
    ~Placed() { EXPECT_EQ(self, this); }
    Placed* self;
    static inline int moves = 0;
};
static_assert(!fieldscan::MovesAsBytes<Placed>::value);
static_assert(!fieldscan::MovesAsBytes<std::string>::value);
struct DerivedPoint : CXYZ {
    std::string note;
};
static_assert(!fieldscan::MovesAsBytes<DerivedPoint>::value, "what a base allows does not hold for more");

TEST(CArray, MovesFewElementsWhenItGrows) {
    constexpr int kCount = 200000;
    CArray<Placed> array;
    for (int i = 0; i < kCount; ++i)
        array.Add(Placed());
    EXPECT_LT(Placed::moves, kCount + 12 * kCount) << "one copy an Add, and what the growth moves";
    array.FreeExtra();
    EXPECT_EQ(array.GetCapacity(), kCount);
    array.Reserve(kCount + 1);
    EXPECT_EQ(array.GetCapacity(), kCount + 1);
}

TEST(CArray, KeepsTextsInEveryBlock) {
    CArray<CXYZ, const CXYZ&> points;
    const auto nameOf = [](int i) {
        return fieldscan::fromUtf8((i % 2 ? "P" : "a name beyond the object ") + std::to_string(i));
    };
    for (int i = 0; i < 20000; ++i)
        points.Add(CXYZ(nameOf(i), i, 0, 0));
    CArray<CXYZ, const CXYZ&> other;
    other.Swap(points);
    other.Add(other[1]);
    other.FreeExtra();
    points.Copy(other);
    EXPECT_EQ(other.GetCapacity(), 20001);
    for (int i = 0; i < 20000; ++i) {
        ASSERT_EQ(other[i].name, nameOf(i));
        ASSERT_EQ(points[i].x, i);
    }
    EXPECT_EQ(other[20000].name, u"P1");
    other.RemoveAll();
    other.FreeExtra();
    EXPECT_EQ(other.GetData(), nullptr);
    EXPECT_EQ(other.GetCapacity(), 0);
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
        EXPECT_EQ(array.GetSize(), 10);
        EXPECT_EQ(Counted::living, 10);
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
    EXPECT_EQ(all, u"a l|a l|a l|d|a l|||z|");
    CStringArray copy;
    copy.Copy(array);
    EXPECT_EQ(copy.Append(array), 8);
    EXPECT_EQ(copy[15], u"z");
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
    EXPECT_EQ(array[6], u"a longer name, kept outside");
}

TEST(Calendar, CountsEveryDay) {
    const auto fieldsOf = [](unsigned long long fileTime, long long offset) {
        const fieldscan::CalendarTime time = fieldscan::calendarTime(fileTime, offset);
        return std::vector<int>(time.field, time.field + fieldscan::CalendarTime::kFields);
    };
    int year = 1601, month = 1, day = 1;
    for (unsigned long long k = 0; k < 400000; ++k) {
        const std::vector<int> expected = {year, month, day, 0, 0, 1, 234};
        ASSERT_EQ(fieldsOf(k * 864000000000ULL + 12345678, 0), expected) << k;
        const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        const int days[] = {31, 28 + leap, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        day = day == days[month - 1] ? 1 : day + 1;
        month = day > 1 ? month : month % 12 + 1;
        year += day == 1 && month == 1;
    }
    EXPECT_EQ(fieldsOf(0, -1), (std::vector<int>{1600, 12, 31, 23, 59, 59, 0}));
    EXPECT_EQ(fieldsOf(~0ULL, 0)[0], 60056);
    EXPECT_GE(fieldsOf(fieldscan::system::fileTimeNow(), 0)[0], 2020);
    EXPECT_NEAR(static_cast<double>(fieldscan::system::fileTimeOfLastTick()),
                static_cast<double>(fieldscan::system::fileTimeNow()), 1e8);
}

TEST(Arithmetic, WrapsIntoOneTurn) {
    const double inf = std::numeric_limits<double>::infinity();
    const std::tuple<double, double, double> rows[] = {
        // into [0, 400) and into [0, 400]
        {0.0, 0.0, 0.0},      {399.9, 399.9, 399.9},   {400.0, 0.0, 400.0}, {1200.0, 0.0, 400.0},
        {400.25, 0.25, 0.25}, {-0.25, 399.75, 399.75}, {-800.0, 0.0, 0.0},  {-1e-17, 0.0, 400.0},
        {1e15 + 1, 1.0, 1.0}, {-inf, -inf, -inf}};
    for (const auto& [angle, open, closed] : rows) {
        double a = angle, b = angle;
        fieldscan::wrapTurn(a, 400.0, false);
        fieldscan::wrapTurn(b, 400.0, true);
        EXPECT_EQ(a, open) << angle;
        EXPECT_EQ(b, closed) << angle;
    }
}

TEST(Arithmetic, TruncatesToTheNearestInteger) {
    EXPECT_EQ(fieldscan::truncated(-1e300), std::numeric_limits<int>::min());
    EXPECT_EQ(fieldscan::truncated(2147483647.5), std::numeric_limits<int>::max());
    EXPECT_EQ(fieldscan::truncated(-2147483647.9), -2147483647);
    EXPECT_EQ(fieldscan::truncated(std::nan("")), 0);
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
    EXPECT_EQ(CRTCard().IsFile(program), 1);
    EXPECT_EQ(CRTCard().IsFile(program + u"x"), 0);
}

}  // namespace
