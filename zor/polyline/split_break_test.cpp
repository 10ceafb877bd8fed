#include "zor/polyline/split_break.h"

#include <cmath>
#include <random>
#include <utility>

#include <gtest/gtest.h>

#include "zor/polyline/test_shapes.h"

namespace zor_test {
namespace {

TEST(SplitTest, AtPoints) {
    const CZorVertexArray vl = Polygon({P(0, 0), P(4, 0), P(4, 4)}, false);
    // Joints, points off the polyline or not finite change nothing.
    for (const CZorPoint3dArray& pts : {Points({P(4, 0)}), CZorPoint3dArray(), Points({P(9, 9)}),
                                        Points({P(std::nan(""), 0), P(1, HUGE_VAL)})}) {
        EXPECT_EQ(ZOR::g_vl_split(vl, pts), vl);
    }
    // A point given twice breaks once: the second finds it at the new end.
    EXPECT_EQ(ZOR::g_vl_split(vl, Points({P(1, 0), P(1, 0)})).len(), 3);
    EXPECT_EQ(ZOR::g_vl_split(vl, Points({P(3, 0), P(1, 0), P(4, 2), P(9, 9)})),
              Polygon({P(0, 0), P(1, 0), P(3, 0), P(4, 0), P(4, 2), P(4, 4)}, false));
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

TEST(SplitTest, FilteredSplitEqualsThePlainWalkBitForBit) {
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> coord(0.0, 40.0);
    int pieces = 0;
    for (int round = 0; round < 4; ++round) {
        const CZorVertexArray vl = RandomWalk(rng, 60, 40.0, 4.0);
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

TEST(SplitTest, EqualSweepsAndChords) {
    const CZorVertexArray half(A(1, 0, -1, 0, 1.0));
    const CZorVertexArray thirds = ZOR::g_vl_split_ang(half, kPi / 2);
    ASSERT_EQ(thirds.len(), 3);
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(thirds[i].bulge, std::tan(kPi / 12), 1e-12);
    // An angle over the sweep, a clockwise (negative) sweep, and angles that give no count:
    // two pieces, not an endless split.
    EXPECT_EQ(ZOR::g_vl_split_ang(half, 10.0).len(), 2);
    EXPECT_EQ(ZOR::g_vl_split_ang(half.reverse(), 0.1).len(), 2);
    EXPECT_EQ(ZOR::g_vl_split_ang(half, 0.0).len(), 2);
    EXPECT_EQ(ZOR::g_vl_split_ang(half, std::nan("")).len(), 2);

    const CZorVertexArray chords = ZOR::g_vl_split_dif(Circle(0, 0, 10), 0.1);
    EXPECT_TRUE(chords.isClosed());
    EXPECT_EQ(chords.len(), 24);
    for (int i = 0; i < chords.len(); ++i) {
        EXPECT_EQ(chords[i].bulge, 0.0);
        EXPECT_LE(10.0 - chords[i].mid().distanceTo(P(0, 0)), 0.1);
    }
    CZorArrayTempl<CZorVertexArray> vll;
    vll.append(Circle(0, 0, 10)).append(Polygon({P(0, 0), P(1, 0)}, false));
    const CZorArrayTempl<CZorVertexArray> out = ZOR::g_vll_split_dif(vll, 0.1);
    ASSERT_EQ(out.len(), 2u);
    EXPECT_EQ(out[0], chords);
    EXPECT_EQ(out[1], vll[1]);
}

TEST(SplitTest, TangentDirectionsAndShadowEdges) {
    // Tangent direction 0 at (0, 1) on the upper half and (0, -1) on the lower.
    const CZorVertexArray atTop = ZOR::g_vl_split_tang_w(Circle(0, 0, 1), 0.0);
    ASSERT_EQ(atTop.len(), 4);
    EXPECT_EQ(atTop[0].end, P(0, 1));
    EXPECT_EQ(atTop[2].end, P(0, -1));
    // A step lit along +X: the free corner (10, 4) throws its shadow onto the left side at
    // (0, 4). The outline starts at its corner furthest against the light, searched from
    // segment 1 on: (0, 8), although segment 0 starts at (0, 0) as far out.
    const CZorVertexArray step = Polygon({P(0, 0), P(10, 0), P(10, 4), P(6, 4), P(6, 8), P(0, 8)});
    EXPECT_EQ(ZOR::g_vl_split_w(step, 0.0),
              Polygon({P(0, 8), P(0, 4), P(0, 0), P(10, 0), P(10, 4), P(6, 4), P(6, 8)}));
    // Lit along -X nothing is shadowed; the first of the equally far corners leads.
    EXPECT_EQ(ZOR::g_vl_split_w(step, kPi),
              Polygon({P(10, 0), P(10, 4), P(6, 4), P(6, 8), P(0, 8), P(0, 0)}));
}

TEST(CutTest, PiecesBetweenPoints) {
    const CZorVertexArray square = Rect(0, 0, 2, 2);
    // From the last corner to the second, across the seam.
    EXPECT_EQ(ZOR::g_vl_cut(square, P(0, 2), P(2, 0)), Polygon({P(0, 2), P(0, 0), P(2, 0)}, false));
    EXPECT_EQ(ZOR::g_vl_cut(square, P(1, 0), P(2, 1)), Polygon({P(1, 0), P(2, 0), P(2, 1)}, false));
    // A start off the polyline gives nothing, an end off it runs to the end.
    const CZorVertexArray open(L(0, 0, 4, 0));
    EXPECT_EQ(ZOR::g_vl_cut(open, P(9, 9), P(2, 0)).len(), 0);
    EXPECT_EQ(ZOR::g_vl_cut(open, P(1, 0), P(9, 9)), CZorVertexArray(L(1, 0, 4, 0)));
    // Pieces between points, each normalised: none on the polyline gives it whole.
    const CZorVertexArray vl = Polygon({P(0, 0), P(4, 0), P(4, 4)}, false);
    EXPECT_EQ(ZOR::g_vl_break(vl, Points({P(9, 9)})), List({vl}));
    EXPECT_EQ(ZOR::g_vl_break(vl, Points({P(2, 0), P(4, 0), P(4, 3)})),
              List({CZorVertexArray(L(0, 0, 2, 0)), CZorVertexArray(L(2, 0, 4, 0)),
                    CZorVertexArray(L(4, 0, 4, 3)), CZorVertexArray(L(4, 3, 4, 4))}));
    EXPECT_EQ(ZOR::g_vl_break(CZorVertexArray(), Points({P(1, 1)})).len(), 0u);
}

TEST(BreakTest, TwoPolylinesAgainstEachOther) {
    const CZorVertexArray a0(L(0, 0, 2, 2)), b0(L(0, 2, 2, 0));
    struct Case {
        int flags;
        CZorVertexArray a, b;
    };
    for (const Case& c : {Case{0, a0, b0}, Case{1, Polygon({P(0, 0), P(1, 1), P(2, 2)}, false), b0},
                          Case{3, Polygon({P(0, 0), P(1, 1), P(2, 2)}, false),
                               Polygon({P(0, 2), P(1, 1), P(2, 0)}, false)}}) {
        SCOPED_TRACE(c.flags);
        CZorVertexArray a = a0, b = b0;
        EXPECT_FALSE(ZOR::g_vl_break(a, b, c.flags));
        EXPECT_EQ(a, c.a);
        EXPECT_EQ(b, c.b);
    }
    // Of a segment that overlaps another only the start is tested: (8, 0) breaks nothing.
    CZorVertexArray a(L(0, 0, 10, 0)), b(L(2, 0, 8, 0));
    ZOR::g_vl_break(a, b, 3);
    EXPECT_EQ(a, Polygon({P(0, 0), P(2, 0), P(10, 0)}, false));
    EXPECT_EQ(b, CZorVertexArray(L(2, 0, 8, 0)));
    // Arcs keep their circles.
    CZorVertexArray circle = Circle(0, 0, 2);
    CZorVertexArray line(L(-3, 0.5, 3, 0.5));
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

// Breaks copies of `a` and `b` both ways with every flag; the number of pieces added.
int ExpectBreakLikeThePlainLoop(const CZorVertexArray& a, const CZorVertexArray& b) {
    int pieces = 0;
    for (int flags : {1, 2, 3}) {
        SCOPED_TRACE(flags);
        CZorVertexArray pa = a, pb = b, ra = a, rb = b;
        ZOR::g_vl_break(pa, pb, flags);
        PlainBreak(ra, rb, flags);
        ExpectBitEqual(pa, ra);
        ExpectBitEqual(pb, rb);
        pieces += pa.len() - a.len() + pb.len() - b.len();
    }
    return pieces;
}

TEST(BreakTest, PrunedBreakingEqualsThePlainLoopBitForBit) {
    std::mt19937 rng(77);
    int pieces = 0;
    for (int round = 0; round < 6; ++round) {
        SCOPED_TRACE(round);
        const CZorVertexArray a = RandomWalk(rng, 80, 40.0, 4.0);
        pieces += ExpectBreakLikeThePlainLoop(a, RandomWalk(rng, 70, 40.0, 4.0));
    }
    EXPECT_GT(pieces, 100);  // the walks do cross, so the comparison has work to check
    // A zigzag cuts the shared line of b into many pieces first; the last segment of a lies on
    // that line and is then broken at every piece start, far more often than b has segments.
    CZorVertexArray zigzag, line(L(0, 0, 100, 0));
    for (int k = 0; k < 40; ++k) zigzag.append(L(1 + 2 * k, -1, 2 + 2 * k, 1));
    zigzag.append(L(0, 0, 100, 0));
    ExpectBreakLikeThePlainLoop(zigzag, line);
    ExpectBreakLikeThePlainLoop(line, zigzag);
}

TEST(BreakTest, DegenerateBulgesEndTheWalks) {
    // On astronomic circles rounding keeps finding the point just broken at, and NaN arithmetic
    // makes every piece meet the other segment again; the walks must end all the same, with a
    // bounded number of pieces. Breaking: each original segment breaks at most once per end of
    // both and 4 crossings per pair.
    const int perSegment = 3 + 4 + 4 * 2 * 3;
    for (const double bulge : {1e12, -1e15, std::nan(""), 1e300, 1e-300}) {
        SCOPED_TRACE(bulge);
        const CZorVertexArray lens = Chain({A(0, 0, 4, 0.001, bulge), A(4, 0.001, 0, 0, bulge)});
        for (const double w : {0.0, 0.3}) {
            EXPECT_LE(ZOR::g_vl_split_tang_w(lens, w).len(), 2 + 2 * 2 + 2);
            EXPECT_LE(ZOR::g_vl_split_w(lens, w).len(), 2 + 4 * 3 * 3);
        }
        CZorVertexArray a = Chain({A(0, 0, 4, 0.001, bulge), A(4, 0.001, 8, 0, bulge)});
        CZorVertexArray b = Polygon({P(1, -3), P(2, 3), P(3, -3), P(6, 4)}, false);
        ZOR::g_vl_break(a, b, 3);
        EXPECT_LE(a.len(), 2 + 2 * perSegment);
        EXPECT_LE(b.len(), 3 + 3 * perSegment);
    }
}

TEST(PrimitiveTest, CircleChordsBoxAndDuplicates) {
    const CZorVertexArray circle = Circle(0, 0, 1);
    EXPECT_EQ(ZOR::g_vl_primitive(circle), circle);
    // Bulges below 0.5 give the chord polygon; 0.5 isn't below it and gives the box.
    CZorVertexArray bulged = Rect(0, 0, 2, 2);
    bulged[0].bulge = 0.4;
    EXPECT_EQ(ZOR::g_vl_primitive(bulged), Rect(0, 0, 2, 2));
    bulged[0].bulge = 0.5;
    EXPECT_EQ(ZOR::g_vl_primitive(bulged), Rect(0, -0.5, 2, 2));
    CZorPoint3dArray many;
    for (int i = 0; i < 17; ++i) many.append(ZOR::polar(P(0, 0), i * 2 * kPi / 17, 1.0));
    CZorVertexArray polygon;
    polygon.fromPoints(many, true);
    EXPECT_EQ(ZOR::g_vl_primitive(polygon).len(), 4);

    CZorVertexArrayEx ex(bulged);
    ex.attrNumber = 4;
    ex.attrText = L"slab";
    const CZorVertexArrayEx prim = ZOR::g_vl_primitive(ex);
    EXPECT_EQ(prim, Rect(0, -0.5, 2, 2));
    EXPECT_EQ(prim.attrNumber, 4);
    EXPECT_TRUE(prim.attrText == L"slab");
    // Without repeats; a segment and its reverse count as one, the first stays.
    const CZorVertex a = L(0, 0, 1, 0), b = L(1, 0, 1, 1);
    EXPECT_EQ(ZOR::g_vl_dupl_remove(Chain({a, b, a.reverse(), b})), Chain({a, b}));
}

TEST(NeutralTest, OffsetsFlaggedSegmentsAndRepairsJoints) {
    const CZorVertexArray square = Rect(0, 0, 4, 4);
    EXPECT_EQ(ZOR::vl_neutral(square, CZorArrayTempl<int>(), 1.0), square);
    // Segment 0 flagged, its factor read from the next entry: moved inwards (left) by 0.5.
    CZorArrayTempl<int> flags;
    flags.append(1).append(1);
    EXPECT_EQ(ZOR::vl_neutral(square, flags, 1.0),
              Polygon({P(0, 0.5), P(4, 0.5), P(4, 4), P(0, 4)}));
    // Two collinear segments, the first moved off the line: their joint has no crossing, so
    // the result ends with the segment before it.
    EXPECT_EQ(ZOR::vl_neutral(Polygon({P(0, 0), P(4, 0), P(8, 0)}, false), flags, 1.0),
              CZorVertexArray(L(0, 0.5, 4, 0.5)));
}

TEST(SortTest, RestoresRunningOrderOfChainsAndLoops) {
    CZorVertexArray shuffled = Chain({L(0, 0, 1, 0), L(2, 0, 3, 0), L(1, 0, 2, 0)});
    ZOR::g_vl_sort(shuffled);
    EXPECT_EQ(shuffled, Polygon({P(0, 0), P(1, 0), P(2, 0), P(3, 0)}, false));
    // Two loops mixed: each comes out as a chain, the first loop first. The second begins with
    // whichever of its segments the first loop's search left behind it.
    CZorVertexArray loops = Chain({L(0, 0, 1, 0), L(10, 0, 11, 0), L(1, 0, 0, 1), L(11, 0, 10, 1),
                                   L(0, 1, 0, 0), L(10, 1, 10, 0)});
    ZOR::g_vl_sort(loops);
    EXPECT_EQ(loops, Chain({L(0, 0, 1, 0), L(1, 0, 0, 1), L(0, 1, 0, 0), L(11, 0, 10, 1),
                            L(10, 1, 10, 0), L(10, 0, 11, 0)}));
    // Joints within tolerance take the exact start; reversed segments aren't found.
    CZorVertexArray near = Chain({L(0, 0, 1, 3e-6), L(2, 0, 1, 0), L(1, 0, 2, 0)});
    ZOR::g_vl_sort(near);
    EXPECT_EQ(near[0].end.y, 0.0);
    EXPECT_EQ(near, Chain({L(0, 0, 1, 0), L(1, 0, 2, 0), L(2, 0, 1, 0)}));
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
                vl.append(L(a.x + jitter(rng), a.y, b.x, b.y + jitter(rng)));
            }
        }
        for (int i = vl.len() - 1; i > 0; --i) {
            std::swap(vl[i], vl[std::uniform_int_distribution<int>(0, i)(rng)]);
        }
        CZorVertexArray indexed = vl, plain = vl;
        ZOR::g_vl_sort(indexed);
        PlainSort(plain);
        ExpectBitEqual(indexed, plain);
    }
}

TEST(SortTest, PointsAlongAPolylineOrSegment) {
    // A point off the polyline drops out; equal distances keep their input order.
    const CZorVertexArray vl = Polygon({P(0, 0), P(4, 0), P(4, 4)}, false);
    EXPECT_EQ(ZOR::g_pl_sort_vl(Points({P(4, 2), P(9, 9), P(1, 0), P(4, 0), P(1, 0)}), vl),
              Points({P(1, 0), P(1, 0), P(4, 0), P(4, 2)}));
    EXPECT_EQ(ZOR::g_pl_sort_vx(Points({P(3, 3), P(1, 1), P(2, 2)}), L(4, 4, 0, 0)),
              Points({P(3, 3), P(2, 2), P(1, 1)}));
    // Just before the start of an arc heads the list; clockwise arcs walk backwards.
    const CZorPoint3d before = ZOR::polar(P(0, 0), -0.1, 1.0);
    EXPECT_EQ(ZOR::g_pl_sort_vx(Points({P(-1, 0), P(0, 1), before, P(1, 0)}), A(1, 0, -1, 0, 1.0)),
              Points({before, P(1, 0), P(0, 1), P(-1, 0)}));
    EXPECT_EQ(ZOR::g_pl_sort_vx(Points({P(-1, 0), P(0, -1), P(1, 0)}), A(1, 0, -1, 0, -1.0)),
              Points({P(1, 0), P(0, -1), P(-1, 0)}));
    ZOR::CMapDoubleToPoint map;
    EXPECT_TRUE(ZOR::g_pl_sort_arcw(map, Points({P(0, 1), P(1, 0)}), P(0, 0), 0.0));
    EXPECT_EQ(map.getPtLst()[0], P(1, 0));
}

}  // namespace
}  // namespace zor_test
