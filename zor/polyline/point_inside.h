// The even-odd point test of a polyline.
//
// A ray leaves the point away from the first segment; a point on the outline answers `onEdge`
// at once, and a ray that meets a segment end is thrown away and restarted in a random
// direction (from the runtime's rand), so that only clean crossings are counted. The ray has a
// fixed length of 1e7 model units. Random directions escape a segment end at once on any real
// outline; should 10000 rays in a row meet one (degenerate geometry), the parity of what the
// last ray had counted answers, so that the call returns.
#pragma once

#include <vector>

#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/geometry/vector3d.h"
#include "zor/polyline/segment_index.h"
#include "zor/polyline/vertex.h"
#include "zor/polyline/vertexarray.h"

namespace ZOR {

// Inside by the even-odd rule; a point on the outline gives `onEdge`. False with fewer than two
// segments.
bool g_vl_pt_inside(const CZorVertexArray& vl, CZorPoint3d p, bool onEdge);

namespace detail {

// The same test for many points against one polyline: a hierarchy of segment boxes, built once,
// tells which segments a ray can meet or the point can lie on, and only those run the exact
// per-segment arithmetic, in ascending order. The answers, and the draws from rand, are those
// of g_vl_pt_inside. Build and query under the same point tolerance; the polyline must outlive
// the tester and stay unchanged. Queries reuse scratch lists: one tester serves one thread.
class PointInsideTester {
  public:
    explicit PointInsideTester(const CZorVertexArray& vl);
    bool inside(CZorPoint3d p, bool onEdge) const;
    // The segment boxes the tester queries, for callers that need the same index.
    const SegmentIndex& index() const { return index_; }

  private:
    const CZorVertexArray& vl_;
    SegmentIndex index_;
    // Reused from query to query, so that a query allocates nothing once they have grown.
    mutable std::vector<int> candidates_;
    mutable CZorPoint3dArray hits_;
    // Each arc's circle, worked out once under these tolerances (lines keep a default entry).
    double pointTol_;
    double vectorTol_;
    std::vector<ArcCircle> circles_;
};

}  // namespace detail
}  // namespace ZOR
