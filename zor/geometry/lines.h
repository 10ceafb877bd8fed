// The straight-line formulas on which the plane, the circle constructions and the segment rest.
//
// They decide in the XY plane, within CZorPoint3d::tol and CZorVector3d::tol, so a
// CZorPoint3dTol scope widens them (except the fixed 1e-9 slope tests of inters).
#pragma once

#include "zor/geometry/point3d.h"

namespace ZOR {

// Crossing of line a-b with line c-d in the XY plane; with `bounded`, it must lie on both
// segments (ends included, within the tolerance). `out.z` is the z of the first point of the
// line that was used as the first one (a, or c when a-b is vertical and the lines are
// exchanged). `out` may be partly written when the result is false.
bool inters(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c, const CZorPoint3d& d,
            bool bounded, CZorPoint3d& out);

// Whether `p` lies on the segment a-b, the ends (and anything == to them) included.
bool g_line_pt(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& p);

// Foot of the perpendicular from `p` on the line a-b, in three dimensions; a copy of `a` when
// a == b.
CZorPoint3d g_lotp(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& p);

}  // namespace ZOR
