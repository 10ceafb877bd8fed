#include "zor/polyline/analysis.h"

#include <cmath>
#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

#include "zor/polyline/test_shapes.h"

namespace zor_test {
namespace {

// The plain point test, with the tester's answer and its draws from rand held to it.
bool InsideBothWays(const ZOR::detail::PointInsideTester& tester, const CZorVertexArray& vl,
                    const CZorPoint3d& p, bool onEdge, unsigned int seed) {
    std::srand(seed);
    const bool plain = ZOR::g_vl_pt_inside(vl, p, onEdge);
    const int nextDraw = std::rand();
    std::srand(seed);
    EXPECT_EQ(tester.inside(p, onEdge), plain) << p.x << " " << p.y;
    EXPECT_EQ(std::rand(), nextDraw);  // as many directions drawn
    return plain;
}

TEST(PointInsideTest, EvenOddWithEdgesCornersAndArcs) {
    // A point on the outline answers `onEdge`; z doesn't count. The first ray from (1.5, 1)
    // leaves away from (1, 0) and runs exactly through the corner (2, 2), so it is drawn again.
    // A positive bulge swells to the right of travel: the bottom side of a counter-clockwise
    // square bulges out below and holds points under its chord; a negative one dents it.
    CZorVertexArray out = Rect(0, 0, 2, 2), in = Rect(0, 0, 2, 2);
    out[0].bulge = 0.5;
    in[0].bulge = -0.5;
    const CZorVertexArray square = Rect(0, 0, 2, 2), circle = Circle(0, 0, 1);
    const CZorVertexArray single(A(0, 0, 1, 0, 1.0));
    struct Case {
        const CZorVertexArray* vl;
        CZorPoint3d p;
        bool onEdge, inside;
    };
    for (const Case& c :
         {Case{&square, P(1, 1), false, true}, Case{&square, P(3, 1), true, false},
          Case{&square, P(2, 1), true, true}, Case{&square, P(2, 1), false, false},
          Case{&square, P(0, 0), true, true}, Case{&square, P(1.5, 1), false, true},
          Case{&square, CZorPoint3d(1, 1, 50), false, true}, Case{&single, P(0.5, 0), true, false},
          Case{&circle, P(0.7, 0.7), false, true}, Case{&circle, P(0.72, 0.72), false, false},
          Case{&circle, P(0, -1), true, true}, Case{&out, P(1, -0.4), false, true},
          Case{&in, P(1, 0.1), false, false}, Case{&in, P(1, -0.4), false, false},
          Case{&in, P(1, 0.6), false, true}}) {
        SCOPED_TRACE(testing::Message() << c.vl->len() << ": " << c.p.x << " " << c.p.y);
        const ZOR::detail::PointInsideTester tester(*c.vl);
        EXPECT_EQ(InsideBothWays(tester, *c.vl, c.p, c.onEdge, 3), c.inside);
    }
}

// A closed star of lines and arcs with `n` corners about (50, 50).
CZorVertexArray RandomOutline(std::mt19937& rng, int n) {
    std::uniform_real_distribution<double> radius(20.0, 45.0);
    std::uniform_real_distribution<double> bulge(-0.3, 0.3);
    std::bernoulli_distribution isArc(0.5);
    CZorPoint3dArray corners;
    for (int i = 0; i < n; ++i) corners.append(ZOR::polar(P(50, 50), i * 2 * kPi / n, radius(rng)));
    CZorVertexArray vl;
    vl.fromPoints(corners, true);
    for (int i = 0; i < vl.len(); ++i) {
        if (isArc(rng)) vl[i].bulge = bulge(rng);
    }
    return vl;
}

TEST(PointInsideTest, HierarchyAnswersLikeThePlainTest) {
    // One tester serves all the queries of an outline, so its reused scratch lists are tested.
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> coord(0.0, 100.0);
    for (int round = 0; round < 2; ++round) {
        const CZorVertexArray outline = RandomOutline(rng, 200);
        const ZOR::detail::PointInsideTester tester(outline);
        int inside = 0;
        for (int k = 0; k < 200; ++k) {
            inside += InsideBothWays(tester, outline, P(coord(rng), coord(rng)), true, k + 1);
        }
        // Points on the outline itself.
        for (int i = 0; i < outline.len(); i += 17) {
            EXPECT_TRUE(tester.inside(outline[i].mid(), true));
            EXPECT_FALSE(tester.inside(outline[i].mid(), false));
        }
        EXPECT_GT(inside, 30);
        EXPECT_LT(inside, 190);
    }
}

TEST(PointInsideTest, HierarchyAnswersLikeThePlainTestAfterTheToleranceMoved) {
    // The tester keeps each arc's circle from construction; a centre depends on the point
    // tolerance (a chord within it counts as none), so a tolerance changed since must not
    // change an answer. Points near the arcs' ends and middles sit where that shows.
    // Queries may only lower the tolerance of construction (the boxes stay wide enough).
    std::mt19937 rng(11);
    const CZorVertexArray outline = RandomOutline(rng, 120);
    const double saved = CZorPoint3d::tol;
    CZorPoint3d::tol = 1e-3;
    const ZOR::detail::PointInsideTester tester(outline);
    std::uniform_real_distribution<double> jitter(-3e-3, 3e-3);
    for (const double tol : {1e-3, 1e-6, 1e-12}) {
        CZorPoint3d::tol = tol;
        for (int i = 0; i < outline.len(); ++i) {
            const CZorVertex& s = outline[i];
            for (const CZorPoint3d& at : {s.start, s.mid()}) {
                const CZorPoint3d p(at.x + jitter(rng), at.y + jitter(rng), 0.0);
                std::srand(i + 7);
                const bool plain = ZOR::g_vl_pt_inside(outline, p, true);
                const int nextDraw = std::rand();
                std::srand(i + 7);
                EXPECT_EQ(tester.inside(p, true), plain) << tol << " " << i;
                EXPECT_EQ(std::rand(), nextDraw);
            }
        }
    }
    // Short arcs whose chords lie within the tolerance of construction: the circle taken then
    // is centred on the chord, the one of a finer tolerance is not, and only the latter holds
    // the arc's middle. A shallow notch, and a pocket of nearly a whole circle, whose box must
    // hold the circle of the finer tolerance far beyond the chord's.
    const struct {
        double chord, bulge, rise;
    } arcs[] = {{0.0001, -0.5, 0.0}, {0.0009, -100.0, 0.04}};
    for (const auto& arc : arcs) {
        SCOPED_TRACE(arc.bulge);
        CZorPoint3d::tol = 1e-3;
        CZorVertexArray notched =
            Polygon({P(0, 0), P(5, 0), P(5 + arc.chord, 0), P(10, 0), P(10, 10), P(0, 10)});
        notched[1].bulge = arc.bulge;
        const ZOR::detail::PointInsideTester notchTester(notched);
        CZorPoint3d::tol = 1e-12;
        const CZorPoint3d middle = notched[1].mid();
        ASSERT_GT(middle.y, arc.rise);  // inside the square
        ASSERT_TRUE(notched[1].isPoint(middle));
        EXPECT_FALSE(notchTester.inside(middle, false));
        EXPECT_TRUE(notchTester.inside(middle, true));
    }
    CZorPoint3d::tol = saved;
}

TEST(StaticsTest, PolygonValues) {
    // Either way round the same area, centre and moments about the axes; the principal values
    // follow the signed formula, so they hold for the counter-clockwise list (d negative: phi is
    // pi/2).
    Statics st;
    for (const CZorPoint3dArray& pts : {Points({P(0, 2), P(4, 2), P(4, 0), P(0, 0)}),
                                        Points({P(0, 0), P(4, 0), P(4, 2), P(0, 2)})}) {
        ASSERT_TRUE(ZOR::g_pl_statics(pts, st));
        EXPECT_DOUBLE_EQ(st.area, 8.0);
        ExpectPoint(st.center, 2, 1);
        EXPECT_NEAR(st.ix, 8.0 / 3, 1e-12);
        EXPECT_NEAR(st.iy, 32.0 / 3, 1e-12);
    }
    EXPECT_DOUBLE_EQ(st.center.x, 2.0);
    EXPECT_DOUBLE_EQ(st.center.y, 1.0);
    EXPECT_NEAR(st.ixy, 0.0, 1e-12);
    EXPECT_NEAR(st.i1, 32.0 / 3, 1e-12);
    EXPECT_NEAR(st.i2, 8.0 / 3, 1e-12);
    EXPECT_NEAR(st.phi, kPi / 2, 1e-12);
    // A square has d = 0: no product moment, equal principal moments.
    Statics square;
    ASSERT_TRUE(ZOR::g_pl_statics(Points({P(1, 1), P(3, 1), P(3, 3), P(1, 3)}), square));
    EXPECT_EQ(square.ixy, 0.0);
    EXPECT_EQ(square.phi, 0.0);
    EXPECT_EQ(square.i1, square.i2);
    Statics untouched;
    untouched.area = 99;
    EXPECT_FALSE(ZOR::g_pl_statics(Points({P(0, 0), P(1, 0)}), untouched));
    EXPECT_EQ(untouched.area, 99);
}

TEST(StaticsTest, ShapesWithArcsAgainstClosedForms) {
    Statics circle;
    ASSERT_TRUE(ZOR::g_vl_statics(Circle(3, 4, 2), circle));
    EXPECT_DOUBLE_EQ(circle.area, 4 * kPi);
    EXPECT_DOUBLE_EQ(circle.ix, 4 * kPi);
    EXPECT_DOUBLE_EQ(circle.i2, 4 * kPi);
    EXPECT_EQ(circle.center, P(3, 4));

    // Half disc of radius 10 on the x axis: area pi r^2 / 2, centroid 4r / (3 pi) above it,
    // second moment about the diameter pi r^4 / 8.
    const double r = 10.0;
    Statics st;
    ASSERT_TRUE(ZOR::g_vl_statics(Chain({A(r, 0, -r, 0, 1.0), L(-r, 0, r, 0)}), st));
    const double area = kPi * r * r / 2;
    const double yc = 4 * r / (3 * kPi);
    // Chords within 0.01 of an outward arc lose at most 0.01 times its length, never gain.
    EXPECT_LT(st.area, area);
    EXPECT_GT(st.area, area - 0.01 * kPi * r);
    EXPECT_NEAR(st.center.x, 0.0, 1e-9);
    EXPECT_NEAR(st.center.y, yc, yc * 2e-3);
    const double ixBase = kPi * std::pow(r, 4) / 8;
    EXPECT_NEAR(st.ix, ixBase - area * yc * yc, ixBase * 3e-3);
    EXPECT_NEAR(st.iy, ixBase, ixBase * 3e-3);

    // A 10 x 10 square with a half disc of radius 2 bitten out of its bottom side: the square's
    // values less those of the half disc, moved to the common centre of gravity.
    const CZorVertexArray bitten = Chain({L(0, 0, 3, 0), A(3, 0, 7, 0, -1.0), L(7, 0, 10, 0),
                                          L(10, 0, 10, 10), L(10, 10, 0, 10), L(0, 10, 0, 0)});
    ASSERT_TRUE(ZOR::g_vl_statics(bitten, st));
    const double biteArea = 2 * kPi;
    const double netArea = 100 - biteArea;
    const double ycBitten = (100 * 5 - biteArea * 8 / (3 * kPi)) / netArea;
    // The chords leave slivers of the bite in the shape: a little more area, never less.
    EXPECT_GT(st.area, netArea);
    EXPECT_LT(st.area, netArea + 0.01 * 2 * kPi);
    EXPECT_NEAR(st.center.x, 5.0, 1e-9);
    EXPECT_NEAR(st.center.y, ycBitten, 5e-3);
    const double ixBitten = 10.0 * 1000 / 3 - 2 * kPi - netArea * ycBitten * ycBitten;
    EXPECT_NEAR(st.ix, ixBitten, ixBitten * 3e-3);
    EXPECT_NEAR(st.iy, 10.0 * 1000 / 12 - 2 * kPi, 1e-3 * 830);
}

TEST(StaticsTest, CentreOfGravity) {
    CZorPoint3d out;
    int orient = -5;
    EXPECT_FALSE(ZOR::g_schw_p(CZorPoint3dArray(), out, orient));
    EXPECT_EQ(ZOR::g_schw_p(CZorPoint3dArray(), orient), P(0, 0));
    ASSERT_TRUE(ZOR::g_schw_p(Points({P(2, 3)}), out, orient));
    EXPECT_EQ(out, P(2, 3));
    ASSERT_TRUE(ZOR::g_schw_p(Points({P(0, 0), P(2, 4)}), out, orient));
    EXPECT_EQ(out, P(1, 2));
    EXPECT_EQ(orient, -5);  // not written for one or two points
    const CZorPoint3dArray triangle = Points({P(0, 0), P(3, 0), P(0, 3)});
    ASSERT_TRUE(ZOR::g_schw_p(triangle, out, orient));
    ExpectPoint(out, 1, 1);
    EXPECT_EQ(orient, 1);
    EXPECT_NEAR(ZOR::g_schw_p(triangle.reverse(), orient).x, 1.0, 1e-12);
    EXPECT_EQ(orient, 0);
}

TEST(ModelTest, ShapeCodes) {
    const CZorVertexArray stadium =
        Chain({L(0, 0, 4, 0), A(4, 0, 4, 2, 1.0), L(4, 2, 0, 2), A(0, 2, 0, 0, 1.0)});
    CZorVertexArray turned = Rect(0, 0, 2, 2);
    turned.rotate(kPi / 2, P(0, 0));
    // The turn of the first straight segment onto +X is added to `rot`, not set. A polyline
    // starting with a clockwise arc is reverted, then turned to a straight start. The empty one
    // reads a default segment; the circle turns its first chord.
    struct Case {
        CZorVertexArray vl;
        const wchar_t* name;
        double rotIn, rotOut;
    };
    for (const Case& c :
         {Case{Rect(3, 3, 10, 5), L"0L_2L_4L_6L", 0.0, 0.0},
          Case{stadium, L"0L_2X_4L_6X", 0.0, 0.0},
          Case{stadium.reverse(), L"0L_2X_4L_6X", 0.0, std::nan("")},
          Case{turned, L"0L_2L_4L_6L", 1.0, 1.0 + kPi / 2},
          Case{CZorVertexArray(), L"0L", 0.5, 0.5}, Case{Circle(0, 0, 1), L"0X_4X", 0.0, kPi}}) {
        SCOPED_TRACE(c.name);
        CZorString name;
        double rot = c.rotIn;
        ASSERT_TRUE(ZOR::g_vl_model(c.vl, name, rot));
        EXPECT_TRUE(name == c.name);
        if (!std::isnan(c.rotOut)) {
            EXPECT_NEAR(rot, c.rotOut, 1e-12);
        }
        EXPECT_EQ(CZorPoint3d::tol, 1e-5);
    }
}

TEST(ReferencePointTest, NamedPointsOfAFourSidedOutline) {
    const CZorVertexArray rect = Rect(0, 0, 4, 2);
    const wchar_t rows[] = L"BCT";
    const wchar_t columns[] = L"LCR";
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const wchar_t key[] = {rows[row], columns[column], L'\0'};
            EXPECT_EQ(ZOR::g_vl_point(rect, key), P(2 * column, row)) << row << column;
        }
    }
    EXPECT_EQ(ZOR::g_vl_point(rect, L"XX"), P(0, 0));
    EXPECT_EQ(ZOR::g_vl_point(Polygon({P(5, 5), P(6, 5), P(6, 6)}), L"CC"), P(0, 0));
}

