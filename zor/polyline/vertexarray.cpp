#include "zor/polyline/vertexarray.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <utility>
#include <vector>

#include "zor/geometry/circles.h"
#include "zor/geometry/matrix3d.h"
#include "zor/geometry/plane.h"
#include "zor/polyline/numeric.h"
#include "zor/polyline/segment_index.h"

namespace {

// Products of lengths below this are cheaper to run as the plain nested loop than to index.
constexpr long kPlainPairs = 256;

int wrapIndex(int i, int len) {
    if (len < 2) return 0;
    return static_cast<int>((static_cast<unsigned int>(len) + static_cast<unsigned int>(i)) %
                            static_cast<unsigned int>(len));
}

}  // namespace

CZorVertexArray::CZorVertexArray() : normal_(CZorVector3d::kZAxis) {}

CZorVertexArray::CZorVertexArray(const CZorVertex& v) : normal_(CZorVector3d::kZAxis) {
    append(v);
}

CZorVertexArray::CZorVertexArray(const CZorVertexArray& a)
    : CZorArray(), normal_(CZorVector3d::kZAxis) {
    *this = a;
}

CZorVertexArray& CZorVertexArray::operator=(const CZorVertexArray& a) {
    if (this == &a) return *this;
    const int n = a.len();
    setLength(n);
    for (int i = 0; i < n; ++i) data_[i] = a.data_[i];
    normal_ = a.normal_;
    return *this;
}

CZorVertexArray::CZorVertexArray(CZorVertexArray&& a) noexcept
    : CZorArray(a), normal_(a.normal_), data_(std::exchange(a.data_, nullptr)) {
    a.physicalLength = 0;
    a.logicalLength = 0;
}

CZorVertexArray& CZorVertexArray::operator=(CZorVertexArray&& a) noexcept {
    if (this == &a) return *this;
    ::delete[] data_;
    data_ = std::exchange(a.data_, nullptr);
    physicalLength = std::exchange(a.physicalLength, 0);
    logicalLength = std::exchange(a.logicalLength, 0);
    normal_ = a.normal_;
    return *this;
}

CZorVertexArray::~CZorVertexArray() {
    ::delete[] data_;
}

int CZorVertexArray::setLength(int n) {
    const int old = len();
    const int capacity = CZorArray::setLength(n);
    if (capacity != 0) {
        // The constructors set every member, so the clearing of CZorObj's allocator is skipped.
        CZorVertex* block = ::new CZorVertex[capacity];
        for (int i = 0; i < old && i < capacity; ++i) block[i] = data_[i];
        ::delete[] data_;
        data_ = block;
    }
    // Slots that come into use hold default segments, never stale ones. A fresh block holds
    // nothing else; only slots reused within the old storage need resetting.
    if (capacity == 0) {
        for (int i = old; i < len(); ++i) data_[i] = CZorVertex();
    }
    return len();
}

bool CZorVertexArray::isMember(const CZorVertex& v) {
    return data_ != nullptr && &v >= data_ && &v < data_ + len();
}

bool CZorVertexArray::operator==(const CZorVertexArray& a) const {
    if (this == &a) return true;
    if (len() != a.len()) return false;
    for (int i = 0; i < len(); ++i) {
        if (!(data_[i] == a.data_[i])) return false;
    }
    return true;
}

CZorVertexArray& CZorVertexArray::operator+=(const CZorVertexArray& a) {
    const int n = a.len();
    const int old = len();
    if (this == &a) {
        const CZorVertexArray copy(a);
        return *this += copy;
    }
    setLength(old + n);
    for (int i = 0; i < n; ++i) data_[old + i] = a.data_[i];
    return *this;
}

CZorVertexArray CZorVertexArray::operator+(const CZorVertexArray& a) const {
    CZorVertexArray r(*this);
    r += a;
    return r;
}

const CZorVertex& CZorVertexArray::outside(int i) const {
    static const CZorVertex dummy;
    if (i < 0) i = wrapIndex(i, len());
    if (i >= len()) return dummy;
    return data_[i];
}

