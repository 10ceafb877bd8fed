// Rounding and cutting the corners of polylines.
//
// A fillet is found by offsetting both segments of a corner by the radius and crossing the
// offsets, so lines and arcs are served alike. A chamfer cuts a corner where a circle about the
// corner meets its two segments, so its distance is the straight distance from the corner, for
// arcs too.
#pragma once

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/polyline/vertex.h"
#include "zor/polyline/vertexarray.h"

namespace ZOR {

// The corner from `s1` into `s2` rounded with radius `r`, not in running order: [trimmed s1,
// trimmed s2, arc]. `side` 0 takes either side, the centre right of travel tried first; -1 only
// the centre right of both (a clockwise arc); +1 only left (counter-clockwise); other values no
// side. [s1, s2] unchanged for a non-finite or subnormal `r`, tangent segments, offsets that
// don't cross, or a crossing only on the forbidden side. Empty when an offset arc collapses, the
// offsets are collinear, or, for `r` 0 (trimming both to their crossing), the trim fails.
CZorVertexArray g_vx_fillet(CZorVertex s1, CZorVertex s2, double r, int side);
// Every corner of `vl` rounded in running order; with `closed` and a closed `vl` the closing
// corner too, its arc last. A corner whose fillet would leave the first segment an arc of more
// than half a circle stays.
CZorVertexArray g_vl_fillet(const CZorVertexArray& vl, double r, int side, bool closed);
// Only the corner at `p` rounded (either side). A copy for a radius that isn't a positive normal
// number, fewer than 2 segments, or no corner at `p`.
CZorVertexArray g_vl_fillet_p(const CZorVertexArray& vl, const CZorPoint3d& p, double r);
// Corners cut at the distance `d` from the corner point (for a negative `d`, by the circle of
// diameter |d| through the corner). `side` 0 or 0x7FFFFFFF cuts all, positive those turning like
// the whole polyline, negative those turning against it; the whole is read from the second
// segment round to the first, so an open polyline's last end doesn't count towards it. `vl`
// comes back normalised; true when segments were added.
bool g_vl_chamfer(CZorVertexArray& vl, double d, int side);
// g_vl_chamfer of every member. Always true.
bool g_vll_chamfer(CZorArrayTempl<CZorVertexArray>& vll, double d, int side);
// A point of a fillet construction between the circles of radius r1 about `m` and r2: from `m`
// along the line b-a by s, then towards the line a-b by q, with q = (r1 - r2)^2 * k + d and
// s = sqrt(r2^2 - q^2), d the distance from `m` to the line. The origin when `m` has no foot on
// the line.
CZorPoint3d g_nm_fillet_mp(const CZorPoint3d& m, double r1, double r2, const CZorPoint3d& a,
                           const CZorPoint3d& b, double k);

}  // namespace ZOR
