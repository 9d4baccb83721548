// Every file operation in places that refuse or are special: devices, folders, files of others, names, links.
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "tests/faults/file_operations.h"

namespace fs = std::filesystem;

namespace {

using Places = FileOperations;

struct stat statusOf(const fs::path& file) {
    struct stat status = {};
    EXPECT_EQ(stat(file.c_str(), &status), 0);
    return status;
}

void setRights(const fs::path& file, int rights) { fs::permissions(file, static_cast<fs::perms>(rights)); }

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

// Who owns nothing here writes what may be written, in its place where the folder takes no new file or the
// owner cannot be given to one; nothing else is touched.
TEST_F(Places, FilesAndFoldersOfOthers) {
    // Rights of the folder and of the file (0: none), the result.
    const std::tuple<int, int, int> rows[] = {{0555, 0666, 1}, {0555, 0222, 1}, {0555, 0444, 0},
                                              {0555, 0, 0},    {0777, 0666, 1}, {01777, 0666, 1}};
    if (geteuid() != 0 || seteuid(65534) != 0 || seteuid(0) != 0)
        GTEST_SKIP() << "another user's rights are needed";
    for (const Operation& operation : operations()) {
        if (operation.kind == reads)
            continue;
        for (const auto& [ofFolder, ofFile, expected] : rows) {
            prepare(operation, true);
            operation.run();
            wanted = get("file");
            prepare(operation, ofFile != 0);
            if (ofFile)
                setRights(folder / "file", ofFile);
            setRights(folder, ofFolder);
            ASSERT_EQ(seteuid(65534), 0);
            EXPECT_EQ(operation.run(), expected) << operation.name << ' ' << ofFolder << ' ' << ofFile;
            EXPECT_EQ(seteuid(0), 0);
            setRights(folder, 0755);
            EXPECT_EQ(exists("file"), ofFile != 0) << operation.name;
            EXPECT_TRUE(get("file") == (expected ? wanted : before)) << operation.name << ' ' << ofFolder;
            if (ofFile) {
                EXPECT_EQ(statusOf(folder / "file").st_uid, 0u) << operation.name << ' ' << ofFolder;
            }
            EXPECT_TRUE(tidy()) << operation.name;
        }
    }
}

TEST_F(Places, OwnerAndRightsStay) {
    CTSUnit units;
    for (const unsigned int rights : {0600u, 0640u, 0666u}) {
        put("file", old);
        setRights(folder / "file", static_cast<int>(rights));
        const bool given = chown((folder / "file").c_str(), 65534, 65534) == 0;
        const ino_t inode = statusOf(folder / "file").st_ino;
        EXPECT_EQ(units.Write(file), 1);
        EXPECT_NE(statusOf(folder / "file").st_ino, inode) << "replaced, not written in place";
        EXPECT_EQ(statusOf(folder / "file").st_mode & 07777, rights);
        EXPECT_EQ(statusOf(folder / "file").st_uid, given ? 65534u : geteuid());
    }
    fs::remove(folder / "file");
    const mode_t mask = umask(027);
    EXPECT_EQ(units.Write(file), 1);
    umask(mask);
    EXPECT_EQ(statusOf(folder / "file").st_mode & 07777, 0640u) << "a new file: 0666 less the umask";
}

TEST_F(Places, NobodyReadsTheNewFileWhoMayNotReadTheOldOne) {
    put("file", old);
    setRights(folder / "file", 0666);
    unsigned int atFirst = 0;
    faults::atNextLock(
        [&] { faults::atNextLock([&] { atFirst = statusOf(faults::lastMade()).st_mode & 07777; }); });
    EXPECT_EQ(CTSUnit().Write(file), 1);
    EXPECT_EQ(atFirst, 0600u);
}

TEST_F(Places, ListsOfRightsStay) {
    put("file", old);
    setRights(folder / "file", 0640);
    // Version 2; the owner rw-, the user 65534 r--, the group ---, the mask r--, others ---.
    const std::vector<unsigned char> list = {2,   0,   0,   0,   1,  0, 6, 0, 255, 255, 255, 255, 2,  0, 4, 0,
                                             254, 255, 0,   0,   4,  0, 0, 0, 255, 255, 255, 255, 16, 0, 4, 0,
                                             255, 255, 255, 255, 32, 0, 0, 0, 255, 255, 255, 255};
    const std::string path = (folder / "file").string();
    if (setxattr(path.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) != 0)
        GTEST_SKIP() << "no lists of rights here";
    EXPECT_EQ(CTSUnit().Write(file), 1);
    std::vector<unsigned char> kept(list.size() + 1);
    kept.resize(static_cast<std::size_t>(
        getxattr(path.c_str(), "system.posix_acl_access", kept.data(), kept.size())));
    EXPECT_EQ(kept, list);
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
    for (const auto& run : {std::function<int()>([&] { return units.Write(file); }),
                            std::function<int()>([&] { return ScanFileAdd(file, points[0]); })}) {
        faults::arm(faults::flush, 1);
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
    const std::string longer(wanted.size() + 100, 'o');
    put("file", longer);
    faults::arm(faults::replaceDenied, 1);
    EXPECT_EQ(WriteCSVFile(&file, points, 0), 1);
    EXPECT_TRUE(get("file") == wanted) << "as a mount point is written";

    put("file", longer);
    fs::create_hard_link(folder / "file", folder / "other name");
    faults::arm(faults::write, 2);
    EXPECT_EQ(WriteCSVFile(&file, points, 0), 0);
    EXPECT_FALSE(get("file").empty());
    EXPECT_TRUE(get("file") == wanted.substr(0, get("file").size()));
}

// What has the name of the new file is written to or taken away only where a killed program left it.
TEST_F(Places, TheNewFileIsNobodyElses) {
    EXPECT_EQ(CTSUnit().Write(file), 1);
    const fs::path beside = faults::lastMade();
    EXPECT_EQ(beside.parent_path(), folder);
    const std::string written = get("file");
    put("file", old);
    put("victim", "kept");
    fs::create_symlink("victim", beside);
    EXPECT_EQ(CTSUnit().Write(file), 1);
    EXPECT_EQ(get("file"), written);
    EXPECT_EQ(get("victim"), "kept");
    EXPECT_TRUE(fs::is_symlink(beside));
}

TEST_F(Places, NamesOfEveryLength) {
    CTSUnit units;
    for (const int length : {1, 251, 255, 256}) {
        const std::string each(static_cast<std::size_t>(length), 'a');
        for (const char* when : {"made", "replaced"})
            EXPECT_EQ(units.Write(path(each)), length < 256) << length << ' ' << when;
        EXPECT_EQ(ScanFileAdd(path(each), points[0]), length < 256) << length;
        fs::remove(folder / each.substr(0, 255));
    }
    EXPECT_TRUE(fs::is_empty(folder));
}

}  // namespace
