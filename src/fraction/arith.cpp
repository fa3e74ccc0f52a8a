#include "fraction/arith.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/addsub.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "bigint/text.h"
#include "fraction/decimal.h"
#include "fraction/reduce.h"
#include "limbs/arith.h"
#include "limbs/divide.h"
#include "limbs/multiply.h"

namespace tivelo {

namespace {

// The largest common denominator of an exact sum, and the bound that the denominator of an exact
// product stays below.
constexpr std::int64_t kDenominatorBound = kBase;

std::int64_t low_limb(const num* a) { return static_cast<std::int64_t>(units(a)); }

// Keeps r's value while an operation may yet be refused. Copying is only worth it near the
// capacity: elsewhere no result of these operands can outgrow a record.
class Undo {
 public:
  Undo(const numf* result, const numf* x, const numf* y) : r_(result) {
    const std::int64_t limbs = std::int64_t{x->c->len} + x->m->len + y->c->len + y->m->len;
    needed_ = limbs + 2 * FF + 4 > IS;
    if (!needed_) return;
    rncopy(Kc, r_->c);
    rncopy(Km, r_->m);
  }

  int refuse(int code) const {
    if (needed_) {
      rncopy(r_->c, Kc);
      rncopy(r_->m, Km);
    }
    return code;
  }

