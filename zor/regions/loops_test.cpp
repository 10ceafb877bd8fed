#include "zor/regions/loops.h"

#include <gtest/gtest.h>

#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;

// Two triangles meeting at the origin, drawn in one run.
CZorVertexArray figureEight() {
    return chain({L(0, 0, 1, 1), L(1, 1, 1, -1), L(1, -1, 0, 0), L(0, 0, -1, 1), L(-1, 1, -1, -1),
                  L(-1, -1, 0, 0)});
}

TEST(Loops, ChkAsksOnlyClosureOfTwoSegmentsAndDropsJointsByFlags) {
    EXPECT_TRUE(ZOR::g_vl_chk(circle(0, 0, 1), 0));
    const Loop bowTie = chain({L(0, 0, 2, 2), L(2, 2, 2, 0), L(2, 0, 0, 2), L(0, 2, 0, 0)});
    for (int flags : {0, 2, 4, 6}) {
        // Each side meets its neighbours at its ends, which only the flags drop.
        EXPECT_EQ(ZOR::g_vl_chk(rect(0, 0, 1, 1), flags), flags != 0) << flags;
        EXPECT_FALSE(ZOR::g_vl_chk(bowTie, flags)) << flags;
    }
    EXPECT_FALSE(ZOR::g_vl_chk(chain({L(0, 0, 1, 0)}), 6));
    EXPECT_FALSE(ZOR::g_vl_chk(figureEight(), 6));
}

TEST(Loops, RunsCutAtGapsAndLoopsAlsoWhereTheyClose) {
    Loop gap = rect(0, 0, 10, 10);
    gap[1].start = P(10, 1);  // the pair last to first isn't looked at
    const VllEx runs = ZOR::g_vl_vll(zor_g_xvl(gap, 3, L"t", CZorVector3d::kZAxis));
    ASSERT_EQ(runs.len(), 2u);
    EXPECT_EQ(runs[0].len(), 1);
    EXPECT_EQ(runs[1].len(), 3);
    EXPECT_EQ(runs[1].attrNumber, 3);
    EXPECT_TRUE(runs[1].attrText == CZorString(L"t"));
    EXPECT_EQ(ZOR::g_vl_vll(CZorVertexArray()).len(), 0u);

    // A figure of eight is one run, and two loops for g_vl_to_vll.
    EXPECT_EQ(ZOR::g_vl_vll(figureEight()).len(), 1u);
    const Vll eight = ZOR::g_vl_to_vll(figureEight());
    ASSERT_EQ(eight.len(), 2u);
    EXPECT_TRUE(eight[0].isClosed() && eight[1].isClosed());

    // A gap between segments 1 and 2; the last end meets the first start.
    Loop l = chain({L(0, 0, 1, 0), L(1, 0, 2, 0), L(5, 0, 6, 0), L(6, 0, 0, 0)});
    l[0].tag = 9;
    const Vll pieces = ZOR::g_vl_to_vll(l);
    ASSERT_EQ(pieces.len(), 1u);
    ASSERT_EQ(pieces[0].len(), 4);
    EXPECT_TRUE(pieces[0][0].start == P(5, 0));
    EXPECT_EQ(pieces[0][2].tag, 9);
}

TEST(Loops, JoinChainsGreedily) {
    // The second piece runs the wrong way: reversed, joined and normalised into one segment.
    const Vll out = ZOR::g_vll_join(list({chain({L(0, 0, 1, 0)}), chain({L(2, 0, 1, 0)})}));
    EXPECT_EQ(out, list({chain({L(0, 0, 2, 0)})}));
    // Pieces that can't join stay chains of their own, in input order.
    Vll pieces = list({chain({L(0, 0, 1, 0)}), chain({L(5, 5, 6, 5)})});
    EXPECT_EQ(ZOR::g_vll_join(pieces), pieces);
    EXPECT_EQ(ZOR::g_vll_join(Vll()).len(), 0u);
    pieces.append(CZorVertexArray());
    EXPECT_EQ(ZOR::g_vll_join(pieces).len(), 2u);
}

TEST(Loops, Nodes) {
    const Loop triangle = chain({L(0, 0, 4, 0), L(4, 0, 0, 3), L(0, 3, 0, 0)});
    CZorMapTempl<CZorPoint3d, CZorArrayTempl<int>> out;
    ASSERT_TRUE(ZOR::g_vl_nodes(out, triangle, 2, 1e-5));
    ASSERT_EQ(out.len(), 3u);
    CZorArrayTempl<int> at;
    ASSERT_TRUE(out.getAt(P(0, 0), at));
    EXPECT_EQ(at.len(), 2u);
    EXPECT_FALSE(ZOR::g_vl_nodes(out, triangle, 3, 1e-5));
    EXPECT_EQ(out.len(), 0u);
    EXPECT_TRUE(ZOR::g_vl_nodes(out, triangle, -2, 1e-5));
    EXPECT_EQ(out.len(), 3u);

    const Loop y = chain({L(0, 0, 1, 0), L(0, 0, -1, 1), L(0, 0, -1, -1)});
    EXPECT_FALSE(ZOR::g_vl_nodes(out, y, -2, 1e-5));
    ASSERT_TRUE(ZOR::g_vl_nodes(out, y, 3, 1e-5));
    ASSERT_EQ(out.len(), 1u);
    // The tolerance is scoped to the call; a coarser one merges ends 0.01 apart.
    const double before = CZorPoint3d::tol;
    const Loop nearly = chain({L(0, 0, 1, 0), L(1.01, 0, 2, 0)});
    EXPECT_TRUE(ZOR::g_vl_nodes(out, nearly, 2, 0.1));
    EXPECT_FALSE(ZOR::g_vl_nodes(out, nearly, 2, 1e-5));
    EXPECT_EQ(CZorPoint3d::tol, before);
}

