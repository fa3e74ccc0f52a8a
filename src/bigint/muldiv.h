// Products and quotients of numbers: sizes, refusals, signs and statuses. The limbs are the
// engine's work (limbs/), and which method it takes is not known here. A refused product has been
// reported.
#pragma once

#include "bigint/num.h"

namespace tivelo {

// dst = src x k for 0 <= k <= 10^8; dst may be src. Returns 0 when k is 0 (only len is set) or when
// k is 1 and dst is src, -6 with dst unchanged when the product needs more than IS limbs, else 1.
// Writes limbs and len only (k = 1 copies the whole record).
[[nodiscard]] int prodc(num* dst, const num* src, int k);

// r = x x y; r may be x or y. Returns 0 when a factor is a short zero (r is cleared) or when a
// factor is 1 in magnitude and the other is r (only r's sign is set); -6 with r unchanged when the
// lengths and one limb of headroom exceed the record; else 1, with all of r's fields fresh. At most
// six leading zero limbs are trimmed.
[[nodiscard]] int prod(num* r, const num* x, const num* y);

// a = a / k in place, the remainder in a.rem and k in a.rdiv. Returns -7 for k <= 0 (unchanged), 0
// for k = 1 (rem 0, rdiv 1), else 1. Trims at most three limbs; sign, shift and dec stay. A caller
// that has made sure of k need not look.
int div(num* a, int k);

// Quotient of |a| by |b| into q, remainder into r unless r is null; q may be a, r may be a (not
// both). Returns 0 when b fits a machine integer, when b has two limbs, or three with a top of at
// most 9 (q is then a copy of a but for its limbs), and for a quotient of negative estimated
// length; 1 after a long division, which writes limbs and len of q only and may leave a leading
// zero limb in it. A zero divisor leaves q a copy of a. Exact on every path.
int nndiv(num* q, num* r, const num* a, const num* b);

// a = a / m, the rest cut, for m > 0. True when the rest was not zero.
[[nodiscard]] bool cut_by(num* a, const num* m);

// a = a / divisor, which divides it.
void exact_quotient(num* a, const num* divisor);

// |a| mod k for k >= 1; k and the remainder also go into a.rdiv and a.rem.
int remainder(num* a, int k);

// r = |a b| 10^(8 up) / (c d) without leading zeros, the rest cut, with all of r's fields fresh;
// c d > 0, up >= 0, and r may be any of them. Returns 0 when it is exact and 1 when a rest was cut,
// or -6 with r unchanged when it needs more than IS limbs, which has been reported.
[[nodiscard]] int quotient_of_products(num* r, const num* a, const num* b, const num* c,
                                       const num* d, int up);

// Moves the limbs of a up by k places, zeros below them; the caller has made sure that they fit.
void raise_limbs(num* a, int k);

// Leaves the lowest k limbs away, in limbs and len only; nothing left is the canonical zero. True
// when one of them was not zero.
bool drop_limbs(num* a, int k);

// Bytes of workspace that the operations above take at most on numbers of n limbs.
std::size_t muldiv_workspace(std::size_t n);

}  // namespace tivelo
