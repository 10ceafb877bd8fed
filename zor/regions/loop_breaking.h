// Breaking two loops against each other without the cost of inserting into long arrays.
#pragma once

#include "zor/polyline/vertexarray.h"

namespace ZOR::detail {

// The result of ZOR::g_vl_break(a, b, 3): the same pieces in the same order, found by the same
// walk (each segment of `a` against the candidates of a box index over `b`, every pair run again
// after it broke something, the splits of each original segment bounded by 8 times the other's
// length plus one, so that degenerate arithmetic ends). The pieces of each original segment are
// kept in a list of their own while the walk goes on, so a break costs no shift of the rest of the
// polyline.
void breakBoth(CZorVertexArray& a, CZorVertexArray& b);

}  // namespace ZOR::detail
