#include "fraction/arith.h"

#include "limbs/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using ArithTest = PoolTest;

// The result over the first operand, as the evaluator calls it, and in a place of its own. "same":
// refused, r is what it was.
static void check(const std::string& op, const std::string& x_text, const std::string& y_text,
                  int status, const std::string& expected) {
  for (const bool own : {false, true}) {
    SCOPED_TRACE(x_text + " " + op + " " + y_text + (own ? " own" : ""));
    numf x = set('A', x_text), y = set('B', y_text);
    numf r = own ? set('C', op == "*" ? "22" : "22/7") : x;
    const std::string before = raw(r.c) + "/" + raw(r.m);
    const auto operation = op == "+" ? nsum : op == "*" ? nprod : ndiv;
    EXPECT_EQ(operation(&r, &x, &y), status);
    const bool same = expected == "same";
    EXPECT_EQ(same ? raw(r.c) + "/" + raw(r.m) : value(r), same ? before : expected);
  }
}

TEST_F(ArithTest, Rows) {
  // operation : x : y : status : result
  for (const Row& row : table(R"(
      + : 1/2 : 1/3 : 0 : 5/6;  + : 1/6 : 1/3 : 0 : 1/2;  + : -1/2 : 1/3 : 0 : -1/6
      + : 1/2 : -1/2 : 0 : 0/2;  + : 1/10000 : 1/10000 : 0 : 1/5000
      + : 1/12345 : 1/8101 : 2 : 0.0002044460056708;  + : 1 : 99999999*200 : -6 : same
      + : -1/12345 : 1/8101 : 2 : 0.0000424370951808;  + : -1/3 : 1/8 1 : 2 : -0.3333333320833334
      + : 1/256 : 1/390625 : 0 : 390881/100000000;  + : 390881/1e8 : 1/1e8 : 0 : 195441/50000000
      + : 1.5 : 1/3 : 0 : 1.8333333333333333;  + : 1/3 : -1.5 : 0 : -1.1666666666666667
      + : 1.5 : 0.25 : 0 : 1.7500000000000000;  + : 1.5 : 1/12 0 : 2 : 1.5000000008333333
      + : 12 0 : 1/12 0 : 2 : 1200000000.0000000008333333;  + : 99999999*200 : 1 : -6 : same
      + : 99999999*200 : 1/3 : -6 : same;  + : 1*198 : 1.5 : -6 : same
      + : 1.5 : 1*198 : -6 : same;  + : 1*198 : 1/1 0 : -6 : same
      + : 1/12345 : 1*198/8101 : -6 : same;  * : 2/3 : 3/4 : 1 : 6/12
      * : -2/3 : 3/4 : 1 : -6/12;  * : 1/9999 : 1/10001 : 1 : 1/99999999;  * : 0 : 5/7 : 1 : 0
      * : 1/10000 : 1/10000 : 1 : 0.0000000100000000
      * : 1/65536 : 1/65536 : 1 : 0.0000000002328306;  * : -7/1e8 : 1 : 1 : -0.0000000700000000
      * : 3/1 0 : 1/2 : 1 : 0.0000000150000000
      * : 1 0 0 0/21 0 1 : 7/9 : 1 : 3703703.7037037036860670
      * : 0.5 : 0.5 : 1 : 0.2500000000000000
      * : -0.5 : 0.0000000000000003 : 1 : -0.0000000000000001;  * : 5/7 : /7 : 1 : 0
      * : 0.00000001 : 0.00000001 : 1 : 0.0000000000000001;  * : 5/0 : 1/2 : 1 : 0
      * : 0.000000001 : 0.00000001 : 1 : 0;  * : 1.5 : 1/3 : 1 : 0.5000000000000000
      * : 7/3 : 1.0000000000000001 : 1 : 2.3333333333333331
      * : 1.5 : 2/3 0 : 1 : 0.0000000100000000;  * : 1 0 : 99999999/3 : 1 : 9999999900000000/3
      * : 99999999*100 : 99999999*100 : 1 : same
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

// Operands in lowest terms with denominators of one limb.
TEST_F(ArithTest, AgreesWithGmp) {
  const mpz_class unit("10000000000000000");
  const auto places = [](const mpz_class& cut) {
    return (cut < 0 ? "-" : "") + value(set('Z', mpz_class(abs(cut)).get_str() + " d2"));
  };
  Operands operands(8);
  for (int round = 0; round < 500 && !HasFailure(); ++round) {
    mpq_class v[2];
    mpz_class cut_sum = 0;  // decimal terms are cut before they are added
    for (mpq_class& f : v) {
      const mpz_class n = tivelo::big(operands.number(1 + operands.below(4)));
      f = mpq_class(operands.below(2) ? n : mpz_class(-n),
                    1 + operands.below(round % 2 ? 9999 : kBase - 1));
      f.canonicalize();
      cut_sum += f.get_num() * unit / f.get_den();
    }
    const std::string x = v[0].get_str(), y = v[1].get_str();
    const bool exact = lcm(v[0].get_den(), v[1].get_den()) <= 100000000;
    check("+", x, y, exact ? 0 : 2, exact ? mpq_class(v[0] + v[1]).get_str() : places(cut_sum));
    const mpz_class n = v[0].get_num() * v[1].get_num(), m = v[0].get_den() * v[1].get_den();
    check("*", x, y, 1,
          m >= 100000000 ? places(n * unit / m) : n.get_str() + (m == 1 ? "" : "/" + m.get_str()));
    // Common factors above the search's bound may stay in a quotient.
    numf u = set('A', x), w = set('B', y);
    EXPECT_EQ(ndiv(&u, &u, &w), 1);
    mpq_class quotient(big(u.c), big(u.m));
    quotient.canonicalize();
    EXPECT_EQ(abs(quotient), abs(v[0] / v[1]));
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
    const std::string untouched = state(junk(f.m));
    EXPECT_EQ(ncton(row[0].c_str(), &f), row.number(1)) << row[0];
    EXPECT_EQ(state(f.m), untouched);
  }
}

}  // namespace tivelo::tests
