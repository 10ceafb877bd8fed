#include "zor/environment/version_info.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "zor/environment/native_text.h"
#include "zor/environment/process.h"
#include "zor/environment/test_support.h"

namespace ZOR {
namespace {

constexpr const wchar_t* kNone = L"<no version info found>";

TEST(CVersionInfo, ReadsTheLibrarysOwnRecordFromTheProgram) {
    // The test program links the library, and with it the library's record.
    CVersionInfo info;
    EXPECT_STREQ(info.GetProductName(), L"zor");
    EXPECT_STREQ(info.GetCompanyName(), L"The zor developers");
    EXPECT_STREQ(info.GetCopyright(), L"Copyright (C) The zor developers");
    EXPECT_STREQ(info.GetTrademark(), L"");
    EXPECT_STREQ(info.GetProductVersion(), L"2017.0.0.0");
    EXPECT_STREQ(version(), L"2017.0");
    // The same through a file name, and through an address inside the program.
    CVersionInfo byFile(L"/proc/self/exe");
    EXPECT_STREQ(byFile.GetProductName(), L"zor");
    CVersionInfo byAddress(reinterpret_cast<HINSTANCE>(&version));
    EXPECT_STREQ(byAddress.GetProductName(), L"zor");
}

TEST(CVersionInfo, CopiesOwnTheirRecord) {
    auto* original = new CVersionInfo(L"/proc/self/exe");
    CVersionInfo copy(*original);
    CVersionInfo assigned(L"/no/such/file");
    assigned = *original;
    delete original;
    EXPECT_STREQ(copy.GetProductName(), L"zor");
    EXPECT_STREQ(assigned.GetCompanyName(), L"The zor developers");
    assigned = assigned;
    EXPECT_STREQ(assigned.GetProductName(), L"zor");
}

TEST(CVersionInfo, FilesWithoutRecordGiveTheLiteral) {
    testing::TempDir dir;
    const std::string text = dir.path() + "/plain.txt";
    if (FILE* f = std::fopen(text.c_str(), "w")) {
        std::fputs("not an ELF file", f);
        std::fclose(f);
    }
    for (const std::string& file : {std::string("/bin/sh"), text, dir.path() + "/missing"}) {
        CVersionInfo info(detail::fromUtf8(file).c_str());
        EXPECT_STREQ(info.GetProductName(), kNone) << file;
        EXPECT_STREQ(info.GetCompanyName(), kNone);
        EXPECT_STREQ(info.GetCopyright(), kNone);
        EXPECT_STREQ(info.GetTrademark(), kNone);
        EXPECT_STREQ(info.GetProductVersion(), kNone);
    }
    CVersionInfo null(static_cast<const wchar_t*>(nullptr));
    EXPECT_STREQ(null.GetProductName(), kNone);
}

TEST(CVersionInfo, CompareByNumbersAsFarAsTheShorterGoes) {
    EXPECT_EQ(CVersionInfo::versionCompare(L"1.10", L"1.9"), 1);
    EXPECT_EQ(CVersionInfo::versionCompare(L"2.0", L"10.0"), -1);
    EXPECT_EQ(CVersionInfo::versionCompare(L"1.2", L"1.2"), 0);
    EXPECT_EQ(CVersionInfo::versionCompare(L"1.2.3", L"1.2"), 0);
    EXPECT_EQ(CVersionInfo::versionCompare(L"1..3", L"1.2"), 1);  // no empty tokens
    EXPECT_EQ(CVersionInfo::versionCompare(nullptr, L"1"), 0);
}

}  // namespace
}  // namespace ZOR
