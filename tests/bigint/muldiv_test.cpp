#include "bigint/muldiv.h"

#include "bigint/pool.h"
#include "limbs/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {
namespace {

using MulDivTest = PoolTest;

std::string signed_text(Operands& operands, std::size_t n) {
  return (operands.below(2) == 0 ? "-" : "") + text_of(operands.number(n));
}

TEST_F(MulDivTest, MultipliesByMachineInteger) {
  // x : k : status : result
  for (const Row& row : table(R"(
      99999999 : 100000000 : 1 : 99999999 0;  99999999*200 : 100000000 : -6;  : 7 : 1
      99999999*199 : 100000000 : 1 : 99999999*199 0;  50000000 0*199 : 2 : -6
      0 5 : 7 : 1 : 0 35;  49999999 99999999*199 : 2 : 1 : 99999999*199 99999998
      33333333*200 : 3 : 1 : 99999999*200;  33333333*199 33333334 : 3 : -6
      5 <<1 d2 : 7 : 1 : 35;  99999999*200 : 0 : 0;  99999999*200 : 1 : 1 : 99999999*200)")) {
    const int k = row.number(1);
    const auto op = [k](Call& c) { return c.r == c.y ? kNotAllowed : prodc(c.r, c.x, k); };
    each_alias(row[0], "", op, [&](Call& c, int status) {
      EXPECT_EQ(status, k == 1 && c.r == c.x ? 0 : row.number(2));
      if (status < 0) return;
      EXPECT_EQ(abs(big(c.r)), big(set(Mc[3], row[3])));
      EXPECT_EQ(c.r->len, Mc[3]->len);
      if (k == 1) return;
      EXPECT_EQ(fields(c.r), c.fields_before);
      EXPECT_EQ(c.r->sign, c.own() ? -1 : 1);
    });
  }
}

// A product by one into the other factor only sets its sign.
void check_product(const std::string& x, const std::string& y, int status, const std::string& r) {
  bool stays = false;
  const auto op = [&](Call& c) {
    stays = (is_one(c.x) && c.r == c.y) || (is_one(c.y) && c.r == c.x);
    return prod(c.r, c.x, c.y);
  };
  const auto square = [&](Call& c) {
    if (c.r == c.y) return kNotAllowed;
    stays = is_one(c.x) && c.r == c.x;
    return prod(c.r, c.x, c.x);
  };
  const auto check = [&](Call& c, int got) {
    EXPECT_EQ(got, stays ? 0 : status);
    if (got < 0) return;
    EXPECT_EQ(raw(c.r), raw(set(Mc[3], r)));
    const std::string fresh = fields(c.r);
    EXPECT_TRUE(stays || (fresh.starts_with("0 0 1 ") && fresh.find(" 0 0 0 ") == 8)) << fresh;
  };
  each_alias(x, y, op, check);
  each_alias(y, x, op, check);
  if (x == y) each_alias(x, y, square, check);
}

TEST_F(MulDivTest, Multiplies) {
  // x : y : status : product
  for (const Row& row : table(R"(
      : 123 : 0;  -0 : 99999999*200 : 0;  -0 0 : 7 : 1 : -;  1 : 5 6 : 1 : 5 6
      -1 : 5 6 : 1 : -5 6;  -1 : -1 : 1 : 1;  1 0 : 1 0 : 1 : 1 0 0;  -3 : 4 : 1 : -12
      0*7 2 0 : 3 : 1 : 0 6 0;  -99999999 : -99999999 : 1 : 99999998 1;  1 0*99 : 1 0*99 : -6
      1 : 5*199 : -6 : 5*199
      99999999*100 : 99999999*99 : 1 : 99999999*98 99999998 99999999 0*98 1
      1 : 5*198 : 1 : 5*198;  99999999*100 : 99999999*100 : -6;  2 : 99999999*199 : -6
      2 : 99999999*198 : 1 : 1 99999999*197 99999998)"))
    check_product(row[0], row[1], row.number(2), row[3]);
}

TEST_F(MulDivTest, ProductsAgreeWithGmp) {
  Operands operands(3);
  for (unsigned round = 0; round < 600; ++round) {
    const unsigned nx = round < 400 ? operands.below(14) : 1 + operands.below(198);
    const std::string x = signed_text(operands, nx);
    const unsigned ny = operands.below(round < 400 ? 14 : 202 - nx);
    const std::string y = round % 9 == 0 ? x : signed_text(operands, ny);
    const mpz_class r = big(set(Mc[0], x)) * big(set(Mc[1], y));
    const int status = r == 0 ? 0 : Mc[0]->len + Mc[1]->len + 1 > 200 ? -6 : 1;
    check_product(x, y, status, r == 0 ? "" : r.get_str());
    if (HasFailure()) return;
  }
}

TEST_F(MulDivTest, DividesByMachineInteger) {
  // x : k : status : quotient : remainder
  for (const Row& row : table(R"(
      10000 0 : 7 : 1 : 1428 57142857 : 1;  -5 <<2 d2 : 7 : 1 : - <<2 d2 : 5;  : 7 : 1
      0 : 7 : 1;  1 0 : 100000000 : 1 : 1;  0*4 5 : 5 : 1 : 0 1;  0*3 5 : 5 : 1 : 1
      -7 7 : 1 : 0 : -7 7;  99999999*200 : 99999999 : 1 : 1*200;  5 : 0 : -7;  5 : -1 : -7
      5 : -2147483648 : -7;  99999999*3 : 2147483647 : 1 : 4656612 87524579 : 1486940386)")) {
    SCOPED_TRACE(row[0] + " / " + row[1]);
    num* a = set(Mc[0], row[0]);
    const std::string before = state(a), dec = std::to_string(a->dec);
    EXPECT_EQ(div(a, row.number(1)), row.number(2));
    const std::string rem = std::to_string(row.number(4));
    const std::string after = raw(set(Mc[1], row[3])) + " | 0 " + rem + " " + row[1] + " 73 ";
    EXPECT_EQ(state(a), row.number(2) < 0 ? before : after + dec + " 0 0 1 ");
  }
}

// Quotient and remainder into records of their own, over the dividend, and with none for the rest.
void check_quotient(const std::string& a, const std::string& b, int status, const mpz_class& q,
                    const mpz_class& r) {
  for (int way = 0; way < 4; ++way) {
    SCOPED_TRACE(a + " / " + b + " way " + std::to_string(way));
    num* x = set(Mc[0], a);
    const num* y = set(Mc[1], b);
    const std::string before[] = {state(x), state(y)};
    num* quotient = way % 2 == 1 ? x : junk(Mc[2]);
    const std::string unwritten = fields(quotient);
    num* rest = way < 2 ? set(Mc[3], "1") : way == 2 ? x : nullptr;
    EXPECT_EQ(nndiv(quotient, rest, x, y), status);
    EXPECT_EQ(abs(big(quotient)), q);
    EXPECT_EQ(quotient->len == 0 ? units(quotient) : 0, 0u);
    EXPECT_EQ(rest != nullptr ? abs(big(rest)) : r, r);
    EXPECT_EQ(way == 0 ? state(x) : before[0], before[0]);
    EXPECT_EQ(state(y), before[1]);
    EXPECT_EQ(status == 1 ? fields(quotient) : unwritten, unwritten);
  }
}

TEST_F(MulDivTest, Divides) {
  // dividend : divisor : status : quotient : remainder
  for (const Row& row : table(R"(
      100 : 7 : 0 : 14 : 2;  -100 : -7 : 0 : 14 : 2;  5 : 7 : 0 :  : 5;  : 7 : 0
      7 7 : 0 7 : 0 : 1 1;  1 0 0 : 20 99999999 : 0 : 4761904 : 16 4761904
      20 99999998 : 20 99999999 : 0 :  : 20 99999998
      1000000000000000000000000 : 21 1 : 0 : 4761904 75963718 : 17 24036282;  7 :  : 0 : 7
      9 0 0 0 : 9 99999999*2 : 0 : 90000000 : 90000000;  5 : 9 0 0 : 0 :  : 5;  7 : 0 : 0 : 7
      1000 0 0 0 : 10 0 0 : 1 : 100 0;  10 0*4 : 10 0*3 : 1 : 1 0;  1 0 0 : 10 0 0 : 1 :  : 1 0 0
      9 99999999*2 : 10 0 0 : 1 :  : 9 99999999*2;  10 0 0 : 10 0 0 : 1 : 1
      5 : 10 0 0 : 0 :  : 5;  5 0 0 0 0 : 5 0 0 1 : 1 : 99999999 : 4 99999999*2 1
      0*3 5 : 0*5 3 : 1 : 1 : 2;  99999999*200 : 99999999*100 : 1 : 1 0*99 1
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

TEST_F(MulDivTest, QuotientsAgreeWithGmp) {
  Operands operands(4);
  for (int round = 0; round < 1200; ++round) {
    const std::size_t na = operands.below(round < 900 ? 14 : 201);
    const std::size_t nb = 1 + operands.below(round < 900 ? 8 : 200);
    const std::string a = signed_text(operands, na), b = signed_text(operands, nb);
    const mpz_class u = abs(big(set(Mc[4], a))), v = abs(big(set(Mc[5], b)));
    const Limb top = in_use(Mc[5])[0];
    const bool longer = na > 0 && in_use(Mc[4])[0] >= top;
    const bool short_path = nb < 3 || (nb == 3 && top <= 9) || na + longer < nb;
    check_quotient(a, b, short_path ? 0 : 1, u / v, u % v);
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace tivelo::tests
