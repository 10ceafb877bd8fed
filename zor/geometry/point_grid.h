// A grid of points for the questions "which points are == to this one?" asked many times over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "zor/geometry/point3d.h"

namespace ZOR::detail {

// A hash grid of points in cells four times the point tolerance current at construction: the
// points within tolerance of a query point lie in its cell or a neighbouring one, also when the
// tolerance has fallen since. Coordinates too large for integer cells, or a tolerance too small
// for them, put a point into one shared bucket, which every query returns and the callers' exact
// comparisons then search in full.
class PointGrid {
  public:
    explicit PointGrid(const std::vector<CZorPoint3d>& points);
    // The indices into `points` stored near `p`, in no particular order; `out` is replaced.
    void near(const CZorPoint3d& p, std::vector<int>& out) const;

  private:
    struct Cell {
        std::int64_t x, y;
        bool operator==(const Cell& c) const { return x == c.x && y == c.y; }
    };
    // The points of one cell: ids_[first] onward. A slot with count 0 is free.
    struct Slot {
        Cell cell{0, 0};
        int first = 0, count = 0;
    };
    bool cellOf(const CZorPoint3d& p, Cell& c) const;
    // Open addressing with linear probing: the slot of `c`, or the free slot where it would go.
    std::size_t slotOf(const Cell& c) const;

    double size_;
    std::vector<int> ids_;     // grouped by cell
    std::vector<Slot> slots_;  // a power of two, at least twice the number of cells
    std::vector<int> shared_;
};

}  // namespace ZOR::detail
