// Outlines that the region tests build over and over: rectangles, circles of arcs, toothed
// outlines and random polygons, all counter-clockwise unless said otherwise.
#pragma once

#include <cmath>
#include <random>

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/polyline/analysis.h"
#include "zor/polyline/vertexarray.h"

namespace zor_test {

using Loop = CZorVertexArray;
using Region = CZorArrayTempl<CZorVertexArray>;
using Regions = CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>;

inline Loop rect(double x0, double y0, double x1, double y1) {
    Loop l;
    l.append(CZorVertex(CZorPoint3d(x0, y0, 0), CZorPoint3d(x1, y0, 0), 0.0));
    l.append(CZorVertex(CZorPoint3d(x1, y0, 0), CZorPoint3d(x1, y1, 0), 0.0));
    l.append(CZorVertex(CZorPoint3d(x1, y1, 0), CZorPoint3d(x0, y1, 0), 0.0));
    l.append(CZorVertex(CZorPoint3d(x0, y1, 0), CZorPoint3d(x0, y0, 0), 0.0));
    return l;
}

// Two half arcs, counter-clockwise, starting at the rightmost point.
inline Loop circle(double cx, double cy, double r) {
    Loop l;
    l.append(CZorVertex(CZorPoint3d(cx + r, cy, 0), CZorPoint3d(cx - r, cy, 0), 1.0));
    l.append(CZorVertex(CZorPoint3d(cx - r, cy, 0), CZorPoint3d(cx + r, cy, 0), 1.0));
    return l;
}

inline Region region(const Loop& outer) {
    Region r;
    r.append(outer);
    return r;
}

inline Region region(const Loop& outer, const Loop& hole) {
    Region r = region(outer);
    r.append(hole);
    return r;
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

// Area of a region from the library's own cross-section values: outer minus holes.
inline double area(const Region& r) {
    double a = 0.0;
    for (int i = 0; i < static_cast<int>(r.len()); ++i) {
        Statics st;
        if (!ZOR::g_vl_statics(r[i], st)) continue;
        a += i == 0 ? st.area : -st.area;
    }
    return a;
}

inline double area(const Regions& rs) {
    double a = 0.0;
    for (int i = 0; i < static_cast<int>(rs.len()); ++i) a += area(rs[i]);
    return a;
}

// Signed area enclosed by a closed polyline, counter-clockwise positive, in closed form: the
// polygon of its ends plus, for each arc, the circular segment between chord and arc. Free of the
// chord approximation of the cross-section values, so that identities between areas hold to
// rounding.
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

}  // namespace zor_test
