// Cutting polylines: at points or by a rule (a maximal sweep, a chord deviation, tangent
// directions, shadow edges), a piece between two points, breaking two polylines against each
// other, chord and box replacements, duplicate removal, restoring the running order of shuffled
// segments, and ordering loose points along a segment or polyline.
//
// Breaking goes through CZorVertexArray::breakVertex, so arcs keep their circles. A polyline
// passed by value is the function's own working copy.
#pragma once

#include "zor/foundation/array.h"
#include "zor/foundation/map_double_to_point.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/polyline/vertex.h"
#include "zor/polyline/vertexarray.h"
#include "zor/polyline/vertexarray_ex.h"

namespace ZOR {

// Broken at each point that lies inside a segment; points at segment ends, off the polyline or
// without finite coordinates are ignored.
CZorVertexArray g_vl_split(CZorVertexArray vl, const CZorPoint3dArray& pts);
// Every arc broken into equal sweeps of at most `ang` (clockwise arcs into two pieces).
CZorVertexArray g_vl_split_ang(const CZorVertexArray& vl, double ang);
// All chords, within a deviation `dif` of the arcs.
CZorVertexArray g_vl_split_dif(CZorVertexArray vl, double dif);
CZorArrayTempl<CZorVertexArray> g_vll_split_dif(const CZorArrayTempl<CZorVertexArray>& vll,
                                                double dif);
// Broken where the curve's tangent has direction `w`.
CZorVertexArray g_vl_split_tang_w(CZorVertexArray vl, double w);
// Broken at the shadow edges for light from direction `w`.
CZorVertexArray g_vl_split_w(CZorVertexArray vl, double w);
// The piece from `a` to `b` in the polyline's direction, passing the seam of a closed one.
CZorVertexArray g_vl_cut(CZorVertexArray vl, const CZorPoint3d& a, const CZorPoint3d& b);
// Flags bit 1 breaks `a` at `b`, bit 2 breaks `b` at `a`, at crossings and where a segment
// start of the other lies inside a segment. Always false; the result lies in `a` and `b`.
bool g_vl_break(CZorVertexArray& a, CZorVertexArray& b, int flags);
// The pieces between the points, each normalised; a closed polyline isn't joined at its seam.
CZorArrayTempl<CZorVertexArray> g_vl_break(const CZorVertexArray& vl, const CZorPoint3dArray& pts);
// A circle as it is; else the chord polygon when under 17 segments all bulge below 0.5; else the
// bounding rectangle. The Ex form keeps the two attributes.
CZorVertexArray g_vl_primitive(const CZorVertexArray& vl);
CZorVertexArrayEx g_vl_primitive(const CZorVertexArrayEx& vl);
// Without repeated segments; a segment and its reverse count as one, the first stays.
CZorVertexArray g_vl_dupl_remove(const CZorVertexArray& vl);
// Segments with a non-zero flags[i] are offset by -0.5 * t * flags[i + 1] (0 past the end of
// the list), then the joints are repaired at the crossings of neighbours.
CZorVertexArray vl_neutral(CZorVertexArray vl, const CZorArrayTempl<int>& flags, double t);
// Restores the running order of shuffled segments of chains and loops. Segments aren't
// reverted; joints found take the exact coordinates of the following start.
void g_vl_sort(CZorVertexArray& vl);
// The points that lie on `vl`, by their distance along it (equal distances in input order).
CZorPoint3dArray g_pl_sort_vl(CZorPoint3dArray pts, const CZorVertexArray& vl);
// The points ordered along the direction of `v`.
CZorPoint3dArray g_pl_sort_vx(CZorPoint3dArray pts, const CZorVertex& v);
// Each point under its angle about `c` counted from `a`, sorted. Always true.
bool g_pl_sort_arcw(ZOR::CMapDoubleToPoint& map, const CZorPoint3dArray& pts, const CZorPoint3d& c,
                    double a);

}  // namespace ZOR
