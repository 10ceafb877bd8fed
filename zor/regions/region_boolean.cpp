#include "zor/regions/region_boolean.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/geometry/point_grid.h"
#include "zor/polyline/point_inside.h"
#include "zor/polyline/segment_index.h"
#include "zor/polyline/split_break.h"
#include "zor/regions/loop_breaking.h"
#include "zor/regions/loops.h"
#include "zor/regions/region_building.h"
#include "zor/regions/region_index.h"

namespace ZOR {

namespace {

enum class Operation { kUnion, kDiff, kSect };

struct Settings {
    Operation op;
    double factor;     // 0: no tolerance scope
    bool orient;       // setOrient of both operands before the work
    bool textOfFirst;  // the result loops take attrText of a[0]
};

void giveText(CZorVertexArray&, const CZorVertexArray&) {}
void giveText(CZorVertexArrayEx& to, const CZorVertexArrayEx& from) {
    to.attrNumber = 0;
    to.attrText = from.attrText;
}

// How many distinct contact points a.intersectWith(b, 0) would hold, counted to 2: the pairs are
// visited in the same order, so the first point is the same, and any later point that isn't
// `==` to it would have been appended as a second one.
int contactCount(const CZorVertexArray& a, const CZorVertexArray& b) {
    if (a.len() == 0 || b.len() == 0) return 0;
    const detail::SegmentIndex index(b);
    const double margin = detail::boxMargin();
    std::vector<int> candidates;
    CZorPoint3dArray hits;
    bool any = false;
    CZorPoint3d first;
    for (int i = 0; i < a.len(); ++i) {
        index.query(detail::segmentBox(a[i], margin), candidates);
        for (const int j : candidates) {
            if (!a[i].intersectWith(hits, b[j], 0)) continue;
            for (int k = 0; k < hits.len(); ++k) {
                if (!any) {
                    first = hits[k];
                    any = true;
                } else if (hits[k] != first) {
                    return 2;
                }
            }
        }
    }
    return any ? 1 : 0;
}

// The segments of `a` that lie on the boundary of `b`: witnesses against which the segments of
// `b` on the boundary of `a` are compared, found by their start.
class SharedSegments {
  public:
    void add(const CZorVertex& s) { segments_.push_back(s); }
    // Call once all are added.
    void index() {
        std::vector<CZorPoint3d> starts;
        starts.reserve(segments_.size());
        for (const CZorVertex& s : segments_) starts.push_back(s.start);
        grid_ = std::make_unique<detail::PointGrid>(starts);
    }
    // Whether some witness is `==` to the reverse of `s`.
    bool hasTwinOf(const CZorVertex& s) const {
        const CZorVertex r = s.reverse();
        grid_->near(r.start, near_);
        for (const int k : near_) {
            if (segments_[k] == r) return true;
        }
        return false;
    }

