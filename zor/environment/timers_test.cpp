#include "zor/environment/timers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace ZOR {
namespace {

void pause(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

TEST(CTimer, NotRunningCountsFromZeroUntilStarted) {
    CTimer t(false);
    EXPECT_GT(t.stop(), 0.001);  // the monotonic clock's whole reading
    t.start(true);
    EXPECT_LT(static_cast<double>(t), 0.5);
}

TEST(CTimer, PausesCountOnlyRunningPhases) {
    using Clock = std::chrono::steady_clock;
    auto seconds = [](Clock::duration d) { return std::chrono::duration<double>(d).count(); };
    // Bounds come from a clock outside the timer, so a loaded machine can't break them.
    const Clock::time_point outerStart = Clock::now();
    CTimer t;
    pause(20);
    const double first = t.stop();
    const double firstBound = seconds(Clock::now() - outerStart);
    EXPECT_GE(first, 0.019);
    EXPECT_LE(first, firstBound);
    EXPECT_EQ(t.stop(), first);  // a second stop changes nothing
    pause(200);
    EXPECT_EQ(static_cast<double>(t), first);
    const Clock::time_point resumed = Clock::now();
    t.start(false);
    pause(20);
    const double running = t;  // reading doesn't stop it
    pause(5);
    const double total = t.stop();
    const double resumedBound = seconds(Clock::now() - resumed);
    EXPECT_GT(total, running);
    EXPECT_GE(total, first + 0.024);
    EXPECT_LE(total, first + resumedBound);  // the 200 ms pause isn't counted
}

class PerfTableTest : public ::testing::Test {
  protected:
    PerfTableTest() { perfReset(); }
    ~PerfTableTest() override { perfReset(); }
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
    CZorString name;
    double top = -1;
    double nested = -1;
    int count = 0;
    ASSERT_TRUE(perfEntryAtIndex(0, name, top, nested, count));
    EXPECT_STREQ(name, L"a");
    EXPECT_GE(top, 0.004);
    EXPECT_EQ(nested, 0.0);
    EXPECT_EQ(count, 1);
    ASSERT_TRUE(perfEntryAtIndex(1, name, top, nested, count));
    EXPECT_STREQ(name, L"b");
    EXPECT_EQ(top, 0.0);
    EXPECT_GE(nested, 0.002);
    EXPECT_EQ(count, 1);
    { CPerfTimer again(L"b"); }
    ASSERT_TRUE(perfEntryAtIndex(1, name, top, nested, count));
    EXPECT_EQ(count, 2);
    EXPECT_GT(top, 0.0);  // the second "b" was outermost
}

TEST_F(PerfTableTest, IndexOrderBoundsAndReset) {
    addPerfTime(L"b", 1.0, true);
    addPerfTime(L"a", 2.0, false);
    CZorString name(L"keep");
    double top = 7;
    double nested = 7;
    int count = 7;
    ASSERT_TRUE(perfEntryAtIndex(0, name, top, nested, count));
    EXPECT_STREQ(name, L"a");
    EXPECT_EQ(nested, 2.0);
    name = L"keep";
    top = 7;
    EXPECT_FALSE(perfEntryAtIndex(2, name, top, nested, count));
    EXPECT_FALSE(perfEntryAtIndex(-1, name, top, nested, count));
    EXPECT_STREQ(name, L"keep");
    EXPECT_EQ(top, 7.0);
    perfReset();
    EXPECT_FALSE(perfEntryAtIndex(0, name, top, nested, count));
}

TEST_F(PerfTableTest, ShortestScopeStillAddsANanosecond) {
    addPerfTime(L"x", 0.0, true);
    { CPerfTimer quick(L"y"); }
    CZorString name;
    double top = 0;
    double nested = 0;
    int count = 0;
    ASSERT_TRUE(perfEntryAtIndex(1, name, top, nested, count));
    EXPECT_GE(top, 1e-9);
}

}  // namespace
}  // namespace ZOR
