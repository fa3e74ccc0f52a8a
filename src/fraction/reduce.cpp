// Lowest terms: the machine-integer gcd, and the search of long pairs for small common factors.
#include "fraction/reduce.h"

#include <algorithm>
#include <array>
#include <climits>

#include "base/precision.h"
#include "base/report.h"
#include "bigint/addsub.h"
#include "bigint/divisors.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "fraction/numf.h"

namespace tivelo {

namespace {

// Ratio factors stay below this bound; kNoRatio marks that the shortcut is off for the call.
constexpr int kRatioBound = 12121212;
constexpr int kNoRatio = 12121215;

// Divisions in a row before the other member gets its turn.
constexpr int kRun = 32;

bool is_canonical_small(const num* a) { return !has_value(a) || is_one(a); }

// Primes up to the largest candidate that any pair is searched for.
constexpr std::size_t kPrimesBelow9997 = 1229;

// The largest candidate for a pair with a short member, and for very long pairs.
constexpr int kShortBound = 97;

// Largest candidate tried, by the length of the smaller member; long pairs get the least.
int search_bound(const num* larger, const num* smaller) {
  if (larger->len + smaller->len > 2500) return kShortBound;
  const Limb top = in_use(smaller)[0];
  switch (smaller->len) {
    case 2:
      return kShortBound;
    case 3:
      return top < 10 ? 331 : 997;
    case 4:
      return top < 10 ? 3331 : 9997;
    default:
      return 9997;
  }
}

// The candidates are 2, 3, 5, 7, 9, 11 and then the odd numbers without a factor 3, 5, 7 or 11.
bool is_candidate(int p) {
  return p <= 11 || (p % 3 != 0 && p % 5 != 0 && p % 7 != 0 && p % 11 != 0);
}

// The search over one pair: the members lose their common factors, the cofactors, copies of them,
// every factor tried.
class Search {
 public:
  Search(num* larger, num* smaller) : larger_(larger), smaller_(smaller) {
    rncopy(cofactor_larger_, larger);
    rncopy(cofactor_smaller_, smaller);
  }

  // Tries p on both members. True when the search is over.
  bool try_candidate(int p);

  // The product of the common factors removed, saturated.
  int removed() const { return static_cast<int>(std::min<long long>(removed_, INT_MAX)); }

 private:
  bool ratio_found(int p, int& times_larger, int& times_smaller);

