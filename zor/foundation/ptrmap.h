// ZOR::CPtrMap: a process-wide table of reference-counted pointers.
//
// A class that derives from CPtrMap can hold a small integer instead of a pointer, and its
// copies share one slot of the table. All state is static, so every derived class of the
// process shares the one table. The table never owns what a slot points to: when `decrRef`
// returns 0 the slot is free and the derived class releases the object itself.
//
// The table takes no lock; callers that share it across threads serialise `newRef`, `incrRef`
// and `decrRef`, for instance with a ZOR::CCriticalSect.
#pragma once

#include <list>
#include <vector>

namespace ZOR {

class CPtrMap {
  public:
    // One slot of the table.
    struct Data {
        Data() = default;
        Data(const Data&) = default;
        Data& operator=(const Data&) = default;

        int refCount = 0;     // references to the slot; 0 when free
        void* ptr = nullptr;  // left in place when the slot is freed, until it is reused
    };

  protected:
    CPtrMap() = default;
    CPtrMap(const CPtrMap&) = default;
    CPtrMap& operator=(const CPtrMap&) = default;

    // Takes a slot for `p` with one reference and returns its index: the slot freed longest ago,
    // or, when none is free, a new one at the end of the table.
    static int newRef(void* p);
    // Adds a reference to slot `i`. The index is not checked.
    static void incrRef(int i);
    // Removes a reference from slot `i` and returns the count left. At 0 the slot joins the back
    // of the free list. The index is not checked, and the slot must hold a reference.
    static int decrRef(int i);

    // The slots by index; a derived class reads `m_DataArr[i].ptr`. Indices stay valid while
    // their count is above 0; the table never shrinks.
    static std::vector<Data> m_DataArr;

  private:
    // Indices of free slots, oldest at the front.
    static std::list<int> m_FreeList;
};

}  // namespace ZOR
