// Union, difference and intersection of two closed polylines without holes, giving one polyline
// that may hold several chains one after another (g_vl_vll cuts it into them), and the part of
// a polyline inside a closed loop.
#pragma once

#include "zor/polyline/vertexarray.h"
#include "zor/polyline/vertexarray_ex.h"

namespace ZOR {

// Union, first minus second, or intersection (`op`); any other value breaks both and keeps
// nothing. The operands are taken by value because breaking cuts them up; they are expected
// closed and running the same way, and a stretch shared by both boundaries is compared by
// direction. The result is sorted into chains and normalised, with the default normal.
CZorVertexArray g_vl_bool(CZorVertexArray a, CZorVertexArray b, CZorVertexArray::boolOper op);
// The same segments in a fresh Ex polyline: number 0, text null, whatever the operands carry.
CZorVertexArrayEx g_vl_bool(CZorVertexArrayEx a, CZorVertexArrayEx b, CZorVertexArray::boolOper op);

}  // namespace ZOR

// The pieces of `vl` inside `loop` or on it, in order, unnormalised; empty when `vl` doesn't
// cross `loop` (tangent contacts don't count), also when it lies wholly inside.
CZorVertexArray zor_g_vl_vl_trim(const CZorVertexArray& vl, const CZorVertexArray& loop);
