// Where multiplication changes its method, one row per target.
// Measured on an AMD EPYC (Zen 5, 2 cores), g++ 12 -O3, 2026-11-22; measure again with
//   cmake --preset release -DTIVELO_BENCH=ON && cmake --build --preset release &&
//   build/release/bench/thresholds
#pragma once

#include <cstddef>

namespace tivelo::limbs {

// Limbs of the shorter operand from which the transform is used.
struct Thresholds {
  std::size_t even;    // lengths within a factor of 2
  std::size_t uneven;  // further apart
  std::size_t square;
};

inline constexpr Thresholds kAvx512Thresholds = {300, 250, 250};
inline constexpr Thresholds kAvx2Thresholds = {300, 220, 330};
inline constexpr Thresholds kPortableThresholds = {580, 360, 880};

}  // namespace tivelo::limbs
