#include "zor/geometry/circles.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "zor/geometry/formulas.h"
#include "zor/geometry/lines.h"
#include "zor/geometry/vector3d.h"

namespace ZOR {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTwoPi = 2 * kPi;

// The few points an intersection yields, gathered before the caller's list is written: the
// input points may be references into that very list.
class Hits {
  public:
    void add(const CZorPoint3d& p) { points_[count_++] = p; }
    bool isEmpty() const { return count_ == 0; }
    bool contains(const CZorPoint3d& p) const {
        return std::find(points_, points_ + count_, p) != points_ + count_;
    }
    // The hits that pass `keep`, in order.
    template <class Keep>
    Hits filtered(Keep keep) const {
        Hits out;
        for (int i = 0; i < count_; ++i) {
            if (keep(points_[i])) out.add(points_[i]);
        }
        return out;
    }
    // Empties `list`, fills it with the hits, and tells whether there were any.
    bool writeTo(CZorPoint3dArray& list) const {
        list.setLogicalLength(0);
        for (int i = 0; i < count_; ++i) list.append(points_[i]);
        return count_ > 0;
    }

  private:
    // A circle meets a line or another circle in two points at most, and an arc has two ends.
    CZorPoint3d points_[2];
    int count_ = 0;
};

Hits circleCircle(const CZorPoint3d& c1, double r1, const CZorPoint3d& c2, double r2) {
    Hits hits;
    const double d = c1.distanceTo(c2);
    const double t = CZorPoint3d::tol;
    if (std::fabs(r1 + r2 - d) < t) {
        hits.add(polar(c1, angle(c1, c2), r1));
    } else if (std::fabs(d + r1 - r2) < t || std::fabs(d + r2 - r1) < t) {
        if (r1 > r2) {
            hits.add(polar(c1, angle(c1, c2), r1));
        } else {
            hits.add(polar(c2, angle(c2, c1), r2));
        }
    } else if (r1 + r2 - d < 0 || d + r1 - r2 < 0 || d + r2 - r1 < 0) {
        // Apart, or one inside the other.
    } else {
        const double cosA = (d * d + r1 * r1 - r2 * r2) / (2 * r1 * d);
        if (std::isnan(cosA)) return hits;  // NaN input: no point rather than NaN points
        // Rounding can carry a near-tangent cosine just past 1; that is a touch, not a NaN.
        const double a = std::acos(std::clamp(cosA, -1.0, 1.0));
        const double base = angle(c1, c2);
        const double e = 1e-5 / r1;
        if (std::fabs(a) < e || std::fabs(a - kPi) < e) {
            hits.add(polar(c1, base, r1));
        } else {
            hits.add(polar(c1, base + a, r1));
            hits.add(polar(c1, base - a, r1));
        }
    }
    return hits;
}

// The line is written as other = k * free + n in its dominant coordinate, so that |k| <= 1, and
// the quadratic in the free coordinate is solved; the roots come in ascending order.
Hits circleLine(const CZorPoint3d& c, double r, const CZorPoint3d& p, const CZorPoint3d& q) {
    Hits hits;
    const double dx = p.x - q.x;
    const double dy = p.y - q.y;
    const bool freeY = std::fabs(dy) > std::fabs(dx);
    const double k = freeY ? dx / dy : dy / dx;
    const double n = freeY ? q.x - k * q.y : q.y - k * q.x;
    const double cf = freeY ? c.y : c.x;
    const double co = freeY ? c.x : c.y;

    const double A = k * k + 1;
    const double B = 2 * ((n - co) * k - cf) / A;
    const double C = (cf * cf + co * co + n * n - 2 * n * co - r * r) / A;
    double D = B * B / 4 - C;

    // A line within the point tolerance of touching counts as a tangent.
    const double t = CZorPoint3d::tol;
    if (D < 0) {
        const double rest = r * r - std::fabs(D);
        if (rest > 0 && std::fabs(r - std::sqrt(rest)) < t) D = 0;
    } else if (std::sqrt(D) < t * 0.5) {
        D = 0;
    }
    // Below 0 the line misses; NaN comes from a line given by two identical points.
    if (!(D >= 0)) return hits;

    const double s = std::sqrt(D);
    const auto at = [&](double f) {
        const double other = k * f + n;
        return freeY ? CZorPoint3d(other, f, c.z) : CZorPoint3d(f, other, c.z);
    };
    hits.add(at(-B / 2 - s));
    if (s > 0) hits.add(at(s - B / 2));
    return hits;
}

}  // namespace

