#include "support/engine.h"

namespace tivelo::limbs {
namespace {

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
