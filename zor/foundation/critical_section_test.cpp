#include "zor/foundation/critical_section.h"

#include <thread>

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

TEST(CriticalSectTest, OwnerEntersAgainAndALockHoldsForItsScopeWhileACopyEntersNothing) {
    ZOR::CCriticalSect section;
    section.Enter();
    section.Enter();
    section.Leave();
    EXPECT_FALSE(free_for_others(section));  // each Enter needs its Leave
    section.Leave();
    EXPECT_TRUE(free_for_others(section));
    {
        const ZOR::CLock lock(section);
        EXPECT_FALSE(free_for_others(section));
        section.Enter();  // balanced by the copy's destruction below
        { const ZOR::CLock copy(lock); }
        EXPECT_FALSE(free_for_others(section));
    }
    EXPECT_TRUE(free_for_others(section));
}

}  // namespace
