#include "support/engine.h"

namespace tivelo::limbs {
namespace {

// Every pair of lengths around the steps of every kernel.
void adds_and_subtracts() {
  Operands operands(1);
  for (int round = 0; round < 4000; ++round) {
    const std::size_t na = operands.below(round % 4 == 0 ? 70 : 12);
    const std::size_t nb = round % 2 == 0 ? na : operands.below(static_cast<unsigned>(na + 1));
    const Number a = operands.any(na), b = operands.any(nb);
    for (const Over over : {Over::kNothing, Over::kFirst, Over::kSecond})
      for (const bool plus : {true, false})
        ASSERT_TRUE(adds(a, b, plus, over)) << text_of(a) << " " << plus << " " << text_of(b);
  }
}

TEST(Linear, AddsAndSubtracts) { on_every_target(adds_and_subtracts); }

void one_limb() {
  Operands operands(2);
  const std::uint32_t edges[] = {1,         2,         3,         7,          10,
                                 65535,     65536,     99999999,  100000000,  100000001,
                                 134217728, 134217729, 999999999, 1073741824, 2147483647};
  for (int round = 0; round < 2500; ++round) {
    const Number a = operands.any(operands.below(round % 8 == 0 ? 200 : 40));
    const std::uint32_t k = round % 2 == 0 ? edges[operands.below(15)]
                                           : 1 + (operands.below(0x7FFFFFFF) >> operands.below(30));
    for (const bool in_place : {false, true})
      ASSERT_TRUE(works_by_limb(a, k, in_place)) << text_of(a) << " by " << k;
    ASSERT_TRUE(works_by_limb(a, ~k, false)) << text_of(a) << " by " << ~k;
  }
}

TEST(Linear, MultipliesAndDividesByOneLimb) { on_every_target(one_limb); }

// Every length across two vector steps, with what is left to the single-limb path.
TEST(Text, WritesAndParsesEveryLength) {
  Operands operands(3);
  for (std::size_t n = 0; n < 40; ++n) {
    for (int round = 0; round < 20; ++round) {
      const Number a = operands.any(n);
      for (std::size_t cut = 0; cut < 9 && cut <= 8 * n; ++cut)
        ASSERT_TRUE(writes_and_parses(a, cut)) << text_of(a) << " without " << cut;
    }
  }
}

// Each number below 10^4, in both halves of a limb and in every lane.
TEST(Text, WritesEveryHalf) {
  for (Limb half = 0; half < 10000; ++half)
    ASSERT_TRUE(writes_and_parses(Number(5, half * 10000 + (9999 - half)), 0)) << half;
}

}  // namespace
}  // namespace tivelo::limbs
