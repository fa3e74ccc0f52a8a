#include "eval/falling.h"

#include <cmath>

#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "limbs/arith.h"

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

void refuse(num* n) {
  explain("a product of that many factors does not fit %d limbs; taken as 0", IS);
  clear(n);
}

}  // namespace

void falling_factorial(num* n, int k) {
  if (digits_but_last(magnitude(n), k) > kLimbDigits * static_cast<long double>(IS) + 16)
    return refuse(n);
  rncopy(Ze, n);
  for (; k > 1; --k) {
    const Limb one[] = {1};
    limbs::subtract(in_use(Ze), in_use(Ze), one);
    trim(Ze, Ze->len);
    if (prod(n, n, Ze) == kNoRoom) return refuse(n);
  }
}

}  // namespace tivelo
