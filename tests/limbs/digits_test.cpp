#include "limbs/digits.h"

#include <cstring>

#include "limbs/oracle.h"

namespace tivelo::limbs {
namespace {

// Every length across two vector steps, with what is left to the single-limb path.
TEST(Digits, WritesAndParsesEveryLength) {
  Operands operands(3);
  for (std::size_t n = 0; n < 40; ++n) {
    for (int round = 0; round < 20; ++round) {
      const Number a = operands.any(n);
      const std::string expected = text_of(a);
      std::string text(8 * n, '#');
      EXPECT_EQ(write(text.data(), a), text.data() + 8 * n);
      EXPECT_EQ(text, expected);
      for (std::size_t cut = 0; cut < 9 && cut <= 8 * n; ++cut) {
        const std::string digits = expected.substr(cut);
        Number r((digits.size() + 7) / 8, 7);
        parse(r, digits);
        EXPECT_EQ(big(r), big(digits));
      }
    }
  }
}

// Each number below 10^4, in both halves of a limb and in every lane.
TEST(Digits, WritesEveryHalf) {
  for (Limb half = 0; half < 10000; ++half) {
    const Number a(5, half * 10000 + (9999 - half));
    char text[41] = {};
    write(text, a);
    ASSERT_EQ(text, text_of(a));
    Number r(5);
    parse(r, text);
    ASSERT_EQ(r, a);
  }
}

}  // namespace
}  // namespace tivelo::limbs
