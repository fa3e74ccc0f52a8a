#include "bigint/num.h"

#include <climits>

#include "support/pool_fixture.h"

namespace tivelo::tests {

using NumTest = PoolTest;

TEST_F(NumTest, ConstructsClearsCopies) {
  const num fresh;
  EXPECT_EQ(state(&fresh) + std::to_string(units(&fresh)), " | 0 0 1 0 0 0 0 1 0");
  num* a = junk(Mc[0]);
  const std::string junked = state(a);
  EXPECT_EQ(rncopy(a, a) + ndelete(a), 0);
  EXPECT_EQ(state(a), junked);
  for (int (*const clears)(num*) : {clear, rclear}) {
    junk(a)->end = 7;
    if (clears == clear) a->len = INT_MAX;  // stale: only the units limb may be touched
    const Limb* last = a->limbs + 6;
    EXPECT_EQ(clears(a), 1);
    EXPECT_EQ(state(a) + std::to_string(a->end), " | 0 0 1 0 0 0 1 4 200");
    EXPECT_EQ(last[0], 0u);
    EXPECT_EQ(last[-4], clears == clear ? last[-5] : 0);
    EXPECT_NE(last[-5], 0u);
  }
  for (const char* text : {"", "0", "-0 0 7", "5 99999999 <<3 d2", "99999999*200"}) {
    num* from = set(Mc[1], text);
    from->rem = from->res = from->imag = 11;
    from->rdiv = 12;
    EXPECT_EQ(rncopy(junk(a), from), 1);
    EXPECT_EQ(raw(a), raw(from));
    EXPECT_EQ(fields(a), "0 11 12 " + std::to_string(from->dec) + " 11 11 8 4 ");
    EXPECT_EQ(a->len == 0 ? units(a) : 0, 0u);
    EXPECT_EQ(a->limbs[a->len == 200 ? 0 : 199 - std::max(a->len, 1)] == 87654321, a->len < 200);
  }
}

TEST_F(NumTest, MachineIntegers) {
  // integer : limbs, over the junk's sign
  for (const Row& row : table(R"(
      0 : -0;  99999999 : -99999999;  100000000 : -1 0;  2147483647 : -21 47483647
      -1 : -87654321 87654321 87654321 87654321 87654321)")) {
    EXPECT_EQ(iton(junk(Mc[0]), row.number(0)), row.number(0) < 0 ? -3 : 0);
    EXPECT_EQ(state(Mc[0]), row[1] + " | " + fields(junk(Mc[1])));
  }
  // limbs : ntoi : ntoll, where 4711 is what a refusal leaves there
  for (const Row& row : table(R"(
      : 0 : 0;  0 : 0 : 0;  -5 : -5 : -5;  0 7 : 7 : 7;  21 0 : 4711 : 2100000000
      0 0 5 : 4711 : 5;  20 99999999 : 2099999999 : 2099999999
      -20 99999999 : -2099999999 : -2099999999;  -1234 56789012 : 4711 : -123456789012
      922 33720368 54775807 : 4711 : 9223372036854775807;  100 0 0 : 4711 : 1000000000000000000
      922 33720368 54775808 : 4711 : 4711;  923 0 0 : 4711 : 4711;  -922 99999999*2 : 4711 : 4711
      0 0 0 1 : 4711 : 4711)")) {
    const num* a = set(Mc[0], row[0]);
    int i = 4711;
    long long ll = 4711;
    EXPECT_EQ(ntoi(a, &i), row[1] == "4711" ? -1 : 0) << row[0];
    EXPECT_EQ(ntoll(a, &ll), row[2] == "4711" ? -1 : 0) << row[0];
    EXPECT_EQ(std::to_string(i) + std::to_string(ll), row[1] + row[2]);
    EXPECT_EQ(small_magnitude(a, 4711), std::abs(i)) << row[0];
  }
  EXPECT_EQ(min(3, -4) + min(-4, 3), -8);
}

}  // namespace tivelo::tests
