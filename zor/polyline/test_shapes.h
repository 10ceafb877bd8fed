// Small builders and checks shared by the polyline tests. The tests live in namespace zor_test,
// so that they use these names unqualified.
#pragma once

#include <initializer_list>
#include <random>

#include <gtest/gtest.h>

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/polyline/vertexarray.h"

namespace zor_test {

inline constexpr double kPi = 3.141592653589793;

inline CZorPoint3d P(double x, double y) {
    return CZorPoint3d(x, y, 0.0);
}

inline CZorVertex L(double x0, double y0, double x1, double y1) {
    return CZorVertex(P(x0, y0), P(x1, y1), 0.0);
}

inline CZorVertex A(double x0, double y0, double x1, double y1, double bulge) {
    return CZorVertex(P(x0, y0), P(x1, y1), bulge);
}

inline CZorPoint3dArray Points(std::initializer_list<CZorPoint3d> pts) {
    CZorPoint3dArray out;
    for (const CZorPoint3d& p : pts) out.append(p);
    return out;
}

template <class T>
CZorArrayTempl<T> List(std::initializer_list<T> values) {
    CZorArrayTempl<T> out;
    for (const T& v : values) out.append(v);
    return out;
}

// The segments as they are, in this order.
inline CZorVertexArray Chain(std::initializer_list<CZorVertex> segments) {
    CZorVertexArray vl;
    for (const CZorVertex& s : segments) vl.append(s);
    return vl;
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
    return Chain({A(cx + r, cy, cx - r, cy, 1.0), A(cx - r, cy, cx + r, cy, 1.0)});
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

inline void ExpectPoint(const CZorPoint3d& p, double x, double y, double eps = 1e-12) {
    EXPECT_NEAR(p.x, x, eps);
    EXPECT_NEAR(p.y, y, eps);
}

// The same segment, or the same segments, each coordinate and bulge within `eps`.
inline void ExpectNear(const CZorVertex& x, const CZorVertex& y, double eps = 1e-9) {
    EXPECT_NEAR(x.start.x, y.start.x, eps);
    EXPECT_NEAR(x.start.y, y.start.y, eps);
    EXPECT_NEAR(x.end.x, y.end.x, eps);
    EXPECT_NEAR(x.end.y, y.end.y, eps);
    EXPECT_NEAR(x.bulge, y.bulge, eps);
}

inline void ExpectNear(const CZorVertexArray& x, const CZorVertexArray& y, double eps = 1e-9) {
    ASSERT_EQ(x.len(), y.len());
    for (int i = 0; i < x.len(); ++i) {
        SCOPED_TRACE(i);
        ExpectNear(x[i], y[i], eps);
    }
}

// Equal bit for bit: what a fast path must give against its plain reference.
inline void ExpectBitEqual(const CZorPoint3dArray& x, const CZorPoint3dArray& y) {
    ASSERT_EQ(x.len(), y.len());
    for (int i = 0; i < x.len(); ++i) {
        EXPECT_EQ(x[i].x, y[i].x) << i;
        EXPECT_EQ(x[i].y, y[i].y) << i;
    }
}

inline void ExpectBitEqual(const CZorVertexArray& x, const CZorVertexArray& y) {
    ExpectNear(x, y, 0.0);
}

}  // namespace zor_test
