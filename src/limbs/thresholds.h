// Where the engine changes its methods, for all processors; where the transform overtakes the
// columns is a matter of each (kernels/target_thresholds.h). Measured on an AMD EPYC (Zen 5,
// 2 cores), g++ 12 -O3, 2026-11-22. There is no program that finds these again: change one, then
//   cmake --preset bench && cmake --build --preset bench && build/bench/bench/kernels
// shows what it does to the times.
#pragma once

#include <cstddef>

namespace tivelo::limbs {

// Lengths in limbs, but for the last three.
inline constexpr std::size_t kNarrowProduct = 48;        // longer operand, by up to 8 in scalars
inline constexpr std::size_t kDivideRecursion = 400;     // quotient and divisor, from rows
inline constexpr std::size_t kDivideReciprocal = 1000;   // divisor, from recursion to reciprocals
inline constexpr std::size_t kReciprocalDirect = 300;    // up to here by one long division
inline constexpr std::size_t kHalfGcd = 700;             // from words to half gcds
inline constexpr std::size_t kHalfGcdSteps = 56;         // reductions by fewer limbs go by steps
inline constexpr std::size_t kMatrixTransform = 150;     // entries and vectors, from products
inline constexpr std::size_t kExponentsApart = 64;       // longer numbers by a remainder tree
inline constexpr std::size_t kModularTransform = 480;    // modulus, from columns to transforms
inline constexpr std::size_t kBitsRecursion = 250;       // exponent, bits found by halves
inline constexpr std::size_t kRemaindersReduced = 3000;  // moduli, numbers reduced by their product
inline constexpr std::size_t kProductLeaf = 24;          // factors joined one by one
inline constexpr std::size_t kFactorialSwing = 300;      // n, from falling products to swings

}  // namespace tivelo::limbs
