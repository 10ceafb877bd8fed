#include "zor/foundation/smart_handle.h"

#include <fcntl.h>
#include <unistd.h>

#include "gtest/gtest.h"

namespace {

bool is_open(int fd) {
    return fcntl(fd, F_GETFD) != -1;
}

// A fresh pipe whose ends the tests hand to handles; what a test leaves open is closed here.
struct Pipe {
    Pipe() { EXPECT_EQ(pipe(fds), 0); }
    ~Pipe() {
        for (int fd : fds)
            if (is_open(fd)) ::close(fd);
    }
    int fds[2] = {-1, -1};
};

// Counts the calls of the virtual close, which assignment must go through.
struct CountingHandle : ZOR::CSmartHandle {
    using ZOR::CSmartHandle::CSmartHandle;
    using ZOR::CSmartHandle::operator=;
    bool close() override {
        ++closes;
        return ZOR::CSmartHandle::close();
    }
    int closes = 0;
};

TEST(SmartHandleTest, NullAndNegativeValuesHoldNothingButZeroIsADescriptor) {
    for (const ZOR::CSmartHandle& empty :
         {ZOR::CSmartHandle(), ZOR::CSmartHandle(nullptr), ZOR::CSmartHandle(-7)}) {
        EXPECT_TRUE(empty.isClosed());
        EXPECT_EQ(static_cast<int>(empty), -1);
    }
    ZOR::CSmartHandle standard_input(0);
    EXPECT_FALSE(standard_input.isClosed());
    EXPECT_EQ(standard_input.detach(), 0);  // leave the test's standard input open
}

TEST(SmartHandleTest, DestructorAndCloseCloseOnce) {
    Pipe p;
    { const ZOR::CSmartHandle h(p.fds[1]); }
    EXPECT_FALSE(is_open(p.fds[1]));

    ZOR::CSmartHandle h(p.fds[0]);
    EXPECT_TRUE(h.close());
    EXPECT_TRUE(h.isClosed());
    EXPECT_FALSE(is_open(p.fds[0]));
    // The number is free again; whoever gets it next must not lose it to a second close.
    Pipe reused;
    EXPECT_FALSE(h.close());
    EXPECT_TRUE(is_open(reused.fds[0]));
}

TEST(SmartHandleTest, AssignmentClosesWhatWasHeldUnlessItIsTheSameAndDetachClosesNothing) {
    Pipe p;
    CountingHandle h(p.fds[0]);
    h = p.fds[0];
    EXPECT_EQ(h.closes, 0);
    EXPECT_TRUE(is_open(p.fds[0]));
    h = p.fds[1];
    EXPECT_EQ(h.closes, 1);
    EXPECT_FALSE(is_open(p.fds[0]));
    EXPECT_EQ(static_cast<int>(h), p.fds[1]);
    {
        // Copies hold the same number without a count: of all but one the number is detached.
        ZOR::CSmartHandle copy(h);
        ZOR::CSmartHandle assigned;
        assigned = h;
        EXPECT_EQ(static_cast<int>(assigned), p.fds[1]);
        EXPECT_EQ(copy.detach(), p.fds[1]);
        EXPECT_TRUE(copy.isClosed());
        assigned.detach();
    }
    EXPECT_TRUE(is_open(p.fds[1]));
    h = nullptr;
    EXPECT_TRUE(h.isClosed());
    EXPECT_FALSE(is_open(p.fds[1]));
    // Null onto an empty handle: the raw values differ, so close runs, but finds nothing.
    h = nullptr;
    EXPECT_EQ(h.closes, 3);
    EXPECT_EQ(static_cast<int>(h), -1);
}

}  // namespace
