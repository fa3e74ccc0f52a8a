#include "fraction/reduce.h"

#include <algorithm>
#include <array>
#include <climits>
#include <utility>

#include "base/precision.h"
#include "base/primes.h"
#include "bigint/addsub.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "fraction/numf.h"
#include "limbs/arith.h"
#include "limbs/gcd.h"
#include "limbs/remainders.h"

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

// Divides a by p while that leaves no remainder, at most kRun times; returns how often.
int divide_out(num* a, int p) {
  int times = 0;
  while (times < kRun && limbs::remainder_limb(in_use(a), static_cast<std::uint32_t>(p)) == 0) {
    div(a, p);
    ++times;
  }
  return times;
}

// The search over one pair: the members lose their common factors, the cofactors Z4 and Z5 every
// factor tried.
struct Search {
  num* larger;
  num* smaller;
  long long removed = 1;
  int ratio_larger = 1;
  int ratio_smaller = 1;

  bool try_candidate(int p);
  bool ratio_found(int p, int& times_larger, int& times_smaller);
  int result() const { return static_cast<int>(std::min<long long>(removed, INT_MAX)); }
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
  if (times_larger == times_smaller || ratio_larger >= kRatioBound || ratio_smaller >= kRatioBound)
    return false;
  move_excess(ratio_larger, p, times_larger, times_smaller);
  move_excess(ratio_smaller, p, times_smaller, times_larger);
  if (ratio_larger >= kRatioBound || ratio_smaller >= kRatioBound || fcomp(Z4, Z5) != 0)
    return false;
  iton(larger, ratio_larger);
  iton(smaller, ratio_smaller);
  removed *= std::max(small_magnitude(Z4, 1), 1);
  return true;
}

// Tries p on both members. True when the search is over.
bool Search::try_candidate(int p) {
  int times_larger = 0;
  int times_smaller = 0;
  int run = 0;
  do {
    times_larger += divide_out(Z4, p);
    run = divide_out(Z5, p);
    times_smaller += run;
  } while (times_larger == times_smaller && run == kRun);
  if (ratio_found(p, times_larger, times_smaller)) return true;
  for (int common = min(times_larger, times_smaller); common > 0; --common) {
    div(larger, p);
    div(smaller, p);
    removed = std::min<long long>(removed * p, INT_MAX);
  }
  return is_one(Z4) || is_one(Z5);
}

// The primes up to `bound` that divide either member.
struct Hits {
  std::array<std::uint32_t, kPrimesBelow9997> primes;
  std::size_t count = 0;

  // A candidate can only divide a member when all its prime factors do.
  bool cover(int candidate) const {
    auto rest = static_cast<std::uint32_t>(candidate);
    for (std::size_t i = 0; i < count && rest > 1; ++i)
      while (rest % primes[i] == 0) rest /= primes[i];
    return rest == 1;
  }
};

void find_hits(const num* larger, const num* smaller, int bound, Hits& hits) {
  const auto all = primes_below_65536();
  const auto end = std::ranges::upper_bound(all, static_cast<std::uint32_t>(bound));
  const auto primes = all.first(static_cast<std::size_t>(end - all.begin()));
  Workspace ws = engine;
  const auto of_larger = ws.take<std::uint32_t>(primes.size());
  const auto of_smaller = ws.take<std::uint32_t>(primes.size());
  limbs::remainders(of_larger, magnitude(larger), primes, ws);
  limbs::remainders(of_smaller, magnitude(smaller), primes, ws);
  for (std::size_t i = 0; i < primes.size(); ++i)
    if (of_larger[i] == 0 || of_smaller[i] == 0) hits.primes[hits.count++] = primes[i];
}

// The search of a long pair. Candidates that divide neither member would change nothing, so the
// primes that do are found beforehand, many at a time.
int search(num* larger, num* smaller) {
  const int bound = search_bound(larger, smaller);
  Hits hits;
  find_hits(larger, smaller, bound, hits);
  if (hits.count == 0) return 1;
  Search state{larger, smaller};
  rncopy(Z4, larger);
  rncopy(Z5, smaller);
  for (int p = 2; p <= bound; p += p == 2 ? 1 : 2)
    if (is_candidate(p) && hits.cover(p) && state.try_candidate(p)) break;
  return state.result();
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
  if (b->len > 1) {
    nndiv(a, nullptr, a, b);
  } else {
    div(a, static_cast<int>(units(b)));
  }
  set_one_limb(b, 1);
  return 1;
}

}  // namespace

int nreduct(num* a, num* b) {
  const Scratch scratch({Z4, Z5, Z6}, {a, b});
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
  const Scratch scratch({Z4}, {a});
  rncopy(Z4, a);
  div(Z4, *x);
  if (*x == 1 || Z4->rem == 0) {
    div(a, *x);
    *x = 1;
    return 1;
  }
  const int g = gcm(Z4->rem, *x);
  div(a, g);
  *x /= g;
  return g;
}

int ngcm(num* r, const num* a, const num* b) {
  const ConstLimbs x = magnitude(a);
  const ConstLimbs y = magnitude(b);
  Workspace ws = engine;
  const Limbs divisor = ws.take<Limb>(std::max(x.size(), y.size()));
  const std::size_t n = limbs::gcd(divisor, x, y, ws);
  r->sign = 1;
  set_one_limb(r, 0);
  if (n > 0) r->len = static_cast<int>(n);
  std::ranges::copy(divisor.last(n), places(r, static_cast<int>(n)).begin());
  return 1;
}

}  // namespace tivelo
