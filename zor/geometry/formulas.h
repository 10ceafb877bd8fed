// Angle and scalar formulas: the stateless vocabulary of the planar kernel.
//
// Angles are radians, counter-clockwise from +X. The tolerances used here are not
// interchangeable and every comparison against one is strict (a difference equal to the
// tolerance does not count as equal):
//   - 1e-8   the snap of 2*pi onto 0 in `g_ang`;
//   - 0.001  every snap of an angle onto an axis direction;
//   - 1e-9   the vertical test of `g_ellips_pt`;
//   - 0.0001 the flat test of `g_fries_r`;
//   - `CZorPoint3d::tol`, read at the call, in `g_elps_w`.
// Where a guard is named, `ZOR::nan()` is the whole report; elsewhere the formulas give what
// floating-point arithmetic gives (a NaN for an impossible triangle, an infinity for a zero
// divisor), and callers check their inputs.
#pragma once

#include "zor/geometry/point3d.h"

namespace ZOR {

// --- Normalising and snapping angles ---------------------------------------------------------

// The three wrapping functions below step by whole periods, whose rounding is part of their
// results. A value more than 2^20 periods out in a direction they step from is first reduced by
// a remainder (the steps would never end), and an infinite one gives `nan()`.

// `w` in [0, 2*pi). A value within 1e-8 of 2*pi becomes exactly 0; otherwise 2*pi is
// subtracted while w >= 2*pi, then added while w < 0. A value just below 0 is not snapped: it
// becomes a value just below 2*pi.
double g_ang(double w);

// `w` in [-pi, pi], both ends kept: 2*pi is subtracted while w > pi, then added while w < -pi.
double g_signed_ang(double w);

// The undirected direction of a line: pi is subtracted while w >= pi; a value then within 0.001
// of pi or of 0 becomes exactly 0. Negative input is not raised: it comes back as it is, -inf
// included, unless it lies within 0.001 of 0.
double g_dir_nrm(double w);

// The multiple of pi/2 nearest to `w`, reduced to one of 0, pi/2, pi, 3*pi/2 (for w >= 0;
// negative input gives the negated result of -w). The quarter index is a 32-bit integer: a
// value beyond its range gives 0; NaN gives NaN.
double g_qw(double w);

// `g_ang(w)` snapped onto the nearest axis direction when it lies within 0.001 of it.
double g_rnd_quad(double w);

// Whether two directions agree within `tol`, across the 0 / 2*pi seam.
bool g_ang_equal(double a, double b, double tol);

// --- Angle differences ----------------------------------------------------------------------

// |a - b|, less pi (not 2*pi) when above pi: the difference of two undirected lines.
double g_dw(double a, double b);

// `g_rnd_quad(g_ang(pi - (a - b)))`.
double g_dw1(double a, double b);

// The direction halfway along the counter-clockwise sweep from `a` to `b`.
double g_w_mid(double a, double b);

// (a + b) / 2, plus pi when |a - b| > pi. Not normalised.
double g_w_halb(double a, double b);

// The inner angle at apex `p1` of the corner p0-p1-p2, in [0, pi].
double g_aabs(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& p2);

// The counter-clockwise sweep at `p1` from the ray to `p2` to the ray to `p0`, in [0, 2*pi).
double g_delta_w(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& p2);

// The counter-clockwise sweep at `p1` from the ray to `p0` to the ray to `p2`, in [0, 2*pi).
double g_delta_w1(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& p2);

// `g_delta_w1` folded onto [0, pi].
double g_delta_w2(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& p2);

// --- Direction classes ----------------------------------------------------------------------

// Eight codes: even 0, 2, 4, 6 for the axis directions 0, pi/2, pi, 3*pi/2 within 0.001;
// odd 1, 3, 5, 7 for the open quadrants between them.
int g_oktant(double w);

// Sixteen codes: even 2k for the directions k*pi/4 within 0.001; odd codes for the open
// sectors between them.
int g_sextant(double w);

// --- Triangle, chord and sagitta ------------------------------------------------------------

// The triangle angle opposite side `c`, by the law of cosines.
double g_w_3eck(double a, double b, double c);

// The central angle of chord `s` in a circle of radius `r`.
double g_sec_ang(double r, double s);

// The chord of central angle `w` in a circle of radius `r`.
double g_sec_len(double r, double w);

// With t = 2*r*cos(w/2)*sin(w/2): t*r / (r - t). `nan()` when `r` equals `w`.
double g_sec_len2(double r, double w);

// The radius of a circle with sagitta `h` over the half chord `s`.
double g_tang_radius(double h, double s);

// --- Circles tangent to lines (closed forms; slopes are tangents of directions) --------------

// y0 - m*x0 + m*r - r / cos(atan m). `nan()` when `r` is exactly 0.
double g_tang_cen(double m, double y0, double x0, double r);

// The centre on the lines y = y1 + t1 - m1*(x - x1) and x = x2 + t2 - m2*(y - y2), where
// t = r / cos(atan m). Note the argument order: y before x for the first line, x before y for
// the second.
CZorPoint3d g_tang2_cen(double m1, double y1, double x1, double m2, double x2, double y2, double r);

// With s = 2*r*sin w, c = 2*r*cos w, e = h - r - s: (p.x + e*s/c - c, p.y + e + s, p.z).
CZorPoint3d g_tang3_cen(const CZorPoint3d& p, double r, double w, double h);

// The angle between the line of centres and the inner common tangent of two circles.
double g_tang_ang(const CZorPoint3d& p1, double r1, const CZorPoint3d& p2, double r2);

// c/2 - (d/2 * b/a - (e/2) / sin(atan(a/b))).
double g_achs_dist(double a, double b, double c, double d, double e);

// --- Ellipses with semi-axes a and b --------------------------------------------------------

// The distance from the centre to the ellipse at polar angle `w`.
double g_ellips_pt(double a, double b, double w);

// The point of the ellipse about `c`, turned by `rot`, at polar angle `w`.
CZorPoint3d g_elps_p(const CZorPoint3d& c, double a, double b, double rot, double w);

// The direction of the tangent at the point of `g_elps_p`, in [0, 2*pi). `w` is expected in
// [0, 2*pi).
double g_elps_w(double a, double b, double rot, double w);

// --- Basket-handle arc and frieze rule ------------------------------------------------------

// The crown radius of the three-centred arc over half span `a` with rise `b`.
double g_korb_3m(double a, double b);

// The springing radius of a three-centred arc of full span `s`, rise `h`, crown radius `R`.
double g_rkorb(double s, double h, double R);

// The crown radius of a three-centred arc of full span `s`, rise `h`, springing radius `r`.
double g_rkorb2(double s, double h, double r);

// The radius of the frieze rule for angle `w`.
double g_fries_r(double a, double b, double w);

// The angle of the frieze rule for a known radius; `nan()` for a negative radius.
double g_fries_w(double a, double b, double r);

// --- Point distances ------------------------------------------------------------------------

// The distance of `p` and `q` in the xy plane.
double g_dist2d(const CZorPoint3d& p, const CZorPoint3d& q);

// |(q - p) . polar(w, 1)|: the extent of p-q along direction `w`.
double g_dist_w(const CZorPoint3d& p, const CZorPoint3d& q, double w);

// (q - p) . polar(w, 1), with its sign.
double g_dist_w1(const CZorPoint3d& p, const CZorPoint3d& q, double w);

}  // namespace ZOR
