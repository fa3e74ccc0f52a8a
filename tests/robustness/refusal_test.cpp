// Random lines at precision 0, well-formed and not, many of them refused: what a line does not
// target stays as it was, limb for limb and cell word for cell word, and a refused target does,
// too.
#include <gtest/gtest.h>

#include <cctype>
#include <random>
#include <set>

#include "base/precision.h"
#include "bigint/pool.h"
#include "fraction/numf.h"
#include "support/feed.h"

namespace tivelo::tests {
namespace {

constexpr unsigned kSeed = 20260704;
constexpr int kLines = 40000;  // a hundred times as many with TIVELO_EXHAUSTIVE set
constexpr int kLinesPerRun = 300;

struct Record {
  std::vector<int> fields;
  std::vector<Limb> words;
  bool operator==(const Record&) const = default;
};

Record record(const num* a) {
  return {{a->sign, a->len, a->ext, a->shift, a->dec, a->res, a->imag},
          {a->limbs, a->limbs + a->end}};
}

struct State {
  Record c[kVariables], m[kVariables];
};

State now() {
  State state;
  for (int v = 0; v < kVariables; ++v) {
    state.c[v] = record(Mc[v]);
    state.m[v] = record(Mm[v]);
  }
  return state;
}

// As the calculator will see it, but for characters that no line has.
std::string cleaned(const std::string& text) {
  std::string line;
  for (const char c : text)
    if (c != ' ') line += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return line;
}

// What a line may do: `value` and `cell` name the only variable it may change and how.
struct Line {
  enum Kind { kReport, kValue, kScale, kCell, kCellInput, kAny };
  std::string text;
  Kind kind = kReport;
  int variable = 'T' - 'A';
  int cell = -1;
  int kept = -1;  // the variable whose value a refused operation leaves as the result
};

class Lines {
 public:
  explicit Lines(unsigned seed) : source_(seed) {}

  int below(int n) { return static_cast<int>(source_() % static_cast<unsigned>(n)); }

  Line any() {
    const int v = below(26);
    Line line{"", Line::kValue, v};
    switch (below(12)) {
      case 0:
      case 1:
        line.kept = below(26);
        line.text =
            name(v) + "=" + name(line.kept) + pick({"+", "-", "*", "*", "*"}) + name(below(26));
        break;
      case 2:
      case 3:
        line.text = name(v) + "=" + operand() + pick({"+", "-", "*", "/", "^", "G", "L", ""}) +
                    operand() + pick({"", "", "!", "P7", "%97", "C9"});
        break;
      case 4:
        line.kind = Line::kScale;
        line.text = "X." + name(v) + pick({"", "-"}) +
                    pick({"0", "1", "9", "700", "1592", "2147483648", "99999999999999999999"});
        break;
      case 5:
        line.kind = Line::kCell;
        line.cell = below(10);
        line.text = name(v) + digit(line.cell) + "=" + operand() + pick({"", "*3", "/7"});
        break;
      case 6:
        line.kind = Line::kCell;
        line.cell = below(100);
        line.text = name(v) + "#" + digit(line.cell / 10) + digit(line.cell % 10) + "=" + operand();
        break;
      case 7:
        line.text = below(2) == 0 ? "C." + name(v) : "I." + name(v) + ":value\n" + operand();
        break;
      case 8:
        line.kind = Line::kCellInput;
        line.cell = below(10);
        line.text = "I." + name(v) + digit(line.cell) + ":cell\n" + operand();
        break;
      case 9:
        line.kind = Line::kReport;
        line.text = pick({"F.", "P.", "W.", "O.", "V.", "L:", "LC:", "WC:", "#FR:", "I."}) +
                    pick({name(v) + digit(below(10)), name(v) + ">" + name(below(26)), "9", "99"});
        if (line.text[0] == 'P' || line.text[0] == 'W') line.kind = Line::kAny;
        break;
      default:
        line = any();
        line.kind = Line::kAny;
        line.text.erase(std::min(line.text.find('\n'), line.text.size()));
        for (int i = 1 + below(3); i > 0; --i) spoil(line.text);
        if (cleaned(line.text).find("I.") != std::string::npos) line.text += "\n1";
    }
    return line;
  }

 private:
  static std::string name(int v) { return {static_cast<char>('A' + v)}; }
  static std::string digit(int d) { return {static_cast<char>('0' + d)}; }
  std::string pick(std::vector<std::string> from) {
    return from[static_cast<std::size_t>(below(static_cast<int>(from.size())))];
  }

  std::string operand() {
    const std::string digits = std::to_string(source_());
    switch (below(9)) {
      case 0:
        return name(below(26));
      case 1:
        return name(below(26)) + digit(below(10));
      case 2:
        return "0." + digits;
      case 3:
        return "(" + digits + "/" + std::to_string(1 + source_() % 100000) + ")";
      case 4:
        return "(9^" + std::to_string(below(1700)) + ")";
      case 5:
        return pick(
            {"0", "1", "-1", "(1/0)", "SQR(-2)", "SIN7", "(((((((((1)))))))))", "2147483648"});
      case 6:
        return std::string(static_cast<std::size_t>(1 + below(1580)), '9');
      case 7:
        return name(below(26)) + "#" + digit(below(10)) + digit(below(10));
      default:
        return digits;
    }
  }

  void spoil(std::string& text) {
    const std::size_t at = source_() % text.size();
    const char other =
        static_cast<char>(below(3) == 0 ? below(256) : "(),|=#.:';%!^*/-+<}$"[below(20)]);
    if (below(3) == 0) {
      text.erase(at, text.size() > 1 ? 1 : 0);
    } else {
      text.insert(at, 1, other == '\n' ? ' ' : other);
    }
  }