 private:
  const numf* r_;
  bool needed_;
};

// The exact value f over the one-limb denominator d becomes a decimal over 1, cut.
int bring_to_decimal(num* c, int d) {
  const int status = to_decimal(c);
  if (status >= 0) div(c, d);
  return status;
}

// Divides a in place by a denominator of any length, cutting the quotient.
void divide_by(num* a, const num* m) {
  if (m->len < 2) {
    div(a, static_cast<int>(units(m)));
  } else {
    nndiv(a, nullptr, a, m);
  }
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
  const Limb size = static_cast<Limb>(std::abs(total));
  c->len = size < kBase ? 1 : 2;
  places(c, c->len)[0] = 1;
  units(c) = size < kBase ? size : size - kBase;
  c->sign = total > 0 ? 1 : -1;
  c->shift = c->dec = 0;
}

// x + y over one-limb denominators with g as their greatest common divisor.
int exact_sum(numf* r, numf* x, numf* y, int g) {
  const Undo undo(r, x, y);
  int dx = static_cast<int>(units(x->m));
  int dy = static_cast<int>(units(y->m));
  if (x->c->dec != y->c->dec) {
    const bool x_is_decimal = x->c->dec > y->c->dec;
    int& d = x_is_decimal ? dy : dx;
    if (bring_to_decimal(x_is_decimal ? y->c : x->c, d) < 0) return undo.refuse(kNoRoom);
    d = 1;
  }
  r->c->dec = x->c->dec;
  const int l = dx / g * dy;
  if (prodc(x->c, x->c, l == dx ? 1 : l / dx) < 0 || prodc(y->c, y->c, l == dy ? 1 : l / dy) < 0 ||
      sum(r->c, x->c, y->c) < 0)
    return undo.refuse(kNoRoom);
  set_one_limb(r->m, static_cast<Limb>(l));
  nreduct(r->c, r->m);
  return 0;
}

// One operand of a decimal sum: its 16-place value, cut, over 1.
int decimal_term(numf* f) {
  num* c = f->c;
  if (c->dec != FF) {
    const int status = to_decimal(c);
    if (status < 0) return status;
  }
  if (is_one(f->m)) return 0;
  nndiv(c, nullptr, c, f->m);
  return 0;
}

int decimal_sum(numf* r, numf* x, numf* y) {
  const Undo undo(r, x, y);
  if (decimal_term(x) < 0 || decimal_term(y) < 0) return undo.refuse(kNoRoom);
  r->c->dec = FF;
  if (sum(r->c, x->c, y->c) < 0) return undo.refuse(kNoRoom);
  for (const numf* f : {x, y, r}) set_one_limb(f->m, 1);
  return 2;
}

// Product of two decimals: the product of the integers without its lowest FF limbs.
int decimal_product(numf* r, numf* x, numf* y) {
  x->c->dec = y->c->dec = 0;
  const int status = prod(r->c, x->c, y->c);
  x->c->dec = y->c->dec = FF;
  if (status == kNoRoom) return 1;
  drop_limbs(r->c, FF);
  r->c->dec = FF;
  return 1;
}

// Gives r, whose numerator is the product of the numerators, the denominator p x q, or decimal mode
// when that is too large. Returns nfloat's status.
int set_product_denominator(numf* r, const num* p, const num* q, bool q_is_used) {
  const bool one_limb = magnitude(p).size() < 2 && (q_is_used || magnitude(q).size() < 2);
  const std::int64_t product = low_limb(p) * (q_is_used ? 1 : low_limb(q));
  if (one_limb && product < kDenominatorBound) {
    set_one_limb(r->m, static_cast<Limb>(product));
    return 1;
  }
  const int status = to_decimal(r->c);
  if (status < 0) return status;
  divide_by(r->c, p);
  if (!q_is_used) divide_by(r->c, q);
  set_one_limb(r->m, 1);
  return 1;
}

int quotient_of_zero_divisor(numf* r) {
  explain("division by zero");
  clear(r->c);
  set_one_limb(r->c, 0);
  set_one_limb(r->m, 1);
  return kDivisionByZero;
}

// The operands of a decimal quotient, x.c * y.m * 10^(8 up) / (x.m * y.c), as limbs without leading
// zeros. Multiplying by 10^(8 up) appends `up` zero limbs. A one-limb factor may be 10^8 itself, as
// denominators can be.
Limbs scaled_product(ConstLimbs a, ConstLimbs b, int up, Workspace& ws) {
  if (a.size() < b.size()) std::swap(a, b);
  const std::size_t zeros = static_cast<std::size_t>(up);
  const Limbs all = ws.take<Limb>(a.size() + b.size() + zeros);
  if (b.size() == 1) {
    all[0] = limbs::multiply_limb(all.subspan(1, a.size()), a, b[0]);
  } else {
    limbs::multiply(all.first(a.size() + b.size()), a, b, ws);
  }
  std::ranges::fill(all.last(zeros), Limb{0});
  return all.last(limbs::strip(all).size());
}

int decimal_quotient(numf* r, const numf* x, const numf* y) {
  const int up = FF + y->c->dec - x->c->dec;
  const std::int8_t sign = x->c->sign;
  Workspace ws = engine;
  ConstLimbs quotient;
  if (has_value(x->c)) {
    const Limbs a = scaled_product(magnitude(x->c), magnitude(y->m), up, ws);
    const Limbs b = scaled_product(magnitude(x->m), magnitude(y->c), 0, ws);
    if (a.size() >= b.size()) {
      const Limbs q = ws.take<Limb>(a.size() - b.size() + 1);
      const Limbs rest = ws.take<Limb>(b.size());
      limbs::divide(q, rest, a, b, ws);
      quotient = limbs::strip(q);
    }
  }
  if (quotient.size() > static_cast<std::size_t>(IS)) {
    explain("quotient needs %zu limbs, a number holds %d; left unchanged", quotient.size(), IS);
    return 1;
  }
  clear(r->c);
  r->c->len = static_cast<int>(quotient.size());
  std::ranges::copy(quotient, in_use(r->c).begin());
  r->c->sign = sign;
  r->c->dec = FF;
  set_one_limb(r->m, 1);
  return 1;
}

}  // namespace

int nsum(numf* r, numf* x, numf* y) {
  const Scratch scratch({Kc, Km}, {r->c, r->m, x->c, x->m, y->c, y->m});
  if (is_short_integer(x) && is_short_integer(y) && y->c->len == 1) {
    short_sum(r, x, y);
    return 0;
  }
  if (x->m->len <= 1 && y->m->len <= 1) {
    const int g = gcm(static_cast<int>(units(x->m)), static_cast<int>(units(y->m)));
    if (low_limb(x->m) / g * low_limb(y->m) <= kDenominatorBound) return exact_sum(r, x, y, g);
  }
  return decimal_sum(r, x, y);
}

int nprod(numf* r, numf* x, numf* y) {
  const Scratch scratch({Kc, Km}, {r->c, r->m, x->c, x->m, y->c, y->m});
  if (x->c->dec == FF && y->c->dec == FF) return decimal_product(r, x, y);
  const Undo undo(r, x, y);
  const numf* p = y->c->dec > x->c->dec ? y : x;
  const numf* q = p == x ? y : x;
  const bool decimal = p->c->dec >= 1;
  if (decimal) divide_by(p->c, q->m);
  if (prod(r->c, p->c, q->c) == kNoRoom) return undo.refuse(1);
  r->c->dec = decimal ? FF : 0;
  if (set_product_denominator(r, p->m, q->m, decimal) < 0) return undo.refuse(1);
  if (is_short_zero(r->c)) set_one_limb(r->m, 1);
  if (is_short_zero(r->m)) {
    set_one_limb(r->c, 0);
    set_one_limb(r->m, 1);
  }
  return 1;
}

int ndiv(numf* r, numf* x, numf* y) {
  const Scratch scratch({Kc, Km}, {r->c, r->m, x->c, x->m, y->c, y->m});
  if (!has_value(y->c)) return quotient_of_zero_divisor(r);
  if (x->c->dec == FF || y->c->dec == FF) return decimal_quotient(r, x, y);
  const Undo undo(r, x, y);
  nreduct(x->c, y->c);
  nreduct(y->m, x->m);
  if (prod(r->c, x->c, y->m) == kNoRoom || prod(r->m, y->c, x->m) == kNoRoom) return undo.refuse(1);
  r->m->sign = 1;
  if (is_short_zero(r->c)) set_one_limb(r->m, 1);
  return 1;
}

int ncton(const char* text, numf* f) {
  const int n = cton(text, f->c);
  if (f->fl != 0) return n;
  clear(f->m);
  set_one_limb(f->m, static_cast<Limb>(f->c->dden));
  f->c->shift = 0;
  nreduct(f->c, f->m);
  return n;
}

}  // namespace tivelo
