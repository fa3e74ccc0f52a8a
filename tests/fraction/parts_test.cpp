#include "fraction/decimal.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using DecimalTest = PoolTest;

TEST_F(DecimalTest, Shifts) {
  // number : digits, limbs (down) or decimal : status : result
  for (const Row& row : table(R"(
      5 : 3 : 1 : 5000;  -5 : 8 : 1 : -5 0;  5 d2 : 16 : 1 : 5 0 0 d2;  5 6 : 0 : 0 : 5 6;  : 3 : 1
      99999999 : 1 : 1 : 9 99999990;  99999999 1 : 15 : 1 : 9999999 90000000 10000000 0
      99999999*199 : 7 : 1 : 9999999 99999999*198 90000000;  1*199 : 8 : -2;  1*200 : 1 : -2
      1 : 1591 : 1 : 10000000 0*198;  1 : 1592 : -2;  1 : 2147483648 : -2;  1*198 : decimal : -2
      1 0 0 0 : down -2 : -2 : 1 0;  -3 4 5 : down -1 : -1 : -3 4;  7 : down 1 : 1 : 7 0
      1 2 d2 : down 0 : 0 : 1 2 d2;  1 2 : down -1 : -1 : 1 2;  1 2 3 : down -4 : -1 : 1 2 3
      1*199 : down 1 : 1 : 1*199 0;  1*200 : down 1 : -2 : 1*200;  5 : decimal : 1 : 5 0 0 d2)")) {
    num* a = set(Mc[0], row[0]);
    const std::string before = fields(a);
    const int status = row[1] == "decimal" ? to_decimal(a)
                       : row[1][0] == 'd'  ? nfloatDn(a, std::stoi(row[1].substr(5)))
                                           : nfloat(a, std::stoll(row[1]));
    EXPECT_EQ(status, row.number(2)) << row[0] << " by " << row[1];
    EXPECT_EQ(raw(a), raw(set(Mc[1], row[row[3].empty() && status < 0 ? 0 : 3])));
    if (row[1] == "decimal") a->dec = 0;
    EXPECT_EQ(fields(a), before);
  }
}

}  // namespace tivelo::tests
