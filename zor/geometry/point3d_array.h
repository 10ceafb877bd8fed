// CZorPoint3dArray: the point list of the kernel (intersection results, corner lists, hull
// inputs).
//
// It stands on the small array root CZorArray, like the polyline, and adds geometry: moves and
// transformations, bounds, and sorting along a direction. A list is not a polygon by itself;
// whether it is closed is a property of its values (`isClosed`).
//
// Indexing follows the house rule: -1 is the last point, a non-const index at or past the end
// extends the list, and a const read out of range gives a default point without touching the
// list. Points are compared by CZorPoint3d::operator==, so within the current point tolerance.
#pragma once

#include <cstdint>

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/vector3d.h"

class CZorPoint3dArray : public CZorArray {
  public:
    CZorPoint3dArray() = default;
    CZorPoint3dArray(const CZorPoint3dArray& a);
    // Assignment to itself does nothing.
    CZorPoint3dArray& operator=(const CZorPoint3dArray& a);
    ~CZorPoint3dArray() override;

    // Same object: equal. Different lengths: unequal. Else point by point, in order.
    bool operator==(const CZorPoint3dArray& a) const;

    // Negative indices count from the end. At or past the end the non-const form extends the
    // list with origin points and the const form gives a shared default point. On an empty list a
    // negative index gives a writable shared default point in the non-const form and leaves the
    // list empty.
    CZorPoint3d& operator[](int i) {
        return static_cast<unsigned>(i) < static_cast<unsigned>(len()) ? data[i] : reach(i);
    }
    const CZorPoint3d& operator[](int i) const {
        return static_cast<unsigned>(i) < static_cast<unsigned>(len()) ? data[i] : outside(i);
    }

    // `p` may be a point of this list.
    CZorPoint3dArray& append(const CZorPoint3d& p);
    CZorPoint3dArray append(const CZorPoint3d& p) const;
    // Appends unless a point == to `p` is already in the list.
    CZorPoint3dArray& appendUniq(const CZorPoint3d& p);
    // Places `p` at `i`, moving the later points up. `p` may be a point of this list. An `i`
    // beyond the end extends the list to i + 1 with origin points in the gap.
    CZorPoint3dArray& insertAt(unsigned int i, const CZorPoint3d& p);
    CZorPoint3dArray insertAt(unsigned int i, const CZorPoint3d& p) const;
    // Removes the point at `i`; an index below 0 or at or past the end does nothing (-1 is not
    // the last point here). Returns the new length.
    int removeAt(int i);

    // First index with a point == to `p`, or -1.
    int indexOf(const CZorPoint3d& p) const;
    // The same; `i` is written only when a point is found.
    bool indexOf(const CZorPoint3d& p, std::uint32_t& i) const;

    // Appends all points of `a`; `a += a` doubles the list.
    CZorPoint3dArray& operator+=(const CZorPoint3dArray& a);
    CZorPoint3dArray operator+(const CZorPoint3dArray& a) const;

    CZorPoint3dArray& revert();
    CZorPoint3dArray reverse() const;

    // Ascending along `dir` by the projections sprod(p, dir) rounded to the grid
    // CZorPoint3d::tol; points whose projections round alike keep their order in the list.
    CZorPoint3dArray& sort(const CZorVector3d& dir);
    // sort(polar(ang, 1.0)).
    CZorPoint3dArray& sort(double ang);

    // At least 3 points and the first == the last.
    bool isClosed() const;

    CZorPoint3dArray& move(const CZorVector3d& v);
    // Each point by CZorPoint3d::operator*=.
    CZorPoint3dArray& transformBy(const double m[4][4]);
    CZorPoint3dArray getTransformedCopy(const double m[4][4]) const;
    // Counter-clockwise about the Z axis through `p`; an `ang` of exactly 0 does nothing.
    CZorPoint3dArray& rotate(double ang, const CZorPoint3d& p);
    // Reflection in the line through `p` at angle `ang` (the vertical plane through it).
    CZorPoint3dArray& mirror(double ang, const CZorPoint3d& p);

    // The coordinate-wise minimum and maximum. False on an empty list, outputs untouched.
    bool extents(CZorPoint3d& lo, CZorPoint3d& hi) const;

    // Whether `p` lies inside the ring of the points in the XY plane, by an odd crossing count of
    // a ray from `p` through the midpoint of the first edge; the ring closes whether or not the
    // list repeats its first point. Fewer than 3 points: false. A point on the boundary, or at
    // that midpoint, has no defined answer. (Defined with the polyline kernel, whose segment
    // intersection it uses.)
    bool ptInside(const CZorPoint3d& p) const;

  protected:
    // Grows the block when needed, carrying the old points over by their coordinates.
    int setLength(int n) override;

  private:
    // operator[] for negative indices and those past the end.
    CZorPoint3d& reach(int i);
    const CZorPoint3d& outside(int i) const;
    // Whether `p` lives in this list's own block (by address).
    bool isMember(const CZorPoint3d& p) const;
    // Grows the list to `n` points; the new ones are origin points, never stale points that
    // stayed in the block behind the end.
    void extendTo(long long n);

    CZorPoint3d* data = nullptr;
};

namespace ZOR {

// The point of `a` nearest to `p` (the first of equally near ones); `p` itself for an empty `a`.
CZorPoint3d g_near_p1(const CZorPoint3d& p, const CZorPoint3dArray& a);
// The point of `a` farthest from `p` (the first of equally far ones); `p` for an empty `a`.
CZorPoint3d g_far_p1(const CZorPoint3d& p, const CZorPoint3dArray& a);

// The coordinate-wise minimum / maximum of `a`; false and `out` untouched when `a` is empty.
bool g_pl_min(CZorPoint3d& out, const CZorPoint3dArray& a);
bool g_pl_max(CZorPoint3d& out, const CZorPoint3dArray& a);

// Equal lengths, and each point of either list has a point == to it in the other. Order and
// duplicates do not count beyond the equal lengths.
bool g_pl_equal(const CZorPoint3dArray& a, const CZorPoint3dArray& b);

// Columns 0 to 3 of `m` from p[0] to p[3] (a missing fourth point counts as the origin), row 3
// (0, 0, 0, 1). False and `m` untouched with fewer than 3 points.
bool plToMtx(double m[4][4], const CZorPoint3dArray& p);
// `p` becomes the 4 columns of `m` (the images of the three axes, then the translation).
CZorPoint3dArray& mtxToPl(CZorPoint3dArray& p, const double m[4][4]);

}  // namespace ZOR
