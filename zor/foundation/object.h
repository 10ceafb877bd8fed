// CZorObj: the common root of the library's value classes.
//
// It carries no data. It gives every value class one virtual destructor and one allocator,
// and that allocator zero-fills: any object or array of a derived class created with `new`
// starts as zero bytes before its constructor runs. Some classes rely on this for fields
// their constructors leave alone.
#pragma once

#include <cstddef>

class CZorObj {
  public:
    CZorObj() = default;
    CZorObj(const CZorObj&) = default;
    CZorObj& operator=(const CZorObj&) = default;
    virtual ~CZorObj() = default;

    // Asks the global operator new[] for `n` bytes and clears them. Adds no failure of its own:
    // what the global allocator does on exhaustion passes through unchanged.
    static void* operator new(std::size_t n);
    static void* operator new[](std::size_t n);
    static void operator delete(void* p) noexcept;
    static void operator delete[](void* p) noexcept;

    // Construction in storage the caller provides, which is not cleared. The class-scope
    // operators above would otherwise hide the global placement form.
    static void* operator new(std::size_t, void* where) noexcept { return where; }
    static void operator delete(void*, void*) noexcept {}
};
