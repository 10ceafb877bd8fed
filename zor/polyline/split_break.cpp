#include "zor/polyline/split_break.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "zor/geometry/formulas.h"
#include "zor/geometry/point_grid.h"
#include "zor/polyline/numeric.h"
#include "zor/polyline/orientation.h"
#include "zor/polyline/segment_index.h"
#include "zor/polyline/segment_relations.h"

using ZOR::detail::kPi;

namespace ZOR {

namespace {

// Bookkeeping for breaking: which original segment each current piece came from. Pieces of one
// original are contiguous and in order, so the position of an original's first piece is found
// by bisection.
//
// It also bounds the breaking. Every break falls inside a piece, at a point that then becomes
// an end of two pieces, so on sane input an original segment is broken at most once per
// distinct point the walk can produce: the starts and ends of the n and m original segments
// (2n + 2m) and the crossings of two originals (2 per pair); where pieces overlap they meet at
// piece ends, which adds no point. (n + 1) + (m + 1) + 4nm breaks per original cover that with
// room to spare. Numerically degenerate input (a NaN or astronomic bulge) can keep producing
// pieces that meet the other segment again; the budget stops it without touching a sane result.
class PieceMap {
  public:
    PieceMap(int n, std::int64_t budget) : origin_(n), budget_(n, budget) {
        for (int i = 0; i < n; ++i) origin_[i] = i;
    }
    static std::int64_t budgetFor(int n, int m) { return (n + 1LL) + (m + 1LL) + 4LL * n * m; }
    int origin(int piece) const { return origin_[piece]; }
    int firstPiece(int original) const {
        return static_cast<int>(std::lower_bound(origin_.begin(), origin_.end(), original) -
                                origin_.begin());
    }
    bool mayBreak(int piece) const { return budget_[origin_[piece]] > 0; }
    void split(int piece) {
        --budget_[origin_[piece]];
        origin_.insert(origin_.begin() + piece, origin_[piece]);
    }

  private:
    std::vector<int> origin_;
    std::vector<std::int64_t> budget_;
};

// One pair of the breaking walk. Returns true when a segment was broken, in which case the same
// pair runs again.
bool breakPair(CZorVertexArray& a, CZorVertexArray& b, int i, int j, int flags, PieceMap& aPieces,
               PieceMap& bPieces) {
    CZorPoint3dArray hits;
    const CZorVertex v = a[i];
    if ((flags & 1) && aPieces.mayBreak(i)) {
        if (v.intersectWith(hits, b[j], 0x002)) {
            a.breakVertex(i, hits[0]);
            aPieces.split(i);
            return true;
        }
        const CZorPoint3d q = b[j].start;
        if (a[i].isPoint(q) && q != a[i].start && q != a[i].end) {
            a.breakVertex(i, q);
            aPieces.split(i);
            return true;
        }
    }
    if ((flags & 2) && bPieces.mayBreak(j)) {
        if (v.intersectWith(hits, b[j], 0x004)) {
            b.breakVertex(j, hits[0]);
            bPieces.split(j);
            return true;
        }
        const CZorPoint3d q = a[i].start;
        if (b[j].isPoint(q) && q != b[j].start && q != b[j].end) {
            b.breakVertex(j, q);
            bPieces.split(j);
            return true;
        }
    }
    return false;
}

// The points of a list sorted by x, to find those inside a box. A point with a non-finite
// coordinate is unusable and left out: it would otherwise pass the tolerance tests (whose
// comparisons are all false on NaN) and break segments into pieces without coordinates.
class PointsByX {
  public:
    explicit PointsByX(const CZorPoint3dArray& pts) : pts_(pts) {
        for (int k = 0; k < pts.len(); ++k) {
            const CZorPoint3d& p = pts[k];
            if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) {
                byX_.push_back(Entry{p.x, k});
            }
        }
        std::sort(byX_.begin(), byX_.end(),
                  [](const Entry& a, const Entry& b) { return a.x < b.x; });
    }

