#include "eval/calc.h"

#include "eval/short.h"
#include "support/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using CalcTest = PoolTest;

// An operand where an operator is due replaces the one before; what starts no operand stops the
// line and loses the unfinished term. Blanks part an operator from its operand except for gcd and
// lcm; the last bracket need not close. Five brackets nest; exponents and exact values take levels
// of their own. A letter that names nothing is no operand, and what the place of the operand held
// stays: the last factor of this expression, or the base or divisor of an operator.
TEST_F(CalcTest, Order) {
  evaluate(R"(
      2PI : 0;  3!! : 0;  2*+3 : 3;  2---5 : -3;  7+5. : 7 : err : -4;  1+,3 : 1 :  : 2
      2+3A<B : 2 : err : -4;  1+b : 1 : err : -4;  2 + 31 : 33;  12 G (18) : 6;  12% 5 : 5
      -(0-5| : -5;  |0-5|+1 : 6;  2+(((((3+4))))) : 9;  2+3*((((((1))))))+5 : 2 : err : -5
      2^((((3)))) : 8;  2^(((((3))))) : 0 : err : -5;  (((SIN45))) : 0.7071067811850000
      (((SIN15))) : 0 : err : -5;  (-2)^-3 : -1/8;  2^3^0 : 1;  5^.0000 : 5;  1/-97^-17 : -0 : err
      3*5*AP2 : 300;  3*5*AG10 : 75;  2*3+4*AC1 : 18;  2*3*-AP2 : 36;  15/4/AG6 : 15/8;  5+AP2 : 25
      AP2 : 0;  9^2GDCL5 : 45;  3^2*4GDCL5 : 45)");
}

// The left operand stays; zero as a divisor gives 0 with the sign of the quotient.
TEST_F(CalcTest, Refusals) {
  const std::string longest(1597, '9');
  evaluate(longest + " : " + longest);
  set('A', "99999 99999999*199");
  set('B', "1 0*194");
  evaluate(R"(
      1/99999989+A : 1/99999989;  2*A : 2;  7/B : 7 : err;  99999999^300-99999999^199 : 0
      100^800 : 1;  662!%10007 : 7223;  -1/0 : -0 : err;  5-3/(2-2)+4 : 9 : err;  1.2345/0 : 0 : err
      TAN90/0 : 0 : div0err)");
}

// Four digits after the point make a decimal of 16 places, the last one set to 1 unless more were
// typed. A sum is exact up to the common denominator 100000000, a product below it; else 16 places
// are cut. An exact operand joins a decimal one at 16 places; a quotient is cut once, and one that
// no number holds leaves the dividend.
TEST_F(CalcTest, ExactAndDecimal) {
  set('A', "10000 0 0/70 0");
  set('B', "12340000 1 0*197 d2");
  evaluate(R"(
      0.125 : 1/8;  0.12345! : 0.1234500000000001;  1.1234567890123456 : 1.1234567890123451
      1.12345678901234567 : 1.1234567890123456;  1/256+1/390625 : 390881/100000000
      1/12345+1/8101 : 0.0002044460056708;  1/9999*1/10001 : 1/99999999
      1/10000*1/10000 : 0.0000000100000000;  000000003^-2 : 1/9;  1/3-.33333333333333331 : 0
      .00001*-.00001 : -0.0000000001000000;  3/1.2345 : 2.4301336573511541
      1/3/1.2345 : 0.2700148508167949;  1.2345^-1 : 0.8100445524503847
      A/1.5000 : 9523809523.8095231746031746;  1/100000007/1.5000 : 0.0000000066666662
      B/.0000000000000001-B : 0)");
}

// Against calc(), to the last field; a third of the lines at least are short. The terms lie about
// the bounds of one limb and of two, as variables also beyond what is short.
TEST_F(CalcTest, ShortLinesAreWhatCalcMakesOfThem) {
  const char* const kNumbers[] = {"1",     "2",        "12",       "9999",
                                  "10000", "99999999", "12345678", "50000000"};
  const char* const kValues[] = {"7",     "-99999999",   "99999999 99999999",
                                 "-3 5",  "12/18",       "5/1e8",
                                 "0",     "-4/99999999", "1.5",
                                 "0 7",   "6/4 2",       "",
                                 "1 2/3", "-1",          "1 2 3"};
  Operands random(20261123);
  int shortly = 0;
  constexpr int kLines = 20'000;
  for (int i = 0; i < kLines; ++i) {
    for (int v = 0; v < 4; ++v) set(changing(v), kValues[random.below(i % 2 != 0 ? 4 : 15)]);
    std::string line;
    for (std::uint32_t n = 1 + random.below(4); n > 0; --n) {
      if (random.below(6) == 0) line += '-';
      line += random.below(2) == 0 ? std::string(1, static_cast<char>('A' + random.below(4)))
                                   : kNumbers[random.below(8)];
      if (n > 1) line += "+-*/"[random.below(4)];
    }
    if (random.below(50) == 0)
      line.insert(random.below(8) % line.size(), 1, " (.+,!A0"[random.below(8)]);
    numf fast(junk(Mc[4]), junk(Mm[4]));
    const std::string before = state(fast.c) + state(fast.m);
    const bool is_short = evaluate_short(line.c_str(), &fast);
    if (!is_short) {
      EXPECT_EQ(state(fast.c) + state(fast.m), before) << line;
      continue;
    }
    ++shortly;
    numf slow(junk(Mc[5]), junk(Mm[5]));
    EXPECT_EQ(calc(line.c_str(), &slow, 1), static_cast<int>(line.size()) + 1) << line;
    EXPECT_EQ(state(fast.c) + state(fast.m), state(slow.c) + state(slow.m)) << line;
  }
  EXPECT_GT(shortly, kLines / 3);
}

TEST_F(CalcTest, ZeroLimbsStayAsTheWorkLeftThem) {
  for (const Row& row : table(R"(
      000000000005+1 : 0 6;  1*000000000005 : 5;  0-.12345 : -12345000 1 d2
      0.5123*1 : 0 51230000 1 d2;  1*0.5123 : 51230000 1 d2;  1.00000001-1.0000 : 1 0 d2;  -0 : -
      123456789*.5000 : 61728394 50000001 23456789 d2)")) {
    evaluate_line(row[0].c_str(), &Cn);
    EXPECT_EQ(raw(Cn.c), raw(set(Mc[0], row[1]))) << row[0];
  }
}

// Angles have exact values in all quadrants, others as texts of six places; what fits no machine
// integer is 0. Only the whole numbers 2, 3 and 5 have longer roots; LOG steps over any one
// character. ATAN counts half degrees and reads a second part, at most 64 deep, that is no decimal.
TEST_F(CalcTest, Functions) {
  evaluate(R"(
      SIN30+COS60+TAN45+LOG2.8+SQRT9+SQR16+EXP+E'+PI+TIME*0+POL12+ATAN1 : 65.5781563105100006
      TIME/TIME : 1;  SIN30.+1 : 3/2;  SIN(-210) : 1/2;  COS36 : 0.8090169943750000
      TAN120 : -1.7320508075700001;  TAN(271/2) : -0.9826970000000001
      TAN(179/2) : 114.5843830000000001;  TAN(90/7) : 0.2282430000000001;  COS(1.2345) : 1
      SIN2147483648 : 0;  SQR(5) : 2.2360679775000001;  SQR(2.0000) : 1.4142140000000001
      SQR(123456789.5000) : 11111.1110830000000001;  SQR(1.5000*10^400) : 0 : err
      LOG8.2 : 0.3333330000000001;  LOG(-10)+1000 : 3.0000000000000001;  ATAN(-1/1000) : 360
      ATAN0--1 : 270;  ATAN(-1)-1 : 225;  ATAN(1/3)+(1/2)I : 113/2;  ATAN3,.00000001 : 0 : err
      ATAN3,(0*1.2345) : 0)");
  std::string angles = "1";
  for (int i = 0; i < 64; ++i) angles.insert(0, "ATAN1,");
  evaluate("5+" + angles + " : 189/2;  5+ATAN1," + angles + " : 5 : err : -5");
}

}  // namespace tivelo::tests
