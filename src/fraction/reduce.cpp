// Lowest terms: the machine-integer gcd, and the search of long pairs for small common factors.
#include "fraction/reduce.h"

#include <algorithm>
#include <array>
#include <climits>
#include <functional>

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

// A member of the pair, and its cofactor: what is left of it once the factors tried are divided
// out. Nothing is divided before the search is over; the exponents tell what would be left.
struct Member {
  num* value;
  std::span<std::uint32_t> left;  // the exponents of the primes in the cofactor
  bool smooth = false;            // has no further factors
  long long divisions = 0;        // of the cofactor so far
  int ratio = 1;

  Member(num* n, std::span<std::uint32_t> exponents) : value(n), left(exponents) {}

  // The least length after so many divisions, each of which takes at most three leading zeros away.
  int length_after(long long times) const {
    return static_cast<int>(std::max<long long>(value->len - 3 * times, 1));
  }
  bool cofactor_is_one() const {
    return smooth && length_after(divisions) == 1 &&
           std::ranges::all_of(left, [](std::uint32_t exponent) { return exponent == 0; });
  }
};

// Is a x k = b x m? From the units on, so that most pairs show at once that it is not.
bool same_product(const num* a, int k, const num* b, int m) {
  const ConstLimbs x = magnitude(a);
  const ConstLimbs y = magnitude(b);
  std::uint64_t carry_x = 0;
  std::uint64_t carry_y = 0;
  for (std::size_t i = 1; i <= std::max(x.size(), y.size()); ++i) {
    carry_x += i <= x.size() ? std::uint64_t{x[x.size() - i]} * static_cast<Limb>(k) : 0;
    carry_y += i <= y.size() ? std::uint64_t{y[y.size() - i]} * static_cast<Limb>(m) : 0;
    if (carry_x % kBase != carry_y % kBase) return false;
    carry_x /= kBase;
    carry_y /= kBase;
  }
  return carry_x == carry_y;
}

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

// The search over one pair, of which `primes` divide one or both. Candidates that divide neither
// would change nothing.
class Search {
 public:
  // Room for the exponents in both members and those that they have in common.
  using Room = std::array<std::array<std::uint32_t, kPrimesBelow9997>, 3>;

  Search(num* larger, num* smaller, std::span<const std::uint32_t> primes, Room& room)
      : primes_(primes),
        larger_(larger, std::span(room[0]).first(primes.size())),
        smaller_(smaller, std::span(room[1]).first(primes.size())),
        common_(std::span(room[2]).first(primes.size())) {
    std::ranges::fill(common_, 0);
    find_exponents();
  }

  // The first number after p that may change something. Composite candidates do only where a run
  // left a power of one of their primes in a cofactor.
  int next(int p) const;

  // Tries p on both members. True when the search is over.
  bool try_candidate(int p);

  // Divides both members by the common factors. Returns their product, saturated.
  int finish();

 private:
  // The primes of a candidate: at most five, as 2 x 3 x 5 x 7 x 11 x 13 is above 9997.
  struct Factor {
    std::size_t prime;
    std::uint32_t times;
  };

  void find_exponents();
  bool take_apart(int p);
  int divide_cofactor(Member& member) const;
  bool ratio_found(int p, int& times_larger, int& times_smaller);
  int cofactor() const;

  std::span<const std::uint32_t> primes_;
  Member larger_, smaller_;
  std::span<std::uint32_t> common_;
  std::array<Factor, 5> factors_;
  std::size_t factor_count_ = 0;
  long long divisions_ = 0;  // of the members
  int divisor_ = 1;          // the last one
  long long removed_ = 1;
  bool found_ratio_ = false;
  bool left_over_ = false;
};

// A member that the other one divides has its exponents and those of the quotient, which is mostly
// far shorter.
void Search::find_exponents() {
  const Lent quotient({larger_.value, smaller_.value}), rest({larger_.value, smaller_.value});
  clear(rest);
  nndiv(quotient, rest, larger_.value, smaller_.value);
  exponents(smaller_.left, smaller_.value, primes_);
  exponents(larger_.left, has_value(rest) ? larger_.value : quotient, primes_);
  if (!has_value(rest))
    std::ranges::transform(larger_.left, smaller_.left, larger_.left.begin(), std::plus<>());
  for (Member* member : {&larger_, &smaller_})
    member->smooth = is_product_of(member->value, primes_, member->left);
}

// The prime factors of p. False when one of them, of those up to the bound, divides no member.
bool Search::take_apart(int p) {
  auto rest = static_cast<std::uint32_t>(p);
  factor_count_ = 0;
  for (std::size_t i = 0; i < primes_.size() && rest > 1; ++i) {
    std::uint32_t times = 0;
    for (; rest % primes_[i] == 0; rest /= primes_[i]) ++times;
    if (times > 0) factors_[factor_count_++] = {i, times};
  }
  return rest == 1;
}

// Divides the cofactor by the candidate taken apart while that leaves no remainder, at most kRun
// times; returns how often.
int Search::divide_cofactor(Member& member) const {
  const auto factors = std::span(factors_).first(factor_count_);
  std::uint32_t times = kRun;
  for (const Factor& factor : factors)
    times = std::min(times, member.left[factor.prime] / factor.times);
  for (const Factor& factor : factors) member.left[factor.prime] -= times * factor.times;
  member.divisions += times;
  return static_cast<int>(times);
}

