#include "zor/polyline/point_inside.h"

#include <cstdlib>

namespace ZOR {

namespace {

constexpr double kRayLength = 1e7;
// 2 pi / 32767: turns a draw of rand into a direction.
constexpr double kRandToAngle = 0.00019175345033660654;
// Restarts are needed only when a ray meets a segment end; random directions practically never
// keep doing so, but a degenerate input must not hold the caller forever.
constexpr int kMaxRays = 10000;

enum class RayResult { kOnEdge, kRestart, kCounted };

// One ray over the segments that `candidates` yields, in ascending order, each with its arc
// circle when one is at hand (null otherwise). `crossings` counts the points met. `hits` is
// scratch: a segment's intersection replaces it only when it finds points, and only then is it
// read.
template <class Candidates>
RayResult castRay(const CZorVertexArray& vl, const CZorPoint3d& p, const CZorVertex& ray,
                  Candidates candidates, CZorPoint3dArray& hits, long& crossings) {
    crossings = 0;
    RayResult result = RayResult::kCounted;
    candidates([&](int i, const detail::ArcCircle* arc) {
        const CZorVertex& s = vl[i];
        if (detail::isPointOn(s, arc, p)) {
            result = RayResult::kOnEdge;
            return false;
        }
        if (detail::intersectSegments(s, arc, hits, ray, nullptr, 0x001)) {
            if (hits.indexOf(s.start) >= 0 || hits.indexOf(s.end) >= 0) {
                result = RayResult::kRestart;
                return false;
            }
            crossings += hits.len();
        }
        return true;
    });
    return result;
}

template <class CandidatesFor>
bool evenOdd(const CZorVertexArray& vl, CZorPoint3d p, bool onEdge, CandidatesFor candidatesFor,
             CZorPoint3dArray& hits) {
    if (vl.len() < 2) return false;
    p.z = vl[0].start.z;
    double w = angle(vl[0].mid(), p);
    for (int round = 0;; ++round) {
        const CZorVertex ray(p, polar(p, w, kRayLength), 0.0);
        long crossings = 0;
        const RayResult result = castRay(vl, p, ray, candidatesFor(ray), hits, crossings);
        if (result == RayResult::kOnEdge) return onEdge;
        w = std::rand() * kRandToAngle;
        if (result == RayResult::kCounted || round >= kMaxRays) return crossings % 2 == 1;
    }
}

}  // namespace

bool g_vl_pt_inside(const CZorVertexArray& vl, CZorPoint3d p, bool onEdge) {
    CZorPoint3dArray hits;
    return evenOdd(
        vl, p, onEdge,
        [&](const CZorVertex&) {
            return [&](auto visit) {
                for (int i = 0; i < vl.len(); ++i) {
                    if (!visit(i, nullptr)) return;
                }
            };
        },
        hits);
}

namespace detail {

PointInsideTester::PointInsideTester(const CZorVertexArray& vl)
    : vl_(vl),
      index_(vl),
      pointTol_(CZorPoint3d::tol),
      vectorTol_(CZorVector3d::tol),
      circles_(vl.len()) {
    for (int i = 0; i < vl.len(); ++i) {
        const CZorVertex& s = vl[i];
        ArcCircle& a = circles_[i];
        s.toArc(a.c, a.r, a.a1, a.a2);
    }
}

bool PointInsideTester::inside(CZorPoint3d p, bool onEdge) const {
    // The circles were taken under the tolerances of construction; the centre of an arc
    // depends on them, so under others every arc is worked out afresh.
    const bool circlesHold = CZorPoint3d::tol == pointTol_ && CZorVector3d::tol == vectorTol_;
    return evenOdd(
        vl_, p, onEdge,
        [&](const CZorVertex& ray) {
            // Every segment that can hold `p` or meet the ray touches the ray's box path.
            index_.querySegment(ray.start, ray.end, candidates_);
            return [&](auto visit) {
                for (const int i : candidates_) {
                    const bool arc = circlesHold && vl_[i].bulge != 0.0;
                    if (!visit(i, arc ? &circles_[i] : nullptr)) return;
                }
            };
        },
        hits_);
}

}  // namespace detail
}  // namespace ZOR
