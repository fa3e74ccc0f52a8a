// The integer of two words, as platforms without one of 128 bits have it, against the compiler's.
#include "base/wide.h"

#include <gtest/gtest.h>

#include <random>

namespace tivelo {
namespace {

#ifdef __SIZEOF_INT128__
TEST(Wide, OfTwoWordsIsTheCompilers) {
  std::mt19937_64 random(71);
  const auto word = [&] {
    return random() % 4 == 0 ? ~std::uint64_t{0} : random() >> random() % 64;
  };
  const auto both = [](TwoWords x) { return Wide{x.high} << 64 | x.low; };
  for (int i = 0; i < 100'000; ++i) {
    const TwoWords x(random() % 2 * word(), word()), y(random() % 2 * word(), word() | 1);
    const Wide a = both(x), b = both(y);
    const int n = static_cast<int>(random() % 128);
    ASSERT_TRUE(both(x + y) == a + b && both(x - y) == a - b && both(x * y) == a * b);
    ASSERT_TRUE(both(x / y) == a / b && both(x % y) == a % b && both(x & y) == (a & b));
    ASSERT_TRUE(both(x << n) == a << n && both(x >> n) == a >> n) << n;
    ASSERT_TRUE((x < y) == (a < b) && (x == y) == (a == b) && (x >= x));
  }
}
#endif

}  // namespace
}  // namespace tivelo
