// Small builders shared by the polyline tests.
#pragma once

#include <initializer_list>
#include <random>

#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/polyline/vertexarray.h"

namespace zor_test {

inline CZorPoint3d P(double x, double y) {
    return CZorPoint3d(x, y, 0.0);
}

inline CZorPoint3dArray Points(std::initializer_list<CZorPoint3d> pts) {
    CZorPoint3dArray out;
    for (const CZorPoint3d& p : pts) out.append(p);
    return out;
}

inline CZorVertexArray Polygon(std::initializer_list<CZorPoint3d> pts, bool closed = true) {
    CZorVertexArray vl;
    vl.fromPoints(Points(pts), closed);
    return vl;
}

// Counter-clockwise axis-parallel rectangle from its lower left corner.
inline CZorVertexArray Rect(double x0, double y0, double x1, double y1) {
    return Polygon({P(x0, y0), P(x1, y0), P(x1, y1), P(x0, y1)});
}

// Full circle of two counter-clockwise half circles, starting at angle 0.
inline CZorVertexArray Circle(double cx, double cy, double r) {
    CZorVertexArray vl;
    vl.append(CZorVertex(P(cx + r, cy), P(cx - r, cy), 1.0));
    vl.append(CZorVertex(P(cx - r, cy), P(cx + r, cy), 1.0));
    return vl;
}

// A random open walk of `n` segments, lines and arcs, each step of length up to `step`.
inline CZorVertexArray RandomWalk(std::mt19937& rng, int n, double extent, double step) {
    std::uniform_real_distribution<double> coord(0.0, extent);
    std::uniform_real_distribution<double> delta(-step, step);
    std::uniform_real_distribution<double> bulge(-1.5, 1.5);
    std::bernoulli_distribution isArc(0.4);
    CZorVertexArray vl;
    CZorPoint3d p(coord(rng), coord(rng), 0.0);
    for (int i = 0; i < n; ++i) {
        CZorPoint3d q(p.x + delta(rng), p.y + delta(rng), 0.0);
        vl.append(CZorVertex(p, q, isArc(rng) ? bulge(rng) : 0.0));
        p = q;
    }
    return vl;
}

}  // namespace zor_test
