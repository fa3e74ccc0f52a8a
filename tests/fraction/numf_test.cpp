#include "fraction/numf.h"

#include "support/pool_fixture.h"

namespace tivelo::tests {

using NumfTest = PoolTest;

TEST_F(NumfTest, ClearsAndReduces) {
  const numf f(junk(Mc[0]), junk(Mm[0]));
  EXPECT_EQ(mclear(&M[0]) + ndelete(Mc[1]), 1);
  EXPECT_EQ(state(f.c) + state(f.m), " | 0 0 1 0 0 0 1 4 1 | 0 0 1 0 0 0 1 4 ");
  EXPECT_EQ(units(f.c) + static_cast<Limb>(numf().fl), 0u);
  // a : b : their gcd : a/b in lowest terms
  for (const Row& row : table(R"(
      12 : 18 : 6 : 2 : 3;  0 : 7 : 7 : 0 : 1;  7 : 1 : 1 : 7 : 1;  5 : 5 : 5 : 1 : 1
      100000000 : 99999999 : 1 : 100000000 : 99999999)")) {
    int a = row.number(0), b = row.number(1);
    EXPECT_EQ(gcm(a, b), row.number(2));
    EXPECT_EQ(reduct(&a, &b), a == b ? 1 : row.number(2));
    EXPECT_EQ(std::pair(a, b), std::pair(row.number(3), row.number(4)));
  }
  int n[3], d[3];
  fplus(&n[0], &d[0], 1, 6, 1, 3);
  fprod(&n[1], &d[1], 20000, 30001, 30001, 40000);
  EXPECT_EQ(std::pair(n[0] + n[1], d[0] * d[1]), std::pair(2, 4));
  for (const int sign : {1, 0, -1}) {
    EXPECT_EQ(fminus(&n[2], &d[2], 3 + sign, 4, 3, 4), sign);
    EXPECT_EQ(std::pair(n[2], d[2]), sign == 0 ? std::pair(0, 1) : std::pair(1, 4));
  }
}

}  // namespace tivelo::tests