  std::mt19937 source_;
};

// All variables that a line of any form could target.
std::set<int> possible_targets(const std::string& text) {
  const std::string line = cleaned(text) + std::string(5, '\0');
  std::set<int> targets{'T' - 'A'};
  for (std::size_t i = 0; i + 5 < line.size(); ++i) {
    const char* at = line.data() + i;
    const bool command = i > 1 && at[-1] == '.' && std::strchr("CXI", at[-2]) != nullptr;
    const bool digit = std::isdigit(static_cast<unsigned char>(at[1])) != 0;
    if (command || at[1] == '=' || (digit && at[2] == '=') || (at[1] == '#' && at[4] == '='))
      targets.insert(at[0] - 'A');
  }
  return targets;
}

// Starts a repeat or a block, ends the run or makes a file: other tests look at those.
bool leaves_the_loop(const std::string& text) {
  const std::string line = cleaned(text);
  return line.empty() || std::strchr("R{", line[0]) != nullptr ||
         line.find("Q.") != std::string::npos || line.find("Q:") != std::string::npos ||
         line.find("#FW") != std::string::npos || line.find("WC:") == 0 || line[0] == '\n';
}

std::vector<Limb> value(const Record& r) {
  auto first = r.words.end() - r.fields[1];
  while (first != r.words.end() && *first == 0) ++first;
  return {first, r.words.end()};
}

// The index of the first word that differs outside [from, to), or -1.
int difference(const Record& a, const Record& b, int from, int to) {
  for (int i = 0; i < static_cast<int>(a.words.size()); ++i)
    if ((i < from || i >= to) &&
        a.words[static_cast<std::size_t>(i)] != b.words[static_cast<std::size_t>(i)])
      return i;
  return -1;
}

struct Seen {
  int unchanged = 0, kept = 0, mistaken = 0, stored = 0;
};

void check(const Line& line, const Feed& feed, const State& before, const State& after,
           Seen& seen) {
  const auto has = [](const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
  };
  std::set<int> targets{line.variable};
  if (line.kind == Line::kAny) targets = possible_targets(line.text);
  if (line.kind == Line::kReport) targets.clear();
  for (int v = 0; v < kVariables; ++v) {
    if (targets.count(v) != 0) continue;
    ASSERT_EQ(before.c[v], after.c[v]) << static_cast<char>('A' + v) << " is no target";
    ASSERT_EQ(before.m[v], after.m[v]) << static_cast<char>('A' + v) << " is no target";
  }
  if (has(feed.printed, "type mistaken")) {
    ++seen.mistaken;
    ASSERT_EQ(value(after.c['T' - 'A']), value(record(Cn.c)));
  }
  if (line.kind == Line::kAny || line.kind == Line::kReport) return;
  const Record& old_c = before.c[line.variable];
  const Record& new_c = after.c[line.variable];
  const bool same = old_c == new_c && before.m[line.variable] == after.m[line.variable];
  const bool cell = line.cell >= 0;
  if ((line.kind == Line::kScale && has(feed.printed, "err ")) || has(feed.printed, "_ovf_") ||
      has(feed.explained, "nothing stored")) {
    ++seen.unchanged;
    ASSERT_TRUE(same) << "refused";
  } else if (cell) {
    ++seen.stored;
    const int first = line.cell * NN + (line.kind == Line::kCellInput ? NN - 1 : 0);
    ASSERT_EQ(difference(old_c, new_c, first, line.cell * NN + NN), -1) << "outside the cell";
    ASSERT_EQ(old_c.fields, new_c.fields);
    ASSERT_EQ(before.m[line.variable], after.m[line.variable]);
  } else if (line.kind == Line::kValue) {
    const int covered = std::max({old_c.fields[1], new_c.fields[1], 1});
    ASSERT_EQ(difference(old_c, new_c, IS - covered, IS), -1) << "cells beside the value";
    const bool integer = line.kept >= 0 && before.c[line.kept].fields[4] == 0 &&
                         value(before.m[line.kept]) == std::vector<Limb>{1};
    if (integer && has(feed.explained, "left unchanged")) {
      ++seen.kept;
      ASSERT_EQ(value(new_c), value(before.c[line.kept])) << "the first operand";
      ASSERT_EQ(new_c.fields[0], before.c[line.kept].fields[0]);
    }
  }
}

TEST(Robustness, RefusalsChangeNothing) {
  OwnFolder folder;
  Lines lines(kSeed);
  Seen seen;
  Line line;
  State before;
  Feed feed;
  const int wanted = std::getenv("TIVELO_EXHAUSTIVE") != nullptr ? 100 * kLines : kLines;
  int n = 0;
  feed.next = [&](std::string& text) {
    if (!line.text.empty()) {
      check(line, feed, before, now(), seen);
      if (testing::Test::HasFatalFailure()) return false;
      line.text.clear();
      if (++n % kLinesPerRun == 0) return false;
    }
    do line = lines.any();
    while (leaves_the_loop(line.text));
    feed.printed.clear();
    feed.explained.clear();
    before = now();
    text = line.text;
    return true;
  };
  while (n < wanted && !HasFatalFailure()) {
    ASSERT_EQ(run_on(feed), 0);
    ASSERT_FALSE(HasFatalFailure())
        << "seed " << kSeed << ", line " << n << ": " << line.text << "\n"
        << feed.printed << "\n"
        << feed.explained;
  }
  for (const int count : {seen.unchanged, seen.kept, seen.mistaken, seen.stored})
    EXPECT_GT(count, 20);
}

}  // namespace
}  // namespace tivelo::tests
