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

TEST(PtrMapTest, FreedSlotsComeBackOldestFirstBeforeTheTableGrows) {
    Table::reset();
    int a = 0;
    int b = 0;
    EXPECT_EQ(Table::newRef(&a), 0);
    EXPECT_EQ(Table::newRef(&b), 1);
    EXPECT_EQ(Table::newRef(&b), 2);
    Table::incrRef(1);
    EXPECT_EQ(Table::decrRef(1), 1);  // still referenced: not queued
    EXPECT_EQ(Table::decrRef(0), 0);
    EXPECT_EQ(Table::decrRef(1), 0);
    // A freed slot keeps its pointer until it is taken again.
    EXPECT_TRUE(Table::m_DataArr[0].ptr == &a && Table::m_DataArr[0].refCount == 0);
    EXPECT_EQ(Table::newRef(&b), 0);
    EXPECT_TRUE(Table::m_DataArr[0].ptr == &b && Table::m_DataArr[0].refCount == 1);
    EXPECT_EQ(Table::newRef(&b), 1);
    EXPECT_EQ(Table::newRef(&b), 3);
    EXPECT_EQ(Table::m_DataArr.size(), 4u);
    Table::reset();
}

}  // namespace
