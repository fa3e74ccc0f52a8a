// Where the engine changes its methods: multiplication with one row per target, the rest for all.
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

// Measured with build/release/bench/kernels, lengths in limbs.
inline constexpr std::size_t kNarrowProduct = 48;       // longer operand, by up to 8 in scalars
inline constexpr std::size_t kDivideRecursion = 400;    // quotient and divisor, from rows
inline constexpr std::size_t kDivideReciprocal = 1000;  // divisor, from recursion to reciprocals
inline constexpr std::size_t kReciprocalDirect = 300;   // up to here by one long division
inline constexpr std::size_t kHalfGcd = 400;            // from Lehmer's steps to half gcds
inline constexpr std::size_t kHalfGcdSteps = 32;        // reductions by fewer limbs go by steps
inline constexpr std::size_t kRemaindersByWords = 256;  // longer numbers by a remainder tree
inline constexpr std::size_t kProductLeaf = 24;         // factors joined one by one
inline constexpr std::size_t kFactorialSwing = 300;     // n, from falling products to swings

}  // namespace tivelo::limbs