  num* larger_;
  num* smaller_;
  Lent cofactor_larger_{{larger_, smaller_}};
  Lent cofactor_smaller_{{larger_, smaller_}};
  long long removed_ = 1;
  int ratio_larger_ = 1;
  int ratio_smaller_ = 1;
};

// Moves the excess power of p, `times` above `other`, into the ratio factor.
void move_excess(int& ratio, int p, int& times, int other) {
  while (times > other) {
    if (static_cast<long long>(ratio) * p < kRatioBound) {
      ratio *= p;
      --times;
    } else {
      ratio = kNoRatio;
      times = other;
    }
  }
}

// Shortcut for members that differ by a small ratio only: once the cofactors are equal, the whole
// fraction is the ratio of the two factors.
bool Search::ratio_found(int p, int& times_larger, int& times_smaller) {
  if (times_larger == times_smaller || ratio_larger_ >= kRatioBound ||
      ratio_smaller_ >= kRatioBound)
    return false;
  move_excess(ratio_larger_, p, times_larger, times_smaller);
  move_excess(ratio_smaller_, p, times_smaller, times_larger);
  if (ratio_larger_ >= kRatioBound || ratio_smaller_ >= kRatioBound ||
      fcomp(cofactor_larger_, cofactor_smaller_) != 0)
    return false;
  iton(larger_, ratio_larger_);
  iton(smaller_, ratio_smaller_);
  removed_ *= std::max(small_magnitude(cofactor_larger_, 1), 1);
  return true;
}

bool Search::try_candidate(int p) {
  int times_larger = 0;
  int times_smaller = 0;
  int run = 0;
  do {
    times_larger += divide_out(cofactor_larger_, p, kRun);
    run = divide_out(cofactor_smaller_, p, kRun);
    times_smaller += run;
  } while (times_larger == times_smaller && run == kRun);
  if (ratio_found(p, times_larger, times_smaller)) return true;
  for (int common = std::min(times_larger, times_smaller); common > 0; --common) {
    div(larger_, p);
    div(smaller_, p);
    removed_ = std::min<long long>(removed_ * p, INT_MAX);
  }
  return is_one(cofactor_larger_) || is_one(cofactor_smaller_);
}

// A candidate can only divide a member when all its prime factors, of those up to the bound, do.
bool covers(std::span<const std::uint32_t> primes, int candidate) {
  auto rest = static_cast<std::uint32_t>(candidate);
  for (const std::uint32_t p : primes)
    while (rest % p == 0) rest /= p;
  return rest == 1;
}

// Can the ratio of the members, a >= b, be within the ratio shortcut? Otherwise their quotient has
// nine digits and more.
bool may_be_ratio(const num* a, const num* b) {
  return magnitude(a).size() < magnitude(b).size() + 2;
}

// Limbs of the smaller member up to which the greatest common divisor costs less than its primes
// (measured on AVX-512, November 2026).
constexpr std::size_t kByDivisor = 200;

// The primes up to `bound` of which some candidate may change something: those of both members, or
// without the ratio shortcut the common ones, all of which are among those of the smaller member
// and are those of the greatest common divisor.
std::size_t primes_of_pair(std::span<std::uint32_t> found, const num* larger, const num* smaller,
                           std::uint32_t bound) {
  if (may_be_ratio(larger, smaller)) {
    const std::size_t count = prime_divisors(found, larger, bound);
    return count + prime_divisors(found.subspan(count), smaller, bound);
  }
  if (bound == kShortBound || magnitude(smaller).size() > kByDivisor)
    return prime_divisors(found, smaller, bound);
  const Lent common({larger, smaller});
  ngcm(common, larger, smaller);
  return is_one(common) ? 0 : prime_divisors(found, common, bound);
}

// The search of a long pair. Candidates that divide neither member would change nothing, so the
// primes that do are found beforehand, many at a time. Its room on the stack is not for the short
// pairs, which are nearly all.
[[gnu::noinline]] int search(num* larger, num* smaller) {
  const int bound = search_bound(larger, smaller);
  std::array<std::uint32_t, 2 * kPrimesBelow9997> found;
  const std::size_t count =
      primes_of_pair(found, larger, smaller, static_cast<std::uint32_t>(bound));
  if (count == 0) return 1;
  Search state(larger, smaller);
  for (int p = 2; p <= bound; p += p == 2 ? 1 : 2)
    if (is_candidate(p) && covers(std::span(found).first(count), p) && state.try_candidate(p))
      break;
  return state.removed();
}

// Does n lose all its factors to the candidates of a short pair?
bool is_smooth(int n) {
  for (int p = 2; p <= kShortBound; ++p)
    while (n % p == 0) n /= p;
  return n == 1;
}

// Would the ratio shortcut take the coprime pair a / x? Then both fit its factors.
bool is_ratio(const num* a, int x) {
  const ConstLimbs value = magnitude(a);
  if (value.size() != 1 || value[0] >= kRatioBound || x >= kRatioBound) return false;
  return is_smooth(static_cast<int>(value[0])) && is_smooth(x);
}

// A decimal over an integer: the decimal takes the denominator in, cut to its 16 places.
int reduce_decimal(num* a, num* b) {
  if (cut_by(a, b)) report(Event::cut_reduction);
  set_one_limb(b, 1);
  return 1;
}

}  // namespace

int reduce_pair(num* a, num* b) {
  if (a->dec == FF && b->dec == 0) return reduce_decimal(a, b);
  if (a->len == 1 && b->len == 1) {
    if (units(b) == 0) return 0;
    const int g = gcm(static_cast<int>(units(a)), static_cast<int>(units(b)));
    if (g == 1) return 1;
    units(a) /= static_cast<Limb>(g);
    units(b) /= static_cast<Limb>(g);
    return g;
  }
  if (ROF[0] == 1 && (a->len > 2 || b->len > 2)) return 0;
  if (is_canonical_small(a) || is_canonical_small(b)) return 0;
  const int order = fcomp(a, b);
  if (order == 0) {
    set_one_limb(a, 1);
    set_one_limb(b, 1);
    return 0;
  }
  num* larger = order > 0 ? a : b;
  num* smaller = order > 0 ? b : a;
  int x = small_magnitude(smaller, 0);
  if (x == 0) return search(larger, smaller);
  // With a small member the gcd is removed at once. The ratio shortcut could still store what is
  // left, which takes away leading zeros and changes nothing else.
  nreducti(larger, &x);
  iton(smaller, x);
  if (in_use(larger)[0] == 0 && is_ratio(larger, x)) set_one_limb(larger, units(larger));
  return 1;
}

int nreducti(num* a, int* x) {
  const Lent trial({a});
  rncopy(trial, a);
  div(trial, *x);
  if (*x == 1 || trial->rem == 0) {
    div(a, *x);
    *x = 1;
    return 1;
  }
  const int g = gcm(trial->rem, *x);
  div(a, g);
  *x /= g;
  return g;
}

}  // namespace tivelo
