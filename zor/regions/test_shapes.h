// Builders and measures shared by the region tests: points, straight segments, rectangles,
// circles of arcs and toothed outlines, all counter-clockwise unless said otherwise.
#pragma once

#include <cmath>
#include <initializer_list>

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/polyline/orientation.h"
#include "zor/polyline/point_inside.h"
#include "zor/polyline/vertexarray.h"
#include "zor/polyline/vertexarray_ex.h"

namespace zor_test {

using Loop = CZorVertexArray;
using Vll = CZorArrayTempl<CZorVertexArray>;
using Region = CZorArrayTempl<CZorVertexArray>;
using Regions = CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>;
using VllEx = CZorArrayTempl<CZorVertexArrayEx>;
using RegionsEx = CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>;

inline CZorPoint3d P(double x, double y) {
    return CZorPoint3d(x, y, 0);
}

// A straight segment.
inline CZorVertex L(double x0, double y0, double x1, double y1) {
    return CZorVertex(P(x0, y0), P(x1, y1), 0.0);
}

inline Loop chain(std::initializer_list<CZorVertex> segments) {
    Loop out;
    for (const CZorVertex& s : segments) out.append(s);
    return out;
}

inline Loop rect(double x0, double y0, double x1, double y1) {
    return chain({L(x0, y0, x1, y0), L(x1, y0, x1, y1), L(x1, y1, x0, y1), L(x0, y1, x0, y0)});
}

// Two half arcs, counter-clockwise, starting at the rightmost point.
inline Loop circle(double cx, double cy, double r) {
    return chain({CZorVertex(P(cx + r, cy), P(cx - r, cy), 1.0),
                  CZorVertex(P(cx - r, cy), P(cx + r, cy), 1.0)});
}

// A list of the given elements, in order: loops, or regions.
template <class T>
CZorArrayTempl<T> list(std::initializer_list<T> items) {
    CZorArrayTempl<T> out;
    for (const T& t : items) out.append(t);
    return out;
}

// The outer loop, then the holes.
template <class... Holes>
Region region(const Loop& outer, const Holes&... holes) {
    return list<Loop>({outer, holes...});
}

inline VllEx toEx(const Vll& vll) {
    VllEx out;
    zorVllToVllEx(out, vll);
    return out;
}

// A closed outline of `n` segments round (cx, cy), lines and arcs alternating: each tooth of
// angular pitch 2 pi / (n / 2) rises by an arc from the root circle to the tip circle and falls
// back by a line. The teeth are about as deep as they are wide. `turn` turns the whole outline.
inline Loop gear(double cx, double cy, int n, double rOuter, double turn) {
    Loop l;
    const int teeth = n / 2;
    const double pitch = 2.0 * M_PI / teeth;
    const double rInner = rOuter * (1.0 - 0.5 * pitch);
    for (int k = 0; k < teeth; ++k) {
        const double a0 = turn + k * pitch;
        const double a1 = a0 + 0.5 * pitch;
        const double a2 = a0 + pitch;
        const CZorPoint3d p0(cx + rInner * std::cos(a0), cy + rInner * std::sin(a0), 0);
        const CZorPoint3d p1(cx + rOuter * std::cos(a1), cy + rOuter * std::sin(a1), 0);
        const CZorPoint3d p2(cx + rInner * std::cos(a2), cy + rInner * std::sin(a2), 0);
        // The arc bulges outwards by a quarter of its chord's sagitta range.
        l.append(CZorVertex(p0, p1, 0.15));
        l.append(CZorVertex(p1, p2, 0.0));
    }
    l[-1].end = l[0].start;
    return l;
}

// Signed area enclosed by the chains of a polyline, counter-clockwise positive, in closed form:
// the polygon of its ends plus, for each arc, the circular segment between chord and arc. Exact,
// unlike the chorded cross-section values, so identities between areas hold to rounding.
inline double exactArea(const Loop& l) {
    double a = 0.0;
    for (int i = 0; i < l.len(); ++i) {
        const CZorVertex& s = l[i];
        a += 0.5 * (s.start.x * s.end.y - s.end.x * s.start.y);
        if (s.bulge == 0.0) continue;
        const double dx = s.end.x - s.start.x, dy = s.end.y - s.start.y;
        const double sweep = 4.0 * std::atan(s.bulge);
        const double half = std::sin(0.5 * sweep);
        a += (dx * dx + dy * dy) / (8.0 * half * half) * (sweep - std::sin(sweep));
    }
    return a;
}

// Outer loop minus holes, all taken at rest (counter-clockwise).
inline double exactArea(const Region& r) {
    double a = 0.0;
    for (int i = 0; i < static_cast<int>(r.len()); ++i)
        a += i == 0 ? exactArea(r[i]) : -exactArea(r[i]);
    return a;
}

inline double exactArea(const Regions& rs) {
    double a = 0.0;
    for (int i = 0; i < static_cast<int>(rs.len()); ++i) a += exactArea(rs[i]);
    return a;
}

// Every loop closed and counter-clockwise, every hole's first middle inside its outer loop.
inline bool atRest(const Regions& rs) {
    for (int i = 0; i < static_cast<int>(rs.len()); ++i) {
        for (int k = 0; k < static_cast<int>(rs[i].len()); ++k) {
            const Loop& l = rs[i][k];
            if (!l.isClosed() || !ZOR::g_vl_orient(l, CZorVector3d::kZAxis)) return false;
            if (k > 0 && !ZOR::g_vl_pt_inside(rs[i][0], l[0].mid(), false)) return false;
        }
    }
    return true;
}

}  // namespace zor_test
