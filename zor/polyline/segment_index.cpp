#include "zor/polyline/segment_index.h"

#include <algorithm>
#include <array>
#include <cmath>
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
            moves_[k] = d[k] != 0.0;
            inverse_[k] = moves_[k] ? 1.0 / d[k] : 0.0;
        }
    }
    // Whether any part of the segment lies inside `b`.
    bool touches(const Box2d& b) const {
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
            if (t0 > t1) return false;
        }
        return true;
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
    boxes_.reserve(n);
    for (int i = 0; i < n; ++i) boxes_.push_back(segmentBox(vl[i], margin));
    order_.resize(n);
    for (int i = 0; i < n; ++i) order_[i] = i;
    if (n > 0) {
        // The split comparisons read every centre many times over; work each out once.
        // Unbounded boxes count as centred at 0 (keeping the order strict) and only make their
        // subtree's box unbounded.
        Centres centres;
        centres.x.resize(n);
        centres.y.resize(n);
        for (int i = 0; i < n; ++i) {
            const Box2d& b = boxes_[i];
            const double cx = b.xlo * 0.5 + b.xhi * 0.5;
            const double cy = b.ylo * 0.5 + b.yhi * 0.5;
            centres.x[i] = std::isfinite(cx) ? cx : 0.0;
            centres.y[i] = std::isfinite(cy) ? cy : 0.0;
        }
        nodes_.reserve(2 * (n / kLeafSize + 1));
        build(0, n, centres);
    }
    leafBoxes_.reserve(n);
    for (const int i : order_) leafBoxes_.push_back(boxes_[i]);
}

int SegmentIndex::build(int first, int count, const Centres& centres) {
    const int self = static_cast<int>(nodes_.size());
    nodes_.push_back(Node{});
    Box2d box = boxes_[order_[first]];
    for (int k = first + 1; k < first + count; ++k) box.add(boxes_[order_[k]]);
    nodes_[self].box = box;
    if (count <= kLeafSize) {
        nodes_[self].first = first;
        nodes_[self].count = count;
        return self;
    }
    // Split at the median of the box centres along the wider extent.
    const bool alongX = (box.xhi - box.xlo) >= (box.yhi - box.ylo);
    const double* centre = alongX ? centres.x.data() : centres.y.data();
    const int half = count / 2;
    std::nth_element(order_.begin() + first, order_.begin() + first + half,
                     order_.begin() + first + count, [&](int a, int b) {
                         const double ca = centre[a], cb = centre[b];
                         if (ca < cb) return true;
                         if (cb < ca) return false;
                         return a < b;
                     });
    const int left = build(first, half, centres);
    const int right = build(first + half, count - half, centres);
    nodes_[self].left = left;
    nodes_[self].right = right;
    return self;
}

template <class Test>
void SegmentIndex::collect(Test test, std::vector<int>& out) const {
    out.clear();
    if (nodes_.empty()) return;
    // Halving splits keep the tree at most 32 levels deep for any int count, and a depth-first
    // walk holds at most one pending sibling per level, so a fixed stack spares every query an
    // allocation.
    std::array<int, 64> stack;
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
        out.resize(boxes_.size());
        for (int i = 0; i < size(); ++i) out[i] = i;
        return;
    }
    const Segment2d segment(p, q);
    collect([&](const Box2d& box) { return segment.touches(box); }, out);
}

}  // namespace ZOR::detail
