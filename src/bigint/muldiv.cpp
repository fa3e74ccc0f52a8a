// Products and quotients of records. Each operation refuses, takes the easy cases, hands the limbs
// to the engine and tidies, in this order.
#include "bigint/muldiv.h"

#include <algorithm>
#include <utility>

#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/engine.h"
#include "bigint/pool.h"
#include "limbs/divide.h"
#include "limbs/linear.h"
#include "limbs/multiply.h"

namespace tivelo {

namespace {

int refuse_product(long long digits) {
  report(Event::product_too_long, {.needed = digits, .held = digits_held()});
  return kNoRoom;
}

// Does a x k carry out of a's length? Only the carries are formed.
bool product_carries_out(const num* a, Limb k) {
  std::uint64_t carry = 0;
  const ConstLimbs digits = in_use(a);
  for (std::size_t i = digits.size(); i-- > 0;)
    carry = (static_cast<std::uint64_t>(digits[i]) * k + carry) / kBase;
  return carry != 0;
}

void set_product_fields(num* r, std::int32_t sign) {
  r->sign = sign;
  r->ext = r->shift = r->dec = r->rem = r->res = r->imag = 0;
  r->rdiv = 1;
}

// r = longer x k, written in place.
void product_by_limb(num* r, const num* longer, Limb k) {
  const int n = longer->len;
  const Limb carry = limbs::multiply_limb(places(r, n), in_use(longer), k);
  r->len = n;
  if (carry != 0) {
    ++r->len;
    r->limbs[r->end - r->len] = carry;
  }
}

// Leading zero limbs of the factors, as typed zeros leave them, stay in a product as if it had been
// added up from one row for each limb of the shorter factor: the length of that sum.
std::size_t length_with_zeros(const num* longer, const num* shorter, std::size_t true_length) {
  const std::size_t rows = magnitude(shorter).size();
  const std::size_t all_rows = static_cast<std::size_t>(shorter->len);
  std::size_t length = true_length;
  if (in_use(longer)[0] == 0 && rows > 0) length = static_cast<std::size_t>(longer->len) + rows - 1;
  return rows < all_rows ? std::max({length, all_rows - 1, std::size_t{1}}) : length;
}

void product_of_runs(num* r, const num* longer, const num* shorter) {
  const ConstLimbs a = magnitude(longer);
  const ConstLimbs b = magnitude(shorter);
  Workspace ws = engine;
  ConstLimbs product;
  if (!a.empty() && !b.empty()) {
    const Limbs full = ws.take<Limb>(a.size() + b.size());
    if (longer == shorter) {
      limbs::square(full, a, ws);
    } else {
      limbs::multiply(full, a, b, ws);
    }
    product = limbs::strip(full);
  }
  const std::size_t length = length_with_zeros(longer, shorter, product.size());
  r->len = static_cast<int>(length);
  const Limbs target = in_use(r);
  std::fill_n(target.begin(), length - product.size(), Limb{0});
  std::ranges::copy(product, target.last(product.size()).begin());
}

}  // namespace

int prodc(num* dst, const num* src, int k) {
  if (k == 0) {
    dst->len = 0;
    return 0;
  }
  if (k == 1) return rncopy(dst, src);
  const Limb factor = static_cast<Limb>(k);
  if (src->len == IS && product_carries_out(src, factor)) return refuse_product(digit_places() + 1);
  product_by_limb(dst, src, factor);
  return 1;
}

int prod(num* r, const num* x, const num* y) {
  const num* longer = x->len > y->len ? x : y;
  const num* shorter = longer == x ? y : x;
  const std::int32_t sign = x->sign == y->sign ? 1 : -1;
  if (is_short_zero(longer) || is_short_zero(shorter)) {
    clear(r);
    return 0;
  }
  if ((is_one(longer) && shorter == r) || (is_one(shorter) && longer == r)) {
    r->sign = sign;
    return 0;
  }
  if (shorter->len + longer->len + 1 > r->end) return refuse_product(digits_of(x) + digits_of(y));
  if (shorter->len == 1) {
    product_by_limb(r, longer, units(shorter));
  } else {
    product_of_runs(r, longer, shorter);
  }
  trim(r, 6);
  if (r->len == 0) units(r) = 0;
  set_product_fields(r, sign);
  return 1;
}

int div(num* a, int k) {
  if (k <= 0) return kDivisionByZero;
  a->rem = 0;
  a->rdiv = k;
  if (k == 1) return 0;
  a->rem =
      static_cast<int>(limbs::divide_limb(in_use(a), in_use(a), static_cast<std::uint32_t>(k)));
  trim(a, 3);
  return 1;
}

namespace {

void set_remainder(num* r, const num* a, ConstLimbs rest) {
  if (r == nullptr) return;
  rncopy(r, a);
  r->shift = 0;
  if (rest.empty()) {
    clear(r);
  } else {
    set_limbs(r, rest);
  }
}

// Limbs of the quotient as estimated from the top limbs. That is one more than the true number
// where these are equal and the dividend is the smaller below them, or where the dividend has
// leading zero limbs; these stay in the quotient.
int quotient_length(ConstLimbs a, ConstLimbs b) {
  const int difference = static_cast<int>(a.size()) - static_cast<int>(b.size());
  return !a.empty() && a[0] >= b[0] ? difference + 1 : difference;
}

int long_division(num* q, num* r, const num* a, const num* b, bool copy_fields) {
  const ConstLimbs dividend = magnitude(a);
  const ConstLimbs divisor = magnitude(b);
  const int length =
      std::max(quotient_length(dividend, divisor), quotient_length(in_use(a), in_use(b)));
  if (dividend.size() < divisor.size() || length <= 0) {
    set_remainder(r, a, dividend);
    if (copy_fields) rncopy(q, a);
    q->len = copy_fields ? 0 : std::max(length, 0);
    std::ranges::fill(places(q, std::max(q->len, 1)), Limb{0});
    return length < 0 || copy_fields ? 0 : 1;
  }
  Workspace ws = engine;
  const Limbs quotient = ws.take<Limb>(dividend.size() - divisor.size() + 1);
  const Limbs rest = ws.take<Limb>(divisor.size());
  limbs::divide(quotient, rest, dividend, divisor, ws);
  set_remainder(r, a, limbs::strip(rest));
  if (copy_fields) rncopy(q, a);
  q->len = length;
  std::ranges::fill(in_use(q), Limb{0});
  const std::size_t kept = std::min(quotient.size(), static_cast<std::size_t>(length));
  std::ranges::copy(quotient.last(kept), in_use(q).last(kept).begin());
  if (!copy_fields) return 1;
  trim(q, q->len);
  return 0;
}

}  // namespace

int nndiv(num* q, num* r, const num* a, const num* b) {
  int divisor = 0;
  if (ntoi(b, &divisor) == 0 || !has_value(b)) {
    rncopy(q, a);
    div(q, divisor < 0 ? -divisor : divisor);
    if (r != nullptr) iton(r, q->rem);
    return 0;
  }
  const bool shortened = b->len == 2 || (b->len == 3 && in_use(b)[0] <= 9);
  return long_division(q, r, a, b, shortened);
}

bool cut_by(num* a, const num* m) {
  if (m->len < 2) return div(a, static_cast<int>(units(m))) == 1 && a->rem != 0;
  const Lent rest({a, m});
  nndiv(a, rest, a, m);
  return has_value(rest);
}

void exact_quotient(num* a, const num* divisor) {
  nndiv(a, nullptr, a, divisor);
  trim(a, a->len);
}

int remainder(num* a, int k) {
  a->rem = static_cast<int>(limbs::remainder_limb(in_use(a), static_cast<std::uint32_t>(k)));
  a->rdiv = k;
  return a->rem;
}

namespace {

// a x b x 10^(8 up) without leading zeros; multiplying by 10^(8 up) appends `up` zero limbs. A
// one-limb factor may be 10^8 itself, as denominators can be.
Limbs scaled_product(const num* x, const num* y, int up, Workspace& ws) {
  ConstLimbs a = magnitude(x);
  ConstLimbs b = magnitude(y);
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

}  // namespace

int quotient_of_products(num* r, const num* a, const num* b, const num* c, const num* d, int up) {
  if (!has_value(a) || !has_value(b)) {
    clear(r);
    return 0;
  }
  Workspace ws = engine;
  const Limbs dividend = scaled_product(a, b, up, ws);
  const Limbs divisor = scaled_product(c, d, 0, ws);
  if (dividend.size() < divisor.size()) {
    clear(r);
    return 1;
  }
  const Limbs all = ws.take<Limb>(dividend.size() - divisor.size() + 1);
  const Limbs rest = ws.take<Limb>(divisor.size());
  limbs::divide(all, rest, dividend, divisor, ws);
  const ConstLimbs quotient = limbs::strip(all);
  if (quotient.size() > static_cast<std::size_t>(IS)) {
    const auto digits = static_cast<long long>(quotient.size()) * kLimbDigits;
    report(Event::quotient_too_long, {.needed = digits, .held = digits_held()});
    return kNoRoom;
  }
  clear(r);
  set_limbs(r, quotient);
  return limbs::strip(rest).empty() ? 0 : 1;
}

void raise_limbs(num* a, int k) {
  if (k == 0) return;
  const Limbs digits = in_use(a);
  std::ranges::copy(digits, places(a, a->len + k).begin());
  a->len += k;
  std::ranges::fill(places(a, k), Limb{0});
}

bool drop_limbs(num* a, int k) {
  const int left = a->len - k;
  if (left <= 0) {
    const bool lost = has_value(a);
    a->len = 0;
    units(a) = 0;
    return lost;
  }
  const Limbs digits = in_use(a);
  const bool lost = !limbs::strip(places(a, k)).empty();
  std::copy_backward(digits.begin(), digits.end() - k, digits.end());
  a->len = left;
  return lost;
}

// The dividend and the divisor of a quotient of products are such products themselves.
std::size_t muldiv_workspace(std::size_t n) {
  return 8 * Workspace::bytes<Limb>(2 * n) +
         std::max(limbs::divide_workspace(4 * n), limbs::multiply_workspace(2 * n, 2 * n));
}

}  // namespace tivelo
