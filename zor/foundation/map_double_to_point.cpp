#include "zor/foundation/map_double_to_point.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

namespace ZOR {

std::uint32_t CMapDoubleToPoint::setLogicalLength(std::uint32_t n) {
    const std::uint32_t old = keys.len();
    keys.setLogicalLength(n);
    // Number slots that come into use by growth are uninitialised; the map's entries are
    // read back, so they get a defined value.
    for (std::uint32_t k = old; k < n; ++k) keys[static_cast<int>(k)] = 0.0;
    points.setLogicalLength(static_cast<int>(n));
    return n;
}

bool CMapDoubleToPoint::append(double d, const CZorPoint3d& p) {
    keys.append(d);
    points.append(p);
    return true;
}

bool CMapDoubleToPoint::insertAt(int i, double d, const CZorPoint3d& p) {
    if (i < 0) return false;
    if (i > len()) setLogicalLength(static_cast<std::uint32_t>(i));
    keys.insertAt(static_cast<std::uint32_t>(i), d);
    points.insertAt(static_cast<unsigned int>(i), p);
    return true;
}

bool CMapDoubleToPoint::getAt(int i, double& d, CZorPoint3d& p) {
    if (i > len()) return false;
    if (i == len()) append(0.0, CZorPoint3d());
    d = keys[i];
    p = points[i];
    return true;
}

bool CMapDoubleToPoint::sort() {
    const std::uint32_t n = keys.len();
    if (n == 0) return false;
    // Grouping the entries under their distinct numbers in ascending order, each group in the
    // entries' present order, is a stable sort by the number: `==` and `<` of numbers agree.
    // A NaN equals no number, so it would belong to no group and its entry would vanish; such
    // entries are kept instead, behind all others in their order.
    std::vector<std::uint32_t> order(n);
    std::iota(order.begin(), order.end(), 0u);
    const double* key = keys.entry();
    std::stable_sort(order.begin(), order.end(), [key](std::uint32_t a, std::uint32_t b) {
        if (std::isnan(key[b])) return !std::isnan(key[a]);
        return key[a] < key[b];
    });
    CZorArrayTempl<double> sortedKeys;
    CZorPoint3dArray sortedPoints;
    sortedKeys.setLogicalLength(n);
    sortedPoints.setLogicalLength(static_cast<int>(n));
    for (std::uint32_t k = 0; k < n; ++k) {
        sortedKeys[static_cast<int>(k)] = key[order[k]];
        sortedPoints[static_cast<int>(k)] = points[static_cast<int>(order[k])];
    }
    keys = std::move(sortedKeys);
    points = sortedPoints;
    return true;
}

}  // namespace ZOR
