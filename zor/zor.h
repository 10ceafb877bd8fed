// zor: the foundation library of a CAD product. Including this header brings in every public
// interface; a consumer may include a single subsystem header instead.
#pragma once

// Foundation: object root, scoped services, containers, reference table.
#include "zor/foundation/array.h"
#include "zor/foundation/critical_section.h"
#include "zor/foundation/error_handler.h"
#include "zor/foundation/map.h"
#include "zor/foundation/map_double_to_point.h"
#include "zor/foundation/object.h"
#include "zor/foundation/ptrmap.h"
#include "zor/foundation/smart_handle.h"
#include "zor/foundation/uniq_pointer.h"

// Value geometry.
#include "zor/geometry/circles.h"
#include "zor/geometry/formulas.h"
#include "zor/geometry/lines.h"
#include "zor/geometry/matrix3d.h"
#include "zor/geometry/nan.h"
#include "zor/geometry/plane.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"
#include "zor/geometry/vector3d.h"

// Segments, polylines and regions.
#include "zor/polyline/fillet_chamfer.h"
#include "zor/polyline/offset.h"
#include "zor/polyline/polyline_algorithms.h"
#include "zor/regions/regions.h"

// Text.
#include "zor/text/encodings.h"
#include "zor/text/escapes.h"
#include "zor/text/languages.h"
#include "zor/text/number_text.h"
#include "zor/text/string.h"
#include "zor/text/text_lists.h"

// Operating-system services.
#include "zor/environment/datetime.h"
#include "zor/environment/files.h"
#include "zor/environment/path_unexpand.h"
#include "zor/environment/peer_call.h"
#include "zor/environment/process.h"
#include "zor/environment/registry_store.h"
#include "zor/environment/settings.h"
#include "zor/environment/timers.h"
#include "zor/environment/version_info.h"
