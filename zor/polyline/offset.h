// Offsetting a polyline: every segment moves sideways by its own distance (positive to the right
// of travel), then the chain is repaired locally. Neighbours are trimmed or extended to meet,
// corners come out mitred, and segments that collapsed or turned over are removed. Crossings
// between segments that aren't neighbours aren't looked for, and the result isn't normalised.
#pragma once

#include "zor/foundation/array.h"
#include "zor/polyline/vertexarray.h"

namespace ZOR {

// One distance per tangent-continuous run of `vl` (the last one repeated for further runs), the
// closing joint repaired. False and `vl` untouched for an empty `dist`.
bool g_vl_segm_offset(CZorVertexArray& vl, const CZorArrayTempl<double>& dist);

namespace detail {

// The work of CZorVertexArray::offset. `dist` gives one distance per segment, the last one
// repeated; with `trimClose` the closing joint of a closed polyline is repaired like the others,
// otherwise it may stay open. A closed polyline that collapses entirely comes out empty.
void offsetPolyline(CZorVertexArray& vl, const CZorArrayTempl<double>& dist, bool trimClose);
// `d` == 0.0 changes nothing; otherwise the form above with the single distance `d`.
void offsetPolyline(CZorVertexArray& vl, double d, bool trimClose);

}  // namespace detail
}  // namespace ZOR
