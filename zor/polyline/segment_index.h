// A static bounding-volume hierarchy over the segments of a polyline, used to skip pairs of
// segments that cannot meet before running the exact per-pair arithmetic.
//
// Every box is conservative: it holds the whole segment (for an arc, its chord box widened by
// the sagitta, or, when it is more than half a circle, a box about the chord's middle that holds
// its circle at any point tolerance) and is widened by twice the point tolerance that is current
// when the index is built, plus a small relative allowance for the rounding of far-away arc
// centres. Two segments whose boxes don't overlap therefore cannot have a crossing, a touching
// point or a point of one lying on the other at that tolerance.
// Queries return segment indices in ascending order, so a pruned loop visits candidates in the
// same order as the plain one.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "zor/geometry/point3d.h"
#include "zor/polyline/vertex.h"

class CZorVertexArray;

namespace ZOR::detail {

struct Box2d {
    double xlo = 0.0, ylo = 0.0, xhi = 0.0, yhi = 0.0;

    bool overlaps(const Box2d& b) const {
        return !(b.xlo > xhi || xlo > b.xhi || b.ylo > yhi || ylo > b.yhi);
    }
    void add(const Box2d& b) {
        xlo = std::min(xlo, b.xlo);
        ylo = std::min(ylo, b.ylo);
        xhi = std::max(xhi, b.xhi);
        yhi = std::max(yhi, b.yhi);
    }
};

// Widening that makes boxes conservative at the current point tolerance.
double boxMargin();
// Conservative box of one segment, widened by `margin`. A segment with a non-finite coordinate
// gets an unbounded box, so it is never pruned.
Box2d segmentBox(const CZorVertex& v, double margin);

class SegmentIndex {
  public:
    // Boxes of every segment of `vl`, widened by boxMargin() at this moment.
    explicit SegmentIndex(const CZorVertexArray& vl);

    int size() const { return static_cast<int>(order_.size()); }

    // Indices of the segments whose boxes overlap `b`, ascending; `out` is replaced.
    void query(const Box2d& b, std::vector<int>& out) const;
    // Indices of the segments whose boxes the straight segment p-q can touch, ascending.
    void querySegment(const CZorPoint3d& p, const CZorPoint3d& q, std::vector<int>& out) const;

  private:
    struct Node {
        Box2d box;
        int first = 0;  // leaves: their range in order_
        int count = 0;  // 0 for inner nodes
        int left = -1;
        int right = -1;
    };

    // The segment numbers in the order of their box centres along a Z-shaped space-filling
    // curve, ties by number; `codes` receives the curve positions in that order.
    static std::vector<int> zOrder(const std::vector<Box2d>& boxes,
                                   std::vector<std::uint32_t>& codes);
    // The subtree over order_[first, first + count): leaves of up to kLeafSize boxes, inner
    // nodes splitting their range where the curve crosses a cell boundary of the top level.
    int build(int first, int count, const std::vector<std::uint32_t>& codes);
    template <class Test>
    void collect(Test test, std::vector<int>& out) const;

    // The segment numbers in the order of the leaves, and their boxes in the same order, so
    // that a leaf reads its boxes side by side.
    std::vector<int> order_;
    std::vector<Box2d> leafBoxes_;
    std::vector<Node> nodes_;
};

}  // namespace ZOR::detail
