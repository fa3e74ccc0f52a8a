#include "limbs/product.h"

#include <algorithm>
#include <cmath>

#include "limbs/oracle.h"

namespace tivelo::limbs {
namespace {

// `length` limbs at the end of r, which was filled with junk and holds no more than it must.
void expect_end(const Number& r, std::size_t length, const mpz_class& expected) {
  const ConstLimbs end = ConstLimbs(r).last(length);
  EXPECT_EQ(big(end), expected);
  EXPECT_TRUE(length == 0 || end[0] != 0);
}

TEST(Product, FallingAndFactorial) {
  const std::uint32_t cases[][2] = {{0, 0},         {1, 0},         {1, 1},       {99999999, 1},
                                    {99999999, 50}, {2, 2},         {24, 24},     {25, 25},
                                    {1999, 1999},   {2000, 1999},   {1000, 900},  {65536, 3000},
                                    {99999, 700},   {10000000, 49}, {4001, 4000}, {3999, 3999}};
  for (const auto& [n, k] : cases) {
    mpz_class expected = 1;
    for (std::uint32_t i = 0; i < k; ++i) expected *= n - i;
    Number r(length_of(expected), 7);
    Lent lent(product_workspace(k, n));
    expect_end(r, falling_product(r, n, k, lent.workspace()), expected);
  }
  for (const std::uint32_t n : {0u, 1u, 2u, 10u, 299u, 300u, 301u, 599u, 600u, 601u, 3999u, 4000u,
                                4095u, 4096u, 4097u, 8191u, 12345u, 16001u, 30000u}) {
    mpz_class expected;
    mpz_fac_ui(expected.get_mpz_t(), n);
    Number r(length_of(expected), 7);
    Lent lent(factorial_workspace(n, r.size()));
    expect_end(r, factorial(r, n, lent.workspace()), expected);
  }
}

TEST(Product, Powers) {
  Operands operands(6);
  const Number bases[] = {
      {}, {1}, {2}, {10}, {99999999}, {1, 0}, {7, 0, 0}, {99999999, 99999999}, operands.number(9)};
  for (const Number& base : bases) {
    for (std::uint64_t n = 0; n < 70; ++n) {
      mpz_class expected;
      mpz_pow_ui(expected.get_mpz_t(), big(base).get_mpz_t(), n);
      Number r(std::max<std::size_t>(length_of(expected), 1), 7);
      Lent lent(power_workspace(r.size()));
      expect_end(r, power(r, base, n, lent.workspace()), expected);
    }
  }
}

}  // namespace
}  // namespace tivelo::limbs
