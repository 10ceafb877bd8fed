#include "zor/geometry/point3d_array.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>
#include <new>
#include <numeric>
#include <vector>

#include "zor/foundation/map.h"
#include "zor/geometry/matrix3d.h"
#include "zor/geometry/plane.h"
#include "zor/geometry/point_grid.h"

namespace {

// A length the int-sized root can hold; beyond it the request is an allocation failure.
int checkedLength(long long n) {
    if (n > INT_MAX) throw std::bad_alloc();
    return static_cast<int>(n);
}

// Negative index to a slot: -1 the last, computed in unsigned 32-bit arithmetic as the arrays
// do, so an index below -len still lands inside the list.
int wrapNegative(int i, int n) {
    if (n < 2) return 0;
    return static_cast<int>((static_cast<std::uint32_t>(n) + static_cast<std::uint32_t>(i)) %
                            static_cast<std::uint32_t>(n));
}

// The ordering the point list has always had: a map keyed by (projection, index, 0) with the
// point equality within the tolerance and the exact point order. It is only needed where keys
// can collide or fail to order: a tolerance of 1 or more, or a NaN projection. Where the map
// merges keys, the merged entries fill the front of the list and the tail keeps its points.
void sortThroughPointMap(CZorPoint3d* data, const std::vector<double>& keys) {
    CZorMapTempl<CZorPoint3d, CZorPoint3d> map;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        map.setAt(CZorPoint3d(keys[i], static_cast<double>(i), 0.0), data[i]);
    }
    for (std::uint32_t i = 0; i < map.len(); ++i) map.getAtIndex(i, data[i]);
}

}  // namespace

CZorPoint3dArray::CZorPoint3dArray(const CZorPoint3dArray& a) : CZorArray() {
    setLength(a.len());
    std::copy(a.data, a.data + a.len(), data);
}

CZorPoint3dArray& CZorPoint3dArray::operator=(const CZorPoint3dArray& a) {
    if (this == &a) return *this;
    setLength(a.len());
    std::copy(a.data, a.data + a.len(), data);
    return *this;
}

CZorPoint3dArray::~CZorPoint3dArray() {
    ::delete[] data;
}

int CZorPoint3dArray::setLength(int n) {
    const int old = len();
    const int capacity = CZorArray::setLength(n);
    if (capacity != 0) {
        // The constructors set every member, so the clearing of CZorObj's allocator is skipped.
        CZorPoint3d* block = ::new CZorPoint3d[capacity];
        for (int i = 0; i < old; ++i) block[i].set(data[i].x, data[i].y, data[i].z);
        ::delete[] data;
        data = block;
    }
    return len();
}

void CZorPoint3dArray::extendTo(long long n) {
    const int old = len();
    setLength(checkedLength(n));
    std::fill(data + old, data + len(), CZorPoint3d());
}

bool CZorPoint3dArray::isMember(const CZorPoint3d& p) const {
    const std::less<const CZorPoint3d*> before;
    return data != nullptr && !before(&p, data) && before(&p, data + physicalLength);
}

bool CZorPoint3dArray::operator==(const CZorPoint3dArray& a) const {
    if (this == &a) return true;
    if (len() != a.len()) return false;
    return std::equal(data, data + len(), a.data);
}

CZorPoint3d& CZorPoint3dArray::reach(int i) {
    if (i < 0) {
        // Writes through it stay for the next caller, as with every array's default slot.
        static CZorPoint3d dummy;
        if (isEmpty()) return dummy;
        i = wrapNegative(i, len());
    }
    if (i >= len()) extendTo(i + 1LL);
    return data[i];
}

const CZorPoint3d& CZorPoint3dArray::outside(int i) const {
    static const CZorPoint3d dummy;
    if (i < 0) i = wrapNegative(i, len());
    if (i >= len()) return dummy;
    return data[i];
}

CZorPoint3dArray& CZorPoint3dArray::append(const CZorPoint3d& p) {
    // A point of this list could move with the block that growth replaces.
    if (isMember(p)) return append(CZorPoint3d(p));
    const int n = len();
    setLength(checkedLength(n + 1LL));
    data[n] = p;
    return *this;
}

CZorPoint3dArray CZorPoint3dArray::append(const CZorPoint3d& p) const {
    CZorPoint3dArray copy(*this);
    copy.append(p);
    return copy;
}

CZorPoint3dArray& CZorPoint3dArray::appendUniq(const CZorPoint3d& p) {
    if (indexOf(p) < 0) append(p);
    return *this;
}

