// Casting out: products checked by residues. A number's residue comes from one pass over its limbs,
// and that of a product from those of the factors, so that the check shares nothing with the way in
// which the product was found. docs/trust.md shows which faults cannot pass it.
#pragma once

#include <cstdint>

#include "base/limb.h"
#include "kernels/target.h"

namespace tivelo::limbs {

// (10^8 - 1) (10^8 + 1). Every pair of limbs is worth its value modulo this, which is why the sums
// of limbs and the alternating sums give a residue modulo the two factors.
inline constexpr std::uint64_t kCastOut = std::uint64_t{kBase} * kBase - 1;

// A number modulo kCastOut^2: rest + fold x kCastOut, both below kCastOut. The square is what makes
// a limb's place count: sums alone would not see two limbs of like places exchanged.
struct Residue {
  std::uint64_t rest = 0;
  std::uint64_t fold = 0;
  bool operator==(const Residue&) const = default;
};

// The residue of a, which is not empty, by the sums of target t.
Residue residue_of(ConstLimbs a, const kernels::Target& t);

// The residue of the product of two numbers with these.
Residue product_of(const Residue& a, const Residue& b);

// The residues of the sum of two numbers, of a number's negative, and of B^n, B the base, n < 2^26.
Residue sum_of(const Residue& a, const Residue& b);
Residue negative_of(const Residue& a);
Residue residue_of_power(std::size_t n);

// Is the residue of r the expected one, and is every limb of r below kBase?
bool casts_out(ConstLimbs r, const Residue& expected, const kernels::Target& t);

}  // namespace tivelo::limbs
