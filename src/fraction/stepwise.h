// Powers of fractions and decimals. Every product in decimal mode cuts its digits and the cuts are
// part of the value, so such a power is what its products, one after the other, make of it: no
// shorter way to the same digits is known.
#pragma once

#include "fraction/numf.h"

namespace tivelo {

// Grants the line in hand its work on such powers: a million passes over a full number, about half
// a second at the smallest precision. Once per line; a power that hardly grows, such as
// 1.00000001^2000000000, would otherwise take one product for each unit of the exponent.
void grant_steps();

// *result, which is 1, becomes base^n, or the last product that a record held; true. Where the work
// granted to the line runs out *result is 0, which has been reported; false. Changes *base.
[[nodiscard]] bool stepwise_power(numf* result, numf* base, long long n);

}  // namespace tivelo
