#include "zor/polyline/segment_index.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "zor/polyline/vertexarray.h"

namespace {

using ZOR::detail::Box2d;
using ZOR::detail::SegmentIndex;

// Whether the segment p-q has a point in `b`, by clipping with divisions.
bool touchesPlain(const CZorPoint3d& p, const CZorPoint3d& q, const Box2d& b) {
    double t0 = 0.0, t1 = 1.0;
    const double d[2] = {q.x - p.x, q.y - p.y};
    const double lo[2] = {b.xlo - p.x, b.ylo - p.y};
    const double hi[2] = {b.xhi - p.x, b.yhi - p.y};
    for (int k = 0; k < 2; ++k) {
        if (d[k] == 0.0) {
            if (lo[k] > 0.0 || hi[k] < 0.0) return false;
            continue;
        }
        double ta = lo[k] / d[k], tb = hi[k] / d[k];
        if (ta > tb) std::swap(ta, tb);
        t0 = std::max(t0, ta);
        t1 = std::min(t1, tb);
    }
    return t0 <= t1;
}

// Every segment in ascending order whose box the plain scan keeps.
template <class Keep>
std::vector<int> scan(const CZorVertexArray& segments, Keep keep) {
    std::vector<int> out;
    for (int i = 0; i < segments.len(); ++i) {
        if (keep(ZOR::detail::segmentBox(segments[i], ZOR::detail::boxMargin()))) out.push_back(i);
    }
    return out;
}

// Lines and arcs of all sizes, with heaps of equal segments (whose boxes share one centre),
// segments far away and segments with coordinates that aren't finite.
CZorVertexArray mixedSegments(std::mt19937& rng, int n) {
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    CZorVertexArray out;
    const double inf = std::numeric_limits<double>::infinity();
    for (int i = 0; i < n; ++i) {
        const int kind = i % 23;
        if (kind == 0) {
            out.append(CZorVertex(CZorPoint3d(1, 1, 0), CZorPoint3d(2, 1.5, 0), 0.3));
            continue;
        }
        if (kind == 1) {
            const double bad = i % 2 == 0 ? inf : std::nan("");
            out.append(CZorVertex(CZorPoint3d(bad, 0, 0), CZorPoint3d(3, 3, 0), 0.0));
            continue;
        }
        const double size = std::pow(10.0, 4 * unit(rng) - 2);
        const CZorPoint3d s(200 * unit(rng) - 100, 200 * unit(rng) - 100, 0);
        const CZorPoint3d e(s.x + size * (unit(rng) - 0.5), s.y + size * (unit(rng) - 0.5), 0);
        const double bulge = kind < 12 ? 0.0 : 4 * unit(rng) - 2;
        out.append(CZorVertex(kind == 2 ? CZorPoint3d(1e9, -1e9, 0) : s, e, bulge));
    }
    return out;
}

TEST(SegmentIndexTest, QueriesFindWhatTheScanFindsInAscendingOrder) {
    std::mt19937 rng(29);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (const int n : {0, 1, 7, 8, 9, 300, 3000}) {
        const CZorVertexArray segments = mixedSegments(rng, n);
        const SegmentIndex index(segments);
        ASSERT_EQ(index.size(), n);
        std::vector<int> found;
        for (int round = 0; round < 200; ++round) {
            const CZorPoint3d p(240 * unit(rng) - 120, 240 * unit(rng) - 120, 0);
            const double w = std::pow(10.0, 3 * unit(rng) - 1);
            const Box2d box{p.x, p.y, p.x + w * unit(rng), p.y + w * unit(rng)};
            index.query(box, found);
            ASSERT_EQ(found, scan(segments, [&](const Box2d& b) { return b.overlaps(box); }))
                << n << " " << round;
            // Rays of every length and direction, and ones along an axis.
            const double a = round % 10 == 0 ? M_PI / 2 * (round / 10 % 4) : 2 * M_PI * unit(rng);
            const double len = round % 3 == 0 ? 1e7 : 50 * unit(rng);
            const CZorPoint3d q(p.x + len * std::cos(a), p.y + len * std::sin(a), 0);
            index.querySegment(p, q, found);
            ASSERT_EQ(found, scan(segments, [&](const Box2d& b) { return touchesPlain(p, q, b); }))
                << n << " " << round;
        }
    }
}

TEST(SegmentIndexTest, ArcBoxesHoldTheirSegments) {
    // Every point along a segment lies in its box, for minor and major arcs, short chords and
    // long ones.
    std::mt19937 rng(31);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int round = 0; round < 2000; ++round) {
        const CZorPoint3d s(100 * unit(rng), 100 * unit(rng), 0);
        const double chord = std::pow(10.0, 6 * unit(rng) - 4);
        const CZorPoint3d e(s.x + chord, s.y + chord * (unit(rng) - 0.5), 0);
        const double bulge = std::pow(10.0, 4 * unit(rng) - 2) * (round % 2 ? 1 : -1);
        const CZorVertex v(s, e, bulge);
        const Box2d box = ZOR::detail::segmentBox(v, 0.0);
        CZorPoint3d c;
        ASSERT_TRUE(v.center(c));
        const double r = v.radius();
        double a1, a2;
        CZorPoint3d unused;
        double rr;
        v.toArc(unused, rr, a1, a2);
        const double sweep = std::fmod(a2 - a1 + 4 * M_PI, 2 * M_PI);
        for (int k = 0; k <= 16; ++k) {
            const double a = a1 + sweep * k / 16;
            const double x = c.x + r * std::cos(a), y = c.y + r * std::sin(a);
            EXPECT_TRUE(box.xlo <= x && x <= box.xhi && box.ylo <= y && y <= box.yhi)
                << round << " " << k;
        }
    }
}

}  // namespace
