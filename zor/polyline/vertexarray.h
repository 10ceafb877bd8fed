// CZorVertexArray: the polyline of the kernel, an ordered array of self-contained CZorVertex
// segments with one normal.
//
// Each element carries its own start and end; nothing shares points and the array does not
// enforce continuity. A polyline is closed when it has at least two elements, is continuous and
// its last end equals its first start, by the point tolerance at the time of asking: there is no
// closing element and no flag. A full circle needs at least two arc segments.
//
// Indexing follows the library's arrays: -1 is the last element; a const read past the end gives
// a shared default segment, a non-const one extends the list.
#pragma once

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/geometry/vector3d.h"
#include "zor/polyline/vertex.h"

class CZorVertexArray : public CZorArray {
  public:
    // The operation of ZOR::g_vl_bool; the values are part of the interface.
    // A fixed underlying type, so that any other value can be passed and selects nothing.
    enum boolOper : int { boolUnion = 0, boolDiff = 1, boolSect = 2 };

    CZorVertexArray();
    explicit CZorVertexArray(const CZorVertex& v);
    CZorVertexArray(const CZorVertexArray& a);
    CZorVertexArray& operator=(const CZorVertexArray& a);
    // Takes over the block and the normal; `a` is left empty (its normal stays).
    CZorVertexArray(CZorVertexArray&& a) noexcept;
    CZorVertexArray& operator=(CZorVertexArray&& a) noexcept;
    ~CZorVertexArray() override;

    // Element-wise by CZorVertex::operator==; the normal doesn't count.
    bool operator==(const CZorVertexArray& a) const;
    // Appends every element of `a`; the normal stays this array's.
    CZorVertexArray& operator+=(const CZorVertexArray& a);
    CZorVertexArray operator+(const CZorVertexArray& a) const;

    // An index within the list reads its element inline; the rest is the out-of-line part.
    CZorVertex& operator[](int i) {
        return static_cast<unsigned>(i) < static_cast<unsigned>(len()) ? data_[i] : reach(i);
    }
    const CZorVertex& operator[](int i) const {
        return static_cast<unsigned>(i) < static_cast<unsigned>(len()) ? data_[i] : outside(i);
    }

    // --- List operations -------------------------------------------------------------------
    // Adds a copy (all four fields); `v` may be an element of this array.
    CZorVertexArray& append(const CZorVertex& v);
    CZorVertexArray append(const CZorVertex& v) const;
    // Adds a segment ending at `p`, from the last end or from the origin when empty.
    CZorVertexArray& append(const CZorPoint3d& p, double bulge);
    // Places a copy at `i` (at most the length); no continuity repair.
    CZorVertexArray& insertAt(unsigned int i, const CZorVertex& v);
    // Removes element `i`; with `keep` a matching joint closes on the removed start.
    CZorVertexArray& remove(unsigned int i, bool keep);
    // Splits element `i` at `p`; an arc's halves stay on its circle and both keep `tag`.
    CZorVertexArray& breakVertex(int i, const CZorPoint3d& p);
    // Straight segments through the points; `closed` adds a closing segment when needed.
    CZorVertexArray& fromPoints(const CZorPoint3dArray& p, bool closed);
    // Sets every bulge to `b`.
    CZorVertexArray& bulg(double b);
    // Turns the direction: order reversed and every element reverted.
    CZorVertexArray& revert();
    CZorVertexArray reverse() const;
    // Stores `n` as given. Always true.
    bool setNormal(const CZorVector3d& n);

    // --- Normalising, closing and joining ---------------------------------------------------
    // Canonical form: no zero-length segments, mergeable neighbours merged, joints exact.
    // With `keepStart` the first point stays even where segments across it could merge.
    CZorVertexArray& norm(bool keepStart);
    // Bridges every gap with a line; `closeIt` also closes the polyline.
    CZorVertexArray& close(bool closeIt);
    // Attaches one segment, or a whole polyline, at either end.
    bool join(const CZorVertex& v, bool allowReverse);
    bool join(const CZorVertexArray& a, bool allowReverse);

    // --- Offsetting --------------------------------------------------------------------------
    // Every segment moved sideways (positive to the right of travel), then the chain repaired
    // locally with mitred corners. `d == 0.0` does nothing; `dist` gives one distance per
    // segment, the last repeated. With `trimClose` the closing joint of a closed polyline is
    // repaired like the others.
    CZorVertexArray& offset(double d, bool trimClose);
    CZorVertexArray& offset(const CZorArrayTempl<double>& dist, bool trimClose);

    // --- Queries ---------------------------------------------------------------------------
    const CZorVector3d& normal() const { return normal_; }
    int indexOf(const CZorVertex& v) const;
    bool isPoint(const CZorPoint3d& p) const;
    // Every end equals the next start; the pair last to first isn't tested.
    bool isContinuous() const;
    bool isClosed() const;
    // Neighbouring pairs that don't join; the pair last to first isn't counted.
    int numOpens() const;
    double geomLength() const;
    // A point exactly at a joint belongs to the earlier element.
    bool pointAtDist(CZorPoint3d& p, double d) const;
    bool distAtPoint(double& d, const CZorPoint3d& p) const;
    // The nearest segment, measured at points just inside the ends where the foot lies off it.
    // On an empty polyline the result is a shared default segment.
    CZorVertex& vxNear(const CZorPoint3d& p) const;
    // Bounds including the extreme points of arcs. False and untouched outputs when empty.
    bool extents(CZorPoint3d& lo, CZorPoint3d& hi) const;
    // The corners, and with `expand` the inner points of arcs within the deviation `tol`.
    CZorPoint3dArray pts(bool expand, double tol) const;

    // --- Intersection ----------------------------------------------------------------------
    // Every crossing of every pair of segments, in this array's order and within it `a`'s, with
    // points within tolerance of one already found dropped. Flags as CZorVertex::intersectWith.
    bool intersectWith(CZorPoint3dArray& out, const CZorVertexArray& a, unsigned int flags) const;
    CZorPoint3dArray intersectWith(const CZorVertexArray& a, unsigned int flags) const;
    // The same with all arcs taken as their chords.
    bool intersectWithBulg0(CZorPoint3dArray& out, const CZorVertexArray& a) const;
    CZorPoint3dArray intersectWithBulg0(const CZorVertexArray& a) const;

    // --- Transformations -------------------------------------------------------------------
    CZorVertexArray& transformBy(const double m[4][4]);
    CZorVertexArray getTransformedCopy(const double m[4][4]) const;
    CZorVertexArray& move(const CZorVector3d& v);
    CZorVertexArray& rotate(double ang, const CZorPoint3d& p);
    // Mirrors on the line through `p` at angle `ang`; the normal isn't touched.
    CZorVertexArray& mirror(double ang, const CZorPoint3d& p);

  protected:
    int setLength(int n) override;
    // Whether `v` lies in this array's own block (by address).
    bool isMember(const CZorVertex& v);

  private:
    // operator[] for negative indices and those past the end.
    CZorVertex& reach(int i);
    const CZorVertex& outside(int i) const;

    CZorVector3d normal_;
    CZorVertex* data_ = nullptr;
};
