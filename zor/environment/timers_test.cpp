#include "zor/environment/timers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace ZOR {
namespace {

using Clock = std::chrono::steady_clock;

void pause(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

TEST(CTimer, CountsOnlyRunningPhasesAndANotRunningTimerFromZero) {
    CTimer idle(false);
    EXPECT_GT(idle.stop(), 0.001);  // the monotonic clock's whole reading
    idle.start(true);
    EXPECT_LT(static_cast<double>(idle), 0.5);

    // Upper bounds come from a clock outside the timer, so a loaded machine can't break them.
    const Clock::time_point outerStart = Clock::now();
    CTimer t;
    pause(20);
    const double first = t.stop();
    EXPECT_GE(first, 0.019);
    EXPECT_LE(first, secondsSince(outerStart));
    EXPECT_EQ(t.stop(), first);  // a second stop changes nothing
    pause(200);
    EXPECT_EQ(static_cast<double>(t), first);
    const Clock::time_point resumed = Clock::now();
    t.start(false);
    pause(20);
    const double running = t;  // reading doesn't stop it
    pause(5);
    const double total = t.stop();
    EXPECT_GT(total, running);
    EXPECT_GE(total, first + 0.024);
    EXPECT_LE(total, first + secondsSince(resumed));  // the 200 ms pause isn't counted
}

class PerfTableTest : public ::testing::Test {
  protected:
    PerfTableTest() { perfReset(); }
    ~PerfTableTest() override { perfReset(); }

    // The record at `index`, with a count of -1 if there is none.
    static perf_data entry(int index) {
        perf_data record;
        record.count = -1;
        perfEntryAtIndex(index, record.name, record.topTime, record.nestedTime, record.count);
        return record;
    }
};

TEST_F(PerfTableTest, NestedScopesSplitTopAndNestedTime) {
    {
        CPerfTimer a(L"a");
        pause(2);
        {
            CPerfTimer b(L"b");
            pause(2);
        }
    }
    const perf_data a = entry(0);
    EXPECT_STREQ(a.name, L"a");
    EXPECT_TRUE(a.topTime >= 0.004 && a.nestedTime == 0.0 && a.count == 1);
    perf_data b = entry(1);
    EXPECT_STREQ(b.name, L"b");
    EXPECT_TRUE(b.topTime == 0.0 && b.nestedTime >= 0.002 && b.count == 1);
    { CPerfTimer again(L"b"); }  // outermost this time, and too short to measure much
    b = entry(1);
    EXPECT_EQ(b.count, 2);
    EXPECT_GE(b.topTime, 1e-9);
}

TEST_F(PerfTableTest, IndexInNameOrderBoundsAndReset) {
    addPerfTime(L"b", 1.0, true);
    addPerfTime(L"a", 2.0, false);
    addPerfTime(L"a", 0.5, false);
    const perf_data a = entry(0);
    EXPECT_STREQ(a.name, L"a");
    EXPECT_TRUE(a.topTime == 0.0 && a.nestedTime == 2.5 && a.count == 2);
    CZorString name(L"keep");
    double top = 7;
    double nested = 7;
    int count = 7;
    EXPECT_FALSE(perfEntryAtIndex(2, name, top, nested, count) ||
                 perfEntryAtIndex(-1, name, top, nested, count));
    EXPECT_STREQ(name, L"keep");
    EXPECT_TRUE(top == 7 && nested == 7 && count == 7);
    perfReset();
    EXPECT_EQ(entry(0).count, -1);
}

}  // namespace
}  // namespace ZOR