// Shortcut for members that differ by a small ratio only: once the cofactors are equal, the whole
// fraction is the ratio of the two factors.
bool Search::ratio_found(int p, int& times_larger, int& times_smaller) {
  if (times_larger == times_smaller || larger_.ratio >= kRatioBound ||
      smaller_.ratio >= kRatioBound)
    return false;
  move_excess(larger_.ratio, p, times_larger, times_smaller);
  move_excess(smaller_.ratio, p, times_smaller, times_larger);
  return larger_.ratio < kRatioBound && smaller_.ratio < kRatioBound &&
         same_product(larger_.value, smaller_.ratio, smaller_.value, larger_.ratio);
}

int Search::next(int p) const {
  if (left_over_) return p == 2 ? 3 : p + 2;
  const auto prime = std::ranges::upper_bound(primes_, static_cast<std::uint32_t>(p));
  return prime == primes_.end() ? INT_MAX : static_cast<int>(*prime);
}

bool Search::try_candidate(int p) {
  if (!take_apart(p)) return false;
  int times_larger = 0;
  int times_smaller = 0;
  int run = 0;
  do {
    times_larger += divide_cofactor(larger_);
    run = divide_cofactor(smaller_);
    times_smaller += run;
  } while (times_larger == times_smaller && run == kRun);
  for (const Factor& factor : std::span(factors_).first(factor_count_))
    left_over_ |= larger_.left[factor.prime] + smaller_.left[factor.prime] > 0;
  found_ratio_ = ratio_found(p, times_larger, times_smaller);
  if (found_ratio_) return true;
  const int common = std::min(times_larger, times_smaller);
  if (common > 0) {
    for (const Factor& factor : std::span(factors_).first(factor_count_))
      common_[factor.prime] += static_cast<std::uint32_t>(common) * factor.times;
    for (int i = 0; i < common && removed_ < INT_MAX; ++i) removed_ *= p;
    removed_ = std::min<long long>(removed_, INT_MAX);
    divisions_ += common;
    divisor_ = p;
  }
  return larger_.cofactor_is_one() || smaller_.cofactor_is_one();
}

// The cofactor that both members share where the ratio is found, 1 where it is no machine integer.
int Search::cofactor() const {
  const Lent rest({larger_.value});
  rncopy(rest, larger_.value);
  div(rest, static_cast<int>(removed_));
  div(rest, larger_.ratio);
  trim(rest, rest->len);
  pad(rest, larger_.length_after(larger_.divisions));
  return std::max(small_magnitude(rest, 1), 1);
}

int Search::finish() {
  if (found_ratio_) {
    if (removed_ < INT_MAX) removed_ = std::min<long long>(removed_ * cofactor(), INT_MAX);
    iton(larger_.value, larger_.ratio);
    iton(smaller_.value, smaller_.ratio);
  }
  if (divisions_ == 0) return static_cast<int>(removed_);
  const Lent product({larger_.value, smaller_.value});
  if (!found_ratio_) product_of_powers(product, primes_, common_);
  for (const Member& member : {larger_, smaller_}) {
    if (!found_ratio_) {
      const int length = member.length_after(divisions_);
      exact_quotient(member.value, product);
      pad(member.value, length);
    }
    member.value->rem = 0;
    member.value->rdiv = divisor_;
  }
  return static_cast<int>(removed_);
}

// Can the ratio of the members, a >= b, be within the ratio shortcut? Otherwise their quotient has
// nine digits and more.
bool may_be_ratio(const num* a, const num* b) {
  return magnitude(a).size() < magnitude(b).size() + 2;
}

// Limbs of the smaller member up to which the greatest common divisor costs less than its primes
// (measured on AVX-512, November 2026).
constexpr std::size_t kByDivisor = 200;

// The primes up to `bound` of which some candidate may change something: those of either member, or
// without the ratio shortcut the common ones, all of which are among those of the smaller member
// and are those of the greatest common divisor.
std::size_t primes_of_pair(std::span<std::uint32_t> found, const num* larger, const num* smaller,
                           std::uint32_t bound) {
  if (may_be_ratio(larger, smaller)) {
    std::array<std::uint32_t, kPrimesBelow9997> one, other;
    const auto in_larger = std::span(one).first(prime_divisors(one, larger, bound));
    const auto in_smaller = std::span(other).first(prime_divisors(other, smaller, bound));
    const auto end = std::ranges::set_union(in_larger, in_smaller, found.begin()).out;
    return static_cast<std::size_t>(end - found.begin());
  }
  if (bound == kShortBound || magnitude(smaller).size() > kByDivisor)
    return prime_divisors(found, smaller, bound);
  const Lent common({larger, smaller});
  ngcm(common, larger, smaller);
  return is_one(common) ? 0 : prime_divisors(found, common, bound);
}

// The search of a long pair. The primes that matter are found beforehand, many at a time. Its room
// on the stack is not for the short pairs, which are nearly all.
[[gnu::noinline]] int search(num* larger, num* smaller) {
  const int bound = search_bound(larger, smaller);
  std::array<std::uint32_t, kPrimesBelow9997> primes;
  const std::size_t count =
      primes_of_pair(primes, larger, smaller, static_cast<std::uint32_t>(bound));
  if (count == 0) return 1;
  Search::Room room;
  Search state(larger, smaller, std::span(primes).first(count), room);
  for (int p = state.next(1); p <= bound; p = state.next(p))
    if (is_candidate(p) && state.try_candidate(p)) break;
  return state.finish();
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
