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

CZorVertexArray diagonalsOf(const CZorVertexArray& diagonals, const std::vector<int>& subset) {
    CZorVertexArray out;
    for (const int i : subset) out.append(diagonals[i]);
    return out;
}

}  // namespace

LoopBoxes::LoopBoxes(const std::vector<const CZorVertexArray*>& loops)
    : diagonals_(extentDiagonals(loops)), index_(diagonals_) {}

LoopBoxes::LoopBoxes(const LoopBoxes& all, const std::vector<int>& subset)
    : diagonals_(diagonalsOf(all.diagonals_, subset)), index_(diagonals_) {}

void LoopBoxes::at(const CZorPoint3d& p, std::vector<int>& out) const {
    index_.query(Box2d{p.x, p.y, p.x, p.y}, out);
}

RegionPointTester::RegionPointTester(std::vector<const CZorVertexArray*> region) {
    if (region.empty()) return;
    for (const CZorVertexArray* loop : region) loops_.push_back(std::make_unique<Loop>(loop));
    holeBoxes_ = std::make_unique<LoopBoxes>(
        std::vector<const CZorVertexArray*>(region.begin() + 1, region.end()));
}

bool RegionPointTester::Loop::onOutline(CZorPoint3d p, std::vector<int>& scratch) const {
    // As in the ray test: too few segments answer nothing, and the point takes the height of
    // the outline.
    if (vl->len() < 2) return false;
    p.z = (*vl)[0].start.z;
    inside.index().query(Box2d{p.x, p.y, p.x, p.y}, scratch);
    for (const int i : scratch) {
        if ((*vl)[i].isPoint(p)) return true;
    }
    return false;
}

int RegionPointTester::classify(const CZorPoint3d& p) const {
    if (loops_.empty()) return -1;
    // A point strictly inside a loop isn't on it, so the outline is searched only for the
    // points that the ray test puts outside.
    const Loop& outer = *loops_[0];
    if (!outer.inside.inside(p, false)) return outer.onOutline(p, scratch_) ? 0 : -1;
    if (loops_.size() == 1) return 1;
    holeBoxes_->at(p, candidates_);
    for (const int h : candidates_) {
        const Loop& hole = *loops_[h + 1];
        if (hole.inside.inside(p, false)) return -1;
        if (hole.onOutline(p, scratch_)) return 0;
    }
    return 1;
}

}  // namespace ZOR::detail
