// CZorVertex: one directed segment of a polyline, a straight line or a circular arc.
//
// The segment is stored as two end points and a bulge, the tangent of a quarter of the signed
// sweep: 0.0 exactly is a line (always tested exactly, never with a tolerance), a positive bulge
// runs counter-clockwise about +Z from `start` to `end`, a negative one clockwise. |bulge| == 1 is
// a half circle, |bulge| > 1 more than half. Centre and radius are never stored; they are derived
// on demand, and `setStartPoint`/`setEndPoint` move an end while keeping the circle.
//
// The kernel works in the XY plane; Z values ride along.
#pragma once

#include <cstdint>

#include "zor/foundation/object.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/geometry/vector3d.h"

class CZorVertex : public CZorObj {
  public:
    CZorPoint3d start;
    CZorPoint3d end;
    double bulge = 0.0;
    // A caller's number. Copied with the segment, never read by the library for a decision.
    std::int32_t tag = 0;

    CZorVertex() = default;
    CZorVertex(const CZorPoint3d& s, const CZorPoint3d& e, double b);
    // Arc from `s` through `m` to `e`. Collinear points leave a straight segment (bulge 0).
    CZorVertex(const CZorPoint3d& s, const CZorPoint3d& m, const CZorPoint3d& e);
    // Counter-clockwise arc of centre `c` and radius `r` from angle `a1` to angle `a2`.
    CZorVertex(const CZorPoint3d& c, double r, double a1, double a2);
    CZorVertex(const CZorVertex&) = default;
    CZorVertex& operator=(const CZorVertex&) = default;
    ~CZorVertex() override = default;

    // Stores the three values; `tag` stays.
    CZorVertex& set(const CZorPoint3d& s, const CZorPoint3d& e, double b);

    // Bulges within the literal 1e-5 (strict), ends by the point tolerance. Direction counts.
    bool operator==(const CZorVertex& v) const;
    bool operator!=(const CZorVertex& v) const { return !(*this == v); }

    // --- Queries ---------------------------------------------------------------------------
    // False and `c` untouched for a line. A zero-chord arc has its centre at the midpoint.
    bool center(CZorPoint3d& c) const;
    // The centre; three NaNs for a line.
    CZorPoint3d center() const;
    // False and `r` untouched for a line.
    bool radius(double& r) const;
    // The radius; NaN for a line.
    double radius() const;
    // The middle of the curve.
    CZorPoint3d mid() const;
    // The length of the curve.
    double bulgLen() const;
    // Centre, radius and two angles in [0, 2 pi), always read counter-clockwise from a1 to a2.
    bool toArc(CZorPoint3d& c, double& r, double& a1, double& a2) const;
    // Forward tangent direction at `p` (for a line, independent of `p`).
    double wTan(const CZorPoint3d& p) const;
    // Foot of the perpendicular from `p` on the infinite line or the full circle.
    CZorPoint3d lotp(const CZorPoint3d& p) const;
    // +1 left of travel, -1 right, 0 on the line or circle.
    int orientp(const CZorPoint3d& p) const;
    // Whether `p` lies on the segment, ends included within tolerance.
    bool isPoint(const CZorPoint3d& p) const;
    // Walks `d` along the curve from `start`; bounded walks fail outside [0, bulgLen()].
    bool pointAtDist(CZorPoint3d& p, double d, bool bounded) const;
    // Inverse of pointAtDist; false and `d` untouched when `p` isn't on the segment.
    bool distAtPoint(double& d, const CZorPoint3d& p) const;
    // True when `v` directly continues this segment with the same shape.
    bool coLinear(const CZorVertex& v) const;

    // --- Changes, each returning *this -----------------------------------------------------
    CZorVertex& revert();
    // The other part of the circle between the same two points, with swapped ends.
    CZorVertex& complement();
    CZorVertex& setStartPoint(const CZorPoint3d& p);
    CZorVertex& setEndPoint(const CZorPoint3d& p);
    // Parallel segment at distance `d`, positive to the right of travel.
    CZorVertex& offset(double d);
    // Parallel segment through `p`.
    CZorVertex& offset(CZorPoint3d p);
    CZorVertex& move(const CZorVector3d& v);
    CZorVertex& rotate(double ang, const CZorPoint3d& p);
    CZorVertex& mirror(double ang, const CZorPoint3d& p);
    CZorVertex& transformBy(const double m[4][4]);

