#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "bigint/pool.h"
#include "console/variable_file.h"
#include "fraction/cells.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {
namespace {

class CsvTest : public PoolTest {
 protected:
  ~CsvTest() override { std::filesystem::remove(name_); }

  // In tables '/' stands for a line feed, '_' for a carriage return.
  int load(std::string text) {
    std::ranges::replace(text, '/', '\n');
    std::ranges::replace(text, '_', '\r');
    std::ofstream(name_, std::ios::binary) << text;
    return csv_load(name_.c_str());
  }
  // "top middle low" of the cell named like "A1".
  static std::string words(const std::string& cell) {
    const Cell c = read_cell(cell[0] - 'A', std::stoi(cell.substr(1)));
    return std::to_string(c.top) + " " + std::to_string(c.middle) + " " + std::to_string(c.low);
  }

  const std::string name_ =
      std::filesystem::temp_directory_path() / ("tivelo-" + std::to_string(getpid()) + ".csv");
};

TEST_F(CsvTest, Saves) {
  write_cell(0, 1, {-3, -4, 5});
  write_cell(1, 1, {1, 2, -7});
  write_cell(1, 2, {0, 0, 12});
  write_cell(25, 9, {0, 0, -2147483648});
  set(Mc[2], "7*197");  // covers its cells
  for (const Row& row : table("A0 : ; A1 : 5,/; B2 : 5,-7,/0,12,/; C1 : 5,-7,0,/ : err")) {
    EXPECT_EQ(csv_save(name_.c_str(), row[0].c_str()), 0);
    std::ifstream file(name_);
    std::string text(std::istreambuf_iterator<char>(file), {});
    std::ranges::replace(text, '\n', '/');
    EXPECT_EQ(text, row[1]) << row[0];
    EXPECT_EQ(printed(), row[2] == "err" ? "err " : "");
  }
  csv_save(name_.c_str(), "Z9");
  EXPECT_EQ(std::filesystem::file_size(name_), 489u);
  EXPECT_EQ(csv_save("/no/such/folder", "A1"), 0);
  EXPECT_EQ(printed(), "err file_protected\n");
}

TEST_F(CsvTest, Loads) {
  // text : cells and their words : "err"; the cells were 9 9 9
  for (const Row& row : table(R"(
      5,-7,/0,12,/ : A1 0 9 5, B1 0 9 7, A2 0 9 0, B2 0 9 12, C1 0 9 0, C2 0 9 0, D1 9 9 9, A3 9 9 9
      5,-7,_/0,12_/ : A1 0 9 5, B1 0 9 7, C1 0 9 0, A2 0 9 0, B2 0 9 0, C2 9 9 9
      /7 : A1 0 9 0, A2 0 9 7
      2.50000,2.123456,1.25 : A1 -10000 9 25000, B1 -10000 9 21234, C1 -100 9 125
      7.,.5 : A1 -1 9 7, B1 -10 9 5;  ,,3 : A1 0 9 0, B1 0 9 0, C1 0 9 3, D1 9 9 9
      12x34 5,6 : A1 0 9 5, B1 0 9 6
      2147483647,2147483648,99999999999999999999 : A1 0 9 2147483647, B1 9 9 9, C1 9 9 9 : err
      ,,,,,,,,,,,,,,,,,,,,,,,,,26,27,28/1 : Z1 0 9 26, A1 0 9 0, A2 0 9 1, B1 0 9 0, B2 9 9 9)")) {
    for (int i = 0; i < 26 * 3; ++i) write_cell(i / 3, i % 3 + 1, {9, 9, 9});
    EXPECT_EQ(load(row[0]), static_cast<int>(row[0].size()));
    EXPECT_EQ(printed(), row[2] == "err" ? "err " : "") << row[0];
    std::string cells = row[1];
    std::ranges::replace(cells, ',', ';');
    for (const Row& cell : table(cells))
      EXPECT_EQ(cell[0].substr(0, 3) + words(cell[0].substr(0, 2)), cell[0]) << row[0];
  }
  // 65 rows have cells; 1800 bytes are read; a zero byte ends a row.
  EXPECT_EQ(load(std::string(64, '/') + "3/4/5/"), 70);
  EXPECT_EQ(words("A65") + raw(Mc[0]), "0 0 3");
  EXPECT_EQ(load(std::string(1798, ' ') + "12345"), 1800);
  EXPECT_EQ(words("A1"), "0 9 12");
  EXPECT_EQ(load(std::string("8\0009", 3)), 3);
  EXPECT_EQ(words("A1") + ", " + words("A2"), "0 9 8, 0 9 9");
  EXPECT_EQ(load(""), 0);
  EXPECT_EQ(words("A1"), "0 9 8");
  set(Mc[1], "7*197");
  load("1,2,3");
  EXPECT_EQ(words("A1") + ", " + words("C1"), "0 9 1, 0 9 3");
  EXPECT_EQ(raw(Mc[1]), raw(set(Mc[3], "7*197")));
  EXPECT_EQ(csv_load("/no/such/file"), 0);
  EXPECT_EQ(printed(), "err file_not_found\n");
}

}  // namespace
}  // namespace tivelo::tests
