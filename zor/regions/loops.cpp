#include "zor/regions/loops.h"

#include "zor/geometry/formulas.h"
#include "zor/geometry/matrix3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/polyline/numeric.h"
#include "zor/polyline/orientation.h"
#include "zor/polyline/point_inside.h"
#include "zor/polyline/split_break.h"

namespace ZOR {

namespace {

void takeAttributes(CZorVertexArray&, const CZorVertexArray&) {}
void takeAttributes(CZorVertexArrayEx& to, const CZorVertexArrayEx& from) {
    to.attrNumber = from.attrNumber;
    to.attrText = from.attrText;
}

template <class VL>
CZorArrayTempl<VL> continuousRuns(const VL& vl) {
    CZorArrayTempl<VL> out;
    if (vl.len() == 0) return out;
    // Each run is sized once and filled in its place in the list, so that long runs are neither
    // regrown nor copied.
    int first = 0;
    for (int i = 1; i <= vl.len(); ++i) {
        if (i < vl.len() && vl[i].start == vl[i - 1].end) continue;
        out.append(VL());
        VL& run = out[-1];
        run.setLogicalLength(i - first);
        for (int k = first; k < i; ++k) run[k - first] = vl[k];
        run.norm(false);
        takeAttributes(run, vl);
        first = i;
    }
    return out;
}

template <class VL>
CZorArrayTempl<VL>& orientAll(CZorArrayTempl<VL>& vll, const CZorVector3d& normal) {
    for (int i = 0; i < static_cast<int>(vll.len()); ++i) {
        if (vll[i].isClosed() && !g_vl_orient(vll[i], normal)) vll[i].revert();
    }
    return vll;
}

template <class VL>
int pointAgainstRegion(const CZorArrayTempl<VL>& region, const CZorPoint3d& p) {
    if (region.len() == 0) return -1;
    if (!g_vl_pt_inside(region[0], p, false)) return g_vl_pt_inside(region[0], p, true) ? 0 : -1;
    for (int h = 1; h < static_cast<int>(region.len()); ++h) {
        if (g_vl_pt_inside(region[h], p, false)) return -1;
        if (g_vl_pt_inside(region[h], p, true)) return 0;
    }
    return 1;
}

}  // namespace

CZorArrayTempl<CZorVertexArray> g_vl_vll(const CZorVertexArray& vl) {
    return continuousRuns(vl);
}

CZorArrayTempl<CZorVertexArrayEx> g_vl_vll(const CZorVertexArrayEx& vl) {
    return continuousRuns(vl);
}

CZorArrayTempl<CZorVertexArray> g_vl_to_vll(CZorVertexArray vl) {
    CZorArrayTempl<CZorVertexArray> out;
    const int n = vl.len();
    if (n == 0) return out;
    if (!vl.isContinuous()) {
        int k = 0;
        while (k < n && vl[k].start == vl[(k + n - 1) % n].end) ++k;
        if (k < n && k > 0) {
            CZorVertexArray turned;
            for (int i = 0; i < n; ++i) turned.append(vl[(k + i) % n]);
            vl = turned;
        }
    }
    CZorVertexArray piece;
    CZorPoint3d pieceStart;
    for (int i = 0; i < n; ++i) {
        const CZorVertex& s = vl[i];
        if (piece.len() > 0 && s.start != piece[-1].end) {
            out.append(piece);
            piece = CZorVertexArray();
        }
        if (piece.len() == 0) pieceStart = s.start;
        piece.append(s);
        if (s.end == pieceStart) {
            out.append(piece);
            piece = CZorVertexArray();
        }
    }
    if (piece.len() > 0) out.append(piece);
    return out;
}

CZorArrayTempl<CZorVertexArray> g_vll_join(CZorArrayTempl<CZorVertexArray> list) {
    CZorArrayTempl<CZorVertexArray> out;
    int k = 0;
    while (list.len() > 0) {
        CZorVertexArray& chain = out[k];
        bool joined = false;
        if (!chain.isClosed()) {
            for (int j = 0; j < static_cast<int>(list.len()); ++j) {
                if (chain.join(list[j], true)) {
                    list.removeAt(j);
                    joined = true;
                    break;
                }
            }
        }
        if (joined) continue;
        if (chain.len() == 0) {
            // Only empty pieces are left, which nothing can adopt.
            out.setLogicalLength(k);
            return out;
        }
        chain.norm(false);
        ++k;
    }
    if (k < static_cast<int>(out.len())) out[k].norm(false);
    return out;
}

bool g_vl_nodes(CZorMapTempl<CZorPoint3d, CZorArrayTempl<int>>& out, const CZorVertexArray& vl,
                int n, double tol) {
    const CZorPoint3dTol scope(tol);
    CZorPoint3dArray points;
    CZorMapTempl<int, CZorArrayTempl<int>> ends;
    auto enter = [&](const CZorPoint3d& p, int segment) {
        int at = points.indexOf(p);
        if (at < 0) {
            points.append(p);
            at = points.len() - 1;
        }
        ends[at].append(segment);
    };
    for (int i = 0; i < vl.len(); ++i) {
        enter(vl[i].start, i);
        enter(vl[i].end, i);
    }
    out.removeAll();
    for (std::uint32_t k = 0; k < ends.len(); ++k) {
        int at = 0;
        CZorArrayTempl<int> segments;
        ends.getAtIndex(k, at, segments);
        const int c = static_cast<int>(segments.len());
        const bool node = n >= 0 ? c >= n : c == -n;
        if (node) out.setAt(points[at], segments);
    }
    return out.len() > 0;
}

CZorArrayTempl<CZorVertexArray>& setOrient(CZorArrayTempl<CZorVertexArray>& vll,
                                           const CZorVector3d& normal) {
    return orientAll(vll, normal);
}

CZorArrayTempl<CZorVertexArrayEx>& setOrient(CZorArrayTempl<CZorVertexArrayEx>& vll,
                                             const CZorVector3d& normal) {
    return orientAll(vll, normal);
}

int g_vll_pt_inside(const CZorArrayTempl<CZorVertexArray>& region, const CZorPoint3d& p) {
    return pointAgainstRegion(region, p);
}

int g_vll_pt_inside(const CZorArrayTempl<CZorVertexArrayEx>& region, const CZorPoint3d& p) {
    return pointAgainstRegion(region, p);
}

bool g_vl_vl_inside(CZorVertexArray vl, const CZorVertexArray& loop) {
    if (!loop.isClosed()) return false;
    const double t = CZorPoint3d::tol;
    CZorPoint3d lo, hi;
    loop.extents(lo, hi);
    for (int i = 0; i < vl.len(); ++i) {
        const CZorPoint3d m = vl[i].mid();
        if (lo.x > m.x + t || lo.y > m.y + t || m.x - t > hi.x || m.y - t > hi.y) return false;
    }
    CZorPoint3dArray points;
    vl.intersectWith(points, loop, 3);
    vl = g_vl_split(vl, points);
    const detail::PointInsideTester tester(loop);
    for (int i = 0; i < vl.len(); ++i) {
        if (!tester.inside(vl[i].mid(), true)) return false;
    }
    return true;
}

bool g_vl_chk(const CZorVertexArray& vl, int flags) {
    if (vl.len() < 2) return false;
    if (vl.len() == 2) return vl.isClosed();
    if (!vl.isClosed()) return false;
    CZorPoint3dArray found;
    for (int i = 0; i < vl.len(); ++i) {
        if (vl.intersectWith(found, CZorVertexArray(vl[i]), static_cast<unsigned int>(flags))) {
            return false;
        }
    }
    CZorMapTempl<CZorPoint3d, CZorArrayTempl<int>> nodes;
    return !g_vl_nodes(nodes, vl, 3, CZorPoint3d::tol);
}

}  // namespace ZOR

