// Circles, arcs and tangents: intersections of lines, circles and arcs, points on arcs, and the
// conversions between the three descriptions of an arc the kernel uses (three points; centre,
// radius and angles; two end points with a bulge).
//
// An arc is a centre `c`, a radius `r` and angles `a0`, `a1` in radians; it runs
// counter-clockwise from `a0` to `a1`. A bulge is tan(sweep / 4), positive counter-clockwise.
// Everything is decided in the xy plane; z is carried as each function says.
//
// Intersection results go to the list given first, emptied before use unless noted; the input
// points may be points of that list. Points coincide by CZorPoint3d::operator== (within
// CZorPoint3d::tol), so a CZorPoint3dTol scope widens every test here except those against
// literal constants.
#pragma once

#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"

namespace ZOR {

// --- Intersections ---------------------------------------------------------------------------

// Circle with circle. Circles touching from outside or inside within the point tolerance give
// one point; so do equal circles on one centre (the point at angle 0 from c2). Crossing circles
// give first the point left of the line from c1 to c2, then the one right of it, or one point
// when the two lie within 1e-5 / r1 radians of that line (rounding that carries the circles a
// hair past touching counts as a touch). The distance of the centres counts z; points lie at
// the z of c1 (of c2 for an inner touch with r1 <= r2). NaN input gives no point. True when the
// list is not empty.
bool g_cci(CZorPoint3dArray& list, const CZorPoint3d& c1, double r1, const CZorPoint3d& c2,
           double r2);

// Circle with the infinite line through `p` and `q`. The line is solved in its dominant
// coordinate, so two points come in ascending y for a line steeper than 45 degrees and in
// ascending x otherwise (exactly 45 degrees counts as x-dominant), whatever the direction from
// `p` to `q`. A line that misses the circle by less than the point tolerance touches it.
// Points lie at the centre's z. Two identical points `p`, `q` make no line and give none.
bool g_cli0(CZorPoint3dArray& list, const CZorPoint3d& c, double r, const CZorPoint3d& p,
            const CZorPoint3d& q);

// Circle with the segment p-q: the points of g_cli0 that lie on the segment, in that order.
// When the infinite line misses the circle, the result is false and `list` is left untouched.
bool g_cli(CZorPoint3dArray& list, const CZorPoint3d& c, double r, const CZorPoint3d& p,
           const CZorPoint3d& q);

// Circle (c1, r1) with the arc (c2, r2, a0, a1): the points of g_cci on the arc, in order.
// Always true; read the list.
bool g_cai(CZorPoint3dArray& list, const CZorPoint3d& c1, double r1, const CZorPoint3d& c2,
           double r2, double a0, double a1);

// Arc with arc. Arcs about one centre (by point equality) meet in their common end points: the
// end points of the first arc, in order, that are == to an end point of the second. Otherwise
// the points of g_cci that lie on both arcs.
bool g_aai(CZorPoint3dArray& list, const CZorPoint3d& c1, double r1, double a0, double a1,
           const CZorPoint3d& c2, double r2, double b0, double b1);

// Arc with the segment p-q: the points of g_cli0 on the segment and on the arc.
bool g_ali(CZorPoint3dArray& list, const CZorPoint3d& c, double r, double a0, double a1,
           const CZorPoint3d& p, const CZorPoint3d& q);

// --- Points, perpendiculars, orientation -----------------------------------------------------

// Whether `p` lies on the arc: its distance from `c` within the point tolerance of `r`, and its
// angle inside the counter-clockwise sweep from `a0` to `a1` (no angular tolerance), or `p`
// equal to one of the arc's end points. a0 == a1 is a zero sweep, not a full circle.
bool g_arc_pt(const CZorPoint3d& c, double r, double a0, double a1, const CZorPoint3d& p);

// The direction from the line a-b to `p` along the perpendicular, in [0, 2*pi).
double g_lot(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& p);

// -1 when `c` lies right of the ray from `a` through `b`, else 1 (collinear points give 1).
int g_point_orient(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c);

// The touch point of a tangent from `p` to the circle about `c`: a positive `r` gives the one
// left of the line from `p` to `c`, a negative `r` the one right of it. NaN coordinates for `p`
// inside the circle.
CZorPoint3d g_nm_pkt_tan(const CZorPoint3d& p, const CZorPoint3d& c, double r);

// --- Arcs through three points --------------------------------------------------------------

// The centre of the circle through `a`, `b`, `c`. False for a == b or collinear points; `out`
// may then be partly written.
bool g_arc3p_cen(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c,
                 CZorPoint3d& out);

// g_arc3p_cen into `out`; on success `out` becomes the foot of `b` on the radius through `a`.
bool g_arc3p_tan(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c,
                 CZorPoint3d& out);

// The bulge of the arc from `a` through `b` to `c`. False and `bulge` unchanged when the points
// make no circle.
bool g_arc3p_bulg(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c, double& bulge);

// Whether, turning counter-clockwise about `c` from `p0`, `p1` comes strictly before `p2`.
bool g_arc3p_orient(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& p2,
                    const CZorPoint3d& c);

// --- Bulges ---------------------------------------------------------------------------------

// tan(sweep / 4) of the counter-clockwise sweep from `a0` to `a1`; equal angles give 0.
double g_arc_bulg(double a0, double a1);

// The bulge of the counter-clockwise arc about `c` from `p0` to `p1`.
double g_arcmp_bulg(const CZorPoint3d& c, const CZorPoint3d& p0, const CZorPoint3d& p1);

// The bulge for the chord p0-p1 and radius `r`: a positive `r` gives the minor arc
// counter-clockwise (at most 1), a negative one the major arc clockwise (at most -1). An `r` of
// exactly 0 gives 0. False and `b` unchanged when the chord is longer than 2 |r|, and for a
// chord of no length, whose bulge would be a NaN or an infinity.
bool g_arcrad_bulg(double& b, const CZorPoint3d& p0, const CZorPoint3d& p1, double r);
// The same as a value; nan() where the chord does not fit.
double g_arcrad_bulg(const CZorPoint3d& p0, const CZorPoint3d& p1, double r);

// The length of the counter-clockwise arc about `c` from `p0` to `p1`, at the radius of `p0`.
double g_bulg_len(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& c);

}  // namespace ZOR
