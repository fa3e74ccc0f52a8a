// Constants of the exact transform: three primes below 2^44, roots of unity modulo each in the
// order in which the butterflies meet them, and what puts the three residues together again.
// Everything is derived from kPrime and kRoot when first used; docs/transform.md has the reasons,
// and tests/limbs/check_constants.py recomputes the primes, the roots and the bounds.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tivelo::limbs {

inline constexpr int kPrimes = 3;

// The three largest primes k 2^26 + 1 below 2^44, and an element of order 2^26 for each.
inline constexpr int kRootOrder = 26;
inline constexpr std::uint64_t kPrime[kPrimes] = {17591917608961, 17589568798721, 17589501689857};
inline constexpr std::uint64_t kRoot[kPrimes] = {6227336199684, 1844843139904, 726819696543};

// The longest transform has 2^kMaxTransform coefficients, so m <= 2^(kMaxTransform - 1) in the
// shorter operand. A coefficient of the product is below m (10^16)^2, and the reconstruction wants
// 4 m 10^32 < p1 p2 p3 (see crt_core.h).
inline constexpr int kMaxTransform = 24;

// Twiddles that a leaf of the recursion can ask for: blocks of at least 4 elements in 2^11.
inline constexpr std::size_t kTwiddles = 512;
// Entries of a chain of roots: v, v^(1/2), v^(1/4), ...; padded for whole vectors.
inline constexpr int kChain = 32;

// All entries are residues in (-p/2, p/2), as doubles.
struct alignas(64) PrimeTables {
  // With z(k) a root of unity of order 2^k, z(k)^2 = z(k-1): twiddle[b] is the product of z(i+2)
  // over the bits i set in b. So twiddle[2b]^2 = twiddle[b], twiddle[2b+1] = z(2) twiddle[2b].
  double twiddle[kTwiddles];
  double twiddle_even[kTwiddles];  // twiddle[2b]
  double twiddle_quad[kTwiddles];  // twiddle[4b]
  double inverse[kTwiddles];       // 1 / twiddle[b]
  double inverse_even[kTwiddles];
  double inverse_quad[kTwiddles];
  // chain[c][j] = c'th root^(1/2^j), roots in the order 1, -1, i, -i, w, -w, iw, -iw; i = z(2),
  // w = z(3).
  double chain[8][kChain];
  double inverse_chain[8][kChain];
  double halves[kChain];  // 2^-j
  double p;
  double p_inverse;  // rounded to nearest
};

struct alignas(64) TransformTables {
  PrimeTables prime[kPrimes];
  double inverse_p1_mod_p2;
  double inverse_p1_mod_p3;
  double inverse_p2_mod_p3;
  double p1[2];    // base 10^8, least significant first
  double p1p2[4];  // base 10^8, least significant first
};

// The tables, built at the first call (about 100 KB, well below a millisecond).
const TransformTables& transform_tables();

}  // namespace tivelo::limbs
