#include "zor/foundation/critical_section.h"

#include <mutex>
#include <thread>
#include <vector>

#include "gtest/gtest.h"

namespace {

// Whether another thread could take the section right now.
bool free_for_others(ZOR::CCriticalSect& section) {
    bool taken = false;
    std::thread([&] {
        std::recursive_mutex* raw = section;
        taken = raw->try_lock();
        if (taken) raw->unlock();
    }).join();
    return taken;
}

TEST(CriticalSectTest, OwnerMayEnterAgainAndNeedsALeaveForEachEnter) {
    ZOR::CCriticalSect section;
    section.Enter();
    section.Enter();
    EXPECT_FALSE(free_for_others(section));
    section.Leave();
    EXPECT_FALSE(free_for_others(section));
    section.Leave();
    EXPECT_TRUE(free_for_others(section));
}

TEST(LockTest, HoldsTheSectionForItsScope) {
    ZOR::CCriticalSect section;
    {
        const ZOR::CLock lock(section);
        EXPECT_FALSE(free_for_others(section));
    }
    EXPECT_TRUE(free_for_others(section));
}

TEST(LockTest, CopyEntersNothingButLeavesOnDestruction) {
    ZOR::CCriticalSect section;
    {
        const ZOR::CLock lock(section);
        section.Enter();  // balanced by the copy's destruction below
        { const ZOR::CLock copy(lock); }
        EXPECT_FALSE(free_for_others(section));
    }
    EXPECT_TRUE(free_for_others(section));
}

TEST(LockTest, SerialisesThreads) {
    ZOR::CCriticalSect section;
    long counter = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 20000; ++i) {
                const ZOR::CLock lock(section);
                counter = counter + 1;
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(counter, 80000);
}

}  // namespace
