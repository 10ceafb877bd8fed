#include "zor/polyline/vertexarray_ex.h"

#include <cstdint>

namespace {

// One element-wise copy for both directions; each element goes through its own assignment, so
// going to Ex keeps the attributes already there.
template <class To, class From>
void assignEach(CZorArrayTempl<To>& out, const CZorArrayTempl<From>& in) {
    const std::uint32_t n = in.len();
    out.setLogicalLength(n);
    for (std::uint32_t i = 0; i < n; ++i) out[static_cast<int>(i)] = in[static_cast<int>(i)];
}

}  // namespace

CZorVertexArrayEx::CZorVertexArrayEx(const CZorVertexArray& a) : CZorVertexArray(a) {}

CZorVertexArrayEx& CZorVertexArrayEx::operator=(const CZorVertexArrayEx& a) {
    if (this == &a) return *this;
    CZorVertexArray::operator=(a);
    attrNumber = a.attrNumber;
    attrText = a.attrText;
    return *this;
}

CZorVertexArrayEx& CZorVertexArrayEx::operator=(const CZorVertexArray& a) {
    CZorVertexArray::operator=(a);
    return *this;
}

void CZorVertexArrayEx::clear() {
    attrNumber = 0;
    attrText = CZorString::kNull;
    CZorVertexArray::clear();
}

CZorVertexArrayEx CZorVertexArrayEx::operator+(const CZorVertexArray& a) const {
    CZorVertexArrayEx r(*this);
    r += a;
    return r;
}

CZorVertexArrayEx CZorVertexArrayEx::reverse() const {
    CZorVertexArrayEx r(*this);
    r.revert();
    return r;
}

void zorVllExToVll(CZorArrayTempl<CZorVertexArray>& out,
                   const CZorArrayTempl<CZorVertexArrayEx>& in) {
    assignEach(out, in);
}

void zorVllToVllEx(CZorArrayTempl<CZorVertexArrayEx>& out,
                   const CZorArrayTempl<CZorVertexArray>& in) {
    assignEach(out, in);
}
