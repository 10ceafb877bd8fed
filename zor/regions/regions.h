// The region kernel: loops from line work, two-polygon booleans, region building, region
// booleans, slicing and punching.
#pragma once

#include "zor/regions/loops.h"
#include "zor/regions/polygon_boolean.h"
#include "zor/regions/region_boolean.h"
#include "zor/regions/region_building.h"
#include "zor/regions/slice_punch.h"
