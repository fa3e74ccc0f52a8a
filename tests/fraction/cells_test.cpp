#include "fraction/cells.h"

#include "bigint/pool.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {
namespace {

using CellsTest = PoolTest;

TEST_F(CellsTest, PacksAndUnpacks) {
  // value packed, "-" where none packs so : words : value read back, where it differs
  for (const Row& row : table(R"(
      5 : 0 : 0 : 5;  -5 : 0 : 0 : -5;  0 : 0 : 0 : 0;  : 0 : 0 : 0 : 0;  0.0000 : 0 : 0 : 0 : 0
      1/3 : -3 : 0 : 1;  -1 0 : 0 : 1 : -1 : -100000001
      -1 2 3 : 1 : 2 : -3 : -10000000200000003;  1 2 3/7 : -7 : 2 : 3 : 200000003/7
      3/1e8 : -100000000 : 0 : 3 : 3/100000000;  -3.1415926535897932 : 3 : -14159265 : -35897932
      0.5 : 0 : -50000000 : 0 : 0.5000000000000000
      2.0000000000000003 : 2 : 0 : 3 : 20000000000000003;  - : 0 : 0 : -7 : -7
      - : -4 : 0 : 3 : 3/4;  - : 0 : 0 : -1 : -1;  - : 0 : -5 : 1 : 0.0000000500000000
      - : 3 : -5 : -1 : -3.0000000500000000;  - : 0 : 0 : 999999999 : 999999999
      - : 0 : 99999999 : 2147483647 : 10000002047483647
      - : -10000 : 0 : 2147483647 : 2147483647/10000
      - : -2147483648 : -2147483648 : -2147483648 : -21.4748366947483648/2147483648)")) {
    SCOPED_TRACE(row[0] + " " + row[4]);
    const Cell cell{row.number(1), row.number(2), row.number(3)};
    if (row[0] != "-") {
      const Cell packed = pack_cell(set(M[0], row[0]));
      EXPECT_EQ(std::tie(packed.top, packed.middle, packed.low),
                std::tie(cell.top, cell.middle, cell.low));
    }
    numf f(junk(Mc[0]), junk(Mm[0]));
    unpack_cell(cell, &f);
    EXPECT_EQ(value(f), row[row[4].empty() ? 0 : 4]);
  }
}

TEST_F(CellsTest, LieBesideTheValue) {
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
  EXPECT_EQ(read_cell(3, 65).top, -1);
  EXPECT_EQ(read_cell(3, 65).middle, -2);
  EXPECT_EQ(read_cell(3, 64).low, -6);
  EXPECT_EQ(raw(Mc[3]), "7 7");
  EXPECT_EQ(Mc[3]->limbs[197], 3u);
}

}  // namespace
}  // namespace tivelo::tests
