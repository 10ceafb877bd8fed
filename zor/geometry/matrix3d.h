// CZorMatrix3d: the library's 4 by 4 transformation, rows first.
//
// Points and vectors are columns: columns 0, 1, 2 of the top three rows are the images of the
// X, Y and Z axes, column 3 is the translation, and row 3 is (0, 0, 0, 1) for everything the
// builders make. A product `A * B` applies `B` first. Anywhere a transformation is taken as a
// raw `const double m[4][4]`, a CZorMatrix3d can be passed directly.
#pragma once

#include "zor/foundation/object.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/vector3d.h"

class CZorPlane;

class CZorMatrix3d : public CZorObj {
  public:
    using Array = double[4][4];

    double m[4][4];

    static const CZorMatrix3d kIdentity;

    // The identity (unlike the other value classes, which start at zero).
    CZorMatrix3d();
    CZorMatrix3d(const CZorMatrix3d& other);
    CZorMatrix3d(const double src[4][4]);
    CZorMatrix3d& operator=(const CZorMatrix3d& other);
    CZorMatrix3d& operator=(const double src[4][4]);

    operator Array&() { return m; }
    operator const Array&() const { return m; }

    // No entry differs by more than the literal 1e-9; the same object is always equal.
    bool operator==(const CZorMatrix3d& b) const;
    bool operator!=(const CZorMatrix3d& b) const { return !(*this == b); }

    // The product; `b` acts first.
    CZorMatrix3d operator*(const CZorMatrix3d& b) const;
    CZorMatrix3d& operator*=(const CZorMatrix3d& b);

    // Gauss-Jordan elimination with column exchange. A matrix found singular while choosing
    // the pivots becomes the identity; there is no failure report.
    CZorMatrix3d& invert();
    CZorMatrix3d inverse() const;

    // Column 3, rows 0 to 2.
    CZorVector3d translation() const;
    // Column `i`, rows 0 to 2; an `i` above 2 counts as 2.
    CZorVector3d axis(unsigned int i) const;
    // Length of axis(0).
    double scale() const;
    // Origin from column 3, axes from columns 0, 1, 2.
    void getCoordSystem(CZorPoint3d& o, CZorVector3d& x, CZorVector3d& y, CZorVector3d& z) const;

    // Builders. All but setTranslation start from scratch, whatever the matrix held.
    CZorMatrix3d& setToIdentity();
    // Identity with columns 0, 1, 2 = x, y, z and column 3 = o, taken as they are.
    CZorMatrix3d& setCoordSystem(const CZorPoint3d& o, const CZorVector3d& x, const CZorVector3d& y,
                                 const CZorVector3d& z);
    // Overwrites column 3, rows 0 to 2; the rest stays.
    CZorMatrix3d& setTranslation(const CZorVector3d& v);
    CZorMatrix3d& setToTranslation(const CZorVector3d& v);
    // World coordinates to those of the plane with normal `n`, by the arbitrary axis rule with
    // its threshold of 1/64. A null `n` gives the identity.
    CZorMatrix3d& setToWorldToPlane(const CZorVector3d& n);
    // The inverse of setToWorldToPlane(n); identity for a null `n`.
    CZorMatrix3d& setToPlaneToWorld(const CZorVector3d& n);
    // Counter-clockwise by `ang` about the line through `p` along `axis`.
    CZorMatrix3d& setToRotation(double ang, const CZorVector3d& axis, const CZorPoint3d& p);
    // Reflection in `plane`.
    CZorMatrix3d& setToMirroring(const CZorPlane& plane);
    // Uniform scaling by `f` about the fixed point `p`.
    CZorMatrix3d& setToScaling(double f, const CZorPoint3d& p);
    // Scale by (s.x, s.y, s.z), then rotate by `ang` about Z through the origin, then move by `v`.
    CZorMatrix3d& setToSRM(const CZorPoint3d& s, double ang, const CZorVector3d& v);

  private:
    void swapCol(int a, int b);
};

namespace ZOR {

void g_mtx_copy(double dst[4][4], const double src[4][4]);

// True when the upper left 3 by 3 block has a negative determinant, (r0 x r1) . r2 < 0.
bool mtxIsMir(const double m[4][4]);

// `m` becomes the placement at (x, y, 0) turned by `ang`, with X scaled by `sx` and Y by `sy`
// (note the order: Y scale before X scale) and Z by |sx|. Always true.
bool g_mtx_2d(CZorMatrix3d& m, double x, double y, double ang, double sy, double sx);

}  // namespace ZOR

// Turns the placement `m` about Z through the origin by an angle that depends on `side`
// ("L", "R", anything else for the centre) and on the sign of m's translation in x.
CZorMatrix3d zor_g_mtx_ang2d(const CZorMatrix3d& m, double ang, const wchar_t* side);
// The same with 1 for "L", 2 for "R" and any other number for the centre.
CZorMatrix3d zor_g_mtx_ang2d(const CZorMatrix3d& m, double ang, int side);
