// zor: the foundation library of a CAD product. Including this header brings in every public
// interface; a consumer may include a single subsystem header instead.
#pragma once

#include "zor/foundation/object.h"
