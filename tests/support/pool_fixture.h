// What the tests above limbs/ share: a number pool of 200 limbs, the two channels in memory, tables
// and numbers as text. A num is written limb by limb, most significant first: "-1 0" is -10^8, ""
// the canonical zero, "0" the one-limb zero; longer tokens are cut into limbs from the right, "7*3"
// is three limbs 7, "1e8" one limb of 10^8 (denominators have it), "1.5" a decimal with its places
// filled to 16, "d2" the mark of decimal mode and "<<2" a shift. A fraction is "num" or "num/num".
#pragma once

#include <gmpxx.h>
#include <gtest/gtest.h>

#include "bigint/pool.h"
#include "support/calculator.h"

namespace tivelo::tests {

num* set(num* a, const std::string& text);  // leaves junk above the number, and in dden
numf set(numf f, const std::string& text);
inline numf set(char letter, const std::string& text) { return set(changing(letter - 'A'), text); }
num* junk(num* a);  // in every limb and field: a result that nothing may rely on

std::string raw(const num* a);     // as set() reads it
std::string fields(const num* a);  // "ext rem rdiv dec res imag used dden"
std::string state(const num* a);   // both
mpz_class big(const num* a);       // with its sign, without shift and point
std::string value(const numf& f);  // without leading zeros, a decimal with 16 places, 0 or -0

// One row of a table: fields between ':', rows between ';' or line ends. A missing field is empty.
struct Row {
  std::vector<std::string> all = {};
  std::string operator[](std::size_t i) const { return i < all.size() ? all[i] : ""; }
  int number(std::size_t i) const { return std::atoi((*this)[i].c_str()); }
};
std::vector<Row> table(const std::string& text);

// One call r = x op y, with r's fields before it.
struct Call {
  num *r, *x, *y;
  std::string fields_before;
};
inline constexpr int kNotAllowed = 99;  // what op answers when it may not be called so

// Calls op with a result of its own, full of junk, and with each operand as the result. Operands
// that are not the result, and the result of a refusal, must stay; a refusal must be explained.
void each_alias(const std::string& x, const std::string& y, const std::function<int(Call&)>& op,
                const std::function<void(Call&, int status)>& check);

class PoolTest : public ::testing::Test, public Pool {
 public:
  // Rows of text : value ("=..." is the value of another text) : "err" or what else is printed :
  // what calc returns, by default all of the text and its zero.
  static void evaluate(const std::string& rows);
};

}  // namespace tivelo::tests
