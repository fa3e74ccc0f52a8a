// The power operator. Powers of ten and of their reciprocals are shifts; other integers go through
// a squaring chain; fractions and decimals are multiplied up step by step.
#include "bigint/power.h"

#include "base/precision.h"
#include "base/report.h"
#include "eval/calc.h"
#include "eval/levels.h"
#include "eval/operators.h"
#include "fraction/arith.h"
#include "fraction/decimal.h"
#include "fraction/stepwise.h"

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

// 10^-n for 3 <= n <= 16, as a decimal. The shifts make a record of at most three limbs.
void decimal_power_of_tenth(numf* result, long long n) {
  num* c = result->c;
  (void)nfloatDn(c, static_cast<int>(FF - c->dec - (n + 7) / 8));
  (void)nfloat(c, (kDecimalPlaces - n) % kLimbDigits);
  c->dec = FF;
}

// *a, which is 1, becomes 10^digits, or stays when that does not fit.
void shift_one(num* a, long long digits, Event refusal) {
  if (nfloat(a, digits) < 0) report(refusal, {.needed = digits + 1, .held = digits_held()});
}

// The shortcuts for 10, 100, 1000 and their reciprocals; false when the base is none of them.
// *result is 1. Only for a power of 10 itself the user sees that it does not fit.
bool shifted_power(numf* result, const numf& base, long long n) {
  if (base.c->dec != 0) return false;
  const int up = power_of_ten(base.c);
  const int down = power_of_ten(base.m);
  if (up > 0 && is_magnitude_one(base.m)) {
    shift_one(result->c, up * n,
              up == 1 ? Event::power_of_ten_too_long : Event::shifted_power_too_long);
    return true;
  }
  if (down == 0 || !is_magnitude_one(base.c)) return false;
  if (down > 1 || n < 3) {
    shift_one(result->m, down * n, Event::shifted_power_too_long);
  } else if (n <= kDecimalPlaces) {
    decimal_power_of_tenth(result, n);
  } else {
    return false;
  }
  return true;
}

// The base of a negative exponent: numerator and denominator exchanged, or for a decimal the
// reciprocal, cut to 16 places. That of zero comes to zero either way.
void make_reciprocal(numf* f, numf* base) {
  if (!has_value(base->c)) report(Event::zero_to_negative_power);
  if (base->c->dec == FF) {
    make_one(f);
    (void)ndiv(f, f, base);
    return;
  }
  rncopy(f->c, base->m);
  rncopy(f->m, base->c);
  f->m->sign = 1;
}

// Reads the exponent into the auxiliary. Returns the position behind it, or a negative code.
int read_exponent(Level& level, int position, int* e) {
  numf* exponent = &level.auxiliary;
  const char* text = level.text + position;
  const int count = nread(text, exponent, second_operand_depth(level.depth));
  if (count < 0) return count;
  *e = 0;
  if (!is_one(exponent->m) || exponent->c->dec != 0)
    report(Event::numerator_exponent, {.place = text});
  if (ntoi(exponent->c, e) != 0) report(Event::exponent_too_large, {.place = text});
  place_in_hand = text - 1;
  return position + count;
}

}  // namespace

int apply_power(Level& level, numf* operand, int position) {
  int e = 0;
  position = read_exponent(level, position, &e);
  if (position < 0) return position;
  numf* base = &level.auxiliary;
  const long long n = e < 0 ? -static_cast<long long>(e) : e;
  const bool negative = operand->c->sign < 0 && n % 2 != 0;
  if (e < 0) {
    make_reciprocal(base, operand);
  } else {
    copy(*base, *operand);
  }
  base->c->sign = 1;
  make_one(operand);
  if (!shifted_power(operand, *base, n) && n > 0) {
    if (base->c->dec == 0 && is_one(base->m) && magnitude(base->c).size() > 0 &&
        !is_magnitude_one(base->c)) {
      integer_power(operand->c, base->c, n);
    } else if (!stepwise_power(operand, base, n)) {
      return position;
    }
  }
  if (negative) operand->c->sign = -1;
  return position;
}

}  // namespace tivelo
