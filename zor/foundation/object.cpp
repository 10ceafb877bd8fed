#include "zor/foundation/object.h"

#include <cstring>
#include <new>

namespace {

void* zeroed_block(std::size_t n) {
    void* block = ::operator new[](n);
    if (block != nullptr) std::memset(block, 0, n);
    return block;
}

}  // namespace

void* CZorObj::operator new(std::size_t n) {
    return zeroed_block(n);
}
void* CZorObj::operator new[](std::size_t n) {
    return zeroed_block(n);
}
void CZorObj::operator delete(void* p) noexcept {
    ::operator delete[](p);
}
void CZorObj::operator delete[](void* p) noexcept {
    ::operator delete[](p);
}
