#include "zor/regions/polygon_boolean.h"

#include <vector>

#include "zor/geometry/point3d_array.h"
#include "zor/geometry/point_grid.h"
#include "zor/polyline/point_inside.h"
#include "zor/polyline/split_break.h"
#include "zor/regions/loop_breaking.h"

namespace ZOR {
namespace {

using detail::PointGrid;
using detail::PointInsideTester;

// The segments of a polyline, searched by their start for one `==` to a given segment.
class SegmentLookup {
  public:
    explicit SegmentLookup(const CZorVertexArray& vl) : vl_(vl), grid_(startsOf(vl)) {}
    bool contains(const CZorVertex& s) const {
        grid_.near(s.start, near_);
        for (const int k : near_) {
            if (vl_[k] == s) return true;
        }
        return false;
    }

  private:
    static std::vector<CZorPoint3d> startsOf(const CZorVertexArray& vl) {
        std::vector<CZorPoint3d> out;
        for (int i = 0; i < vl.len(); ++i) out.push_back(vl[i].start);
        return out;
    }
    const CZorVertexArray& vl_;
    PointGrid grid_;
    mutable std::vector<int> near_;
};

}  // namespace

CZorVertexArray g_vl_bool(CZorVertexArray a, CZorVertexArray b, CZorVertexArray::boolOper op) {
    detail::breakBoth(a, b);
    const PointInsideTester inA(a), inB(b);
    const SegmentLookup segmentsOfA(a), segmentsOfB(b);
    CZorVertexArray out;
    for (int i = 0; i < a.len(); ++i) {
        const CZorVertex& s = a[i];
        const CZorPoint3d m = s.mid();
        switch (op) {
            case CZorVertexArray::boolUnion:
            case CZorVertexArray::boolDiff:
                if (!inB.inside(m, true)) out.append(s);
                break;
            case CZorVertexArray::boolSect:
                if (inB.inside(m, false) || (inB.inside(m, true) && segmentsOfB.contains(s))) {
                    out.append(s);
                }
                break;
            default:
                break;
        }
    }
    for (int i = 0; i < b.len(); ++i) {
        const CZorVertex& s = b[i];
        const CZorPoint3d m = s.mid();
        switch (op) {
            case CZorVertexArray::boolUnion:
                if (!inA.inside(m, true)) out.append(s);
                break;
            case CZorVertexArray::boolDiff: {
                const CZorVertex r = s.reverse();
                if (inA.inside(m, false) || (inA.inside(m, true) && segmentsOfA.contains(r))) {
                    out.append(r);
                }
                break;
            }
            case CZorVertexArray::boolSect:
                if (inA.inside(m, false)) out.append(s);
                break;
            default:
                break;
        }
    }
    g_vl_sort(out);
    out.norm(false);
    return out;
}

CZorVertexArrayEx g_vl_bool(CZorVertexArrayEx a, CZorVertexArrayEx b,
                            CZorVertexArray::boolOper op) {
    const CZorVertexArray& plainA = a;
    const CZorVertexArray& plainB = b;
    return CZorVertexArrayEx(g_vl_bool(plainA, plainB, op));
}

}  // namespace ZOR

CZorVertexArray zor_g_vl_vl_trim(const CZorVertexArray& vl, const CZorVertexArray& loop) {
    CZorVertexArray out;
    CZorPoint3dArray points;
    if (!vl.intersectWith(points, loop, 1)) return out;
    const CZorVertexArray s = ZOR::g_vl_split(vl, points);
    const ZOR::detail::PointInsideTester inLoop(loop);
    for (int i = 0; i < s.len(); ++i) {
        if (inLoop.inside(s[i].mid(), true)) out.append(s[i]);
    }
    return out;
}
