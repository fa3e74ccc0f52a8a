// Powers of integers, and the chains of cut products that powers of decimals are. Which of them a
// power is, and its sign, is decided above.
#pragma once

#include "bigint/num.h"

namespace tivelo {

// *result, which is 1, becomes base^n for a base above 1 without decimal mode, and n > 0. A power
// that does not fit has been reported; *result is then the last power of the chain 1, base, base^2,
// ... that a product still reached: a product is refused once the lengths of both factors and one
// limb exceed the record.
void integer_power(num* result, const num* base, long long n);

// What a chain of cut products multiplies by, again and again.
struct StepFactor {
  ConstLimbs numerator;  // without leading zero limbs, not 1
  Limb denominator;      // of a quotient of two one-limb numbers; 0: a decimal
};

// Work on such chains is counted in limbs written, one to four nanoseconds each; what a step costs
// besides is as much as this many.
inline constexpr std::int64_t kStepLimbs = 16;

// Multiplies the decimal *c, which has no leading zero limbs, up to n times by the factor, every
// product cut to 16 places, as products of fractions are. Stops before a product that is refused,
// comes to zero or changes nothing, and where *limbs_left, from which it takes its work, runs out.
// Returns how many products it made; *cut becomes true when one of them lost something.
long long multiply_steps(num* c, const StepFactor& factor, long long n, std::int64_t* limbs_left,
                         bool* cut);

// Bytes of workspace that these take at most on numbers of n limbs.
std::size_t power_workspace(std::size_t n);

}  // namespace tivelo
