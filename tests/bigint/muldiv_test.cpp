#include "bigint/muldiv.h"

#include "support/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using MulDivTest = PoolTest;

TEST_F(MulDivTest, MachineIntegers) {
  // x : k : status : product
  for (const Row& row : table(R"(
      99999999 : 100000000 : 1 : 99999999 0;  99999999*200 : 100000000 : -6;  : 7 : 1
      99999999*199 : 100000000 : 1 : 99999999*199 0;  50000000 0*199 : 2 : -6;  0 5 : 7 : 1 : 0 35
      49999999 99999999*199 : 2 : 1 : 99999999*199 99999998;  33333333*200 : 3 : 1 : 99999999*200
      33333333*199 33333334 : 3 : -6;  5 <<1 d2 : 7 : 1 : 35;  99999999*200 : 0 : 0
      99999999*200 : 1 : 1 : 99999999*200)")) {
    const int k = row.number(1);
    const auto op = [k](Call& c) { return c.r == c.y ? kNotAllowed : prodc(c.r, c.x, k); };
    each_alias(row[0], "", op, [&](Call& c, int status) {
      EXPECT_EQ(status, k == 1 && c.r == c.x ? 0 : row.number(2));
      if (status < 0) return;
      EXPECT_EQ(abs(big(c.r)), big(set(Mc[3], row[3])));
      EXPECT_EQ(c.r->len, Mc[3]->len);
      EXPECT_EQ(k == 1 ? c.fields_before : fields(c.r), c.fields_before);
      EXPECT_EQ(c.r->sign, k == 1 || c.r == c.x ? 1 : -1);
    });
  }
  // x : k : status : quotient : remainder
  for (const Row& row : table(R"(
      10000 0 : 7 : 1 : 1428 57142857 : 1;  -5 <<2 d2 : 7 : 1 : - <<2 d2 : 5;  : 7 : 1;  0 : 7 : 1
      1 0 : 100000000 : 1 : 1;  0*4 5 : 5 : 1 : 0 1;  0*3 5 : 5 : 1 : 1;  -7 7 : 1 : 0 : -7 7
      99999999*200 : 99999999 : 1 : 1*200;  5 : 0 : -7;  5 : -1 : -7;  5 : -2147483648 : -7
      99999999*3 : 2147483647 : 1 : 4656612 87524579 : 1486940386)")) {
    num* a = set(Mc[0], row[0]);
    std::string expected = state(a);
    EXPECT_EQ(div(a, row.number(1)), row.number(2)) << row[0] << " / " << row[1];
    num* q = set(Mc[1], row[3]);
    q->rem = row.number(4);
    q->rdiv = row.number(1);
    EXPECT_EQ(state(a), row.number(2) < 0 ? expected : state(q)) << row[0] << " / " << row[1];
  }
}

// A product by one into the other factor only sets its sign.
static void check_product(const std::string& x, const std::string& y, int status,
                          const std::string& r) {
  for (const bool square : {false, true}) {
    bool stays = false;
    const auto op = [&](Call& c) {
      const num* other = square ? c.x : c.y;
      stays = (is_one(c.x) && c.r == other) || (is_one(other) && c.r == c.x);
      return square && c.r == c.y ? kNotAllowed : prod(c.r, c.x, other);
    };
    if (square && x != y) return;
    each_alias(x, y, op, [&](Call& c, int got) {
      EXPECT_EQ(got, stays ? 0 : status);
      EXPECT_EQ(raw(c.r), got < 0 ? raw(c.r) : raw(set(Mc[3], r)));
      EXPECT_TRUE(got < 0 || stays || fields(c.r).starts_with("0 0 1 0 0 0 ")) << fields(c.r);
    });
  }
}

TEST_F(MulDivTest, Multiplies) {
  // x : y : status : product
  for (const Row& row : table(R"(
      : 123 : 0;  -0 : 99999999*200 : 0;  -0 0 : 7 : 1 : -;  1 : 5 6 : 1 : 5 6;  -1 : 5 6 : 1 : -5 6
      -1 : -1 : 1 : 1;  1 0 : 1 0 : 1 : 1 0 0;  -3 : 4 : 1 : -12;  0*7 2 0 : 3 : 1 : 0 6 0
      -99999999 : -99999999 : 1 : 99999998 1;  1 0*99 : 1 0*99 : -6;  1 : 5*199 : -6 : 5*199
      99999999*100 : 99999999*99 : 1 : 99999999*98 99999998 99999999 0*98 1;  1 : 5*198 : 1 : 5*198
      99999999*100 : 99999999*100 : -6;  2 : 99999999*199 : -6
      2 : 99999999*198 : 1 : 1 99999999*197 99999998)")) {
    check_product(row[0], row[1], row.number(2), row[3]);
    check_product(row[1], row[0], row.number(2), row[3]);
  }
}

