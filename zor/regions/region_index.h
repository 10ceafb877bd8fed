// Indexes that let the region operations ask their many small questions without scanning every
// loop or segment for each one. Each answers exactly what the plain scan answers: they only skip
// candidates that the scan would have rejected, and visit the rest in the scan's order.
#pragma once

#include <memory>
#include <vector>

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/polyline/point_inside.h"
#include "zor/polyline/segment_index.h"
#include "zor/polyline/vertexarray.h"

namespace ZOR::detail {

// The boxes of whole polylines (their extents, widened for the point tolerance current at
// construction). A point outside a polyline's box is neither inside nor on it, so the polyline
// can be left out of a point test.
class LoopBoxes {
  public:
    explicit LoopBoxes(const std::vector<const CZorVertexArray*>& loops);
    // The boxes of the polylines `subset` of `all`, numbered by their place in `subset`, without
    // measuring the polylines again.
    LoopBoxes(const LoopBoxes& all, const std::vector<int>& subset);
    // Indices of the polylines whose boxes hold `p`, ascending; `out` is replaced.
    void at(const CZorPoint3d& p, std::vector<int>& out) const;

  private:
    // Each polyline's extents as the diagonal of one straight segment.
    CZorVertexArray diagonals_;
    SegmentIndex index_;
};

// The member list of a region as plain polylines, in order.
template <class VL>
std::vector<const CZorVertexArray*> loopPointers(const CZorArrayTempl<VL>& vll) {
    std::vector<const CZorVertexArray*> out;
    out.reserve(vll.len());
    for (int i = 0; i < static_cast<int>(vll.len()); ++i) out.push_back(&vll[i]);
    return out;
}

// g_vll_pt_inside for many points against one region. The region must outlive the tester and
// stay unchanged; queries may run at the tolerance of construction or a smaller one (the boxes
// stay conservative as the tolerance falls). One tester serves one thread.
//
// The plain test asks each loop "strictly inside?" and, when not, "inside or on?", two rays.
// A point on the outline answers the first with false and the second with true, and only such a
// point changes the answer, so the second question is put as "does a segment hold the point?",
// the very check with which the ray test stops, asked of the segments whose boxes hold it.
class RegionPointTester {
  public:
    explicit RegionPointTester(std::vector<const CZorVertexArray*> region);
    int classify(const CZorPoint3d& p) const;

  private:
    struct Loop {
        const CZorVertexArray* vl;
        // Its segment index also answers whether a segment holds a point.
        PointInsideTester inside;
        explicit Loop(const CZorVertexArray* v) : vl(v), inside(*v) {}
        bool onOutline(CZorPoint3d p, std::vector<int>& scratch) const;
    };

    std::vector<std::unique_ptr<Loop>> loops_;
    std::unique_ptr<LoopBoxes> holeBoxes_;
    // Candidate lists reused from query to query.
    mutable std::vector<int> scratch_, candidates_;
};

}  // namespace ZOR::detail
