#include "fraction/arith.h"

#include "base/precision.h"
#include "bigint/pool.h"
#include "limbs/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {
namespace {

using ArithTest = PoolTest;
const std::string kUnit = "10000000000000000";  // of the 16 places

// The result over the first operand, as the evaluator calls it, and in a place of its own. "same":
// refused, r is what it was.
void check(const std::string& op, const std::string& x_text, const std::string& y_text, int status,
           const std::string& expected) {
  for (const bool own : {false, true}) {
    SCOPED_TRACE(x_text.substr(0, 60) + op + y_text.substr(0, 60) + (own ? " own" : ""));
    numf x = set(M[0], x_text);
    numf y = set(M[1], y_text);
    numf r = own ? set(M[2], op == "*" ? "22" : "22/7") : x;
    const std::string before = raw(r.c) + "/" + raw(r.m);
    EXPECT_EQ(op == "+"   ? nsum(&r, &x, &y)
              : op == "*" ? nprod(&r, &x, &y)
                          : ndiv(&r, &x, &y),
              status);
    EXPECT_EQ(expected == "same" ? raw(r.c) + "/" + raw(r.m) : value(r),
              expected == "same" ? before : expected);
  }
}

TEST_F(ArithTest, Rows) {
  // operation : x : y : status : result
  for (const Row& row : table(R"(
      + : 1/2 : 1/3 : 0 : 5/6;  + : 1/6 : 1/3 : 0 : 1/2;  + : -1/2 : 1/3 : 0 : -1/6
      + : 1/2 : -1/2 : 0 : 0/2;  + : 1/10000 : 1/10000 : 0 : 1/5000
      + : 1/12345 : 1/8101 : 2 : 0.0002044460056708
      + : -1/12345 : 1/8101 : 2 : 0.0000424370951808;  + : -1/3 : 1/8 1 : 2 : -0.3333333320833334
      + : 1/256 : 1/390625 : 0 : 390881/100000000;  + : 390881/1e8 : 1/1e8 : 0 : 195441/50000000
      + : 1.5 : 1/3 : 0 : 1.8333333333333333;  + : 1/3 : -1.5 : 0 : -1.1666666666666667
      + : 1.5 : 0.25 : 0 : 1.7500000000000000;  + : 1.5 : 1/12 0 : 2 : 1.5000000008333333
      + : 12 0 : 1/12 0 : 2 : 1200000000.0000000008333333;  + : 99999999*200 : 1 : -6 : same
      + : 1 : 99999999*200 : -6 : same;  + : 99999999*200 : 1/3 : -6 : same
      + : 1*198 : 1.5 : -6 : same;  + : 1.5 : 1*198 : -6 : same;  + : 1*198 : 1/1 0 : -6 : same
      + : 1/12345 : 1*198/8101 : -6 : same;  * : 2/3 : 3/4 : 1 : 6/12
      * : -2/3 : 3/4 : 1 : -6/12;  * : 1/9999 : 1/10001 : 1 : 1/99999999
      * : 1/10000 : 1/10000 : 1 : 0.0000000100000000
      * : 1/65536 : 1/65536 : 1 : 0.0000000002328306;  * : -7/1e8 : 1 : 1 : -0.0000000700000000
      * : 3/1 0 : 1/2 : 1 : 0.0000000150000000
      * : 1 0 0 0/21 0 1 : 7/9 : 1 : 3703703.7037037036860670
      * : 0.5 : 0.5 : 1 : 0.2500000000000000
      * : -0.5 : 0.0000000000000003 : 1 : -0.0000000000000001;  * : 0 : 5/7 : 1 : 0
      * : 0.00000001 : 0.00000001 : 1 : 0.0000000000000001;  * : 0.000000001 : 0.00000001 : 1 : 0
      * : 1.5 : 1/3 : 1 : 0.5000000000000000
      * : 7/3 : 1.0000000000000001 : 1 : 2.3333333333333331
      * : 1.5 : 2/3 0 : 1 : 0.0000000100000000;  * : 5/7 : /7 : 1 : 0;  * : 5/0 : 1/2 : 1 : 0
      * : 1 0 : 99999999/3 : 1 : 9999999900000000/3;  * : 99999999*100 : 99999999*100 : 1 : same
      * : 99999999*99/10000 : 99999999*99/10000 : 1 : same;  * : 9*100 d2 : 9*100 d2 : 1 : same
      / : 6/35 : 10/21 : 1 : 9/25;  / : 5 : 2 : 1 : 5/2;  / : 0 : 2/3 : 1 : 0
      / : 1/2 : 0 : -7 : 0;  / : 1.5 :  : -7 : 0;  / : 0 : 0 0 : -7 : 0
      / : 1 0 0 : 3 0 0 : 1 : 1/3;  / : 1/3 : 5 0 7 : 1 : 1/150000000000000021
      / : 1.5 : 0.5 : 1 : 3.0000000000000000;  / : 1 : 0.3 : 1 : 3.3333333333333333
      / : 0.1 : 1/3 : 1 : 0.3000000000000000
      / : 2/3 : 0.0000000000000007 : 1 : 952380952380952.3809523809523809
      / : 0.1 : 3000000000000000 : 1 : 0;  / : 1/1e8 : 0.5 : 1 : 0.0000000200000000
      / : 99999999*100 : 1/99999999*100 : 1 : same;  / : 1*199 : 0.0000000000000001 : 1 : same
      / : 1/99999999*100 : 1 0*99 1 : 1 : same)")) {
    check(row[0], row[1], row[2], row.number(3), row[4]);
    EXPECT_EQ(explained() == "", row.number(3) >= 0 && row[4] != "same") << row[1];
  }
}

// Sums with one-limb denominators, products and quotients of fractions in lowest terms.
TEST_F(ArithTest, AgreesWithGmp) {
  Operands operands(8);
  const auto places = [](const mpq_class& v) {
    const mpz_class cut = v.get_num() * mpz_class(kUnit) / v.get_den();
    return value({set(Mc[9], cut.get_str().insert(v < 0, kUnit, 1) + " d2"), set(Mm[9], "1")});
  };
  for (int round = 0; round < 500; ++round) {
    mpq_class v[2];
    for (mpq_class& f : v) {
      const mpz_class n = tivelo::big(operands.number(1 + operands.below(4)));
      const mpz_class m = 1 + operands.below(operands.below(2) == 0 ? 9999 : 99999999);
      f = mpq_class(operands.below(2) == 0 ? n : mpz_class(-n), m);
      f.canonicalize();
    }
    const mpz_class common = lcm(v[0].get_den(), v[1].get_den()),
                    product = v[0].get_den() * v[1].get_den();
    const bool exact = common <= 100000000;
    const std::string x = v[0].get_str(), y = v[1].get_str();
    // Terms are cut before they are added; a cut sum is compared through its cut terms.
    mpz_class cut = 0;
    for (const mpq_class& f : v) cut += mpz_class(f.get_num() * mpz_class(kUnit) / f.get_den());
    const mpq_class sum = exact ? mpq_class(v[0] + v[1]) : mpq_class(cut, mpz_class(kUnit));
    check("+", x, y, exact ? 0 : 2, exact ? sum.get_str() : places(sum));
    const std::string exact_product = mpz_class(v[0].get_num() * v[1].get_num()).get_str() +
                                      (product == 1 ? "" : "/" + product.get_str());
    check("*", x, y, 1, product < 100000000 ? exact_product : places(v[0] * v[1]));
    // Common factors above the search's bound may stay in a quotient.
    numf u = set(M[0], x), w = set(M[1], y);
    EXPECT_EQ(ndiv(&u, &u, &w), 1);
    mpq_class quotient(big(u.c), big(u.m));
    quotient.canonicalize();
    EXPECT_EQ(abs(quotient), abs(v[0] / v[1]));
    if (HasFailure()) return;
  }
}

TEST_F(ArithTest, ReadsLiterals) {
  for (const Row& row : table(R"(
      1.25 : 4 : 5/4;  0.5 : 3 : 1/2;  3 : 1 : 3;  12.5x : 4 : 25/2;  .125 : 4 : 1/8;  x : 0 : 0
      0.1234 : 6 : 0.1234000000000001;  0.0001 : 6 : 0.0001000000000001
      2469135780246913578.5 : 21 : 4938271560493827157/2)")) {
    numf f(junk(Mc[0]), junk(Mm[0]));
    EXPECT_EQ(ncton(row[0].c_str(), &f), row.number(1)) << row[0];
    EXPECT_EQ(value(f), row[2]);
    f.fl = 1;
    junk(f.m);
    EXPECT_EQ(ncton(row[0].c_str(), &f), row.number(1)) << row[0];
    EXPECT_EQ(state(f.m), state(junk(Mm[1])));
  }
}

}  // namespace
}  // namespace tivelo::tests