TEST(Loops, OrientAndPointAgainstRegion) {
    // Closed members turn counter-clockwise, open ones stay.
    const Loop cw = rect(0, 0, 10, 10).reverse(), open = chain({L(0, 0, 1, 0), L(1, 0, 1, 1)});
    Vll vll = list({cw, open});
    ZOR::setOrient(vll, CZorVector3d::kZAxis);
    EXPECT_EQ(vll, list({Loop(cw).revert(), open}));

    // Inside, in the hole, on the hole, on the outer loop, outside; both forms alike.
    const Region r = region(rect(0, 0, 10, 10), rect(4, 4, 6, 6));
    const struct {
        double x, y;
        int expected;
    } points[] = {{1, 1, 1}, {5, 5, -1}, {4, 5, 0}, {0, 5, 0}, {11, 5, -1}};
    for (const auto& p : points) {
        EXPECT_EQ(ZOR::g_vll_pt_inside(r, P(p.x, p.y)), p.expected) << p.x << " " << p.y;
        EXPECT_EQ(ZOR::g_vll_pt_inside(toEx(r), P(p.x, p.y)), p.expected) << p.x << " " << p.y;
    }
    EXPECT_EQ(ZOR::g_vll_pt_inside(Region(), P(0, 0)), -1);
}

TEST(Loops, PolylineWithinLoop) {
    const Loop sq = rect(0, 0, 10, 10);
    EXPECT_TRUE(ZOR::g_vl_vl_inside(chain({L(1, 1, 9, 9)}), sq));
    EXPECT_TRUE(ZOR::g_vl_vl_inside(chain({L(0, 0, 10, 0)}), sq));  // on the boundary
    EXPECT_FALSE(ZOR::g_vl_vl_inside(chain({L(1, 1, 12, 9)}), sq));
    EXPECT_FALSE(ZOR::g_vl_vl_inside(chain({L(11, 1, 12, 9)}), sq));
    EXPECT_TRUE(ZOR::g_vl_vl_inside(CZorVertexArray(), sq));
    const Loop open = chain({sq[0], sq[1], sq[2]});
    EXPECT_FALSE(ZOR::g_vl_vl_inside(chain({L(0, 0, 10, 0)}), open));
    // A notch reaching out of an L-shaped loop between two inside points.
    const Loop ell = chain({L(0, 0, 10, 0), L(10, 0, 10, 4), L(10, 4, 4, 4), L(4, 4, 4, 10),
                            L(4, 10, 0, 10), L(0, 10, 0, 0)});
    EXPECT_FALSE(ZOR::g_vl_vl_inside(chain({L(2, 8, 8, 2)}), ell));
}

TEST(Loops, Conversions) {
    const CZorVertexArrayEx x = zor_g_xvl(rect(0, 0, 1, 1), 4, nullptr, CZorVector3d::kXAxis);
    EXPECT_EQ(x.attrNumber, 4);
    EXPECT_FALSE(x.attrText.isNull());
    EXPECT_EQ(x.attrText.len(), 0);
    EXPECT_TRUE(x.normal() == CZorVector3d::kXAxis);
    const Vll vll = list({rect(0, 0, 1, 1), circle(0, 0, 1)});
    const VllEx xs = zor_g_xvll(vll, 2, L"w", CZorVector3d::kZAxis);
    ASSERT_EQ(xs.len(), 2u);
    EXPECT_TRUE(xs[1].attrText == CZorString(L"w"));
    EXPECT_EQ(zor_g_gvll(xs), vll);

    const Regions regl = list({vll});
    RegionsEx regx;
    regx[0][0].attrNumber = 8;
    zorReglToReglEx(regx, regl);
    ASSERT_EQ(regx.len(), 1u);
    EXPECT_EQ(regx[0][0].attrNumber, 8);
    Regions back;
    zorReglExToRegl(back, regx);
    EXPECT_EQ(back, regl);

    EXPECT_EQ(zor_g_vll_move(vll, CZorVector3d(2, 3, 0)),
              list({rect(2, 3, 3, 4), circle(2, 3, 1)}));
}

}  // namespace