bool g_cci(CZorPoint3dArray& list, const CZorPoint3d& c1, double r1, const CZorPoint3d& c2,
           double r2) {
    return circleCircle(c1, r1, c2, r2).writeTo(list);
}

bool g_cli0(CZorPoint3dArray& list, const CZorPoint3d& c, double r, const CZorPoint3d& p,
            const CZorPoint3d& q) {
    return circleLine(c, r, p, q).writeTo(list);
}

bool g_cli(CZorPoint3dArray& list, const CZorPoint3d& c, double r, const CZorPoint3d& p,
           const CZorPoint3d& q) {
    const Hits line = circleLine(c, r, p, q);
    if (line.isEmpty()) return false;
    return line.filtered([&](const CZorPoint3d& x) { return g_line_pt(p, q, x); }).writeTo(list);
}

bool g_cai(CZorPoint3dArray& list, const CZorPoint3d& c1, double r1, const CZorPoint3d& c2,
           double r2, double a0, double a1) {
    circleCircle(c1, r1, c2, r2)
        .filtered([&](const CZorPoint3d& x) { return g_arc_pt(c2, r2, a0, a1, x); })
        .writeTo(list);
    return true;
}

bool g_aai(CZorPoint3dArray& list, const CZorPoint3d& c1, double r1, double a0, double a1,
           const CZorPoint3d& c2, double r2, double b0, double b1) {
    if (c1 == c2) {
        Hits ends1;
        ends1.add(polar(c1, a0, r1));
        ends1.add(polar(c1, a1, r1));
        Hits ends2;
        ends2.add(polar(c2, b0, r2));
        ends2.add(polar(c2, b1, r2));
        // The common end points in the first arc's order. An end of the second arc that the
        // first arc's ends contain is == to one of those, which is then already in the result
        // (point equality is symmetric), so the second arc adds nothing of its own.
        return ends1.filtered([&](const CZorPoint3d& x) { return ends2.contains(x); })
            .writeTo(list);
    }
    return circleCircle(c1, r1, c2, r2)
        .filtered([&](const CZorPoint3d& x) {
            return g_arc_pt(c1, r1, a0, a1, x) && g_arc_pt(c2, r2, b0, b1, x);
        })
        .writeTo(list);
}

bool g_ali(CZorPoint3dArray& list, const CZorPoint3d& c, double r, double a0, double a1,
           const CZorPoint3d& p, const CZorPoint3d& q) {
    // Both tests are pure; the arc's goes first as it turns away more of the circle's points.
    return circleLine(c, r, p, q)
        .filtered(
            [&](const CZorPoint3d& x) { return g_arc_pt(c, r, a0, a1, x) && g_line_pt(p, q, x); })
        .writeTo(list);
}

bool g_arc_pt(const CZorPoint3d& c, double r, double a0, double a1, const CZorPoint3d& p) {
    const double tol = CZorPoint3d::tol;
    if (std::fabs(c.distanceTo(p) - r) > tol) return false;
    double sweep = a1 - a0;
    if (sweep < 0) sweep += kTwoPi;
    double pos = angle(c, p) - a0;
    if (pos < 0) pos += kTwoPi;
    if (sweep >= pos) return true;
    // The angle test has no tolerance; the end points still count within the point tolerance.
    // Both ends lie at least the angle `apart` away from `p` around the centre, so no nearer
    // than the chord of that angle, at least 2/pi of its arc; when that is well beyond the
    // tolerance (and the rounding of the ends), neither end needs working out.
    const double apart = std::min(pos - sweep, kTwoPi - pos);
    const double rounding = 1e-9 * (r + std::fabs(c.x) + std::fabs(c.y));
    if ((r - tol) * apart * (2.0 / kPi) > 2.0 * tol + rounding) return false;
    return p == polar(c, a0, r) || p == polar(c, a1, r);
}

