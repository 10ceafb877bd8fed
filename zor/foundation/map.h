// CZorMapTempl<K,V>: the library's ordered dictionary.
//
// A block of pointers to heap records, kept in ascending key order and searched by bisection.
// The records never move while the map changes, so a `V*` handed out by getAt or getAtIndex stays
// valid across other insertions and removals, until its own key is removed.
//
// Keys are found by `K::operator==` and ordered by `K::operator<`. With point keys the equality
// is the point tolerance, so a key within tolerance of a stored key finds that entry (and the
// stored key stays as it was).
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>

#include "zor/foundation/array.h"
#include "zor/foundation/object.h"

template <class K, class V>
class CZorMapTempl : public CZorObj {
  public:
    // One entry, allocated on its own.
    struct data {
        K key;
        V value;
    };

    CZorMapTempl() = default;
    CZorMapTempl(const CZorMapTempl& m);
    CZorMapTempl(CZorMapTempl&& m) noexcept;
    // Drops this map's records and block, then copies the source's records into a block of the
    // source's capacity. Assigning a map to itself changes nothing.
    CZorMapTempl& operator=(const CZorMapTempl& m);
    CZorMapTempl& operator=(CZorMapTempl&& m) noexcept;
    ~CZorMapTempl() override;

    std::uint32_t len() const { return count; }
    bool isEmpty() const { return count == 0; }

    // Stores `v` under `k`. True when the key was already present (its value is replaced),
    // false when a new entry was made.
    bool setAt(const K& k, const V& v);
    // The value of `k`, inserting a default value first when the key is absent.
    V& operator[](const K& k);
    // False, with `v` untouched, when the key is absent.
    bool getAt(const K& k, V& v) const;
    bool getAt(const K& k, V*& v) const;
    bool hasKey(const K& k) const;
    // Destroys the entry. False when the key is absent.
    bool removeAt(const K& k);
    // Destroys every entry; the block and its capacity stay for reuse.
    void removeAll();

    // Positional access in key order. False, with the outputs untouched, when i >= len().
    bool getAtIndex(std::uint32_t i, V& v) const;
    bool getAtIndex(std::uint32_t i, V*& v) const;
    bool getAtIndex(std::uint32_t i, K& k, V& v) const;
    bool getAtIndex(std::uint32_t i, K& k, V*& v) const;
    bool keyAtIndex(std::uint32_t i, K& k) const;

    // All keys in ascending order; `keys` gets the length len().
    void getDir(CZorArrayTempl<K>& keys) const;

  private:
    // True with the entry's index, or false with the index at which `k` belongs.
    bool find(const K& k, std::uint32_t& i) const;
    // Makes room for one more pointer: capacity 16, 32, 64, ...
    void grow();
    // Stores `d` at `i`, moving the later pointers up.
    void insertAt(std::uint32_t i, data* d);
    // Inserts a new entry for `k` at `i` and returns it.
    data* insertNew(std::uint32_t i, const K& k, const V& v);
    void copyFrom(const CZorMapTempl& m);

    data** entries = nullptr;
    std::uint32_t count = 0;
    std::uint32_t capacity = 0;
};

// ---------------------------------------------------------------------------------------------
// Implementation.

template <class K, class V>
CZorMapTempl<K, V>::CZorMapTempl(const CZorMapTempl& m) : CZorObj(m) {
    copyFrom(m);
}

template <class K, class V>
CZorMapTempl<K, V>::CZorMapTempl(CZorMapTempl&& m) noexcept
    : CZorObj(m), entries(m.entries), count(m.count), capacity(m.capacity) {
    m.entries = nullptr;
    m.count = m.capacity = 0;
}

template <class K, class V>
CZorMapTempl<K, V>& CZorMapTempl<K, V>::operator=(const CZorMapTempl& m) {
    if (this == &m) return *this;
    removeAll();
    delete[] entries;
    entries = nullptr;
    capacity = 0;
    copyFrom(m);
    return *this;
}

template <class K, class V>
CZorMapTempl<K, V>& CZorMapTempl<K, V>::operator=(CZorMapTempl&& m) noexcept {
    if (this == &m) return *this;
    removeAll();
    delete[] entries;
    entries = m.entries;
    count = m.count;
    capacity = m.capacity;
    m.entries = nullptr;
    m.count = m.capacity = 0;
    return *this;
}

template <class K, class V>
CZorMapTempl<K, V>::~CZorMapTempl() {
    removeAll();
    delete[] entries;
}

template <class K, class V>
bool CZorMapTempl<K, V>::setAt(const K& k, const V& v) {
    std::uint32_t i;
    if (find(k, i)) {
        entries[i]->value = v;
        return true;
    }
    insertNew(i, k, v);
    return false;
}

template <class K, class V>
V& CZorMapTempl<K, V>::operator[](const K& k) {
    std::uint32_t i;
    if (find(k, i)) return entries[i]->value;
    return insertNew(i, k, V())->value;
}

