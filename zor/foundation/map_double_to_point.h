// ZOR::CMapDoubleToPoint: a list of (number, point) pairs.
//
// Despite its name it is no dictionary: two parallel arrays in insertion order, duplicate
// numbers allowed, until `sort` orders them by the number, stably.
#pragma once

#include <cstdint>

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"

namespace ZOR {

class CMapDoubleToPoint {
  public:
    int len() const { return static_cast<int>(keys.len()); }
    // Sets both lengths to `n`. New numbers are 0 (their slots would be uninitialised); new
    // points are what the point list holds in those slots.
    std::uint32_t setLogicalLength(std::uint32_t n);

    // Adds a pair at the end. Always true.
    bool append(double d, const CZorPoint3d& p);
    // Inserts a pair at `i`; true. An `i` past the end first extends both lists to `i` as
    // setLogicalLength does, so they never part. A negative `i` inserts nothing and gives false.
    bool insertAt(int i, double d, const CZorPoint3d& p);
    // Reads entry `i`; -1 is the last. False when `i` is above the length. An `i` equal to the
    // length adds one entry (0 and the origin) and reads it.
    bool getAt(int i, double& d, CZorPoint3d& p);

    CZorArrayTempl<double> getDbLst() const { return keys; }
    CZorPoint3dArray getPtLst() const { return points; }

    // Ascending by the number; entries with equal numbers keep their order, and entries whose
    // number is NaN follow all others. False on an empty map.
    bool sort();

  private:
    CZorArrayTempl<double> keys;
    CZorPoint3dArray points;
};

}  // namespace ZOR
