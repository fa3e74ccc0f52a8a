#include "eval/calc.h"

#include "fraction/cells.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using CalcTest = PoolTest;

TEST_F(CalcTest, Expressions) {
  set('A', "7");
  set('B', "-5/3");
  set('D', "1.5");
  set('I', "9");
  evaluate(R"(
      2+3*4 : 14;  (2+3)*4 : 20;  8/2/2 : 2;  2-3*4 : -10;  3+ : 3 :  : 2;  3* : 0 :  : 2
      |1-4| : 3;  2*|0-3| : 6;  1/0 : 0 : err;  1/0+2 : 2 : err;  (1-4| : 3;  |1-4) : -3
      |0-3 : -3;  -2^2 : 4;  -5 : -5;  --5 : -5;  2*3^2 : 18;  2^3^2 : 0;  2^3! : 0;  A : 7
      -A : -7;  -B : 5/3;  A+B : 16/3;  2A : 7;  2PI : 9;  AB : -5/3;  D*2 : 3.0000000000000000
      D-1/2 : 1.0000000000000000;  1/3+1/6 : 1/2;  -6/4 : -3/2;  6/-4 : -3/2;  -6/-4 : 3/2
      1.5 : 3/2;  2/3*3/4 : 1/2;  12/5/D : 1.6000000000000000;  0-.12345 : -0.1234500000000001
      0.12345-.12345 : 0;  (1+2)*(3+4) : 21;  ((2)) : 2;  2(3) : 3;  1+2)3 : 3 :  : 4
      0-5| : 5 :  : 4;  5+,3 : 5 :  : 2;  5-,3 : 5 :  : 2;  7+(1,3) : 7 : err : -4
      5,3 : 0 : err : -4;  2+5,3 : 2 : err : -4;  2+5= : 2 : err : -4;  # : 0 : err : -4
      2+' : 2 : err : -4;  2*a : 0 : err : -4;  3=4 : 0 : err : -4;  2 + 31 : 33;  12 G 18 : 6
      4 L 6 : 12;  7 % 5 : 5;  (2 ) * 3 : 6;  1+(((((1))))) : 2;  7+((((((1)))))) : 7 : err : -5
      7+|(|(|(1)|)|)| : 7 : err : -5;  2^(2^(2^2)) : 65536;  1+2^(2^(2^(2^(2)))) : 1 : err : -5
      1+2^((((2)))) : 5;  1+6G(((((2))))) : 1 : err : -5)");
  EXPECT_EQ(calc("", &Cn, 1), 0);
  EXPECT_EQ(value(Cn), "0");
  EXPECT_EQ(calc("1+1", &M[0], 11), 4);
  EXPECT_EQ(value(M[0]), "2");
  EXPECT_EQ(calc("1+1+1", &M[0], 12), -5);
  EXPECT_EQ(value(M[0]), "2");
  EXPECT_EQ(calc("(((((1)))))", &M[0], 0), 12);
  EXPECT_EQ(calc("((((((1))))))", &M[0], 0), -5);
  EXPECT_EQ(printed(), "err ");
  EXPECT_NE(explained(), "");
}

TEST_F(CalcTest, CellsAndOperands) {
  const auto store = [](char letter, int k, const Cell& cell) {
    write_cell(letter - 'A', k, cell);
  };
  store('A', 3, {0, 0, -7});
  store('A', 4, {-4, 0, 3});
  store('A', 12, {0, -5, 1});
  store('B', 2, {0, 0, 12});
  store('B', 3, {0, 0, -1});
  store('A', 5, {1, 2, -3});
  store('A', 6, {-6, 0, 4});
  store('A', 65, {0, 0, 1});
  evaluate(R"(
      A3 : -7;  -A3 : 7;  A4 : 3/4;  A4*2 : 3/2;  A#12 : 0.0000000500000000
      A#B2 : 0.0000000500000000;  -A5 : 10000000200000003;  A6 : 2/3;  A31 : 1;  A#65 : 1
      A#66 : 0 : err;  A#B3 : 0 : err;  1+A# : 1 : err;  1+A#1 : 1 : err;  A#0/ : 0 : err
      A9 : 0;  A#B9 : 0)");
  // text : value : characters read
  for (const Row& row : table(R"(
      -5 : -5 : 2;  --5 : 0 : 1;  12.5*2 : 25/2 : 4;  (2+3)*4 : 5 : 5;  |1-4| : 3 : 5
      |1-4) : -3 : 5;  (2 : 2 : 2;  A#B2+1 : 0.0000000500000000 : 4;  -A3 : 7 : 3
      SIN30+1 : 1/2 : 5;  E'+1 : 2.7182818284600001 : 2;  +1 : 0 : 0)")) {
    mclear(&Cn);
    EXPECT_EQ(nread(row[0].c_str(), &Cn, 3), row.number(2)) << row[0];
    EXPECT_EQ(big(Cn.c) == 0 ? "0" : value(Cn), row[1]) << row[0];
  }
  // A divisor of 195 limbs is too long, one of 194 is not; a cell under the value is none.
  set('A', "1 0*194");
  evaluate("2+5/A : 7 : err;  2*5/A*3 : 30 : err;  A/A : =A : err;  A2 : 0 : err");
  set('A', "1 0*193");
  evaluate("A/A : 1;  A2 : 0 : err");
}

}  // namespace tivelo::tests
