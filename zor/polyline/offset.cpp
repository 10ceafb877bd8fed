#include "zor/polyline/offset.h"

#include <vector>

#include "zor/geometry/point3d.h"
#include "zor/geometry/vector3d.h"
#include "zor/polyline/segment_relations.h"
#include "zor/polyline/tangent_runs.h"

namespace ZOR {

namespace {

struct Chord {
    double x = 0.0, y = 0.0, z = 0.0;
};

Chord chordOf(const CZorVertex& v) {
    return Chord{v.end.x - v.start.x, v.end.y - v.start.y, v.end.z - v.start.z};
}

double dot(const Chord& a, const Chord& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// Removes, in one pass, the segments shorter than `t` together with their chords; the survivors
// keep their order, as with removal one by one. Returns how many went.
int removeShort(CZorVertexArray& vl, std::vector<Chord>& dir, double t) {
    CZorVertexArray kept;
    kept.setNormal(vl.normal());
    std::vector<Chord> keptDir;
    for (int i = 0; i < vl.len(); ++i) {
        if (vl[i].bulgLen() < t) continue;
        kept.append(vl[i]);
        keptDir.push_back(dir[i]);
    }
    const int removed = vl.len() - kept.len();
    if (removed > 0) {
        vl = kept;
        dir.swap(keptDir);
    }
    return removed;
}

void removeAt(CZorVertexArray& vl, std::vector<Chord>& dir, int i) {
    vl.remove(static_cast<unsigned int>(i), false);
    dir.erase(dir.begin() + i);
}

}  // namespace

namespace detail {

void offsetPolyline(CZorVertexArray& vl, const CZorArrayTempl<double>& dist, bool trimClose) {
    if (vl.len() == 0) return;
    const double t = CZorPoint3d::tol;
    const bool closed = vl.isClosed();
    std::vector<Chord> dir(vl.len());
    double d = 0.0;
    for (int i = 0; i < vl.len(); ++i) {
        if (vl[i].bulgLen() < t) continue;
        if (i < static_cast<int>(dist.len())) d = dist[i];
        dir[i] = chordOf(vl[i]);
        vl[i].offset(d);
    }
    removeShort(vl, dir, t);

    int n = vl.len();
    if (!(trimClose && closed)) n -= 1;
    for (int i = 0; i < n; ++i) {
        const int next = (i + 1) % vl.len();
        // A single closed element has no neighbour to meet.
        if (next != i) g_vx_trim(vl[i], vl[next]);
    }
    n -= removeShort(vl, dir, t);

    if (!closed) {
        // The head of an open polyline has nothing before it to be trimmed against: elements
        // that turned over there are dropped until one keeps its direction.
        int head = 0;
        while (head < vl.len() && dot(chordOf(vl[head]), dir[head]) < 0.0) ++head;
        if (head == vl.len()) {
            vl.setLogicalLength(0);
            return;
        }
        if (head > 0) {
            CZorVertexArray rest;
            rest.setNormal(vl.normal());
            for (int i = head; i < vl.len(); ++i) rest.append(vl[i]);
            vl = rest;
            dir.erase(dir.begin(), dir.begin() + head);
            n -= head;
        }
    }

    if (n < 1) return;
    int i = 0;
    int k = 1;
    for (;;) {
        const int j = k % vl.len();
        const CZorVertex& s = vl[j];
        if (s.start != s.end && dot(chordOf(s), dir[j]) >= 0.0) {
            ++i;
            ++k;
            if (i >= n) return;
            continue;
        }
        if (j == 0) {
            --i;
            --k;
        }
        removeAt(vl, dir, j);
        if (vl.len() == 0) return;
        const int m = k % vl.len();
        if (i == m) {
            if (closed) vl.setLogicalLength(0);
            return;
        }
        if (!closed && m == 0) return;
        if (vl[i].end != vl[m].start) g_vx_trim(vl[i], vl[m]);
        --n;
        if (i >= n) return;
    }
}

void offsetPolyline(CZorVertexArray& vl, double d, bool trimClose) {
    if (d == 0.0) return;
    CZorArrayTempl<double> dist;
    dist.append(d);
    offsetPolyline(vl, dist, trimClose);
}

}  // namespace detail

bool g_vl_segm_offset(CZorVertexArray& vl, const CZorArrayTempl<double>& dist) {
    if (dist.len() == 0) return false;
    CZorArrayTempl<CZorVertexArray> runs;
    g_vl_segm(runs, vl);
    CZorArrayTempl<double> all;
    CZorArrayTempl<double> one;
    for (int r = 0; r < static_cast<int>(runs.len()); ++r) {
        if (r < static_cast<int>(dist.len())) {
            one.setLogicalLength(0);
            one.append(dist[r]);
        }
        g_vl_dl(runs[r].len(), one);
        all += one;
    }
    detail::offsetPolyline(vl, all, true);
    return true;
}

}  // namespace ZOR
