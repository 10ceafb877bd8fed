#include "zor/geometry/matrix3d.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "zor/geometry/plane.h"
#include "zor/text/string.h"

namespace {

constexpr double kPi = 3.141592653589793;

// Entries whose magnitude stays at or below this count as zero when inverting and comparing.
constexpr double kMatrixEps = 1e-9;

// The threshold of the arbitrary axis rule: a normal this close to the Z axis takes its
// X axis from the world Y axis instead.
constexpr double kArbitraryAxisLimit = 0.015625;

// The same values as the exported axis constants, kept local so that the builders don't
// depend on the order in which the module constructs its constants.
constinit const CZorVector3d kWorldY(0.0, 1.0, 0.0);
constinit const CZorVector3d kWorldZ(0.0, 0.0, 1.0);

bool is_null(const CZorVector3d& v) {
    return v == CZorVector3d();
}

CZorMatrix3d translation_matrix(const CZorVector3d& v) {
    CZorMatrix3d t;
    return t.setToTranslation(v);
}

CZorMatrix3d world_to_plane(const CZorVector3d& n) {
    CZorMatrix3d w;
    return w.setToWorldToPlane(n);
}

// The change of coordinates that puts `p` at the origin and `axis` on the local Z axis.
CZorMatrix3d local_frame(const CZorVector3d& axis, const CZorPoint3d& p) {
    return world_to_plane(axis) * translation_matrix(CZorPoint3d() - p);
}

void set_row(double row[4], const CZorVector3d& v) {
    row[0] = v.x;
    row[1] = v.y;
    row[2] = v.z;
}

}  // namespace

CZorMatrix3d::CZorMatrix3d() {
    setToIdentity();
}

CZorMatrix3d::CZorMatrix3d(const CZorMatrix3d& other) : CZorObj(other) {
    ZOR::g_mtx_copy(m, other.m);
}

CZorMatrix3d::CZorMatrix3d(const double src[4][4]) {
    ZOR::g_mtx_copy(m, src);
}

CZorMatrix3d& CZorMatrix3d::operator=(const CZorMatrix3d& other) {
    ZOR::g_mtx_copy(m, other.m);
    return *this;
}

CZorMatrix3d& CZorMatrix3d::operator=(const double src[4][4]) {
    ZOR::g_mtx_copy(m, src);
    return *this;
}

bool CZorMatrix3d::operator==(const CZorMatrix3d& b) const {
    if (this == &b) return true;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            if (std::fabs(m[r][c] - b.m[r][c]) > kMatrixEps) return false;
        }
    }
    return true;
}

CZorMatrix3d CZorMatrix3d::operator*(const CZorMatrix3d& b) const {
    CZorMatrix3d p;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k) sum += m[r][k] * b.m[k][c];
            p.m[r][c] = sum;
        }
    }
    return p;
}

CZorMatrix3d& CZorMatrix3d::operator*=(const CZorMatrix3d& b) {
    return *this = *this * b;
}

CZorMatrix3d& CZorMatrix3d::invert() {
    // Column operations reduce a working copy W to the identity; applying each of them to an
    // identity as well collects W's inverse there.
    CZorMatrix3d w(*this);
    setToIdentity();
    const auto subtract_column = [&](int j, int i, double f) {
        for (int r = 0; r < 4; ++r) {
            w.m[r][j] -= f * w.m[r][i];
            m[r][j] -= f * m[r][i];
        }
    };

    // All pivots are chosen before any elimination starts.
    for (int i = 0; i < 4; ++i) {
        if (std::fabs(w.m[i][i]) > kMatrixEps) continue;
        int j = 0;
        while (j < 4 && (j == i || !(std::fabs(w.m[i][j]) > kMatrixEps))) ++j;
        if (j == 4) return setToIdentity();
        w.swapCol(i, j);
        swapCol(i, j);
    }

    for (int i = 0; i < 4; ++i) {
        const double f = 1.0 / w.m[i][i];
        for (int r = 0; r < 4; ++r) {
            w.m[r][i] *= f;
            m[r][i] *= f;
        }
        for (int j = i + 1; j < 4; ++j) {
            const double x = w.m[i][j];
            if (!(kMatrixEps > std::fabs(x))) subtract_column(j, i, x);
        }
    }

    for (int i = 3; i >= 1; --i) {
        for (int j = i - 1; j >= 0; --j) {
            const double x = w.m[i][j];
            if (!(kMatrixEps > std::fabs(x))) subtract_column(j, i, x);
        }
    }
    return *this;
}

CZorMatrix3d CZorMatrix3d::inverse() const {
    CZorMatrix3d r(*this);
    return r.invert();
}

CZorVector3d CZorMatrix3d::translation() const {
    return CZorVector3d(m[0][3], m[1][3], m[2][3]);
}

CZorVector3d CZorMatrix3d::axis(unsigned int i) const {
    const unsigned int c = std::min(i, 2u);
    return CZorVector3d(m[0][c], m[1][c], m[2][c]);
}

double CZorMatrix3d::scale() const {
    return axis(0).abs();
}

void CZorMatrix3d::getCoordSystem(CZorPoint3d& o, CZorVector3d& x, CZorVector3d& y,
                                  CZorVector3d& z) const {
    const CZorVector3d t = translation();
    o.set(t.x, t.y, t.z);
    x = axis(0);
    y = axis(1);
    z = axis(2);
}

CZorMatrix3d& CZorMatrix3d::setToIdentity() {
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) m[r][c] = r == c ? 1.0 : 0.0;
    }
    return *this;
}