CZorVertex& CZorVertexArray::reach(int i) {
    static CZorVertex dummy;
    if (i < 0) {
        if (len() == 0) return dummy;
        i = wrapIndex(i, len());
    }
    if (i >= len()) setLength(i + 1);
    return data_[i];
}

CZorVertexArray& CZorVertexArray::append(const CZorVertex& v) {
    const CZorVertex copy(v);
    const int n = len();
    setLength(n + 1);
    data_[n] = copy;
    return *this;
}

CZorVertexArray CZorVertexArray::append(const CZorVertex& v) const {
    CZorVertexArray r(*this);
    r.append(v);
    return r;
}

CZorVertexArray& CZorVertexArray::append(const CZorPoint3d& p, double bulge) {
    const CZorPoint3d s = len() > 0 ? data_[len() - 1].end : CZorPoint3d::kOrigin;
    return append(CZorVertex(s, p, bulge));
}

CZorVertexArray& CZorVertexArray::insertAt(unsigned int i, const CZorVertex& v) {
    const CZorVertex copy(v);
    const int n = len();
    // An index beyond the end grows the list by one only; the element goes last.
    const int at = i > static_cast<unsigned int>(n) ? n : static_cast<int>(i);
    setLength(n + 1);
    for (int k = n; k > at; --k) std::swap(data_[k], data_[k - 1]);
    data_[at] = copy;
    return *this;
}

CZorVertexArray& CZorVertexArray::remove(unsigned int i, bool keep) {
    const int n = len();
    if (i >= static_cast<unsigned int>(n)) return *this;
    const int at = static_cast<int>(i);
    const int next = (at + 1) % n;
    if (keep && data_[at].end == data_[next].start) data_[next].start = data_[at].start;
    setLogicalLength(n - 1);
    // The removed element travels behind the new end.
    std::rotate(data_ + at, data_ + at + 1, data_ + n);
    return *this;
}

CZorVertexArray& CZorVertexArray::breakVertex(int i, const CZorPoint3d& p) {
    if (i < 0) i = wrapIndex(i, len());
    if (i >= len()) return *this;
    const CZorPoint3d at(p);
    insertAt(static_cast<unsigned int>(i), data_[i]);
    data_[i].setEndPoint(at);
    data_[i + 1].setStartPoint(at);
    return *this;
}

CZorVertexArray& CZorVertexArray::fromPoints(const CZorPoint3dArray& p, bool closed) {
    const int n = p.len();
    const bool wrap = closed && !p.isClosed();
    const int count = wrap ? n : std::max(n - 1, 0);
    setLogicalLength(count);
    for (int i = 0; i < count; ++i) {
        data_[i].start = p[i];
        data_[i].end = p[(i + 1) % n];
        data_[i].bulge = 0.0;
    }
    return *this;
}

CZorVertexArray& CZorVertexArray::bulg(double b) {
    for (int i = 0; i < len(); ++i) data_[i].bulge = b;
    return *this;
}

CZorVertexArray& CZorVertexArray::revert() {
    const int n = len();
    for (int i = 0; i < n / 2; ++i) std::swap(data_[i], data_[n - 1 - i]);
    for (int i = 0; i < n; ++i) data_[i].revert();
    return *this;
}

CZorVertexArray CZorVertexArray::reverse() const {
    CZorVertexArray r(*this);
    r.revert();
    return r;
}

bool CZorVertexArray::setNormal(const CZorVector3d& n) {
    normal_ = n;
    return true;
}

int CZorVertexArray::indexOf(const CZorVertex& v) const {
    for (int i = 0; i < len(); ++i) {
        if (data_[i] == v) return i;
    }
    return -1;
}

bool CZorVertexArray::isPoint(const CZorPoint3d& p) const {
    for (int i = 0; i < len(); ++i) {
        if (data_[i].isPoint(p)) return true;
    }
    return false;
}

bool CZorVertexArray::isContinuous() const {
    return numOpens() == 0;
}

