// The free functions of the polyline kernel (namespace ZOR), one header per family.
#pragma once

#include "zor/polyline/analysis.h"
#include "zor/polyline/orientation.h"
#include "zor/polyline/point_inside.h"
#include "zor/polyline/segment_relations.h"
#include "zor/polyline/split_break.h"
#include "zor/polyline/vertex.h"
#include "zor/polyline/vertexarray.h"
#include "zor/polyline/vertexarray_ex.h"