    // Indices of the points inside `b`, ascending; `out` is replaced.
    void inside(const detail::Box2d& b, std::vector<int>& out) const {
        out.clear();
        auto it = std::lower_bound(byX_.begin(), byX_.end(), b.xlo,
                                   [](const Entry& e, double x) { return e.x < x; });
        for (; it != byX_.end() && it->x <= b.xhi; ++it) {
            const double y = pts_[it->k].y;
            if (y >= b.ylo && y <= b.yhi) out.push_back(it->k);
        }
        std::sort(out.begin(), out.end());
    }

  private:
    struct Entry {
        double x;
        int k;
    };
    const CZorPoint3dArray& pts_;
    std::vector<Entry> byX_;
};

CZorVertexArray withNormalOf(const CZorVertexArray& source) {
    CZorVertexArray out;
    out.setNormal(source.normal());
    return out;
}

}  // namespace

CZorVertexArray g_vl_split(CZorVertexArray vl, const CZorPoint3dArray& pts) {
    if (pts.len() == 0) return vl;
    const int limit = 2 * (vl.len() + pts.len());
    // A point that equals an end of a piece or lies on it lies within the tolerance-widened box
    // of the original segment, and every piece stays inside that box. So the points inside the
    // box, in list order, are all that the walk over every point would act on.
    const PointsByX byX(pts);
    const double margin = detail::boxMargin();
    std::vector<int> candidates;
    int piecesEnd = 0;  // one past the last piece of the original segment being walked
    for (int i = 0; i < vl.len() && i <= limit; ++i) {
        if (i == piecesEnd) {
            byX.inside(detail::segmentBox(vl[i], margin), candidates);
            piecesEnd = i + 1;
        }
        for (const int k : candidates) {
            const CZorPoint3d& p = pts[k];
            const CZorVertex& s = vl[i];
            if (p == s.start || p == s.end) continue;
            if (s.isPoint(p)) {
                vl.breakVertex(i, p);
                ++piecesEnd;
            }
        }
    }
    return vl;
}

CZorVertexArray g_vl_split_ang(const CZorVertexArray& vl, double ang) {
    CZorPoint3dArray pts;
    for (int i = 0; i < vl.len(); ++i) {
        const CZorVertex& s = vl[i];
        if (s.bulge == 0.0) continue;
        const CZorPoint3d c = s.center();
        const double r = c.distanceTo(s.start);
        const double sweep = 4.0 * std::atan(s.bulge);
        // A clockwise sweep is negative and always yields two pieces. So does a ratio that is
        // no count at all (an angle of 0 or NaN): a million pieces would be no safer answer and
        // would hold the split for hours.
        const double ratio = sweep / ang;
        const int n =
            std::isfinite(ratio) && ratio > 0.0 ? std::max(detail::truncCount(ratio) + 1, 2) : 2;
        const double step = sweep / n;
        const double a0 = angle(c, s.start);
        for (int m = 1; m <= n; ++m) pts.append(polar(c, a0 + m * step, r));
    }
    return g_vl_split(vl, pts.reverse());
}

CZorVertexArray g_vl_split_dif(CZorVertexArray vl, double dif) {
    const bool closed = vl.isClosed();
    const CZorPoint3dArray pts = vl.pts(true, dif);
    vl.fromPoints(pts, closed);
    return vl;
}

CZorArrayTempl<CZorVertexArray> g_vll_split_dif(const CZorArrayTempl<CZorVertexArray>& vll,
                                                double dif) {
    CZorArrayTempl<CZorVertexArray> out;
    for (std::uint32_t i = 0; i < vll.len(); ++i) {
        out.append(g_vl_split_dif(vll[static_cast<int>(i)], dif));
    }
    return out;
}

