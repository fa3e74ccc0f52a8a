// Constants of the exact transform: three primes below 2^44, roots of unity modulo each in the
// order in which the butterflies meet them, and what puts the three residues together again.
// Everything is derived from kPrime and kRoot when first used; docs/transform.md has the reasons,
// and tests/limbs/check_constants.py recomputes the primes, the roots and the bounds.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tivelo::kernels {

inline constexpr int kPrimes = 3;

// The three largest primes k 15 2^32 + 1 below 2^44, and an element of order 15 2^32 for each.
inline constexpr int kRootOrder = 32;
inline constexpr std::uint64_t kOddOrder = 15;
inline constexpr std::uint64_t kPrime[kPrimes] = {17523466567681, 17330193039361, 16943645982721};
inline constexpr std::uint64_t kRoot[kPrimes] = {5586375456576, 12682840099416, 1929897197410};

// The longest transform has 2^kMaxTransform coefficients, so m <= 2^(kMaxTransform - 1) in the
// shorter operand. A coefficient of the product is below m (10^16)^2, and the reconstruction wants
// 4 m 10^32 < p1 p2 p3 (see reconstruction.inc).
inline constexpr int kMaxTransform = 24;

// Blocks that a leaf of the recursion has at its bottom, and before its last three-level pass.
inline constexpr std::size_t kBottomBlocks = 512;
inline constexpr std::size_t kPassBlocks = 64;
// Entries of a chain of roots, padded for whole vectors at any place in it.
inline constexpr int kChain = 40;

// The top splits in 5 to 8 pieces.
inline constexpr std::size_t kTops = 4;
inline constexpr std::size_t kTopFactors = 7;

// v^(1/2^j), each the square root of the one before, and their inverses.
struct alignas(64) Chain {
  double root[kChain];
  double inverse[kChain];
};

// A split in u pieces: the roots that belong to them, the factors that transform_top.inc takes for
// it, and the inverse of the factor that two ways down and one up leave.
struct alignas(64) Top {
  Chain chain[8];
  double factor[kTopFactors];
  double inverse;
};

// All entries are residues in (-p/2, p/2), as doubles. With z(k) a root of unity of order 2^k,
// z(k)^2 = z(k-1), the twiddle of block b is t(b), the product of z(i+2) over the bits i set in b.
// So t(2b)^2 = t(b) and t(2b+1) = z(2) t(2b).
struct alignas(64) PrimeTables {
  double bottom[kBottomBlocks];  // t(b), and the same for 2b and the inverses
  double bottom_even[kBottomBlocks];
  double inverse_bottom[kBottomBlocks];
  double inverse_bottom_even[kBottomBlocks];
  // What three levels of block b take: t(b), t(2b), t(2b+1), t(4b) to t(4b+3), nothing.
  double pass[kPassBlocks][8];
  double inverse_pass[kPassBlocks][8];
  Chain chain[8];         // of the roots 1, -1, i, -i, w, -w, iw, -iw, where i = z(2), w = z(3)
  Top top[kTops];         // for u - 5
  double halves[kChain];  // 2^-j
  double p;
  double p_inverse;  // rounded to nearest
};

struct alignas(64) TransformTables {
  PrimeTables prime[kPrimes];
  double inverse_p1_mod_p2;
  double inverse_p1_mod_p3;
  double inverse_p2_mod_p3;
  // Base 10^8, least significant first: p1 and p1 p2, and both times 2^22. The last has the rest.
  double p1[2];
  double p1p2[4];
  double p1_upper[3];
  double p1p2_upper[4];
};

// The tables, built at the first call (about 100 KB, well below a millisecond).
const TransformTables& transform_tables();

}  // namespace tivelo::kernels
