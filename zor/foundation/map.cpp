#include "zor/foundation/map.h"

// The number-to-number map is part of the library's interface; compile it once here.
template class CZorMapTempl<int, int>;
