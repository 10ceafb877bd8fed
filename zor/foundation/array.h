// The two array families of the library.
//
// CZorArrayTempl<T> is the value array behind every list that crosses an interface. CZorArray is
// an unrelated, storage-less root for the geometry arrays, which keep their own blocks.
//
// Both share two habits the geometry code leans on: a negative index counts from the end (-1 is
// the last element), and a non-const index at or past the end extends the array. A wrong index
// never fails: it lands on a default object or extends the container.
//
// Growth doubles from a smallest capacity of 8, and storage never shrinks until `removeAll` or
// destruction.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "zor/foundation/object.h"

// Root of CZorPoint3dArray and CZorVertexArray. It owns no storage; it keeps the two lengths and
// tells the derived class, through setLength, when and how large a block it must allocate.
class CZorArray {
  public:
    CZorArray() = default;
    // Copies the two numbers only; the derived class copies its own elements.
    CZorArray(const CZorArray&) = default;
    CZorArray& operator=(const CZorArray&) = default;
    virtual ~CZorArray();

    int len() const { return logicalLength; }
    bool isEmpty() const { return logicalLength == 0; }

    // Forgets the elements; storage stays.
    virtual void clear();
    // Grows through setLength when `n` exceeds the storage, then sets the length to max(n, 0)
    // and returns it.
    virtual int setLogicalLength(int n);

  protected:
    // Sets the length to max(n, 0). Returns 0 when the present storage suffices, otherwise the
    // new capacity (8, 16, 32, ...) for which the derived class must allocate, after calling this
    // base first and keeping its old length for the move.
    virtual int setLength(int n) = 0;

    int physicalLength = 0;
    int logicalLength = 0;
};

// The general value array.
//
// Elements relocate as raw bytes: growth, revert, swap, sort, insertAt and removeAt exchange
// the bytes of slots and call neither constructors nor assignments. An element type must
// therefore hold no pointer into itself (a heap pointer is fine; a small-buffer string that
// points at its own inline storage is not).
//
// For class types every allocated slot always holds a constructed object, also beyond the
// length: a removed element travels behind the new end and lives on there until overwritten
// or until the block goes. For scalar types (numbers, pointers) slots that come into use by
// growth are uninitialised.
template <class T>
class CZorArrayTempl : public CZorObj {
  public:
    CZorArrayTempl() = default;
    CZorArrayTempl(const CZorArrayTempl& a);
    CZorArrayTempl(CZorArrayTempl&& a) noexcept;
    // Self-assignment does nothing. A target with a bigger block keeps it.
    CZorArrayTempl& operator=(const CZorArrayTempl& a);
    CZorArrayTempl& operator=(CZorArrayTempl&& a) noexcept;
    ~CZorArrayTempl() override;

    // Same length and every element `==` in order; so point arrays compare within the point
    // tolerance and double arrays exactly.
    bool operator==(const CZorArrayTempl& a) const;
    bool operator!=(const CZorArrayTempl& a) const { return !(*this == a); }
    // The first common index whose elements aren't `==` decides by `<`; otherwise the shorter
    // array is the smaller.
    bool operator<(const CZorArrayTempl& a) const;

    // Negative `i` counts from the end. At or past the end the array grows to i + 1 and the new
    // element is returned. On an empty array a negative index gives a shared writable default
    // object and leaves the array empty.
    T& operator[](int i);
    // Negative `i` counts from the end. Past the end, or on an empty array, a shared default
    // object; a const read never changes the array.
    const T& operator[](int i) const;

    // The block; null before the first allocation.
    T* entry() { return data; }
    const T* entry() const { return data; }

    std::uint32_t len() const { return logicalLength; }
    bool isEmpty() const { return logicalLength == 0; }
    // Grows as needed and sets the length to `n`; a smaller `n` only cuts the length.
    std::uint32_t setLogicalLength(std::uint32_t n);

    // First index whose element is `==` to `e`, or -1.
    int indexOf(const T& e) const;
    // The same; `i` is written only when found.
    bool indexOf(const T& e, std::uint32_t& i) const;
    bool contains(const T& e) const { return indexOf(e) >= 0; }

