// ZOR::CSmartHandle: an owned POSIX file descriptor that is closed when its owner goes.
//
// The held value -1 means "no descriptor". A value that cannot be a descriptor is never stored:
// a null handle (`nullptr`) and every negative number are stored as -1. Descriptor 0 is an
// ordinary descriptor (standard input) and is held, compared and closed like any other; "null"
// is only the `nullptr` forms below, never the number 0.
//
// There is no reference count. Copies hold the same number, and of two copies only one may be
// left to close it: `detach` the others.
#pragma once

#include <cstddef>

namespace ZOR {

class CSmartHandle {
  public:
    // Holds no descriptor.
    CSmartHandle() = default;
    // Takes ownership of `fd`; a negative value holds nothing.
    CSmartHandle(int fd);
    CSmartHandle(std::nullptr_t) {}
    // Copies the number and nothing else; copy assignment does not close what was held before.
    CSmartHandle(const CSmartHandle&) = default;
    CSmartHandle& operator=(const CSmartHandle&) = default;
    // Closes the held descriptor.
    virtual ~CSmartHandle();

    // True when no descriptor is held.
    bool isClosed() const { return m_handle == -1; }

    // Closes the held descriptor and holds nothing. Returns false, doing nothing, when nothing
    // was held; otherwise true, whatever `::close` reported.
    virtual bool close();

    // Takes `fd` in place of the held descriptor. Nothing happens when `fd` is the value held
    // now (compared as given, before a negative value becomes -1); otherwise `close` runs first.
    CSmartHandle& operator=(int fd);
    // Calls `close` (which finds nothing on an empty handle) and holds nothing.
    CSmartHandle& operator=(std::nullptr_t);

    // Returns the held value and holds nothing, without closing.
    int detach();

    // The held descriptor, -1 when there is none.
    operator int() const { return m_handle; }

  private:
    int m_handle = -1;
};

}  // namespace ZOR
