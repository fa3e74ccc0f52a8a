// Where multiplication changes its method, one row per target.
// Measured on an AMD EPYC (Zen 5, 2 cores), g++ 12 -O3, 2026-11-22; measure again with
//   cmake --preset release -DTIVELO_BENCH=ON && cmake --build --preset release &&
//   build/release/bench/thresholds
#pragma once

#include <cstddef>

namespace tivelo::limbs {

struct Thresholds {
  std::size_t transform;         // limbs of the shorter operand from which the transform is used
  std::size_t transform_square;  // the same for squares
};

inline constexpr Thresholds kAvx512Thresholds = {150, 150};
inline constexpr Thresholds kAvx2Thresholds = {150, 150};
inline constexpr Thresholds kPortableThresholds = {300, 300};

}  // namespace tivelo::limbs
