// Factors below 65536 are found all at once; what is left is prime, or may be.
#include "numtheory/factor.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "base/interrupt.h"
#include "base/precision.h"
#include "base/primes.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/divisors.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "bigint/text.h"

namespace tivelo {

namespace {

// The last number below 65536 without a factor up to 7. A cofactor whose quotient by it is below
// kCertified is below the square of kCertified: without a factor below that, it is prime.
constexpr int kLastTrial = 65533;
constexpr Limb kCertified = 65536;

// Trial divisors between two polls.
constexpr unsigned kPollEvery = 4096;

char* append(char* out, unsigned long long value) {
  return std::to_chars(out, out + 20, value).ptr;
}

// prime [ "^" exponent ] "*"
char* append_power(char* out, unsigned long long prime, std::uint32_t exponent) {
  out = append(out, prime);
  if (exponent > 1) {
    *out++ = '^';
    out = append(out, exponent);
  }
  *out++ = '*';
  return out;
}

// Divides out p as often as it goes and appends it to the text.
char* strip_factor(unsigned long long& m, unsigned long long p, char* out) {
  std::uint32_t exponent = 0;
  for (; m % p == 0; m /= p) ++exponent;
  return exponent > 0 ? append_power(out, p, exponent) : out;
}

// What tells whether an odd prime p divides a 32-bit n, by one multiplication: n times the inverse
// of p modulo 2^32 is the quotient if it does, and above 2^32 / p if not (Granlund and Montgomery,
// Division by Invariant Integers using Multiplication, 1994).
struct Divisor {
  std::uint32_t inverse;
  std::uint32_t largest;
};

using Divisors = std::array<Divisor, kPrimesBelow65536>;

// For each prime below 65536; nothing is asked about 2.
const Divisors& divisors() {
  static const Divisors table = [] {
    Divisors all = {};
    const auto primes = primes_up_to(kCertified - 1);
    for (std::size_t i = 1; i < primes.size(); ++i) {
      const std::uint32_t p = primes[i];
      // p inverts itself modulo 8; each of Newton's steps doubles the bits.
      std::uint32_t inverse = p;
      for (int bits = 3; bits < 32; bits *= 2) inverse *= 2 - p * inverse;
      all[i] = {inverse, ~std::uint32_t{0} / p};
    }
    return all;
  }();
  return table;
}

// Divides m, which has no prime factor before the i-th prime, by its odd prime factors up to the
// root of what is left, and appends them to the text.
char* strip_odd_primes(std::uint32_t& m, std::size_t i, char* out) {
  const auto primes = primes_up_to(kCertified - 1);
  const Divisors& table = divisors();
  for (;; ++i) {
    const auto root = static_cast<std::uint32_t>(std::sqrt(static_cast<double>(m)));
    const auto end =
        static_cast<std::size_t>(std::ranges::upper_bound(primes, root) - primes.begin());
    while (i < end && m * table[i].inverse > table[i].largest) ++i;
    if (i >= end) return out;
    std::uint32_t exponent = 0;
    for (std::uint32_t q = 0; (q = m * table[i].inverse) <= table[i].largest; m = q) ++exponent;
    out = append_power(out, primes[i], exponent);
  }
}

// The cofactor without a factor up to kLastTrial: complete when it has one limb, else in
// decimal and with a "?" unless it is certainly prime.
char* append_cofactor(char* out, const num* m) {
  if (m->len == 1) return out + iprime(units(m), out);
  out += ntoc(m, out) - kLimbDigits;
  while (*out != '\0') ++out;
  const Lent trial({m});
  rncopy(trial, m);
  div(trial, kLastTrial);
  if (trial->len > 1 || units(trial) >= kCertified) *out++ = '?';
  return out;
}

}  // namespace

int fprime(const num* n, char* out) {
  *out = '\0';
  const int most = IS - 5;
  if (n->len > most) {
    const auto held = static_cast<long long>(most) * kLimbDigits;
    report(Event::factorise_too_long, {.needed = digits_of(n), .held = held});
    return kDivisionByZero;
  }
  const Lent m({n});
  rncopy(m, n);
  m->sign = 1;
  m->dec = 0;
  trim(m, m->len);
  if (m->len < 2) {
    iprime(m->len == 0 ? 0 : units(m), out);
    return 0;
  }
  std::array<std::uint32_t, kPrimesBelow65536> primes;
  const std::size_t count = prime_divisors(primes, m, kCertified - 1);
  std::array<std::uint32_t, kPrimesBelow65536> times;
  const auto found = std::span(primes).first(count);
  const auto powers = std::span(times).first(count);
  exponents(powers, m, found);
  for (std::size_t i = 0; i < count; ++i) out = append_power(out, found[i], powers[i]);
  if (is_product_of(m, found, powers)) {
    out[-1] = '\0';
    return 0;
  }
  const Lent product({n, m});
  product_of_powers(product, found, powers);
  exact_quotient(m, product);
  *append_cofactor(out, m) = '\0';
  return 0;
}

int iprime(unsigned long long n, char* out) {
  char* const start = out;
  if (n < 2) {
    *out++ = static_cast<char>('0' + n);
    *out = '\0';
    return 1;
  }
  // Trial division up to the square root of what is left; a rest without a factor up to its root is
  // prime.
  const auto primes = primes_up_to(kCertified - 1);
  out = strip_factor(n, 2, out);
  std::size_t i = 1;
  for (; n >> 32 != 0 && i < primes.size(); ++i) out = strip_factor(n, primes[i], out);
  if (n >> 32 == 0) {
    auto rest = static_cast<std::uint32_t>(n);
    out = strip_odd_primes(rest, i, out);
    n = rest;
  }
  for (unsigned long long p = kCertified + 1; p <= n / p; p += 2) {
    if (p % kPollEvery == 1) poll();
    out = strip_factor(n, p, out);
  }
  out = n > 1 ? append(out, n) : out - 1;
  *out = '\0';
  return static_cast<int>(out - start);
}

}  // namespace tivelo
