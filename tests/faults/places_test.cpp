// Every file operation in places that refuse: devices, folders, media, names, links.
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "tests/faults/file_operations.h"

namespace fs = std::filesystem;

namespace {

using Places = FileOperations;

// Runs work with the rights of a user who owns nothing here; false where the program has none to give up.
template <class Work>
bool asNobody(Work work) {
    if (geteuid() != 0 || seteuid(65534) != 0)
        return false;
    work();
    return seteuid(0) == 0;
}

fs::perms rightsOf(const fs::path& file) { return fs::status(file).permissions(); }

TEST_F(Places, ThatNoSystemHasOrEverySystemRefuses) {
    for (const CString& place : {CString(), CString(u"/dev/full"), CString(u"/dev/zero"),
                                 CString(folder.c_str()), path("none/file"), path(std::string(5000, 'a'))}) {
        file = place;
        for (const Operation& operation : operations()) {
            if (operation.kind != reads && file == u"/dev/zero")
                continue;  // takes what is written
            EXPECT_EQ(operation.run(), 0) << operation.name;
            EXPECT_EQ(faults::openCount(), openBefore) << operation.name;
        }
    }
    EXPECT_TRUE(fs::is_empty(folder));
}

// Where no file can be made, what may be written is written; nothing else is touched.
TEST_F(Places, FolderWithoutRights) {
    for (const Operation& operation : operations()) {
        for (const int rights : {0666, 0444, 0}) {  // 0: no file
            if (operation.kind == reads)
                continue;
            prepare(operation, rights != 0);
            if (rights)
                fs::permissions(folder / "file", static_cast<fs::perms>(rights));
            fs::permissions(folder, static_cast<fs::perms>(0555));
            int result = -1;
            const bool tried = asNobody([&] { result = operation.run(); });
            fs::permissions(folder, static_cast<fs::perms>(0755));
            if (!tried)
                GTEST_SKIP() << "another user's rights are needed";
            EXPECT_EQ(result, rights == 0666) << operation.name << ' ' << rights;
            EXPECT_EQ(get("file") != before, rights == 0666) << operation.name << ' ' << rights;
            EXPECT_EQ(exists("file"), rights != 0) << operation.name;
            EXPECT_TRUE(tidy()) << operation.name;
        }
    }
}

// The owner cannot be given to a new file, so the old one is written; in a sticky folder it may not go
// either.
TEST_F(Places, FilesOfOthers) {
    for (const int folderRights : {0777, 01777}) {
        fs::permissions(folder, static_cast<fs::perms>(folderRights));
        for (const Operation& operation : operations()) {
            if (operation.kind != rewrites)
                continue;
            prepare(operation, true);
            operation.run();
            wanted = get("file");
            prepare(operation, true);
            fs::permissions(folder / "file", static_cast<fs::perms>(0666));
            int result = -1;
            if (!asNobody([&] { result = operation.run(); }))
                GTEST_SKIP() << "another user's rights are needed";
            struct stat status;
            ASSERT_EQ(stat((folder / "file").c_str(), &status), 0);
            EXPECT_EQ(result, 1) << operation.name;
            EXPECT_EQ(get("file"), wanted) << operation.name;
            EXPECT_EQ(status.st_uid, 0u) << operation.name;
            EXPECT_TRUE(tidy()) << operation.name;
        }
    }
}

TEST_F(Places, OwnerAndRightsStay) {
    CTSUnit units;
    for (const int rights : {0600, 0640, 0666}) {
        put("file", old);
        fs::permissions(folder / "file", static_cast<fs::perms>(rights));
        const bool given = chown((folder / "file").c_str(), 65534, 65534) == 0;
        EXPECT_EQ(units.Write(file), 1);
        struct stat status;
        ASSERT_EQ(stat((folder / "file").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, static_cast<mode_t>(rights));
        EXPECT_EQ(status.st_uid, given ? 65534u : geteuid());
    }
    fs::remove(folder / "file");
    const mode_t mask = umask(027);
    EXPECT_EQ(units.Write(file), 1);
    umask(mask);
    EXPECT_EQ(rightsOf(folder / "file"), static_cast<fs::perms>(0640)) << "a new file: 0666 less the umask";
}

TEST_F(Places, NobodyReadsTheNewFileWhoMayNotReadTheOldOne) {
    put("file", old);
    fs::permissions(folder / "file", static_cast<fs::perms>(0666));
    fs::perms atFirst = fs::perms::unknown;
    faults::atNextLock([&] { faults::atNextLock([&] { atFirst = rightsOf(faults::lastMade()); }); });
    EXPECT_EQ(CTSUnit().Write(file), 1);
    EXPECT_EQ(atFirst, static_cast<fs::perms>(0600));

    put("file", old);
    fs::permissions(folder / "file", static_cast<fs::perms>(0640));
    // Version 2; the owner rw-, the user 65534 r--, the group ---, the mask r--, others ---.
    const unsigned char list[] = {2, 0,   0,   0,   1,   0,   6,  0, 255, 255, 255, 255, 2,   0,  4,
                                  0, 254, 255, 0,   0,   4,   0,  0, 0,   255, 255, 255, 255, 16, 0,
                                  4, 0,   255, 255, 255, 255, 32, 0, 0,   0,   255, 255, 255, 255};
    const std::string path = (folder / "file").string();
    if (setxattr(path.c_str(), "system.posix_acl_access", list, sizeof list, 0) != 0)
        GTEST_SKIP() << "no lists of rights here";
    EXPECT_EQ(CTSUnit().Write(file), 1);
    unsigned char kept[sizeof list] = {};
    EXPECT_EQ(getxattr(path.c_str(), "system.posix_acl_access", kept, sizeof kept),
              static_cast<ssize_t>(sizeof list));
    EXPECT_TRUE(std::equal(std::begin(list), std::end(list), kept));
}

TEST_F(Places, LinksStayAndLeadToTheNewContents) {
    CTSUnit units;
    put("target", old);
    fs::create_symlink("target", folder / "file");
    EXPECT_EQ(units.Write(file), 1);
    EXPECT_TRUE(fs::is_symlink(folder / "file"));
    const std::string written = get("target");
    EXPECT_NE(written, old);

    put("target", old);
    fs::remove(folder / "file");
    fs::create_hard_link(folder / "target", folder / "file");
    EXPECT_EQ(units.Write(file), 1);
    EXPECT_EQ(get("target"), written) << "one file under two names";

    fs::remove(folder / "target");
    fs::remove(folder / "file");
    fs::create_directory(folder / "card");
    fs::create_symlink("card/target", folder / "link");
    fs::create_symlink("link", folder / "file");
    const std::pair<faults::Fault, std::function<int()>> writers[] = {
        {faults::write, [&] { return units.Write(file); }},
        {faults::flush, [&] { return ScanFileAdd(file, points[0]); }}};
    for (const auto& [fault, run] : writers) {
        faults::arm(fault, 1);
        EXPECT_EQ(run(), 0);
        EXPECT_TRUE(fs::is_symlink(folder / "file")) << "a link to no file yet";
        EXPECT_TRUE(fs::is_empty(folder / "card"));
        faults::arm(faults::none, 0);
        EXPECT_EQ(run(), 1);
        EXPECT_EQ(faults::folderFlushes(), 1);
        EXPECT_TRUE(fs::is_symlink(folder / "file"));
        EXPECT_TRUE(fs::remove(folder / "card/target"));
    }
}

// A link of /proc may name what is gone, and leads to the open file all the same.
TEST_F(Places, OpenFilesWithoutAName) {
    put("file", old);
    CFile open;
    ASSERT_EQ(open.Open(file, CFile::modeRead), 1);
    const std::string link = "/proc/self/fd/" + std::to_string(faults::lastOpened());
    fs::remove(folder / "file");
    EXPECT_EQ(CTSUnit().Write(CString(link.c_str())), 1);
    EXPECT_EQ(ScanFileAdd(CString(link.c_str()), points[0]), 1);
    EXPECT_TRUE(fs::is_empty(folder));
    std::string bytes(10, '\0');
    EXPECT_EQ(open.Read(&bytes[0], 10), 10u);
    EXPECT_EQ(bytes, "FIELD_SCAN");
}

// Where the old file itself is written, a failure leaves a part of the new one and no mixture.
TEST_F(Places, AFileWrittenInPlaceIsNoMixture) {
    ASSERT_EQ(WriteCSVFile(&file, points, 0), 1);
    wanted = get("file");
    put("file", std::string(wanted.size() + 100, 'o'));
    fs::create_hard_link(folder / "file", folder / "other name");
    faults::arm(faults::write, 2);
    EXPECT_EQ(WriteCSVFile(&file, points, 0), 0);
    EXPECT_FALSE(get("file").empty());
    EXPECT_EQ(get("file"), wanted.substr(0, get("file").size()));
}

// What stands under the name of the new file is written to or taken away only where a killed program left it.
TEST_F(Places, TheNewFileIsNobodyElses) {
    CTSUnit units;
    EXPECT_EQ(units.Write(file), 1);
    const fs::path beside = faults::lastMade();
    EXPECT_EQ(beside.parent_path(), folder);
    const std::string written = get("file");

    put("file", old);
    std::ofstream(beside) << "left";
    EXPECT_EQ(units.Write(file), 1);
    EXPECT_EQ(get("file"), written);
    EXPECT_FALSE(fs::exists(beside));

    put("file", old);
    put("victim", "kept");
    fs::create_symlink("victim", beside);
    EXPECT_EQ(units.Write(file), 1);
    EXPECT_EQ(get("file"), written);
    EXPECT_EQ(get("victim"), "kept");
    EXPECT_TRUE(fs::is_symlink(beside));
}

TEST_F(Places, NamesOfEveryLength) {
    CTSUnit units;
    std::string kanji;
    for (int i = 0; i < 85; ++i)
        kanji += "\xE5\xB2\xB3";
    for (const std::string& each : {std::string("a"), std::string(251, 'a'), std::string(255, 'a'), kanji}) {
        for (const char* when : {"made", "replaced"})
            EXPECT_EQ(units.Write(path(each)), 1) << each.size() << ' ' << when;
        EXPECT_EQ(ScanFileAdd(path(each), points[0]), 1) << each.size();
        fs::remove(folder / each);
    }
    for (const std::string& each : {std::string(256, 'a'), kanji + "a"}) {
        EXPECT_EQ(units.Write(path(each)), 0);
        EXPECT_EQ(ScanFileAdd(path(each), points[0]), 0);
    }
    EXPECT_TRUE(fs::is_empty(folder));
}

// A small medium, and mount points, in a name space of their own.
class Media : public FileOperations {
protected:
    bool mountSmallMedium() {
        return unshare(CLONE_NEWNS) == 0 && mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount("none", folder.c_str(), "tmpfs", 0, "size=64k") == 0;
    }
    void TearDown() override {
        umount2(folder.c_str(), MNT_DETACH);
        FileOperations::TearDown();
    }
};

TEST_F(Media, ThatAreFullAndFreedAgain) {
    if (!mountSmallMedium())
        GTEST_SKIP() << "no right to mount a small medium";
    for (const Operation& operation : operations()) {
        if (operation.kind == reads)
            continue;
        prepare(operation, true);
        put("rest", std::string(65536, 'x'));
        const int result = operation.run();
        const std::string after = get("file"), end = after.substr(after.empty() ? 0 : after.size() - 1);
        EXPECT_EQ(result, operation.kind == appends)
            << operation.name << ": a line fits into the page of the old";
        if (operation.kind == rewrites) {
            EXPECT_EQ(after, old) << operation.name;
        }
        EXPECT_EQ(end, after.empty() ? "" : "\n") << operation.name;
        fs::remove(folder / "rest");
        EXPECT_TRUE(tidy()) << operation.name;
    }
}

TEST_F(Media, AFullOneHoldsEveryPointOfACallThatGave1) {
    if (!mountSmallMedium())
        GTEST_SKIP() << "no right to mount a small medium";
    put("rest", std::string(61440, 'x'));
    int recorded = 0;
    while (recorded < 200 && ScanFileAdd(file, points[recorded]) == 1)
        ++recorded;
    EXPECT_LT(recorded, 200) << "the page of the last line fills up";
    EXPECT_EQ(ReadCSVFile(&file, back, 1), 1);
    EXPECT_EQ(back.GetSize(), recorded);
    fs::remove(folder / "rest");
    EXPECT_EQ(ScanFileAdd(file, points[recorded]), 1);
    EXPECT_EQ(ReadCSVFile(&file, back, 1), 1);
    ASSERT_EQ(back.GetSize(), recorded + 1);
    for (int i = 0; i <= recorded; ++i)
        EXPECT_EQ(back[i].x, i);
}

TEST_F(Media, MountPointsAreWrittenInPlace) {
    put("mounted", old);
    put("file", "");
    if (!(unshare(CLONE_NEWNS) == 0 && mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == 0 &&
          mount((folder / "mounted").c_str(), (folder / "file").c_str(), "none", MS_BIND, nullptr) == 0))
        GTEST_SKIP() << "no right to mount a file";
    EXPECT_EQ(WriteCSVFile(&file, points, 0), 1);
    EXPECT_EQ(CTSUnit().Write(path("units")), 1);
    EXPECT_EQ(CTSUnit().Write(file), 1) << "shorter than what was there";
    umount2((folder / "file").c_str(), MNT_DETACH);
    EXPECT_EQ(get("mounted"), get("units"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 3);
}

}  // namespace
