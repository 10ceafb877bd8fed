// Turning sense, chord forms, circle recognition and the boxes and rectangles round a polyline
// in a turned frame.
//
// A turned box is given by two opposite corners and an angle w: the corners of the axis-aligned
// extents of the geometry turned by -w about the origin, turned back by w. The first corner is
// the lower one in the turned frame; for w other than 0 they aren't the minimum and maximum of
// x and y.
#pragma once

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/geometry/vector3d.h"
#include "zor/polyline/vertexarray.h"

namespace ZOR {

// Counter-clockwise about `n` (the points seen in the plane of `n`). Fewer than 3 points: true;
// zero area: false.
bool g_pl_orient(const CZorPoint3dArray& pts, const CZorVector3d& n);
// The same for a polyline, its arcs taken through chords.
bool g_vl_orient(const CZorVertexArray& vl, const CZorVector3d& n);
// The polyline of chords: each arc is replaced by at least 3 chords, with `k` >= 1 by
// max(trunc(|k * sweep / pi|), 2) + 1 of them.
CZorVertexArray g_vl_expl(const CZorVertexArray& vl, int k);
// The polyline is one full circle: closed, arcs only, one sense, one centre. `r` may be written
// even when the result is false; `c` only on success. Either pointer may be null.
bool g_vl_circlep(const CZorVertexArray& vl, CZorPoint3d* c, double* r);
// The closed rectangle a, (b.x, a.y), b, (a.x, b.y). False and `vl` untouched when a == b.
bool g_rect_vl(CZorVertexArray& vl, const CZorPoint3d& a, const CZorPoint3d& b);

// Corners of the turned box of a polyline, of all polylines of a list, or of a point list (one
// point gives its extents, unturned). False or an empty list when there is nothing.
bool g_vl_extmax(CZorPoint3d& lo, CZorPoint3d& hi, const CZorVertexArray& vl, double w);
CZorPoint3dArray g_vl_extmax(const CZorVertexArray& vl, double w);
bool g_vll_extmax(CZorPoint3d& lo, CZorPoint3d& hi, const CZorArrayTempl<CZorVertexArray>& vll,
                  double w);
CZorPoint3dArray g_vll_extmax(const CZorArrayTempl<CZorVertexArray>& vll, double w);
CZorPoint3dArray g_pl_extmax(CZorPoint3dArray pts, double w);
// Length of the turned box along w, and across it; 0 for an empty polyline.
double g_vl_extmax_x(const CZorVertexArray& vl, double w);
double g_vl_extmax_y(const CZorVertexArray& vl, double w);
// Closed rectangle round the geometry, turned by w.
CZorVertexArray g_vl_extrect(const CZorVertexArray& vl, double w);
CZorVertexArray g_pl_extrect(CZorPoint3dArray pts, double w);
// Closed counter-clockwise rectangle with the opposite corners pts[0] and pts[1], its sides
// along w and across it. Empty with fewer than two points.
CZorVertexArray g_ext_vl(const CZorPoint3dArray& pts, double w);

}  // namespace ZOR
