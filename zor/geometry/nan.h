// ZOR::nan(): the library's marker for a `double` result that does not exist.
//
// It is a quiet NaN with every bit set but the sign (0x7FFFFFFFFFFFFFFF). Callers test for it
// with `std::isnan`; NaN never compares equal, not even to itself.
#pragma once

#include <bit>
#include <cstdint>

namespace ZOR {

inline constexpr std::uint64_t kNanBits = 0x7FFF'FFFF'FFFF'FFFFull;

constexpr double nan() {
    return std::bit_cast<double>(kNanBits);
}

}  // namespace ZOR
