// Small numbers by strong tests in machine words; long ones by their small prime divisors, then by
// a strong test and a strong Lucas test. Remainders by small primes are taken all at once, and for
// the next prime only once for thousands of numbers.
#include "numtheory/primes.h"

#include <algorithm>
#include <array>
#include <bitset>

#include "base/interrupt.h"
#include "base/primes.h"
#include "base/wide.h"
#include "bigint/addsub.h"
#include "bigint/divisors.h"
#include "bigint/modular.h"
#include "bigint/pool.h"

namespace tivelo {

namespace {

std::uint64_t multiply(std::uint64_t a, std::uint64_t b, std::uint64_t n) {
  return static_cast<std::uint64_t>(static_cast<Wide>(a) * b % n);
}

// The strong test of an odd n = d 2^s + 1 to one base; a multiple of n says nothing.
bool passes_base(std::uint64_t n, std::uint64_t d, int s, std::uint64_t base) {
  base %= n;
  if (base == 0) return true;
  std::uint64_t x = 1;
  for (; d > 0; d /= 2, base = multiply(base, base, n))
    if (d % 2 != 0) x = multiply(x, base, n);
  if (x == 1) return true;
  for (; s > 0 && x != n - 1; --s) x = multiply(x, x, n);
  return s > 0;
}

// Seven bases that no composite number below 2^64 passes (J. Sinclair, 2011).
bool is_prime(std::uint64_t n) {
  for (const std::uint64_t p : {2u, 3u, 5u, 7u, 11u, 13u, 17u, 19u, 23u, 29u, 31u, 37u})
    if (n % p == 0) return n == p;
  if (n < 37 * 37) return n > 1;
  const int s = __builtin_ctzll(n - 1);
  for (const std::uint64_t base : {2u, 325u, 9375u, 28178u, 450775u, 9780504u, 1795265022u})
    if (!passes_base(n, (n - 1) >> s, s, base)) return false;
  return true;
}

// |n| where that is below 2^64.
bool in_word(const num* n, std::uint64_t* word) {
  const ConstLimbs digits = magnitude(n);
  if (digits.size() > 3) return false;
  Wide value = 0;
  for (const Limb limb : digits) value = value * kBase + limb;
  *word = static_cast<std::uint64_t>(value);
  return value >> 64 == 0;
}

// Up to where it pays to look for prime divisors: the cost of a test grows with the cube of the
// length, that of a divisor with the length. At least up to 3511, the larger of the two primes
// known whose squares pass the strong test.
std::uint32_t trial_bound(const num* n) {
  constexpr std::size_t kLeast = 4096, kMost = 65535;
  const auto length = static_cast<std::size_t>(n->len);
  return static_cast<std::uint32_t>(std::clamp(32 * length * length, kLeast, kMost));
}

bool passes_both_tests(const num* n) {
  return strong_probable_prime(n) && strong_lucas_probable_prime(n);
}

// The numbers from an odd one on, in steps of 2, that no prime up to a bound divides.
class Sieve {
 public:
  static constexpr std::uint32_t kNumbers = 8192;

  explicit Sieve(const num* first) : primes_(primes_up_to(trial_bound(first)).subspan(1)) {
    small_remainders(std::span(rests_).first(primes_.size()), first, primes_);
    strike();
  }

  bool survives(std::uint32_t i) const { return !struck_[i]; }

  // Goes on to the next kNumbers.
  void advance() {
    for (std::size_t i = 0; i < primes_.size(); ++i)
      rests_[i] = (rests_[i] + 2 * kNumbers) % primes_[i];
    strike();
  }

 private:
  void strike() {
    struck_.reset();
    for (std::size_t i = 0; i < primes_.size(); ++i) {
      // p divides first + 2 k where 2 k = p - rest, or 2 p - rest.
      const std::uint32_t p = primes_[i];
      std::uint32_t twice = p - rests_[i];
      if (twice == p) twice = 0;
      if (twice % 2 != 0) twice += p;
      for (std::uint32_t k = twice / 2; k < kNumbers; k += p) struck_[k] = true;
    }
  }

  std::span<const std::uint32_t> primes_;
  std::array<std::uint32_t, kPrimesBelow65536> rests_;
  std::bitset<kNumbers> struck_;
};

// The last prime below 2^64.
constexpr std::uint64_t kLastPrime = ~std::uint64_t{0} - 58;

// The least prime above x, and one there is in a word.
std::uint64_t next_in_word(std::uint64_t x) {
  if (x < 2) return 2;
  for (x += 1 + x % 2; !is_prime(x); x += 2) poll();
  return x;
}

// x, a positive integer of three limbs or more, goes up to the first number from it on that passes.
int climb(num* x) {
  const Lent found({x}), step({x});
  clear(step);
  Sieve sieve(x);
  for (;;) {
    for (std::uint32_t k = 0; k < Sieve::kNumbers; ++k) {
      if (!sieve.survives(k)) continue;
      poll();
      clear(found);
      iton(step, static_cast<int>(2 * k));
      if (const int status = sum(found, x, step); status < 0) return status;
      if (!passes_both_tests(found)) continue;
      return rncopy(x, found);
    }
    iton(step, 2 * Sieve::kNumbers);
    if (const int status = sum(x, x, step); status < 0) return status;
    sieve.advance();
  }
}

// The limbs of a word; all else is fresh.
void set_word(num* a, std::uint64_t word) {
  Limb digits[3];
  std::size_t n = 0;
  for (; word != 0; word /= kBase) digits[2 - n++] = static_cast<Limb>(word % kBase);
  clear(a);
  set_limbs(a, ConstLimbs(digits).last(n));
}

}  // namespace

Primality primality(const num* n) {
  std::uint64_t word = 0;
  if (n->sign < 0) return Primality::composite;
  if (in_word(n, &word)) return is_prime(word) ? Primality::prime : Primality::composite;
  std::array<std::uint32_t, kPrimesBelow65536> found;
  // Five of six numbers have a divisor up to 23, whose product is one word; few get further.
  for (const std::uint32_t bound :
       {std::uint32_t{23}, std::uint32_t{101}, std::uint32_t{1000}, trial_bound(n)})
    if (prime_divisors(found, n, bound) > 0) return Primality::composite;
  return passes_both_tests(n) ? Primality::probable : Primality::composite;
}

int next_prime(num* x) {
  std::uint64_t word = 0;
  const bool negative = x->sign < 0;
  if (negative || (in_word(x, &word) && word < kLastPrime)) {
    set_word(x, next_in_word(negative ? 0 : word));
    return 1;
  }
  const Lent first({x}), step({x});
  clear(first);
  set_limbs(first, magnitude(x));
  clear(step);
  iton(step, units(first) % 2 == 0 ? 1 : 2);
  if (const int status = sum(first, first, step); status < 0) return status;
  if (const int status = climb(first); status < 0) return status;
  rncopy(x, first);
  return 1;
}

}  // namespace tivelo