TEST(EqualityTest, SameShapeSamePlaceAndSymmetry) {
    const CZorVertexArray square = Rect(0, 0, 2, 2);
    const CZorVertexArray moved = Rect(100, 0, 102, 2);
    EXPECT_TRUE(ZOR::g_vl_equal(square, moved, 1e-5));
    EXPECT_FALSE(ZOR::g_vl_equal1(square, moved, 1e-5));
    EXPECT_TRUE(ZOR::g_vl_equal1(square, square.reverse(), 1e-5));
    EXPECT_TRUE(ZOR::g_vl_equal(square, Polygon({P(2, 0), P(2, 2), P(0, 2), P(0, 0)}), 1e-5));
    EXPECT_FALSE(ZOR::g_vl_equal(square, Rect(0, 0, 2, 2.1), 1e-5));
    EXPECT_TRUE(ZOR::g_vl_equal(square, Rect(0, 0, 2, 2.001), 0.01));
    // In place, the boxes' diagonals are held to the vector tolerance, not to `tol`.
    EXPECT_FALSE(ZOR::g_vl_equal1(square, Rect(0, 0, 2, 2.001), 0.01));
    CZorVertexArray bulged = square;
    bulged[1].bulge = 0.3;
    EXPECT_FALSE(ZOR::g_vl_equal(square, bulged, 1e-5));
    EXPECT_EQ(CZorPoint3d::tol, 1e-5);

    EXPECT_TRUE(ZOR::g_vl_is_symmetric(Rect(1, 1, 5, 2), 0.0));
    EXPECT_TRUE(ZOR::g_vl_is_symmetric(Rect(1, 1, 5, 2), kPi / 2));
    EXPECT_FALSE(ZOR::g_vl_is_symmetric(Polygon({P(0, 0), P(4, 0), P(5, 2), P(1, 2)}), kPi / 2));
    const CZorVertexArray trapezoid = Polygon({P(0, 0), P(4, 0), P(3, 2), P(1, 2)});
    EXPECT_TRUE(ZOR::g_vl_is_symmetric(trapezoid, kPi / 2));
    EXPECT_FALSE(ZOR::g_vl_is_symmetric(trapezoid, 0.0));
    EXPECT_FALSE(ZOR::g_vl_is_symmetric(CZorVertexArray(), 0.0));
}

