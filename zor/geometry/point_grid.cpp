#include "zor/geometry/point_grid.h"

#include <cmath>

namespace ZOR::detail {

namespace {

// Beyond this many cells from the origin, cell numbers lose their integer precision.
constexpr double kMaxCell = 1e15;

}  // namespace

std::size_t PointGrid::slotOf(const Cell& c) const {
    const std::uint64_t h = static_cast<std::uint64_t>(c.x) * 0x9E3779B97F4A7C15ull ^
                            (static_cast<std::uint64_t>(c.y) + 0x632BE59BD9B4E019ull);
    const std::size_t mask = slots_.size() - 1;
    std::size_t k = static_cast<std::size_t>(h ^ (h >> 29)) & mask;
    while (slots_[k].count > 0 && !(slots_[k].cell == c)) k = (k + 1) & mask;
    return k;
}

// Cells four times the tolerance wide: a point lies within tolerance of the cell it falls in
// and, only when it lies in the outer quarter of its cell along an axis, of the neighbour on that
// side: a query reads 2.25 cells on average (narrower cells would need four every time).
PointGrid::PointGrid(const std::vector<CZorPoint3d>& points) : size_(4.0 * CZorPoint3d::tol) {
    std::vector<std::pair<Cell, int>> placed;
    placed.reserve(points.size());
    for (int i = 0; i < static_cast<int>(points.size()); ++i) {
        Cell c;
        if (cellOf(points[i], c)) {
            placed.emplace_back(c, i);
        } else {
            shared_.push_back(i);
        }
    }
    std::size_t capacity = 2;
    while (capacity < 2 * placed.size()) capacity *= 2;
    slots_.resize(capacity);
    // Counted into their slots, the cells' ranges laid out in slot order, then filled from the
    // back by descending number, which leaves each cell's points in ascending order.
    for (const auto& entry : placed) {
        Slot& slot = slots_[slotOf(entry.first)];
        slot.cell = entry.first;
        ++slot.count;
    }
    int end = 0;
    for (Slot& slot : slots_) {
        end += slot.count;
        slot.first = end;
    }
    ids_.resize(placed.size());
    for (auto entry = placed.rbegin(); entry != placed.rend(); ++entry) {
        ids_[--slots_[slotOf(entry->first)].first] = entry->second;
    }
}

bool PointGrid::cellOf(const CZorPoint3d& p, Cell& c) const {
    if (!(size_ > 0.0)) return false;
    const double x = std::floor(p.x / size_);
    const double y = std::floor(p.y / size_);
    if (!(std::fabs(x) < kMaxCell && std::fabs(y) < kMaxCell)) return false;
    c = Cell{static_cast<std::int64_t>(x), static_cast<std::int64_t>(y)};
    return true;
}

void PointGrid::near(const CZorPoint3d& p, std::vector<int>& out) const {
    out = shared_;
    Cell c;
    if (!cellOf(p, c)) {
        // The point itself has no cell: anything may be within tolerance of it.
        out.insert(out.end(), ids_.begin(), ids_.end());
        return;
    }
    // The neighbour on a side whose quarter holds the point, with room for the rounding of the
    // position in the cell, which grows with the distance from the origin.
    auto sides = [this](double v, std::int64_t cell, std::int64_t(&offsets)[3]) {
        const double units = v / size_;
        const double f = units - static_cast<double>(cell);
        const double slack = 1e-6 + 1e-15 * std::fabs(units);
        int k = 0;
        offsets[k++] = 0;
        if (f <= 0.25 + slack) offsets[k++] = -1;
        if (f >= 0.75 - slack) offsets[k++] = 1;
        return k;
    };
    std::int64_t xs[3], ys[3];
    const int nx = sides(p.x, c.x, xs);
    const int ny = sides(p.y, c.y, ys);
    for (int ix = 0; ix < nx; ++ix) {
        for (int iy = 0; iy < ny; ++iy) {
            const std::int64_t dx = xs[ix], dy = ys[iy];
            const Slot& slot = slots_[slotOf(Cell{c.x + dx, c.y + dy})];
            if (slot.count == 0) continue;
            const auto first = ids_.begin() + slot.first;
            out.insert(out.end(), first, first + slot.count);
        }
    }
}

}  // namespace ZOR::detail
