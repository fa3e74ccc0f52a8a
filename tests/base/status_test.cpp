#include "base/status.h"

#include "support/pool_fixture.h"

namespace tivelo::tests {

using StatusTest = PoolTest;

TEST_F(StatusTest, TableReporterExplanations) {
  int last = 0;
  for (const StatusRow& row : status_table()) {
    EXPECT_TRUE(row.code == last || row.code == last - 1) << row.code;
    EXPECT_TRUE(*row.meaning != '\0' && *row.returned_by != '\0') << row.code;
    last = row.code;
  }
  EXPECT_EQ(last, -7);
  for (int code = -8; code < 2; ++code) {
    err(code);
    EXPECT_EQ(printed(), code < 0 ? "err " : "") << code;
  }
  const char* line = "A=1/0";
  set_line_in_hand(line);
  explain_at(line + 4, "%s of %d", "refusal", 7);
  explain_at("elsewhere", "refusal");
  set_line_in_hand(nullptr);
  put(*console, "before");
  explain_at(line + 4, "%s", std::string(300, 'x').c_str());
  EXPECT_EQ(console->used, 0u);  // what was printed first stands first
  const std::string expected = "tivelo: column 5: refusal of 7\ntivelo: refusal\ntivelo: ";
  EXPECT_EQ(explained(), expected + std::string(255, 'x') + "\n");
}

}  // namespace tivelo::tests
