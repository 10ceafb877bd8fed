// Read-only questions about a polyline or a point list: cross-section values, centre of
// gravity, a shape code, named reference points, equality and symmetry, a normalised start,
// outward directions and the nearest of several polylines. The point test lives in
// point_inside.h.
#pragma once

#include "zor/foundation/array.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/polyline/point_inside.h"
#include "zor/polyline/vertexarray.h"
#include "zor/text/string.h"

// Cross-section values of a closed outline.
struct Statics {
    CZorPoint3d center;  // centre of gravity (z 0 from a point list; a circle's own centre)
    double area = 0.0;   // always positive
    double ix = 0.0;     // second moment about the horizontal axis through the centre
    double iy = 0.0;     // second moment about the vertical axis through the centre
    double ixy = 0.0;    // product moment about the same axes
    double i1 = 0.0;     // larger principal moment
    double i2 = 0.0;     // smaller principal moment
    double phi = 0.0;    // direction of the principal axes, radians
};

namespace ZOR {

// The list as a closed polygon. False and `st` untouched with fewer than 3 points; a polygon
// of zero area isn't guarded.
bool g_pl_statics(const CZorPoint3dArray& pts, Statics& st);
// Exact values for one full circle, else the polygon of chords within 0.01 of the arcs.
bool g_vl_statics(const CZorVertexArray& vl, Statics& st);
// Centre of gravity of the polygon; one point is itself, two their mean (`orient` then isn't
// written). `orient` is 1 for a counter-clockwise polygon, else 0. False when empty.
bool g_schw_p(const CZorPoint3dArray& pts, CZorPoint3d& out, int& orient);
CZorPoint3d g_schw_p(const CZorPoint3dArray& pts, int& orient);
// A text code of the sequence of segments ("0L_2L_4L_6L" for a rectangle), independent of place
// and turn: the first straight segment is turned onto +X and that angle is added to `rot`.
bool g_vl_model(CZorVertexArray vl, CZorString& name, double& rot);
// Reference points of a four-sided outline run from its lower left corner: "BL", "BC", "BR",
// "CL", "CC", "CR", "TL", "TC", "TR". The origin for another key or fewer than 4 segments.
CZorPoint3d g_vl_point(const CZorVertexArray& vl, const CZorString& key);
// Same shape wherever it lies, as sets of points: a reverse or a rotated start are equal.
bool g_vl_equal(CZorVertexArray a, CZorVertexArray b, double tol);
// Same shape at the same place.
bool g_vl_equal1(CZorVertexArray a, CZorVertexArray b, double tol);
// Symmetric about the axis of direction `w` through the middle of the bounding box.
bool g_vl_is_symmetric(const CZorVertexArray& vl, double w);
// The cycle turned to start at the corner nearest to the lower left of the box; with
// `toOrigin` moved so that this corner is the origin.
CZorVertexArray g_vl_normal(const CZorVertexArray& vl, bool toOrigin);
// One direction class (g_oktant) of the outward normal at each segment's middle.
CZorArrayTempl<int> g_vl_oktant(const CZorVertexArray& vl);
// The polyline of the list nearest to `p` (the first of equally near ones). False and `index`
// untouched for an empty list.
bool g_vll_near(const CZorArrayTempl<CZorVertexArray>& vll, const CZorPoint3d& p,
                unsigned int& index);

}  // namespace ZOR
