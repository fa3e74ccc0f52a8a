#include "output/print.h"

#include "support/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using PrintTest = PoolTest;

// What nprint writes of A on the console.
static std::string text_of(int digits) {
  const std::string before = state(Mc[0]) + state(Mm[0]);
  std::vector<char> scratch(print_scratch(200));
  EXPECT_EQ(nprint("A", scratch.data(), digits, nullptr), 0);
  EXPECT_EQ(state(Mc[0]) + state(Mm[0]), before);
  return PoolTest::printed();
}

TEST_F(PrintTest, Rows) {
  // value, with an 'i' when imaginary : digits : what is printed, '_' for a blank at its end
  for (const Row& row : table(R"(
      5 : 16 : A= 5_;  -5 : -1 : A=-5_;  5 : 99999 : A= 5_;  5 : 0;  1/4 : 0;  0 : 16 : A= 0_
      1/4 : 16 : A= 0.25_;  -4/3 : 16 : A=-1.3333333333333333.._
      1/3 : 10 : A= 0.3333333333333333.._;  1/8 : 1 : A= 0.125_;  7/3 : -1 : A= 2 1/3_
      -4/3 : -1 : A=-1 1/3_;  1/3 : -1 : A= 0 1/3_;  1/7 : 800 : A= 0;  1/7 : -2 : A= 0
      -22/7 : 1600 : A=-3;  4/2 : 16 : A= 2;  4/2 : -1 : A= 2;  2/3 i : -1 : A= 0 2/3  i_
      1/4 i : 16 : A= 0.25  i_;  5/2 i : 800 : A= 2 i_;  0 0 0/2 : 16 : A= 0
      1/1e8 : 3 : A= 0.00000001_;  1/100000000 : 8 : A= 0.00000001_;  1/3 0 : 8 : A= 0.00000000.._
      1/1 0*198 : 16 : A= 0.._;  1 0 0 0/21 0 : 8 : A= 476190476190476.19047619.._
      1 0 1/1 0 : -1 : A= 100000000 1/100000000_
      1 0 0 7/1 0 0 0 : -1 : A= 1 7/1000000000000000000000000_;  5 0 0 0/8 0 0 0 : 16 : A= 0.625_
      5/7 0 0 0 : -1 : A= 0 5/7000000000000000000000000_;  1/1 0*197 : 8 : A= 0.00000000.._
      1.5 : 16 : A= 1.50000000_;  -0.5 : -1 : A=-0.50000000_;  1.5/4 : 16 : A= .37500000_
      1.0000000000000020 : 1 : A= 1.0000000000000020_;  5 d2 : 16 : A= .00000000_
      d2 : 16 : A= .00000000_;  -5000 d2 : 16 : A=-.0000000000005000_
      7 5000 d2 : 16 : A= .0000000700005000_;  0 6 : 16 : A= 000000006_;  -0 : 16 : A=-0_
      1.0000000000000019 : 16 : A= 1.00000000_;  0 51230000 1 d2 : 16 : A= 0.51230000_)")) {
    const bool imaginary = row[0].ends_with('i');
    set('A', row[0].substr(0, row[0].size() - 2 * imaginary));
    M[0].c->imag = imaginary;
    std::string expected = row[2];
    std::ranges::replace(expected, '_', ' ');
    EXPECT_EQ(text_of(row.number(1)), expected + (expected.empty() ? "" : "\n")) << row[0];
  }
  set('A', "1/7");
  EXPECT_EQ(text_of(799).substr(800), "85714.. \n");
}

// Integers about the length that is printed in pieces.
TEST_F(PrintTest, LongIntegers) {
  use_precision(3);
  Operands operands(11);
  for (const std::size_t n : {2047u, 2048u, 2049u, 2050u, 4096u, 4097u, 4098u, 6999u}) {
    const Number limbs = operands.number(n);
    set_limbs(Mc[0], limbs);
    std::vector<char> scratch(print_scratch(IS));
    nprint("A", scratch.data(), 16, nullptr);
    EXPECT_EQ(printed(), "A= " + tivelo::big(limbs).get_str() + " \n");
  }
}

TEST_F(PrintTest, ExpansionsAgreeWithGmp) {
  Operands operands(10);
  for (int round = 0; round < 300 && !HasFailure(); ++round) {
    const mpz_class n = tivelo::big(operands.any(operands.below(12)));
    const mpz_class d = tivelo::big(operands.number(1 + operands.below(round < 250 ? 6 : 190))) + 2;
    const int digits = 1 + static_cast<int>(operands.below(100));
    set('A', n.get_str() + "/" + d.get_str());
    std::string expected = "A= " + mpz_class(n / d).get_str();
    mpz_class rest = n % d;
    if (rest != 0) expected += ".";
    for (int group = 0; group < (digits + 7) / 8 && rest != 0; ++group) {
      rest *= kBase;
      expected += mpz_class(rest / d + kBase).get_str().substr(1);
      rest %= d;
    }
    if (n % d != 0 && rest == 0) expected.resize(expected.find_last_not_of('0') + 1);
    if (n % d != 0) expected += rest == 0 ? " " : ".. ";
    EXPECT_EQ(text_of(digits), expected + "\n");
  }
}

}  // namespace tivelo::tests