bool CZorVertexArray::isClosed() const {
    if (len() < 2) return false;
    if (data_[len() - 1].end != data_[0].start) return false;
    return isContinuous();
}

int CZorVertexArray::numOpens() const {
    int opens = 0;
    for (int i = 0; i + 1 < len(); ++i) {
        if (data_[i].end != data_[i + 1].start) ++opens;
    }
    return opens;
}

double CZorVertexArray::geomLength() const {
    double sum = 0.0;
    for (int i = 0; i < len(); ++i) sum += data_[i].bulgLen();
    return sum;
}

bool CZorVertexArray::pointAtDist(CZorPoint3d& p, double d) const {
    for (int i = 0; i < len(); ++i) {
        if (data_[i].pointAtDist(p, d, true)) return true;
        d -= data_[i].bulgLen();
    }
    return false;
}

bool CZorVertexArray::distAtPoint(double& d, const CZorPoint3d& p) const {
    double before = 0.0;
    for (int i = 0; i < len(); ++i) {
        double here = 0.0;
        if (data_[i].distAtPoint(here, p)) {
            d = before + here;
            return true;
        }
        before += data_[i].bulgLen();
    }
    return false;
}

CZorVertex& CZorVertexArray::vxNear(const CZorPoint3d& p) const {
    static CZorVertex none;
    const double e = CZorPoint3d::tol * 10.0;
    const double shortLen = e * 5.0;
    double best = DBL_MAX;
    CZorVertex* found = &none;
    for (int i = 0; i < len(); ++i) {
        const CZorVertex& s = data_[i];
        const CZorPoint3d f = s.lotp(p);
        double dist = 0.0;
        if (s.isPoint(f)) {
            dist = p.distanceTo(f);
        } else {
            const double length = s.bulgLen();
            if (shortLen > length) {
                dist = p.distanceTo(s.mid());
            } else {
                CZorPoint3d a, b;
                s.pointAtDist(a, e, true);
                s.pointAtDist(b, length - e, true);
                dist = std::min(p.distanceTo(a), p.distanceTo(b));
            }
        }
        if (best > dist) {
            best = dist;
            found = &data_[i];
        }
    }
    return *found;
}

bool CZorVertexArray::extents(CZorPoint3d& lo, CZorPoint3d& hi) const {
    if (len() == 0) return false;
    CZorPoint3d l = data_[0].start;
    CZorPoint3d h = data_[0].start;
    for (int i = 0; i < len(); ++i) {
        const CZorVertex& s = data_[i];
        l = ZOR::p_min(l, s.start);
        l = ZOR::p_min(l, s.end);
        h = ZOR::p_max(h, s.start);
        h = ZOR::p_max(h, s.end);
        if (s.bulge == 0.0) continue;
        CZorVertex arc(s);
        if (normal_.z < 0.0) arc.bulge = -arc.bulge;
        CZorPoint3d c;
        double r = 0.0, a1 = 0.0, a2 = 0.0;
        arc.toArc(c, r, a1, a2);
        for (int k = 0; k < 4; ++k) {
            const CZorPoint3d q = ZOR::polar(c, k * ZOR::detail::kHalfPi, r);
            if (ZOR::g_arc_pt(c, r, a1, a2, q)) {
                l = ZOR::p_min(l, q);
                h = ZOR::p_max(h, q);
            }
        }
    }
    lo = l;
    hi = h;
    return true;
}

CZorPoint3dArray CZorVertexArray::pts(bool expand, double tol) const {
    CZorPoint3dArray out;
    if (len() == 0) return out;
    for (int i = 0; i < len(); ++i) {
        const CZorVertex& s = data_[i];
        out.append(s.start);
        if (!expand) continue;
        const int n = ZOR::g_vx_split_n(s, tol);
        if (n <= 0) continue;
        const CZorPoint3d c = s.center();
        const double r = s.radius();
        const double a0 = ZOR::angle(c, s.start);
        const double w = 4.0 * std::atan(s.bulge) / (n + 1);
        for (int k = 1; k <= n; ++k) out.append(ZOR::polar(c, a0 + k * w, r));
    }
    if (!isClosed()) out.append(data_[len() - 1].end);
    return out;
}

