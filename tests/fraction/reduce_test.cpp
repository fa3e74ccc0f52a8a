#include "fraction/reduce.h"

#include <climits>

#include "base/precision.h"
#include "support/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using ReduceTest = PoolTest;

namespace {

int limbs_of(const mpz_class& v) { return static_cast<int>((v.get_str().size() + 7) / 8); }

int take_out(mpz_class& v, unsigned p) {
  int times = 0;
  for (; times < 32 && mpz_divisible_ui_p(v.get_mpz_t(), p); ++times) v /= p;
  return times;
}

unsigned search_bound(const mpz_class& large, const mpz_class& small) {
  const int n = limbs_of(small);
  const bool low_top = small.get_str().size() % 8 == 1;  // a first limb below 10
  if (n < 3 || limbs_of(large) + n > 2500) return 97;
  if (n == 3) return low_top ? 331 : 997;
  return n == 4 && low_top ? 3331 : 9997;
}

// The search for common factors, candidate by candidate: what the outcome is measured against,
// however it is found. Returns the product of the factors removed.
mpz_class plain_search(mpz_class& large, mpz_class& small) {
  constexpr long kBound = 12121212, kOff = 12121215;
  const unsigned bound = search_bound(large, small);
  mpz_class x = large, y = small, removed = 1;
  long ratio_x = 1, ratio_y = 1;
  for (unsigned p = 2; p <= bound && x != 1 && y != 1; p += p == 2 ? 1 : 2) {
    if (p > 11 && (p % 3 == 0 || p % 5 == 0 || p % 7 == 0 || p % 11 == 0)) continue;
    int times_x = 0, times_y = 0, run = 0;
    do {
      times_x += take_out(x, p);
      times_y += run = take_out(y, p);
    } while (times_x == times_y && run == 32);
    if (times_x != times_y && ratio_x < kBound && ratio_y < kBound) {
      for (; times_x > times_y && ratio_x * p < kBound; --times_x) ratio_x *= p;
      for (; times_y > times_x && ratio_y * p < kBound; --times_y) ratio_y *= p;
      if (times_x != times_y) (times_x > times_y ? ratio_x : ratio_y) = kOff;
      if (ratio_x < kBound && ratio_y < kBound && x == y) {
        large = ratio_x;
        small = ratio_y;
        return removed * x;
      }
    }
    mpz_class common;
    mpz_ui_pow_ui(common.get_mpz_t(), p, static_cast<unsigned>(std::min(times_x, times_y)));
    large /= common;
    small /= common;
    removed *= common;
  }
  return removed;
}

mpz_class plain_reduce(mpz_class& a, mpz_class& b) {
  const bool short_pair = limbs_of(a) == 1 && limbs_of(b) == 1;
  if (!short_pair && (a <= 1 || b <= 1)) return 0;
  const bool done = short_pair || a == b;
  const mpz_class g = done || a <= 2099999999 || b <= 2099999999 ? gcd(a, b) : mpz_class(1);
  a /= g;
  b /= g;
  if (done) return short_pair ? g : 0;
  mpz_class& large = a > b ? a : b;
  return large == 1 ? 1 : plain_search(large, a > b ? b : a);
}

void expect_as_plain(mpz_class a, mpz_class b) {
  SCOPED_TRACE(a.get_str() + " / " + b.get_str());
  if (limbs_of(a) > IS || limbs_of(b) > IS) return;
  const int result = nreduct(set(Mc[0], "-" + a.get_str()), set(Mc[1], b.get_str()));
  const mpz_class removed = plain_reduce(a, b);
  ASSERT_EQ(raw(Mc[0]), raw(set(Mc[2], "-" + a.get_str())));
  ASSERT_EQ(raw(Mc[1]), raw(set(Mc[2], b.get_str())));
  ASSERT_EQ(removed <= INT_MAX ? result : 0, removed <= INT_MAX ? removed.get_si() : 0);
}

// Factors around every bound: the candidates' ends, runs of 32 divisions, the ratio of 12121212.
mpz_class small_factors(Operands& operands, unsigned count) {
  static constexpr unsigned kPrimes[] = {2,   2,   3,   3,   5,    7,    11,   13,   89,   97,
                                         101, 331, 337, 997, 1009, 3323, 3331, 3343, 9973, 10007};
  mpz_class product = 1, power;
  for (; count > 0; --count) {
    const unsigned p = kPrimes[operands.below(20)];
    const unsigned times = p < 20 && operands.below(3) == 0 ? 30 + operands.below(40) : 1;
    mpz_ui_pow_ui(power.get_mpz_t(), p, times + operands.below(2));
    product *= power;
  }
  return product;
}

// A multiple of `factor`, unless that is longer, of about that many limbs.
mpz_class multiple(Operands& operands, int limbs, const mpz_class& factor) {
  Number run = operands.number(static_cast<std::size_t>(limbs));
  if (operands.below(3) == 0) run[0] = 9 + operands.below(2);
  const mpz_class v = tivelo::big(run);
  return v < factor ? v : mpz_class(v / factor * factor);
}

// Common factors that are small, or also a long one; `related` pairs have nothing else.
void expect_pair(Operands& operands, int la, int lb, bool long_factor, bool related) {
  mpz_class c = small_factors(operands, operands.below(4));
  if (long_factor) c *= multiple(operands, std::max(std::min(la, lb) - 1, 1), 1);
  const mpz_class a = c * small_factors(operands, 1 + related);
  const mpz_class b = c * small_factors(operands, 1 + related);
  if (related) return expect_as_plain(a, b);
  expect_as_plain(multiple(operands, la, a), multiple(operands, lb, b));
}

}  // namespace

