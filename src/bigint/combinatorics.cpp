// The product of falling factors: its size is estimated first, then trees of the engine form it.
// Combinations come from the primes up to n, or are that product over a factorial.
#include "bigint/combinatorics.h"

#include <algorithm>
#include <cmath>

#include "base/interrupt.h"
#include "base/precision.h"
#include "base/report.h"
#include "bigint/engine.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "limbs/linear.h"
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

// The chain of products refuses to multiply by a factor above 1 once the lengths of both and one
// limb exceed the record. Lengths grow along the chain, so the last such step decides.
struct Chain {
  ConstLimbs product;
  std::size_t lengths;  // of both factors of the last step
};

Chain chain_of(ConstLimbs n, int k, Workspace& ws) {
  if (n.size() == 1 && n[0] == static_cast<Limb>(k)) {
    // The last step is by 2, on half of the factorial.
    const ConstLimbs product = first_factors(n, k, ws);
    return {product, product.size() - (product[0] == 1 ? 1 : 0) + 1};
  }
  const ConstLimbs before = first_factors(n, k - 1, ws);
  const Limbs last = ws.take<Limb>(n.size());
  const Limb less[] = {static_cast<Limb>(k - 1)};
  limbs::subtract(last, n, less);
  const ConstLimbs factor = limbs::strip(last);
  return {times(before, factor, ws), before.size() + factor.size()};
}

// n = n (n-1) ... (n-k+1) for k >= 2.
void falling_factorial(num* n, int k) {
  const ConstLimbs digits = magnitude(n);
  // A number typed with leading zeros can be smaller than k: the factors then pass zero.
  if (digits.empty() || (digits.size() == 1 && digits[0] < static_cast<Limb>(k))) {
    clear(n);
    return;
  }
  const long double estimate = digits_but_last(digits, k);
  progress = {0, k};
  Workspace ws = engine;
  Chain chain = {{}, static_cast<std::size_t>(IS)};
  if (estimate <= kLimbDigits * static_cast<long double>(IS) + 16) chain = chain_of(digits, k, ws);
  if (chain.lengths + 1 > static_cast<std::size_t>(IS)) {
    const auto last = static_cast<long long>(digits.size()) * kLimbDigits;
    const long long needed = static_cast<long long>(std::min(estimate, 1e18L)) + last;
    report(Event::factors_too_long, {.needed = needed, .held = digits_held()});
    clear(n);
    return;
  }
  const std::int32_t sign = k % 2 == 0 ? 1 : n->sign;
  clear(n);
  set_limbs(n, chain.product);
  n->sign = sign;
}

// The least limb of a long number does not say how many things there are to choose from; such a
// number counts as this many.
constexpr int kManyThings = 999999;

int things(const num* n) { return n->len > 1 ? kManyThings : static_cast<int>(units(n)); }

// For n below this many times k the powers of primes in n over k are found and multiplied sooner
// than the k factors.
constexpr int kSieveRatio = 64;

// Do the k factors of a one-limb n, k of at most n / 2, certainly fit the record? They do where all
// but the last leave two limbs of it free.
bool factors_fit(const num* n, int k) {
  const long double held = kLimbDigits * static_cast<long double>(IS - 2);
  return digits_but_last(in_use(n), k) < held - 1;
}

void choose_by_primes(num* n, int k) {
  Workspace ws = engine;
  const Limbs r = ws.take<Limb>(static_cast<std::size_t>(IS));
  const std::size_t length = limbs::binomial(r, units(n), static_cast<std::uint32_t>(k), ws);
  const std::int32_t sign = k % 2 == 0 ? 1 : n->sign;
  clear(n);
  set_limbs(n, r.last(length));
  n->sign = sign;
}

// n = n / k! for the product of k factors.
void divide_by_factorial(num* n, int k) {
  const Lent divisor({n});
  clear(divisor);
  Workspace ws = engine;
  const Limb largest[] = {static_cast<Limb>(k)};
  set_limbs(divisor, first_factors(largest, k, ws));
  // A zero, or a 2, with leading zero limbs keeps most of them.
  if (k == 2) {
    div(n, 2);
  } else {
    exact_quotient(n, divisor);
  }
}

// n (n-1) for n = 2 and for a zero that is counted as many things, whose factors begin 0, -1: a
// product by 1 or -1 sets nothing but the sign, so the limbs and the decimal mode stay.
bool permute_by_sign(num* n, int k) {
  const ConstLimbs value = magnitude(n);
  const bool two = value.size() == 1 && value[0] == 2;
  if (k != 2 || !(two || value.empty())) return false;
  n->sign = two ? 1 : -n->sign;
  return true;
}

}  // namespace

void factorial(num* n) {
  long long m = 0;
  if (n->len >= 3 || ntoll(n, &m) != 0) return;
  if (m < 0) m = -m;
  if (m >= kBase) {
    report(Event::factorial_too_large);
    clear(n);
  } else if (m == 2) {
    n->sign = 1;
  } else if (m > 2) {
    trim(n, n->len);
    falling_factorial(n, static_cast<int>(m));
  }
}

void permutations(num* n, int k) {
  if (k == 0) {
    clear(n);
    iton(n, 1);
  } else if (k > things(n)) {
    if (n->len > 1 && has_value(n)) report(Event::too_many_factors, {.held = kManyThings});
    clear(n);
  } else if (k > 1 && !permute_by_sign(n, k)) {
    falling_factorial(n, k);
  }
}

void combinations(num* n, int k) {
  const int all = things(n);
  if (n->len < 4 && all / 2 < k && k <= all) k = all - k;
  if (n->len == 1 && k > 1 && k <= all && all / k < kSieveRatio && factors_fit(n, k)) {
    choose_by_primes(n, k);
  } else {
    permutations(n, k);
    if (k < 2 || is_short_zero(n)) return;
    divide_by_factorial(n, k);
  }
  n->rem = 0;
  n->rdiv = k;
}

// A factorial fits n limbs only of a number below 3 n + 1000, and k factors of k or more only for a
// k of at most 10 or 8 n.
std::size_t combinatorics_workspace(std::size_t n) {
  const auto largest_factorial = static_cast<std::uint32_t>(3 * n + 1000);
  const auto largest_choice =
      static_cast<std::uint32_t>(std::min<std::size_t>(kSieveRatio * (8 * n + 10), kBase - 1));
  return 8 * Workspace::bytes<Limb>(2 * n) +
         std::max({limbs::factorial_workspace(largest_factorial, n),
                   limbs::binomial_workspace(largest_choice, n),
                   limbs::product_workspace(2 * n, kBase - 1),
                   limbs::multiply_workspace(2 * n, 2 * n)});
}

}  // namespace tivelo