// Quotient and remainder into records of their own, over the dividend, and with none for the rest.
static void check_quotient(const std::string& a, const std::string& b, int status,
                           const mpz_class& q, const mpz_class& r) {
  for (int way = 0; way < 4; ++way) {
    SCOPED_TRACE(a + " / " + b + " way " + std::to_string(way));
    num* x = set(Mc[0], a);
    const num* y = set(Mc[1], b);
    num* quotient = way % 2 == 1 ? x : junk(Mc[2]);
    num* rest = way < 2 ? set(Mc[3], "1") : way == 2 ? x : nullptr;
    const std::string before[] = {state(x), state(y), fields(quotient)};
    EXPECT_EQ(nndiv(quotient, rest, x, y), status);
    EXPECT_EQ(abs(big(quotient)), q);
    EXPECT_EQ(quotient->len == 0 ? units(quotient) : 0, 0u);
    EXPECT_EQ(rest != nullptr ? abs(big(rest)) : r, r);
    EXPECT_EQ((way == 0 ? state(x) : before[0]) + state(y), before[0] + before[1]);
    EXPECT_EQ(status == 1 ? fields(quotient) : before[2], before[2]);
  }
}

TEST_F(MulDivTest, Divides) {
  // dividend : divisor : status : quotient : remainder
  for (const Row& row : table(R"(
      100 : 7 : 0 : 14 : 2;  -100 : -7 : 0 : 14 : 2;  5 : 7 : 0 :  : 5;  : 7 : 0
      7 7 : 0 7 : 0 : 1 1;  1 0 0 : 20 99999999 : 0 : 4761904 : 16 4761904;  7 :  : 0 : 7
      20 99999998 : 20 99999999 : 0 :  : 20 99999998;  7 : 0 : 0 : 7
      1000000000000000000000000 : 21 1 : 0 : 4761904 75963718 : 17 24036282
      9 0 0 0 : 9 99999999*2 : 0 : 90000000 : 90000000;  5 : 9 0 0 : 0 :  : 5
      1000 0 0 0 : 10 0 0 : 1 : 100 0;  10 0*4 : 10 0*3 : 1 : 1 0;  1 0 0 : 10 0 0 : 1 :  : 1 0 0
      9 99999999*2 : 10 0 0 : 1 :  : 9 99999999*2;  10 0 0 : 10 0 0 : 1 : 1;  5 : 10 0 0 : 0 :  : 5
      5 0 0 0 0 : 5 0 0 1 : 1 : 99999999 : 4 99999999*2 1;  0*3 5 : 0*5 3 : 1 : 1 : 2
      99999999*200 : 99999999*100 : 1 : 1 0*99 1
      99999999*200 : 1 0*199 : 1 : 99999999 : 99999999*199)"))
    check_quotient(row[0], row[1], row.number(2), big(set(Mc[4], row[3])), big(set(Mc[5], row[4])));
  // The estimated length counts, even when the quotient is one limb shorter.
  nndiv(Mc[2], junk(Mc[3]), set(Mc[0], "5 0 0 0 0"), set(Mc[1], "5 0 0 1"));
  EXPECT_EQ(Mc[2]->len, 2);
  drop_limbs(set(Mc[0], "-1 2 3"), 1);
  EXPECT_EQ(raw(Mc[0]), "-1 2");
  drop_limbs(Mc[0], 2);
  EXPECT_EQ(raw(Mc[0]) + std::to_string(units(Mc[0])), "-0");
}

TEST_F(MulDivTest, AgreesWithGmp) {
  Operands operands(3);
  for (int round = 0; round < 1500 && !HasFailure(); ++round) {
    const unsigned na = operands.below(round < 1000 ? 14 : 201);
    const unsigned nb = 1 + operands.below(round < 1000 ? 8 : round % 2 ? 200 : 201 - na);
    const std::string x = (operands.below(2) ? "-" : "") + text_of(operands.number(na));
    const std::string y = round % 9 == 0 && na > 0 ? x : text_of(operands.number(nb));
    const mpz_class u = big(set(Mc[4], x)), v = big(set(Mc[5], y)), product = u * v;
    const int n = Mc[4]->len, m = Mc[5]->len;
    const Limb top = in_use(Mc[5])[0];
    const bool longer = n > 0 && in_use(Mc[4])[0] >= top;
    const bool short_path = m < 3 || (m == 3 && top <= 9) || n + longer < m;
    check_quotient(x, y, short_path ? 0 : 1, abs(u) / abs(v), abs(u) % abs(v));
    const int status = product == 0 ? 0 : n + m + 1 > 200 ? -6 : 1;
    check_product(x, y, status, product == 0 ? "" : product.get_str());
  }
}

}  // namespace tivelo::tests
