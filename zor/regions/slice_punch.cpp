#include "zor/regions/slice_punch.h"

#include "zor/geometry/point3d_array.h"
#include "zor/polyline/point_inside.h"
#include "zor/polyline/split_break.h"
#include "zor/regions/loops.h"
#include "zor/regions/region_boolean.h"

namespace ZOR {

namespace {

// A piece between two crossings counts when the cutter meets it exactly at its two ends.
bool boundedByCutter(const CZorVertexArray& piece, const CZorVertexArray& cut,
                     const CZorPoint3d& from, const CZorPoint3d& to) {
    CZorPoint3dArray found;
    piece.intersectWith(found, cut, 0);
    if (found.len() != 2) return false;
    return (found[0] == from && found[1] == to) || (found[0] == to && found[1] == from);
}

void sliceOpen(const CZorVertexArray& s, const CZorPoint3dArray& points, const CZorVertex& cutter,
               CZorArrayTempl<CZorVertexArray>& right, CZorArrayTempl<CZorVertexArray>& left) {
    CZorArrayTempl<CZorVertexArray> groups;
    CZorVertexArray group;
    for (int i = 0; i < s.len(); ++i) {
        group.append(s[i]);
        if (points.indexOf(s[i].end) >= 0) {
            groups.append(group);
            group = CZorVertexArray();
        }
    }
    if (group.len() > 0) groups.append(group);
    for (int g = 0; g < static_cast<int>(groups.len()); ++g) {
        // A test point just inside the group, away from the cut that bounds it.
        const CZorVertex& seg = g == 0 ? groups[g][-1] : groups[g][0];
        const double factor = g == 0 ? 0.999 : 0.001;
        CZorPoint3d p = seg.mid();
        seg.pointAtDist(p, seg.bulgLen() * factor, true);
        if (cutter.orientp(p) == 1) {
            left.append(groups[g]);
        } else {
            right.append(groups[g]);
        }
    }
}

void sliceClosed(const CZorVertexArray& vl, CZorPoint3dArray points, const CZorVertex& cutter,
                 CZorArrayTempl<CZorVertexArray>& right, CZorArrayTempl<CZorVertexArray>& left) {
    const CZorVertexArray cut(cutter);
    CZorArrayTempl<CZorVertexArray> candidates;
    auto tryBoth = [&](const CZorPoint3d& p, const CZorPoint3d& q) {
        const CZorVertexArray forth = g_vl_cut(vl, p, q);
        if (boundedByCutter(forth, cut, p, q)) candidates.append(forth);
        const CZorVertexArray back = g_vl_cut(vl, q, p);
        if (boundedByCutter(back, cut, q, p)) candidates.append(back);
    };
    if (points.len() > 1) tryBoth(points[0], points[-1]);
    if (points.len() > 2) {
        while (points.len() > 1) {
            tryBoth(points[0], points[1]);
            points.removeAt(0);
        }
    }
    for (int c = 0; c < static_cast<int>(candidates.len()); ++c) {
        if (cutter.orientp(candidates[c][0].mid()) == -1) {
            right.append(candidates[c]);
        } else {
            left.append(candidates[c]);
        }
    }
    if (left.len() > 0 && right.len() > 0) return;
    // Uncut, or cut only where no piece counts: the loop as a whole goes to its side.
    for (int i = 0; i < vl.len(); ++i) {
        const CZorPoint3d m = vl[i].mid();
        if (cutter.isPoint(m)) continue;
        if (cutter.orientp(m) == 1) {
            left.append(vl);
        } else {
            right.append(vl);
        }
        return;
    }
}

template <class VL>
CZorArrayTempl<VL> punch(const VL& vl, const CZorVertexArray& shape, bool inside) {
    CZorPoint3dArray points;
    vl.intersectWith(points, shape, 0);
    const CZorVertexArray s = g_vl_split(vl, points);
    const detail::PointInsideTester tester(shape);
    VL chosen(vl);  // the Ex attributes travel to every piece
    chosen.setLogicalLength(0);
    for (int i = 0; i < s.len(); ++i) {
        const CZorPoint3d m = s[i].mid();
        if (inside ? tester.inside(m, false) : !tester.inside(m, true)) chosen.append(s[i]);
    }
    return g_vl_vll(chosen);
}

}  // namespace

bool g_vl_slice(const CZorVertexArray& vl, const CZorVertex& cutter,
                CZorArrayTempl<CZorVertexArray>& right, CZorArrayTempl<CZorVertexArray>& left) {
    right.removeAll();
    left.removeAll();
    CZorPoint3dArray points;
    vl.intersectWith(points, CZorVertexArray(cutter), 1);
    points = g_pl_sort_vx(points, cutter);
    if (!vl.isClosed()) {
        sliceOpen(g_vl_split(vl, points), points, cutter, right, left);
    } else {
        sliceClosed(vl, points, cutter, right, left);
    }
    return true;
}

bool g_vl_slice(const CZorVertexArray& vl, const CZorPoint3d& p1, const CZorPoint3d& p2,
                CZorArrayTempl<CZorVertexArray>& right, CZorArrayTempl<CZorVertexArray>& left) {
    if (!vl.isContinuous()) return false;
    return g_vl_slice(vl, CZorVertex(p1, p2, 0.0), right, left);
}

CZorArrayTempl<CZorVertexArray> g_reg_slice(const CZorArrayTempl<CZorVertexArray>& loops,
                                            const CZorVertex& cutter) {
    if (CZorPoint3d::tol > cutter.bulgLen()) return loops;
    CZorArrayTempl<CZorVertexArray> result, open;
    for (int i = 0; i < static_cast<int>(loops.len()); ++i) {
        CZorArrayTempl<CZorVertexArray> right, left;
        g_vl_slice(loops[i], cutter, right, left);
        for (int k = 0; k < static_cast<int>(right.len()); ++k) {
            (right[k].isClosed() ? result : open).append(right[k]);
        }
    }
    const CZorVertexArray cut(cutter);
    CZorPoint3dArray cuts;
    for (int i = 0; i < static_cast<int>(open.len()); ++i) {
        CZorPoint3dArray found;
        open[i].intersectWith(found, cut, 0);
        for (int k = 0; k < found.len(); ++k) {
            if (cuts.indexOf(found[k]) < 0) cuts.append(found[k]);
        }
        cuts = g_pl_sort_vx(cuts, cutter);
    }
    auto firstHolding = [&open](const CZorPoint3d& p, CZorVertexArray& out) {
        for (int i = 0; i < static_cast<int>(open.len()); ++i) {
            if (open[i].isPoint(p)) {
                out = open[i];
                return true;
            }
        }
        return false;
    };
    auto removeFirstEqual = [&open](const CZorVertexArray& v) {
        for (int i = 0; i < static_cast<int>(open.len()); ++i) {
            if (open[i] == v) {
                open.removeAt(i);
                return;
            }
        }
    };
    while (open.len() > 0 && cuts.len() >= 2) {
        const CZorPoint3d p = cuts[0];
        const CZorPoint3d q = cuts[1];
        cuts.removeAt(0);
        cuts.removeAt(0);
        CZorVertexArray a, b;
        const bool hasA = firstHolding(p, a);
        const bool hasB = firstHolding(q, b);
        if (hasA) removeFirstEqual(a);
        if (hasB) removeFirstEqual(b);
        if (!hasA || !hasB) continue;
        CZorArrayTempl<CZorVertexArray> parts;
        parts.append(a);
        if (!(a == b)) parts.append(b);
        parts.append(CZorVertexArray(CZorVertex(p, q, 0.0)));
        const CZorArrayTempl<CZorVertexArray> chains = g_vll_join(parts);
        for (int c = 0; c < static_cast<int>(chains.len()); ++c) {
            (chains[c].isClosed() ? result : open).insertAt(0, chains[c]);
        }
    }
    return result;
}

CZorArrayTempl<CZorArrayTempl<CZorVertexArray>> g_region_slice(
    const CZorArrayTempl<CZorVertexArray>& region, const CZorPoint3d& p1, const CZorPoint3d& p2) {
    using Region = CZorArrayTempl<CZorVertexArray>;
    CZorArrayTempl<Region> result;
    CZorArrayTempl<CZorVertexArray> right, left;
    const CZorVertexArray outer = region.len() > 0 ? region[0] : CZorVertexArray();
    if (!g_vl_slice(outer, p1, p2, right, left)) return result;
    if (left.len() == 0) return result.append(region);
    for (int i = 0; i < static_cast<int>(left.len()); ++i) left[i].close(true);
    setOrient(left, CZorVector3d::kZAxis);
    if (right.len() == 0) return result;
    Region first;
    first.append(region[0]);
    result.append(first);
    CZorArrayTempl<CZorVertexArray> elements = region;
    elements += left;
    for (int e = 1; e < static_cast<int>(elements.len()); ++e) {
        Region subtrahend;
        subtrahend.append(elements[e]);
        for (int r = 0; r < static_cast<int>(result.len()); ++r) {
            CZorArrayTempl<Region> t;
            if (!g_region_diff(result[r], subtrahend, t)) continue;
            result[r] = t.len() > 0 ? t[0] : Region();
            for (int k = 1; k < static_cast<int>(t.len()); ++k) result.append(t[k]);
        }
    }
    return result;
}

CZorArrayTempl<CZorVertexArray> g_vl_punch(CZorVertexArray vl, const CZorVertexArray& shape,
                                           bool inside) {
    return punch(vl, shape, inside);
}

CZorArrayTempl<CZorVertexArrayEx> g_vl_punch(CZorVertexArrayEx vl, const CZorVertexArray& shape,
                                             bool inside) {
    return punch(vl, shape, inside);
}

CZorArrayTempl<CZorVertexArrayEx> g_vll_punch(const CZorArrayTempl<CZorVertexArrayEx>& list,
                                              const CZorVertexArray& shape, bool inside) {
    CZorArrayTempl<CZorVertexArrayEx> out;
    for (int i = 0; i < static_cast<int>(list.len()); ++i)
        out += g_vl_punch(list[i], shape, inside);
    return out;
}

CZorArrayTempl<CZorVertexArray> g_vl_punch_reg(CZorVertexArray vl,
                                               const CZorArrayTempl<CZorVertexArray>& region,
                                               bool inside) {
    for (int k = 0; k < static_cast<int>(region.len()); ++k) {
        CZorPoint3dArray points;
        if (vl.intersectWith(points, region[k], 0)) vl = g_vl_split(vl, points);
    }
    CZorVertexArray chosen;
    const CZorVertexArray& outer = region[0];
    for (int i = 0; i < vl.len(); ++i) {
        const CZorPoint3d m = vl[i].mid();
        bool take = false;
        if (!inside) {
            take = !g_vl_pt_inside(outer, m, true);
            for (int h = 1; !take && h < static_cast<int>(region.len()); ++h) {
                take = g_vl_pt_inside(region[h], m, false);
            }
        } else {
            take = g_vl_pt_inside(outer, m, false);
            for (int h = 1; take && h < static_cast<int>(region.len()); ++h) {
                take = !g_vl_pt_inside(region[h], m, true);
            }
        }
        if (take) chosen.append(vl[i]);
    }
    return g_vl_vll(chosen);
}

}  // namespace ZOR