bool CZorVertexArray::intersectWith(CZorPoint3dArray& out, const CZorVertexArray& a,
                                    unsigned int flags) const {
    if (this == &a) return false;
    out.setLogicalLength(0);
    CZorPoint3dArray hits;
    auto visit = [&](int i, int j) {
        if (data_[i].intersectWith(hits, a.data_[j], flags)) {
            for (int k = 0; k < hits.len(); ++k) out.appendUniq(hits[k]);
        }
    };
    // Extended segments (0x100) reach beyond any box; small inputs aren't worth an index.
    const bool plain =
        (flags & 0x100) != 0 || static_cast<long>(len()) * static_cast<long>(a.len()) < kPlainPairs;
    if (plain) {
        for (int i = 0; i < len(); ++i) {
            for (int j = 0; j < a.len(); ++j) visit(i, j);
        }
    } else {
        const ZOR::detail::SegmentIndex index(a);
        const double margin = ZOR::detail::boxMargin();
        std::vector<int> candidates;
        for (int i = 0; i < len(); ++i) {
            index.query(ZOR::detail::segmentBox(data_[i], margin), candidates);
            for (const int j : candidates) visit(i, j);
        }
    }
    return out.len() > 0;
}

CZorPoint3dArray CZorVertexArray::intersectWith(const CZorVertexArray& a,
                                                unsigned int flags) const {
    CZorPoint3dArray out;
    intersectWith(out, a, flags);
    return out;
}

bool CZorVertexArray::intersectWithBulg0(CZorPoint3dArray& out, const CZorVertexArray& a) const {
    if (this == &a) return false;
    out.setLogicalLength(0);
    for (int i = 0; i < len(); ++i) {
        for (int j = 0; j < a.len(); ++j) {
            const CZorPoint3dArray hits = data_[i].intersectWithBulg0(a.data_[j]);
            for (int k = 0; k < hits.len(); ++k) out.appendUniq(hits[k]);
        }
    }
    return out.len() > 0;
}

CZorPoint3dArray CZorVertexArray::intersectWithBulg0(const CZorVertexArray& a) const {
    CZorPoint3dArray out;
    intersectWithBulg0(out, a);
    return out;
}

CZorVertexArray& CZorVertexArray::transformBy(const double m[4][4]) {
    const bool mirrored = ZOR::mtxIsMir(m);
    for (int i = 0; i < len(); ++i) {
        CZorVertex& s = data_[i];
        s.start *= m;
        s.end *= m;
        if (mirrored && s.bulge != 0.0) s.bulge = -s.bulge;
    }
    normal_ *= m;
    normal_.normalize();
    return *this;
}

CZorVertexArray CZorVertexArray::getTransformedCopy(const double m[4][4]) const {
    CZorVertexArray r(*this);
    r.transformBy(m);
    return r;
}

CZorVertexArray& CZorVertexArray::move(const CZorVector3d& v) {
    // A translation leaves the normal as it is, unnormalised included.
    const CZorVector3d n = normal_;
    CZorMatrix3d t;
    t.setToTranslation(v);
    transformBy(t.m);
    normal_ = n;
    return *this;
}

CZorVertexArray& CZorVertexArray::rotate(double ang, const CZorPoint3d& p) {
    if (ang == 0.0) return *this;
    CZorMatrix3d r;
    r.setToRotation(ang, CZorVector3d::kZAxis, p);
    return transformBy(r.m);
}

CZorVertexArray& CZorVertexArray::mirror(double ang, const CZorPoint3d& p) {
    CZorMatrix3d m;
    m.setToMirroring(CZorPlane(p, CZorVector3d(-std::sin(ang), std::cos(ang), 0.0)));
    for (int i = 0; i < len(); ++i) {
        CZorVertex& s = data_[i];
        s.start *= m.m;
        s.end *= m.m;
        if (s.bulge != 0.0) s.bulge = -s.bulge;
    }
    return *this;
}