    // `e` may refer into this array.
    CZorArrayTempl& append(const T& e);
    CZorArrayTempl append(const T& e) const;
    // Appends unless an element `==` to `e` is present.
    CZorArrayTempl& appendUniq(const T& e);
    // Inserts at index 0 unless an element `==` to `e` is present.
    CZorArrayTempl& consUniq(const T& e);
    // New length max(len(), i) + 1; an `i` past the end extends the array with default (class)
    // or uninitialised (scalar) slots up to `i`. `e` may refer into this array. The index
    // 0xFFFFFFFF, whose length would not fit, changes nothing.
    CZorArrayTempl& insertAt(std::uint32_t i, const T& e);
    // An index at or past the end changes nothing. The removed element isn't destroyed: it
    // moves to the slot behind the new end.
    CZorArrayTempl& removeAt(std::uint32_t i);
    // A copy without element `i`.
    CZorArrayTempl removeAt(std::uint32_t i) const;
    // Removes the first element `==` to `e`, only that one.
    CZorArrayTempl& remove(const T& e);
    // Both lengths 0 and the block destroyed; the array stays usable.
    CZorArrayTempl& removeAll();

    // Exchanges two slots. An index at or past the end changes nothing.
    void swap(std::uint32_t i, std::uint32_t j);
    // Reverses in place.
    CZorArrayTempl& revert();
    // A reversed copy.
    CZorArrayTempl reverse() const;

    // Ascending by `T::operator>`, with the result of exchanging adjacent elements until none is
    // `>` its successor: stable, and a NaN keeps its slot with nothing crossing it. A type
    // without an order (vectors) stays as it is.
    CZorArrayTempl& sort();
    // The same with `cmp(&x, &y) > 0` for "x belongs behind y", as for qsort.
    CZorArrayTempl& sort(int (*cmp)(const void*, const void*));

    // At most `count` elements from `start`; empty when `start` is at or past the end.
    CZorArrayTempl mid(std::uint32_t start, std::uint32_t count) const;
    CZorArrayTempl left(std::uint32_t n) const { return mid(0, n); }
    // The last `n` elements; an `n` above the length gives an empty array (unsigned arithmetic).
    CZorArrayTempl right(std::uint32_t n) const { return mid(logicalLength - n, 0xFFFFFFFFu); }

    // Appends all of `a`, with the count taken first: `a += a` doubles.
    CZorArrayTempl& operator+=(const CZorArrayTempl& a);
    CZorArrayTempl operator+(const CZorArrayTempl& a) const;
    // Set union: appendUniq of each element of `a` in order. Elements already here stay, also
    // duplicates among them.
    CZorArrayTempl& operator|=(const CZorArrayTempl& a);
    CZorArrayTempl operator|(const CZorArrayTempl& a) const;
    // Set intersection: the elements of this array found in `a`, in order and with their
    // duplicates, then the elements of `a` found here but not yet in the result (which, with a
    // tolerance equality that isn't transitive, can add some).
    CZorArrayTempl& operator&=(const CZorArrayTempl& a);
    CZorArrayTempl operator&(const CZorArrayTempl& a) const;

  protected:
    std::uint32_t physicalLength = 0;
    std::uint32_t logicalLength = 0;
    T* data = nullptr;

  private:
    // Numbers and pointers live in uninitialised storage; everything else is constructed.
    static constexpr bool kPlain = std::is_scalar_v<T>;

