#include "bigint/text.h"

#include <climits>

#include "support/pool_fixture.h"

namespace tivelo::tests {

using TextTest = PoolTest;

// "9*5" in a text becomes five nines, '_' a blank.
static std::string spelled_nines(std::string text) {
  std::ranges::replace(text, '_', ' ');
  for (std::size_t at; (at = text.find("9*")) != std::string::npos;) {
    std::size_t size = 0;
    const std::string nines(std::stoul(text.substr(at + 2), &size), '9');
    text.replace(at, 2 + size, nines);
  }
  return text;
}

TEST_F(TextTest, Reads) {
  // text : consumed : limbs : dden (1 where none)
  for (const Row& row : table(R"(
      _ : 0;  . : 0;  x5 : 0;  -5 : 0;  0 : 1 : 0;  ___42 : 2 : 42;  1-2 : 1 : 1;  12. : 2 : 12
      12..5 : 2 : 12;  .5 : 2 : 5 : 10;  12.5 : 4 : 125 : 10;  0.25x : 4 : 25 : 100;  5_5 : 1 : 5
      0.001 : 5 : 1 : 1000;  1.2.3 : 3 : 12 : 10;  99999.999 : 9 : 99999999 : 1000
      999999.999 : 10 : 9 99999999 : 1000;  123456789 : 9 : 1 23456789;  12345678 : 8 : 12345678
      00000000123 : 11 : 0 123;  000000000000 : 12 : 0 0;  .0000 : 5 : 0 1 d2
      0.0001 : 6 : 0 10000 1 d2;  1.2345 : 6 : 1 23450000 1 d2
      1.9*9000 : 9002 : 1 99999999*2 d2;  123456789.1234 : 14 : 1 23456789 12340000 1 d2
      1.00000000000000000 : 19 : 1 0 0 d2;  3.1415926535897932 : 18 : 3 14159265 35897931 d2
      9*1600 : 1600 : 99999999*200;  9*1601 : 1601
      3.14159265358979323846 : 22 : 3 14159265 35897932 d2
      9*1597.999 : 1601 : 99999999*200 : 1000;  9*1598.999 : 1602
      9*1584.9*17 : 1602 : 99999999*200 d2;  9*1585.9999 : 1590)")) {
    num* a = junk(Mc[0]);
    EXPECT_EQ(cton(spelled_nines(row[0]).c_str(), a), row.number(1)) << row[0];
    EXPECT_EQ(raw(a), raw(set(Mc[1], row[2]))) << row[0];
    a->dden = row[2].empty() ? 1 : a->dden;
    const std::string dden = row[3].empty() ? "1 " : row[3] + " ";
    EXPECT_EQ(fields(a), "0 0 1 " + std::to_string(Mc[1]->dec) + " 0 0 1 " + dden) << row[0];
  }
}

TEST_F(TextTest, Writes) {
  for (const Row& row : table(R"(
      : . : 0;  0 : 0 : 8;  -7 : 7 : 8;  0 12 : 000000012 : 16;  1 23456789 : 123456789 : 16
      5 0 10000000 1 : 5000000001000000000000001 : 32;  1 23450000 1 d2 : 1.23450000 : 16
      0 5 20 d2 : 0.0000000500000020 : 24;  0 5 19 d2 : 0.00000005 : 16;  7 d2 : 7 : 8
      50000000 20 d2 : .5000000000000020 : 16;  50000000 19 d2 : .50000000 : 8
      1 0 0 0 d2 : 100000000.00000000 : 24;  99999999*200 : 9*1600 : 1600)")) {
    std::vector<char> out(8 * static_cast<std::size_t>(set(Mc[0], row[0])->len) + 3, '#');
    const std::string before = state(Mc[0]);
    EXPECT_EQ(ntoc(Mc[0], out.data()), row.number(2)) << row[0];
    EXPECT_EQ(out.data(), spelled_nines(row[1]));
    EXPECT_EQ(state(Mc[0]), before);
  }
  char out[21];
  for (const long long v : {0LL, -5LL, 100000000LL, LLONG_MAX, LLONG_MIN}) {
    EXPECT_EQ(lltoa(v, out, 16), static_cast<int>(std::to_string(v).size()));
    EXPECT_EQ(out, std::to_string(v));
  }
  for (const Row& row : table("x : 0; -1 : 0; 0123x : 4 : 123; 18446744073709551617 : 20 : 1")) {
    unsigned long long v = 9;
    EXPECT_EQ(tivelo::atoll(row[0].c_str(), &v), row.number(1)) << row[0];
    EXPECT_EQ(v, static_cast<unsigned>(row.number(2))) << row[0];
  }
}

}  // namespace tivelo::tests
