#include "zor/foundation/smart_handle.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "gtest/gtest.h"

namespace {

bool is_open(int fd) {
    return fcntl(fd, F_GETFD) != -1 || errno != EBADF;
}

// A fresh pipe; the tests hand its descriptors to handles and check them with is_open.
struct Pipe {
    Pipe() { EXPECT_EQ(pipe(fds), 0); }
    ~Pipe() {
        for (int fd : fds)
            if (is_open(fd)) ::close(fd);
    }
    int read_end() const { return fds[0]; }
    int write_end() const { return fds[1]; }
    int fds[2] = {-1, -1};
};

TEST(SmartHandleTest, EmptyHandlesHoldMinusOne) {
    const ZOR::CSmartHandle empty;
    EXPECT_TRUE(empty.isClosed());
    EXPECT_EQ(static_cast<int>(empty), -1);

    const ZOR::CSmartHandle from_null(nullptr);
    EXPECT_TRUE(from_null.isClosed());
    EXPECT_EQ(static_cast<int>(from_null), -1);

    // No negative number is a descriptor: all of them are kept as -1.
    const ZOR::CSmartHandle from_negative(-7);
    EXPECT_TRUE(from_negative.isClosed());
    EXPECT_EQ(static_cast<int>(from_negative), -1);
}

TEST(SmartHandleTest, DescriptorZeroIsAnOrdinaryDescriptor) {
    ZOR::CSmartHandle standard_input(0);
    EXPECT_FALSE(standard_input.isClosed());
    EXPECT_EQ(static_cast<int>(standard_input), 0);
    EXPECT_EQ(standard_input.detach(), 0);  // leave the test's standard input alone
    EXPECT_TRUE(is_open(0));
}

TEST(SmartHandleTest, DestructorCloses) {
    Pipe p;
    { const ZOR::CSmartHandle h(p.write_end()); }
    EXPECT_FALSE(is_open(p.write_end()));
    char c;
    EXPECT_EQ(read(p.read_end(), &c, 1), 0);  // end of file: the only writer is gone
}

TEST(SmartHandleTest, CloseTwiceClosesOnce) {
    Pipe p;
    ZOR::CSmartHandle h(p.write_end());
    EXPECT_TRUE(h.close());
    EXPECT_TRUE(h.isClosed());
    EXPECT_FALSE(is_open(p.write_end()));
    // The number is free again; whoever gets it next must not lose it to a second close.
    const int reused = dup(p.read_end());
    EXPECT_FALSE(h.close());
    EXPECT_TRUE(is_open(reused));
    ::close(reused);
}

TEST(SmartHandleTest, AssignmentClosesWhatWasHeldUnlessItIsTheSame) {
    Pipe p;
    ZOR::CSmartHandle h(p.read_end());
    h = p.read_end();
    EXPECT_FALSE(h.isClosed());
    EXPECT_TRUE(is_open(p.read_end()));

    h = p.write_end();
    EXPECT_FALSE(is_open(p.read_end()));
    EXPECT_EQ(static_cast<int>(h), p.write_end());

    h = nullptr;
    EXPECT_TRUE(h.isClosed());
    EXPECT_EQ(static_cast<int>(h), -1);
    EXPECT_FALSE(is_open(p.write_end()));

    // Null onto an empty handle closes nothing and stays empty.
    h = nullptr;
    EXPECT_TRUE(h.isClosed());
    h = -3;
    EXPECT_EQ(static_cast<int>(h), -1);
}

TEST(SmartHandleTest, DetachGivesUpOwnershipWithoutClosing) {
    Pipe p;
    ZOR::CSmartHandle h(p.write_end());
    EXPECT_EQ(h.detach(), p.write_end());
    EXPECT_TRUE(h.isClosed());
    EXPECT_TRUE(is_open(p.write_end()));
    EXPECT_EQ(h.detach(), -1);
}

TEST(SmartHandleTest, CopiesShareTheNumberWithoutACount) {
    Pipe p;
    ZOR::CSmartHandle original(p.write_end());
    {
        ZOR::CSmartHandle copy(original);
        EXPECT_EQ(static_cast<int>(copy), p.write_end());
        ZOR::CSmartHandle assigned;
        assigned = original;
        EXPECT_EQ(static_cast<int>(assigned), p.write_end());
        assigned.detach();
        copy.detach();
    }
    EXPECT_TRUE(is_open(p.write_end()));
}

// Assignment goes through the virtual close, so a derived handle sees every release.
struct CountingHandle : ZOR::CSmartHandle {
    using ZOR::CSmartHandle::CSmartHandle;
    using ZOR::CSmartHandle::operator=;
    bool close() override {
        ++closes;
        return ZOR::CSmartHandle::close();
    }
    int closes = 0;
};

TEST(SmartHandleTest, AssignmentUsesTheVirtualClose) {
    Pipe p;
    CountingHandle h(p.read_end());
    h = p.read_end();
    EXPECT_EQ(h.closes, 0);
    h = p.write_end();
    EXPECT_EQ(h.closes, 1);
    h = nullptr;
    EXPECT_EQ(h.closes, 2);
}

}  // namespace
