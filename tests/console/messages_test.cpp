// What a person is told: for each line that is easily misread, the message with its column in the
// line as typed, and whether the stored value is marked as the true one. Grouping and the caret.
#include <gtest/gtest.h>

#include <filesystem>

#include "base/exactness.h"
#include "support/calculator.h"
#include "support/damage.h"
#include "support/folder.h"

namespace tivelo::tests {
namespace {

// What is told line by line: types them in one run and hands each line's messages to `look`.
void type(const std::vector<std::string>& lines,
          const std::function<void(std::size_t line, const std::string& told)>& look,
          const std::vector<std::string>& arguments = {"0"}) {
  Feed feed;
  std::size_t next = 0;
  feed.next = [&](std::string& text) {
    if (next > 0) {
      begin_messages();
      look(next - 1, feed.explained.take());
    }
    if (next == lines.size()) return false;
    text = lines[next++] + "\n";
    return true;
  };
  EXPECT_EQ(feed.run(arguments), 0);
}

std::string told_by(const std::string& line) {
  std::string all;
  type({line}, [&](std::size_t, const std::string& told) { all = told; });
  return all;
}

// After the run of one line: is T marked as exact?
bool stays_exact(const std::string& line) {
  bool exact = false;
  type({line}, [&](std::size_t, const std::string&) { exact = mark_of('T' - 'A').exact(); });
  return exact;
}

struct Row {
  const char* typed;
  const char* told;  // the beginning of the first message, or nothing
  bool exact = true;
};

TEST(Messages, SayWhatWasMisread) {
  const Row rows[] = {
      {"2^6000",
       "column 2: the power needs 1807 digits, a number holds 1584; the value stored is "
       "not that power. Start with precision 1.",
       false},
      {"2^2000000000",
       "column 2: the power needs 602059992 digits, a number holds 1584; the value "
       "stored is not that power. No precision holds that.",
       false},
      {"9^1600*9^1600", "column 7: the product needs about 3054 digits", false},
      {"1000!", "column 5: the product of so many factors needs about 257", false},
      {"10^1592", "column 3: the power needs 1593 digits, a number holds 1584; 1 in its", false},
      {"2pi", "column 2: 'P' takes digits", false},
      {"3 sin 30", "column 3: two values without an operator; only the last counts", false},
      {"1e5", "column 2: two values without an operator", false},
      {"12 g 18 5", "column 8: a blank does not end a number"},
      {"1 + 2^3^2", "column 8: no value before '^'; 0 in its place", false},
      {"--5", "column 2: no value before '-'", false},
      {"3*", "column 3: no value before the end of the line", false},
      {"+3-(+2)", ""},
      {"exit", "column 1: no function is named EXIT", false},
      {"1 + ln(2)", "column 5: no function is named LN", false},
      {"abs(-5)", "column 1: no function is named ABS", false},
      {"a + agb", "column 5: AGB is no function, only its last letter counts", false},
      {"10 mod 3", "column 4: 'M' takes digits only", false},
      {"17%0", "column 3: the remainder by 0 is a division by zero", false},
      {"17%2147483648", "column 3: a remainder is taken by at most 2147483647", false},
      {"sin37.5", "column 6: the argument ends at the point", false},
      {"log(100)", "column 1: LOG takes the base, a point and digits", false},
      {"sin30", ""},
      {"sqr4", "T is not exact from here on: a function's or constant's value", false},
      {"sqr(-4)", "column 1: the square root of a negative number is imaginary", false},
      {"tan90", "column 1: division by zero: the tangent", false},
      {"sin(9^20)", "column 4: an argument goes up to 2099999999", false},
      {"atan1,(9^20)", "column 7: the second part of an angle", false},
      {"4^(1/2)", "column 3: only the numerator of the exponent takes part", false},
      {"2^9^9", "column 4: no value before '^'", false},
      {"2^9999999999", "column 3: an exponent goes up to 2099999999", false},
      {"0^-1", "column 2: a negative power of zero", false},
      {"2.5!", "column 4: '!' takes an integer: only the numerator takes part", false},
      {"12G(1/2)", "column 3: 'G' takes an integer", false},
      {"0!", "column 2: 0! counts as 0 here", false},
      {"100000000!", "column 10: the factorial of a number above 99999999", false},
      {"(10^8)P1000000", "column 7: more than 999999 factors", false},
      {"1/0", "column 2: division by zero; 0 in its place", false},
      {"1.2345", "column 1: four or more places make a decimal", false},
      {"1/3*1/7", ""},
      {"1/99991+1/99989", "T is not exact from here on: common denominator above 100000000", false},
      {"1/10000*(1/10000)", "", true},  // cut, but nothing of it is lost
      {"1/3/99991/99989", "T is not exact from here on: common denominator above", false},
      {"1,2", "column 2: ',' starts no value", false},
      {"((((((1))))))", "column 7: brackets nest five deep", false},
      {"A#99", "column 1: A has no cell 99", false},
      {"a#99=1", "A has no cell 99, or its value covers it; nothing stored"},
      {"A1=9^99", "a result of 95 digits, a cell holds 24; nothing stored"},
      {"F.2^67-1", "column 4: one value is read; what is behind it is not"},
      {"V.3", "column 3: places are shown in groups of 8"},
      {"V.99999", "column 3: so many places are not shown at this precision; 98 are"},
      {"V.800", "column 3: so many places are not shown at this precision; 0 are"},
      {"V.16", ""},
      {"R", "R repeats the stored block, and none is stored"},
      {"I.", "column 3: I. takes a variable or a cell"},
      {"WC:A1", "column 4: WC: takes the last variable"},
      {"L:none", "none cannot be read"},
      {"LC:none", "none cannot be read"},
      {"#FR:none", "none cannot be read"},
      {"#SAVE", "column 6: #SAVE and #LOAD take ':' and a file name"},
      {"#LOAD:none", "none cannot be read"},
      {"#LOAD:/dev/null", "/dev/null is no saved state, or a damaged one; nothing loaded"},
      {"#SAVE:/dev/null", "/dev/null is no saved state; it stays as it is"},
      {"#SAVE:none/x", "none/x cannot be written; an older file stays"},
      {"#HELP ME", "column 7: there is no help on ME"},
      {"#ID 1 / 0", "column 7: division by zero", true},
      {"3 \xC3\x97 4", "column 3: '\xC3\x97' is not accepted; the line is rejected. Type * and /."},
      {"\x1B[A", "column 1: a control key, or an arrow"},
      {"1\t2", "column 2: a tab is not accepted"},
      {"1 $ 2", "column 3: '$' is not accepted"},
      {"(1+2", "brackets do not balance, a ')' is missing"},
      {"1)", "brackets do not balance, a '(' is missing"},
      {"X.A1600", "column 4: the scaled number needs 1601 digits", true},
  };
  for (const Row& row : rows) {
    const std::string told = told_by(row.typed), expected = row.told;
    EXPECT_TRUE(expected.empty() ? told.empty() : told.starts_with("tivelo: " + expected))
        << row.typed << ": " << told;
    EXPECT_EQ(stays_exact(row.typed), row.exact) << row.typed;
  }
  EXPECT_EQ(std::ranges::count(told_by("gcd(12)"), '\n'), 1) << "the letters tell nothing new";
}

TEST(Messages, OfBlocksScriptsAndFiles) {
  OwnFolder folder;
  write("long", std::string(12000, ' ') + "\n");
  write("wide", std::string(1900, '1'));
  const std::pair<const char*, const char*> rows[] = {
      {"{ A=1", "column 3: what is behind '{' is dropped"},
      {"R", "column 1: a repeat inside its own block"},
      {"}", ""},
      {"{", ""},
      {"A=A+1", ""},
      {"}", ""},
      {"R+1", "column 2: R runs the stored block 1 times; '+' counts for nothing"},
      {"RXVI", "column 4: R runs the stored block 15 times; I is no numeral here"},
      {"B=.12345", "column 3: four or more places"},
      {"C.B", "column 3: B is a decimal; its places stay"},
      {"D1=1/3", ""},
      {"WC:D2 table", "only the low words of cells are saved"},
      {"L:long", "long has 12001 bytes, the first 11216 are read"},
      {"LC:wide", "wide has 1900 bytes, the first 1800 are read"}};
  std::vector<std::string> lines;
  for (const auto& row : rows) lines.emplace_back(row.first);
  type(lines, [&](std::size_t i, const std::string& told) {
    const std::string expected = rows[i].second;
    EXPECT_TRUE(expected.empty() ? told.empty() : told.starts_with("tivelo: " + expected))
        << lines[i] << ": " << told;
  });
  const std::pair<std::vector<std::string>, const char*> starts[] = {
      {{"0", "b"}, "b"}, {{"long", "0"}, "long"}, {{"0", "b", "c"}, "b"}, {{"x"}, "x"}};
  for (const auto& start : starts) {
    const auto look = [&](std::size_t, const std::string& told) {
      EXPECT_TRUE(told.starts_with("tivelo: the argument " + std::string(start.second))) << told;
    };
    type({""}, look, start.first);
  }
}

TEST(Messages, AreCountedAndPointAtTheirPlace) {
  EXPECT_EQ(told_by("12345 + 6 / 0 * ( 1 )"),
            "tivelo: column 11: division by zero; 0 in its place\n"
            "  12345 + 6 / 0 * ( 1 )\n"
            "            ^\n");
  // The caret counts characters, not bytes.
  EXPECT_EQ(told_by("111111111 \xC3\xA9 2"),
            "tivelo: column 11: '\xC3\xA9' is not accepted; the line is rejected\n"
            "  111111111 \xC3\xA9 2\n"
            "            ^\n");
  std::string line = "1/0";
  for (int i = 0; i < 14; ++i) line += "+1/0";
  const std::string told = told_by(line);
  EXPECT_TRUE(told.ends_with("\ntivelo: 5 more\n")) << told;
  std::string last;
  type({"{", "A=1/0,B=1", "}", "R5", ""}, [&](std::size_t i, const std::string& all) {
    if (i == 3) last = all;
  });
  EXPECT_EQ(last,
            "tivelo: column 4: division by zero; 0 in its place\n"
            "tivelo: 4 times more: column 4: division by zero; 0 in its place\n");
}

// A product that came out wrong is told once for a line, and nothing else comes of it; one that did
// so twice ends the line, and the repeat it is in, and nothing of it is stored.
TEST(Messages, OfAMachineThatErrs) {
  const kernels::Target first = damaged<0>(kernels::target());
  const kernels::Target second = damaged<1>(kernels::second_target());
  const std::string redone = "tivelo: a product came out wrong and was done again; this machine's";
  const std::string wrong = "tivelo: a product came out wrong, and again by another way; nothing";
  struct Line {
    const char* typed;
    Fault first, second;
    std::string told;
  };
  constexpr Fault kNone = Fault::kNone, kLimb = Fault::kLimb;
  const Line lines[] = {{"A=3^15100", kNone, kNone, ""},  {"B=A*A+A*A", kLimb, kNone, redone},
                        {"C=B-2*A*A", kNone, kNone, ""},  {"D=1", kNone, kNone, ""},
                        {"D=2+A*A", kLimb, kLimb, wrong}, {"{", kNone, kNone, ""},
                        {"D=D+1", kNone, kNone, ""},      {"E=A*A", kNone, kNone, ""},
                        {"}", kNone, kNone, ""},          {"R5", kLimb, kLimb, wrong},
                        {"F=C+D", kNone, kNone, ""}};
  kernels::force_targets(&first, &second);
  std::vector<std::string> typed;
  for (const Line& line : lines) typed.emplace_back(line.typed);
  const auto look = [&](std::size_t i, const std::string& told) {
    EXPECT_TRUE(lines[i].told.empty() ? told.empty() : told.starts_with(lines[i].told)) << told;
    EXPECT_LE(std::ranges::count(told, '\n'), 2) << told;
    EXPECT_EQ(told.find("interrupted"), told.npos);
    EXPECT_TRUE(mark_of(1).exact());
    if (i + 1 == typed.size()) {
      EXPECT_EQ(units(Mc['F' - 'A']), 2u);
      return;
    }
    faults.of_road[0] = lines[i + 1].first;
    faults.of_road[1] = lines[i + 1].second;
  };
  type(typed, look, {"2"});
  faults.of_road[0] = faults.of_road[1] = kLimb;
  Feed batch;
  EXPECT_EQ(batch.run({"-p", "2", "-e", "A=3^15100*3^15100", "-e", "A+5"}), 4);
  EXPECT_EQ(batch.printed.take(), "5\n");
  kernels::force_targets(nullptr, nullptr);
}

// The sum of 1/N up to 100 is exact up to 1/22. Then every term that is no decimal of 16 places is
// cut, and the sum itself once.
TEST(Messages, MarkTheValuesThatAreCut) {
  const std::vector<std::string> lines = {"{",     "N=N+1,H=H+1/N", "}",     "R100", "A=H",
                                          "B1=H",  "C=B1",          "A=1/3", "$",    "T=N",
                                          "H=0*H", "H=0",           "#"};
  std::string seen;
  type(lines, [&](std::size_t i, const std::string& told) {
    if (i < 3) return;
    seen += "..";
    for (const char name : std::string("HABCT"))
      seen += mark_of(name - 'A').exact() ? "" : std::string{name};
    if (i == 3) {
      EXPECT_TRUE(told.starts_with("tivelo: H is not exact from here on: common denominator"));
      EXPECT_EQ(std::string(mark_of('H' - 'A').line), "H=H+1/N");
      EXPECT_EQ(mark_of('H' - 'A').times, 72);
    }
  });
  EXPECT_EQ(seen, "..H..HA..HA..HAC..HC..HC..HC..HC..C..CT");
}

}  // namespace
}  // namespace tivelo::tests
