// The module's exported constants and module-wide tables, defined here in their order of
// construction (static initialisation runs in order of definition within one translation unit,
// and destruction runs in the reverse order).
//
// Anything built before CZorString::kNull (the settings strings below) cannot rely on it.

#include <cstdlib>

#include "zor/environment/settings.h"
#include "zor/environment/timers.h"
#include "zor/foundation/ptrmap.h"
#include "zor/geometry/matrix3d.h"
#include "zor/geometry/point3d.h"
#include "zor/geometry/vector3d.h"
#include "zor/text/string.h"

const CZorPoint3d CZorPoint3d::kOrigin(0.0, 0.0, 0.0);

// [settings] the current-version string, the base-path string and the settings list go here.
CZorString ZOR::detail::settingsCurVer;
CZorString ZOR::detail::settingsBasePath;
CZorArrayTempl<CZorString> ZOR::detail::settingsAppKeys;
// The settings state is cleared at process exit, before the objects themselves go.
[[maybe_unused]] static const int settingsCleanupRegistered =
    std::atexit(ZOR::detail::settingsCleanup);

std::list<int> ZOR::CPtrMap::m_FreeList;
std::vector<ZOR::CPtrMap::Data> ZOR::CPtrMap::m_DataArr;

const CZorString CZorString::kNull;

// [timers] the table of performance sums goes here.
CZorMapTempl<CZorString, ZOR::perf_data> ZOR::detail::perfTable;

const CZorVector3d CZorVector3d::kXAxis(1.0, 0.0, 0.0);
const CZorVector3d CZorVector3d::kYAxis(0.0, 1.0, 0.0);
const CZorVector3d CZorVector3d::kZAxis(0.0, 0.0, 1.0);
const CZorVector3d CZorVector3d::kNull(0.0, 0.0, 0.0);

const CZorMatrix3d CZorMatrix3d::kIdentity;
