#include "zor/foundation/ptrmap.h"

#include "gtest/gtest.h"

namespace {

// A class of the kind the table serves, opening the protected interface to the tests.
class Table : public ZOR::CPtrMap {
  public:
    using ZOR::CPtrMap::decrRef;
    using ZOR::CPtrMap::incrRef;
    using ZOR::CPtrMap::m_DataArr;
    using ZOR::CPtrMap::newRef;

    // Brings the process-wide table back to its state at load: takes slots until one comes from
    // the end of the table (so the free list is empty), then drops every slot.
    static void reset() {
        for (;;) {
            const std::size_t size = m_DataArr.size();
            if (static_cast<std::size_t>(newRef(nullptr)) == size) break;
        }
        m_DataArr.clear();
    }
};

class PtrMapTest : public ::testing::Test {
  protected:
    void SetUp() override { Table::reset(); }
    void TearDown() override { Table::reset(); }

    int a = 0, b = 0, c = 0;
};

TEST_F(PtrMapTest, FreedSlotsComeBackOldestFirstBeforeTheTableGrows) {
    EXPECT_EQ(Table::newRef(&a), 0);
    EXPECT_EQ(Table::newRef(&b), 1);
    EXPECT_EQ(Table::newRef(&c), 2);
    EXPECT_EQ(Table::decrRef(0), 0);
    EXPECT_EQ(Table::decrRef(1), 0);
    // A freed slot keeps its pointer until it is taken again.
    EXPECT_EQ(Table::m_DataArr[0].ptr, &a);
    EXPECT_EQ(Table::m_DataArr[0].refCount, 0);

    EXPECT_EQ(Table::newRef(&c), 0);
    EXPECT_EQ(Table::m_DataArr[0].ptr, &c);
    EXPECT_EQ(Table::m_DataArr[0].refCount, 1);
    EXPECT_EQ(Table::newRef(&c), 1);
    EXPECT_EQ(Table::newRef(&c), 3);
    EXPECT_EQ(Table::m_DataArr.size(), 4u);
}

TEST_F(PtrMapTest, SlotStaysTakenWhileReferencesRemain) {
    const int slot = Table::newRef(&a);
    Table::incrRef(slot);
    EXPECT_EQ(Table::decrRef(slot), 1);
    EXPECT_EQ(Table::newRef(&b), 1);  // slot 0 was not queued
    EXPECT_EQ(Table::decrRef(slot), 0);
    EXPECT_EQ(Table::newRef(&c), slot);
}

}  // namespace