TEST(NormalStartTest, StartsAtTheLowerLeftCorner) {
    const CZorVertexArray rect = Polygon({P(4, 3), P(1, 3), P(1, 1), P(4, 1)});
    EXPECT_EQ(ZOR::g_vl_normal(rect, false), Polygon({P(1, 1), P(4, 1), P(4, 3), P(1, 3)}));
    EXPECT_EQ(ZOR::g_vl_normal(rect, true), Rect(0, 0, 3, 2));
}

TEST(OutwardDirectionTest, OneClassPerSegment) {
    EXPECT_EQ(ZOR::g_vl_oktant(Rect(0, 0, 1, 1)), List<int>({6, 0, 2, 4}));
    EXPECT_EQ(ZOR::g_vl_oktant(Rect(0, 0, 1, 1).reverse()), List<int>({4, 2, 0, 6}));
}

TEST(NearestPolylineTest, FirstOfTheNearest) {
    unsigned int index = 77;
    EXPECT_FALSE(ZOR::g_vll_near(CZorArrayTempl<CZorVertexArray>(), P(0, 0), index));
    EXPECT_EQ(index, 77u);
    CZorArrayTempl<CZorVertexArray> vll;
    vll.append(Rect(10, 10, 12, 12)).append(Rect(0, 0, 2, 2)).append(Rect(0, 0, 2, 2));
    ASSERT_TRUE(ZOR::g_vll_near(vll, P(1, -1), index));
    EXPECT_EQ(index, 1u);
}

}  // namespace
}  // namespace zor_test
