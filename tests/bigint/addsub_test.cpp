#include "bigint/addsub.h"

#include "support/oracle.h"
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

TEST_F(AddSubTest, Compares) {
  for (const Row& row : table(R"(
      :  : 0;  0 :  : 1;  0 0 :  : 1;  0 0 : -0 : 0;  1 : 0 : 1;  5 : -5 : 0;  1 0 : 99999999 : 1
      -1 0 : -1 1 : -1;  2 0 0 : 1 99999999*2 : 1;  0 0 5 : 5 : 0;  0 0 5 : 1 0 : -1
      3 : 3 <<1 : -1;  3 0 : 3 <<1 : 0;  3 1 : 3 <<1 : 1;  3 0 1 : 3 0 <<1 : 1;  0 <<2 :  : 1
      4 0 : 3 99999999 <<1 : -1;  0 3 0 : 0 0 3 <<1 : 0;  5 : 0 0 <<2 : 1
      99999999*200 : 99999999*199 <<1 : 1)")) {
    const std::string before[] = {state(set(Mc[0], row[0])), state(set(Mc[1], row[1]))};
    EXPECT_EQ(fcomp(Mc[0], Mc[1]), row.number(2)) << row[0] << " : " << row[1];
    EXPECT_EQ(fcomp(Mc[1], Mc[0]), -row.number(2)) << row[1] << " : " << row[0];
    EXPECT_EQ(state(Mc[0]) + state(Mc[1]), before[0] + before[1]);
  }
}

TEST_F(AddSubTest, AddsAndSubtracts) {
  // operation : x : y : status : result
  for (const Row& row : table(R"(
      + : 99999999 : 1 : 1 : 1 0;  + : -7 : -8 : 1 : -15;  + : 7 : -8 : 0 : -1;  + : -7 : 8 : 0 : 1
      + : 8 : -8 : 0;  + :  :  : 1;  + :  : 12 0 : 1 : 12 0;  + : -5 :  : 0 : -5
      + : 5 : 7 <<2 : 1 : 7 0 5;  + : 5 6 7 : 99999999 <<1 : 1 : 6 5 7;  + : 9 <<1 : -9 <<1 : 0
      + : 99999999 0 7 : 99999999 1 <<1 : 1 : 1 99999998 1 7;  + : 1 <<1 : 2 <<1 : 1 : 3 <<1
      + : 0 0 5 : 7 : 1 : 0 0 12;  + : 0 12345000 1 : -0 0 12345000 1 : 0
      + : 99999999*200 : 1 : -6;  + : -1 : -99999999*200 : -6;  + : 99999999*199 : 1 : 1 : 1 0*199
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

TEST_F(AddSubTest, AgreesWithGmp) {
  Operands operands(2);
  const std::size_t sizes[] = {0, 1, 1, 2, 3, 5, 8, 90, 198, 199, 200};
  const auto operand = [&](int shift) {
    const std::size_t n = sizes[operands.below(11)];
    const Number run = n < 9 ? operands.any(n) : operands.number(n);
    return (operands.below(2) ? "-" : "") + text_of(run) + " <<" + std::to_string(shift);
  };
  const mpz_class capacity = power_of_base(200);
  for (int round = 0; round < 1500 && !HasFailure(); ++round) {
    const int shift = static_cast<int>(operands.below(3));
    const std::string y = operand(shift);
    const std::string x = operands.below(8) == 0 ? y.substr(0, y.size() - 4) : operand(0);
    const mpz_class u = big(set(Mc[0], x)), scale = power_of_base(static_cast<unsigned>(shift));
    const mpz_class v = big(set(Mc[1], y)) * scale, total = u + v;
    const bool alike = Mc[0]->sign == Mc[1]->sign;
    const bool too_long = abs(alike ? total : u) >= capacity || abs(v) >= capacity;
    const auto op = [](Call& c) { return call("+", c); };
    each_alias(round % 2 ? x : y, round % 2 ? y : x, op, [&](Call& c, int status) {
      EXPECT_EQ(status, too_long ? -6 : alike ? 1 : 0);
      EXPECT_EQ(too_long ? total : big(c.r), total);
      EXPECT_EQ(too_long ? 0 : c.r->shift, 0);
    });
  }
}

}  // namespace tivelo::tests
