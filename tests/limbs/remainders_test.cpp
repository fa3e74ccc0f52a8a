#include "base/primes.h"
#include "support/engine.h"

namespace tivelo::limbs {
namespace {

// Primes and odd candidates below the bounds the callers use, and edge moduli in any order, under
// numbers on both sides of every change of method; some are divisible by many of the moduli.
void lists_of_moduli() {
  const auto all = primes_below_65536();
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
