// The settings store shared between processes: concurrent writers, and a writer killed mid-run.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "zor/environment/settings.h"
#include "zor/environment/test_support.h"

namespace ZOR {
namespace {

using testing::SettingsTest;

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
