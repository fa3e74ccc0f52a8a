#include "bigint/modular.h"

#include "support/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using ModularTest = PoolTest;

TEST_F(ModularTest, PowersOfEverySign) {
  // x : y : z : x^y mod z
  for (const Row& row : table(R"(
      2 : 10 : 1000 : 24;  -2 : 3 : 7 : 6;  -2 : 2 : 7 : 4;  -7 : 1 : 7 : ;   :  : 5 : 1;  0 : 0 : 1 :
      -3 : 0 0 : 10 : 1;  0 5 : 2 : 0 7 : 4;  10 : 99999999*20 : 99999999*3 : 10000000 0;  -1 : 1 : 1 0*150 : 99999999*150
      -99999999*200 : 3 : 99999999*200 : ;  6 : -0 : 4 : 1)")) {
    for (const int result : {0, 1, 2, 3}) {
      const num* x = set(Mc[0], row[0]);
      const num* y = set(Mc[1], row[1]);
      const num* z = set(Mc[2], row[2]);
      num* r = result == 3 ? junk(Mc[3]) : Mc[result];
      powm(r, x, y, z);
      EXPECT_EQ(raw(r), raw(set(Mc[4], row[3]))) << row[0] << " ^ " << row[1] << " % " << row[2];
      EXPECT_EQ(fields(r).substr(0, 13), "0 0 1 0 0 0 1") << fields(r);
    }
  }
}

// x = q y + r with 0 <= r < |y| for all signs and lengths, each result over each operand.
TEST_F(ModularTest, QuotientsAndRemainders) {
  Operands operands(75);
  for (int round = 0; round < 600; ++round) {
    const std::string digits[] = {text_of(operands.any(operands.below(12))),
                                  text_of(operands.number(1 + operands.below(9)))};
    std::string text[2];
    for (int i = 0; i < 2; ++i) text[i] = (operands.below(2) == 0 ? "-" : "") + digits[i];
    num* x = set(Mc[0], text[0]);
    num* y = set(Mc[1], text[1]);
    const mpz_class a = big(x), b = big(y);
    num* q = round % 3 == 0 ? x : round % 3 == 1 ? y : junk(Mc[2]);
    num* r = round % 3 == 0 ? y : round % 3 == 1 ? x : junk(Mc[3]);
    quotient_and_remainder(q, r, x, y);
    EXPECT_EQ(big(q) * b + big(r), a) << a << " by " << b;
    EXPECT_TRUE(big(r) >= 0 && big(r) < abs(b)) << a << " by " << b;
    EXPECT_TRUE(r->sign == 1 && (q->len > 0 || q->sign == 1));
  }
  num* x = set(Mc[0], "-99999999*200");
  num* y = set(Mc[1], "1");
  quotient_and_remainder(x, y, x, y);
  EXPECT_EQ(raw(x), raw(set(Mc[2], "-99999999*200")));
}

}  // namespace tivelo::tests
