#include "zor/regions/loop_breaking.h"

#include <utility>
#include <vector>

#include "zor/geometry/point3d_array.h"
#include "zor/polyline/segment_index.h"
#include "zor/polyline/vertex.h"

namespace ZOR::detail {

namespace {

// A piece with its box and, for an arc, its circle, which every pair it meets asks for. The
// tolerances stay as they are for the whole breaking, so the circle holds throughout.
struct Piece {
    CZorVertex s;
    Box2d box;
    ArcCircle circle;
    int next = -1;  // the following piece of the same original segment
    Piece(const CZorVertex& v, double margin) : s(v), box(segmentBox(v, margin)) {
        s.toArc(circle.c, circle.r, circle.a1, circle.a2);
    }
    const ArcCircle* arc() const { return s.bulge != 0.0 ? &circle : nullptr; }
};

// The pieces of a polyline in one block: the pieces of each original segment are chained from
// its head in their order along it, so a split links a piece in instead of shifting the rest.
struct Pieces {
    std::vector<Piece> all;
    std::vector<int> head;  // by original segment

    Pieces(const CZorVertexArray& vl, double margin) {
        all.reserve(2 * static_cast<std::size_t>(vl.len()));
        head.resize(vl.len());
        for (int i = 0; i < vl.len(); ++i) {
            head[i] = i;
            all.emplace_back(vl[i], margin);
        }
    }
    Piece& operator[](int k) { return all[k]; }
};

bool holds(const Box2d& b, const CZorPoint3d& p) {
    return b.overlaps(Box2d{p.x, p.y, p.x, p.y});
}

// Splits piece `at` at `p` as CZorVertexArray::breakVertex does (the segment doubled, the first
// copy ending at `p`, the second starting there), without a polyline of its own for each split.
void splitPiece(Pieces& pieces, int at, const CZorPoint3d& p, double margin) {
    CZorVertex first = pieces[at].s;
    CZorVertex second = first;
    first.setEndPoint(p);
    second.setStartPoint(p);
    const int next = pieces[at].next;
    const int added = static_cast<int>(pieces.all.size());
    pieces[at] = Piece(first, margin);
    pieces[at].next = added;
    pieces.all.emplace_back(second, margin);
    pieces[added].next = next;
}

// How often the pieces of one original segment may still be split: 8 times the other
// polyline's length plus one, so that degenerate input can't keep a pair splitting forever.
using Budgets = std::vector<int>;

// One pair of the walk, piece `ai` of `aList` against piece `bj` of `bList`, in the order of the
// breaking rules: a at crossings inside it, a at b's start, b at crossings inside it, b at a's
// start, each side only while its budget lasts. True when something was split, and the same
// pair runs again.
bool breakPair(Pieces& aList, int ai, int& aBudget, Pieces& bList, int bj, int& bBudget,
               double margin, CZorPoint3dArray& hits) {
    // The pieces are read only before one of them is split.
    const CZorVertex& v = aList[ai].s;
    const CZorVertex& w = bList[bj].s;
    // Every rule needs the two pieces within tolerance of each other somewhere.
    const Box2d& vBox = aList[ai].box;
    const Box2d& wBox = bList[bj].box;
    if (!vBox.overlaps(wBox)) return false;
    // The crossing rules ask for the contacts without the own ends (flags 0x002) and without
    // the other's ends (0x004). The flags only filter the contacts that flags 0 gives, point by
    // point with `==` against those ends, so one computation serves both rules; a start outside
    // the other's box can't lie on it.
    const ArcCircle* vArc = aList[ai].arc();
    const ArcCircle* wArc = bList[bj].arc();
    const bool touching = intersectSegments(v, vArc, hits, w, wArc, 0);
    auto firstAwayFrom = [&](const CZorVertex& s, CZorPoint3d& out) {
        for (int k = 0; touching && k < hits.len(); ++k) {
            if (hits[k] != s.start && hits[k] != s.end) {
                out = hits[k];
                return true;
            }
        }
        return false;
    };
    CZorPoint3d at;
    if (aBudget > 0) {
        if (firstAwayFrom(v, at)) {
            --aBudget;
            splitPiece(aList, ai, at, margin);
            return true;
        }
        const CZorPoint3d q = w.start;
        if (holds(vBox, q) && isPointOn(v, vArc, q) && q != v.start && q != v.end) {
            --aBudget;
            splitPiece(aList, ai, q, margin);
            return true;
        }
    }
    if (bBudget > 0) {
        if (firstAwayFrom(w, at)) {
            --bBudget;
            splitPiece(bList, bj, at, margin);
            return true;
        }
        const CZorPoint3d q = v.start;
        if (holds(wBox, q) && isPointOn(w, wArc, q) && q != w.start && q != w.end) {
            --bBudget;
            splitPiece(bList, bj, q, margin);
            return true;
        }
    }
    return false;
}

// The pieces in place of the segments of `vl`, whose normal they keep (and, for a list with
// attributes, its attributes).
void flatten(const Pieces& pieces, CZorVertexArray& vl) {
    if (pieces.all.size() == static_cast<std::size_t>(vl.len())) return;  // nothing was broken
    // A fresh list of the final length: growing `vl` would carry its old segments over first.
    CZorVertexArray out;
    out.setNormal(vl.normal());
    out.setLogicalLength(static_cast<int>(pieces.all.size()));
    int k = 0;
    for (const int first : pieces.head) {
        for (int t = first; t >= 0; t = pieces.all[t].next) out[k++] = pieces.all[t].s;
    }
    vl = std::move(out);
}

}  // namespace

void breakBoth(CZorVertexArray& a, CZorVertexArray& b) {
    if (a.len() == 0 || b.len() == 0) return;
    const SegmentIndex index(b);
    const double margin = boxMargin();
    Pieces aPieces(a, margin);
    Pieces bPieces(b, margin);
    Budgets aBudgets(aPieces.head.size(), 8 * (b.len() + 1));
    Budgets bBudgets(bPieces.head.size(), 8 * (a.len() + 1));
    std::vector<int> candidates;
    CZorPoint3dArray hits;
    for (std::size_t original = 0; original < aPieces.head.size(); ++original) {
        for (int t = aPieces.head[original]; t >= 0; t = aPieces[t].next) {
            index.query(aPieces[t].box, candidates);
            for (const int other : candidates) {
                int j = bPieces.head[other];
                while (j >= 0) {
                    if (!breakPair(aPieces, t, aBudgets[original], bPieces, j, bBudgets[other],
                                   margin, hits)) {
                        j = bPieces[j].next;
                    }
                }
            }
        }
    }
    flatten(aPieces, a);
    flatten(bPieces, b);
}

}  // namespace ZOR::detail
