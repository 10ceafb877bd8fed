#include "zor/geometry/lines.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ZOR {

namespace {

// The boxes of a-b and c-d, widened by `t`, overlap in x and in y.
bool boxes_touch(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c,
                 const CZorPoint3d& d, double t) {
    const auto overlap = [t](double a0, double a1, double b0, double b1) {
        return std::max(a0, a1) + t >= std::min(b0, b1) && std::max(b0, b1) + t >= std::min(a0, a1);
    };
    return overlap(a.x, b.x, c.x, d.x) && overlap(a.y, b.y, c.y, d.y);
}

}  // namespace

bool inters(const CZorPoint3d& a_in, const CZorPoint3d& b_in, const CZorPoint3d& c_in,
            const CZorPoint3d& d_in, bool bounded, CZorPoint3d& out) {
    const double t = CZorPoint3d::tol;
    const CZorPoint3d* a = &a_in;
    const CZorPoint3d* b = &b_in;
    const CZorPoint3d* c = &c_in;
    const CZorPoint3d* d = &d_in;
    if (bounded && !boxes_touch(*a, *b, *c, *d, t)) return false;
    // The slope form needs a first line that is not vertical; a vertical first line trades
    // places with the second, unless that is vertical too or the first is a mere point.
    if (std::fabs(b->x - a->x) < t) {
        if (std::fabs(d->x - c->x) < t) return false;
        if (std::fabs(b->y - a->y) < t) return false;
        std::swap(a, c);
        std::swap(b, d);
    }
    out.z = a->z;
    const double m1 = (b->y - a->y) / (b->x - a->x);
    const double k1 = a->y - m1 * a->x;
    if (std::fabs(d->x - c->x) < 1e-9) {
        out.x = d->x;
    } else {
        const double m2 = (d->y - c->y) / (d->x - c->x);
        if (std::fabs(m1 - m2) < 1e-9) return false;
        out.x = (c->y - m2 * c->x - k1) / (m1 - m2);
    }
    out.y = m1 * out.x + k1;
    if (bounded) return g_line_pt(*a, *b, out) && g_line_pt(*c, *d, out);
    return true;
}

bool g_line_pt(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& p) {
    // Whatever the tests below accept lies within the tolerance of a point of the segment, so
    // in its box widened by the tolerance; a point well outside it (allowing for the rounding
    // of the foot point) is turned away before any square root.
    const double reach = 2.0 * CZorPoint3d::tol +
                         1e-9 * (std::fabs(a.x) + std::fabs(a.y) + std::fabs(b.x) + std::fabs(b.y));
    if (p.x + reach < std::min(a.x, b.x) || p.x - reach > std::max(a.x, b.x) ||
        p.y + reach < std::min(a.y, b.y) || p.y - reach > std::max(a.y, b.y)) {
        return false;
    }
    if (p == a || p == b) return true;
    if (a == b) return false;
    const CZorPoint3d f = g_lotp(a, b, p);
    if (p.distanceTo(f) > CZorPoint3d::tol) return false;
    // The foot lies between the ends exactly when a->f and f->b point the same way.
    return (f - a).normalize() == (b - f).normalize();
}

CZorPoint3d g_lotp(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& p) {
    if (a == b) return a;
    const CZorVector3d u = (b - a).normalize();
    return a + u * sprod(p - a, u);
}

}  // namespace ZOR