CZorPoint3dArray& CZorPoint3dArray::insertAt(unsigned int i, const CZorPoint3d& p) {
    // A point of this list could move with the block, or with the shift below.
    if (isMember(p)) return insertAt(i, CZorPoint3d(p));
    const int n = len();
    if (i > static_cast<unsigned int>(n)) {
        extendTo(i + 1LL);
    } else {
        setLength(checkedLength(n + 1LL));
        std::copy_backward(data + i, data + n, data + n + 1);
    }
    data[i] = p;
    return *this;
}

CZorPoint3dArray CZorPoint3dArray::insertAt(unsigned int i, const CZorPoint3d& p) const {
    CZorPoint3dArray copy(*this);
    copy.insertAt(i, p);
    return copy;
}

int CZorPoint3dArray::removeAt(int i) {
    const int n = len();
    if (i < 0 || i >= n) return n;
    std::copy(data + i + 1, data + n, data + i);
    return setLogicalLength(n - 1);
}

int CZorPoint3dArray::indexOf(const CZorPoint3d& p) const {
    for (int i = 0; i < len(); ++i) {
        if (data[i] == p) return i;
    }
    return -1;
}

bool CZorPoint3dArray::indexOf(const CZorPoint3d& p, std::uint32_t& i) const {
    const int k = indexOf(p);
    if (k < 0) return false;
    i = static_cast<std::uint32_t>(k);
    return true;
}

CZorPoint3dArray& CZorPoint3dArray::operator+=(const CZorPoint3dArray& a) {
    // The count is taken first, so that `a += a` doubles; after the growth `a.data` is this
    // list's new block, whose front holds the old points.
    const int n = len();
    const int m = a.len();
    setLength(checkedLength(static_cast<long long>(n) + m));
    std::copy(a.data, a.data + m, data + n);
    return *this;
}

CZorPoint3dArray CZorPoint3dArray::operator+(const CZorPoint3dArray& a) const {
    CZorPoint3dArray sum(*this);
    sum += a;
    return sum;
}

CZorPoint3dArray& CZorPoint3dArray::revert() {
    std::reverse(data, data + len());
    return *this;
}

CZorPoint3dArray CZorPoint3dArray::reverse() const {
    CZorPoint3dArray copy(*this);
    copy.revert();
    return copy;
}

CZorPoint3dArray& CZorPoint3dArray::sort(const CZorVector3d& dir) {
    const int n = len();
    if (n < 2) return *this;
    const double grid = CZorPoint3d::tol;
    std::vector<double> keys(n);
    // With the index as the key's y, two keys are at least 1 apart, so below a tolerance of 1
    // none are == and the map's order is exactly (projection, index): a stable sort by the
    // rounded projection. NaN projections have no such order.
    bool plainOrder = grid < 1.0;
    for (int i = 0; i < n; ++i) {
        keys[i] = ZOR::round(ZOR::sprod(data[i], dir), grid);
        if (std::isnan(keys[i])) plainOrder = false;
    }
    if (!plainOrder) {
        sortThroughPointMap(data, keys);
        return *this;
    }
    std::vector<int> order(n);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&keys](int a, int b) { return keys[a] < keys[b]; });
    std::vector<CZorPoint3d> sorted;
    sorted.reserve(n);
    for (int k : order) sorted.push_back(data[k]);
    std::copy(sorted.begin(), sorted.end(), data);
    return *this;
}

CZorPoint3dArray& CZorPoint3dArray::sort(double ang) {
    return sort(ZOR::polar(ang, 1.0));
}

bool CZorPoint3dArray::isClosed() const {
    return len() >= 3 && data[0] == data[len() - 1];
}

CZorPoint3dArray& CZorPoint3dArray::move(const CZorVector3d& v) {
    const CZorVector3d d = v;  // `v` may view a point of this list
    for (int i = 0; i < len(); ++i) data[i] += d;
    return *this;
}

CZorPoint3dArray& CZorPoint3dArray::transformBy(const double m[4][4]) {
    for (int i = 0; i < len(); ++i) data[i] *= m;
    return *this;
}

CZorPoint3dArray CZorPoint3dArray::getTransformedCopy(const double m[4][4]) const {
    CZorPoint3dArray copy(*this);
    copy.transformBy(m);
    return copy;
}

CZorPoint3dArray& CZorPoint3dArray::rotate(double ang, const CZorPoint3d& p) {
    if (ang == 0.0) return *this;
    CZorMatrix3d m;
    m.setToRotation(ang, CZorVector3d::kZAxis, p);
    return transformBy(m);
}

