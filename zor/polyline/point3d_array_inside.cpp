// The point list's ring test, written with the segment intersection of the polyline kernel.
#include "zor/geometry/point3d_array.h"
#include "zor/polyline/vertex.h"

bool CZorPoint3dArray::ptInside(const CZorPoint3d& p) const {
    const int n = len();
    if (n < 3) return false;
    const CZorVector3d toward = (ZOR::g_midp3d((*this)[0], (*this)[1]) - p).normal();
    const CZorVertex ray(p, p + toward * 1e9, 0.0);
    int crossings = 0;
    for (int i = 0; i < n; ++i) {
        const CZorVertex edge((*this)[i], (*this)[(i + 1) % n], 0.0);
        crossings += ray.intersectWith(edge, 0).len();
    }
    return crossings % 2 == 1;
}