    // Grows the block to at least `n` slots: 8, 16, 32, ...
    void allocate(std::uint32_t n);
    // Exchanges the bytes of two slots.
    static void swapMem(T& a, T& b);
    // Moves slot `to`'s bytes to `from` and shifts the slots between by one, all bytewise; the
    // element at `from` ends up at `to`.
    void rotateSlot(std::uint32_t from, std::uint32_t to);
    // Reorders the elements as exchanging adjacent pairs where `behind(x, y)` ("x belongs after
    // y") holds would, until there is none. `builtInOrder` says that `behind` is `>`.
    template <class Behind>
    void orderBy(Behind behind, bool builtInOrder);
    // The exchanges themselves, for input on which no faster sort is known to agree.
    template <class Behind>
    void exchangeSort(Behind behind);
    // Stable sort of the slots [first, last); the same result as the exchanges when `behind` is
    // a strict weak order on them.
    template <class Behind>
    void stableSortSlots(std::uint32_t first, std::uint32_t last, Behind behind);
    // True when an element is not `==` to a copy of itself (a NaN, a point with a NaN
    // coordinate): such an element can be unordered against some elements and not others.
    bool holdsSelfUnequal() const;
    bool inBlock(const T* p) const;
    static T* newBlock(std::uint32_t n);
    static void deleteBlock(T* block);
    static T& writableDummy();
    static const T& constDummy();
};

// ---------------------------------------------------------------------------------------------
// Implementation of CZorArrayTempl<T>.

template <class T>
CZorArrayTempl<T>::CZorArrayTempl(const CZorArrayTempl& a) : CZorObj(a) {
    allocate(a.logicalLength);
    for (std::uint32_t k = 0; k < a.logicalLength; ++k) {
        data[k] = a.data[k];
        ++logicalLength;
    }
}