CZorVertexArray g_vl_split_tang_w(CZorVertexArray vl, double w) {
    // Each arc has at most two points of a given tangent direction; the bound only guards
    // against rounding that would keep finding the same point.
    int breaks = 2 * vl.len() + 2;
    for (int i = 0; i < vl.len();) {
        const CZorPoint3dArray pts = g_vx_tangp(vl[i], w, true);
        if (pts.len() > 0 && breaks-- > 0) {
            vl.breakVertex(i, pts[0]);
        } else {
            ++i;
        }
    }
    return vl;
}

CZorVertexArray g_vl_split_w(CZorVertexArray vl, double w) {
    CZorVertexArray out = withNormalOf(vl);
    CZorPoint3d lo, hi;
    if (!vl.extents(lo, hi)) return out;
    const double length = lo.distanceTo(hi);
    const CZorPoint3dArray points = vl.pts(false, 0.01);

    if (vl.isClosed()) {
        if (!g_vl_orient(vl, CZorVector3d::kZAxis)) vl.revert();
        // Start at the extreme point against w (segment 0 takes no part in the search).
        const CZorVector3d dir = polar(w, 1000.0);
        int best = -1;
        double bestValue = 0.0;
        for (int i = 1; i < vl.len(); ++i) {
            const double value = sprod(vl[i].start, dir);
            if (best < 0 || value < bestValue) {
                best = i;
                bestValue = value;
            }
        }
        if (best > 0) {
            CZorVertexArray rotated = withNormalOf(vl);
            for (int i = 0; i < vl.len(); ++i) rotated.append(vl[(best + i) % vl.len()]);
            vl = rotated;
        }
    }

    // Points from which a ray towards w leaves the outline without meeting it again.
    CZorPoint3dArray freePoints;
    CZorPoint3dArray hits;
    for (int k = 0; k < points.len(); ++k) {
        const CZorPoint3d& p = points[k];
        const CZorVertex ray(p, polar(p, w, length), 0.0);
        bool blocked = false;
        for (int i = 0; i < vl.len() && !blocked; ++i)
            blocked = ray.intersectWith(hits, vl[i], 0x002);
        if (!blocked) freePoints.append(p);
    }

    // Each shadow line meets an original segment at most twice; 64 bits, as the product of two
    // counts of a dense outline passes 2^31.
    std::int64_t breaks = 4 * (vl.len() + 1LL) * (freePoints.len() + 1LL);
    for (int i = 0; i < vl.len();) {
        bool broken = false;
        for (int k = 0; k < freePoints.len() && !broken && breaks > 0; ++k) {
            const CZorPoint3d& p = freePoints[k];
            const CZorVertex shadow(p, polar(p, w + kPi, length), 0.0);
            if (shadow.intersectWith(hits, vl[i], 0x006)) {
                vl.breakVertex(i, hits[0]);
                broken = true;
                --breaks;
            }
        }
        if (!broken) {
            out.append(vl[i]);
            ++i;
        }
    }
    return out;
}

CZorVertexArray g_vl_cut(CZorVertexArray vl, const CZorPoint3d& a, const CZorPoint3d& b) {
    const bool closed = vl.isClosed();
    CZorPoint3dArray ends;
    ends.append(a).append(b);
    vl = g_vl_split(vl, ends);
    const int n = vl.len();
    if (closed) vl += CZorVertexArray(vl);
    int i = 0;
    while (i < n && vl[i].start != a) ++i;
    CZorVertexArray piece = withNormalOf(vl);
    for (; i < vl.len(); ++i) {
        piece.append(vl[i]);
        if (vl[i].end == b) break;
    }
    piece.norm(false);
    return piece;
}

