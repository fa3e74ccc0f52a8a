#include "eval/falling.h"

#include <algorithm>
#include <cmath>

#include "base/precision.h"
#include "base/report.h"
#include "bigint/pool.h"
#include "limbs/arith.h"
#include "limbs/multiply.h"
#include "limbs/product.h"

namespace tivelo {

namespace {

// Decimal digits of the product of all factors but the last, give or take a few: log10 of
// n! / (n-k+1)! for a one-limb n, and k-1 times the digits of n - k for a longer one, which the
// factors differ from by less than a part in 100.
long double digits_but_last(ConstLimbs n, int k) {
  constexpr long double kLog10 = 2.302585092994045684L;
  if (n.size() == 1) {
    const long double all = std::lgamma(static_cast<long double>(n[0]) + 1);
    return (all - std::lgamma(static_cast<long double>(n[0]) - k + 2)) / kLog10;
  }
  long double top = n[0];
  for (std::size_t i = 1; i < n.size() && i < 3; ++i) top = top * kBase + n[i];
  const long double below = n.size() > 3 ? static_cast<long double>(n.size() - 3) * kLimbDigits : 0;
  return (k - 1) * (std::log10(top - k) + below);
}

// r = (n - from) (n - from - 1) ... of `count` factors, for a long n; by halves, so that products
// stay balanced. r has count x n.size() limbs; returns the length of the product, which ends at r's
// end.
std::size_t long_product(Limbs r, ConstLimbs n, Limb from, std::size_t count, Workspace ws) {
  if (count == 1) {
    const Limb less[] = {from};
    limbs::subtract(r, n, less);
    return limbs::strip(r).size();
  }
  const std::size_t half = count / 2;
  const Limbs left = ws.take<Limb>(half * n.size());
  const Limbs right = ws.take<Limb>((count - half) * n.size());
  const std::size_t a = long_product(left, n, from, half, ws);
  const std::size_t b = long_product(right, n, from + static_cast<Limb>(half), count - half, ws);
  const Limbs all = r.last(a + b);
  limbs::multiply(all, left.last(a), right.last(b), ws);
  return limbs::strip(all).size();
}

// The product of the first `count` factors, in `ws`.
ConstLimbs first_factors(ConstLimbs n, int count, Workspace& ws) {
  const std::size_t factors = static_cast<std::size_t>(count);
  std::size_t length = 0;
  if (n.size() > 1) {
    const Limbs r = ws.take<Limb>(factors * n.size());
    length = long_product(r, n, 0, factors, ws);
    return r.last(length);
  }
  const Limbs r = ws.take<Limb>(static_cast<std::size_t>(IS) + 8);
  if (static_cast<Limb>(count) == n[0]) {
    length = limbs::factorial(r, n[0], ws);
  } else {
    length = limbs::falling_product(r, n[0], static_cast<std::uint32_t>(count), ws);
  }
  return r.last(length);
}

// before x factor, in `ws`.
ConstLimbs times(ConstLimbs before, ConstLimbs factor, Workspace& ws) {
  const Limbs all = ws.take<Limb>(before.size() + factor.size());
  limbs::multiply(all, before, factor, ws);
  return limbs::strip(all);
}

void store(num* n, ConstLimbs product, int k) {
  const std::int8_t sign = k % 2 == 0 ? 1 : n->sign;
  clear(n);
  n->len = static_cast<int>(product.size());
  std::ranges::copy(product, in_use(n).begin());
  n->sign = sign;
}

}  // namespace

// The chain of products refuses to multiply by a factor above 1 once the lengths of both and one
// limb exceed the record. Lengths grow along the chain, so the last such step decides.
void falling_factorial(num* n, int k) {
  const ConstLimbs digits = magnitude(n);
  const auto refuse = [n] {
    explain("a product of that many factors does not fit %d limbs; taken as 0", IS);
    clear(n);
  };
  // A number typed with leading zeros can be smaller than k: the factors then pass zero.
  if (digits.empty() || (digits.size() == 1 && digits[0] < static_cast<Limb>(k))) {
    clear(n);
    return;
  }
  if (digits_but_last(digits, k) > kLimbDigits * static_cast<long double>(IS) + 16) return refuse();
  Workspace ws = engine;
  ConstLimbs product;
  std::size_t lengths = 0;  // of both factors of the last step
  if (digits.size() == 1 && digits[0] == static_cast<Limb>(k)) {
    // The last step is by 2, on half of the factorial.
    product = first_factors(digits, k, ws);
    lengths = product.size() - (product[0] == 1 ? 1 : 0) + 1;
  } else {
    const ConstLimbs before = first_factors(digits, k - 1, ws);
    const Limbs last = ws.take<Limb>(digits.size());
    const Limb less[] = {static_cast<Limb>(k - 1)};
    limbs::subtract(last, digits, less);
    const ConstLimbs factor = limbs::strip(last);
    product = times(before, factor, ws);
    lengths = before.size() + factor.size();
  }
  if (lengths + 1 > static_cast<std::size_t>(IS)) return refuse();
  store(n, product, k);
}

}  // namespace tivelo
