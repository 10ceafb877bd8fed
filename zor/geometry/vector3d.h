// CZorVector3d: a direction or displacement of three doubles.
//
// Vectors compare per coordinate within the process-wide `CZorVector3d::tol` (1e-7), with no
// distance test. The layout (x, y, z after the object root) is the same as that of CZorPoint3d,
// and `asPoint` views this very object as a point, as `asVector` views a point as a vector.
//
// An access through a view reaches an object of the other class, which type-based alias
// analysis takes for unrelated memory: a point held in a segment would be assumed unchanged by
// a write through its vector view. Accesses through a may_alias type are exempt, and it is the
// type of the view that has to carry the mark, so both classes do, each being the other's view.
#pragma once

#include <cmath>

#include "zor/foundation/object.h"
#include "zor/geometry/nan.h"

class CZorPoint3d;

class [[gnu::may_alias]] CZorVector3d : public CZorObj {
  public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    // Per-coordinate tolerance of operator==, normalize and the null tests. 1e-7 at load.
    static double tol;

    static const CZorVector3d kNull;   // (0, 0, 0)
    static const CZorVector3d kXAxis;  // (1, 0, 0)
    static const CZorVector3d kYAxis;  // (0, 1, 0)
    static const CZorVector3d kZAxis;  // (0, 0, 1)

    constexpr CZorVector3d() = default;
    constexpr CZorVector3d(double x, double y, double z) : x(x), y(y), z(z) {}
    // Reads three doubles; a null pointer gives (0, 0, 0).
    CZorVector3d(const double* p);
    CZorVector3d(const CZorVector3d& v) = default;
    CZorVector3d& operator=(const CZorVector3d& v) = default;
    // Reads three doubles; a null pointer leaves the vector unchanged.
    CZorVector3d& operator=(const double* p);

    CZorVector3d& set(double x, double y, double z);

    operator double*() { return &x; }
    operator const double*() const { return &x; }

    // This same object seen as a point (the two classes share their layout).
    CZorPoint3d& asPoint();
    const CZorPoint3d& asPoint() const;

    // Length: sqrt(x*x + y*y + z*z).
    double abs() const;

    CZorVector3d& operator+=(const CZorVector3d& v);
    CZorVector3d& operator-=(const CZorVector3d& v);
    CZorVector3d operator+(const CZorVector3d& v) const;
    CZorVector3d operator-(const CZorVector3d& v) const;
    // Defined as *this * -1.0, so a +0.0 coordinate stays +0.0.
    CZorVector3d operator-() const;

    // Multiplies each coordinate that is not exactly 0; zero coordinates stay +0.0 under any
    // factor, infinite and NaN included.
    CZorVector3d& operator*=(double f);
    CZorVector3d operator*(double f) const;

    // Cross product: (y1 z2 - z1 y2, z1 x2 - x1 z2, x1 y2 - y1 x2).
    CZorVector3d& operator*=(const CZorVector3d& v);
    CZorVector3d operator*(const CZorVector3d& v) const;

    // Homogeneous transformation without the translation column: rows 0 to 2 ignore column 3,
    // row 3 keeps m[3][3], and all three results are divided by that fourth component.
    CZorVector3d& operator*=(const double m[4][4]);
    CZorVector3d operator*(const double m[4][4]) const;

    // Coordinate-wise product with `s`, in place.
    CZorVector3d& scale(const CZorPoint3d& s);

    // Unit length in place. A length below `tol`, or one that is not finite, gives (0, 0, 0);
    // a length of exactly `tol` still normalises.
    CZorVector3d& normalize();
    CZorVector3d normal() const;

    // Unsigned angle in [0, pi]; ZOR::nan() when either vector is == kNull.
    double angleTo(const CZorVector3d& v) const;

    // True when the normalised vectors are equal or opposite (anti-parallel counts). A zero
    // vector is parallel only to another that normalises to zero.
    bool isParallelTo(CZorVector3d v) const;
    // 1e-9 > |dot product| of the vectors as they stand (the bound depends on both lengths).
    bool isOrthoTo(const CZorVector3d& v) const;

    // All three coordinates finite.
    bool isValid() const;

    // Per coordinate within `tol`; the same object is always equal. A NaN coordinate does not
    // make the vectors unequal, since only a difference above `tol` does.
    bool operator==(const CZorVector3d& v) const;
    bool operator!=(const CZorVector3d& v) const { return !(*this == v); }
};

CZorVector3d operator*(double f, const CZorVector3d& v);

namespace ZOR {

// atan2(y, x) brought into [0, 2 pi).
double angle(const CZorVector3d& v);
// a.angleTo(b).
double g_v_ang(const CZorVector3d& a, const CZorVector3d& b);
// (cos(ang) * len, sin(ang) * len, 0).
CZorVector3d polar(double ang, double len);
// Dot product over three doubles.
inline double sprod(const double* a, const double* b) {
    // Summed from +0.0 like a running total, so that a sum of negative zeros is +0.0.
    return 0.0 + a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
// Length over three doubles.
inline double vabs(const double* a) {
    return std::sqrt(sprod(a, a));
}

}  // namespace ZOR

// The arithmetic below runs in the innermost loops of the kernel, so it is defined here where
// every caller can inline it.

inline CZorVector3d& CZorVector3d::set(double nx, double ny, double nz) {
    x = nx;
    y = ny;
    z = nz;
    return *this;
}

inline double CZorVector3d::abs() const {
    return ZOR::vabs(&x);
}

inline CZorVector3d& CZorVector3d::operator+=(const CZorVector3d& v) {
    return set(x + v.x, y + v.y, z + v.z);
}

inline CZorVector3d& CZorVector3d::operator-=(const CZorVector3d& v) {
    return set(x - v.x, y - v.y, z - v.z);
}

inline CZorVector3d CZorVector3d::operator+(const CZorVector3d& v) const {
    return CZorVector3d(x + v.x, y + v.y, z + v.z);
}

inline CZorVector3d CZorVector3d::operator-(const CZorVector3d& v) const {
    return CZorVector3d(x - v.x, y - v.y, z - v.z);
}

inline CZorVector3d& CZorVector3d::operator*=(double f) {
    // Skipping exact zeros keeps them +0.0: no -0.0 from negation, no NaN from 0 * inf.
    if (x != 0.0) x *= f;
    if (y != 0.0) y *= f;
    if (z != 0.0) z *= f;
    return *this;
}

inline CZorVector3d CZorVector3d::operator*(double f) const {
    CZorVector3d r(x, y, z);
    return r *= f;
}

inline CZorVector3d& CZorVector3d::operator*=(const CZorVector3d& v) {
    return set(y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x);
}

inline CZorVector3d CZorVector3d::operator*(const CZorVector3d& v) const {
    return CZorVector3d(y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x);
}

inline CZorVector3d& CZorVector3d::normalize() {
    const double l = abs();
    if (tol > l || !std::isfinite(l)) return set(0.0, 0.0, 0.0);
    return set(x / l, y / l, z / l);
}

inline bool CZorVector3d::operator==(const CZorVector3d& v) const {
    if (this == &v) return true;
    return !(std::fabs(x - v.x) > tol || std::fabs(y - v.y) > tol || std::fabs(z - v.z) > tol);
}