bool g_vl_break(CZorVertexArray& a, CZorVertexArray& b, int flags) {
    if ((flags & 3) == 0 || a.len() == 0 || b.len() == 0) return false;
    // Pieces of a segment stay inside its box, so one index over b's original segments filters
    // all pairs for the whole walk. Candidates are visited in ascending original index, and the
    // pieces of each in order: the plain nested loop's order of work.
    const detail::SegmentIndex index(b);
    const double margin = detail::boxMargin();
    const std::int64_t budget = PieceMap::budgetFor(a.len(), b.len());
    PieceMap aPieces(a.len(), budget);
    PieceMap bPieces(b.len(), budget);
    std::vector<int> candidates;
    for (int i = 0; i < a.len(); ++i) {
        index.query(detail::segmentBox(a[i], margin), candidates);
        for (const int original : candidates) {
            int j = bPieces.firstPiece(original);
            while (j < b.len() && bPieces.origin(j) == original) {
                if (!breakPair(a, b, i, j, flags, aPieces, bPieces)) ++j;
            }
        }
    }
    return false;
}

CZorArrayTempl<CZorVertexArray> g_vl_break(const CZorVertexArray& vl, const CZorPoint3dArray& pts) {
    CZorArrayTempl<CZorVertexArray> out;
    if (vl.len() == 0) return out;
    const CZorVertexArray s = g_vl_split(vl, pts);
    CZorVertexArray piece = withNormalOf(vl);
    piece.append(s[0]);
    for (int k = 1; k < s.len(); ++k) {
        if (pts.indexOf(s[k].start) >= 0) {
            piece.norm(false);
            out.append(piece);
            piece = withNormalOf(vl);
        }
        piece.append(s[k]);
    }
    piece.norm(false);
    out.append(piece);
    return out;
}

CZorVertexArray g_vl_primitive(const CZorVertexArray& vl) {
    if (g_vl_circlep(vl, nullptr, nullptr)) return vl;
    if (vl.len() < 17) {
        CZorVertexArray chords(vl);
        bool allFlat = true;
        for (int i = 0; i < chords.len() && allFlat; ++i) {
            if (std::fabs(chords[i].bulge) < 0.5) {
                chords[i].bulge = 0.0;
            } else {
                allFlat = false;
            }
        }
        if (allFlat) return chords;
    }
    CZorVertexArray rect;
    CZorPoint3d lo, hi;
    vl.extents(lo, hi);
    g_rect_vl(rect, lo, hi);
    return rect;
}

CZorVertexArrayEx g_vl_primitive(const CZorVertexArrayEx& vl) {
    CZorVertexArrayEx out(g_vl_primitive(static_cast<const CZorVertexArray&>(vl)));
    out.attrNumber = vl.attrNumber;
    out.attrText = vl.attrText;
    return out;
}

CZorVertexArray g_vl_dupl_remove(const CZorVertexArray& vl) {
    CZorVertexArray out = withNormalOf(vl);
    for (int i = 0; i < vl.len(); ++i) {
        const CZorVertex& s = vl[i];
        if (out.indexOf(s) < 0 && out.indexOf(s.reverse()) < 0) out.append(s);
    }
    return out;
}

CZorVertexArray vl_neutral(CZorVertexArray vl, const CZorArrayTempl<int>& flags, double t) {
    const bool closed = vl.isClosed();
    auto flagAt = [&](int i) { return i < static_cast<int>(flags.len()) ? flags[i] : 0; };
    bool changing = false;
    for (int i = 0; i < vl.len(); ++i) {
        CZorVertex& s = vl[i];
        if (flagAt(i) != 0) {
            s.offset(-0.5 * t * flagAt(i + 1));
            changing = true;
        }
        if (s.bulge != 0.0 && s.radius() < t / 2) changing = true;
    }
    if (!changing) return vl.norm(false);

    const int n = vl.len();
    const int joints = closed ? n : n - 1;
    for (int i = 0; i < joints; ++i) {
        const int j = (i + 1) % n;
        if (vl[i].end == vl[j].start) continue;
        CZorPoint3d x;
        if (!vl[i].intNear(vl[j], vl[i].end, x)) {
            vl.setLogicalLength(i + 1);
            break;
        }
        vl[i].setEndPoint(x);
        vl[j].setStartPoint(x);
    }
    return vl.norm(false);
}

