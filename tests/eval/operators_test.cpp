#include "eval/operators.h"

#include "bigint/addsub.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "eval/calc.h"
#include "fraction/arith.h"
#include "limbs/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {
namespace {

using OperatorsTest = PoolTest;

TEST_F(OperatorsTest, Rows) {
  set_variable('A', "1 0 0");
  set_variable('B', "1 0*199");
  set_variable('D', "1.5");
  set_variable('E', "-10");
  set_variable('F', "0.0000000000000002");
  evaluate(R"(
      5! : 120;  1! : 1;  0! : 0;  -5! : -120;  -4! : 24;  -2! : 2;  (5/2)! : 60;  (1/2)! : 1/2
      A! : 10000000000000000;  100000000! : 0;  99999999! : 0;  3!! : 0;  5P2 : 20;  5P1 : 5
      5P0 : 1;  5P : 1;  5P5 : 120;  5P6 : 0;  5P99999999999 : 0;  5C2 : 10;  5C4 : 5;  5C5 : 1
      5C0 : 1;  5C : 1;  6C3 : 20;  5C7 : 0;  -5P2 : 20;  -5P3 : -60;  0P1 : 0
      100000001C2 : 5000000050000000;  (A)P2 : 99999999999999990000000000000000
      99999999P2 : 9999999700000002;  (A)P999999 : 0;  AP2 : 0;  12G18 : 6;  -12G18 : 6;  0G5 : 5
      5G0 : 5;  0G0 : 0;  4L6 : 12;  -4L6 : -12;  0L5 : 0;  5L0 : 0;  (A)G15 : 5;  2^3G12 : 4
      10000000001L1 : 10000000001;  (1/6)G4 : 1/6;  (4/3)L6 : 4;  17%5 : 2;  17M5 : 2;  17% : 0
      17%0 : 0;  -7%3 : -1;  (7/3)%2 : 1/3;  A%7 : 4;  A%99999999 : 1;  17%2147483647 : 17
      17%2147483648 : 17 : err;  17%99999999999999999999 : 17 : err;  2^10 : 1024;  10^3 : 1000
      2^-2 : 1/4;  (-2)^2 : 4;  (-2)^3 : -8;  5^0 : 1;  0^0 : 1;  0^5 : 0;  0^-1 : 0
      E^3 : -1000;  (1/1000)^2 : 1/1000000;  (2/3)^2 : 4/9;  (2/3)^-2 : 9/4;  (-2/3)^-3 : -27/8
      2^(1/2) : 2;  2^2100000000 : 1;  1^2000000000 : 1;  (-1)^2000000001 : -1;  100^2 : 10000
      1000^-1 : 1/1000;  10^-2 : 1/100;  10^-3 : 0.0010000000000000
      (1/10)^3 : 0.0010000000000000;  10^-5 : 0.0000100000000000;  10^-8 : 0.0000000100000000
      10^-16 : 0.0000000000000001;  10^-17 : 0;  E^-5 : -0.0000100000000000;  10^1592 : 1 : err
      100^796 : 1;  1000^531 : 1;  10^2000000000 : 1 : err;  D^2 : 2.2500000000000000
      D^-1 : 0.6666666666666666;  D^-2 : 0.4444444444444443;  D^0 : 1;  F^2 : 0
      0.0000^-1 : 10000000000000000.0000000000000000;  B^1 : 1;  (1/100)^3 : 1/1000000)");
  calc("150!", &Cn, 1);
  EXPECT_EQ(value(Cn), mpz_class(mpz_class::factorial(150)).get_str());
  calc("10^1591", &Cn, 1);
  EXPECT_EQ(value(Cn), "1" + std::string(1591, '0'));
}

// base^n as products of one factor each, from one on, then added to 0 like every term.
std::string stepwise(const std::string& base, long n) {
  numf power = set(M[1], "1"), factor = set(M[0], base), sum = set(M[2], "0");
  const bool negative = factor.c->sign < 0 && n % 2 != 0;
  factor.c->sign = 1;
  for (long i = 0; i < n; ++i) nprod(&power, &power, &factor);
  if (negative) power.c->sign = -1;
  nsum(&sum, &sum, &power);
  return value(sum);
}

TEST_F(OperatorsTest, PowersAreChainsOfProducts) {
  // base : exponents, the last ones around and beyond what a number holds
  for (const Row& row : table(R"(
      2 : 1 : 2 : 53 : 5260 : 5262 : 5263 : 5289 : 5291 : 5400 : 20000
      -3 : 7 : 64 : 3319 : 3320 : 3337 : 9001;  99999999 : 5 : 197 : 198 : 199 : 200 : 201
      1 0 : 3 : 98 : 99 : 100 : 101 : 198;  1 1 : 98 : 99 : 100 : 150
      9 99999999 99999999 : 2 : 60 : 65 : 66 : 67 : 68 : 99;  99999999*50 : 1 : 2 : 3 : 4 : 5
      7*98 : 1 : 2 : 3;  7*99 : 1 : 2;  7*100 : 1 : 2;  7*198 : 1 : 2;  7*199 : 1 : 2
      7*200 : 1 : 2;  1/3 : 5 : 16 : 17 : 40;  -7/3 : 5 : 15 : 16 : 17 : 33 : 3000
      9999/10000 : 1 : 2 : 20;  0.9999 : 3 : 500;  -1.5 : 9 : 8000 : 10001
      12345678.5 : 50 : 200 : 300;  0 5 : 3 : 4;  1/1000000 : 1 : 2 : 3;  10/3 : 4 : 17
      3/10 : 5 : 9 : 17;  0.5 : 60;  99999999*90/7 : 2 : 3 : 9;  1*199/3 : 1 : 2 : 20)")) {
    for (std::size_t i = 1; i < row.all.size(); ++i) {
      SCOPED_TRACE(row[0] + " ^ " + row[i]);
      const std::string expected = stepwise(row[0], std::stol(row[i]));
      set(M[0], row[0]);
      calc(("A^" + row[i]).c_str(), &Cn, 1);
      EXPECT_EQ(value(Cn), expected);
      EXPECT_EQ(printed(), "");
    }
  }
}

// n (n-1) ... (n-k+1) by one product after the other; zero when one does not fit.
mpz_class falling(const std::string& n, long k) {
  num* product = set(Mc[5], n);
  num* factor = set(Mc[6], n);
  num* minus_one = set(Mc[7], "-1");
  for (; k > 1; --k) {
    minus(factor, factor, minus_one);
    if (prod(product, product, factor) < 0) return 0;
  }
  return big(product);
}

TEST_F(OperatorsTest, FallingProductsEndWhereTheyDoNotFit) {
  const auto evaluated = [](const std::string& text) {
    EXPECT_GT(calc(text.c_str(), &Cn, 1), 0);
    EXPECT_EQ(printed(), "");
    return big(Cn.c);
  };
  int fitting = 0;
  for (int m = 600; m < 720; ++m) {
    const mpz_class expected = falling(std::to_string(m), m);
    fitting += expected != 0;
    EXPECT_EQ(evaluated(std::to_string(m) + "!"), expected) << m;
  }
  EXPECT_GT(fitting, 10);
  EXPECT_LT(fitting, 110);
  // n : first and last k, on both sides of the end
  for (const Row& row : table(R"(
      99999999 : 194 : 202;  1000 : 525 : 575;  20000 : 350 : 380;  654321 : 260 : 290
      1 0 : 195 : 203;  7 12345678 : 170 : 185;  1 0 0 0 : 62 : 70;  99999999*60 : 2 : 5
      5*198 : 1 : 3;  0 1000 : 525 : 575;  -3000 : 400 : 470)")) {
    fitting = 0;
    for (int k = row.number(1); k <= row.number(2); ++k) {
      SCOPED_TRACE(row[0] + " P " + std::to_string(k));
      const mpz_class expected = falling(row[0], k);
      fitting += expected != 0;
      set_variable('A', row[0]);
      EXPECT_EQ(evaluated("(A)P" + std::to_string(k)), expected);
      const bool mirrored = row[0].size() < 9 && row[0].find(' ') == std::string::npos &&
                            std::abs(row.number(0)) / 2 < k;
      set_variable('A', row[0]);
      if (mirrored) continue;
      const mpz_class chosen = expected / mpz_class::factorial(static_cast<unsigned>(k));
      EXPECT_EQ(evaluated("(A)C" + std::to_string(k)), chosen);
    }
    EXPECT_GT(fitting, 0) << row[0];
    EXPECT_LE(fitting, row.number(2) - row.number(1)) << row[0];
  }
}

TEST_F(OperatorsTest, LongDivisorsAndMultiples) {
  Operands operands(9);
  for (int round = 0; round < 200; ++round) {
    const mpz_class c = tivelo::big(operands.number(1 + operands.below(20)));
    const mpz_class a = c * tivelo::big(operands.any(1 + operands.below(80)));
    const mpz_class b = c * tivelo::big(operands.any(1 + operands.below(80)));
    set_variable('A', "-" + a.get_str());
    set_variable('B', b.get_str());
    calc("(A)G(B)", &Cn, 1);
    EXPECT_EQ(big(Cn.c), mpz_class(gcd(a, b)));
    calc("(A)LB", &Cn, 1);
    mpz_class quotient = gcd(a, b) == 0 ? b : mpz_class(b / gcd(a, b));
    const bool fits = a == 0 || quotient <= 1 ||
                      set(Mc[3], quotient.get_str())->len + set(Mc[4], a.get_str())->len < 200;
    EXPECT_EQ(big(Cn.c), fits ? mpz_class(-a * quotient) : mpz_class(-a));
    const unsigned k = 1 + operands.below(2147483647);
    calc(("A%" + std::to_string(k)).c_str(), &Cn, 1);
    EXPECT_EQ(big(Cn.c), mpz_class(-(a % k)));
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace tivelo::tests
