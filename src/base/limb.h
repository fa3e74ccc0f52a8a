// The digit group that every number is made of. Kept apart from everything else so that the
// engine in limbs/ can be read, tested and measured without a record or a precision in sight.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tivelo {

// One group of eight decimal digits, 0 to 99999999.
using Limb = std::uint32_t;

inline constexpr Limb kBase = 100000000;
inline constexpr int kLimbDigits = 8;

// A run of limbs, most significant first: carries walk from the end to the front.
using Limbs = std::span<Limb>;
using ConstLimbs = std::span<const Limb>;

}  // namespace tivelo
