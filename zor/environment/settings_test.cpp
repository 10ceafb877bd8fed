#include "zor/environment/settings.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "zor/environment/path_unexpand.h"
#include "zor/environment/test_support.h"

namespace ZOR {
namespace {

using testing::listOf;
using testing::readFile;
using testing::readKey;
using testing::ScopedEnv;
using testing::SettingsTest;

bool exists(const std::string& file) {
    return ::access(file.c_str(), F_OK) == 0;
}

TEST_F(SettingsTest, InitRegistersVersionAndApplicationsAndCleanupForgetsThem) {
    EXPECT_STREQ(regBasePathSet(nullptr), L"Soft\\Zor");
    CZorString key(L"untouched");
    EXPECT_FALSE(regAppKey(key, nullptr));
    EXPECT_STREQ(key, L"untouched");
    EXPECT_TRUE(regAppKey(key, L"Draw"));
    EXPECT_STREQ(key, L"Soft\\Zor\\Draw\\7.1");

    EXPECT_TRUE(regInit(L"draw") && regInit(L"Plot") && regInit(L"DRAW"));
    CZorString version;
    EXPECT_TRUE(readKey(HKEY_CURRENT_USER, L"Soft\\Zor\\draw", L"CurVer", version));
    EXPECT_STREQ(version, L"7.1");
    HKEY app = nullptr;
    EXPECT_EQ(regOpenKey(HKEY_CURRENT_USER, kDrawKey, KEY_READ, &app), ERROR_SUCCESS);
    regCloseKey(app);
    appKeyAdd(L"abc");
    appKeyAdd(L"ABC");
    CZorArrayTempl<CZorString> apps;
    appKeys(apps);
    EXPECT_EQ(apps, listOf({L"ABC", L"PLOT", L"DRAW"}));

    // What the module does at process end.
    detail::settingsCleanup();
    EXPECT_EQ(regBasePathSet(nullptr), nullptr);
    EXPECT_TRUE(detail::settingsCurVer.isNull());
    appKeys(apps);
    EXPECT_TRUE(apps.isEmpty());
}

TEST_F(SettingsTest, NullVersionOrAppSwitchesTheKeyedLayerOff) {
    unsigned long number = 5;
    CZorString text(L"keep");
    CZorArrayTempl<CZorString> list = listOf({L"keep"});
    EXPECT_FALSE(regWrite(static_cast<const wchar_t*>(nullptr), L"n", 1ul));
    EXPECT_FALSE(regWrite(L"", L"n", 1ul));
    EXPECT_FALSE(regRead(static_cast<const wchar_t*>(nullptr), L"n", number));
    EXPECT_FALSE(regInit(nullptr) || regInit(L""));
    curVerSet(nullptr);
    EXPECT_FALSE(regWrite(L"Draw", L"n", 1ul) || regWrite(L"Draw", L"t", L"x", false) ||
                 regWrite(L"Draw", L"l", list) || regDelValue(L"Draw", L"n"));
    EXPECT_FALSE(regRead(L"Draw", L"n", number) || regRead(L"Draw", L"t", text) ||
                 regRead(L"Draw", L"l", list));
    EXPECT_EQ(number, 5u);
    EXPECT_STREQ(text, L"keep");
    EXPECT_EQ(list, listOf({L"keep"}));
    EXPECT_FALSE(exists(detail::hiveFile(HKEY_CURRENT_USER)));  // nothing was touched
    CZorString key;
    EXPECT_TRUE(regAppKey(key, L"Draw"));
    EXPECT_STREQ(key, L"Soft\\Zor\\Draw\\");
}

TEST_F(SettingsTest, AllThreeFormsRoundTripAndDelete) {
    const std::wstring longText(1000, L'x');  // far beyond the first query's 128 bytes
    EXPECT_TRUE(regWrite(L"Draw", L"n", 0xFFFFFFFFul));
    EXPECT_TRUE(regWrite(L"Draw", L"t", longText.c_str(), false));
    EXPECT_TRUE(regWrite(L"Draw", L"l", listOf({L"a", L"", L"c"})));
    unsigned long number = 0;
    CZorString text;
    CZorArrayTempl<CZorString> list = listOf({L"old", L"old"});
    EXPECT_TRUE(regRead(L"Draw", L"n", number));
    EXPECT_EQ(number, 0xFFFFFFFFul);
    EXPECT_TRUE(regRead(L"Draw", L"t", text));
    EXPECT_EQ(std::wstring(text), longText);
    EXPECT_TRUE(regRead(L"Draw", L"l", list));
    EXPECT_EQ(list, listOf({L"a"}));  // an empty string in the middle of a list ends it
    // Wrong forms and a text above the store's value limit are refused; the values stay.
    EXPECT_FALSE(regRead(L"Draw", L"t", number) || regRead(L"Draw", L"n", text) ||
                 regRead(L"Draw", L"t", list));
    EXPECT_FALSE(regWrite(L"Draw", L"t", std::wstring(300000, L'y').c_str(), false));
    EXPECT_EQ(number, 0xFFFFFFFFul);
    EXPECT_EQ(std::wstring(text), longText);
    EXPECT_TRUE(regRead(L"Draw", L"t", text));
    EXPECT_EQ(text.len(), 1000);

    // A null text and an empty list delete; what is gone can't be deleted again.
    EXPECT_TRUE(regWrite(L"Draw", L"t", nullptr, false));
    EXPECT_FALSE(regRead(L"Draw", L"t", text) || regWrite(L"Draw", L"t", nullptr, false));
    EXPECT_EQ(text.len(), 1000);
    EXPECT_TRUE(regWrite(L"Draw", L"l", CZorArrayTempl<CZorString>()));
    EXPECT_FALSE(regDelValue(L"Draw", L"l"));
    EXPECT_TRUE(regDelValue(L"Draw", L"n"));
    EXPECT_FALSE(regDelValue(L"Draw", L"n"));
}

TEST_F(SettingsTest, ValueNamesWithSubPathsAndDefaultValues) {
    EXPECT_TRUE(regWrite(L"Draw", nullptr, L"default", false));
    CZorString text;
    EXPECT_TRUE(regRead(L"Draw", L"", text));
    EXPECT_STREQ(text, L"default");
    unsigned long number = 0;
    EXPECT_TRUE(regWrite(L"Draw", L"a\\b\\c", 3ul));
    EXPECT_TRUE(readKey(HKEY_CURRENT_USER, L"Soft\\Zor\\Draw\\7.1\\a\\b", L"c", number));
    EXPECT_EQ(number, 3u);
    // "sub\" names the default value of the subkey "sub".
    EXPECT_TRUE(regWrite(L"Draw", L"sub\\", 5ul));
    EXPECT_TRUE(readKey(HKEY_CURRENT_USER, L"Soft\\Zor\\Draw\\7.1\\sub", nullptr, number));
    EXPECT_EQ(number, 5u);
}

TEST_F(SettingsTest, ReadsTryTheUserHiveFirstAndFallBackOnTheMachineHive) {
    unsigned long number = 42;
    EXPECT_FALSE(regRead(L"Draw", L"n", number));
    EXPECT_TRUE(regWrite(L"Draw", L"other", 1ul));
    EXPECT_FALSE(regRead(L"Draw", L"n", number));
    EXPECT_EQ(number, 42u);
    EXPECT_FALSE(exists(detail::hiveFile(HKEY_LOCAL_MACHINE)));  // reading made no machine hive

    writeMachine(L"n", 10ul);
    writeMachine(L"only", 11ul);
    EXPECT_TRUE(regRead(L"Draw", L"only", number));
    EXPECT_EQ(number, 11u);
    EXPECT_TRUE(regWrite(L"Draw", L"n", 20ul));  // both hives: the user's wins
    EXPECT_TRUE(regRead(L"Draw", L"n", number));
    EXPECT_EQ(number, 20u);
    // The user's of the wrong type, though as wide as a number: the machine's number is read.
    EXPECT_TRUE(regWrite(L"Draw", L"n", L"", false));
    EXPECT_TRUE(regRead(L"Draw", L"n", number));
    EXPECT_EQ(number, 10u);
    EXPECT_TRUE(readKey(HKEY_LOCAL_MACHINE, kDrawKey, L"n", number));  // writes never reach it
    EXPECT_EQ(number, 10u);

    // A damaged user hive is left alone, and reads still fall back.
    const std::string garbage = "this is not a settings database, and must stay as it is";
    testing::writeFile(detail::hiveFile(HKEY_CURRENT_USER), garbage);
    number = 0;
    EXPECT_TRUE(regRead(L"Draw", L"n", number));
    EXPECT_EQ(number, 10u);
    EXPECT_FALSE(regWrite(L"Draw", L"n", 20ul) || regInit(L"Draw"));
    EXPECT_EQ(readFile(detail::hiveFile(HKEY_CURRENT_USER)), garbage);
}

TEST_F(SettingsTest, FoldedPathListIsStoredAsReferencesAndReadExpanded) {
    ScopedEnv home("HOME", "/home/ann");
    ScopedEnv config("XDG_CONFIG_HOME", "/home/ann/.config");
    EXPECT_TRUE(regWrite(L"Draw", L"p", L"/home/ann/.config/zor;/opt/x;/home/ann/d", true));
    CZorString text;
    EXPECT_TRUE(regRead(L"Draw", L"p", text));
    EXPECT_STREQ(text, L"/home/ann/.config/zor;/opt/x;/home/ann/d");
    // What is stored are the references, unexpanded, as a text to be expanded.
    unsigned long type = 0;
    {
        ScopedEnv otherHome("HOME", "/elsewhere");
        ScopedEnv noConfig("XDG_CONFIG_HOME", nullptr);
        EXPECT_TRUE(readKey(HKEY_CURRENT_USER, kDrawKey, L"p", text, &type));
    }
    EXPECT_EQ(type, REG_EXPAND_SZ);
    EXPECT_STREQ(text, L"%XDG_CONFIG_HOME%/zor;/opt/x;/elsewhere/d");
    // Nothing to fold: stored as plain text.
    EXPECT_TRUE(regWrite(L"Draw", L"q", L"/opt/x", true));
    EXPECT_TRUE(readKey(HKEY_CURRENT_USER, kDrawKey, L"q", text, &type));
    EXPECT_EQ(type, REG_SZ);
}

TEST(PathUnExpand, PicksLongestCoveringVariableAtComponentBoundary) {
    ScopedEnv home("HOME", "/home/ann/");
    ScopedEnv tmp("TMPDIR", "/home/ann/tmp");
    ScopedEnv root("TEMP", "/");
    wchar_t buffer[260] = L"untouched";
    EXPECT_TRUE(PathUnExpandEnvStringsW(L"/home/ann/tmp/a", buffer, 260));
    EXPECT_STREQ(buffer, L"%TMPDIR%/a");
    EXPECT_TRUE(PathUnExpandEnvStringsW(L"\\home\\ann", buffer, 260));
    EXPECT_STREQ(buffer, L"%HOME%");
    wcscpy(buffer, L"untouched");
    EXPECT_FALSE(PathUnExpandEnvStringsW(L"/home/annex/a", buffer, 260));
    EXPECT_FALSE(PathUnExpandEnvStringsW(L"/usr/a", buffer, 260));
    EXPECT_FALSE(PathUnExpandEnvStringsW(L"/home/ann/a", buffer, 8));  // "%HOME%/a" needs 9
    EXPECT_FALSE(PathUnExpandEnvStringsW(nullptr, buffer, 260));
    EXPECT_STREQ(buffer, L"untouched");
}

TEST_F(SettingsTest, CopyTreeKeepsOrReplacesAtTopOnly) {
    HKEY source = nullptr;
    HKEY target = nullptr;
    HKEY sub = nullptr;
    ASSERT_EQ(regCreateKey(HKEY_CURRENT_USER, L"src\\sub", &sub), ERROR_SUCCESS);
    EXPECT_TRUE(regWrite(sub, L"v", 1ul) && regWrite(sub, L"w", listOf({L"a", L"b"})));
    regCloseKey(sub);
    ASSERT_EQ(regCreateKey(HKEY_CURRENT_USER, L"dst\\sub", &sub), ERROR_SUCCESS);
    EXPECT_TRUE(regWrite(sub, L"v", 2ul));
    regCloseKey(sub);
    ASSERT_EQ(regCreateKey(HKEY_CURRENT_USER, L"src", &source), ERROR_SUCCESS);
    ASSERT_EQ(regCreateKey(HKEY_CURRENT_USER, L"dst", &target), ERROR_SUCCESS);
    EXPECT_TRUE(regWrite(source, L"top", 1ul) && regWrite(source, L"new", L"n", false));
    // 1604 bytes: beyond the copy's data buffer.
    EXPECT_TRUE(regWrite(source, L"wide", std::wstring(400, L'w').c_str(), false));
    EXPECT_TRUE(regWrite(source, L"after", 5ul) && regWrite(target, L"top", 2ul));

    auto number = [&](const wchar_t* path, const wchar_t* name) {
        unsigned long n = 0;
        readKey(target, path, name, n);
        return n;
    };
    EXPECT_TRUE(regCopyTree(target, source, false));
    EXPECT_EQ(number(L"", L"top"), 2u);
    EXPECT_EQ(number(L"sub", L"v"), 2u);
    CZorString text;
    EXPECT_TRUE(regRead(target, L"new", text));
    EXPECT_STREQ(text, L"n");
    // The value that doesn't fit ends the enumeration: what follows it isn't copied.
    EXPECT_FALSE(regRead(target, L"wide", text));
    EXPECT_EQ(number(L"", L"after"), 0u);

    EXPECT_TRUE(regCopyTree(target, source, true));
    EXPECT_EQ(number(L"", L"top"), 1u);
    EXPECT_EQ(number(L"sub", L"v"), 2u);
    CZorArrayTempl<CZorString> list;
    EXPECT_TRUE(readKey(target, L"sub", L"w", list));
    EXPECT_EQ(list, listOf({L"a", L"b"}));
    regCloseKey(source);
    regCloseKey(target);
}

TEST_F(SettingsTest, HandleNumberReadTakesAtMostFourBytesKeyedReadExactlyFour) {
    EXPECT_TRUE(regWrite(L"Draw", L"x", 1ul));
    HKEY key = nullptr;
    ASSERT_EQ(regOpenKey(HKEY_CURRENT_USER, kDrawKey, KEY_CHANGE, &key), ERROR_SUCCESS);
    const unsigned char eight[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    ASSERT_EQ(regSetValue(key, L"b", REG_BINARY, eight, 8), ERROR_SUCCESS);
    ASSERT_EQ(regSetValue(key, L"q", REG_DWORD, eight, 8), ERROR_SUCCESS);
    unsigned long number = 0;
    EXPECT_TRUE(regRead(key, L"b", number));
    EXPECT_EQ(number, 0x04030201u);
    regCloseKey(key);
    number = 9;
    EXPECT_FALSE(regRead(L"Draw", L"q", number));
    EXPECT_EQ(number, 9u);
}

// The store shared between processes: concurrent writers, and a writer killed mid-run.

std::wstring indexed(const wchar_t* stem, int i) {
    return stem + std::to_wstring(i);
}

TEST_F(SettingsTest, ConcurrentWritersOfOneKeyBothSucceed) {
    constexpr int kWrites = 60;
    pid_t children[2];
    for (int writer = 0; writer < 2; ++writer) {
        children[writer] = ::fork();
        ASSERT_GE(children[writer], 0);
        if (children[writer] == 0) {
            bool ok = true;
            for (int i = 0; i < kWrites; ++i) {
                const std::wstring own = indexed(writer == 0 ? L"a" : L"b", i);
                ok = regWrite(L"Draw", L"shared", writer + 1ul) && ok;
                ok = regWrite(L"Draw", own.c_str(), static_cast<unsigned long>(i)) && ok;
            }
            ::_exit(ok ? 0 : 1);
        }
    }
    for (const pid_t child : children) {
        int status = -1;
        EXPECT_TRUE(::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
                    WEXITSTATUS(status) == 0);
    }
    unsigned long shared = 0;
    ASSERT_TRUE(regRead(L"Draw", L"shared", shared));
    EXPECT_TRUE(shared == 1 || shared == 2);
    for (unsigned long i = 0; i < kWrites; ++i) {
        unsigned long a = 999;
        unsigned long b = 999;
        EXPECT_TRUE(regRead(L"Draw", indexed(L"a", static_cast<int>(i)).c_str(), a) &&
                    regRead(L"Draw", indexed(L"b", static_cast<int>(i)).c_str(), b));
        EXPECT_TRUE(a == i && b == i) << i;
    }
}

TEST_F(SettingsTest, WriterKilledMidRunLeavesEveryCommittedValue) {
    int pipeEnds[2];
    ASSERT_EQ(::pipe(pipeEnds), 0);
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        ::close(pipeEnds[0]);
        // Reports each index once its write has returned true; runs until killed.
        for (int i = 0;; ++i) {
            const std::wstring text = indexed(L"text of value ", i);
            if (!regWrite(L"Draw", indexed(L"v", i).c_str(), text.c_str(), false)) ::_exit(1);
            if (::write(pipeEnds[1], &i, sizeof i) != static_cast<ssize_t>(sizeof i)) ::_exit(2);
        }
    }
    ::close(pipeEnds[1]);
    int confirmed = -1;
    for (int got = 0; confirmed < 40 && ::read(pipeEnds[0], &got, sizeof got) == sizeof got;)
        confirmed = got;
    ::kill(pid, SIGKILL);
    int status = 0;
    ::waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    for (int got = 0; ::read(pipeEnds[0], &got, sizeof got) == sizeof got;) confirmed = got;
    ::close(pipeEnds[0]);
    ASSERT_GE(confirmed, 40);

    for (int i = 0; i <= confirmed; ++i) {
        CZorString text;
        ASSERT_TRUE(regRead(L"Draw", indexed(L"v", i).c_str(), text)) << i;
        EXPECT_STREQ(text, indexed(L"text of value ", i).c_str());
    }
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open_v2(detail::hiveFile(HKEY_CURRENT_USER).c_str(), &db,
                              SQLITE_OPEN_READWRITE, nullptr),
              SQLITE_OK);
    std::string verdict;
    sqlite3_exec(
        db, "PRAGMA integrity_check;",
        [](void* out, int, char** values, char**) {
            *static_cast<std::string*>(out) = values[0] != nullptr ? values[0] : "";
            return 0;
        },
        &verdict, nullptr);
    sqlite3_close(db);
    EXPECT_EQ(verdict, "ok");
    // The store takes writes again after the crash.
    EXPECT_TRUE(regWrite(L"Draw", L"after", 1ul));
}

}  // namespace
}  // namespace ZOR