template <class T>
CZorArrayTempl<T>::CZorArrayTempl(CZorArrayTempl&& a) noexcept
    : CZorObj(a), physicalLength(a.physicalLength), logicalLength(a.logicalLength), data(a.data) {
    a.physicalLength = a.logicalLength = 0;
    a.data = nullptr;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::operator=(const CZorArrayTempl& a) {
    if (this == &a) return *this;
    allocate(a.logicalLength);
    logicalLength = a.logicalLength;
    for (std::uint32_t k = 0; k < a.logicalLength; ++k) data[k] = a.data[k];
    return *this;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::operator=(CZorArrayTempl&& a) noexcept {
    if (this == &a) return *this;
    removeAll();
    physicalLength = a.physicalLength;
    logicalLength = a.logicalLength;
    data = a.data;
    a.physicalLength = a.logicalLength = 0;
    a.data = nullptr;
    return *this;
}

template <class T>
CZorArrayTempl<T>::~CZorArrayTempl() {
    removeAll();
}

template <class T>
bool CZorArrayTempl<T>::operator==(const CZorArrayTempl& a) const {
    if (this == &a) return true;
    if (logicalLength != a.logicalLength) return false;
    for (std::uint32_t k = 0; k < logicalLength; ++k) {
        if (!(data[k] == a.data[k])) return false;
    }
    return true;
}

template <class T>
bool CZorArrayTempl<T>::operator<(const CZorArrayTempl& a) const {
    if (this == &a) return false;
    const std::uint32_t common = logicalLength < a.logicalLength ? logicalLength : a.logicalLength;
    for (std::uint32_t k = 0; k < common; ++k) {
        if (!(data[k] == a.data[k])) return data[k] < a.data[k];
    }
    return logicalLength < a.logicalLength;
}

template <class T>
T& CZorArrayTempl<T>::operator[](int i) {
    std::uint32_t k = static_cast<std::uint32_t>(i);
    if (i < 0) {
        if (logicalLength == 0) return writableDummy();
        // Modular in 32 bits, so -1 is the last element; below -len it stays in range.
        k = logicalLength == 1 ? 0 : (logicalLength + k) % logicalLength;
    }
    if (k >= logicalLength) {
        allocate(k + 1);
        logicalLength = k + 1;
    }
    return data[k];
}

template <class T>
const T& CZorArrayTempl<T>::operator[](int i) const {
    std::uint32_t k = static_cast<std::uint32_t>(i);
    if (i < 0) k = logicalLength >= 2 ? (logicalLength + k) % logicalLength : 0;
    if (k >= logicalLength) return constDummy();
    return data[k];
}

template <class T>
std::uint32_t CZorArrayTempl<T>::setLogicalLength(std::uint32_t n) {
    allocate(n);
    logicalLength = n;
    return n;
}

template <class T>
int CZorArrayTempl<T>::indexOf(const T& e) const {
    for (std::uint32_t k = 0; k < logicalLength; ++k) {
        if (data[k] == e) return static_cast<int>(k);
    }
    return -1;
}

template <class T>
bool CZorArrayTempl<T>::indexOf(const T& e, std::uint32_t& i) const {
    const int k = indexOf(e);
    if (k < 0) return false;
    i = static_cast<std::uint32_t>(k);
    return true;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::append(const T& e) {
    return insertAt(logicalLength, e);
}

template <class T>
CZorArrayTempl<T> CZorArrayTempl<T>::append(const T& e) const {
    CZorArrayTempl copy(*this);
    copy.append(e);
    return copy;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::appendUniq(const T& e) {
    if (indexOf(e) < 0) append(e);
    return *this;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::consUniq(const T& e) {
    if (indexOf(e) < 0) insertAt(0, e);
    return *this;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::insertAt(std::uint32_t i, const T& e) {
    if (i == 0xFFFFFFFFu) return *this;
    const std::uint32_t oldLength = logicalLength;
    const std::uint32_t newLength = (i > oldLength ? i : oldLength) + 1;
    // `e` may live in this block: growth would free it and the shift below would move another
    // element under it, so such an `e` is copied first.
    if (newLength > physicalLength || inBlock(&e)) {
        const T copy(e);
        allocate(newLength);
        logicalLength = newLength;
        if (i < oldLength) rotateSlot(oldLength, i);
        data[i] = copy;
    } else {
        logicalLength = newLength;
        if (i < oldLength) rotateSlot(oldLength, i);
        data[i] = e;
    }
    return *this;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::removeAt(std::uint32_t i) {
    if (i >= logicalLength) return *this;
    rotateSlot(i, logicalLength - 1);
    --logicalLength;
    return *this;
}

template <class T>
CZorArrayTempl<T> CZorArrayTempl<T>::removeAt(std::uint32_t i) const {
    CZorArrayTempl result;
    for (std::uint32_t k = 0; k < logicalLength; ++k) {
        if (k != i) result.append(data[k]);
    }
    return result;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::remove(const T& e) {
    const int k = indexOf(e);
    if (k >= 0) removeAt(static_cast<std::uint32_t>(k));
    return *this;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::removeAll() {
    physicalLength = logicalLength = 0;
    T* block = data;
    data = nullptr;
    deleteBlock(block);
    return *this;
}

template <class T>
void CZorArrayTempl<T>::swap(std::uint32_t i, std::uint32_t j) {
    if (i >= logicalLength || j >= logicalLength) return;
    swapMem(data[i], data[j]);
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::revert() {
    if (logicalLength < 2) return *this;
    for (std::uint32_t i = 0, j = logicalLength - 1; i < j; ++i, --j) swapMem(data[i], data[j]);
    return *this;
}

template <class T>
CZorArrayTempl<T> CZorArrayTempl<T>::reverse() const {
    CZorArrayTempl copy(*this);
    copy.revert();
    return copy;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::sort() {
    if constexpr (requires(const T& x, const T& y) { static_cast<bool>(x > y); }) {
        orderBy([](const T& x, const T& y) { return static_cast<bool>(x > y); }, true);
    }
    return *this;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::sort(int (*cmp)(const void*, const void*)) {
    if (cmp == nullptr) return *this;
    orderBy([cmp](const T& x, const T& y) { return cmp(&x, &y) > 0; }, false);
    return *this;
}

template <class T>
CZorArrayTempl<T> CZorArrayTempl<T>::mid(std::uint32_t start, std::uint32_t count) const {
    CZorArrayTempl result;
    if (start >= logicalLength) return result;
    const std::uint32_t available = logicalLength - start;
    const std::uint32_t n = count < available ? count : available;
    result.allocate(n);
    for (std::uint32_t k = 0; k < n; ++k) result.append(data[start + k]);
    return result;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::operator+=(const CZorArrayTempl& a) {
    const std::uint32_t n = a.logicalLength;
    allocate(logicalLength + n);
    // `a` may be this array: its first n elements are read after the growth, from the new block.
    for (std::uint32_t k = 0; k < n; ++k) {
        ++logicalLength;
        data[logicalLength - 1] = a.data[k];
    }
    return *this;
}

template <class T>
CZorArrayTempl<T> CZorArrayTempl<T>::operator+(const CZorArrayTempl& a) const {
    CZorArrayTempl result(*this);
    result += a;
    return result;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::operator|=(const CZorArrayTempl& a) {
    if (this == &a) return *this;
    for (std::uint32_t k = 0; k < a.logicalLength; ++k) appendUniq(a.data[k]);
    return *this;
}

template <class T>
CZorArrayTempl<T> CZorArrayTempl<T>::operator|(const CZorArrayTempl& a) const {
    CZorArrayTempl result(*this);
    result |= a;
    return result;
}

template <class T>
CZorArrayTempl<T>& CZorArrayTempl<T>::operator&=(const CZorArrayTempl& a) {
    if (this == &a) return *this;
    CZorArrayTempl result;
    for (std::uint32_t k = 0; k < logicalLength; ++k) {
        if (a.contains(data[k])) result.append(data[k]);
    }
    for (std::uint32_t k = 0; k < a.logicalLength; ++k) {
        if (contains(a.data[k]) && !result.contains(a.data[k])) result.append(a.data[k]);
    }
    return *this = std::move(result);
}

template <class T>
CZorArrayTempl<T> CZorArrayTempl<T>::operator&(const CZorArrayTempl& a) const {
    CZorArrayTempl result(*this);
    result &= a;
    return result;
}

template <class T>
void CZorArrayTempl<T>::allocate(std::uint32_t n) {
    if (n <= physicalLength) return;
    std::uint64_t cap = physicalLength;
    while (n > cap) cap = cap ? cap * 2 : 8;
    if (cap > 0xFFFFFFFFu) cap = 0xFFFFFFFFu;
    T* block = newBlock(static_cast<std::uint32_t>(cap));
    // The old elements travel to the new block and its fresh default objects to the old one,
    // which then goes with them.
    for (std::uint32_t k = 0; k < logicalLength; ++k) swapMem(data[k], block[k]);
    T* old = data;
    data = block;
    physicalLength = static_cast<std::uint32_t>(cap);
    deleteBlock(old);
}

// Relocation copies object representations on purpose, so the pointers are passed as void*:
// the element types hold no pointer into themselves, and their bytes stay valid at a new
// address while the slot they left receives another object's bytes, never a duplicate.
template <class T>
void CZorArrayTempl<T>::swapMem(T& a, T& b) {
    if (&a == &b) return;
    alignas(T) unsigned char scratch[sizeof(T)];
    void* pa = static_cast<void*>(&a);
    void* pb = static_cast<void*>(&b);
    std::memcpy(scratch, pa, sizeof(T));
    std::memcpy(pa, pb, sizeof(T));
    std::memcpy(pb, scratch, sizeof(T));
}

template <class T>
void CZorArrayTempl<T>::rotateSlot(std::uint32_t from, std::uint32_t to) {
    if (from == to) return;
    alignas(T) unsigned char scratch[sizeof(T)];
    void* slotFrom = static_cast<void*>(data + from);
    void* slotTo = static_cast<void*>(data + to);
    std::memcpy(scratch, slotFrom, sizeof(T));
    if (from < to) {
        std::memmove(slotFrom, static_cast<void*>(data + from + 1), sizeof(T) * (to - from));
    } else {
        std::memmove(static_cast<void*>(data + to + 1), slotTo, sizeof(T) * (from - to));
    }
    std::memcpy(slotTo, scratch, sizeof(T));
}

template <class T>
template <class Behind>
void CZorArrayTempl<T>::orderBy(Behind behind, bool builtInOrder) {
    if (logicalLength < 2) return;
    if constexpr (std::is_floating_point_v<T>) {
        if (builtInOrder) {
            // Under `>` a NaN is neither behind nor before anything, so no element ever passes
            // it: it splits the array into runs that are ordered each on its own.
            std::uint32_t first = 0;
            for (std::uint32_t k = 0; k <= logicalLength; ++k) {
                if (k == logicalLength || data[k] != data[k]) {
                    stableSortSlots(first, k, behind);
                    first = k + 1;
                }
            }
            return;
        }
    }
    // An element unequal to itself can break the strict weak order that makes a stable sort
    // agree with the exchanges; such (faulty) input gets the exchanges at their quadratic cost.
    if (holdsSelfUnequal()) {
        exchangeSort(behind);
    } else {
        stableSortSlots(0, logicalLength, behind);
    }
}

template <class T>
template <class Behind>
void CZorArrayTempl<T>::exchangeSort(Behind behind) {
    for (std::uint32_t pass = 0; pass + 1 < logicalLength; ++pass) {
        bool changed = false;
        for (std::uint32_t j = 1; j < logicalLength - pass; ++j) {
            if (behind(data[j - 1], data[j])) {
                swapMem(data[j - 1], data[j]);
                changed = true;
            }
        }
        if (!changed) return;
    }
}

template <class T>
template <class Behind>
void CZorArrayTempl<T>::stableSortSlots(std::uint32_t first, std::uint32_t last, Behind behind) {
    if (last - first < 2) return;
    // Sort the slot addresses, then lay the bytes out once in the new order.
    std::vector<const T*> order(last - first);
    for (std::uint32_t k = first; k < last; ++k) order[k - first] = data + k;
    std::stable_sort(order.begin(), order.end(),
                     [&behind](const T* x, const T* y) { return behind(*y, *x); });
    std::vector<unsigned char> bytes(sizeof(T) * order.size());
    for (std::size_t k = 0; k < order.size(); ++k) {
        std::memcpy(bytes.data() + sizeof(T) * k, static_cast<const void*>(order[k]), sizeof(T));
    }
    std::memcpy(static_cast<void*>(data + first), bytes.data(), bytes.size());
}

template <class T>
bool CZorArrayTempl<T>::holdsSelfUnequal() const {
    if constexpr (requires(const T& x) { static_cast<bool>(x == x); }) {
        for (std::uint32_t k = 0; k < logicalLength; ++k) {
            // A copy, since an equality may answer "the same object" without looking.
            const T copy(data[k]);
            if (!static_cast<bool>(copy == data[k])) return true;
        }
    }
    return false;
}

template <class T>
bool CZorArrayTempl<T>::inBlock(const T* p) const {
    const auto address = reinterpret_cast<std::uintptr_t>(p);
    const auto begin = reinterpret_cast<std::uintptr_t>(data);
    return data != nullptr && address >= begin && address < begin + sizeof(T) * physicalLength;
}

template <class T>
T* CZorArrayTempl<T>::newBlock(std::uint32_t n) {
    if constexpr (kPlain) {
        return static_cast<T*>(::operator new[](sizeof(T) * static_cast<std::size_t>(n)));
    } else {
        return new T[n];
    }
}

template <class T>
void CZorArrayTempl<T>::deleteBlock(T* block) {
    if constexpr (kPlain) {
        ::operator delete[](block);
    } else {
        delete[] block;
    }
}

template <class T>
T& CZorArrayTempl<T>::writableDummy() {
    static T dummy{};
    return dummy;
}

template <class T>
const T& CZorArrayTempl<T>::constDummy() {
    static const T dummy{};
    return dummy;
}

// The plain instantiations are compiled once, in array.cpp. The class instantiations (points,
// vectors, strings) belong to the headers of those types' layers.
extern template class CZorArrayTempl<double>;
extern template class CZorArrayTempl<unsigned char>;
extern template class CZorArrayTempl<short>;
extern template class CZorArrayTempl<int>;
extern template class CZorArrayTempl<void*>;
