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
#include <string>

#include "zor/environment/test_support.h"

namespace ZOR {
namespace {

using testing::readFile;
using testing::wide;

TEST(Execute, StartsWaitsAndPassesQuotedArguments) {
    testing::TempDir dir;
    const std::string out = dir.path() + "/out";
    const std::wstring line = L"sh -c 'echo \"two words\" > " + wide(out) + L"'";
    EXPECT_EQ(execute(line.c_str(), 10000, false), 1);
    EXPECT_EQ(readFile(out), "two words\n");  // the wait covered the whole run
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
    EXPECT_EQ(execute((L"cp /proc/self/status " + wide(out)).c_str(), 10000, false), 1);
    ::sigaction(SIGPIPE, &previous, nullptr);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    // The masks have bit n - 1 for signal n; signals 32 and 33 belong to the C library, which
    // ignores them in every child it spawns.
    const std::string status = readFile(out);
    auto mask = [&](const std::string& field) {
        const std::size_t at = status.find(field + ":");
        return at == std::string::npos
                   ? ~0ull
                   : std::stoull(status.substr(at + field.size() + 1), nullptr, 16);
    };
    constexpr unsigned long long kLibrarySignals = 0x180000000ull;
    EXPECT_EQ(mask("SigBlk") & ~kLibrarySignals, 0u) << status;
    EXPECT_EQ(mask("SigIgn") & ~kLibrarySignals, 0u) << status;
}

TEST(Execute, TimeoutZeroDoesNotWaitAndShortTimeoutGivesUp) {
    using Clock = std::chrono::steady_clock;
    // The child sleeps far longer than the bounds, which leave room for a loaded machine.
    for (const unsigned long timeout : {0ul, 100ul}) {
        const Clock::time_point start = Clock::now();
        EXPECT_EQ(execute(L"sleep 5", timeout, timeout == 0), 1);
        const double waited = std::chrono::duration<double>(Clock::now() - start).count();
        EXPECT_GE(waited, timeout / 1000.0 - 0.01);
        EXPECT_LT(waited, 3.0);
    }
}

TEST(Execute, LinesThatCannotStartGiveZero) {
    EXPECT_EQ(execute(nullptr, 0, false), 0);
    // Empty, blank, no such program, unbalanced quotes, command substitution, a pipeline.
    for (const wchar_t* line :
         {L"", L"   ", L"/no/such/program -x", L"zor-no-such-command-anywhere", L"echo 'unbalanced",
          L"echo $(id)", L"echo a | cat"})
        EXPECT_EQ(execute(line, 1000, false), 0) << line;
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

TEST(SystemText, UuidInBracesAndLastErrorText) {
    CZorString a;
    CZorString b;
    strUuidCreate(a);
    strUuidCreate(b);
    ASSERT_EQ(a.len(), 38);
    EXPECT_TRUE(a[0] == L'{' && a[9] == L'-' && a[24] == L'-' && a[37] == L'}');
    EXPECT_FALSE(a == b);

    errno = ENOENT;
    EXPECT_STREQ(lastErrorString(), L"No such file or directory");
    errno = 0;
    EXPECT_STREQ(lastErrorString(), L"Success");
    errno = 4000;  // no such code
    EXPECT_STREQ(lastErrorString(), L"");
}

}  // namespace
}  // namespace ZOR
