#include "eval/operators.h"

#include "bigint/addsub.h"
#include "bigint/muldiv.h"
#include "fraction/arith.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {
using OperatorsTest = PoolTest;

TEST_F(OperatorsTest, Rows) {
  set('A', "1 0 0");
  set('B', "1 0*199");
  set('D', "1.5");
  set('E', "-10");
  set('F', "0.0000000000000002");
  evaluate(R"(
      1! : 1;  0! : 0;  -5! : -120;  -4! : 24;  (5/2)! : 60;  (1/2)! : 1/2;  100000000! : 0
      A! : 10000000000000000;  99999999! : 0;  5P1 : 5;  5P0 : 1;  5P : 1;  5P5 : 120;  5P6 : 0
      5P99999999999 : 0;  5C4 : 5;  5C5 : 1;  5C0 : 1;  5C : 1;  5C7 : 0;  -5P2 : 20;  -5P3 : -60
      0P1 : 0;  -2P2 : 2;  .00000000000000020P2 : 0.0000000000000002;  0000000000P2 : -0
      .00000000000000020C2 : 0.0000000000000001;  0000000002C2 : 1;  .00000000000000020! : =F
      100000001C2 : 5000000050000000;  (A)P2 : 99999999999999990000000000000000
      99999999P2 : 9999999700000002;  (A)P999999 : 0;  (A)C999999 : 1;  (A)C999998 : =A;  -12G18 : 6
      0G5 : 5;  5G0 : 5;  0G0 : 0;  4L6 : 12;  -4L6 : -12;  0L5 : 0;  5L0 : 0;  6L4+2^AG : 16
      6L4-7^AG : -37;  (A)G15 : 5;  2^3G12 : 4;  10000000001L1 : 10000000001;  (1/6)G4 : 1/6
      (4/3)L6 : 4;  17%5 : 2;  17M5 : 2;  17% : 0;  17%0 : 0;  -7%3 : -1;  (7/3)%2 : 1/3;  A%7 : 4
      A%99999999 : 1;  17%2147483647 : 17;  17%2147483648 : 17 : err
      17%99999999999999999999 : 17 : err;  2^-2 : 1/4;  (-2)^3 : -8;  0^0 : 1;  0^5 : 0;  0^-1 : 0
      E^3 : -1000;  (1/1000)^2 : 1/1000000;  (-2/3)^-3 : -27/8;  2^(1/2) : 2;  2^2100000000 : 1
      1^2000000000 : 1;  (-1)^2000000001 : -1;  1000^-1 : 1/1000;  10^-2 : 1/100
      10^-3 : 0.0010000000000000;  (1/10)^3 : 0.0010000000000000;  10^-16 : 0.0000000000000001
      10^-17 : 0;  E^-5 : -0.0000100000000000;  10^1592 : 1 : err;  100^796 : 1;  1000^531 : 1
      10^2000000000 : 1 : err;  D^2 : 2.2500000000000000;  D^-1 : 0.6666666666666666
      D^-2 : 0.4444444444444443;  D^0 : 1;  F^2 : 0;  (-5/2)! : -60;  (5/2)C2 : 5
      100000000C999998 : 100000000;  -6%3 : -0;  12345678901234567890G9876543210 : 90
      .0000^2*10000000000000000 : 0;  0.0000^-1 : 10000000000000000.0000000000000000;  B^1 : 1
      (1/100)^3 : 1/1000000)");
  evaluate("10^1591 : 1" + std::string(1591, '0'));
}

// base^n as products of one factor each, from one on, then added to 0 like every term.
static std::string stepwise(const std::string& base, long n) {
  numf power = set('B', "1"), factor = set('A', base), sum = set('C', "0");
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
      3/10 : 5 : 9 : 17;  0.5 : 60;  1.1111 : 1000 : 34600 : 34700;  1.0001 : 40000;  1 : 3
      1.0000000000000001 : 9000;  0.9999999999999999 : 9000;  10001/10000 : 40000
      1 10001/1 1 : 40000;  0.0 : 2;  -1.00000001 : 9001;  99.9 : 799;  1 1.5 : 130 : 197 : 300
      99999999*90/7 : 2 : 3 : 9;  1*199/3 : 1 : 2 : 20)")) {
    for (std::size_t i = 1; i < row.all.size(); ++i) {
      const std::string expected = stepwise(row[0], std::stol(row[i]));
      set('A', row[0]);
      evaluate("A^" + row[i] + " : " + expected);
    }
  }
}

// n (n-1) ... (n-k+1) by one product after the other; zero when one does not fit.
static mpz_class falling(const std::string& n, long k) {
  num* product = set(Mc[5], n);
  num* factor = set(Mc[6], n);
  for (num* minus_one = set(Mc[7], "-1"); k > 1; --k) {
    EXPECT_GE(minus(factor, factor, minus_one), 0);
    if (prod(product, product, factor) < 0) return 0;
  }
  return big(product);
}

TEST_F(OperatorsTest, FallingProductsEndWhereTheyDoNotFit) {
  // n : first and last k, on both sides of the end; k of "!" is n
  for (const Row& row : table(R"(
      ! : 600 : 720;  99999999 : 194 : 202;  1000 : 525 : 575;  1093 : 540 : 548;  20000 : 350 : 380
      654321 : 260 : 290;  1 0 : 195 : 203;  7 12345678 : 170 : 185;  1 0 0 0 : 62 : 70
      99999999*60 : 2 : 5;  5*198 : 1 : 3;  0 1000 : 525 : 575;  -3000 : 400 : 470)")) {
    int fitting = 0;
    for (int k = row.number(1); k <= row.number(2); ++k) {
      const std::string n = row[0] == "!" ? std::to_string(k) : row[0], text = std::to_string(k);
      const mpz_class expected = falling(n, k);
      fitting += expected != 0;
      set('A', n);
      evaluate((row[0] == "!" ? "A! : " : "(A)P" + text + " : ") + expected.get_str());
      // C takes n - k instead where that is less.
      if (n.find(' ') == std::string::npos && std::abs(std::atoi(n.c_str())) / 2 < k) continue;
      const mpz_class chosen = expected / mpz_class::factorial(static_cast<unsigned>(k));
      evaluate("(A)C" + text + " : " + chosen.get_str());
    }
    EXPECT_TRUE(fitting > 0 && fitting <= row.number(2) - row.number(1)) << row[0];
  }
}

}  // namespace tivelo::tests
