// Loops, regions and lists of regions, and the small operations that take line work apart and
// put it together.
//
// A loop is a closed CZorVertexArray. A vll is a list of polylines; as a region, element 0 is the
// outer loop and the other elements are its holes, all counter-clockwise about +Z at rest. A regl
// is a list of regions. There is no region type: position alone carries the meaning. A point
// against a region classifies as 1 inside, 0 on a boundary, -1 outside.
#pragma once

#include "zor/foundation/array.h"
#include "zor/foundation/map.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/vector3d.h"
#include "zor/polyline/tangent_runs.h"
#include "zor/polyline/vertexarray.h"
#include "zor/polyline/vertexarray_ex.h"

namespace ZOR {

// The continuous runs of `vl`, each normalised; the pair last to first isn't looked at. The runs
// keep the default normal; the Ex form gives each run the attributes of `vl`.
CZorArrayTempl<CZorVertexArray> g_vl_vll(const CZorVertexArray& vl);
CZorArrayTempl<CZorVertexArrayEx> g_vl_vll(const CZorVertexArrayEx& vl);
// The runs of `vl`, cut also where a run comes back to its own start. A polyline with a gap is
// first turned to begin behind its first gap. Nothing is normalised.
CZorArrayTempl<CZorVertexArray> g_vl_to_vll(CZorVertexArray vl);
// Chains built greedily from the pieces of `list`, in the order they were begun; each chain is
// normalised.
CZorArrayTempl<CZorVertexArray> g_vll_join(CZorArrayTempl<CZorVertexArray> list);
// Points where `n` or more segment ends meet (`n` >= 0), or exactly -`n` (`n` < 0), with the
// index of the segment once for each of its ends there, points compared at `tol`. `out` is
// always cleared; true when a node was found.
bool g_vl_nodes(CZorMapTempl<CZorPoint3d, CZorArrayTempl<int>>& out, const CZorVertexArray& vl,
                int n, double tol);
// Reverts every closed member that doesn't run counter-clockwise about `normal`; open members
// stay. Returns `vll`.
CZorArrayTempl<CZorVertexArray>& setOrient(CZorArrayTempl<CZorVertexArray>& vll,
                                           const CZorVector3d& normal);
CZorArrayTempl<CZorVertexArrayEx>& setOrient(CZorArrayTempl<CZorVertexArrayEx>& vll,
                                             const CZorVector3d& normal);
// 1 inside the region, 0 on a boundary, -1 outside or for an empty region.
int g_vll_pt_inside(const CZorArrayTempl<CZorVertexArray>& region, const CZorPoint3d& p);
int g_vll_pt_inside(const CZorArrayTempl<CZorVertexArrayEx>& region, const CZorPoint3d& p);
// `vl` lies within the closed `loop`, its boundary included. False for an open `loop`.
bool g_vl_vl_inside(CZorVertexArray vl, const CZorVertexArray& loop);
// A valid closed outline: closed, no segment meeting another beyond what `flags` drops
// (CZorVertex::intersectWith flags), and no point where three or more ends meet.
bool g_vl_chk(const CZorVertexArray& vl, int flags);

}  // namespace ZOR

// Sizes `out` to `in` and converts region by region; going to Ex, attributes already in `out`
// stay.
void zorReglToReglEx(CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& out,
                     const CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& in);
void zorReglExToRegl(CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& out,
                     const CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& in);
// The plain list of `in`.
CZorArrayTempl<CZorVertexArray> zor_g_gvll(const CZorArrayTempl<CZorVertexArrayEx>& in);
// `vl` with the attributes `number` and `text` (null or empty text gives the empty text) and the
// normal `normal`, which wins over that of `vl`.
CZorVertexArrayEx zor_g_xvl(const CZorVertexArray& vl, int number, const wchar_t* text,
                            const CZorVector3d& normal);
// zor_g_xvl of each member, in order.
CZorArrayTempl<CZorVertexArrayEx> zor_g_xvll(const CZorArrayTempl<CZorVertexArray>& in, int number,
                                             const wchar_t* text, const CZorVector3d& normal);
// The same list with each member translated by `v`.
CZorArrayTempl<CZorVertexArray> zor_g_vll_move(CZorArrayTempl<CZorVertexArray> vll,
                                               const CZorVector3d& v);
