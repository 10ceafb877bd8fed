// ZOR::CCriticalSect and ZOR::CLock: a recursive mutex for callers and its scope guard.
//
// The library keeps none of its own state under these; they are offered to callers, for
// instance to serialise use of the process-wide ZOR::CPtrMap.
#pragma once

#include <mutex>

namespace ZOR {

// A mutex that the thread holding it may enter again; each Enter needs its Leave.
class CCriticalSect {
  public:
    CCriticalSect() = default;
    // A copy of a live mutex would be no mutex.
    CCriticalSect(const CCriticalSect&) = delete;
    CCriticalSect& operator=(const CCriticalSect&) = delete;
    virtual ~CCriticalSect() = default;

    void Enter() { m_section.lock(); }
    void Leave() { m_section.unlock(); }

    // The underlying mutex, for calls that need it raw (std::unique_lock, try_lock).
    operator std::recursive_mutex*() { return &m_section; }

  private:
    std::recursive_mutex m_section;
};

// Enters a section for the lifetime of the lock.
//
// A copy keeps the same section and enters nothing, yet its destruction leaves the section: of
// a lock and its copies only one may be destroyed while the section is held.
class CLock {
  public:
    explicit CLock(CCriticalSect& section) : m_section(&section) { m_section->Enter(); }
    CLock(const CLock&) = default;
    CLock& operator=(const CLock&) = default;
    virtual ~CLock() { m_section->Leave(); }

  private:
    CCriticalSect* m_section;
};

}  // namespace ZOR
