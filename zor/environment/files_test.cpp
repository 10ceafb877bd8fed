#include "zor/environment/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "zor/environment/test_support.h"

namespace ZOR {
namespace {

using testing::ScopedEnv;
using testing::TempDir;
using testing::wide;
using testing::writeFile;

std::wstring cwd() {
    CZorString dir;
    GetCurrentDirectoryW(dir);
    return std::wstring(dir);
}

TEST(PathText, PartsOfAPathAndNamesBuiltFromThem) {
    EXPECT_STREQ(fileType(L"a.b.c"), L"c");
    EXPECT_TRUE(fileType(L"abc").isNull());
    EXPECT_TRUE(fileType(L"dir.x\\abc").isNull());
    EXPECT_STREQ(filePath(L"c:\\x\\y.txt"), L"c:\\x\\");
    EXPECT_STREQ(stripPath(L"c:\\x\\y.txt"), L"y.txt");
    EXPECT_STREQ(filePath(L"/x/y/z.txt"), L"/x/y/");
    EXPECT_STREQ(filePath(L"d:name"), L"d:");
    EXPECT_STREQ(stripPath(L"a/b\\c.d"), L"c.d");
    EXPECT_STREQ(filePath(L"name"), L"");
    EXPECT_TRUE(fileType(nullptr).isNull() && filePath(nullptr).isNull() &&
                stripPath(nullptr).isNull());

    CZorString out;
    generateMenuFileName(out, L"menu", L"mnu");
    EXPECT_STREQ(out, L"menu_2017_19.mnu");
    EXPECT_TRUE(appFileName(out, L"app", L"ui", L"cfg"));
    EXPECT_STREQ(out, L"app_2017_19_64_ui.cfg");

    // Expansion comes after the separators turn, so the value keeps its own.
    ScopedEnv var("ZOR_TEST_DIR", "/data");
    CZorString path(L"%ZOR_TEST_DIR%/a/b\\c");
    EXPECT_STREQ(dos_name(path), L"/data\\a\\b\\c");
    EXPECT_STREQ(path, L"/data\\a\\b\\c");
}

TEST(NetworkForm, MountSourceAndPathBehindMountPoint) {
    const std::string table =
        "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
        "40 22 0:50 / /mnt/share rw shared:7 - nfs4 server:/export rw\n"
        "41 40 8:2 / /mnt/share/local rw - ext4 /dev/sdb1 rw\n"
        "42 22 0:51 / /mnt/my\\040docs rw - cifs //host/docs rw\n";
    EXPECT_EQ(detail::remoteName(table, "/mnt/share/a/b.txt"), "server:/export/a/b.txt");
    EXPECT_EQ(detail::remoteName(table, "/mnt/share"), "server:/export");
    EXPECT_EQ(detail::remoteName(table, "/mnt/my docs/x"), "//host/docs/x");
    EXPECT_EQ(detail::remoteName(table, "/mnt/share/local/c"), "");  // a local mount inside it
    EXPECT_EQ(detail::remoteName(table, "/mnt/shared/c"), "");       // not at a component boundary
    EXPECT_EQ(detail::remoteName(table, "/home/x"), "");
    EXPECT_EQ(detail::remoteName("garbage line\n\n", "/x"), "");
}

// A scratch folder as TEMP, holding files, folders, hidden entries and a link to a folder.
class FilesTest : public ::testing::Test {
  protected:
    FilesTest() {
        for (const char* name : {"b.txt", "A.TXT", "a1.txt", "a.txt.bak", ".hidden", "noext"})
            writeFile(dir_.path() + "/" + name);
        ::mkdir((dir_.path() + "/sub").c_str(), 0755);
        ::mkdir((dir_.path() + "/.git").c_str(), 0755);
        ::symlink((dir_.path() + "/sub").c_str(), (dir_.path() + "/linked").c_str());
    }

    // The sorted listing joined by "|".
    static std::wstring listed(const std::string& mask, unsigned long flags) {
        CZorArrayTempl<CZorString> names;
        EXPECT_TRUE(fileDir(names, wide(mask).c_str(), flags)) << mask;
        std::wstring all;
        for (std::uint32_t i = 0; i < names.len(); ++i)
            all += std::wstring(names[static_cast<int>(i)]) + L"|";
        return all;
    }

