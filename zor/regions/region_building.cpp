#include "zor/regions/region_building.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "zor/foundation/map.h"
#include "zor/geometry/point3d_array.h"
#include "zor/polyline/analysis.h"
#include "zor/polyline/numeric.h"
#include "zor/polyline/orientation.h"
#include "zor/polyline/point_inside.h"
#include "zor/regions/loops.h"
#include "zor/regions/region_index.h"

namespace ZOR {

namespace {

// Strict point tests against the loops of a list, each loop's tester built when first asked.
class LazyTesters {
  public:
    explicit LazyTesters(std::vector<const CZorVertexArray*> loops)
        : loops_(std::move(loops)), testers_(loops_.size()) {}
    bool strictlyInside(int i, const CZorPoint3d& p) {
        if (!testers_[i]) testers_[i] = std::make_unique<detail::PointInsideTester>(*loops_[i]);
        return testers_[i]->inside(p, false);
    }

  private:
    std::vector<const CZorVertexArray*> loops_;
    std::vector<std::unique_ptr<detail::PointInsideTester>> testers_;
};

// Where each loop goes in the regions by depth: the loops opening regions, in the order of the
// regions, and the holes as (region, loop) in the order they join.
struct Nesting {
    std::vector<int> outers;
    std::vector<std::pair<int, int>> holes;
};

template <class VL>
Nesting nestByDepth(const CZorArrayTempl<VL>& loops) {
    Nesting nesting;
    const int n = loops.len();
    if (n == 1) {
        // Depth 0 with no other loop: it opens the only region, and nothing needs measuring.
        nesting.outers.push_back(0);
        return nesting;
    }
    const std::vector<const CZorVertexArray*> all = detail::loopPointers(loops);
    // A loop can only hold a point that lies in its box: the others are skipped, as the strict
    // test would reject them.
    const detail::LoopBoxes boxes(all);
    LazyTesters testers(all);
    std::vector<int> depth(n, 0);
    std::vector<int> candidates;
    for (int i = 0; i < n; ++i) {
        if (loops[i].len() < 2) continue;
        const CZorPoint3d p = loops[i][0].mid();
        boxes.at(p, candidates);
        for (const int j : candidates) {
            if (j != i && testers.strictlyInside(j, p)) ++depth[i];
        }
    }
    std::map<int, std::vector<int>> outersByDepth;
    for (int i = 0; i < n; ++i) {
        if (depth[i] % 2 == 0) outersByDepth[depth[i]].push_back(i);
    }
    std::vector<bool> placed(n, false);
    for (const auto& level : outersByDepth) {
        for (const int i : level.second) {
            nesting.outers.push_back(i);
            placed[i] = true;
        }
    }
    if (nesting.outers.empty()) return nesting;
    const detail::LoopBoxes outerBoxes(boxes, nesting.outers);
    std::vector<const CZorVertexArray*> outerLoops;
    for (const int i : nesting.outers) outerLoops.push_back(all[i]);
    LazyTesters outerTesters(outerLoops);
    for (int i = 0; i < n; ++i) {
        if (placed[i]) continue;
        const CZorPoint3d p = loops[i][0].mid();
        outerBoxes.at(p, candidates);
        for (auto r = candidates.rbegin(); r != candidates.rend(); ++r) {
            if (outerTesters.strictlyInside(*r, p)) {
                nesting.holes.emplace_back(*r, i);
                break;
            }
        }
    }
    return nesting;
}

// The regions by depth, taking over the storage of the loops (`loops` keeps emptied members).
template <class VL>
CZorArrayTempl<CZorArrayTempl<VL>> regionsByDepthTaking(CZorArrayTempl<VL>& loops) {
    const Nesting nesting = nestByDepth(loops);
    CZorArrayTempl<CZorArrayTempl<VL>> out;
    out.setLogicalLength(static_cast<std::uint32_t>(nesting.outers.size()));
    const auto take = [&](int r, int i) {
        out[r].setLogicalLength(out[r].len() + 1);
        out[r][-1] = std::move(loops[i]);
    };
    for (int r = 0; r < static_cast<int>(nesting.outers.size()); ++r) take(r, nesting.outers[r]);
    for (const auto& [r, i] : nesting.holes) take(r, i);
    return out;
}

template <class VL>
CZorArrayTempl<CZorArrayTempl<VL>> regionsByDepth(const CZorArrayTempl<VL>& loops) {
    CZorArrayTempl<VL> copy = loops;
    return regionsByDepthTaking(copy);
}

bool boxesApart(const CZorVertexArray& a, const CZorVertexArray& b) {
    CZorPoint3d alo, ahi, blo, bhi;
    if (!a.extents(alo, ahi) || !b.extents(blo, bhi)) return false;
    const double m = detail::boxMargin();
    return alo.x > bhi.x + m || blo.x > ahi.x + m || alo.y > bhi.y + m || blo.y > ahi.y + m;
}

bool holds(const std::vector<int>& list, int v) {
    return std::find(list.begin(), list.end(), v) != list.end();
}

void eraseValue(std::vector<int>& list, int v) {
    list.erase(std::remove(list.begin(), list.end(), v), list.end());
}

// `plainOrder` selects the behaviour of the plain form (outers to the front, non-key members
// kept, pass limit); the Ex form appends and always empties a list of several containers.
template <class VL>
CZorArrayTempl<CZorArrayTempl<VL>> regionsByPairs(const CZorArrayTempl<VL>& loops,
                                                  unsigned long flags, bool plainOrder) {
    using Region = CZorArrayTempl<VL>;
    CZorArrayTempl<Region> out;
    const int n = loops.len();
    std::vector<int> dropped, crossers, outers, skipped;
    std::map<int, std::vector<int>> containers;
    auto addOuter = [&](int i) {
        if (plainOrder) {
            outers.insert(outers.begin(), i);
        } else {
            outers.push_back(i);
        }
    };
    auto addOnce = [](std::vector<int>& list, int v) {
        if (!holds(list, v)) list.push_back(v);
    };
    CZorPoint3dArray points;
    for (int i = 0; i < n; ++i) {
        std::vector<int> c;
        for (int j = 0; j < n; ++j) {
            if (j == i) continue;
            // Loops whose boxes are apart neither cross nor contain each other.
            if (boxesApart(loops[i], loops[j])) continue;
            if (loops[i].intersectWith(points, loops[j], 1)) {
                std::vector<int>& list = (flags & 4) == 0 ? dropped : crossers;
                addOnce(list, i);
                addOnce(list, j);
                continue;
            }
            if (holds(dropped, j)) continue;
            if (g_vl_vl_inside(loops[i], loops[j])) c.push_back(j);
        }
        if (holds(dropped, i)) continue;
        if (c.empty()) {
            addOuter(i);
        } else {
            containers[i] = c;
        }
    }
    for (const auto& entry : containers) {
        if (entry.second.size() % 2 != 0) continue;
        if ((flags & 1) == 0) {
            addOuter(entry.first);
        } else {
            skipped.push_back(entry.first);
        }
    }
    const long passLimit = static_cast<long>(n) * static_cast<long>(n);
    for (auto& entry : containers) {
        std::vector<int> c = entry.second;
        long passes = 0;
        while (c.size() > 1) {
            if (++passes > passLimit) return CZorArrayTempl<Region>();
            const std::vector<int> snapshot = c;
            for (const int m : snapshot) {
                const auto key = containers.find(m);
                if (key != containers.end()) {
                    for (const int k : key->second) eraseValue(c, k);
                    eraseValue(c, m);
                } else if (!plainOrder) {
                    eraseValue(c, m);
                }
            }
        }
        entry.second = c;
    }
    for (const int o : outers) {
        Region region;
        region.append(loops[o]);
        if ((flags & 2) == 0) {
            for (const auto& entry : containers) {
                const int k = entry.first;
                if (!holds(entry.second, o)) continue;
                if (holds(dropped, k) || holds(outers, k) || holds(skipped, k)) continue;
                region.append(loops[k]);
            }
        }
        out.append(region);
    }
    return out;
}

bool mirrorsItself(const CZorVertexArray& v, double ang, const CZorPoint3d& m) {
    CZorVertexArray copy = v;
    copy.mirror(ang, m);
    return g_vl_equal(v, copy, CZorPoint3d::tol);
}

CZorPoint3dArray boxCorners(const CZorVertexArray& v) {
    return g_vl_extrect(v, 0.0).pts(false, 0.01);
}

}  // namespace

CZorArrayTempl<CZorArrayTempl<CZorVertexArray>> g_vll_region(
    const CZorArrayTempl<CZorVertexArray>& loops) {
    return regionsByDepth(loops);
}

CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> g_vll_region(
    const CZorArrayTempl<CZorVertexArrayEx>& loops) {
    return regionsByDepth(loops);
}

CZorArrayTempl<CZorArrayTempl<CZorVertexArray>> g_vll_regions(
    const CZorArrayTempl<CZorVertexArray>& loops, unsigned long flags) {
    return regionsByPairs(loops, flags, true);
}

CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> g_vll_regions(
    const CZorArrayTempl<CZorVertexArrayEx>& loops, unsigned long flags) {
    return regionsByPairs(loops, flags, false);
}

CZorArrayTempl<CZorVertexArray> g_vll_regions_prepare(const CZorArrayTempl<CZorVertexArray>& in) {
    CZorArrayTempl<CZorVertexArray> out;
    for (int i = 0; i < static_cast<int>(in.len()); ++i) {
        if (in[i].len() == 0 || !in[i].isClosed()) continue;
        CZorVertexArray copy = in[i];
        if (!g_vl_orient(in[i], CZorVector3d::kZAxis)) copy.revert();
        out.append(copy);
    }
    return out;
}

bool g_region_is_symmetric(const CZorArrayTempl<CZorVertexArray>& region, double ang) {
    if (region.len() == 0) return false;
    const CZorPoint3dArray e = g_vl_extmax(region[0], 0.0);
    if (e.len() < 2) return false;
    const CZorPoint3d m = CZorVertex(e[0], e[1], 0.0).mid();
    const CZorVertexArray r = g_vl_extrect(region[0], 0.0);
    if (!mirrorsItself(region[0], ang, m)) return false;
    CZorArrayTempl<CZorVertexArray> w = region;
    w.removeAt(0);

    const double d = m.distanceTo(e[0]);
    CZorVertexArray rays;
    rays.append(CZorVertex(m, polar(m, ang, d), 0.0));
    rays.append(CZorVertex(m, polar(m, ang + detail::kPi, d), 0.0));
    const CZorPoint3dArray ends = r.intersectWith(rays, 0);
    CZorArrayTempl<CZorVertexArray> axisLoops;
    if (ends.len() >= 2) {
        const CZorVertexArray axis(CZorVertex(ends[0], ends[1], 0.0));
        for (int k = static_cast<int>(w.len()) - 1; k >= 0; --k) {
            if (w[k].intersectWith(axis, 0).len() > 0) {
                axisLoops.append(w[k]);
                w.removeAt(k);
            }
        }
    }
    for (int k = 0; k < static_cast<int>(axisLoops.len()); ++k) {
        const CZorVertexArray& v = axisLoops[k];
        if (!mirrorsItself(v, ang, m)) return false;
        CZorVertexArray x = g_vl_extrect(v, 0.0);
        CZorVertexArray y = x;
        y.mirror(ang, m);
        if (!g_pl_equal(x.pts(false, 0.01), y.pts(false, 0.01))) return false;
    }
    while (w.len() >= 2) {
        const int last = static_cast<int>(w.len()) - 1;
        CZorVertexArray c = w[last];
        c.mirror(ang, m);
        const CZorPoint3dArray cBox = boxCorners(c);
        int match = -1;
        for (int u = last - 1; u >= 0; --u) {
            if (g_vl_equal(w[u], c, CZorPoint3d::tol) && g_pl_equal(boxCorners(w[u]), cBox)) {
                match = u;
                break;
            }
        }
        if (match < 0) return false;
        w.removeAt(last);
        w.removeAt(match);
    }
    return w.len() == 0;
}

namespace detail {

CZorArrayTempl<CZorArrayTempl<CZorVertexArray>> regionsTaking(
    CZorArrayTempl<CZorVertexArray>& loops) {
    return regionsByDepthTaking(loops);
}

CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> regionsTaking(
    CZorArrayTempl<CZorVertexArrayEx>& loops) {
    return regionsByDepthTaking(loops);
}

}  // namespace detail

}  // namespace ZOR
