#include "console/lines.h"

#include <cstring>

#include "support/pool_fixture.h"

namespace tivelo::tests {

using LinesTest = PoolTest;
constexpr std::size_t kRoom = 1600;  // of a line at 200 limbs

TEST_F(LinesTest, Cleans) {
  // '/' stands for a line feed, '@' for ':' and '&' for ';'
  std::vector<Row> rows = table(R"(
      a = 1 + 2 : A=1+2 : 6;  A=1&comment : A=1 : 4;  :  : 1;  & :  : 1;  a/b : A : 2
      ab$ : & : 3;  L@My File.txt : L@My File.txt : 14;  l @a&b(?$ : L@a&b(?$ : 9
      a@b@c D : A@b@c D : 8;  (1+2 : & : 2;  1+2) : & : 2;  (@ : & : 2;  )( : )( : 3;  | : | : 2
      A=1$ : & : 4;  [ : & : 1;  aZ09+-*^!.,%'|={}#<> : AZ09+-*^!.,%'|={}#<> : 21;  a? : & : 2
      12" : & : 3;  ab` : & : 3)");
  const std::string full(kRoom - 1, '1');
  for (const char* bad : {"\t", "\r", "\x80", "\x7f", "\x01"}) rows.push_back({{bad, "&", "1"}});
  rows.push_back({{full, full, "1600"}});
  rows.push_back({{full + "$", "&", "1600"}});
  rows.push_back({{full + "1", "&", "0"}});
  for (const Row& row : rows) {
    std::string texts[] = {row[0], row[1]};
    for (std::string& text : texts)
      for (const auto& [from, to] : {std::pair('/', '\n'), {'@', ':'}, {'&', ';'}})
        std::ranges::replace(text, from, to);
    EXPECT_EQ(eclean(texts[0].data()), row.number(2)) << row[0];
    EXPECT_STREQ(texts[0].c_str(), texts[1].c_str());
  }
}

TEST_F(LinesTest, TakesLines) {
  std::string text = "one\n\nlonger than the room\nlast";
  In in;
  in.context = &text;
  in.fill = [](void* context, char* data, std::size_t size) {  // in small pieces
    std::string& left = *static_cast<std::string*>(context);
    const std::size_t n = left.copy(data, std::min(size, std::size_t{7}));
    left.erase(0, n);
    return static_cast<long>(n);
  };
  typed = &in;
  char line[kRoom];
  for (const char* expected : {"one", "", "longer", "last"}) {
    EXPECT_EQ(getsn(line, 7), line);
    EXPECT_STREQ(line, expected);
  }
  EXPECT_EQ(cgets(line, nullptr), -1);
  EXPECT_STREQ(line, "last");
  EXPECT_EQ(printed(), "? ");
  const std::string full(kRoom - 1, 'x');
  for (const std::string end : {"\tx", "\r\n", "\x7f", "", "\n"}) {
    EXPECT_EQ(cgets(line, (full + end).c_str()), static_cast<int>(kRoom));
    EXPECT_EQ(line, full);
  }
  EXPECT_EQ(cgets(line, (full + "xx\n").c_str()), static_cast<int>(kRoom) + 2);
  EXPECT_EQ(std::string(line, kRoom), full + "x");
}

TEST_F(LinesTest, RepeatCounts) {
  set('N', "3");
  set('O', "-1 0 0");
  // Six characters: digits append, numerals add, others do nothing.
  for (const Row& row : table(R"(
      RXV : 15;  RVX : 15;  RX2 : 102;  R1000000 : 100000;  RMM : 2000;  RMMMMMMM : 6000;  R : 1
      RLCD : 650;  RIII : 1;  R1Z2 : 12;  R-5 : 5;  R0 : 1;  R.N : 3;  R.O : 0;  R.A : 0)")) {
    tivelo::Run run;
    std::string line = row[0];
    run.line = line.data();
    start_block(run);
    EXPECT_EQ(run.repeat_count, row.number(1)) << row[0];
    EXPECT_EQ(run.block_index, 0);
  }
}

}  // namespace tivelo::tests
