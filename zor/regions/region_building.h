// Turning a flat list of loops into regions by nesting.
//
// g_vll_region trusts its input (clean loops that don't cross, as the boolean operations make
// them) and nests by one sample point per loop, to any depth. g_vll_regions takes loops as drawn:
// it tests every pair for crossing and containment and keeps depth 1 only, with options for
// crossings and islands. Neither changes the direction of a loop.
#pragma once

#include "zor/foundation/array.h"
#include "zor/polyline/vertexarray.h"
#include "zor/polyline/vertexarray_ex.h"

namespace ZOR {

// Regions by depth: loops at even depth open regions (shallower first, then in input order); each
// other loop joins the deepest region whose outer loop holds its sample point (the middle of its
// first segment) strictly, or is dropped. Attributes stay with their loops.
CZorArrayTempl<CZorArrayTempl<CZorVertexArray>> g_vll_region(
    const CZorArrayTempl<CZorVertexArray>& loops);
CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> g_vll_region(
    const CZorArrayTempl<CZorVertexArrayEx>& loops);

// Regions by pairwise tests. Flags: 1 leaves out islands (loops at even depth 2 or more), 2 gives
// regions without holes, 4 keeps crossing loops (without containment across the crossing)
// instead of leaving them out. The plain form lists islands first, in descending order, then the
// top-level loops in descending order, and gives up with an empty list when a loop has several
// containers that don't nest; the Ex form lists top-level loops, then islands, both ascending.
CZorArrayTempl<CZorArrayTempl<CZorVertexArray>> g_vll_regions(
    const CZorArrayTempl<CZorVertexArray>& loops, unsigned long flags);
CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> g_vll_regions(
    const CZorArrayTempl<CZorVertexArrayEx>& loops, unsigned long flags);

// The closed members of `in`, in order, each as a counter-clockwise copy.
CZorArrayTempl<CZorVertexArray> g_vll_regions_prepare(const CZorArrayTempl<CZorVertexArray>& in);

// The region is its own mirror image in the line at angle `ang` through the middle of the
// extreme points of its outer loop: the outer loop and the holes on the axis each by themselves,
// the other holes in mirrored pairs. False for an empty region.
bool g_region_is_symmetric(const CZorArrayTempl<CZorVertexArray>& region, double ang);

namespace detail {

// g_vll_region(loops) for a caller done with `loops`: the regions take over the loops' storage
// instead of copies, and `loops` is left with emptied members.
CZorArrayTempl<CZorArrayTempl<CZorVertexArray>> regionsTaking(
    CZorArrayTempl<CZorVertexArray>& loops);
CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> regionsTaking(
    CZorArrayTempl<CZorVertexArrayEx>& loops);

}  // namespace detail
}  // namespace ZOR
