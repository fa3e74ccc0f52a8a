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

}  // namespace
}  // namespace tivelo::limbs
