// ZOR::CUniqPointer<T>: sole owner of a scratch buffer, released when the owner goes.
//
// It stands beside a raw buffer that must not leak on an exception path. The buffer is one
// made by `new T[n]` (or null) and is released with `delete[]`. Used with T = unsigned char,
// char and wchar_t.
#pragma once

namespace ZOR {

template <typename T>
class CUniqPointer {
  public:
    explicit CUniqPointer(T* buffer = nullptr) : m_buffer(buffer) {}
    // One owner only: a copy would release the buffer twice. Moving hands the buffer over.
    CUniqPointer(const CUniqPointer&) = delete;
    CUniqPointer& operator=(const CUniqPointer&) = delete;
    CUniqPointer(CUniqPointer&& other) noexcept : m_buffer(other.m_buffer) {
        other.m_buffer = nullptr;
    }
    CUniqPointer& operator=(CUniqPointer&& other) noexcept {
        if (this != &other) {
            release();
            m_buffer = other.m_buffer;
            other.m_buffer = nullptr;
        }
        return *this;
    }
    virtual ~CUniqPointer() { release(); }

    T* get() const { return m_buffer; }
    operator T*() const { return m_buffer; }

  private:
    // The field is cleared before the buffer goes, so the object never points at freed memory.
    void release() {
        T* old = m_buffer;
        m_buffer = nullptr;
        delete[] old;
    }

    T* m_buffer;
};

}  // namespace ZOR
