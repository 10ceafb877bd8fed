// Normalising, closing and joining: the members of CZorVertexArray through which most kernel
// results pass before they are handed on.
#include "zor/polyline/vertexarray.h"

CZorVertexArray& CZorVertexArray::norm(bool keepStart) {
    if (len() == 0) return *this;
    // Sized once for all segments, then cut to those that remain.
    CZorVertexArray work;
    work.setLogicalLength(len());
    int kept = 0;
    for (int i = 0; i < len(); ++i) {
        if (data_[i].start != data_[i].end) work[kept++] = data_[i];
    }
    work.setLogicalLength(kept);
    if (work.len() < 2) {
        // Nothing left to merge; the result takes the work list's fresh normal as well.
        *this = work;
        return *this;
    }
    setLogicalLength(0);
    const int n = work.len();

    // Without keepStart, the elements that merge across the closing joint are walked last, so
    // that they are picked up by the last element's run.
    int first = 0;
    if (!keepStart && work[n - 1].coLinear(work[0])) {
        CZorVertex cur = work[n - 1];
        int i = 0;
        bool ateItself = false;
        for (;;) {
            cur = cur.unite(work[i]);
            if (cur.start == cur.end) {
                ateItself = true;
                break;
            }
            ++i;
            if (i >= n || !cur.coLinear(work[i])) break;
        }
        if (!ateItself) first = i % n;
    }

    bool repeat = false;
    for (int k = 0; k < n; ++k) {
        int next = (first + k + 1) % n;
        CZorVertex cur = work[(first + k) % n];
        while (k < n - 1 && cur.coLinear(work[next])) {
            cur = cur.unite(work[next]);
            ++k;
            next = (next + 1) % n;
            if (cur.start == cur.end) break;
        }
        if (cur.start == cur.end) {
            // A merge that ate itself; its neighbours may now merge, so run again.
            repeat = true;
        } else {
            append(cur);
        }
    }
    if (repeat) norm(keepStart);

    // Joints within tolerance become bit-equal, each taking the later element's start.
    const int m = len();
    for (int i = 0; i < m; ++i) {
        const int j = (i + 1) % m;
        if (data_[i].end == data_[j].start) data_[i].end = data_[j].start;
    }
    return *this;
}

CZorVertexArray& CZorVertexArray::close(bool closeIt) {
    CZorVertexArray copy(*this);
    setLogicalLength(0);
    append(copy[0]);
    CZorPoint3d pt = copy[0].end;
    for (int i = 1; i < copy.len(); ++i) {
        const CZorVertex& s = copy[i];
        if (s.start != pt) append(CZorVertex(pt, s.start, 0.0));
        append(s);
        pt = s.end;
    }
    if (closeIt && !isClosed()) append(CZorVertex(pt, copy[0].start, 0.0));
    return *this;
}

bool CZorVertexArray::join(const CZorVertex& v, bool allowReverse) {
    if (isClosed()) return false;
    if (len() == 0) {
        append(v);
        return true;
    }
    if (v.start == data_[len() - 1].end) {
        append(v);
        return true;
    }
    if (v.end == data_[0].start) {
        insertAt(0, v);
        return true;
    }
    if (!allowReverse) return false;
    if (v.end == data_[len() - 1].end) {
        append(v.reverse());
        return true;
    }
    if (v.start == data_[0].start) {
        insertAt(0, v.reverse());
        return true;
    }
    return false;
}

bool CZorVertexArray::join(const CZorVertexArray& a, bool allowReverse) {
    if (isClosed()) return false;
    if (a.isClosed() && len() != 0) return false;
    if (a.len() == 0) return false;
    if (len() == 0) {
        *this = a;
        return true;
    }
    const CZorVertexArray& self = *this;
    if (a[0].start == self[-1].end) {
        *this += a;
        return true;
    }
    if (a[-1].end == self[0].start) {
        *this = a + *this;
        return true;
    }
    if (!allowReverse) return false;
    if (a[-1].end == self[-1].end) {
        *this += a.reverse();
        return true;
    }
    if (a[0].start == self[0].start) {
        *this = a.reverse() + *this;
        return true;
    }
    return false;
}