TEST_F(ReduceTest, Rows) {
  // a : b : result, "-" for a product that no integer holds : both in lower terms
  for (const Row& row : table(R"(
      6 : 4 : 2 : 3 : 2;  -6 : -4 : 2 : -3 : -2;  0 : 5 : 5 : 0 : 1;  7 : 7 : 7 : 1 : 1
      5 : 0 : 0 : 5 : 0;  : 5 : 0 :  : 5;  :  : 0;  1 0 : 0 : 0 : 1 0 : 0;  1 0 : 1 : 0 : 1 0 : 1
      1234 56789012 : -1234 56789012 : 0 : 1 : -1;  32 21225472 : 3 : 1 : 10 73741824 : 1
      -2 : 1234 56789012 : 1 : -1 : 617 28394506;  20 99999999 0 : 20 99999999 : 1 : 1 0 : 1
      320 96 32 : 10 3 1 : - : 32 : 1;  0 6 0 : 0 0 4 : 4 : 1 50000000 : 1;  0 2 : 0 1 : 1 : 2 : 1
      -0 6 : 0 1 : 1 : -6 : 1;  0 101 : 0 1 : 1 : 0 101 : 1;  0 0 0 0 20 : 10 : 1 : 2 : 1
      0 6 : 5 : 1 : 6 : 5;  1 50000000 0 d2 : 4 : 1 : 37500000 0 d2 : 1
      -1 50000000 1 d2 : 1 0 : 1 : -1 50000000 d2 : 1;  33333333*200 : 99999999*200 : - : 1 : 3)")) {
    const int result = nreduct(set(Mc[0], row[0]), set(Mc[1], row[1]));
    EXPECT_EQ(row[2] == "-" ? 0 : result, row.number(2)) << row[0] << " / " << row[1];
    EXPECT_EQ(raw(Mc[0]) + " : " + raw(Mc[1]), row[3] + " : " + row[4]);
  }
  ROF[0] = 1;  // nothing for numbers of two limbs
  nreduct(set(Mc[0], "2 0"), set(Mc[1], "2"));
  EXPECT_EQ(raw(Mc[0]) + "/" + raw(Mc[1]), "1 0/1");
  int x = 12;
  EXPECT_EQ(nreducti(set(Mc[0], "-5 0"), &x), 4);
  EXPECT_EQ(raw(Mc[0]) + "/" + std::to_string(x), "-1 25000000/3");
}

TEST_F(ReduceTest, AsPlain) {
  Operands operands(5);
  for (int i = 0; i < 1152 && !HasFatalFailure(); ++i)
    expect_pair(operands, i % 12 + 1, i / 12 % 12 + 1, i & 1, (i & 6) == 6);
  const mpz_class prime("1000000000000000000117");
  for (unsigned i = 0; i < 36 * 36 && !HasFatalFailure(); ++i)
    expect_as_plain(prime << (30 + i % 36), prime << (30 + i / 36));
  use_precision(2);
  const int lengths[][2] = {{1250, 1250}, {1251, 1250}, {1250, 1251}, {2000, 500},
                            {2000, 501},  {3, 1999},    {12, 1990},   {150, 150}};
  for (int i = 0; i < 24 && !HasFatalFailure(); ++i)
    expect_pair(operands, lengths[i / 3][0], lengths[i / 3][1], i % 3 == 1, false);
}

}  // namespace tivelo::tests
