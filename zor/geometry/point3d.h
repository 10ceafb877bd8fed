// CZorPoint3d: a location of three doubles, and CZorPoint3dTol, the scope that widens the point
// tolerance for the length of a computation.
//
// What counts as one point in the whole kernel is decided here: two points are equal when their
// Euclidean distance is at most the process-wide `CZorPoint3d::tol` (1e-5 at load). The order
// operators, by contrast, are exact: two points can be == and still <.
#pragma once

#include "zor/foundation/object.h"
#include "zor/geometry/nan.h"
#include "zor/geometry/vector3d.h"

// Laid out like CZorVector3d. Marked may_alias because it is the type of the `asPoint` view of a
// vector; see CZorVector3d for why.
class [[gnu::may_alias]] CZorPoint3d : public CZorObj {
  public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    // The point tolerance: one unguarded process-wide value, read at every comparison.
    // Change it through a CZorPoint3dTol scope so that it is restored.
    static double tol;

    static const CZorPoint3d kOrigin;

    constexpr CZorPoint3d() = default;
    constexpr CZorPoint3d(double x, double y, double z) : x(x), y(y), z(z) {}
    // Reads three doubles; a null pointer gives (0, 0, 0).
    CZorPoint3d(const double* p);
    CZorPoint3d(const CZorPoint3d& p) = default;
    CZorPoint3d& operator=(const CZorPoint3d& p) = default;

    CZorPoint3d& set(double x, double y, double z);

    operator double*() { return &x; }
    operator const double*() const { return &x; }

    // This same object seen as a vector (the two classes share their layout).
    CZorVector3d& asVector();
    const CZorVector3d& asVector() const;

    CZorPoint3d& operator+=(const CZorVector3d& v);
    CZorPoint3d& operator-=(const CZorVector3d& v);
    CZorPoint3d operator+(const CZorVector3d& v) const;
    CZorPoint3d operator-(const CZorVector3d& v) const;
    // The vector from `p` to this point.
    CZorVector3d operator-(const CZorPoint3d& p) const;

    // Homogeneous transformation of the column (x, y, z, 1); translation sits in column 3 and
    // the results are always divided by the fourth component.
    CZorPoint3d& operator*=(const double m[4][4]);
    CZorPoint3d operator*(const double m[4][4]) const;

    // Coordinate-wise product with `s`.
    CZorPoint3d scale(CZorPoint3d s) const;

    // Euclidean distance in three dimensions.
    double distanceTo(const CZorPoint3d& p) const;

    // All three coordinates finite.
    bool isValid() const;

    // Distance <= tol (inclusive). A coordinate differing by more than tol rejects early, and
    // the same object is always equal, even with NaN coordinates.
    bool operator==(const CZorPoint3d& p) const;
    bool operator!=(const CZorPoint3d& p) const { return !(*this == p); }
    // Exact lexicographic order on x, then y, then z; no tolerance.
    bool operator<(const CZorPoint3d& p) const;
    bool operator>(const CZorPoint3d& p) const;
};

// The arithmetic and comparison below run in the innermost loops of the kernel, so they are
// defined here where every caller can inline them.

inline CZorPoint3d& CZorPoint3d::set(double nx, double ny, double nz) {
    x = nx;
    y = ny;
    z = nz;
    return *this;
}

inline CZorPoint3d& CZorPoint3d::operator+=(const CZorVector3d& v) {
    return set(x + v.x, y + v.y, z + v.z);
}

inline CZorPoint3d& CZorPoint3d::operator-=(const CZorVector3d& v) {
    return set(x - v.x, y - v.y, z - v.z);
}

inline CZorPoint3d CZorPoint3d::operator+(const CZorVector3d& v) const {
    return CZorPoint3d(x + v.x, y + v.y, z + v.z);
}

inline CZorPoint3d CZorPoint3d::operator-(const CZorVector3d& v) const {
    return CZorPoint3d(x - v.x, y - v.y, z - v.z);
}

inline CZorVector3d CZorPoint3d::operator-(const CZorPoint3d& p) const {
    return CZorVector3d(x - p.x, y - p.y, z - p.z);
}

inline double CZorPoint3d::distanceTo(const CZorPoint3d& p) const {
    const double d[3] = {x - p.x, y - p.y, z - p.z};
    return ZOR::vabs(d);
}

inline bool CZorPoint3d::operator==(const CZorPoint3d& p) const {
    if (this == &p) return true;
    // The per-coordinate test rejects most pairs before the square root is paid for.
    if (std::fabs(x - p.x) > tol || std::fabs(y - p.y) > tol || std::fabs(z - p.z) > tol) {
        return false;
    }
    return tol >= distanceTo(p);
}

// Saves CZorPoint3d::tol at construction and stores it back at destruction, whatever happened
// in between, so scopes nest like a stack.
class CZorPoint3dTol : public CZorObj {
  public:
    // Saves the current tolerance and leaves it as it is.
    CZorPoint3dTol();
    // Saves the current tolerance, then sets `t` when t > 1e-12 (smaller or NaN is ignored).
    CZorPoint3dTol(double t);
    // Copies the saved value only; the current tolerance is left alone.
    CZorPoint3dTol(const CZorPoint3dTol& other);
    CZorPoint3dTol& operator=(const CZorPoint3dTol& other);
    ~CZorPoint3dTol() override;

    // Sets the tolerance like the constructor does; the saved value stays the one from
    // construction.
    CZorPoint3dTol& operator=(double t);

    // The saved value, not the current tolerance.
    operator double() const { return saved_; }

  private:
    double saved_;
};

namespace ZOR {

// Angle of the vector from `a` to `b`, in [0, 2 pi).
double angle(const CZorPoint3d& a, const CZorPoint3d& b);
double angle(const double* a, const double* b);

// `p` moved by (cos(ang) * len, sin(ang) * len); z stays.
CZorPoint3d polar(const CZorPoint3d& p, double ang, double len);

// floor(v / grid + 0.5) * grid; a grid below 1e-9 leaves `v` as it is.
double round(double v, double grid);
// Each coordinate through round().
CZorPoint3d g_p_rnd(CZorPoint3d p, double grid);

// Mirrored on the Y axis (x negated) and on the X axis (y negated).
CZorPoint3d g_p_mrx(CZorPoint3d p);
CZorPoint3d g_p_mry(CZorPoint3d p);

// Coordinates below CZorPoint3d::tol in magnitude become exactly 0.
CZorPoint3d g_nrm_p(const CZorPoint3d& p);

// (b + a) * 0.5 per coordinate.
CZorPoint3d g_midp3d(const CZorPoint3d& a, const CZorPoint3d& b);

// Per-coordinate minimum and maximum.
CZorPoint3d p_min(const CZorPoint3d& a, const CZorPoint3d& b);
CZorPoint3d p_max(const CZorPoint3d& a, const CZorPoint3d& b);

}  // namespace ZOR
