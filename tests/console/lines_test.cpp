#include "console/lines.h"

#include <cstring>

#include "bigint/pool.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {
namespace {

constexpr std::size_t kRoom = 1600;  // of a line at 200 limbs

// In tables '/' stands for a line feed, '@' for ':' and '&' for ';'.
std::string spelled(std::string text) {
  for (const auto& [from, to] : {std::pair('/', '\n'), {'@', ':'}, {'&', ';'}})
    std::ranges::replace(text, from, to);
  return text;
}

class LinesTest : public PoolTest {
 protected:
  LinesTest() {
    run_.line = run_.line_area = areas_[0];
    run_.block_area = areas_[1];
    in_.context = &typed_text_;
    in_.fill = [](void* context, char* data, std::size_t size) {
      std::string& text = *static_cast<std::string*>(context);
      const std::size_t n = text.copy(data, std::min(size, std::size_t{7}));  // in small pieces
      text.erase(0, n);
      return static_cast<long>(n);
    };
    typed = &in_;
  }

  // The lines that a run looks at until its script, or what is typed, is used up; captures and
  // repeats are done.
  std::string lines(std::string script, bool nested = true) {
    script_ = spelled(std::move(script));
    run_.nested = nested;
    run_.script = run_.script_position = script_.data();
    run_.script_length = static_cast<int>(script_.size());
    std::string seen;
    for (Flow flow = Flow::fall_on; flow == Flow::next || flow == Flow::fall_on;) {
      flow = next_line(run_);
      if (flow != Flow::next) continue;
      seen += std::string(run_.line) + "/";
      if (run_.line[0] == '{' && run_.block_index == -1) (void)capture_block(run_);
      if (run_.line[0] == 'R') start_block(run_);
    }
    return seen;
  }

  In in_;
  tivelo::Run run_;
  std::string typed_text_, script_;
  char areas_[2][kRoom];
};

TEST_F(LinesTest, Cleans) {
  std::vector<Row> rows = table(R"(
      a = 1 + 2 : A=1+2 : 6;  A=1&comment : A=1 : 4;  :  : 1;  & :  : 1;  a/b : A : 2
      ab$ : & : 3;  L@My File.txt : L@My File.txt : 14;  l @a&b(?$ : L@a&b(?$ : 9
      a@b@c D : A@b@c D : 8;  (1+2 : & : 2;  1+2) : & : 2;  (@ : & : 2;  )( : )( : 3;  | : | : 2
      A=1$ : & : 4;  [ : & : 1;  aZ09+-*^!.,%'|={}#<> : AZ09+-*^!.,%'|={}#<> : 21;  a? : & : 2
      12" : & : 3;  ab` : & : 3)");
  const std::string full(kRoom - 1, '1');
  for (const char* bad : {"\t", "\r", "\x80", "\x7f", "\x01"}) rows.push_back({{bad, "&", "1"}});
  rows.insert(rows.end(), {{{full, full, "1600"}}, {{full + "$", "&", "1600"}}});
  for (const Row& row : rows) {
    std::string line = spelled(row[0]);
    EXPECT_EQ(eclean(line.data()), row.number(2)) << row[0];
    EXPECT_STREQ(line.c_str(), spelled(row[1]).c_str());
  }
  EXPECT_EQ(eclean((full + "1").data()), 0);
}

TEST_F(LinesTest, TakesLines) {
  char line[kRoom] = "before";
  EXPECT_EQ(getsn(line, kRoom), nullptr);
  EXPECT_STREQ(line, "before");
  in_.ended = false;
  typed_text_ = "one\n\nlonger than the room\nlast";
  for (const char* expected : {"one", "", "longer", "last"}) {
    EXPECT_EQ(getsn(line, 7), line);
    EXPECT_STREQ(line, expected);
  }
  EXPECT_EQ(cgets(line, nullptr), -1);
  EXPECT_EQ(printed(), "? ");
  const std::string full(kRoom - 1, 'x');
  for (const std::string text : {"ab c\tx", "ab c\r\n", "ab c\x7f", "ab c", full.c_str()}) {
    const std::string taken = text[0] == 'x' ? full : "ab c";
    EXPECT_EQ(cgets(line, text.c_str()), static_cast<int>(taken.size()) + 1);
    EXPECT_EQ(line, taken);
  }
  EXPECT_EQ(cgets(line, (full + "x\n").c_str()), static_cast<int>(kRoom) + 1);
  EXPECT_STREQ(line, ";");
}

TEST_F(LinesTest, BlocksAndRepeats) {
  set(Mc[13], "3");
  set(Mc[14], "-1 0 0");
  for (const Row& row : table(R"(
      a=1/b = 2/C : A=1/B=2/C/;  a/bc : A/BC/;  x :;  a// : A/;  {/a,b/}/R/ : {/R/A/B/
      {x/a,,b/c,}x/R2/1/ : {X/R2/A//B/C/A//B/C/1/;  {/a/b}/}/RV/ : {/RV/A/B}/A/B}/A/B}/A/B}/A/B}/
      {/a/}/R.N/ : {/R.N/A/A/A/;  {/a/}/R.O/1/ : {/R.O/A/1/;  {/a/}/R.A/ : {/R.A/A/;  {/a/b/ : {/
      {/}/R9/1/ : {/R9/1/;  {/a/$,c/}/R/ : {/R/A/&/;  {/a,(/}/R0/ : {/R0/&/
      {/a/}/{/b,}/R/ : {/{/R/B/)")) {
    const std::string script = row[0] == "a=1/b = 2/C" ? "a=1/b = 2/C/" : row[0];
    EXPECT_EQ(spelled(lines(script)), spelled(row[1])) << row[0];
  }
  EXPECT_EQ(lines("a\r\nb\tc\n"), "A//B/C/");
  // Counts: six characters, digits append, numerals add, others do nothing.
  for (const Row& row : table(R"(
      RXV : 15;  RVX : 15;  RX2 : 102;  R1000000 : 100000;  RMM : 2000;  RMMMMMMM : 6000;  R : 1
      RLCD : 650;  RIII : 1;  R1Z2 : 12;  R-5 : 5;  R0 : 1;  R999999 : 999999)")) {
    run_.line = std::strcpy(areas_[0], row[0].c_str());
    start_block(run_);
    EXPECT_EQ(run_.repeat_count, row.number(1)) << row[0];
  }
  // The console takes over, and echoes what a block runs.
  run_.block_index = -1;
  in_.ended = false;
  typed_text_ = "{\na\n}\nR2\n";
  printed();
  EXPECT_EQ(lines("1/", false), "1/{/R2/A/A/");
  EXPECT_EQ(printed(), "? ? ? ? ? A\n? A\n? \n");
}

TEST_F(LinesTest, CapturesToTheLimits) {
  std::string entries;
  for (int i = 0; i < 699; ++i) entries += "1,";
  for (const char* rest : {"2/}/", "2,3/4/}/"}) {
    lines("{/" + entries + rest);
    EXPECT_EQ(run_.block_entries, 700);
    EXPECT_STREQ(run_.block[699], "2");
    EXPECT_EQ(printed(), rest[1] == ',' ? "err " : "");
  }
  const std::string half(799, '7');
  lines("{/" + half + "/" + half + "/}/");
  EXPECT_EQ(std::to_string(run_.block_entries) + printed(), "2");
  EXPECT_EQ(lines("{/" + half + "/" + half + "7/8/}/R/"), "{/R/" + half + "/");
  EXPECT_EQ(printed(), "err ");
}

}  // namespace
}  // namespace tivelo::tests
