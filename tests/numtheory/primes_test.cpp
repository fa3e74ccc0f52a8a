#include "numtheory/primes.h"

#include "support/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using PrimesTest = PoolTest;

std::string answer(const mpz_class& n) {
  const Primality all = primality(set(Mc[0], n.get_str()));
  return all == Primality::prime ? "prime" : all == Primality::probable ? "probable" : "composite";
}

std::string expected(const mpz_class& n) {
  if (n < 0 || mpz_probab_prime_p(n.get_mpz_t(), 30) == 0) return "composite";
  return n < mpz_class(1) << 64 ? "prime" : "probable";
}

TEST_F(PrimesTest, AgainstOracle) {
  for (int n = -3; n < 20000; ++n) ASSERT_EQ(answer(n), expected(n)) << n;
  for (int i = -300; i < 300; ++i) {
    for (const char* edge : {"18446744073709551616", "4294967296", "10000000000000000"}) {
      const mpz_class n = mpz_class(edge) + i;
      ASSERT_EQ(answer(n), expected(n)) << n;
    }
  }
  Operands operands(76);
  for (int round = 0; round < 300; ++round) {
    const mpz_class n = tivelo::big(ConstLimbs(operands.number(1 + operands.below(8))));
    ASSERT_EQ(answer(n), expected(n)) << n;
  }
}

// Strong pseudoprimes to base 2, to the first bases, strong Lucas pseudoprimes, Carmichael numbers,
// and squares, of Wieferich primes and beyond any trial division.
TEST_F(PrimesTest, WhatLooksLikeAPrime) {
  for (const char* n : {"2047",
                        "3277",
                        "3215031751",
                        "341550071728321",
                        "3825123056546413051",
                        "5459",
                        "5777",
                        "10877",
                        "16109",
                        "561",
                        "41041",
                        "825265",
                        "3825123056546413051",
                        "1194649",
                        "12327121",
                        "14727257011009",
                        "318665857834031151167461",
                        "3317044064679887385961981",
                        "18446744030759878681",
                        "340282366920938460843936948965011886881",
                        "100000000380000000361",
                        "147573952589676412927"})
    EXPECT_EQ(answer(mpz_class(n)), "composite") << n;
  const mpz_class wieferich = mpz_class(1093) * 1093 * 3511 * 3511;
  EXPECT_EQ(answer(wieferich * wieferich), "composite");
}

TEST_F(PrimesTest, TheNextOne) {
  const auto next = [](const mpz_class& n) {
    num* x = set(Mc[0], n.get_str());
    EXPECT_EQ(next_prime(x), 1);
    return big(x);
  };
  const auto check = [&next](const mpz_class& n) {
    mpz_class right;
    mpz_nextprime(right.get_mpz_t(), n.get_mpz_t());
    ASSERT_EQ(next(n), n < 2 ? mpz_class(2) : right) << n;
  };
  for (int n = -2; n < 2000; ++n) ASSERT_NO_FATAL_FAILURE(check(n));
  for (int i = -80; i < 40; ++i) ASSERT_NO_FATAL_FAILURE(check((mpz_class(1) << 64) + i));
  Operands operands(77);
  for (int round = 0; round < 100; ++round)
    ASSERT_NO_FATAL_FAILURE(
        check(tivelo::big(ConstLimbs(operands.number(1 + operands.below(14))))));
  // A gap longer than one stretch of the sieve: 2 to n divide what follows n! + 1.
  mpz_class most = mpz_class::primorial(120);
  ASSERT_NO_FATAL_FAILURE(check(most + 1));
  // What does not fit is refused, and stays.
  num* full = set(Mc[0], "99999999*200");
  EXPECT_LT(next_prime(full), 0);
  EXPECT_EQ(raw(full), raw(set(Mc[1], "99999999*200")));
}

}  // namespace tivelo::tests
