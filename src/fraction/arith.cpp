// Sum, product and quotient of fractions, each with its exact and its decimal path. Where a path
// cuts places it says so, when what was cut was not zero.
#include "fraction/arith.h"

#include <cstdlib>

#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/addsub.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "bigint/text.h"
#include "fraction/decimal.h"
#include "fraction/reduce.h"

namespace tivelo {

namespace {

// The largest common denominator of an exact sum, and the bound that the denominator of an exact
// product stays below.
constexpr std::int64_t kDenominatorBound = kBase;

std::int64_t low_limb(const num* a) { return static_cast<std::int64_t>(units(a)); }

// Does what `steps` says to r, or nothing: where it answers false, r is as before, and so is the
// answer. Copying r beforehand is only worth it near the capacity; elsewhere no result of these
// operands can outgrow a record.
template <typename Steps>
bool all_or_nothing(const numf* r, const numf* x, const numf* y, const Steps& steps) {
  const std::int64_t limbs = std::int64_t{x->c->len} + x->m->len + y->c->len + y->m->len;
  if (limbs + 2 * FF + 4 <= IS) return steps();
  const Lent c({r->c, x->c, y->c});
  const Lent m({r->m, x->m, y->m});
  const numf before(c, m);
  copy(before, *r);
  if (steps()) return true;
  copy(*r, before);
  return false;
}

// Puts the integer c into decimal mode. False, and unchanged, when it has no room for the places.
bool give_places(num* c) {
  if (to_decimal(c) >= 0) return true;
  const long long places = FF * kLimbDigits;
  report(Event::places_too_long, {.needed = digits_of(c) + places, .held = digits_held()});
  return false;
}

// c = c / m, cut to the places it has.
void divide_by(num* c, const num* m, Event cut) {
  if (cut_by(c, m)) report(cut);
}

// An integer of one limb, or the canonical zero.
bool is_short_integer(const numf* f) {
  const num* c = f->c;
  const bool is_short = c->len == 0 || (c->len == 1 && units(c) != 0);
  return is_short && c->dec == 0 && c->shift == 0 && is_one(f->m);
}

// x + y for short integers, y not zero: what exact_sum makes of them, without its steps.
void short_sum(numf* r, const numf* x, const numf* y) {
  const int total =
      x->c->sign * static_cast<int>(units(x->c)) + y->c->sign * static_cast<int>(units(y->c));
  num* c = r->c;
  set_one_limb(r->m, 1);
  if (total == 0) {
    clear(c);
    return;
  }
  iton(c, std::abs(total));
  c->sign = total > 0 ? 1 : -1;
  c->shift = c->dec = 0;
}

// x + y over one-limb denominators with g as their greatest common divisor.
bool exact_sum(numf* r, numf* x, numf* y, int g) {
  int dx = static_cast<int>(units(x->m));
  int dy = static_cast<int>(units(y->m));
  if (x->c->dec != y->c->dec) {
    const bool x_is_decimal = x->c->dec > y->c->dec;
    const numf* exact = x_is_decimal ? y : x;
    if (!give_places(exact->c)) return false;
    divide_by(exact->c, exact->m, Event::cut_beside_decimal);
    (x_is_decimal ? dy : dx) = 1;
  }
  r->c->dec = x->c->dec;
  const int l = dx / g * dy;
  if (prodc(x->c, x->c, l == dx ? 1 : l / dx) < 0 || prodc(y->c, y->c, l == dy ? 1 : l / dy) < 0 ||
      sum(r->c, x->c, y->c) < 0)
    return false;
  set_one_limb(r->m, static_cast<Limb>(l));
  nreduct(r->c, r->m);
  return true;
}

// Makes one operand of a decimal sum a decimal over 1. False when it has no room for the places.
bool decimal_term(numf* f) {
  if (f->c->dec != FF && !give_places(f->c)) return false;
  if (!is_one(f->m)) divide_by(f->c, f->m, Event::cut_sum);
  return true;
}

bool decimal_sum(numf* r, numf* x, numf* y) {
  if (!decimal_term(x) || !decimal_term(y)) return false;
  r->c->dec = FF;
  if (sum(r->c, x->c, y->c) < 0) return false;
  for (const numf* f : {x, y, r}) set_one_limb(f->m, 1);
  return true;
}

// Product of two decimals: the product of the integers without its lowest FF limbs.
int decimal_product(numf* r, numf* x, numf* y) {
  x->c->dec = y->c->dec = 0;
  const int status = prod(r->c, x->c, y->c);
  x->c->dec = y->c->dec = FF;
  if (status == kNoRoom) return 1;
  if (drop_limbs(r->c, FF)) report(Event::cut_decimal_product);
  r->c->dec = FF;
  return 1;
}

// Gives r, whose numerator is the product of the numerators, the denominator p x q, or decimal mode
// when that is too large. False when the places do not fit.
bool set_product_denominator(numf* r, const num* p, const num* q, bool q_is_used) {
  const bool one_limb = magnitude(p).size() < 2 && (q_is_used || magnitude(q).size() < 2);
  const std::int64_t product = low_limb(p) * (q_is_used ? 1 : low_limb(q));
  if (one_limb && product < kDenominatorBound) {
    set_one_limb(r->m, static_cast<Limb>(product));
    return true;
  }
  if (!give_places(r->c)) return false;
  divide_by(r->c, p, Event::cut_product);
  if (!q_is_used) divide_by(r->c, q, Event::cut_product);
  set_one_limb(r->m, 1);
  return true;
}

int quotient_of_zero_divisor(numf* r) {
  clear(r->c);
  set_one_limb(r->c, 0);
  set_one_limb(r->m, 1);
  return kDivisionByZero;
}

// The product where at most one operand is a decimal.
bool product(numf* r, numf* x, numf* y) {
  const numf* p = y->c->dec > x->c->dec ? y : x;
  const numf* q = p == x ? y : x;
  const bool decimal = p->c->dec >= 1;
  if (decimal) divide_by(p->c, q->m, Event::cut_beside_decimal);
  if (prod(r->c, p->c, q->c) == kNoRoom) return false;
  r->c->dec = decimal ? FF : 0;
  if (!set_product_denominator(r, p->m, q->m, decimal)) return false;
  if (is_short_zero(r->c)) set_one_limb(r->m, 1);
  if (is_short_zero(r->m)) {
    set_one_limb(r->c, 0);
    set_one_limb(r->m, 1);
  }
  return true;
}

bool quotient(numf* r, numf* x, numf* y) {
  nreduct(x->c, y->c);
  nreduct(y->m, x->m);
  if (prod(r->c, x->c, y->m) == kNoRoom || prod(r->m, y->c, x->m) == kNoRoom) return false;
  r->m->sign = 1;
  if (is_short_zero(r->c)) set_one_limb(r->m, 1);
  return true;
}

// x.c y.m 10^(8 up) / (x.m y.c), cut once.
int decimal_quotient(numf* r, const numf* x, const numf* y) {
  const int up = FF + y->c->dec - x->c->dec;
  const std::int32_t sign = x->c->sign;
  const int status = quotient_of_products(r->c, x->c, y->m, x->m, y->c, up);
  if (status < 0) return 1;
  if (status == 1) report(Event::cut_quotient);
  r->c->sign = sign;
  r->c->dec = FF;
  set_one_limb(r->m, 1);
  return 1;
}

}  // namespace

int nsum(numf* r, numf* x, numf* y) {
  if (is_short_integer(x) && is_short_integer(y) && y->c->len == 1) {
    short_sum(r, x, y);
    return 0;
  }
  if (x->m->len <= 1 && y->m->len <= 1) {
    const int g = gcm(static_cast<int>(units(x->m)), static_cast<int>(units(y->m)));
    if (low_limb(x->m) / g * low_limb(y->m) <= kDenominatorBound)
      return all_or_nothing(r, x, y, [=] { return exact_sum(r, x, y, g); }) ? 0 : kNoRoom;
  }
  return all_or_nothing(r, x, y, [=] { return decimal_sum(r, x, y); }) ? 2 : kNoRoom;
}

int nprod(numf* r, numf* x, numf* y) {
  if (x->c->dec == FF && y->c->dec == FF) return decimal_product(r, x, y);
  (void)all_or_nothing(r, x, y, [=] { return product(r, x, y); });
  return 1;
}

int ndiv(numf* r, numf* x, numf* y) {
  if (!has_value(y->c)) return quotient_of_zero_divisor(r);
  if (x->c->dec == FF || y->c->dec == FF) return decimal_quotient(r, x, y);
  (void)all_or_nothing(r, x, y, [=] { return quotient(r, x, y); });
  return 1;
}

int ncton(const char* text, numf* f) {
  mclear(f);
  Limb value = 0;
  if (const int n = read_short(text, &value); n > 0) {
    set_one_limb(f->c, value);
    f->c->dden = 1;
    return n;
  }
  const int n = cton(text, f->c);
  set_one_limb(f->m, static_cast<Limb>(f->c->dden));
  f->c->shift = 0;
  nreduct(f->c, f->m);
  return n;
}

}  // namespace tivelo
