#include "numtheory/factor.h"

#include <sstream>

#include "limbs/oracle.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using FactorTest = PoolTest;

static std::string factors(const std::string& number, int status = 0) {
  std::vector<char> out(factor_text_bytes(200), '#');
  const std::string before = state(set(Mc[0], number));
  EXPECT_EQ(fprime(Mc[0], out.data(), Zc), status);
  EXPECT_EQ(state(Mc[0]), before);
  return out.data();
}

TEST_F(FactorTest, Rows) {
  for (const Row& row : table(R"(
      : 0;  0 : 0;  1 : 1;  -1 : 1;  97 : 97;  100 : 2^2*5^2;  360 : 2^3*3^2*5;  -12 : 2^2*3
      202 : 2*101;  0 0 12 : 2^2*3;  100000000 : 2^8*5^8;  100000007 : 100000007;  7 d2 : 7
      1000036000099 : 1000036000099?;  199999978 : 2*99999989;  4294770619 : 4294770619
      1801800126126 : 2*3^2*7*11*13*100000007;  4294770691 : 4294770691?
      99999999*2 : 3^2*11*17*73*101*137*5882353;  1 0*195 :  : -7)"))
    EXPECT_EQ(factors(row[0], row.number(2)), row[1]) << row[0];
  EXPECT_NE(factors("1 0*194"), "");
  for (const Row& row : table(R"(
      0 : 0;  1 : 1;  2 : 2;  4 : 2^2;  9 : 3^2;  121 : 11^2;  10000 : 2^4*5^4;  10001 : 73*137
      99999989 : 99999989;  1000000000000000000 : 2^18*5^18;  9223372036854775808 : 2^63
      18446744073709551615 : 3*5*17*257*641*65537*6700417
      614889782588491410 : 2*3*5*7*11*13*17*19*23*29*31*37*41*43*47)")) {
    char out[72];
    (void)iprime(std::stoull(row[0]), out);
    EXPECT_EQ(out, row[1]);
  }
}

// Primes in order, whose product is the number; only a last factor may be doubtful, and is where
// it is too large to be certain.
TEST_F(FactorTest, AnyNumber) {
  Operands operands(11);
  mpz_class prime, power;
  for (unsigned round = 2; round < 1500 && !HasFailure(); ++round) {
    mpz_class n = round;
    for (unsigned i = round < 1440 ? 0 : operands.below(30); i > 0; --i) {
      prime = operands.below(i % 2 == 0 ? 100 : 65530);
      mpz_nextprime(prime.get_mpz_t(), prime.get_mpz_t());
      n *= prime;
    }
    std::string text = factors(n.get_str());
    SCOPED_TRACE(n.get_str() + " = " + text);
    const bool doubtful = text.ends_with('?');
    if (doubtful) text.pop_back();
    mpz_class product = 1, last = 1;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, '*'); last = prime, product *= power) {
      const std::size_t hat = std::min(part.find('^'), part.size());
      prime = mpz_class(part.substr(0, hat));
      const unsigned long exponent = hat < part.size() ? std::stoul(part.substr(hat + 1)) : 1;
      mpz_pow_ui(power.get_mpz_t(), prime.get_mpz_t(), exponent);
      EXPECT_TRUE(part.substr(hat) != "^1" && prime > last);
      EXPECT_TRUE((doubtful && parts.eof()) || mpz_probab_prime_p(prime.get_mpz_t(), 20) != 0);
    }
    EXPECT_EQ(product, n);
    EXPECT_EQ(doubtful, last / 65533 >= 65536);
  }
}

}  // namespace tivelo::tests
