#include "zor/environment/version_info.h"

#include <gtest/gtest.h>

#include <string>

#include "zor/environment/process.h"
#include "zor/environment/test_support.h"

namespace ZOR {
namespace {

TEST(CVersionInfo, ReadsTheLibrarysOwnRecordByProgramFileOrAddressAndCopiesOwnIt) {
    // The test program links the library, and with it the library's record.
    CVersionInfo info;
    EXPECT_STREQ(info.GetProductName(), L"zor");
    EXPECT_STREQ(info.GetCompanyName(), L"The zor developers");
    EXPECT_STREQ(info.GetCopyright(), L"Copyright (C) The zor developers");
    EXPECT_STREQ(info.GetTrademark(), L"");
    EXPECT_STREQ(info.GetProductVersion(), L"2017.0.0.0");
    EXPECT_STREQ(version(), L"2017.0");
    CVersionInfo byAddress(reinterpret_cast<HINSTANCE>(&version));
    EXPECT_STREQ(byAddress.GetProductName(), L"zor");

    auto* byFile = new CVersionInfo(L"/proc/self/exe");
    CVersionInfo copy(*byFile);
    CVersionInfo assigned(L"/no/such/file");
    assigned = *byFile;
    delete byFile;
    EXPECT_STREQ(copy.GetProductName(), L"zor");
    EXPECT_STREQ(assigned.GetCompanyName(), L"The zor developers");
    assigned = assigned;
    EXPECT_STREQ(assigned.GetProductName(), L"zor");
}

TEST(CVersionInfo, FilesWithoutRecordGiveTheLiteral) {
    testing::TempDir dir;
    testing::writeFile(dir.path() + "/plain.txt", "not an ELF file");
    for (const std::string& file : {std::string("/bin/sh"), dir.path() + "/plain.txt",
                                    dir.path() + "/missing", std::string()}) {
        SCOPED_TRACE(file);
        CVersionInfo info(file.empty() ? nullptr : testing::wide(file).c_str());
        for (const wchar_t* text :
             {info.GetProductName(), info.GetCompanyName(), info.GetCopyright(),
              info.GetTrademark(), info.GetProductVersion()})
            EXPECT_STREQ(text, L"<no version info found>");
    }
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
