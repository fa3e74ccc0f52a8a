#include "support/engine.h"

namespace tivelo::limbs {
namespace {

void expect_power(const Number& base, const Number& exponent, const Number& m) {
  ASSERT_TRUE(raises_modulo(base, exponent, m))
      << text_of(base) << " ^ " << text_of(exponent) << " mod " << text_of(m);
}

// Every length up to several vectors, moduli next to powers of the base, even and odd; bases that
// are 0, 1, next to the modulus and far above it; exponents from 0 on.
void powers() {
  Operands operands(71);
  for (std::size_t n = 1; n < 140; n += 1 + n / 16) {
    for (int round = 0; round < 12; ++round) {
      Number m = operands.number(n);
      if (round == 0) m = Number(n, kBase - 1);
      if (round == 1) m = run_of(power_of_base(n - 1), n);
      Number base = operands.number(operands.below(static_cast<std::uint32_t>(2 * n + 2)));
      if (round == 2) base = run_of(big(m) - 1, n);
      if (base.size() > 0 && base[0] == 0) base = {};
      const Number exponent = operands.number(operands.below(round == 3 ? 20 : 3));
      ASSERT_NO_FATAL_FAILURE(expect_power(base, exponent, m));
    }
  }
  ASSERT_NO_FATAL_FAILURE(expect_power({5}, {}, {1}));
  ASSERT_NO_FATAL_FAILURE(expect_power({}, {}, {7}));
  ASSERT_NO_FATAL_FAILURE(expect_power({}, {3}, {1, 0, 0}));
}

// Around the change to transforms, and by reciprocals that are found by steps.
void long_powers() {
  Operands operands(72);
  for (const std::size_t n : {249u, 301u, 479u, 480u, 481u, 700u, 1300u}) {
    Number nines(n, kBase - 1);
    ASSERT_NO_FATAL_FAILURE(expect_power(run_of(big(nines) - 1, n), {37}, nines));
    ASSERT_NO_FATAL_FAILURE(
        expect_power(operands.number(n + 9), {12, 34567}, run_of(power_of_base(n - 1) + 1, n)));
    for (int round = 0; round < 4; ++round)
      ASSERT_NO_FATAL_FAILURE(
          expect_power(operands.number(n), operands.number(2), operands.number(n)));
  }
}

TEST(Modular, Powers) { on_every_target(powers); }
TEST(Modular, LongPowers) { on_every_target(long_powers); }

// An exponent whose bits are found by halves.
TEST(Modular, LongExponents) {
  Operands operands(73);
  for (const std::size_t n : {249u, 250u, 251u, 563u, 1200u}) {
    ASSERT_NO_FATAL_FAILURE(expect_power({3}, operands.number(n), {9999, 12345677}));
    ASSERT_NO_FATAL_FAILURE(expect_power({3}, run_of(power_of_base(n - 1), n), {99999989}));
    ASSERT_NO_FATAL_FAILURE(expect_power({7}, Number(n, kBase - 1), {1, 0, 2}));
  }
}

bool is_probable(const mpz_class& n) {
  return passes(passes_strong_test, n) && passes(passes_strong_lucas_test, n);
}

TEST(ProbablePrime, AgainstOracle) {
  Operands operands(74);
  for (int round = 0; round < 400; ++round) {
    mpz_class n = big(operands.number(2 + operands.below(12))) | 1;
    mpz_class prime;
    mpz_nextprime(prime.get_mpz_t(), n.get_mpz_t());
    ASSERT_TRUE(is_probable(prime)) << prime;
    EXPECT_EQ(is_probable(n), mpz_probab_prime_p(n.get_mpz_t(), 25) != 0) << n;
    n = prime * prime;
    EXPECT_FALSE(passes(passes_strong_lucas_test, n)) << "a square: " << n;
  }
}

// What passes one of the tests must not pass the other: numbers 2^p - 1, psi_12 and psi_13 of
// Sorenson and Webster, 2015; and the first strong Lucas pseudoprimes above 10^8.
TEST(ProbablePrime, EachTestFindsWhatTheOtherMisses) {
  std::vector<mpz_class> strong = {mpz_class("318665857834031151167461"),
                                   mpz_class("3317044064679887385961981")};
  for (const unsigned p : {59u, 67u, 71u, 101u, 103u, 109u, 137u, 293u})
    strong.push_back((mpz_class(1) << p) - 1);
  for (const mpz_class& n : strong) {
    EXPECT_TRUE(passes(passes_strong_test, n)) << n;
    EXPECT_FALSE(passes(passes_strong_lucas_test, n)) << n;
  }
  for (const unsigned n : {100213639u, 100866251u, 100981997u, 101097089u, 101185979u, 101984189u,
                           102819599u, 102898079u}) {
    EXPECT_TRUE(passes(passes_strong_lucas_test, n)) << n;
    EXPECT_FALSE(passes(passes_strong_test, n)) << n;
  }
}

}  // namespace
}  // namespace tivelo::limbs
