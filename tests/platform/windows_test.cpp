// What only Windows has: its own registry and code page, files that other programs hold.
#include <fieldscan/card.h>
#include <fieldscan/framework/file.h>
#include <fieldscan/scan_result_files.h>
#include <fieldscan/unit_settings.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "platform/windows/handles.h"
#include "tests/temp_folder.h"

using namespace fieldscan;

namespace {

using Windows = TempFolder;

// The system's calls for the library under test, which fail to order.
struct Orders {
    DWORD replaceError = ERROR_SUCCESS;
    int replaceFailures = 0;  // how many calls fail
    bool movesFail = false;
} orders;

template <class Call>
Call systemCall(const char* name) {
    return reinterpret_cast<Call>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32"), name)));
}

BOOL WINAPI moveToOrder(LPCWSTR from, LPCWSTR to, DWORD flags) {
    SetLastError(ERROR_SHARING_VIOLATION);
    return !orders.movesFail && systemCall<decltype(&MoveFileExW)>("MoveFileExW")(from, to, flags);
}

// ERROR_UNABLE_TO_MOVE_REPLACEMENT_2 comes after the first of two renames.
BOOL WINAPI replaceToOrder(LPCWSTR file, LPCWSTR by, LPCWSTR old, DWORD flags, LPVOID, LPVOID) {
    if (orders.replaceFailures == 0)
        return systemCall<decltype(&ReplaceFileW)>("ReplaceFileW")(file, by, old, flags, nullptr, nullptr);
    --orders.replaceFailures;
    if (GetFileAttributesW(file) == INVALID_FILE_ATTRIBUTES) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return FALSE;
    }
    if (orders.replaceError == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2)
        systemCall<decltype(&MoveFileExW)>("MoveFileExW")(file, old, 0);
    SetLastError(orders.replaceError);
    return FALSE;
}

}  // namespace

// Calls go through these pointers; where a program defines them, the linker does not take the system's.
extern "C" {
extern const decltype(&MoveFileExW) __imp_MoveFileExW;
extern const decltype(&ReplaceFileW) __imp_ReplaceFileW;
const decltype(&MoveFileExW) __imp_MoveFileExW = moveToOrder;
const decltype(&ReplaceFileW) __imp_ReplaceFileW = replaceToOrder;
}

