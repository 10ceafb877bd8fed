#include "zor/foundation/smart_handle.h"

#include <unistd.h>

namespace ZOR {

namespace {

int stored_form(int fd) {
    return fd < 0 ? -1 : fd;
}

}  // namespace

CSmartHandle::CSmartHandle(int fd) : m_handle(stored_form(fd)) {}

CSmartHandle::~CSmartHandle() {
    close();
}

bool CSmartHandle::close() {
    if (m_handle == -1) return false;
    // Whatever ::close reports, the descriptor number is no longer ours to use (even after
    // EINTR on Linux), so the handle is empty either way.
    ::close(m_handle);
    m_handle = -1;
    return true;
}

CSmartHandle& CSmartHandle::operator=(int fd) {
    if (fd == m_handle) return *this;
    close();
    m_handle = stored_form(fd);
    return *this;
}

// A null handle never equals the stored value, which is never null, so close always runs.
CSmartHandle& CSmartHandle::operator=(std::nullptr_t) {
    close();
    m_handle = -1;
    return *this;
}

int CSmartHandle::detach() {
    const int fd = m_handle;
    m_handle = -1;
    return fd;
}

}  // namespace ZOR
