// CZorPlane: a point and a normal.
//
// The normal has unit length only when the plane was made by `set`, `setNormal` or from three
// points; the constructor from a point and a normal, and transformBy, keep what they are given.
#pragma once

#include "zor/foundation/object.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/vector3d.h"

class CZorPlane : public CZorObj {
  public:
    // The XY plane through the origin.
    CZorPlane();
    // Stores `p` and `n` unchanged.
    CZorPlane(const CZorPoint3d& p, const CZorVector3d& n);
    // As set(a, b, c).
    CZorPlane(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c);
    CZorPlane(const CZorPlane& other) = default;
    CZorPlane& operator=(const CZorPlane& other) = default;

    // Stores `p` and the normalised `n`.
    CZorPlane& set(const CZorPoint3d& p, const CZorVector3d& n);
    // Position `b` (the middle point), normal (a - b) x (c - b) normalised; collinear points
    // give the zero normal.
    CZorPlane& set(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c);
    // Stores the normalised `n`.
    CZorPlane& setNormal(const CZorVector3d& n);
    CZorPlane& setPosition(const CZorPoint3d& p);

    CZorVector3d normal() const { return normal_; }
    CZorPoint3d position() const { return position_; }

    // Position by the point rule, normal by the vector rule.
    bool operator==(const CZorPlane& q) const;
    bool operator!=(const CZorPlane& q) const { return !(*this == q); }

    // The position as a point, the normal as a vector (not normalised afterwards).
    CZorPlane& transformBy(const double m[4][4]);
    CZorPlane getTransformedCopy(const double m[4][4]) const;

    // Line through `p` along `v`. `out` receives `p` before any test. The line counts as
    // parallel, and the result is false, when the normal's component along the line's unit
    // direction is below 0.001: the sine of the angle for a unit normal, less for a longer one.
    bool intersectWith(const CZorPoint3d& p, const CZorVector3d& v, CZorPoint3d& out) const;
    // Segment from `a` to `b`: the line form, true only when the point lies on the segment.
    // `out` is written even when the result is false.
    bool intersectWith(const CZorPoint3d& a, const CZorPoint3d& b, CZorPoint3d& out) const;
    // The line common to this plane and `q`, as a point `p` and the unit direction
    // `v` = (normal x q.normal) normalised. Parallel planes give false and leave `p`, `v`.
    bool intersectWith(const CZorPlane& q, CZorPoint3d& p, CZorVector3d& v) const;

  private:
    CZorPoint3d position_;
    CZorVector3d normal_;
};
