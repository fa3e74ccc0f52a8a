#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "console/variable_file.h"
#include "fraction/cells.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using CsvTest = PoolTest;

// "top middle low" of the cell named like "A1".
static std::string words(const std::string& cell) {
  const Cell c = read_cell(cell[0] - 'A', std::stoi(cell.substr(1)));
  return std::to_string(c.top) + " " + std::to_string(c.middle) + " " + std::to_string(c.low);
}

TEST_F(CsvTest, SavesAndLoads) {
  const std::string name =
      std::filesystem::temp_directory_path() / ("tivelo-" + std::to_string(getpid()) + ".csv");
  write_cell(0, 1, {-3, -4, 5});
  write_cell(1, 1, {1, 2, -7});
  write_cell(1, 2, {0, 0, 12});
  write_cell(25, 9, {0, 0, -2147483648});
  for (const Row& row : table("A0 : ; A1 : 5,/; B2 : 5,-7,/0,12,/; C1 : 5,-7,0,/")) {
    EXPECT_EQ(csv_save(name.c_str(), row[0].c_str()), 0);
    std::ifstream file(name);
    std::string text(std::istreambuf_iterator<char>(file), {});
    std::ranges::replace(text, '\n', '/');
    EXPECT_EQ(text, row[1]) << row[0];
  }
  csv_save(name.c_str(), "Z9");
  EXPECT_EQ(std::filesystem::file_size(name), 489u);
  // text : cells and their words, which were 9 9 9 : "err"
  const std::string rows = R"(
      5,-7,/0,12,/ : A1 0 9 5, B1 0 9 7, A2 0 9 0, B2 0 9 12, C1 0 9 0, C2 0 9 0, D1 9 9 9, A3 9 9 9
      5,-7,_/0,12_/ : A1 0 9 5, B1 0 9 7, C1 0 9 0, A2 0 9 0, B2 0 9 0, C2 9 9 9
      /7 : A1 0 9 0, A2 0 9 7;  7.,.5 : A1 -1 9 7, B1 -10 9 5;  12x34 5,6 : A1 0 9 5, B1 0 9 6
      2.50000,2.123456,1.25 : A1 -10000 9 25000, B1 -10000 9 21234, C1 -100 9 125;  : A1 9 9 9
      ,,3 : A1 0 9 0, B1 0 9 0, C1 0 9 3, D1 9 9 9;  8~9 : A1 0 9 8, A2 0 9 9
      2147483647,2147483648,99999999999999999999 : A1 0 9 2147483647, B1 9 9 9, C1 9 9 9 : err
      ,,,,,,,,,,,,,,,,,,,,,,,,,26,27,28/1 : Z1 0 9 26, A1 0 9 0, A2 0 9 1, B1 0 9 0, B2 9 9 9)";
  std::vector<Row> all = table(rows);
  all.push_back({{std::string(61, '/') + "3/4/5/6/7", "A62 0 0 3, A65 0 0 6, B1 9 9 9"}});
  all.push_back({{std::string(1798, ' ') + "12", "A1 0 9 12"}});
  for (const Row& row : all) {
    for (int i = 0; i < 26 * 3; ++i) write_cell(i / 3, i % 3 + 1, {9, 9, 9});
    std::string text = row[0], cells = row[1];
    for (const auto& [from, to] : {std::pair('/', '\n'), {'_', '\r'}, {'~', '\0'}})
      std::ranges::replace(text, from, to);
    // What stands behind 1800 bytes is not read.
    std::ofstream(name, std::ios::binary) << text << (text.size() == 1800 ? "345" : "");
    EXPECT_EQ(csv_load(name.c_str()), static_cast<int>(text.size()));
    EXPECT_EQ(printed(), row[2] == "err" ? "err " : "") << row[0];
    std::ranges::replace(cells, ',', ';');
    for (const Row& cell : table(cells)) {
      const std::string which = cell[0].substr(0, cell[0].find(' '));
      EXPECT_EQ(which + " " + words(which), cell[0]) << row[0];
    }
  }
  EXPECT_EQ(raw(Mc[0]), "");
  std::filesystem::remove(name);
  EXPECT_EQ(csv_save("/no/such/folder", "A1") + csv_load("/no/such/file"), 0);
  EXPECT_EQ(printed(), "file_protected\nfile_not_found\n");
}

}  // namespace tivelo::tests
