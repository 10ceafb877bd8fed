#include "zor/environment/process.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <string>

#include "zor/environment/native_text.h"
#include "zor/environment/test_support.h"

namespace ZOR {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

TEST(Execute, StartsWaitsAndPassesQuotedArguments) {
    testing::TempDir dir;
    const std::string out = dir.path() + "/out";
    const std::wstring line = L"sh -c 'echo \"two words\" > " + detail::fromUtf8(out) + L"'";
    EXPECT_EQ(execute(line.c_str(), 10000, false), 1);
    std::ifstream in(out);
    std::string text;
    std::getline(in, text);
    EXPECT_EQ(text, "two words");  // the wait covered the whole run
}

TEST(Execute, ChildStartsWithoutTheHostsBlockedOrIgnoredSignals) {
    testing::TempDir dir;
    const std::string out = dir.path() + "/status";
    sigset_t usr1;
    sigset_t before;
    ::sigemptyset(&usr1);
    ::sigaddset(&usr1, SIGUSR1);
    ::pthread_sigmask(SIG_BLOCK, &usr1, &before);
    struct sigaction ignore {};
    struct sigaction previous {};
    ignore.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &ignore, &previous);
    // The program copies its own status; a shell in between would show its own masks, which it
    // changes while it forks.
    const std::wstring line = L"cp /proc/self/status " + detail::fromUtf8(out);
    EXPECT_EQ(execute(line.c_str(), 10000, false), 1);
    ::sigaction(SIGPIPE, &previous, nullptr);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    // The masks have bit n - 1 for signal n; signals 32 and 33 belong to the C library, which
    // ignores them in every child it spawns.
    std::ifstream in(out);
    std::string blocked = "missing";
    std::string ignored = "missing";
    for (std::string field; in >> field;) {
        if (field == "SigBlk:") in >> blocked;
        if (field == "SigIgn:") in >> ignored;
    }
    constexpr unsigned long long kLibrarySignals = 0x180000000ull;
    EXPECT_EQ(std::stoull(blocked, nullptr, 16) & ~kLibrarySignals, 0u) << blocked;
    EXPECT_EQ(std::stoull(ignored, nullptr, 16) & ~kLibrarySignals, 0u) << ignored;
}

TEST(Execute, TimeoutZeroDoesNotWaitAndShortTimeoutGivesUp) {
    // The child sleeps far longer than the bounds, which leave room for a loaded machine.
    auto start = Clock::now();
    EXPECT_EQ(execute(L"sleep 5", 0, true), 1);
    EXPECT_LT(secondsSince(start), 3.0);
    start = Clock::now();
    EXPECT_EQ(execute(L"sleep 5", 100, false), 1);
    const double waited = secondsSince(start);
    EXPECT_GE(waited, 0.09);
    EXPECT_LT(waited, 3.0);
}

TEST(Execute, LinesThatCannotStartGiveZero) {
    EXPECT_EQ(execute(nullptr, 0, false), 0);
    EXPECT_EQ(execute(L"", 0, false), 0);
    EXPECT_EQ(execute(L"   ", 0, false), 0);
    EXPECT_EQ(execute(L"/no/such/program -x", 1000, false), 0);
    EXPECT_EQ(execute(L"zor-no-such-command-anywhere", 1000, false), 0);
    EXPECT_EQ(execute(L"echo 'unbalanced", 1000, false), 0);
    EXPECT_EQ(execute(L"echo $(id)", 1000, false), 0);  // no command substitution
    EXPECT_EQ(execute(L"echo a | cat", 1000, false), 0);
}

std::atomic<int> ranWith{0};
std::atomic<int> niceSeen{-100};

unsigned long recordRun(void* argument) {
    errno = 0;
    niceSeen = ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
    ranWith = *static_cast<int*>(argument);
    return 0;
}

TEST(RunThread, RunsRoutineWithArgumentAndLowersPriority) {
    int argument = 42;
    void* handle = runThread(recordRun, &argument, -2, 0);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(::pthread_join(reinterpret_cast<pthread_t>(handle), nullptr), 0);
    EXPECT_EQ(ranWith, 42);
    // "Lowest" is five nice steps per priority step below normal; without the right to raise
    // priority, a test already run at a higher nice value keeps it.
    const int inherited = ::getpriority(PRIO_PROCESS, 0);
    EXPECT_EQ(niceSeen, ::geteuid() == 0 ? 10 : std::max(10, inherited));
    EXPECT_EQ(runThread(nullptr, &argument, 0, 0), nullptr);
}

TEST(SystemText, UuidInBraces) {
    CZorString a;
    CZorString b;
    strUuidCreate(a);
    strUuidCreate(b);
    ASSERT_EQ(a.len(), 38);
    EXPECT_EQ(a[0], L'{');
    EXPECT_EQ(a[37], L'}');
    EXPECT_EQ(a[9], L'-');
    EXPECT_EQ(a[24], L'-');
    EXPECT_FALSE(a == b);
}

TEST(SystemText, LastErrorText) {
    errno = ENOENT;
    EXPECT_STREQ(lastErrorString(), L"No such file or directory");
    errno = 0;
    EXPECT_STREQ(lastErrorString(), L"Success");
}

}  // namespace
}  // namespace ZOR