    // --- Value forms -----------------------------------------------------------------------
    // New segment from `end` to `start`, bulge negated, tag 0.
    CZorVertex reverse() const;
    CZorVertex getTransformedCopy(const double m[4][4]) const;
    // A copy whose end was moved to `v.end` by setEndPoint.
    CZorVertex unite(const CZorVertex& v) const;

    // --- Intersection ----------------------------------------------------------------------
    // Flags: 0x001 drop touching points, 0x002 drop own ends, 0x004 drop the ends of `v`,
    // 0x100 take lines as infinite and arcs as full circles. `out` is replaced only when a
    // point is left; otherwise it keeps its content.
    bool intersectWith(CZorPoint3dArray& out, const CZorVertex& v, unsigned int flags) const;
    CZorPoint3dArray intersectWith(const CZorVertex& v, unsigned int flags) const;
    // Both segments as their chords, bounded: zero or one point.
    CZorPoint3dArray intersectWithBulg0(const CZorVertex& v) const;
    // The crossing of the extended segments nearest to `near`.
    bool intNear(const CZorVertex& v, const CZorPoint3d& near, CZorPoint3d& out) const;
};

namespace ZOR {

// Direction in which the segment leaves `start`.
double vx_start_angle(const CZorVertex& v);
// Direction in which the curve leaves `end` when walked backwards (back into the segment).
double vx_end_angle(const CZorVertex& v);
CZorVector3d vx_start_dir(const CZorVertex& v);
CZorVector3d vx_end_dir(const CZorVertex& v);
// Signed distance from the line or circle, positive on the left of travel.
double g_vx_lotd(const CZorVertex& v, const CZorPoint3d& p);

// The `mid` of the counter-clockwise arc (c, r, a0, a1).
CZorPoint3d g_arc_mid(const CZorPoint3d& c, double r, double a0, double a1);
// `mid`, `center` (a line gives its mid) and `bulgLen` of the segment (p0, p1, b).
CZorPoint3d g_bulg_mid(const CZorPoint3d& p0, const CZorPoint3d& p1, double b);
CZorPoint3d g_bulg_cen(const CZorPoint3d& p0, const CZorPoint3d& p1, double b);
double g_bulg_len(const CZorPoint3d& p0, const CZorPoint3d& p1, double b);
// Number of pieces of an arc: 0 for a line, else 2.
int g_bulg_split(const CZorVertex& v);

// Whether the tangents of `a` and `b` at `p` run along one line (either sense), within 1e-5 rad.
bool g_vx_is_tang(const CZorVertex& a, const CZorVertex& b, const CZorPoint3d& p);
// Inner points of an arc so that no piece exceeds a quarter circle nor a sagitta of `dif`.
int g_vx_split_n(const CZorVertex& v, double dif);
// Inner points of an arc for a deviation `dif`; 0 when |bulge| < 0.0001.
int g_vx_split_dif(const CZorVertex& v, double dif);

namespace detail {

// An arc's circle as CZorVertex::toArc gives it, for callers that put many questions to the
// same arc. It holds only while the segment and the point and vector tolerances stay as they
// were when it was taken.
struct ArcCircle {
    CZorPoint3d c;
    double r = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;
};

// CZorVertex::isPoint and CZorVertex::intersectWith of `s` (with `v`), where a circle that is
// not null is taken for the toArc result of its arc: the same arithmetic, so the same answers
// bit for bit.
bool isPointOn(const CZorVertex& s, const ArcCircle* arc, const CZorPoint3d& p);
bool intersectSegments(const CZorVertex& s, const ArcCircle* sArc, CZorPoint3dArray& out,
                       const CZorVertex& v, const ArcCircle* vArc, unsigned int flags);

}  // namespace detail
}  // namespace ZOR