namespace {

// A file held open by another program.
class Held {
public:
    Held(const std::filesystem::path& path, DWORD access, DWORD share)
        : m_handle(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr)) {}
    ~Held() { CloseHandle(m_handle); }
    bool open() const { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

std::ptrdiff_t filesInFolder(const std::filesystem::path& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

TEST_F(Windows, FilesThatOthersHold) {
    put("file", "kept");
    const unsigned int read = CFile::modeRead, write = CFile::modeWrite, make = CFile::modeCreate | write;
    const DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE;
    const std::tuple<DWORD, DWORD, unsigned int, bool> rows[] = {{GENERIC_READ, 0, read, false},
                                                                 {GENERIC_READ, FILE_SHARE_READ, read, true},
                                                                 {GENERIC_READ, FILE_SHARE_READ, make, false},
                                                                 {GENERIC_READ, shared, write, true},
                                                                 {GENERIC_WRITE, shared, read, false},
                                                                 {GENERIC_WRITE, shared, write, false}};
    for (const auto& [access, share, mode, opens] : rows) {
        const Held held(folder / "file", access, share);
        ASSERT_TRUE(held.open());
        CFile file;
        EXPECT_EQ(file.Open(path("file"), mode), opens);
        EXPECT_EQ(file.GetOpenFailure(), opens ? CFile::causeNone : CFile::causeSharingViolation)
            << access << ' ' << share << ' ' << mode;
    }
    CFile first, second;
    EXPECT_EQ(first.Open(path("file"), read), 1);
    EXPECT_EQ(second.Open(path("file"), read), 1);
    EXPECT_EQ(second.Open(path("file"), write), 0) << "being read";
    EXPECT_EQ(first.Open(path("file"), write), 1);
    EXPECT_EQ(second.Open(path("file"), write), 0) << "being written";
    first.Close();
    EXPECT_EQ(get("file"), "kept");
}

// How many of 50 calls in each of the threads gave 1.
int goodCalls(int threads, const std::function<int(int thread)>& call) {
    std::atomic<int> good{0};
    std::vector<std::thread> running;
    for (int i = 0; i < threads; ++i)
        running.emplace_back([&, i] {
            for (int k = 0; k < 50; ++k)
                good += call(i);
        });
    for (std::thread& thread : running)
        thread.join();
    return good;
}

TEST_F(Windows, WritersOfOneFileLoseNothing) {
    const CString file = path("file");
    const int good = goodCalls(8, [&](int) { return ScanFileAdd(file, CXYZ(u"P", 1, 2, 3)); });
    EXPECT_GT(good, 200);
    std::string lines;
    for (int i = 0; i < good; ++i)
        lines += "P,1.000000,2.000000,3.000000\n";
    EXPECT_EQ(get("file"), lines);
}

// A reader goes on with the contents that it opened.
TEST_F(Windows, ReplacesAFileThatIsBeingRead) {
    put("file", "old");
    put(".fieldscan-a user's", "kept");
    CFile reader;
    ASSERT_EQ(reader.Open(path("file"), CFile::modeRead), 1);
    EXPECT_EQ(CTSUnit().Write(path("file")), 1);
    char bytes[4] = {};
    EXPECT_EQ(reader.Read(bytes, 3), 3u);
    EXPECT_STREQ(bytes, "old");
    reader.Close();
    EXPECT_EQ(get("file").substr(0, 10), "FIELD_SCAN");
    EXPECT_EQ(filesInFolder(folder), 2);
    std::atomic<int> reads{0};
    const int writes = goodCalls(3, [&](int thread) {
        if (thread > 0)
            return CTSUnit().Write(path("file"));
        reads += CTSUnit().Read(path("file"));
        return 0;
    });
    EXPECT_EQ(reads, 50);
    EXPECT_GT(writes, 50);
}

TEST_F(Windows, ReplacesAFileTwiceUnderOneReader) {
    put("file", "old");
    CFile reader;
    ASSERT_EQ(reader.Open(path("file"), CFile::modeRead), 1);
    EXPECT_EQ(CTSUnit().Write(path("file")), 1);
    EXPECT_EQ(CTSUnit().Write(path("file")), 1);
    char bytes[4] = {};
    EXPECT_EQ(reader.Read(bytes, 3), 3u);
    EXPECT_STREQ(bytes, "old");
    reader.Close();
    EXPECT_EQ(CTSUnit().Write(path("file")), 1);
    EXPECT_EQ(filesInFolder(folder), 1);
}

// ReplaceFileW would fail when the new file is written already, with no cause for a message.
TEST_F(Windows, ReplacesNoFileWhoseReaderForbidsItsDeletion) {
    put("file", "old");
    for (const DWORD share : {FILE_SHARE_READ, FILE_SHARE_READ | FILE_SHARE_WRITE}) {
        const Held held(folder / "file", GENERIC_READ, share);
        ASSERT_TRUE(held.open());
        CFile::Cause cause = CFile::causeNone;
        EXPECT_EQ(system::beginReplacement(path("file"), cause), nullptr) << share;
        EXPECT_EQ(cause, CFile::causeSharingViolation) << share;
    }
    EXPECT_EQ(get("file"), "old");
    EXPECT_EQ(CTSUnit().Write(path("file")), 1) << "after the reader has closed it";
}

TEST_F(Windows, AnExchangeThatFailsOnceIsTriedAgain) {
    for (const DWORD error : {ERROR_UNABLE_TO_REMOVE_REPLACED, ERROR_UNABLE_TO_MOVE_REPLACEMENT,
                              ERROR_UNABLE_TO_MOVE_REPLACEMENT_2, ERROR_NOT_SUPPORTED}) {
        put("file", "old");
        orders = {error, 1, false};
        EXPECT_EQ(CTSUnit().Write(path("file")), 1) << error;
        EXPECT_EQ(orders.replaceFailures, 0) << error;
        EXPECT_EQ(get("file").substr(0, 10), "FIELD_SCAN") << error;
        EXPECT_EQ(filesInFolder(folder), 1) << error;
    }
    orders = {};
}

TEST_F(Windows, AnExchangeThatFailsKeepsTheOldFile) {
    put("file", "old");
    for (const DWORD error : {ERROR_UNABLE_TO_REMOVE_REPLACED, ERROR_UNABLE_TO_MOVE_REPLACEMENT}) {
        orders = {error, 1000, false};
        EXPECT_EQ(CTSUnit().Write(path("file")), 0) << error;
        EXPECT_EQ(get("file"), "old") << error;
        EXPECT_EQ(filesInFolder(folder), 1) << error;
    }
    orders = {ERROR_UNABLE_TO_MOVE_REPLACEMENT_2, 1000, true};
    EXPECT_EQ(CTSUnit().Write(path("file")), 0);
    EXPECT_FALSE(exists("file")) << "nor could it be moved back";
    orders = {};
    CFile reader;
    EXPECT_EQ(reader.Open(path("file"), CFile::modeRead), 1);
    reader.Close();
    EXPECT_EQ(get("file"), "old");
    EXPECT_EQ(filesInFolder(folder), 1);
}

TEST_F(Windows, AKillBetweenTheRenamesOfAnExchangeLosesNothing) {
    const std::string old = "A,1.000000,2.000000,3.000000\n";
    const auto kill = [&](int number) {
        std::filesystem::remove(folder / "file");
        put("old", old);
        std::filesystem::rename(folder / "old", wideUnits(system::oldPathFor(path("file"), number)));
        put("new", "half a li");
        std::filesystem::rename(folder / "new", wideUnits(system::temporaryFor(path("file"))));
    };
    for (const int number : {0, system::kOldPaths - 1}) {
        kill(number);
        EXPECT_EQ(ScanFileAdd(path("file"), CXYZ(u"B", 1, 2, 3)), 1);
        EXPECT_EQ(get("file"), old + "B,1.000000,2.000000,3.000000\n");
        kill(number);
        CFile reader;
        EXPECT_EQ(reader.Open(path("file"), CFile::modeRead), 1);
        EXPECT_EQ(reader.GetLength(), old.size());
        reader.Close();
        kill(number);
        EXPECT_EQ(CTSUnit().Write(path("file")), 1);
        EXPECT_EQ(get("file").substr(0, 10), "FIELD_SCAN");
        EXPECT_EQ(filesInFolder(folder), 1);
    }
}

// Where the file system has them; wine's has not.
TEST_F(Windows, StreamsOfAReplacedFileStay) {
    put("file", "old");
    {
        std::ofstream note(folder / "file:note");
        note << "kept";
    }
    if (filesInFolder(folder) != 1 || get("file:note") != "kept")
        GTEST_SKIP() << "no streams";
    EXPECT_EQ(CTSUnit().Write(path("file")), 1);
    EXPECT_EQ(get("file:note"), "kept");
}

TEST_F(Windows, CardsTakeNoDeviceForAFileAndNoDriveForATitle) {
    put("file", "");
    CRTCard card;
    EXPECT_EQ(card.IsFile(path("file")), 1);
    EXPECT_EQ(card.IsFile(CString(u"\\\\.\\") + path("file")), 1);
    EXPECT_EQ(card.IsFile(u"NUL"), 0);
    EXPECT_EQ(card.IsFile(u"nul"), 0);
    EXPECT_EQ(card.IsFile(u"COM1"), 0);
    EXPECT_EQ(card.IsFile(path("NUL")), 0);
    CString title;
    EXPECT_EQ(card.GetFileTitle(u"C:x.csv", title), 1);
    EXPECT_EQ(title, CString(u"x"));
    EXPECT_EQ(card.GetFileTitle(u"C:\\a\\x.csv", title), 1);
    EXPECT_EQ(title, CString(u"x"));
    EXPECT_EQ(card.GetFileTitle(u"C:", title), 0);
}

TEST_F(Windows, FilesThatAreProtectedHiddenOrDevices) {
    put("file", "kept");
    const auto attribute = [&](DWORD value) { SetFileAttributesW((folder / "file").c_str(), value); };
    CFile file;
    attribute(FILE_ATTRIBUTE_READONLY);
    const unsigned int write = CFile::modeWrite, make = CFile::modeCreate | write;
    for (const unsigned int mode : {write, make, make | CFile::modeNoTruncate}) {
        EXPECT_EQ(file.Open(path("file"), mode), 0);
        EXPECT_EQ(file.GetOpenFailure(), CFile::causeAccessDenied);
    }
    EXPECT_EQ(file.Open(path("file"), CFile::modeRead), 1);
    EXPECT_EQ(file.GetLength(), 4);
    EXPECT_EQ(file.Close(), 1);
    attribute(FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(file.Open(path("file"), make), 1);
    EXPECT_EQ(file.GetLength(), 0);
    EXPECT_EQ(file.Close(), 1);
    attribute(FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(file.Open(u"NUL", write), 0) << "a measurement written there is lost";
    EXPECT_EQ(file.Open(u"CON", CFile::modeRead), 0);
}

TEST_F(Windows, PathsAreWide) {
    const CString name = CString(folder.c_str()) + u"\\\u5cb3 \u00e9.csv";
    CFile file;
    EXPECT_EQ(file.Open(name, CFile::modeCreate | CFile::modeWrite), 1);
    EXPECT_TRUE(std::filesystem::exists(folder / L"\u5cb3 \u00e9.csv"));
    EXPECT_TRUE(system::isFile(name));
    EXPECT_FALSE(system::isFile(CString(folder.c_str())));
}

TEST_F(Windows, RegistryTexts) {
    const wchar_t key[] = L"System\\StorageManager\\Profiles\\SDMMC";
    CString value(u"untouched");
    const auto lookUp = [&](DWORD type, const std::wstring& text, DWORD bytes) {
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, L"Folder", type, text.c_str(), bytes);
        return system::registryText(key, u"fOLDER", value);
    };
    EXPECT_FALSE(system::registryText(key, u"Folder", value)) << "no key";
    EXPECT_FALSE(lookUp(REG_DWORD, L"xx", 4)) << "no text";
    EXPECT_EQ(value, CString(u"untouched"));
    EXPECT_FALSE(system::registryText(key, u"Name", value)) << "no value";
    for (const std::size_t length : {0u, 1u, 31u, 32u, 33u, 5000u}) {  // 32 fill the first buffer
        const std::wstring text(length, L'\u5cb3');
        for (const std::size_t zeroes : {1u, 0u}) {  // closing ones
            EXPECT_TRUE(lookUp(REG_SZ, text, static_cast<DWORD>(2 * (length + zeroes))));
            EXPECT_EQ(value, CString(text.c_str())) << length;
        }
    }
}

TEST_F(Windows, CodePageOfTheSystem) {
    const char* const wanted = std::getenv("FIELDSCAN_TEST_CODE_PAGE");  // that the tests were to run in
    EXPECT_EQ(std::to_string(system::ansiCodePage()), wanted ? wanted : std::to_string(GetACP()));
    // Pages that are not compiled in: 1250 has no half-width katakana, and a look-alike for none.
    std::string bytes;
    const CString text(u"\u0159\u00e4\uff8c\u2212.");
    system::appendAnsi(1250, text, text.GetLength(), bytes);
    EXPECT_EQ(bytes, "\xF8\xE4??.");
    CString back;
    system::appendWide(936, "\xD6\xD0,\x81,\xFF\x81\x40", 7, back);  // the last byte is not counted
    EXPECT_EQ(back, CString(u"\u4e2d,\u0081,\u00ff\u0081"));
}

TEST_F(Windows, Clock) {
    TIME_ZONE_INFORMATION zone;
    const bool summer = GetTimeZoneInformation(&zone) == TIME_ZONE_ID_DAYLIGHT;
    EXPECT_EQ(system::localOffsetSeconds(),
              -60 * (zone.Bias + (summer ? zone.DaylightBias : zone.StandardBias)));
    const unsigned long long unixEpoch = 11644473600ULL;
    EXPECT_NEAR(static_cast<double>(system::fileTimeNow() / 10000000 - unixEpoch),
                static_cast<double>(std::time(nullptr)), 5.0);
}

}  // namespace
