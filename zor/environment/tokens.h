// Splitting of the short delimited texts of this layer: path lists and version numbers.
#pragma once

#include <vector>

#include "zor/text/string.h"

namespace ZOR::detail {

// The parts of `text` between the delimiters, without empty ones; none for a null text.
std::vector<CZorString> splitTokens(const wchar_t* text, wchar_t delimiter);

}  // namespace ZOR::detail
