// The offset members of CZorVertexArray; the algorithm lives with the offsetting family.
#include "zor/polyline/offset.h"
#include "zor/polyline/vertexarray.h"

CZorVertexArray& CZorVertexArray::offset(double d, bool trimClose) {
    ZOR::detail::offsetPolyline(*this, d, trimClose);
    return *this;
}

CZorVertexArray& CZorVertexArray::offset(const CZorArrayTempl<double>& dist, bool trimClose) {
    ZOR::detail::offsetPolyline(*this, dist, trimClose);
    return *this;
}
