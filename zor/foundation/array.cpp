#include "zor/foundation/array.h"

CZorArray::~CZorArray() = default;

void CZorArray::clear() {
    logicalLength = 0;
}

int CZorArray::setLogicalLength(int n) {
    if (n > physicalLength) setLength(n);
    logicalLength = n > 0 ? n : 0;
    return logicalLength;
}

int CZorArray::setLength(int n) {
    if (n < 0) n = 0;
    logicalLength = n;
    if (n <= physicalLength) return 0;
    // 64 bits, so that doubling near the top of int cannot overflow; the capacity is clamped to
    // the largest int, which still holds any `n`.
    long long cap = physicalLength;
    do {
        cap = cap * 2 > 8 ? cap * 2 : 8;
    } while (n > cap);
    physicalLength = cap > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int>(cap);
    return physicalLength;
}

template class CZorArrayTempl<double>;
template class CZorArrayTempl<unsigned char>;
template class CZorArrayTempl<short>;
template class CZorArrayTempl<int>;
template class CZorArrayTempl<void*>;
