#include "zor/polyline/split_break.h"

#include <cmath>
#include <random>
#include <utility>

#include <gtest/gtest.h>

#include "zor/polyline/test_shapes.h"

namespace {

using zor_test::P;
using zor_test::Points;
using zor_test::Polygon;

constexpr double kPi = 3.141592653589793;

CZorVertex L(CZorPoint3d a, CZorPoint3d b) {
    return CZorVertex(a, b, 0.0);
}

TEST(SplitTest, AtPoints) {
    const CZorVertexArray vl = Polygon({P(0, 0), P(4, 0), P(4, 4)}, false);
    EXPECT_EQ(ZOR::g_vl_split(vl, Points({P(4, 0)})), vl);  // a joint changes nothing
    const CZorVertexArray twice = ZOR::g_vl_split(vl, Points({P(1, 0), P(1, 0)}));
    EXPECT_EQ(twice.len(), 3);
    const CZorVertexArray many = ZOR::g_vl_split(vl, Points({P(3, 0), P(1, 0), P(4, 2), P(9, 9)}));
    ASSERT_EQ(many.len(), 5);
    EXPECT_EQ(many[0].end, P(1, 0));
    EXPECT_EQ(many[1].end, P(3, 0));
    EXPECT_EQ(many[3].end, P(4, 2));
    EXPECT_EQ(ZOR::g_vl_split(vl, CZorPoint3dArray()), vl);
    EXPECT_EQ(ZOR::g_vl_split(vl, Points({P(std::nan(""), 0), P(1, HUGE_VAL)})), vl);
}

// The plain walk of every point over every piece that the box-filtered split must reproduce.
CZorVertexArray PlainSplit(CZorVertexArray vl, const CZorPoint3dArray& pts) {
    const int limit = 2 * (vl.len() + pts.len());
    for (int i = 0; i < vl.len() && i <= limit; ++i) {
        for (int k = 0; k < pts.len(); ++k) {
            const CZorPoint3d& p = pts[k];
            if (p == vl[i].start || p == vl[i].end) continue;
            if (vl[i].isPoint(p)) vl.breakVertex(i, p);
        }
    }
    return vl;
}

void ExpectBitEqual(const CZorVertexArray& x, const CZorVertexArray& y);

TEST(SplitTest, FilteredSplitEqualsThePlainWalkBitForBit) {
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> coord(0.0, 40.0);
    int pieces = 0;
    for (int round = 0; round < 4; ++round) {
        const CZorVertexArray vl = zor_test::RandomWalk(rng, 60, 40.0, 4.0);
        // Points on the segments (their middles and quarter points), at joints, off the
        // polyline, and repeated.
        CZorPoint3dArray pts;
        for (int i = 0; i < vl.len(); i += 2) {
            CZorVertex firstHalf = vl[i];
            firstHalf.setEndPoint(vl[i].mid());
            pts.append(vl[i].mid()).append(firstHalf.mid()).append(vl[i].start);
            pts.append(P(coord(rng), coord(rng)));
        }
        pts.append(pts[0]);
        for (int i = pts.len() - 1; i > 0; --i) {
            std::swap(pts[i], pts[std::uniform_int_distribution<int>(0, i)(rng)]);
        }
        const CZorVertexArray filtered = ZOR::g_vl_split(vl, pts);
        ExpectBitEqual(filtered, PlainSplit(vl, pts));
        pieces += filtered.len() - vl.len();
    }
    EXPECT_GT(pieces, 100);
}

TEST(SplitTest, EqualSweeps) {
    const CZorVertexArray half(CZorVertex(P(1, 0), P(-1, 0), 1.0));
    const CZorVertexArray thirds = ZOR::g_vl_split_ang(half, kPi / 2);
    ASSERT_EQ(thirds.len(), 3);
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(thirds[i].bulge, std::tan(kPi / 12), 1e-12);
    EXPECT_EQ(ZOR::g_vl_split_ang(half, 10.0).len(), 2);
    // A clockwise sweep is negative: always two pieces.
    EXPECT_EQ(ZOR::g_vl_split_ang(half.reverse(), 0.1).len(), 2);
    // An angle that gives no count: two pieces, not an endless split.
    EXPECT_EQ(ZOR::g_vl_split_ang(half, 0.0).len(), 2);
    EXPECT_EQ(ZOR::g_vl_split_ang(half, std::nan("")).len(), 2);
}

TEST(SplitTest, ChordsWithinADeviation) {
    const CZorVertexArray circle = zor_test::Circle(0, 0, 10);
    const CZorVertexArray chords = ZOR::g_vl_split_dif(circle, 0.1);
    EXPECT_TRUE(chords.isClosed());
    EXPECT_EQ(chords.len(), 24);
    for (int i = 0; i < chords.len(); ++i) {
        EXPECT_EQ(chords[i].bulge, 0.0);
        EXPECT_LE(10.0 - chords[i].mid().distanceTo(P(0, 0)), 0.1);
    }
    CZorArrayTempl<CZorVertexArray> vll;
    vll.append(circle);
    vll.append(Polygon({P(0, 0), P(1, 0)}, false));
    const CZorArrayTempl<CZorVertexArray> out = ZOR::g_vll_split_dif(vll, 0.1);
    ASSERT_EQ(out.len(), 2u);
    EXPECT_EQ(out[1].len(), 1);
}

TEST(SplitTest, TangentDirectionsAndShadowEdges) {
    const CZorVertexArray circle = zor_test::Circle(0, 0, 1);
    const CZorVertexArray atTop = ZOR::g_vl_split_tang_w(circle, 0.0);
    // Tangent direction 0 at (0, 1) on the upper half and (0, -1) on the lower.
    ASSERT_EQ(atTop.len(), 4);
    EXPECT_EQ(atTop[0].end, P(0, 1));
    EXPECT_EQ(atTop[2].end, P(0, -1));

    // A step lit along +X: the free corner (10, 4) throws its shadow onto the left side at
    // (0, 4). The outline starts at its corner furthest against the light, searched from
    // segment 1 on: (0, 8), although segment 0 starts at (0, 0) as far out.
    const CZorVertexArray step = Polygon({P(0, 0), P(10, 0), P(10, 4), P(6, 4), P(6, 8), P(0, 8)});
    const CZorVertexArray lit = ZOR::g_vl_split_w(step, 0.0);
    ASSERT_EQ(lit.len(), 7);
    EXPECT_EQ(lit[0], L(P(0, 8), P(0, 4)));
    EXPECT_EQ(lit[1], L(P(0, 4), P(0, 0)));
    EXPECT_EQ(lit[6].end, P(0, 8));
    // Lit along -X nothing is shadowed; the first of the equally far corners leads.
    const CZorVertexArray back = ZOR::g_vl_split_w(step, kPi);
    ASSERT_EQ(back.len(), 6);
    EXPECT_EQ(back[0].start, P(10, 0));
}

TEST(SplitTest, DegenerateArcsEndTheSplits) {
    // On an astronomic bulge rounding keeps finding the tangent point just broken at; the walks
    // must end all the same.
    for (const double bulge : {1e12, -1e15, std::nan(""), 1e300}) {
        CZorVertexArray lens;
        lens.append(CZorVertex(P(0, 0), P(4, 0.001), bulge));
        lens.append(CZorVertex(P(4, 0.001), P(0, 0), bulge));
        for (const double w : {0.0, 0.3}) {
            EXPECT_LE(ZOR::g_vl_split_tang_w(lens, w).len(), 2 + 2 * 2 + 2);
            EXPECT_LE(ZOR::g_vl_split_w(lens, w).len(), 2 + 4 * 3 * 3);
        }
    }
}

TEST(CutTest, PieceBetweenTwoPoints) {
    const CZorVertexArray square = zor_test::Rect(0, 0, 2, 2);
    // From the last corner to the second, across the seam.
    const CZorVertexArray seam = ZOR::g_vl_cut(square, P(0, 2), P(2, 0));
    ASSERT_EQ(seam.len(), 2);
    EXPECT_EQ(seam[0].start, P(0, 2));
    EXPECT_EQ(seam[1].end, P(2, 0));
    const CZorVertexArray inner = ZOR::g_vl_cut(square, P(1, 0), P(2, 1));
    ASSERT_EQ(inner.len(), 2);
    EXPECT_EQ(inner[0], L(P(1, 0), P(2, 0)));
    const CZorVertexArray open = Polygon({P(0, 0), P(4, 0)}, false);
    EXPECT_EQ(ZOR::g_vl_cut(open, P(9, 9), P(2, 0)).len(), 0);
    const CZorVertexArray toEnd = ZOR::g_vl_cut(open, P(1, 0), P(9, 9));
    ASSERT_EQ(toEnd.len(), 1);
    EXPECT_EQ(toEnd[0], L(P(1, 0), P(4, 0)));
}

TEST(BreakTest, TwoPolylinesAgainstEachOther) {
    CZorVertexArray a = Polygon({P(0, 0), P(2, 2)}, false);
    CZorVertexArray b = Polygon({P(0, 2), P(2, 0)}, false);
    CZorVertexArray a0 = a, b0 = b;
    EXPECT_FALSE(ZOR::g_vl_break(a0, b0, 0));
    EXPECT_EQ(a0, a);
    EXPECT_EQ(b0, b);
    EXPECT_FALSE(ZOR::g_vl_break(a, b, 3));
    ASSERT_EQ(a.len(), 2);
    ASSERT_EQ(b.len(), 2);
    EXPECT_EQ(a[0].end, P(1, 1));
    EXPECT_EQ(b[0].end, P(1, 1));

    CZorVertexArray onlyA = Polygon({P(0, 0), P(2, 2)}, false);
    CZorVertexArray other = Polygon({P(0, 2), P(2, 0)}, false);
    ZOR::g_vl_break(onlyA, other, 1);
    EXPECT_EQ(onlyA.len(), 2);
    EXPECT_EQ(other.len(), 1);
}

TEST(BreakTest, OverlapBreaksOnlyAtTheOtherStart) {
    CZorVertexArray a = Polygon({P(0, 0), P(10, 0)}, false);
    CZorVertexArray b = Polygon({P(2, 0), P(8, 0)}, false);
    ZOR::g_vl_break(a, b, 3);
    ASSERT_EQ(a.len(), 2);
    EXPECT_EQ(a[0].end, P(2, 0));
    EXPECT_EQ(b.len(), 1);
}

TEST(BreakTest, ArcsKeepTheirCircles) {
    CZorVertexArray circle = zor_test::Circle(0, 0, 2);
    CZorVertexArray line = Polygon({P(-3, 0.5), P(3, 0.5)}, false);
    ZOR::g_vl_break(circle, line, 3);
    EXPECT_EQ(circle.len(), 4);
    EXPECT_EQ(line.len(), 3);
    for (int i = 0; i < circle.len(); ++i) {
        EXPECT_NEAR(circle[i].radius(), 2.0, 1e-9);
        EXPECT_EQ(circle[i].center(), P(0, 0));
    }
    EXPECT_TRUE(circle.isClosed());
}

// The plain nested loop that the pruned breaking must reproduce, pair by pair.
void PlainBreak(CZorVertexArray& a, CZorVertexArray& b, int flags) {
    CZorPoint3dArray hits;
    for (int i = 0; i < a.len(); ++i) {
        for (int j = 0; j < b.len();) {
            const CZorVertex v = a[i];
            if (flags & 1) {
                if (v.intersectWith(hits, b[j], 0x002)) {
                    a.breakVertex(i, hits[0]);
                    continue;
                }
                const CZorPoint3d q = b[j].start;
                if (a[i].isPoint(q) && q != a[i].start && q != a[i].end) {
                    a.breakVertex(i, q);
                    continue;
                }
            }
            if (flags & 2) {
                if (v.intersectWith(hits, b[j], 0x004)) {
                    b.breakVertex(j, hits[0]);
                    continue;
                }
                const CZorPoint3d q = a[i].start;
                if (b[j].isPoint(q) && q != b[j].start && q != b[j].end) {
                    b.breakVertex(j, q);
                    continue;
                }
            }
            ++j;
        }
    }
}

void ExpectBitEqual(const CZorVertexArray& x, const CZorVertexArray& y) {
    ASSERT_EQ(x.len(), y.len());
    for (int i = 0; i < x.len(); ++i) {
        EXPECT_EQ(x[i].start.x, y[i].start.x);
        EXPECT_EQ(x[i].start.y, y[i].start.y);
        EXPECT_EQ(x[i].end.x, y[i].end.x);
        EXPECT_EQ(x[i].end.y, y[i].end.y);
        EXPECT_EQ(x[i].bulge, y[i].bulge);
    }
}

TEST(BreakTest, PrunedBreakingEqualsThePlainLoopBitForBit) {
    std::mt19937 rng(77);
    int pieces = 0;
    for (int round = 0; round < 6; ++round) {
        const CZorVertexArray a = zor_test::RandomWalk(rng, 80, 40.0, 4.0);
        const CZorVertexArray b = zor_test::RandomWalk(rng, 70, 40.0, 4.0);
        for (int flags : {1, 2, 3}) {
            CZorVertexArray pa = a, pb = b, ra = a, rb = b;
            ZOR::g_vl_break(pa, pb, flags);
            PlainBreak(ra, rb, flags);
            SCOPED_TRACE(testing::Message() << "round " << round << " flags " << flags);
            ExpectBitEqual(pa, ra);
            ExpectBitEqual(pb, rb);
            pieces += pa.len() - a.len() + pb.len() - b.len();
        }
    }
    EXPECT_GT(pieces, 100);  // the walks do cross, so the comparison has work to check
}

TEST(BreakTest, OverlappingSegmentBreaksAtEveryPieceOfTheOther) {
    // A zigzag cuts the shared line of b into many pieces first; the last segment of a lies on
    // that line and is then broken at every piece start, far more often than b has segments.
    for (const bool aFirst : {false, true}) {
        CZorVertexArray a, b;
        for (int k = 0; k < 40; ++k) a.append(L(P(1 + 2 * k, -1), P(2 + 2 * k, 1)));
        a.append(L(P(0, 0), P(100, 0)));
        b.append(L(P(0, 0), P(100, 0)));
        if (aFirst) std::swap(a, b);
        for (int flags : {1, 2, 3}) {
            CZorVertexArray pa = a, pb = b, ra = a, rb = b;
            ZOR::g_vl_break(pa, pb, flags);
            PlainBreak(ra, rb, flags);
            SCOPED_TRACE(testing::Message() << "flags " << flags << " swapped " << aFirst);
            ExpectBitEqual(pa, ra);
            ExpectBitEqual(pb, rb);
        }
    }
}

TEST(BreakTest, DegenerateBulgesEndTheWalk) {
    // Rounding on astronomic circles and NaN arithmetic can make every piece meet the other
    // segment again; the walk must still end, with a bounded number of pieces.
    for (const double bulge : {1e12, -1e15, std::nan(""), 1e-300}) {
        CZorVertexArray a;
        a.append(CZorVertex(P(0, 0), P(4, 0.001), bulge));
        a.append(CZorVertex(P(4, 0.001), P(8, 0), bulge));
        CZorVertexArray b = Polygon({P(1, -3), P(2, 3), P(3, -3), P(6, 4)}, false);
        ZOR::g_vl_break(a, b, 3);
        // Each original segment breaks at most once per end of both and 4 crossings per pair.
        const int perSegment = 3 + 4 + 4 * 2 * 3;
        EXPECT_LE(a.len(), 2 + 2 * perSegment);
        EXPECT_LE(b.len(), 3 + 3 * perSegment);
    }
}

TEST(BreakTest, PiecesBetweenPoints) {
    const CZorVertexArray vl = Polygon({P(0, 0), P(4, 0), P(4, 4)}, false);
    const CZorArrayTempl<CZorVertexArray> none = ZOR::g_vl_break(vl, Points({P(9, 9)}));
    ASSERT_EQ(none.len(), 1u);
    EXPECT_EQ(none[0], vl);
    const CZorArrayTempl<CZorVertexArray> three =
        ZOR::g_vl_break(vl, Points({P(2, 0), P(4, 0), P(4, 3)}));
    ASSERT_EQ(three.len(), 4u);
    EXPECT_EQ(three[0], CZorVertexArray(L(P(0, 0), P(2, 0))));
    EXPECT_EQ(three[3], CZorVertexArray(L(P(4, 3), P(4, 4))));
    EXPECT_EQ(ZOR::g_vl_break(CZorVertexArray(), Points({P(1, 1)})).len(), 0u);
}

TEST(PrimitiveTest, CircleChordsOrBox) {
    const CZorVertexArray circle = zor_test::Circle(0, 0, 1);
    EXPECT_EQ(ZOR::g_vl_primitive(circle), circle);
    CZorVertexArray flat = zor_test::Rect(0, 0, 2, 2);
    flat[0].bulge = 0.4;
    EXPECT_EQ(ZOR::g_vl_primitive(flat), zor_test::Rect(0, 0, 2, 2));
    CZorVertexArray round = zor_test::Rect(0, 0, 2, 2);
    round[0].bulge = 0.5;
    EXPECT_EQ(ZOR::g_vl_primitive(round), zor_test::Rect(0, -0.5, 2, 2));
    CZorPoint3dArray many;
    for (int i = 0; i < 17; ++i) many.append(ZOR::polar(P(0, 0), i * 2 * kPi / 17, 1.0));
    CZorVertexArray polygon;
    polygon.fromPoints(many, true);
    EXPECT_EQ(ZOR::g_vl_primitive(polygon).len(), 4);

    CZorVertexArrayEx ex(round);
    ex.attrNumber = 4;
    ex.attrText = L"slab";
    const CZorVertexArrayEx prim = ZOR::g_vl_primitive(ex);
    EXPECT_EQ(prim.len(), 4);
    EXPECT_EQ(prim.attrNumber, 4);
    EXPECT_TRUE(prim.attrText == L"slab");
}

TEST(DuplicateTest, ReverseTwinsCountAsOne) {
    const CZorVertex a = L(P(0, 0), P(1, 0));
    const CZorVertex b = L(P(1, 0), P(1, 1));
    CZorVertexArray vl;
    vl.append(a).append(b).append(a.reverse()).append(b);
    const CZorVertexArray out = ZOR::g_vl_dupl_remove(vl);
    ASSERT_EQ(out.len(), 2);
    EXPECT_EQ(out[0], a);
    EXPECT_EQ(out[1], b);
}

TEST(NeutralTest, OffsetsFlaggedSegmentsAndRepairsJoints) {
    const CZorVertexArray square = zor_test::Rect(0, 0, 4, 4);
    CZorArrayTempl<int> none;
    EXPECT_EQ(ZOR::vl_neutral(square, none, 1.0), square);
    // Segment 0 flagged, its factor read from the next entry: moved inwards (left) by 0.5.
    CZorArrayTempl<int> flags;
    flags.append(1).append(1);
    const CZorVertexArray out = ZOR::vl_neutral(square, flags, 1.0);
    ASSERT_EQ(out.len(), 4);
    EXPECT_EQ(out[0].start, P(0, 0.5));
    EXPECT_EQ(out[0].end, P(4, 0.5));
    EXPECT_EQ(out[3].end, P(0, 0.5));
    EXPECT_TRUE(out.isClosed());

    // Two collinear segments, the first moved off the line: their joint has no crossing, so
    // the result ends with the segment before it.
    const CZorVertexArray straight = Polygon({P(0, 0), P(4, 0), P(8, 0)}, false);
    const CZorVertexArray cut = ZOR::vl_neutral(straight, flags, 1.0);
    ASSERT_EQ(cut.len(), 1);
    EXPECT_EQ(cut[0], L(P(0, 0.5), P(4, 0.5)));
}

TEST(SortTest, RestoresRunningOrderOfChainsAndLoops) {
    CZorVertexArray shuffled;
    shuffled.append(L(P(0, 0), P(1, 0)));
    shuffled.append(L(P(2, 0), P(3, 0)));
    shuffled.append(L(P(1, 0), P(2, 0)));
    ZOR::g_vl_sort(shuffled);
    EXPECT_EQ(shuffled[1], L(P(1, 0), P(2, 0)));
    EXPECT_EQ(shuffled[2], L(P(2, 0), P(3, 0)));

    // Two loops mixed: each comes out as a chain, the first loop first. The second begins with
    // whichever of its segments the first loop's search left behind it.
    CZorVertexArray loops;
    loops.append(L(P(0, 0), P(1, 0)));
    loops.append(L(P(10, 0), P(11, 0)));
    loops.append(L(P(1, 0), P(0, 1)));
    loops.append(L(P(11, 0), P(10, 1)));
    loops.append(L(P(0, 1), P(0, 0)));
    loops.append(L(P(10, 1), P(10, 0)));
    ZOR::g_vl_sort(loops);
    EXPECT_EQ(loops[1].start, P(1, 0));
    EXPECT_EQ(loops[2].end, P(0, 0));
    EXPECT_EQ(loops[3].start, P(11, 0));
    EXPECT_EQ(loops[4].start, P(10, 1));
    EXPECT_EQ(loops[5].end, P(11, 0));

    // Joints within tolerance take the exact start; reversed segments aren't found.
    CZorVertexArray near;
    near.append(L(P(0, 0), P(1, 3e-6)));
    near.append(L(P(2, 0), P(1, 0)));
    near.append(L(P(1, 0), P(2, 0)));
    ZOR::g_vl_sort(near);
    EXPECT_EQ(near[0].end.y, 0.0);
    EXPECT_EQ(near[1], L(P(1, 0), P(2, 0)));
}

// The plain scan that the indexed search of g_vl_sort must reproduce.
void PlainSort(CZorVertexArray& vl) {
    const int n = vl.len();
    if (n < 2) return;
    for (int i = 1; i < n; ++i) {
        if (vl[i - 1].end == vl[i].start) {
            vl[i - 1].end = vl[i].start;
        } else {
            for (int k = i + 1; k < n; ++k) {
                if (vl[k].start == vl[i - 1].end) {
                    vl[i - 1].end = vl[k].start;
                    std::swap(vl[k], vl[i]);
                    break;
                }
            }
        }
    }
}

TEST(SortTest, IndexedSearchEqualsThePlainScan) {
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> jitter(-4e-6, 4e-6);
    std::uniform_int_distribution<int> corner(0, 5);
    for (int round = 0; round < 10; ++round) {
        // Loops on a coarse lattice, so that many starts share points, with joints that match
        // only within tolerance, shuffled.
        CZorVertexArray vl;
        for (int loop = 0; loop < 30; ++loop) {
            CZorPoint3dArray corners;
            for (int k = 0; k < 4; ++k) corners.append(P(corner(rng), corner(rng)));
            for (int k = 0; k < 4; ++k) {
                const CZorPoint3d& a = corners[k];
                const CZorPoint3d& b = corners[(k + 1) % 4];
                vl.append(L(P(a.x + jitter(rng), a.y), P(b.x, b.y + jitter(rng))));
            }
        }
        for (int i = vl.len() - 1; i > 0; --i) {
            std::swap(vl[i], vl[std::uniform_int_distribution<int>(0, i)(rng)]);
        }
        CZorVertexArray indexed = vl, plain = vl;
        ZOR::g_vl_sort(indexed);
        PlainSort(plain);
        ASSERT_EQ(indexed.len(), plain.len());
        for (int i = 0; i < plain.len(); ++i) {
            EXPECT_EQ(indexed[i].start.x, plain[i].start.x);
            EXPECT_EQ(indexed[i].start.y, plain[i].start.y);
            EXPECT_EQ(indexed[i].end.x, plain[i].end.x);
            EXPECT_EQ(indexed[i].end.y, plain[i].end.y);
        }
    }
}

TEST(SortTest, PointsAlongAPolylineOrSegment) {
    const CZorVertexArray vl = Polygon({P(0, 0), P(4, 0), P(4, 4)}, false);
    const CZorPoint3dArray sorted =
        ZOR::g_pl_sort_vl(Points({P(4, 2), P(9, 9), P(1, 0), P(4, 0), P(1, 0)}), vl);
    ASSERT_EQ(sorted.len(), 4);
    EXPECT_EQ(sorted[0], P(1, 0));
    EXPECT_EQ(sorted[2], P(4, 0));
    EXPECT_EQ(sorted[3], P(4, 2));

    const CZorPoint3dArray line =
        ZOR::g_pl_sort_vx(Points({P(3, 3), P(1, 1), P(2, 2)}), L(P(4, 4), P(0, 0)));
    EXPECT_EQ(line[0], P(3, 3));
    EXPECT_EQ(line[2], P(1, 1));
    const CZorVertex ccw(P(1, 0), P(-1, 0), 1.0);
    const CZorPoint3dArray arc = ZOR::g_pl_sort_vx(
        Points({P(-1, 0), P(0, 1), ZOR::polar(P(0, 0), -0.1, 1.0), P(1, 0)}), ccw);
    EXPECT_EQ(arc[0], ZOR::polar(P(0, 0), -0.1, 1.0));  // just before the start heads the list
    EXPECT_EQ(arc[3], P(-1, 0));
    const CZorPoint3dArray cw = ZOR::g_pl_sort_vx(Points({P(-1, 0), P(0, -1), P(1, 0)}),
                                                  CZorVertex(P(1, 0), P(-1, 0), -1.0));
    EXPECT_EQ(cw[0], P(1, 0));
    EXPECT_EQ(cw[2], P(-1, 0));

    ZOR::CMapDoubleToPoint map;
    EXPECT_TRUE(ZOR::g_pl_sort_arcw(map, Points({P(0, 1), P(1, 0)}), P(0, 0), 0.0));
    EXPECT_EQ(map.getPtLst()[0], P(1, 0));
}

}  // namespace
