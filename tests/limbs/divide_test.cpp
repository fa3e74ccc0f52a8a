#include "support/engine.h"

namespace tivelo::limbs {
namespace {

void expect_division(const Number& a, const Number& b) {
  ASSERT_TRUE(divides(a, b)) << a.size() << " by " << b.size();
}

// a = q b + r with chosen q and r: digits 0 and B - 1 in the quotient and remainders next to 0
// and to b are what makes estimates fail.
Number dividend(Operands& operands, std::size_t na, const Number& b) {
  Number q = operands.any(na - b.size());
  const Number r = operands.any(b.size());
  const mpz_class y = big(b);
  mpz_class rest = big(r) % y;
  if (operands.below(3) == 0) rest = operands.below(2);
  if (operands.below(3) == 0) rest = y - 1;
  return run_of(big(q) * y + rest, na);
}

// Lengths of dividend and divisor that straddle every change of method: columns and blocks of
// rows, the cut divisor, recursion, one and several pieces of the reciprocal.
void every_shape() {
  Operands operands(4);
  for (std::size_t nb = 1; nb < 24; ++nb) {
    for (std::size_t na = nb; na < nb + 24; ++na) {
      for (int round = 0; round < 3; ++round) {
        const Number b = operands.number(nb);
        ASSERT_NO_FATAL_FAILURE(expect_division(operands.any(na), b));
        ASSERT_NO_FATAL_FAILURE(expect_division(dividend(operands, na, b), b));
      }
    }
  }
  const std::size_t shapes[][2] = {
      {2100, 2},    {2100, 99},   {1423, 400},  {1424, 400},  {1425, 400},  {1600, 399},
      {799, 400},   {800, 400},   {801, 400},   {802, 401},   {803, 402},   {804, 402},
      {1300, 420},  {1301, 420},  {2100, 1690}, {2100, 1691}, {2000, 1001}, {2001, 1001},
      {1999, 999},  {2998, 999},  {2999, 1000}, {3000, 1000}, {3001, 1000}, {3002, 1001},
      {6001, 1001}, {6400, 3200}, {3400, 2980}, {5100, 1000}, {5003, 3500}, {9100, 1000},
      {4600, 1531}, {3075, 1537}};
  for (const auto& shape : shapes) {
    for (int round = 0; round < 4; ++round) {
      const Number b = operands.number(shape[1]);
      const Number a = round == 0 ? operands.any(shape[0]) : dividend(operands, shape[0], b);
      ASSERT_NO_FATAL_FAILURE(expect_division(a, b));
    }
  }
}

TEST(Divide, EveryShape) { on_every_target(every_shape); }

// Divisors whose leading limbs say least about the rest (1, then zeros or nines) under quotients
// of all nines, in every method.
TEST(Divide, UnlikelyCorrections) {
  for (const std::size_t n : {2u, 3u, 9u, 401u, 840u, 1001u}) {
    for (const Limb first : {1u, 2u, kBase / 2, kBase - 1}) {
      for (const Limb fill : {0u, kBase - 1}) {
        for (const Limb last : {0u, 1u, kBase - 1}) {
          Number b(n, fill);
          b[0] = first;
          b[n - 1] = last;
          for (const Limb digit : {0u, kBase - 1}) {
            const Number q(n, digit);
            for (const mpz_class& rest : {mpz_class(0), mpz_class(big(b) - 1)})
              ASSERT_NO_FATAL_FAILURE(expect_division(run_of(big(q) * big(b) + rest, 2 * n), b));
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace tivelo::limbs
