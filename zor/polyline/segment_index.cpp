#include "zor/polyline/segment_index.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "zor/polyline/vertexarray.h"

namespace ZOR::detail {

namespace {

constexpr int kLeafSize = 8;

Box2d unbounded() {
    const double inf = std::numeric_limits<double>::infinity();
    return Box2d{-inf, -inf, inf, inf};
}

Box2d pointBox(const CZorPoint3d& a, const CZorPoint3d& b) {
    return Box2d{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

Box2d widened(Box2d b, double m) {
    b.xlo -= m;
    b.ylo -= m;
    b.xhi += m;
    b.yhi += m;
    return b;
}

bool finiteBox(const Box2d& b) {
    return std::isfinite(b.xlo) && std::isfinite(b.ylo) && std::isfinite(b.xhi) &&
           std::isfinite(b.yhi);
}

// The straight segment p-q, set up for many box tests: Liang-Barsky clipping with the
// reciprocals of the direction taken once instead of dividing at every box.
class Segment2d {
  public:
    Segment2d(const CZorPoint3d& p, const CZorPoint3d& q) : p_{p.x, p.y} {
        const double d[2] = {q.x - p.x, q.y - p.y};
        for (int k = 0; k < 2; ++k) {
            inverse_[k] = 1.0 / d[k];
            // A step too small to invert moves the segment by less than any box margin.
            moves_[k] = d[k] != 0.0 && std::isfinite(inverse_[k]);
        }
    }
    // Whether any part of the segment lies inside `b`.
    bool touches(const Box2d& b) const {
        if (moves_[0] && moves_[1]) {
            // The parameter ranges within the slabs of x and of y, cut to the segment.
            const double xa = (b.xlo - p_[0]) * inverse_[0], xb = (b.xhi - p_[0]) * inverse_[0];
            const double ya = (b.ylo - p_[1]) * inverse_[1], yb = (b.yhi - p_[1]) * inverse_[1];
            const double t0 = std::max(std::max(std::min(xa, xb), std::min(ya, yb)), 0.0);
            const double t1 = std::min(std::min(std::max(xa, xb), std::max(ya, yb)), 1.0);
            return t0 <= t1;
        }
        double t0 = 0.0, t1 = 1.0;
        const double lo[2] = {b.xlo - p_[0], b.ylo - p_[1]};
        const double hi[2] = {b.xhi - p_[0], b.yhi - p_[1]};
        for (int k = 0; k < 2; ++k) {
            if (!moves_[k]) {
                if (lo[k] > 0.0 || hi[k] < 0.0) return false;
                continue;
            }
            double ta = lo[k] * inverse_[k];
            double tb = hi[k] * inverse_[k];
            if (ta > tb) std::swap(ta, tb);
            t0 = std::max(t0, ta);
            t1 = std::min(t1, tb);
        }
        return t0 <= t1;
    }

  private:
    double p_[2];
    double inverse_[2];
    bool moves_[2];
};

}  // namespace

double boxMargin() {
    return 2.0 * CZorPoint3d::tol + 1e-12;
}

Box2d segmentBox(const CZorVertex& v, double margin) {
    Box2d b = pointBox(v.start, v.end);
    if (v.bulge != 0.0) {
        const double chord = v.start.distanceTo(v.end);
        const double r = v.radius();
        // Far-away centres of flat arcs carry rounding of the order of r * 1e-16 into the
        // intersection arithmetic; allow generously for it.
        const double rounding = 1e-9 * r;
        if (std::fabs(v.bulge) <= 1.0) {
            // A minor arc lies within the sagitta of its chord.
            b = widened(b, std::fabs(v.bulge) * chord * 0.5 + rounding);
        } else {
            // Whether the chord counts as none, which puts the centre on it, depends on the
            // point tolerance; the box must not. The centre lies within r of the chord's middle
            // (r^2 = h^2 + (chord/2)^2), so the circle lies within r + h of it.
            const CZorPoint3d m = g_midp3d(v.start, v.end);
            const double h = std::sqrt(std::max(0.0, r * r - 0.25 * chord * chord));
            b = widened(Box2d{m.x, m.y, m.x, m.y}, r + h + rounding);
        }
    }
    b = widened(b, margin);
    if (!finiteBox(b)) return unbounded();
    return b;
}

SegmentIndex::SegmentIndex(const CZorVertexArray& vl) {
    const int n = vl.len();
    const double margin = boxMargin();
    std::vector<Box2d> boxes;
    boxes.reserve(n);
    for (int i = 0; i < n; ++i) boxes.push_back(segmentBox(vl[i], margin));
    std::vector<std::uint32_t> codes;
    order_ = zOrder(boxes, codes);
    leafBoxes_.reserve(n);
    for (const int i : order_) leafBoxes_.push_back(boxes[i]);
    if (n > 0) {
        // Cuts at cell boundaries leave some leaves part full: room for leaves half full.
        nodes_.reserve(4 * (n / kLeafSize + 1));
        build(0, n, codes);
    }
}

std::vector<int> SegmentIndex::zOrder(const std::vector<Box2d>& boxes,
                                      std::vector<std::uint32_t>& codes) {
    // Box centres on a 2^16 grid over their extent, the bits of x and y interleaved: sorting
    // by that key lays neighbours side by side, and the codes' top bits cut space in halves.
    // Unbounded boxes count as centred at the low corner and only widen their subtree's box.
    const int n = static_cast<int>(boxes.size());
    std::vector<double> cx(n), cy(n);
    double xlo = std::numeric_limits<double>::infinity(), ylo = xlo, xhi = -xlo, yhi = -xlo;
    for (int i = 0; i < n; ++i) {
        const Box2d& b = boxes[i];
        cx[i] = b.xlo * 0.5 + b.xhi * 0.5;
        cy[i] = b.ylo * 0.5 + b.yhi * 0.5;
        if (std::isfinite(cx[i]) && std::isfinite(cy[i])) {
            xlo = std::min(xlo, cx[i]);
            xhi = std::max(xhi, cx[i]);
            ylo = std::min(ylo, cy[i]);
            yhi = std::max(yhi, cy[i]);
        }
    }
    const auto cell = [](double v, double lo, double hi) -> std::uint64_t {
        const double f = hi > lo ? (v - lo) / (hi - lo) : 0.0;
        if (!(f > 0.0)) return 0;
        return f >= 1.0 ? 0xFFFF : static_cast<std::uint64_t>(f * 65535.0);
    };
    // Spreads the 16 bits of v to the even bit positions of 32.
    const auto spread = [](std::uint64_t v) {
        v = (v | (v << 8)) & 0x00FF00FFu;
        v = (v | (v << 4)) & 0x0F0F0F0Fu;
        v = (v | (v << 2)) & 0x33333333u;
        v = (v | (v << 1)) & 0x55555555u;
        return v;
    };
    std::vector<std::uint64_t> keys(n);
    for (int i = 0; i < n; ++i) {
        const std::uint64_t code =
            spread(cell(cx[i], xlo, xhi)) | (spread(cell(cy[i], ylo, yhi)) << 1);
        keys[i] = (code << 32) | static_cast<std::uint32_t>(i);
    }
    // Sorted by the code alone, a byte at a time from the lowest: each pass is stable, so equal
    // codes keep their numbers ascending, as sorting the whole keys would.
    std::vector<std::uint64_t> moved(n);
    for (int shift = 32; shift < 64; shift += 8) {
        std::array<int, 257> at{};
        for (const std::uint64_t key : keys) ++at[((key >> shift) & 0xFF) + 1];
        for (int b = 0; b < 256; ++b) at[b + 1] += at[b];
        for (const std::uint64_t key : keys) moved[at[(key >> shift) & 0xFF]++] = key;
        keys.swap(moved);
    }
    std::vector<int> order(n);
    codes.resize(n);
    for (int i = 0; i < n; ++i) {
        order[i] = static_cast<int>(keys[i] & 0xFFFFFFFFu);
        codes[i] = static_cast<std::uint32_t>(keys[i] >> 32);
    }
    return order;
}

int SegmentIndex::build(int first, int count, const std::vector<std::uint32_t>& codes) {
    const int self = static_cast<int>(nodes_.size());
    nodes_.push_back(Node{});
    if (count <= kLeafSize) {
        Box2d box = leafBoxes_[first];
        for (int k = first + 1; k < first + count; ++k) box.add(leafBoxes_[k]);
        nodes_[self].box = box;
        nodes_[self].first = first;
        nodes_[self].count = count;
        return self;
    }
    // Split where the highest bit in which the range's codes differ turns to 1: a cut across
    // the space along x or y. A range within one cell is halved.
    const std::uint32_t lo = codes[first], hi = codes[first + count - 1];
    int split = count / 2;
    if (lo != hi) {
        const std::uint32_t bit = 1u << (31 - std::countl_zero(lo ^ hi));
        const auto begin = codes.begin() + first;
        split = static_cast<int>(std::partition_point(begin, begin + count,
                                                      [&](std::uint32_t c) { return !(c & bit); }) -
                                 begin);
    }
    const int left = build(first, split, codes);
    const int right = build(first + split, count - split, codes);
    Node& node = nodes_[self];
    node.box = nodes_[left].box;
    node.box.add(nodes_[right].box);
    node.left = left;
    node.right = right;
    return self;
}

template <class Test>
void SegmentIndex::collect(Test test, std::vector<int>& out) const {
    out.clear();
    if (nodes_.empty()) return;
    // Splits by 32 code bits and then by halving keep the tree under 64 levels deep for any int
    // count, and a depth-first walk holds at most one pending sibling per level, so a fixed
    // stack spares every query an allocation.
    std::array<int, 72> stack;
    int depth = 0;
    stack[depth++] = 0;
    while (depth > 0) {
        const Node& node = nodes_[stack[--depth]];
        if (!test(node.box)) continue;
        if (node.count > 0) {
            for (int k = node.first; k < node.first + node.count; ++k) {
                if (test(leafBoxes_[k])) out.push_back(order_[k]);
            }
        } else {
            stack[depth++] = node.left;
            stack[depth++] = node.right;
        }
    }
    std::sort(out.begin(), out.end());
}

void SegmentIndex::query(const Box2d& b, std::vector<int>& out) const {
    collect([&](const Box2d& box) { return box.overlaps(b); }, out);
}

void SegmentIndex::querySegment(const CZorPoint3d& p, const CZorPoint3d& q,
                                std::vector<int>& out) const {
    if (!(p.isValid() && q.isValid())) {
        // Nothing can be ruled out for a ray with a non-finite end.
        out.resize(order_.size());
        for (int i = 0; i < size(); ++i) out[i] = i;
        return;
    }
    const Segment2d segment(p, q);
    collect([&](const Box2d& box) { return segment.touches(box); }, out);
}

}  // namespace ZOR::detail