    TempDir dir_;
    ScopedEnv temp_{"TEMP", dir_.path().c_str()};
};

TEST_F(FilesTest, ScratchFolderAndTemporaryNames) {
    const CZorString dir = tmp_dir();
    EXPECT_EQ(std::wstring(dir), wide(dir_.path() + "/ZORWERK/"));
    struct stat st {};
    EXPECT_TRUE(::stat((dir_.path() + "/ZORWERK").c_str(), &st) == 0 && S_ISDIR(st.st_mode));

    const std::wstring a(fileNameTmp(L"dat"));
    EXPECT_NE(a, std::wstring(fileNameTmp(L"dat")));
    EXPECT_EQ(a.rfind(std::wstring(dir), 0), 0u);
    EXPECT_EQ(a.substr(a.size() - 4), L".dat");
    EXPECT_EQ(std::wstring(fileNameTmp(nullptr)).substr(dir.len()).find(L".tmp"), 12u);
    EXPECT_EQ(std::wstring(fileNameTmp(L"")).substr(dir.len(), 4), L"tmp_");

    // Names that exist are passed over: occupy the next two and get the third.
    const std::wstring first(fileNameTmp(L"x"));
    const unsigned long counter = std::stoul(first.substr(dir.len() + 4, 8), nullptr, 16);
    auto nameAt = [&](unsigned long n) {
        CZorString name;
        name.format(L"%stmp_%x.x", static_cast<const wchar_t*>(dir), static_cast<unsigned>(n));
        return std::wstring(name);
    };
    writeFile(detail::toUtf8(nameAt(counter + 1)));
    writeFile(detail::toUtf8(nameAt(counter + 2)));
    EXPECT_EQ(std::wstring(fileNameTmp(L"x")), nameAt(counter + 3));
}

TEST_F(FilesTest, ExistenceAndNetworkFormIgnoreDriveAndAcceptBackslashes) {
    EXPECT_TRUE(fileExist(wide("c:" + dir_.path() + "\\b.txt").c_str()) &&
                fileExist(wide(dir_.path()).c_str()));
    EXPECT_FALSE(fileExist(wide(dir_.path() + "/g.txt").c_str()) || fileExist(nullptr));

    CZorString out(L"untouched");
    // Network forms already, no path, and a local path without force.
    EXPECT_FALSE(fileNameUNC(out, L"\\\\server\\share", true) ||
                 fileNameUNC(out, L"//server/share", true) || fileNameUNC(out, nullptr, true) ||
                 fileNameUNC(out, L"/local/file", false));
    EXPECT_STREQ(out, L"untouched");
    EXPECT_TRUE(fileNameUNC(out, L"c:\\local\\.\\x\\..\\file", true));
    EXPECT_STREQ(out, L"\\\\.\\/local/file");
    CWorkDirOverride scope(wide(dir_.path()).c_str());
    EXPECT_TRUE(fileNameUNC(out, L"rel", true));
    EXPECT_EQ(std::wstring(out), L"\\\\.\\" + wide(dir_.path()) + L"/rel");
}

TEST_F(FilesTest, ListingsSortWithDotFirstAndLeaveOutWhatTheFlagsExclude) {
    const std::string dir = dir_.path();
    EXPECT_EQ(listed(dir + "\\", 0), L".hidden|A.TXT|a.txt.bak|a1.txt|b.txt|noext|");
    EXPECT_EQ(listed(dir + "/*.txt", 0), L"A.TXT|a1.txt|b.txt|");
    EXPECT_EQ(listed(dir + "/*.*", kFileDirSkipHidden | kFileDirNoExtension),
              L"A|a.txt|a1|b|noext|");
    // Folders without "." and ".." and without links.
    EXPECT_EQ(listed(dir + "/", kFileDirFolders), L".git|sub|");
    EXPECT_EQ(listed(dir + "/*", kFileDirFolders | kFileDirSkipHidden), L"sub|");
    {
        // A mask ending in "." looks into that folder.
        CWorkDirOverride scope(wide(dir + "/sub").c_str());
        EXPECT_EQ(listed("..", kFileDirFolders | kFileDirSkipHidden), L"sub|");
    }
    // The prefix is the full folder of the mask, or the working directory for a bare drive.
    CWorkDirOverride scope(wide(dir).c_str());
    const std::wstring prefix = wide(dir) + L"/";
    EXPECT_EQ(listed("b.*", kFileDirWithPath), prefix + L"b.txt|");
    EXPECT_EQ(listed("sub/../b.txt", kFileDirWithPath), prefix + L"b.txt|");
    EXPECT_EQ(listed("c:", kFileDirWithPath | kFileDirSkipHidden).substr(0, prefix.size() + 5),
              prefix + L"A.TXT");

    CZorArrayTempl<CZorString> names = testing::listOf({L"keep"});
    // Nothing matches, no such folder, an empty folder, an empty mask.
    for (const std::string& mask :
         {dir + "/*.none", dir + "/missing/*.*", dir + "/sub/", std::string()})
        EXPECT_FALSE(fileDir(names, wide(mask).c_str(), 0)) << mask;
    EXPECT_EQ(names, testing::listOf({L"keep"}));
}

TEST_F(FilesTest, WorkDirScopesRestoreAndOverLongDirectoryIsRefused) {
    const std::wstring start = cwd();
    {
        CWorkDirOverride scope(wide(dir_.path()).c_str());
        EXPECT_EQ(cwd(), wide(dir_.path()));
    }
    EXPECT_EQ(cwd(), start);
    {
        CWorkDirOverride missing(L"/no/such/folder");
        EXPECT_EQ(cwd(), start);
        ::chdir(dir_.path().c_str());
    }
    EXPECT_EQ(cwd(), start);

    std::string deep = dir_.path();
    while (deep.size() < 300) {
        deep += "/" + std::string(40, 'd');
        ::mkdir(deep.c_str(), 0755);
    }
    CWorkDirOverride scope(wide(deep).c_str());
    CZorString dir(L"untouched");
    EXPECT_FALSE(GetCurrentDirectoryW(dir));
    EXPECT_STREQ(dir, L"untouched");
}

}  // namespace
}  // namespace ZOR
