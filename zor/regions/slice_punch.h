// Slicing line work by a segment (the cutter, a line or an arc) into what lies to its right and
// left, and punching: keeping the pieces of a polyline outside or inside a closed shape or a
// region. Left and right are the sides of travel from the cutter's start to its end; what the
// cutter doesn't reach isn't cut.
#pragma once

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/polyline/vertex.h"
#include "zor/polyline/vertexarray.h"
#include "zor/polyline/vertexarray_ex.h"

namespace ZOR {

// The open pieces of `vl` by side; both lists are emptied first. An open `vl` is cut at every
// crossing; a closed one gives the pieces between the first and last crossing along the cutter
// and between neighbouring crossings that the cutter bounds, and goes whole to its side when one
// list stays empty. Always true.
bool g_vl_slice(const CZorVertexArray& vl, const CZorVertex& cutter,
                CZorArrayTempl<CZorVertexArray>& right, CZorArrayTempl<CZorVertexArray>& left);
// The same with the straight cutter p1-p2. False, lists untouched, for a `vl` with gaps.
bool g_vl_slice(const CZorVertexArray& vl, const CZorPoint3d& p1, const CZorPoint3d& p2,
                CZorArrayTempl<CZorVertexArray>& right, CZorArrayTempl<CZorVertexArray>& left);
// The part of `loops` to the right of the cutter, closed by bridges along it. A cutter shorter
// than the point tolerance gives a copy of `loops`.
CZorArrayTempl<CZorVertexArray> g_reg_slice(const CZorArrayTempl<CZorVertexArray>& loops,
                                            const CZorVertex& cutter);
// The regions of `region` to the right of p1-p2: the outer loop minus its holes and minus the
// closed parts left of the line. Empty when the region lies wholly on the left or the outer loop
// has gaps; [region] when nothing lies on the left.
CZorArrayTempl<CZorArrayTempl<CZorVertexArray>> g_region_slice(
    const CZorArrayTempl<CZorVertexArray>& region, const CZorPoint3d& p1, const CZorPoint3d& p2);

// The pieces of `vl` strictly outside `shape`, or strictly inside it when `inside` is true.
// Pieces along the boundary belong to neither. The Ex form gives every piece the attributes of
// `vl`.
CZorArrayTempl<CZorVertexArray> g_vl_punch(CZorVertexArray vl, const CZorVertexArray& shape,
                                           bool inside);
CZorArrayTempl<CZorVertexArrayEx> g_vl_punch(CZorVertexArrayEx vl, const CZorVertexArray& shape,
                                             bool inside);
// g_vl_punch of each member, all pieces in one list in order.
CZorArrayTempl<CZorVertexArrayEx> g_vll_punch(const CZorArrayTempl<CZorVertexArrayEx>& list,
                                              const CZorVertexArray& shape, bool inside);
// The same against a region: outside means outside the outer loop or strictly inside a hole.
CZorArrayTempl<CZorVertexArray> g_vl_punch_reg(CZorVertexArray vl,
                                               const CZorArrayTempl<CZorVertexArray>& region,
                                               bool inside);

}  // namespace ZOR
