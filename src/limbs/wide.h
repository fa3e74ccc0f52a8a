// The one operation the language has no name for: the upper half of a 64 by 64 bit product.
// Reciprocal multiplication everywhere in limbs/ rests on it.
#pragma once

#include <cstdint>

namespace tivelo::limbs {

__extension__ typedef unsigned __int128 Wide;

inline std::uint64_t multiply_high(std::uint64_t a, std::uint64_t b) {
  return static_cast<std::uint64_t>((static_cast<Wide>(a) * b) >> 64);
}

}  // namespace tivelo::limbs
