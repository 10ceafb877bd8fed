// Tangent-continuous runs of a polyline: the pieces along which an offset keeps one distance
// and a shape keeps one edge, and the per-run lists of distances that go with them.
#pragma once

#include "zor/foundation/array.h"
#include "zor/foundation/map.h"
#include "zor/polyline/vertexarray.h"

namespace ZOR {

// The tangent-continuous runs of the normalised `vl`; a closing joint that continues merges the
// last run into run 0. False and `out` untouched for an empty `vl`.
bool g_vl_segm(CZorArrayTempl<CZorVertexArray>& out, CZorVertexArray vl);
// Single-segment runs that mirror each other: out[i] = j. False and `out` untouched without a
// pair.
bool g_vl_segm_mirp(CZorMapTempl<int, int>& out, const CZorVertexArray& vl);
// Pads `d` to length `n` by repeating its last value (0 for an empty `d`), or cuts it; a negative
// `n` empties it.
void g_vl_dl(int n, CZorArrayTempl<double>& d);

}  // namespace ZOR