double g_lot(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& p) {
    CZorPoint3d foot = g_lotp(a, b, p);
    foot.z = p.z;
    return g_ang(angle(foot, p));
}

int g_point_orient(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c) {
    return ((b - a) * (c - a)).z < 0 ? -1 : 1;
}

CZorPoint3d g_nm_pkt_tan(const CZorPoint3d& p, const CZorPoint3d& c, double r) {
    const double d = p.distanceTo(c);
    const double t = std::sqrt(d * d - r * r);
    return polar(p, angle(p, c) + std::atan2(r, t), t);
}

bool g_arc3p_cen(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c,
                 CZorPoint3d& out) {
    if (a == b) return false;
    const CZorPoint3d footC = g_lotp(a, b, c);
    if (footC == c) return false;  // collinear, which covers c equal to a or b
    const CZorPoint3d m1 = g_midp3d(a, b);
    const CZorPoint3d m2 = g_midp3d(c, b);
    const CZorVector3d w1 = c - footC;            // normal of the chord a-b
    const CZorVector3d w2 = a - g_lotp(c, b, a);  // normal of the chord c-b
    return inters(m1, m1 + w1, m2, m2 + w2, false, out);
}

bool g_arc3p_tan(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c,
                 CZorPoint3d& out) {
    if (!g_arc3p_cen(a, b, c, out)) return false;
    out = g_lotp(a, out, b);
    return true;
}

bool g_arc3p_bulg(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c, double& bulge) {
    CZorPoint3d m;
    if (!g_arc3p_cen(a, b, c, m)) return false;
    const double r = m.distanceTo(a);
    const CZorVector3d u = (b - g_lotp(a, c, b)).normal();  // from the chord towards the arc
    const CZorPoint3d h = g_midp3d(a, c);
    const double sagitta = h.distanceTo(m + u * r);
    const double halfChord = a.distanceTo(h);
    double value = sagitta / halfChord;
    if (((b - h) * (c - a)).z < 0) value = -value;
    bulge = value;
    return true;
}

bool g_arc3p_orient(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& p2,
                    const CZorPoint3d& c) {
    const double start = angle(c, p0);
    return g_ang(angle(c, p2) - start) > g_ang(angle(c, p1) - start);
}

double g_arc_bulg(double a0, double a1) {
    double sweep = a1 - a0;
    if (a0 > a1) sweep += kTwoPi;
    return std::tan(sweep / 4);
}

double g_arcmp_bulg(const CZorPoint3d& c, const CZorPoint3d& p0, const CZorPoint3d& p1) {
    return g_arc_bulg(angle(c, p0), angle(c, p1));
}

bool g_arcrad_bulg(double& b, const CZorPoint3d& p0, const CZorPoint3d& p1, double r) {
    if (r == 0.0) {
        b = 0.0;
        return true;
    }
    const double h = p0.distanceTo(p1) / 2;
    // No arc fits a chord longer than the diameter, and a zero chord (or NaN input) has no
    // bulge at all: the formula would give a NaN or an infinity.
    if (!(h <= std::fabs(r)) || h == 0.0) return false;
    b = (r - std::sqrt(r * r - h * h)) / h;
    return true;
}

double g_arcrad_bulg(const CZorPoint3d& p0, const CZorPoint3d& p1, double r) {
    double b = 0.0;
    return g_arcrad_bulg(b, p0, p1, r) ? b : nan();
}

double g_bulg_len(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& c) {
    return p0.distanceTo(c) * g_ang(angle(c, p1) - angle(c, p0));
}

}  // namespace ZOR