void g_vl_sort(CZorVertexArray& vl) {
    const int n = vl.len();
    if (n < 2) return;
    // Starts never move (only ends are snapped), so one grid over them, by segment number,
    // serves the whole walk. The walk exchanges numbers, `pos` following them, and only
    // positions behind the current one count, as in the search; the segments move to their
    // places once at the end. A loop that closes needs no mark of its own: the search goes on
    // from its last end, which usually finds no following start, so the next segment stays and
    // begins the next chain.
    std::vector<CZorPoint3d> starts(n), ends(n);
    for (int k = 0; k < n; ++k) {
        starts[k] = vl[k].start;
        ends[k] = vl[k].end;
    }
    const detail::PointGrid grid(starts);
    std::vector<int> segmentAt(n), pos(n);
    for (int k = 0; k < n; ++k) segmentAt[k] = pos[k] = k;
    std::vector<int> near;
    for (int i = 1; i < n; ++i) {
        CZorPoint3d& end = ends[segmentAt[i - 1]];
        if (end == starts[segmentAt[i]]) {
            end = starts[segmentAt[i]];
            continue;
        }
        grid.near(end, near);
        int best = -1;
        for (const int segment : near) {
            const int k = pos[segment];
            if (k > i && (best < 0 || k < best) && starts[segment] == end) best = k;
        }
        if (best < 0) continue;
        end = starts[segmentAt[best]];
        std::swap(segmentAt[best], segmentAt[i]);
        pos[segmentAt[best]] = best;
        pos[segmentAt[i]] = i;
    }
    // Position i takes segment segmentAt[i]: moved in place along the cycles of that exchange.
    std::vector<bool> placed(n, false);
    for (int i = 0; i < n; ++i) {
        if (placed[i]) continue;
        const CZorVertex first = vl[i];
        int j = i;
        for (;;) {
            placed[j] = true;
            const int from = segmentAt[j];
            if (from == i) {
                vl[j] = first;
                break;
            }
            vl[j] = vl[from];
            j = from;
        }
    }
    for (int i = 0; i < n; ++i) vl[i].end = ends[segmentAt[i]];
}

CZorPoint3dArray g_pl_sort_vl(CZorPoint3dArray pts, const CZorVertexArray& vl) {
    struct Entry {
        double d;
        int index;
    };
    std::vector<Entry> entries;
    for (int i = 0; i < pts.len(); ++i) {
        double d = 0.0;
        if (vl.distAtPoint(d, pts[i])) entries.push_back(Entry{d, i});
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        if (a.d < b.d) return true;
        if (b.d < a.d) return false;
        return a.index < b.index;
    });
    CZorPoint3dArray out;
    for (const Entry& e : entries) out.append(pts[e.index]);
    return out;
}

bool g_pl_sort_arcw(ZOR::CMapDoubleToPoint& map, const CZorPoint3dArray& pts, const CZorPoint3d& c,
                    double a) {
    for (int i = 0; i < pts.len(); ++i) map.append(g_ang(angle(c, pts[i]) - a), pts[i]);
    map.sort();
    return true;
}

CZorPoint3dArray g_pl_sort_vx(CZorPoint3dArray pts, const CZorVertex& v) {
    if (v.bulge == 0.0) return pts.sort(v.wTan(v.start));
    const CZorPoint3d c = v.center();
    ZOR::CMapDoubleToPoint map;
    // Measuring from half a radian before the start keeps a point just before it at the head.
    if (v.bulge > 0.0) {
        g_pl_sort_arcw(map, pts, c, angle(c, v.start) - 0.5);
        return map.getPtLst();
    }
    g_pl_sort_arcw(map, pts, c, angle(c, v.end) - 0.5);
    return map.getPtLst().revert();
}

}  // namespace ZOR
