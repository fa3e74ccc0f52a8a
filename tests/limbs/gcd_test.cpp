#include "support/engine.h"

namespace tivelo::limbs {
namespace {

void expect_gcd(const Number& a, const Number& b) {
  ASSERT_TRUE(finds_gcd(a, b)) << text_of(a) << " " << text_of(b);
}

Number times(const mpz_class& a, const Number& b) {
  const mpz_class product = a * big(b);
  return run_of(product, length_of(product));
}

// Zero, one and equal operands, unbalanced lengths, common factors of every size, and neighbours
// of a golden ratio, whose quotients are all 1.
TEST(Gcd, AgainstOracle) {
  Operands operands(8);
  for (int round = 0; round < 1500; ++round) {
    const unsigned most = round % 100 == 0 ? 2000 : round % 10 == 0 ? 400 : 14;
    const Number a = operands.number(operands.below(most));
    const Number b = operands.number(operands.below(most));
    ASSERT_NO_FATAL_FAILURE(expect_gcd(a, b));
    if (a.empty() || b.empty()) continue;
    expect_gcd(a, a);
    const Number common = operands.number(1 + operands.below(most));
    expect_gcd(times(big(common), a), times(big(common), b));
    ASSERT_NO_FATAL_FAILURE(expect_gcd(times(big(common), a), common));
  }
  // Euclid's algorithm backwards, with a long quotient now and then.
  for (int round = 0; round < 30; ++round) {
    mpz_class x = big(operands.number(1 + operands.below(30)));
    mpz_class y = 0;
    while (mpz_sizeinbase(x.get_mpz_t(), 10) < 12000) {
      const unsigned length = operands.below(40) == 0 ? 300 : operands.below(3) == 0 ? 5 : 1;
      y += x * big(operands.number(1 + operands.below(length)));
      swap(x, y);
    }
    ASSERT_NO_FATAL_FAILURE(expect_gcd(times(x, {1}), times(y, {1})));
  }
  // A second quotient of every length in bits.
  for (unsigned bits = 1; bits < 300; ++bits) {
    const mpz_class d = big(operands.number(12)), b = (d << bits) + big(operands.any(11));
    ASSERT_NO_FATAL_FAILURE(expect_gcd(times(b + d, {1}), times(b, {1})));
  }
  mpz_class high;
  mpz_class low;
  for (unsigned n = 1; n < 90000; n += n / 8 + 1) {
    mpz_fib2_ui(high.get_mpz_t(), low.get_mpz_t(), n + 2);
    ASSERT_NO_FATAL_FAILURE(expect_gcd(times(high, {123, 45678}), times(low, {123, 45678})));
  }
}

}  // namespace
}  // namespace tivelo::limbs