CZorArrayTempl<CZorVertexArray> zor_g_vll_move(CZorArrayTempl<CZorVertexArray> vll,
                                               const CZorVector3d& v) {
    CZorMatrix3d m;
    m.setToTranslation(v);
    for (int i = 0; i < static_cast<int>(vll.len()); ++i) vll[i].transformBy(m.m);
    return vll;
}

void zorReglToReglEx(CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& out,
                     const CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& in) {
    out.setLogicalLength(in.len());
    for (int i = 0; i < static_cast<int>(in.len()); ++i) zorVllToVllEx(out[i], in[i]);
}

void zorReglExToRegl(CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& out,
                     const CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& in) {
    out.setLogicalLength(in.len());
    for (int i = 0; i < static_cast<int>(in.len()); ++i) zorVllExToVll(out[i], in[i]);
}

CZorArrayTempl<CZorVertexArray> zor_g_gvll(const CZorArrayTempl<CZorVertexArrayEx>& in) {
    CZorArrayTempl<CZorVertexArray> out;
    zorVllExToVll(out, in);
    return out;
}

CZorVertexArrayEx zor_g_xvl(const CZorVertexArray& vl, int number, const wchar_t* text,
                            const CZorVector3d& normal) {
    CZorVertexArrayEx out;
    out = vl;
    out.attrNumber = number;
    out.attrText = (text != nullptr && *text != L'\0') ? CZorString(text) : CZorString(L"");
    out.setNormal(normal);
    return out;
}

CZorArrayTempl<CZorVertexArrayEx> zor_g_xvll(const CZorArrayTempl<CZorVertexArray>& in, int number,
                                             const wchar_t* text, const CZorVector3d& normal) {
    CZorArrayTempl<CZorVertexArrayEx> out;
    for (int i = 0; i < static_cast<int>(in.len()); ++i) {
        out.append(zor_g_xvl(in[i], number, text, normal));
    }
    return out;
}