CZorMatrix3d& CZorMatrix3d::setCoordSystem(const CZorPoint3d& o, const CZorVector3d& x,
                                           const CZorVector3d& y, const CZorVector3d& z) {
    setToIdentity();
    const CZorVector3d* columns[3] = {&x, &y, &z};
    for (int c = 0; c < 3; ++c) {
        m[0][c] = columns[c]->x;
        m[1][c] = columns[c]->y;
        m[2][c] = columns[c]->z;
    }
    return setTranslation(CZorVector3d(o.x, o.y, o.z));
}

CZorMatrix3d& CZorMatrix3d::setTranslation(const CZorVector3d& v) {
    m[0][3] = v.x;
    m[1][3] = v.y;
    m[2][3] = v.z;
    return *this;
}

CZorMatrix3d& CZorMatrix3d::setToTranslation(const CZorVector3d& v) {
    setToIdentity();
    return setTranslation(v);
}

CZorMatrix3d& CZorMatrix3d::setToWorldToPlane(const CZorVector3d& n) {
    setToIdentity();
    if (is_null(n)) return *this;
    const CZorVector3d z = n.normal();
    const bool near_z_axis =
        kArbitraryAxisLimit > std::fabs(z.x) && kArbitraryAxisLimit > std::fabs(z.y);
    const CZorVector3d x = ((near_z_axis ? kWorldY : kWorldZ) * z).normalize();
    const CZorVector3d y = (z * x).normalize();
    set_row(m[0], x);
    set_row(m[1], y);
    set_row(m[2], z);
    return *this;
}

CZorMatrix3d& CZorMatrix3d::setToPlaneToWorld(const CZorVector3d& n) {
    if (is_null(n)) return setToIdentity();
    return setToWorldToPlane(n).invert();
}

CZorMatrix3d& CZorMatrix3d::setToRotation(double ang, const CZorVector3d& axis,
                                          const CZorPoint3d& p) {
    const CZorMatrix3d c = local_frame(axis, p);
    CZorMatrix3d r;
    r.m[0][0] = std::cos(ang);
    r.m[0][1] = -std::sin(ang);
    r.m[1][0] = std::sin(ang);
    r.m[1][1] = std::cos(ang);
    return *this = c.inverse() * r * c;
}

CZorMatrix3d& CZorMatrix3d::setToMirroring(const CZorPlane& plane) {
    const CZorMatrix3d c = local_frame(plane.normal(), plane.position());
    CZorMatrix3d d;
    d.m[2][2] = -1.0;
    return *this = c.inverse() * d * c;
}

CZorMatrix3d& CZorMatrix3d::setToScaling(double f, const CZorPoint3d& p) {
    CZorMatrix3d s;
    s.m[0][0] = s.m[1][1] = s.m[2][2] = f;
    return *this =
               translation_matrix(p - CZorPoint3d()) * s * translation_matrix(CZorPoint3d() - p);
}

CZorMatrix3d& CZorMatrix3d::setToSRM(const CZorPoint3d& s, double ang, const CZorVector3d& v) {
    CZorMatrix3d scaling;
    scaling.m[0][0] = s.x;
    scaling.m[1][1] = s.y;
    scaling.m[2][2] = s.z;
    CZorMatrix3d rotation;
    rotation.setToRotation(ang, kWorldZ, CZorPoint3d());
    return *this = translation_matrix(v) * rotation * scaling;
}

void CZorMatrix3d::swapCol(int a, int b) {
    for (int r = 0; r < 4; ++r) std::swap(m[r][a], m[r][b]);
}

namespace ZOR {

void g_mtx_copy(double dst[4][4], const double src[4][4]) {
    // memmove, not a copy loop: `dst` may be `src` itself, as in a self-assignment.
    std::memmove(dst, src, sizeof(double[4][4]));
}

bool mtxIsMir(const double m[4][4]) {
    const CZorVector3d r0(m[0]), r1(m[1]), r2(m[2]);
    return 0.0 > sprod(r0 * r1, r2);
}

bool g_mtx_2d(CZorMatrix3d& m, double x, double y, double ang, double sy, double sx) {
    const double c = std::cos(ang);
    const double s = std::sin(ang);
    m.setCoordSystem(CZorPoint3d(x, y, 0.0), CZorVector3d(c * sx, s * sx, 0.0),
                     CZorVector3d(-s * sy, c * sy, 0.0), kWorldZ * std::fabs(sx));
    return true;
}

}  // namespace ZOR

CZorMatrix3d zor_g_mtx_ang2d(const CZorMatrix3d& m, double ang, const wchar_t* side) {
    const CZorString s(side);
    const bool left_of_axis = 0.0 > m.translation().x;
    const double half = (kPi - ang) * 0.5;
    double turn;
    if (s == L"L") {
        turn = left_of_axis ? 0.0 : -(kPi - ang);
    } else if (s == L"R") {
        turn = left_of_axis ? kPi - ang : 0.0;
    } else {
        turn = left_of_axis ? half : -half;
    }
    CZorMatrix3d rotation;
    rotation.setToRotation(turn, kWorldZ, CZorPoint3d());
    return rotation * m;
}

CZorMatrix3d zor_g_mtx_ang2d(const CZorMatrix3d& m, double ang, int side) {
    const wchar_t* names[] = {L"C", L"L", L"R"};
    return zor_g_mtx_ang2d(m, ang, names[side == 1 || side == 2 ? side : 0]);
}
