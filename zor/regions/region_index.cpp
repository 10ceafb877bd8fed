#include "zor/regions/region_index.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace ZOR::detail {

namespace {

// The diagonal of each polyline's extents as one straight segment: its box is the extents, and
// the segment index widens it for the tolerance. A polyline without extents gets a non-finite
// diagonal, whose box is unbounded, so it is never skipped.
CZorVertexArray extentDiagonals(const std::vector<const CZorVertexArray*>& loops) {
    CZorVertexArray out;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const CZorVertexArray* loop : loops) {
        CZorPoint3d lo, hi;
        if (!loop->extents(lo, hi)) lo = hi = CZorPoint3d(nan, nan, nan);
        out.append(CZorVertex(lo, hi, 0.0));
    }
    return out;
}

// Beyond this many cells from the origin, cell numbers lose their integer precision.
constexpr double kMaxCell = 1e15;

}  // namespace

LoopBoxes::LoopBoxes(const std::vector<const CZorVertexArray*>& loops)
    : index_(extentDiagonals(loops)) {}

void LoopBoxes::at(const CZorPoint3d& p, std::vector<int>& out) const {
    index_.query(Box2d{p.x, p.y, p.x, p.y}, out);
}

RegionPointTester::RegionPointTester(std::vector<const CZorVertexArray*> region)
    : loops_(std::move(region)) {
    if (loops_.empty()) return;
    outer_ = std::make_unique<PointInsideTester>(*loops_[0]);
    const std::vector<const CZorVertexArray*> holes(loops_.begin() + 1, loops_.end());
    for (const CZorVertexArray* hole : holes) {
        holes_.push_back(std::make_unique<PointInsideTester>(*hole));
    }
    holeBoxes_ = std::make_unique<LoopBoxes>(holes);
}

int RegionPointTester::classify(const CZorPoint3d& p) const {
    if (loops_.empty()) return -1;
    if (!outer_->inside(p, false)) return outer_->inside(p, true) ? 0 : -1;
    if (holes_.empty()) return 1;
    std::vector<int> candidates;
    holeBoxes_->at(p, candidates);
    for (const int h : candidates) {
        if (holes_[h]->inside(p, false)) return -1;
        if (holes_[h]->inside(p, true)) return 0;
    }
    return 1;
}

std::size_t PointGrid::CellHash::operator()(const Cell& c) const {
    const std::uint64_t h = static_cast<std::uint64_t>(c.x) * 0x9E3779B97F4A7C15ull ^
                            (static_cast<std::uint64_t>(c.y) + 0x632BE59BD9B4E019ull);
    return static_cast<std::size_t>(h ^ (h >> 29));
}

PointGrid::PointGrid() : size_(CZorPoint3d::tol) {}

bool PointGrid::cellOf(const CZorPoint3d& p, Cell& c) const {
    if (!(size_ > 0.0)) return false;
    const double x = std::floor(p.x / size_);
    const double y = std::floor(p.y / size_);
    if (!(std::fabs(x) < kMaxCell && std::fabs(y) < kMaxCell)) return false;
    c = Cell{static_cast<std::int64_t>(x), static_cast<std::int64_t>(y)};
    return true;
}

void PointGrid::insert(const CZorPoint3d& p, int id) {
    Cell c;
    if (cellOf(p, c)) {
        cells_[c].push_back(id);
    } else {
        shared_.push_back(id);
    }
}

void PointGrid::erase(const CZorPoint3d& p, int id) {
    Cell c;
    std::vector<int>* bucket = &shared_;
    if (cellOf(p, c)) {
        const auto it = cells_.find(c);
        if (it == cells_.end()) return;
        bucket = &it->second;
    }
    const auto at = std::find(bucket->begin(), bucket->end(), id);
    if (at == bucket->end()) return;
    *at = bucket->back();
    bucket->pop_back();
}

void PointGrid::near(const CZorPoint3d& p, std::vector<int>& out) const {
    out = shared_;
    Cell c;
    if (!cellOf(p, c)) {
        // The point itself has no cell: anything may be within tolerance of it.
        for (const auto& entry : cells_)
            out.insert(out.end(), entry.second.begin(), entry.second.end());
        return;
    }
    for (std::int64_t dx = -1; dx <= 1; ++dx) {
        for (std::int64_t dy = -1; dy <= 1; ++dy) {
            const auto it = cells_.find(Cell{c.x + dx, c.y + dy});
            if (it != cells_.end()) out.insert(out.end(), it->second.begin(), it->second.end());
        }
    }
}

void sortChains(CZorVertexArray& vl) {
    const int n = vl.len();
    if (n < 2) return;
    // The starts of the positions not yet settled; position i leaves the grid when the walk
    // settles it, so every id found lies behind the current position, as the plain search's.
    PointGrid starts;
    for (int k = 1; k < n; ++k) starts.insert(vl[k].start, k);
    std::vector<int> near;
    CZorPoint3d p0 = vl[0].start;
    for (int i = 1; i < n; ++i) {
        starts.erase(vl[i].start, i);
        if (vl[i - 1].end == vl[i].start) {
            vl[i - 1].end = vl[i].start;
        } else {
            starts.near(vl[i - 1].end, near);
            int best = -1;
            for (const int k : near) {
                if ((best < 0 || k < best) && vl[k].start == vl[i - 1].end) best = k;
            }
            if (best > 0) {
                vl[i - 1].end = vl[best].start;
                starts.erase(vl[best].start, best);
                std::swap(vl[best], vl[i]);
                starts.insert(vl[best].start, best);
            }
        }
        if (vl[i].end == p0) p0 = vl[(i + 1) % n].start;
    }
}

}  // namespace ZOR::detail
