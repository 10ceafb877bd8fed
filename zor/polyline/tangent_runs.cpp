#include "zor/polyline/tangent_runs.h"

#include "zor/geometry/formulas.h"
#include "zor/geometry/point3d.h"
#include "zor/polyline/numeric.h"

namespace ZOR {

namespace {

bool tangentsEqual(const CZorVertex& a, const CZorVertex& b) {
    return g_ang_equal(a.wTan(a.end), b.wTan(a.end), 1e-5);
}

int firstOctant(const CZorVertexArray& run) {
    return g_oktant(angle(run[0].start, run[0].end));
}

}  // namespace

bool g_vl_segm(CZorArrayTempl<CZorVertexArray>& out, CZorVertexArray vl) {
    if (vl.len() == 0) return false;
    out.removeAll();
    vl.norm(false);
    if (vl.len() == 0) return true;
    CZorVertexArray run;
    run.append(vl[0]);
    for (int i = 0; i + 1 < vl.len(); ++i) {
        const int j = i + 1;
        if (vl[i].end != vl[j].start || !tangentsEqual(vl[i], vl[j])) {
            out.append(run);
            run = CZorVertexArray();
        }
        run.append(vl[j]);
    }
    out.append(run);
    if (out.len() > 1 && vl[-1].end == vl[0].start && tangentsEqual(vl[-1], vl[0])) {
        const CZorVertexArray last = out[-1];
        out.removeAt(out.len() - 1);
        out[0].join(last, true);
    }
    return true;
}

bool g_vl_segm_mirp(CZorMapTempl<int, int>& out, const CZorVertexArray& vl) {
    CZorArrayTempl<CZorVertexArray> runs;
    g_vl_segm(runs, vl);
    bool hit = false;
    const int n = runs.len();
    for (int i = 0; i < n; ++i) {
        if (runs[i].len() != 1) continue;
        CZorVertexArray s = runs[i];
        const int o1 = firstOctant(s);
        const int o2 = g_oktant(angle(s[0].reverse().start, s[0].reverse().end));
        for (int j = 0; j < n; ++j) {
            if (runs[j] == s) continue;
            if (runs[j].len() != 1) continue;
            const int oj = firstOctant(runs[j]);
            if (oj != o1 && oj != o2) continue;
            const CZorPoint3d a = s[0].start;
            const CZorPoint3d b = runs[j][-1].end;
            s.mirror(angle(a, b) + detail::kHalfPi, g_midp3d(a, b));
            if (s.reverse() == runs[j]) {
                if (!hit) out.removeAll();
                hit = true;
                out.setAt(i, j);
            }
        }
    }
    return hit;
}

void g_vl_dl(int n, CZorArrayTempl<double>& d) {
    const double last = d.len() > 0 ? d[-1] : 0.0;
    if (n < 0) {
        d.setLogicalLength(0);
        return;
    }
    while (static_cast<int>(d.len()) < n) d.append(last);
    d.setLogicalLength(static_cast<std::uint32_t>(n));
}

}  // namespace ZOR
