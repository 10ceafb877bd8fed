// Union, difference and intersection of regions with holes, and the difference of a region
// against a list of regions.
//
// Each operation breaks every loop of one region against every loop of the other, keeps or drops
// each piece by where its middle lies against the other region, strings the kept pieces into
// loops again and nests them into regions. Operands at rest (every loop counter-clockwise) give
// results at rest. The operands are taken by value: the operation reverses and breaks its own
// copies.
//
// The result tells what happened, `out` holds the regions:
// - an empty operand: false, `out` untouched;
// - union of outer loops that touch at exactly one point: false, `out` untouched;
// - outer loops apart: union true with [a, b]; difference false with [a]; intersection false
//   with an empty list;
// - otherwise true, possibly with an empty list.
#pragma once

#include "zor/foundation/array.h"
#include "zor/polyline/vertexarray.h"
#include "zor/polyline/vertexarray_ex.h"

namespace ZOR {

// The loops of the result carry no attributes (the Ex forms: number 0, text null), except the
// Ex difference, whose loops carry the text of a[0].
bool g_region_union(CZorArrayTempl<CZorVertexArray> a, CZorArrayTempl<CZorVertexArray> b,
                    CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& out);
bool g_region_union(CZorArrayTempl<CZorVertexArrayEx> a, CZorArrayTempl<CZorVertexArrayEx> b,
                    CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& out);
bool g_region_diff(CZorArrayTempl<CZorVertexArray> a, CZorArrayTempl<CZorVertexArray> b,
                   CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& out);
bool g_region_diff(CZorArrayTempl<CZorVertexArrayEx> a, CZorArrayTempl<CZorVertexArrayEx> b,
                   CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& out);
bool g_region_sect(CZorArrayTempl<CZorVertexArray> a, CZorArrayTempl<CZorVertexArray> b,
                   CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& out);
bool g_region_sect(CZorArrayTempl<CZorVertexArrayEx> a, CZorArrayTempl<CZorVertexArrayEx> b,
                   CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& out);

// `a` minus each subtrahend in turn, every piece cut further by the later ones. Always true;
// `out` is [a] when nothing cuts it.
bool g_region_diff(const CZorArrayTempl<CZorVertexArrayEx>& a,
                   const CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& subtrahends,
                   CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>& out);

// The first region of `a` minus each subtrahend in turn. `out` isn't emptied first: out[0]
// becomes a[0], and regions it held beyond are cut as well. False, `out` untouched, for an empty
// `a`; otherwise whether anything is left.
bool reglDiff(const CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& a,
              const CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& subtrahends,
              CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>& out);

}  // namespace ZOR
