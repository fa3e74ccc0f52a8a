#include "base/primes.h"
#include "support/engine.h"

namespace tivelo::limbs {
namespace {

TEST(Product, FallingAndFactorial) {
  const std::uint32_t cases[][2] = {{0, 0},         {1, 0},         {1, 1},       {99999999, 1},
                                    {99999999, 50}, {2, 2},         {24, 24},     {25, 25},
                                    {1999, 1999},   {2000, 1999},   {1000, 900},  {65536, 3000},
                                    {99999, 700},   {10000000, 49}, {4001, 4000}, {3999, 3999}};
  for (const auto& [n, k] : cases) EXPECT_TRUE(multiplies_falling(n, k)) << n << " " << k;
  for (const std::uint32_t n : {0u, 1u, 2u, 10u, 299u, 300u, 301u, 599u, 600u, 601u, 3999u, 4000u,
                                4095u, 4096u, 4097u, 8191u, 12345u, 16001u, 30000u})
    EXPECT_TRUE(finds_factorial(n)) << n;
}

TEST(Product, Powers) {
  const Number bases[] = {{},
                          {1},
                          {2},
                          {10},
                          {99999999},
                          {1, 0},
                          {7, 0, 0},
                          {99999999, 99999999},
                          Operands(6).number(9)};
  for (const Number& base : bases)
    for (std::uint32_t n = 0; n < 70; ++n)
      EXPECT_TRUE(raises(base, n)) << text_of(base) << " " << n;
}

TEST(Product, Combinations) {
  for (const auto& [n, k] : {std::pair{0u, 0u},
                             {1u, 1u},
                             {2u, 1u},
                             {127u, 1u},
                             {128u, 64u},
                             {129u, 2u},
                             {1000u, 500u},
                             {65536u, 32768u},
                             {99991u, 30000u}})
    EXPECT_TRUE(chooses(n, k)) << n << " " << k;
}

// One prime and many, powers that end at a word, around its squares and far apart, in numbers that
// have nothing else and in longer ones.
void powers_of_primes() {
  const auto all = primes_up_to(65535);
  Operands operands(8);
  for (std::uint32_t round = 0; round < 72; ++round) {
    const std::size_t count = round % 4 == 0 ? 1 : 1 + operands.below(round % 8 == 1 ? 300 : 8);
    const std::uint32_t step = 1 + operands.below(20);
    std::vector<std::uint32_t> primes, times;
    mpz_class rest = big(operands.number(round % 3 * (1 + operands.below(90))));
    for (std::size_t i = 0; i < count; ++i) {
      primes.push_back(all[i == 0 ? operands.below(4) : i * step + 4]);
      const std::uint32_t most[] = {2, 3, 40, 65, 70, 600, 9000, 20000};
      times.push_back(operands.below(most[operands.below(count > 8 ? 5 : 8)]));
      mpz_remove(rest.get_mpz_t(), rest.get_mpz_t(), mpz_class(primes.back()).get_mpz_t());
    }
    ASSERT_TRUE(takes_apart(primes, times, rest == 0 ? mpz_class(1) : rest)) << round;
  }
}

TEST(Exponents, OfPrimes) { on_every_target(powers_of_primes); }

// Primes and odd candidates below the bounds the callers use, and edge moduli in any order, under
// numbers on both sides of every change of method; some are divisible by many of the moduli.
void lists_of_moduli() {
  const auto all = primes_up_to(65535);
  const std::vector<std::uint32_t> primes(all.begin(), all.end());
  std::vector<std::uint32_t> odd;
  for (std::uint32_t p = 3; p < 9998; p += 2) odd.push_back(p);
  const std::vector<std::uint32_t> lists[] = {
      {},  {7},    {1, 65535, 1, 65535, 2, 3},        {65535, 65535, 65535},
      odd, primes, std::vector<std::uint32_t>(300, 2)};
  Operands operands(7);
  for (const auto& moduli : lists) {
    for (const std::size_t na : {0u, 1u, 15u, 16u, 33u, 256u, 257u, 700u, 2600u, 4200u, 9000u}) {
      Number a = operands.number(na);
      if (na > 2 && operands.below(2) == 0) a[na - 1] = a[na - 2] = 0;
      ASSERT_TRUE(finds_remainders(a, moduli)) << na << " by " << moduli.size();
    }
  }
}

TEST(Remainders, OfListsOfModuli) { on_every_target(lists_of_moduli); }

}  // namespace
}  // namespace tivelo::limbs
