// The two shifts on which decimal mode rests: by decimal digits and by whole limbs. What a refusal
// means for the line is known to the caller, who reports it.
#pragma once

#include "bigint/num.h"

namespace tivelo {

// a = a x 10^d for d >= 0. Returns 0 for d = 0, -2 with a unchanged when the result and one limb of
// headroom need more than IS limbs, else 1. Changes limbs and len only; the place above the
// result's top is zeroed.
[[nodiscard]] int nfloat(num* a, long long d);

// Shifts by k whole limbs, dropping the lowest for k < 0. Returns 0 for k = 0, -1 when fewer than
// two limbs would remain and -2 when more than IS would (a unchanged), else k. Changes limbs and
// len only.
[[nodiscard]] int nfloatDn(num* a, int k);

// Puts a, over a denominator of 1, into decimal mode: scales it by 10^16 and sets dec. Returns
// nfloat's status; unchanged when that is negative.
[[nodiscard]] int to_decimal(num* a);

}  // namespace tivelo
