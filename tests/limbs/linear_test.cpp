#include "limbs/linear.h"

#include "limbs/oracle.h"

namespace tivelo::limbs {
namespace {

// Sums and differences of every pair of lengths around the steps of every kernel, into a fresh run,
// over the first and (for equal lengths) over the second operand.
void adds_and_subtracts() {
  Operands operands(1);
  for (int round = 0; round < 4000; ++round) {
    SCOPED_TRACE(round);
    const std::size_t na = operands.below(round % 4 == 0 ? 70 : 12);
    const std::size_t nb = round % 2 == 0 ? na : operands.below(static_cast<unsigned>(na + 1));
    const Number a = operands.any(na);
    const Number b = operands.any(nb);
    mpz_class base = 1;
    for (std::size_t i = 0; i < na; ++i) base *= kBase;
    const mpz_class sum = big(a) + big(b);
    mpz_class difference = big(a) - big(b);
    const bool borrow = difference < 0;
    if (borrow) difference += base;
    for (int target = 0; target < (na == nb ? 3 : 2); ++target) {
      Number x = a;
      Number y = b;
      Number r(na, 12345);
      Number& to = target == 0 ? r : target == 1 ? x : y;
      EXPECT_EQ(add(to, x, y), sum >= base ? 1u : 0u);
      EXPECT_EQ(text_of(to), text_of(run_of(sum % base, na)));
      x = a;
      y = b;
      EXPECT_EQ(subtract(to, x, y), borrow ? 1u : 0u);
      EXPECT_EQ(text_of(to), text_of(run_of(difference, na)));
    }
  }
}

TEST(Linear, AddsAndSubtracts) { on_every_target(adds_and_subtracts); }

void one_limb() {
  Operands operands(2);
  const std::uint32_t edges[] = {1,         2,         3,         7,          10,
                                 65535,     65536,     99999999,  100000000,  100000001,
                                 134217728, 134217729, 999999999, 1073741824, 2147483647};
  for (int round = 0; round < 2500; ++round) {
    SCOPED_TRACE(round);
    const std::size_t n = operands.below(round % 8 == 0 ? 200 : 40);
    const Number a = operands.any(n);
    const std::uint32_t k = round % 2 == 0 ? edges[operands.below(15)]
                                           : 1 + (operands.below(0x7FFFFFFF) >> operands.below(30));
    const mpz_class value = big(a);
    Number q(n, 7);
    const mpz_class rest = value % k;
    EXPECT_EQ(divide_limb(q, a, k), rest.get_ui());
    EXPECT_EQ(big(q), value / k);
    q = a;
    divide_limb(q, q, k);
    EXPECT_EQ(big(q), value / k);
    EXPECT_EQ(remainder_limb(a, k), rest.get_ui());
    const std::uint32_t wide = ~k;
    EXPECT_EQ(remainder_limb(a, wide), mpz_class(value % wide).get_ui());
    if (k > kBase) continue;
    Number r = a;
    r.insert(r.begin(), multiply_limb(r, r, k));
    EXPECT_EQ(big(r), value * k);
  }
}

TEST(Linear, MultipliesAndDividesByOneLimb) { on_every_target(one_limb); }

}  // namespace
}  // namespace tivelo::limbs
