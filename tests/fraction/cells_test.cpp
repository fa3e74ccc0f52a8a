#include "fraction/cells.h"

#include "support/pool_fixture.h"

namespace tivelo::tests {

using CellsTest = PoolTest;

TEST_F(CellsTest, PackUnpackAndLieBesideTheValue) {
  // value packed, "-" where none packs so : words : value read back, where it differs
  for (const Row& row : table(R"(
      5 : 0 : 0 : 5;  -5 : 0 : 0 : -5;  0 : 0 : 0 : 0;  : 0 : 0 : 0 : 0;  0.0000 : 0 : 0 : 0 : 0
      1/3 : -3 : 0 : 1;  -1 0 : 0 : 1 : -1 : -100000001
      -1 2 3 : 1 : 2 : -3 : -10000000200000003;  1 2 3/7 : -7 : 2 : 3 : 200000003/7
      3/1e8 : -100000000 : 0 : 3 : 3/100000000;  -3.1415926535897932 : 3 : -14159265 : -35897932
      - : 0 : 0 : -7 : -7;  - : -4 : 0 : 3 : 3/4;  0.5 : 0 : -50000000 : 0 : 0.5000000000000000
      - : 0 : 0 : -1 : -1;  2.0000000000000003 : 2 : 0 : 3 : 20000000000000003
      - : 0 : -5 : 1 : 0.0000000500000000;  - : 3 : -5 : -1 : -3.0000000500000000
      - : 0 : 0 : 999999999 : 999999999;  - : 0 : 99999999 : 2147483647 : 10000002047483647
      - : -10000 : 0 : 47 : 47/10000
      - : -2147483648 : -2147483648 : -2147483648 : -21.4748366947483648/2147483648)")) {
    const Cell cell{row.number(1), row.number(2), row.number(3)};
    const Cell packed = row[0] == "-" ? cell : pack_cell(set(M[0], row[0]));
    EXPECT_EQ(std::tie(packed.top, packed.middle, packed.low),
              std::tie(cell.top, cell.middle, cell.low))
        << row[0];
    numf f(junk(Mc[0]), junk(Mm[0]));
    unpack_cell(cell, &f);
    EXPECT_EQ(value(f), row[row[4].empty() ? 0 : 4]);
  }
  // limbs of the value : cell : is it free?
  for (const Row& row : table(R"(
      1 : 0 : 1;  1 : 65 : 1;  2 : 65 : 1;  3 : 65 : 0;  1 : 66 : 0;  1 : -1 : 0;  197 : 0 : 1
      198 : 0 : 0;  197 : 1 : 0;  0 : 2147483647 : 0)")) {
    set(Mc[25], "7*" + row[0]);
    EXPECT_EQ(cell_is_free(25, row.number(1)), row.number(2) == 1) << row[0] << " " << row[1];
  }
  set(Mc[3], "7*2");
  write_cell(3, 65, {-1, -2, 3});
  write_cell(3, 64, {4, 5, -6});
  const Cell cells[] = {read_cell(3, 65), read_cell(3, 64)};
  EXPECT_EQ(std::tie(cells[0].top, cells[0].low, cells[1].low), std::tuple(-1, 3, -6));
  EXPECT_EQ(raw(Mc[3]) + std::to_string(Mc[3]->limbs[197]), "7 73");
}

}  // namespace tivelo::tests
