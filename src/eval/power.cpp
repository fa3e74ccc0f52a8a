// The power operator. Powers of ten and of their reciprocals are shifts; other integers go through
// a squaring chain; fractions and decimals are multiplied up step by step.
#include <algorithm>
#include <cmath>

#include "base/precision.h"
#include "base/report.h"
#include "bigint/addsub.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "eval/calc.h"
#include "eval/operators.h"
#include "eval/stepwise.h"
#include "fraction/arith.h"
#include "fraction/decimal.h"
#include "limbs/arith.h"
#include "limbs/multiply.h"
#include "limbs/product.h"

namespace tivelo {

namespace {

constexpr int kDecimalPlaces = FF * kLimbDigits;

// 1, 2 or 3 for a magnitude of 10, 100 or 1000, else 0.
int power_of_ten(const num* a) {
  const ConstLimbs digits = magnitude(a);
  if (digits.size() != 1) return 0;
  return digits[0] == 10 ? 1 : (digits[0] == 100 ? 2 : (digits[0] == 1000 ? 3 : 0));
}

bool is_magnitude_one(const num* a) {
  const ConstLimbs digits = magnitude(a);
  return digits.size() == 1 && digits[0] == 1;
}

void make_one(numf* f) {
  mclear(f);
  set_one_limb(f->c, 1);
}

// 10^-n for 3 <= n <= 16, as a decimal.
void decimal_power_of_tenth(numf* result, long long n) {
  num* c = result->c;
  nfloatDn(c, static_cast<int>(FF - c->dec - (n + 7) / 8));
  err(nfloat(c, (kDecimalPlaces - n) % kLimbDigits));
  c->dec = FF;
}

// The shortcuts for 10, 100, 1000 and their reciprocals; false when the base is none of them.
// *result is 1. Only a power of 10 itself is reported when it does not fit.
bool shifted_power(numf* result, const numf& base, long long n) {
  if (base.c->dec != 0) return false;
  const int up = power_of_ten(base.c);
  const int down = power_of_ten(base.m);
  if (up > 0 && is_magnitude_one(base.m)) {
    const int status = nfloat(result->c, up * n);
    if (up == 1) err(status);
    return true;
  }
  if (down == 0 || !is_magnitude_one(base.c)) return false;
  if (down > 1 || n < 3) {
    nfloat(result->m, down * n);
  } else if (n <= kDecimalPlaces) {
    decimal_power_of_tenth(result, n);
  } else {
    return false;
  }
  return true;
}

// The first exponent whose power of `base` (at least 2) has `limbs` limbs or more, from logarithms:
// exact unless base^*result lies within a millionth part of a limb's bound, and then *result may be
// one too small.
long long exponent_reaching(ConstLimbs base, int limbs) {
  long double top = 0;
  const std::size_t leading = std::min<std::size_t>(base.size(), 3);
  for (std::size_t i = 0; i < leading; ++i) top = top * kBase + base[i];
  const long double digits =
      std::log10(top) + static_cast<long double>(base.size() - leading) * kLimbDigits;
  const long double exponent = static_cast<long double>(limbs - 1) * kLimbDigits / digits;
  return static_cast<long long>(std::ceil(exponent - 1e-6L));
}

// *result, which is 1, becomes base^n, or the last power of the chain of products 1, base, base^2,
// ... that a product still reached: a product is refused once the lengths of both factors and one
// limb exceed the record.
void integer_power(num* result, const num* base, long long n) {
  const ConstLimbs b = magnitude(base);
  const int refused_from = IS - base->len;  // length of a power that is not multiplied any more
  if (refused_from <= 1) {
    explain("power of a number of %d limbs does not fit; taken as 1", base->len);
    return;
  }
  Workspace ws = engine;
  const long long last = std::max(exponent_reaching(b, refused_from), 1LL);
  const Limbs room = ws.take<Limb>(static_cast<std::size_t>(IS) + b.size() + 2);
  const auto exponent = static_cast<std::uint64_t>(std::min(n, last));
  ConstLimbs power = room.last(limbs::power(room, b, exponent, ws));
  if (n > last) {
    if (power.size() < static_cast<std::size_t>(refused_from)) {
      const Limbs next = ws.take<Limb>(power.size() + b.size());
      limbs::multiply(next, power, b, ws);
      power = limbs::strip(next);
    }
    explain("the power outgrows %d limbs; stopped on the way", IS);
  }
  result->len = static_cast<int>(power.size());
  std::ranges::copy(power, in_use(result).begin());
}

// The base of a negative exponent: numerator and denominator exchanged, or for a decimal the
// reciprocal, cut to 16 places.
void make_reciprocal(numf* f, numf* base) {
  if (base->c->dec == FF) {
    make_one(f);
    (void)ndiv(f, f, base);  // of zero: 0, explained
    return;
  }
  rncopy(f->c, base->m);
  rncopy(f->m, base->c);
  f->m->sign = 1;
}

}  // namespace

int apply_power(Level& level, numf* operand, int position) {
  numf* base = &level.auxiliary;
  const int count = nread(level.text + position, base, level.depth + 3);
  if (count < 0) return count;
  int e = 0;
  if (ntoi(base->c, &e) != 0)
    explain_at(level.text + position, "exponent beyond a machine integer; taken as 0");
  const long long n = e < 0 ? -static_cast<long long>(e) : e;
  const bool negative = operand->c->sign < 0 && n % 2 != 0;
  if (e < 0) {
    make_reciprocal(base, operand);
  } else {
    rncopy(base->c, operand->c);
    rncopy(base->m, operand->m);
  }
  base->c->sign = 1;
  make_one(operand);
  if (!shifted_power(operand, *base, n) && n > 0) {
    if (base->c->dec == 0 && is_one(base->m) && magnitude(base->c).size() > 0 &&
        !is_magnitude_one(base->c)) {
      integer_power(operand->c, base->c, n);
    } else if (!stepwise_power(operand, base, n)) {
      return position + count;
    }
  }
  if (negative) operand->c->sign = -1;
  return position + count;
}

}  // namespace tivelo
