// Relations between two segments, or a segment and a point or direction: collinear, parallel,
// tangent points, the corner angle, trimming two ends to their crossing, finding the segment of
// a polyline at or near a point, and small edits.
#pragma once

#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/polyline/vertex.h"
#include "zor/polyline/vertexarray.h"

namespace ZOR {

// On one line or one circle within `tol`, which serves as length, bulge and angle alike and is
// the point tolerance for the length of the call. Arcs flatter than `tol` count as lines.
bool g_vx_colinear(const CZorVertex& a, const CZorVertex& b, double tol);
// Parallel lines, or concentric arcs. A segment of zero length is parallel to nothing.
bool g_vx_parallel(const CZorVertex& a, const CZorVertex& b);
// The angle left of the path at the end of `a` going on into `b`, in [0, 2 pi): straight on is
// pi, a left turn of 90 degrees pi/2.
double g_vx_ang(const CZorVertex& a, const CZorVertex& b);
// Moves the end of `a` and the start of `b` to the crossing of the extended segments nearest to
// the gap between them. False, and both untouched, when they meet already, are tangent or
// collinear, or don't cross.
bool g_vx_trim(CZorVertex& a, CZorVertex& b);
// The first segment on which `p` lies; `index` is written only on success.
bool g_vx_search(const CZorVertexArray& vl, const CZorPoint3d& p, int& index);
// The segment nearest to `p` (the last of equally near ones); a default segment when empty.
CZorVertex g_vx_search_near(const CZorVertexArray& vl, const CZorPoint3d& p);
// Points of an arc whose tangent has direction `w`; with `inner`, the arc's ends don't count.
// In the arc's running order; empty for a line.
CZorPoint3dArray g_vx_tangp(const CZorVertex& v, double w, bool inner);
// Points of an arc whose tangent passes through `p`; empty for a line or `p` inside the circle.
CZorPoint3dArray g_vx_tangp(const CZorVertex& v, const CZorPoint3d& p, bool inner);
// Both ends snapped to a grid of `step`; bulge and tag stay.
CZorVertex g_vx_rnd(CZorVertex v, double step);
// Z of both ends set to 0.
CZorVertex& g_vx_xy(CZorVertex& v);

}  // namespace ZOR

// A piece parallel to `v` from `p` to the level of `q` (a line) or to the radius through `q`
// (an arc, on the concentric circle through `p`). `flag` has no effect.
CZorVertex zor_g_vx_vx(const CZorPoint3d& p, const CZorPoint3d& q, const CZorVertex& v, bool flag);
