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
    EXPECT_TRUE(paths.GetCFCARD2Path().IsEmpty() && paths.cfCard2Path.IsEmpty()) << "no value";
    EXPECT_EQ(paths.GetSDCARDPath(), CString(longName.c_str()));
    setCardFolder(folder, "PCMCIA", "CF Card");
    setCardFolder(folder, "SDMMC", "new");
    EXPECT_EQ(paths.GetCFCARD2Path(), CString(u"CF Card2"));
    EXPECT_EQ(paths.GetCFCARD1Path() + paths.cfCard1Path, CString(u"CF CardCF Card"));
    EXPECT_EQ(paths.GetSDCARDPath(), CString(longName.c_str())) << "known, not asked for";
    EXPECT_EQ(CGetAppPath(paths).GetCFCARD2Path(), CString(u"CF Card2"));
    EXPECT_EQ(paths.GetExePath(), CString(runningProgram().c_str()));
    paths.exePath = u"known";
    EXPECT_EQ(paths.GetExePath(), CString(u"known"));
}

TEST(NextName, CountsUp) {
    CGetAppPath paths;
    EXPECT_EQ(paths.MakeNextName(u"P009") + paths.MakeNextName(u"999999998"), CString(u"P010999999999"));
    for (const CString& name : {CString(u"X999999999"), CString(u"A0000000001")})
        EXPECT_EQ(paths.MakeNextName(name), name);
    EXPECT_EQ(paths.MakeNextName(u"Ｐ９"), CString(u"Ｐ９1")) << "the digits of ASCII alone";
    EXPECT_EQ(paths.MakeNextName(u"Ｐ９9"), CString(u"Ｐ９10"));
}

}  // namespace
