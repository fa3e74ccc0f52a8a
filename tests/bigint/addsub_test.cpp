#include "bigint/addsub.h"

#include "support/pool_fixture.h"

namespace tivelo::tests {

using AddSubTest = PoolTest;

// The result may be either operand when the shifts are equal, else the one with the smaller shift;
// minus takes the larger operand too.
static int call(const std::string& op, Call& c) {
  const num* other = c.r == c.x ? c.y : c.x;
  const bool may = c.r == Mc[2] || c.x->shift == c.y->shift ||
                   (op == "+" ? c.r->shift < other->shift : fcomp(c.r, other) > 0);
  if (!may) return kNotAllowed;
  return op == "+" ? sum(c.r, c.x, c.y) : minus(c.r, c.x, c.y);
}

TEST_F(AddSubTest, AddsAndSubtracts) {
  // operation : x : y : status : result
  for (const Row& row : table(R"(
      + : 99999999 : 1 : 1 : 1 0;  + : -7 : -8 : 1 : -15;  + : 7 : -8 : 0 : -1
      + : -7 : 8 : 0 : 1;  + : 8 : -8 : 0;  + :  :  : 1;  + :  : 12 0 : 1 : 12 0
      + : -5 :  : 0 : -5;  + : 5 : 7 <<2 : 1 : 7 0 5;  + : 5 6 7 : 99999999 <<1 : 1 : 6 5 7
      + : 9 <<1 : -9 <<1 : 0;  + : 99999999 0 7 : 99999999 1 <<1 : 1 : 1 99999998 1 7
      + : 1 <<1 : 2 <<1 : 1 : 3 <<1;  + : 0 0 5 : 7 : 1 : 0 0 12
      + : 0 12345000 1 : -0 0 12345000 1 : 0;  + : 99999999*200 : 1 : -6
      + : -1 : -99999999*200 : -6;  + : 99999999*199 : 1 : 1 : 1 0*199
      + : 99999999*199 99999998 : 1 : 1 : 99999999*200;  + : 1 : 1*199 <<1 : 1 : 1*200
      + : 1 : 1*200 <<1 : -6;  + : 99999999*200 : 99999999 <<199 : -6
      + : 99999999*200 : -1 : 0 : 99999999*199 99999998;  + : 3 : -9 9 <<1 : 0 : -9 8 99999997
      - : 1 0 : 1 : 1 : 99999999;  - : 1 : -1 0 : 1 : -99999999;  - : 12 : 12 : 0
      - : 3 : -10 : 1 : -7;  - : -10 : 3 : 1 : -7;  - : 10 : 3 : 1 : 7;  - : 0 :  : 1
      - : 1 0 0 0 : 99999999*3 : 1 : 1;  - : 0 0 5 : 7 : 1 : 2;  - : 0 0 5 : 0 5 : 0
      - : 7 0 5 : 7 <<2 : 1 : 5;  - : 7 0 5 : 6 <<2 : 1 : 1 0 5;  - : 5 <<1 : 3 : 1 : 4 99999997
      - : 7 0 5 : 99999999 <<1 : 1 : 6 1 5;  - : 3 : -5 <<1 : 1 : -4 99999997
      - : 1*200 <<1 : 3 : -6;  - : 1*200 : 1 : 1 : 1*199 0)")) {
    const auto op = [&row](Call& c) { return call(row[0], c); };
    each_alias(row[1], row[2], op, [&row](Call& c, int status) {
      EXPECT_EQ(status, row.number(3));
      if (status < 0) return;
      EXPECT_EQ(raw(c.r), raw(set(Mc[3], row[4])));
      EXPECT_EQ(fields(c.r), status == 0 && !c.r->len ? "0 0 1 0 0 0 1 4 " : c.fields_before);
    });
  }
}

}  // namespace tivelo::tests
