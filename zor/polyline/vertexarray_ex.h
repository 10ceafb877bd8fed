// CZorVertexArrayEx: a polyline with two attributes that travel with a region's loops.
//
// It adds no geometry: every list, query and transformation is CZorVertexArray's and leaves the
// attributes alone. Only construction, assignment from another Ex, clear(), operator+ and
// reverse() deal with them.
#pragma once

#include <cstdint>

#include "zor/foundation/array.h"
#include "zor/polyline/vertexarray.h"
#include "zor/text/string.h"

class CZorVertexArrayEx : public CZorVertexArray {
  public:
    // A number the caller gives the loop; 0 when new.
    std::int32_t attrNumber = 0;
    // A text the caller gives the loop; null when new.
    CZorString attrText;

    CZorVertexArrayEx() = default;
    // Geometry and normal copied; the attributes start as 0 and null.
    CZorVertexArrayEx(const CZorVertexArray& a);
    CZorVertexArrayEx(const CZorVertexArrayEx& a) = default;
    CZorVertexArrayEx& operator=(const CZorVertexArrayEx& a);
    // Take over the block, the normal and the attributes; `a` is left empty.
    CZorVertexArrayEx(CZorVertexArrayEx&& a) noexcept = default;
    CZorVertexArrayEx& operator=(CZorVertexArrayEx&& a) noexcept = default;
    // Replaces geometry and normal; the attributes stay.
    CZorVertexArrayEx& operator=(const CZorVertexArray& a);
    ~CZorVertexArrayEx() override = default;

    // Length 0, number 0, text null.
    void clear() override;

    // A copy of this object, attributes included, with the segments of `a` appended.
    CZorVertexArrayEx operator+(const CZorVertexArray& a) const;
    // A reverted copy of this object, attributes included.
    CZorVertexArrayEx reverse() const;
};

// Size `out` to the length of `in` and assign element by element. Going to Ex, the attributes
// already in `out` stay.
void zorVllExToVll(CZorArrayTempl<CZorVertexArray>& out,
                   const CZorArrayTempl<CZorVertexArrayEx>& in);
void zorVllToVllEx(CZorArrayTempl<CZorVertexArrayEx>& out,
                   const CZorArrayTempl<CZorVertexArray>& in);
