// The digit group that numbers are made of, and its base. Nothing else: the kernels include this
// file where a shared header with a function in it would be compiled for one processor only.
#pragma once

#include <cstdint>

namespace tivelo {

// One group of eight decimal digits, 0 to 99999999.
using Limb = std::uint32_t;

inline constexpr Limb kBase = 100000000;
inline constexpr int kLimbDigits = 8;

}  // namespace tivelo
