// Indexes that let the region operations ask their many small questions without scanning every
// loop or segment for each one. Each answers exactly what the plain scan answers: they only skip
// candidates that the scan would have rejected, and visit the rest in the scan's order.
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
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
    // Indices of the polylines whose boxes hold `p`, ascending; `out` is replaced.
    void at(const CZorPoint3d& p, std::vector<int>& out) const;

  private:
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
// stay conservative as the tolerance falls).
class RegionPointTester {
  public:
    explicit RegionPointTester(std::vector<const CZorVertexArray*> region);
    int classify(const CZorPoint3d& p) const;

  private:
    std::vector<const CZorVertexArray*> loops_;
    std::unique_ptr<PointInsideTester> outer_;
    std::vector<std::unique_ptr<PointInsideTester>> holes_;
    std::unique_ptr<LoopBoxes> holeBoxes_;
};

// A hash grid of points in cells of the point tolerance: the points within tolerance of a query
// point lie in its cell or a neighbouring one. Coordinates too large for integer cells, or a
// tolerance too small for them, put every point into one shared bucket, which the callers'
// exact comparisons then search in full.
class PointGrid {
  public:
    PointGrid();
    void insert(const CZorPoint3d& p, int id);
    void erase(const CZorPoint3d& p, int id);
    // The ids stored near `p`, in no particular order.
    void near(const CZorPoint3d& p, std::vector<int>& out) const;

  private:
    struct Cell {
        std::int64_t x, y;
        bool operator==(const Cell& c) const { return x == c.x && y == c.y; }
    };
    struct CellHash {
        std::size_t operator()(const Cell& c) const;
    };
    bool cellOf(const CZorPoint3d& p, Cell& c) const;

    double size_;
    std::unordered_map<Cell, std::vector<int>, CellHash> cells_;
    std::vector<int> shared_;
};

// ZOR::g_vl_sort with a grid in place of the search for the next start.
void sortChains(CZorVertexArray& vl);

}  // namespace ZOR::detail