  private:
    std::vector<CZorVertex> segments_;
    std::unique_ptr<detail::PointGrid> grid_;
    mutable std::vector<int> near_;
};

// g_vl_vll(kept) for pieces nobody needs afterwards: when they form one run, as they mostly do,
// that run takes over their storage instead of a copy.
template <class VL>
CZorArrayTempl<VL> runsTaking(VL& kept) {
    for (int i = 1; i < kept.len(); ++i) {
        if (kept[i].start != kept[i - 1].end) return g_vl_vll(kept);
    }
    CZorArrayTempl<VL> out;
    if (kept.len() == 0) return out;
    out.setLogicalLength(1);
    out[0] = std::move(kept);
    out[0].norm(false);
    return out;
}

template <class VL>
using Region = CZorArrayTempl<VL>;
template <class VL>
using RegionList = CZorArrayTempl<CZorArrayTempl<VL>>;

// Lowers the scope's tolerance to `factor` times the segment's length, never raising it.
void lowerTolerance(CZorPoint3dTol* scope, double factor, const CZorVertex& s) {
    if (scope == nullptr) return;
    *scope = std::min(factor * s.bulgLen(), CZorPoint3d::tol);
}

template <class VL>
bool regionFrame(Region<VL> a, Region<VL> b, RegionList<VL>& out, const Settings& st) {
    if (a.len() == 0 || b.len() == 0) return false;
    if (st.op != Operation::kUnion) out.removeAll();
    const int contacts = contactCount(a[0], b[0]);
    if (st.op == Operation::kUnion && contacts == 1) return false;
    // Read through const, so that an outer loop without segments isn't given one.
    if (contacts == 0 && !g_vl_pt_inside(a[0], std::as_const(b[0])[0].start, true) &&
        !g_vl_pt_inside(b[0], std::as_const(a[0])[0].start, true)) {
        switch (st.op) {
            case Operation::kUnion:
                out.removeAll();
                out.append(a);
                out.append(b);
                return true;
            case Operation::kDiff:
                out.append(a);
                return false;
            case Operation::kSect:
                return false;
        }
    }
    if (st.op == Operation::kUnion) out.removeAll();

    VL kept;
    if (st.textOfFirst) giveText(kept, a[0]);
    std::unique_ptr<CZorPoint3dTol> scope;
    if (st.factor > 0.0) scope = std::make_unique<CZorPoint3dTol>();
    if (st.orient) {
        setOrient(a, CZorVector3d::kZAxis);
        setOrient(b, CZorVector3d::kZAxis);
    }
    // Every loop gets the interior of its own operand on its left; for a difference, b's loops
    // get the outside of b on their left.
    for (int h = 1; h < static_cast<int>(a.len()); ++h) a[h].revert();
    if (st.op == Operation::kDiff) {
        b[0].revert();
    } else {
        for (int h = 1; h < static_cast<int>(b.len()); ++h) b[h].revert();
    }
    for (int i = 0; i < static_cast<int>(a.len()); ++i) {
        for (int j = 0; j < static_cast<int>(b.len()); ++j) detail::breakBoth(a[i], b[j]);
    }

    // The testers are built at the tolerance before any lowering; their boxes stay
    // conservative as it falls.
    const detail::RegionPointTester inB(detail::loopPointers(b));
    const detail::RegionPointTester inA(detail::loopPointers(a));
    // The segments kept, in order, gathered first so that the list is sized once.
    std::vector<const CZorVertex*> keep;
    const int keepA = st.op == Operation::kSect ? 1 : -1;
    SharedSegments witnesses;
    for (int i = 0; i < static_cast<int>(a.len()); ++i) {
        for (int k = 0; k < a[i].len(); ++k) {
            const CZorVertex& s = a[i][k];
            lowerTolerance(scope.get(), st.factor, s);
            const int r = inB.classify(s.mid());
            if (r == 0) {
                witnesses.add(s);
            } else if (r == keepA) {
                keep.push_back(&s);
            }
        }
    }
    witnesses.index();
    const int keepB = st.op == Operation::kUnion ? -1 : 1;
    for (int j = 0; j < static_cast<int>(b.len()); ++j) {
        for (int k = 0; k < b[j].len(); ++k) {
            const CZorVertex& s = b[j][k];
            lowerTolerance(scope.get(), st.factor, s);
            const int r = inA.classify(s.mid());
            if (r == keepB || (r == 0 && !witnesses.hasTwinOf(s))) keep.push_back(&s);
        }
    }
    kept.setLogicalLength(static_cast<int>(keep.size()));
    for (int k = 0; k < static_cast<int>(keep.size()); ++k) kept[k] = *keep[k];

    g_vl_sort(kept);
    CZorArrayTempl<VL> runs = runsTaking(kept);
    out = detail::regionsTaking(runs);
    for (int r = 0; r < static_cast<int>(out.len()); ++r) {
        for (int h = 1; h < static_cast<int>(out[r].len()); ++h) out[r][h].revert();
    }
    for (int r = static_cast<int>(out.len()) - 1; r >= 0; --r) {
        if (!out[r][0].isClosed()) {
            out.removeAt(r);
            continue;
        }
        for (int h = static_cast<int>(out[r].len()) - 1; h >= 0; --h) {
            if (!out[r][h].isClosed()) out[r].removeAt(h);
        }
    }
    return true;
}

}  // namespace

bool g_region_union(CZorArrayTempl<CZorVertexArray> a, CZorArrayTempl<CZorVertexArray> b,
                    CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& out) {
    return regionFrame(std::move(a), std::move(b), out,
                       Settings{Operation::kUnion, 0.2, false, false});
}

bool g_region_union(CZorArrayTempl<CZorVertexArrayEx> a, CZorArrayTempl<CZorVertexArrayEx> b,
                    CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& out) {
    return regionFrame(std::move(a), std::move(b), out,
                       Settings{Operation::kUnion, 0.02, false, false});
}

bool g_region_diff(CZorArrayTempl<CZorVertexArray> a, CZorArrayTempl<CZorVertexArray> b,
                   CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& out) {
    return regionFrame(std::move(a), std::move(b), out,
                       Settings{Operation::kDiff, 0.02, true, false});
}

bool g_region_diff(CZorArrayTempl<CZorVertexArrayEx> a, CZorArrayTempl<CZorVertexArrayEx> b,
                   CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& out) {
    return regionFrame(std::move(a), std::move(b), out,
                       Settings{Operation::kDiff, 0.02, false, true});
}

bool g_region_sect(CZorArrayTempl<CZorVertexArray> a, CZorArrayTempl<CZorVertexArray> b,
                   CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& out) {
    return regionFrame(std::move(a), std::move(b), out,
                       Settings{Operation::kSect, 0.0, false, false});
}

bool g_region_sect(CZorArrayTempl<CZorVertexArrayEx> a, CZorArrayTempl<CZorVertexArrayEx> b,
                   CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& out) {
    return regionFrame(std::move(a), std::move(b), out,
                       Settings{Operation::kSect, 0.2, false, false});
}

bool g_region_diff(const CZorArrayTempl<CZorVertexArrayEx>& a,
                   const CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& subtrahends,
                   CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& out) {
    CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> work;
    work.append(a);
    for (int s = 0; s < static_cast<int>(subtrahends.len()); ++s) {
        CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> next;
        for (int w = 0; w < static_cast<int>(work.len()); ++w) {
            CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> t;
            if (g_region_diff(work[w], subtrahends[s], t)) {
                next += t;
            } else {
                next.append(work[w]);
            }
        }
        work = next;
    }
    out = work;
    return true;
}

bool reglDiff(const CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& a,
              const CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& subtrahends,
              CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& out) {
    if (a.len() == 0) return false;
    out[0] = a[0];
    for (int s = 0; s < static_cast<int>(subtrahends.len()); ++s) {
        for (int k = 0; k < static_cast<int>(out.len()); ++k) {
            CZorArrayTempl<CZorArrayTempl<CZorVertexArray>> t;
            if (!g_region_diff(out[k], subtrahends[s], t)) continue;
            out[k] = t.len() > 0 ? t[0] : CZorArrayTempl<CZorVertexArray>();
            for (int r = 1; r < static_cast<int>(t.len()); ++r) out.append(t[r]);
        }
        for (int k = static_cast<int>(out.len()) - 1; k >= 0; --k) {
            if (out[k].len() == 0) out.removeAt(k);
        }
    }
    return out.len() > 0;
}

}  // namespace ZOR
