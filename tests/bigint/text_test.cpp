#include "bigint/text.h"

#include <climits>

#include "support/pool_fixture.h"

namespace tivelo::tests {

TEST(MachineIntegers, AsText) {
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
