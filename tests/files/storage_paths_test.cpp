// Folders of the storage cards; names that count up.
#include <fieldscan/storage_paths.h>
#include <gtest/gtest.h>

#include "tests/temp_folder.h"

namespace {

using StoragePaths = TempFolder;

TEST_F(StoragePaths, AreAskedForUntilTheyAreKnown) {
    CGetAppPath paths;
    const std::string longName(100, 'n');
    setCardFolder(folder, "SDMMC", longName);
    EXPECT_EQ(paths.GetCFCARD2Path(), u"") << "no value";
    EXPECT_EQ(paths.cfCard2Path, u"");
    EXPECT_EQ(paths.GetSDCARDPath(), CString(longName.c_str()));
    setCardFolder(folder, "PCMCIA", "CF Card");
    setCardFolder(folder, "SDMMC", "new");
    EXPECT_EQ(paths.GetCFCARD2Path(), u"CF Card2");
    EXPECT_EQ(paths.GetCFCARD1Path(), u"CF Card");
    EXPECT_EQ(paths.cfCard1Path, u"CF Card");
    EXPECT_EQ(paths.GetSDCARDPath(), CString(longName.c_str())) << "known, not asked for";
    EXPECT_EQ(CGetAppPath(paths).GetCFCARD2Path(), u"CF Card2");
    EXPECT_EQ(paths.GetExePath(), CString(runningProgram().c_str()));
    paths.exePath = u"known";
    EXPECT_EQ(paths.GetExePath(), u"known");
}

TEST(NextName, CountsUp) {
    CGetAppPath paths;
    EXPECT_EQ(paths.MakeNextName(u"P009"), u"P010");
    EXPECT_EQ(paths.MakeNextName(u"999999998"), u"999999999");
    for (const CString& name : {CString(u"X999999999"), CString(u"A0000000001")})
        EXPECT_EQ(paths.MakeNextName(name), name);
    EXPECT_EQ(paths.MakeNextName(u"Ｐ９"), u"Ｐ９1") << "only the digits of ASCII count";
    EXPECT_EQ(paths.MakeNextName(u"Ｐ９9"), u"Ｐ９10");
}

}  // namespace