CZorPoint3dArray& CZorPoint3dArray::mirror(double ang, const CZorPoint3d& p) {
    CZorMatrix3d m;
    m.setToMirroring(CZorPlane(p, CZorVector3d(-std::sin(ang), std::cos(ang), 0.0)));
    return transformBy(m);
}

bool CZorPoint3dArray::extents(CZorPoint3d& lo, CZorPoint3d& hi) const {
    CZorPoint3d min;
    CZorPoint3d max;
    if (!ZOR::g_pl_min(min, *this) || !ZOR::g_pl_max(max, *this)) return false;
    lo = min;
    hi = max;
    return true;
}

namespace ZOR {
namespace {

// The first point of `a` whose distance to `p` beats all earlier ones by `better`.
template <class Better>
CZorPoint3d pickByDistance(const CZorPoint3d& p, const CZorPoint3dArray& a, Better better) {
    if (a.isEmpty()) return p;
    int best = 0;
    double bestDistance = a[0].distanceTo(p);
    for (int i = 1; i < a.len(); ++i) {
        const double d = a[i].distanceTo(p);
        if (better(d, bestDistance)) {
            best = i;
            bestDistance = d;
        }
    }
    return a[best];
}

template <class Combine>
bool foldPoints(CZorPoint3d& out, const CZorPoint3dArray& a, Combine combine) {
    if (a.isEmpty()) return false;
    CZorPoint3d acc = a[0];
    for (int i = 1; i < a.len(); ++i) acc = combine(acc, a[i]);
    out = acc;
    return true;
}

// Whether every point of `a` has a point == to it in `b`, by a scan of `b` for each.
bool eachHasPartner(const CZorPoint3dArray& a, const CZorPoint3dArray& b) {
    for (int i = 0; i < a.len(); ++i) {
        if (b.indexOf(a[i]) < 0) return false;
    }
    return true;
}

// Below this length the plain scans cost less than building the grids.
constexpr int kGridMinLength = 32;

// Set equality of two lists of equal length, with a grid over each list from a modest length on.
bool samePointSets(const CZorPoint3dArray& a, const CZorPoint3dArray& b) {
    if (a.len() < kGridMinLength) return eachHasPartner(a, b) && eachHasPartner(b, a);
    std::vector<int> near;
    const auto eachFound = [&near](const CZorPoint3dArray& from, const CZorPoint3dArray& in) {
        std::vector<CZorPoint3d> points(in.len());
        for (int j = 0; j < in.len(); ++j) points[j] = in[j];
        const ZOR::detail::PointGrid grid(points);
        for (int i = 0; i < from.len(); ++i) {
            grid.near(from[i], near);
            bool found = false;
            for (const int j : near) found = found || points[j] == from[i];
            if (!found) return false;
        }
        return true;
    };
    return eachFound(a, b) && eachFound(b, a);
}

}  // namespace

CZorPoint3d g_near_p1(const CZorPoint3d& p, const CZorPoint3dArray& a) {
    return pickByDistance(p, a, [](double d, double best) { return d < best; });
}

CZorPoint3d g_far_p1(const CZorPoint3d& p, const CZorPoint3dArray& a) {
    return pickByDistance(p, a, [](double d, double best) { return d > best; });
}

bool g_pl_min(CZorPoint3d& out, const CZorPoint3dArray& a) {
    return foldPoints(out, a, p_min);
}

bool g_pl_max(CZorPoint3d& out, const CZorPoint3dArray& a) {
    return foldPoints(out, a, p_max);
}

bool g_pl_equal(const CZorPoint3dArray& a, const CZorPoint3dArray& b) {
    if (&a == &b) return true;  // each point finds itself, NaN coordinates included
    if (a.len() != b.len()) return false;
    return samePointSets(a, b);
}

bool plToMtx(double m[4][4], const CZorPoint3dArray& p) {
    if (p.len() < 3) return false;
    for (int c = 0; c < 4; ++c) {
        const CZorPoint3d& q = p[c];  // a missing fourth point reads as the origin
        m[0][c] = q.x;
        m[1][c] = q.y;
        m[2][c] = q.z;
        m[3][c] = c == 3 ? 1.0 : 0.0;
    }
    return true;
}

CZorPoint3dArray& mtxToPl(CZorPoint3dArray& p, const double m[4][4]) {
    p.setLogicalLength(4);
    for (int c = 0; c < 4; ++c) p[c].set(m[0][c], m[1][c], m[2][c]);
    return p;
}

}  // namespace ZOR
