// Ranking, adding and subtracting numbers. Operands are aligned by their `shift` and taken by
// value: leading zero limbs, as typed zeros and shifts leave them, change nothing.
#pragma once

#include "bigint/num.h"

namespace tivelo {

// 1, 0 or -1 as |a| is larger than, equal to or smaller than |b|. A zero of one or more limbs
// ranks above the canonical zero.
[[nodiscard]] int fcomp(const num* a, const num* b);

// r = a + b. Returns 1, or 0 when the signs differ (the work is then minus()'s), or -6 with r
// unchanged when the sum needs more than IS limbs. Writes limbs, len, sign and shift of r only.
// r may be either operand when their shifts are equal, else the one with the smaller shift. The
// sum of equal signs keeps the length of the longer operand; leading zeros are not trimmed.
[[nodiscard]] int sum(num* r, num* a, num* b);

// r = the larger magnitude minus the smaller, with the sign of the larger; for operands of opposite
// signs that is a + b. Returns 0 when they are equal (r is then cleared), else 1 with r trimmed
// (-6, r unchanged, when aligned operands exceed the record). Writes limbs, len, sign and end of r,
// and its shift when the larger operand has the larger one.
// r may be the larger operand, or either when the shifts are equal.
[[nodiscard]] int minus(num* r, num* a, num* b);

}  // namespace tivelo
