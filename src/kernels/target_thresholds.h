// From which lengths on the transform is faster than the columns: one row for each target. Where
// the rest of the engine changes its methods stands in limbs/thresholds.h. Measured on an AMD EPYC
// (Zen 5, 2 cores), g++ 12 -O3, 2026-11-23; to measure again:
//   cmake --preset bench && cmake --build --preset bench && build/bench/bench/thresholds
#pragma once

#include <cstddef>

namespace tivelo::kernels {

// Limbs of the shorter operand from which the transform is used.
struct Thresholds {
  std::size_t even;    // lengths within a factor of 2
  std::size_t uneven;  // further apart
  std::size_t square;
};

inline constexpr Thresholds kAvx512Thresholds = {350, 230, 540};
inline constexpr Thresholds kAvx2Thresholds = {315, 215, 490};
// By instructions, counted under qemu 7.2.
inline constexpr Thresholds kNeonThresholds = {390, 220, 490};
inline constexpr Thresholds kPortableThresholds = {380, 255, 610};

}  // namespace tivelo::kernels