template <class K, class V>
bool CZorMapTempl<K, V>::getAt(const K& k, V& v) const {
    std::uint32_t i;
    if (!find(k, i)) return false;
    v = entries[i]->value;
    return true;
}

template <class K, class V>
bool CZorMapTempl<K, V>::getAt(const K& k, V*& v) const {
    std::uint32_t i;
    if (!find(k, i)) return false;
    v = &entries[i]->value;
    return true;
}

template <class K, class V>
bool CZorMapTempl<K, V>::hasKey(const K& k) const {
    std::uint32_t i;
    return find(k, i);
}

template <class K, class V>
bool CZorMapTempl<K, V>::removeAt(const K& k) {
    std::uint32_t i;
    if (!find(k, i)) return false;
    delete entries[i];
    std::memmove(entries + i, entries + i + 1, sizeof(data*) * (count - i - 1));
    --count;
    entries[count] = nullptr;
    return true;
}

template <class K, class V>
void CZorMapTempl<K, V>::removeAll() {
    for (std::uint32_t k = 0; k < count; ++k) {
        delete entries[k];
        entries[k] = nullptr;
    }
    count = 0;
}

template <class K, class V>
bool CZorMapTempl<K, V>::getAtIndex(std::uint32_t i, V& v) const {
    if (i >= count) return false;
    v = entries[i]->value;
    return true;
}

template <class K, class V>
bool CZorMapTempl<K, V>::getAtIndex(std::uint32_t i, V*& v) const {
    if (i >= count) return false;
    v = &entries[i]->value;
    return true;
}

template <class K, class V>
bool CZorMapTempl<K, V>::getAtIndex(std::uint32_t i, K& k, V& v) const {
    if (i >= count) return false;
    k = entries[i]->key;
    v = entries[i]->value;
    return true;
}

template <class K, class V>
bool CZorMapTempl<K, V>::getAtIndex(std::uint32_t i, K& k, V*& v) const {
    if (i >= count) return false;
    k = entries[i]->key;
    v = &entries[i]->value;
    return true;
}

template <class K, class V>
bool CZorMapTempl<K, V>::keyAtIndex(std::uint32_t i, K& k) const {
    if (i >= count) return false;
    k = entries[i]->key;
    return true;
}

template <class K, class V>
void CZorMapTempl<K, V>::getDir(CZorArrayTempl<K>& keys) const {
    keys.setLogicalLength(count);
    for (std::uint32_t i = 0; i < count; ++i) keys[static_cast<int>(i)] = entries[i]->key;
}

// The probe starts at the largest power of two not above the count and halves its step; a probe
// at or past the end counts as lying above the key. The index returned on a miss is the one at
// which the key keeps the order.
template <class K, class V>
bool CZorMapTempl<K, V>::find(const K& k, std::uint32_t& i) const {
    if (count == 0) {
        i = 0;
        return false;
    }
    std::uint32_t step = 1;
    while (step <= count / 2) step *= 2;
    std::uint32_t probe = step - 1;
    for (;;) {
        int c = -1;
        if (probe < count) {
            const K& e = entries[probe]->key;
            if (e == k) {
                i = probe;
                return true;
            }
            if (e < k) c = 1;
        }
        step /= 2;
        if (c < 1) {
            probe -= step;
        } else {
            probe += step;
        }
        if (step == 0) {
            i = c < 1 ? probe : probe + 1;
            return false;
        }
    }
}

template <class K, class V>
void CZorMapTempl<K, V>::grow() {
    if (count < capacity) return;
    const std::uint32_t newCapacity = capacity ? capacity * 2 : 16;
    data** block = new data*[newCapacity]();
    if (count > 0) std::memcpy(block, entries, sizeof(data*) * count);
    delete[] entries;
    entries = block;
    capacity = newCapacity;
}

template <class K, class V>
void CZorMapTempl<K, V>::insertAt(std::uint32_t i, data* d) {
    grow();
    std::memmove(entries + i + 1, entries + i, sizeof(data*) * (count - i));
    ++count;
    entries[i] = d;
}

template <class K, class V>
typename CZorMapTempl<K, V>::data* CZorMapTempl<K, V>::insertNew(std::uint32_t i, const K& k,
                                                                 const V& v) {
    // Owned here until stored, so a failing growth doesn't leak the record.
    std::unique_ptr<data> record(new data{k, v});
    insertAt(i, record.get());
    return record.release();
}

template <class K, class V>
void CZorMapTempl<K, V>::copyFrom(const CZorMapTempl& m) {
    if (m.capacity == 0) return;
    entries = new data*[m.capacity]();
    capacity = m.capacity;
    for (std::uint32_t k = 0; k < m.count; ++k) {
        entries[k] = new data{m.entries[k]->key, m.entries[k]->value};
        ++count;
    }
}

extern template class CZorMapTempl<int, int>;
