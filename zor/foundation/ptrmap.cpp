#include "zor/foundation/ptrmap.h"

// The two static members are defined with the module's other exported data, in the order in
// which the module builds them.

namespace ZOR {

int CPtrMap::newRef(void* p) {
    int index;
    if (!m_FreeList.empty()) {
        index = m_FreeList.front();
        m_FreeList.pop_front();
    } else {
        index = static_cast<int>(m_DataArr.size());
        m_DataArr.emplace_back();
    }
    Data& slot = m_DataArr[static_cast<std::size_t>(index)];
    slot.refCount = 1;
    slot.ptr = p;
    return index;
}

void CPtrMap::incrRef(int i) {
    ++m_DataArr[static_cast<std::size_t>(i)].refCount;
}

int CPtrMap::decrRef(int i) {
    Data& slot = m_DataArr[static_cast<std::size_t>(i)];
    // Queue before counting down, so that a failed allocation of the list leaves the slot as
    // it was.
    if (slot.refCount == 1) m_FreeList.push_back(i);
    return --slot.refCount;
}

}  // namespace ZOR
