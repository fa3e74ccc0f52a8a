// The engine's operations against GMP, for tests and fuzz targets alike. Each works on numbers of
// its own, into results full of junk, with exactly the workspace that the operation states, and
// tells whether the outcome is right.
#pragma once

#include <algorithm>

#include "limbs/digits.h"
#include "limbs/divide.h"
#include "limbs/exponents.h"
#include "limbs/gcd.h"
#include "limbs/linear.h"
#include "limbs/matrix.h"
#include "limbs/modular.h"
#include "limbs/multiply.h"
#include "limbs/probable_prime.h"
#include "limbs/product.h"
#include "limbs/remainders.h"
#include "support/oracle.h"

namespace tivelo::limbs {

// a +- b for a.size() >= b.size(): over a and, where the sizes are equal, over b, or into a new
// run.
enum class Over { kNothing, kFirst, kSecond };
inline bool adds(Number a, Number b, bool plus, Over over) {
  const mpz_class x = big(a), y = big(b), carried = power_of_base(a.size());
  if (over == Over::kSecond && a.size() != b.size()) over = Over::kNothing;
  Number fresh(a.size(), 7);
  Number& r = over == Over::kFirst ? a : over == Over::kSecond ? b : fresh;
  const Limb carry = plus ? add(r, a, b) : subtract(r, a, b);
  return plus ? big(r) + carry * carried == x + y : big(r) - carry * carried == x - y;
}

// a by k: each of the remainder, the quotient and the product that takes such a k.
inline bool works_by_limb(const Number& a, std::uint32_t k, bool in_place) {
  const mpz_class x = big(a);
  Number q = in_place ? a : Number(a.size(), 7);
  Number r = q;
  bool right = k == 0 || mpz_class(x % k) == remainder_limb(a, k);
  if (k > 0 && k < 0x80000000u) {
    const std::uint32_t rest = divide_limb(q, in_place ? q : a, k);
    right = right && big(q) == x / k && mpz_class(x % k) == rest;
  }
  if (k <= kBase) {
    const Limb carry = multiply_limb(r, in_place ? r : a, k);
    right = right && big(r) + carry * power_of_base(a.size()) == x * k;
  }
  return right;
}

inline Number product_of(const Number& a, const Number& b) {
  Number r(a.size() + b.size(), 7);
  LentWorkspace lent(multiply_workspace(a.size(), b.size()));
  multiply(r, a, b, lent.workspace());
  return r;
}

// A matrix of entries of n limbs by `count` vectors of m; the first limbs of entries are zero.
inline bool multiplies_matrix(Operands& some, std::size_t n, std::size_t m, unsigned count,
                              bool minus) {
  std::vector<Number> of, r(4, Number(n + m, 7));
  for (int i = 0; i < 8; ++i) of.push_back(some.any(i < 4 ? n : m));
  for (std::size_t i = 0; i < 4; ++i) of[i][0] = 0;
  const MatrixVector vectors[] = {{of[4], of[5], r[0], r[1]}, {of[6], of[7], r[2], r[3]}};
  LentWorkspace lent(multiply_matrix_workspace(n, m, count));
  multiply_matrix({of[0], of[1], of[2], of[3]}, std::span(vectors).first(count), minus,
                  lent.workspace());
  const mpz_class a = big(of[0]), b = big(of[1]), c = big(of[2]), d = big(of[3]);
  const mpz_class wrap = power_of_base(n + m);
  bool right = true;
  for (unsigned i = 0; i < count; ++i) {
    const mpz_class x = big(of[4 + 2 * i]), y = big(of[5 + 2 * i]);
    const mpz_class u = minus ? mpz_class(a * x - b * y + wrap) : mpz_class(a * x + b * y);
    const mpz_class v = minus ? mpz_class(d * y - c * x + wrap) : mpz_class(c * x + d * y);
    right = right && big(r[2 * i]) == u % wrap && big(r[2 * i + 1]) == v % wrap;
  }
  return right;
}

inline Number square_of(const Number& a) {
  Number r(2 * a.size(), 7);
  LentWorkspace lent(multiply_workspace(a.size(), a.size()));
  square(r, a, lent.workspace());
  return r;
}

inline bool divides(const Number& a, const Number& b) {
  Number q(a.size() - b.size() + 1, 7), r(b.size(), 7);
  LentWorkspace lent(divide_workspace(a.size(), b.size()));
  divide(q, r, a, b, lent.workspace());
  if (divide_workspace(a.size()) < divide_workspace(a.size(), b.size())) return false;
  return big(q) == big(a) / big(b) && big(r) == big(a) % big(b);
}

// A result at the end of a run of `room` limbs, without leading zeros.
template <typename Operation>
bool ends_in(const mpz_class& expected, std::size_t room, std::size_t workspace,
             const Operation& operation) {
  Number r(room, 7);
  LentWorkspace lent(workspace);
  const std::size_t n = operation(r, lent.workspace());
  return n == length_of(expected) && big(ConstLimbs(r).last(n)) == expected;
}

inline bool finds_gcd(const Number& a, const Number& b) {
  const std::size_t most = std::max(a.size(), b.size()), least = std::min(a.size(), b.size());
  return ends_in(gcd(big(a), big(b)), least > 0 ? least : most, gcd_workspace(most),
                 [&](Number& r, Workspace ws) { return gcd(r, a, b, ws); });
}

inline bool multiplies_all(const std::vector<std::uint32_t>& factors) {
  mpz_class expected = 1;
  for (const std::uint32_t factor : factors) expected *= factor;
  return ends_in(expected, length_of(expected), product_workspace(factors.size(), kBase - 1),
                 [&](Number& r, Workspace ws) { return product_of_list(r, factors, ws); });
}

inline bool multiplies_falling(std::uint32_t n, std::uint32_t k) {
  mpz_class expected = 1;
  for (std::uint32_t i = 0; i < k; ++i) expected *= n - i;
  return ends_in(expected, length_of(expected), product_workspace(k, n),
                 [&](Number& r, Workspace ws) { return falling_product(r, n, k, ws); });
}

inline bool finds_factorial(std::uint32_t n) {
  const mpz_class expected = mpz_class::factorial(n);
  const std::size_t room = length_of(expected);
  return ends_in(expected, room, factorial_workspace(n, room),
                 [&](Number& r, Workspace ws) { return factorial(r, n, ws); });
}

inline bool raises(const Number& base, std::uint32_t n) {
  mpz_class expected;
  mpz_pow_ui(expected.get_mpz_t(), big(base).get_mpz_t(), n);
  const std::size_t room = std::max<std::size_t>(length_of(expected), 1);
  return ends_in(expected, room, power_workspace(room),
                 [&](Number& r, Workspace ws) { return power(r, base, n, ws); });
}

inline bool chooses(std::uint32_t n, std::uint32_t k) {
  mpz_class expected;
  mpz_bin_uiui(expected.get_mpz_t(), n, k);
  const std::size_t room = length_of(expected);
  return ends_in(expected, room, binomial_workspace(n, room),
                 [&](Number& r, Workspace ws) { return binomial(r, n, k, ws); });
}

// rest times all primes[i]^times[i], none of which divides the rest: as a product, and taken apart.
inline bool takes_apart(const std::vector<std::uint32_t>& primes,
                        const std::vector<std::uint32_t>& times, const mpz_class& rest) {
  mpz_class all = 1, power;
  for (std::size_t i = 0; i < primes.size(); ++i) {
    mpz_ui_pow_ui(power.get_mpz_t(), primes[i], times[i]);
    all *= power;
  }
  const std::size_t room = length_of(all);
  const Number a = run_of(all * rest, length_of(all * rest));
  std::vector<std::uint32_t> found(primes.size(), 7);
  LentWorkspace lent(exponents_workspace(a.size(), primes.size()));
  exponents(found, a, primes, lent.workspace());
  return found == times &&
         ends_in(all, room, powers_workspace(room, primes.size()),
                 [&](Number& r, Workspace ws) { return product_of_powers(r, primes, times, ws); });
}

inline bool raises_modulo(const Number& base, const Number& exponent, const Number& m) {
  mpz_class expected;
  mpz_powm(expected.get_mpz_t(), big(base).get_mpz_t(), big(exponent).get_mpz_t(),
           big(m).get_mpz_t());
  Number r(m.size(), 7);
  LentWorkspace lent(power_modulo_workspace(std::max({base.size(), exponent.size(), m.size()})));
  power_modulo(r, base, exponent, m, lent.workspace());
  return big(r) == expected;
}

inline bool passes(bool (*test)(ConstLimbs, Workspace), const mpz_class& n) {
  const Number run = run_of(n, length_of(n));
  LentWorkspace lent(probable_prime_workspace(run.size()));
  return test(run, lent.workspace());
}

inline bool finds_remainders(const Number& a, const std::vector<std::uint32_t>& moduli) {
  std::vector<std::uint32_t> out(moduli.size(), 7);
  LentWorkspace lent(remainders_workspace(a.size(), moduli.size()));
  remainders(out, a, moduli, lent.workspace());
  const mpz_class x = big(a);
  return std::ranges::equal(out, moduli, [&x](std::uint32_t rest, std::uint32_t modulus) {
    return mpz_fdiv_ui(x.get_mpz_t(), modulus) == rest;
  });
}

// Writes a, and parses that text without its first `cut` digits.
inline bool writes_and_parses(const Number& a, std::size_t cut) {
  const std::string expected = text_of(a), digits = expected.substr(cut);
  std::string text(expected.size(), '#');
  const bool wrote = write(text.data(), a) == text.data() + text.size() && text == expected;
  Number r((digits.size() + 7) / 8, 7);
  parse(r, digits);
  return wrote && big(r) == big(digits);
}

}  // namespace tivelo::limbs
