// Random lines at precision 0, well-formed and not, many of them refused: what a line does not
// target stays as it was, limb for limb and cell word for cell word, and a refused target does,
// too.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <random>

#include "bigint/pool.h"
#include "support/calculator.h"
#include "support/folder.h"

namespace tivelo::tests {
namespace {

constexpr unsigned kSeed = 20260704;
constexpr int kLines = 40000;  // a hundred times as many with TIVELO_EXHAUSTIVE set
constexpr int kLinesPerRun = 300;

struct Record {
  std::array<int, 5> fields;
  std::vector<Limb> words;
  bool operator==(const Record&) const = default;

  // Without leading zeros.
  std::vector<Limb> value() const {
    auto first = words.end() - fields[1];
    while (first != words.end() && *first == 0) ++first;
    return {first, words.end()};
  }
};

Record record(const num* a) {
  return {{a->sign, a->len, a->dec, a->shift, a->imag}, {a->limbs, a->limbs + a->end}};
}

struct Variable {
  Record c, m;
  bool operator==(const Variable&) const = default;
};
using State = std::array<Variable, kVariables>;

State now() {
  State state;
  for (int v = 0; v < kVariables; ++v) {
    const numf& variable = changing(v);
    state[static_cast<std::size_t>(v)] = {record(variable.c), record(variable.m)};
  }
  return state;
}

// A line and what it may change: of `variable` the words of a cell from `from` to `to`, or with to
// = 0 the value; nothing, or with `spoilt` whatever its text may target.
struct Line {
  std::string text;
  std::size_t variable = 0;
  int from = 0, to = 0;
  bool nothing = false, spoilt = false;
  int kept = -1;  // the variable whose value a refused operation leaves as the result
};

class Lines {
 public:
  Line any() {
    const int v = below(26);
    const int cell = below(100);
    Line line;
    line.variable = static_cast<std::size_t>(v);
    const std::string a = name(v), number = digit(cell / 10) + digit(cell);
    switch (below(10)) {
      case 0:
      case 1:
        line.kept = below(26);
        line.text = a + "=" + name(line.kept) + pick({"+", "-", "*", "*"}) + name(below(26));
        break;
      case 2:
      case 3:
        line.text = a + "=" + operand() + pick({"+", "-", "*", "/", "G", "L", ""}) + operand() +
                    pick({"", "!", "P7", "%97", "^9", "^-3"});
        break;
      case 4:
        line.text = "X." + a + pick({"", "-"}) + pick({"0", "9", "700", "1592", "2147483648"});
        break;
      case 5:
        line.from = cell * NN;
        line.to = line.from + NN;
        line.text = a + "#" + number + "=" + operand();
        break;
      case 6:
        line.text = pick({"C." + a, "I." + a + ":value\n" + operand()});
        break;
      case 7:
        line.to = cell % 10 * NN + NN;
        line.from = line.to - 1;
        line.text = "I." + a + digit(cell) + ":cell\n" + operand();
        break;
      case 8:
        line.nothing = true;
        line.text = pick({"F.", "O.", "V.", "L:", "LC:", "WC:", "#FR:", "I."}) +
                    pick({a + digit(cell), a + ">" + name(below(26)), "9", "99"});
        break;
      default:
        line = any();
        line.spoilt = true;
        line.text.erase(std::min(line.text.find('\n'), line.text.size()));
        for (int i = 1 + below(3); i > 0; --i) spoil(line.text);
        if (line.text.find('.') != std::string::npos) line.text += "\n1";  // should it be an "I."
    }
    return line;
  }

 private:
  int below(int n) { return static_cast<int>(source_() % static_cast<unsigned>(n)); }
  static std::string name(int v) { return {static_cast<char>('A' + v)}; }
  static std::string digit(int d) { return {static_cast<char>('0' + d % 10)}; }
  std::string pick(const std::vector<std::string>& from) { return from[source_() % from.size()]; }

  std::string operand() {
    const std::string digits = std::to_string(source_());
    return pick({name(below(26)), name(below(26)) + digit(below(10)), "0." + digits,
                 "(" + digits + "/" + std::to_string(1 + below(100000)) + ")", digits,
                 "(9^" + std::to_string(below(1700)) + ")", name(below(26)) + "#" + digits,
                 pick({"0", "-1", "(1/0)", "SQR(-2)", "SIN7", "(((((((((1)))))))))", "2147483648"}),
                 std::string(1 + source_() % 1580, '9')});
  }

  void spoil(std::string& text) {
    const std::size_t at = source_() % text.size();
    const char mark = "(),|=#.:';%!^*/-+<}$"[below(20)];
    const char other = below(3) == 0 ? static_cast<char>(below(256)) : mark;
    if (below(3) == 0 && text.size() > 1) {
      text.erase(at, 1);
    } else {
      text.insert(at, 1, other == '\n' ? ' ' : other);
    }
  }

  std::mt19937 source_{kSeed};
};

bool has(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

// As the calculator will see it, but for characters that no line has.
std::string cleaned(std::string line) {
  std::erase(line, ' ');
  for (char& c : line) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return line;
}

bool could_target(const std::string& text, std::size_t variable) {
  const std::string line = cleaned(text) + std::string(5, '\0');
  bool could = variable == 'T' - 'A';
  for (std::size_t i = 0; i + 5 < line.size(); ++i) {
    const char* at = line.data() + i;
    const bool command = i > 1 && at[-1] == '.' && std::strchr("CXI", at[-2]) != nullptr;
    could |= at[0] == static_cast<char>('A' + variable) &&
             (command || at[1] == '=' || at[2] == '=' || at[4] == '=');
  }
  return could;
}

// Starts a repeat or a block, ends the run or makes a file: other tests look at those.
bool leaves_the_loop(const std::string& text) {
  const std::string line = cleaned(text);
  return std::strchr("R{\n", line[0]) != nullptr || has(line, "Q.") || has(line, "Q:") ||
         has(line, "#FW") || line.starts_with("WC:");
}

struct Seen {
  int unchanged = 0, kept = 0, mistaken = 0, stored = 0;
};

void check(const Line& line, const Feed& feed, const State& before, const State& after,
           Seen& seen) {
  const auto printed = [&feed](const char* part) { return has(feed.printed.text, part); };
  const auto told = [&feed](const char* part) { return has(feed.explained.text, part); };
  for (std::size_t v = 0; v < kVariables; ++v) {
    const bool targeted =
        line.spoilt ? could_target(line.text, v) : !line.nothing && v == line.variable;
    ASSERT_TRUE(targeted || before[v] == after[v]) << "variable " << v << " is no target";
  }
  if (printed("type mistaken")) {
    ++seen.mistaken;
    ASSERT_EQ(after['T' - 'A'].c.value(), record(Cn.c).value());
  }
  if (line.spoilt || line.nothing) return;
  const Variable& was = before[line.variable];
  const Variable& is = after[line.variable];
  const bool scaling = line.text[0] == 'X' && line.text[1] == '.';
  if ((scaling && printed("err ")) || printed("_ovf_") || told("nothing stored")) {
    ++seen.unchanged;
    ASSERT_EQ(was, is);
    return;
  }
  // A value may also change the words above its top that it covered before.
  const int top = std::max({was.c.fields[1], is.c.fields[1], 1});
  const int covered = std::min(top + (scaling ? 1 : 0), IS);
  const auto from = was.c.words.begin() + (line.to > 0 ? line.from : IS - covered);
  const auto to = was.c.words.begin() + (line.to > 0 ? line.to : IS);
  Variable expected = is;
  std::copy(was.c.words.begin(), from, expected.c.words.begin());
  std::copy(to, was.c.words.end(), expected.c.words.end() - (was.c.words.end() - to));
  if (line.to > 0) {
    ++seen.stored;
    expected.c.fields = was.c.fields;
    expected.m = was.m;
  }
  ASSERT_EQ(expected, is) << "words outside the target";
  if (line.kept < 0 || !told("left unchanged")) return;
  const Variable& first = before[static_cast<std::size_t>(line.kept)];
  if (first.c.fields[2] != 0 || first.m.value() != std::vector<Limb>{1}) return;
  ++seen.kept;
  ASSERT_EQ(is.c.value(), first.c.value()) << "the first operand of what was refused";
  ASSERT_EQ(is.c.fields[0], first.c.fields[0]);
}

TEST(Robustness, RefusalsChangeNothing) {
  const OwnFolder folder;
  Lines lines;
  Seen seen;
  Line line;
  State before;
  Feed feed;
  const int wanted = std::getenv("TIVELO_EXHAUSTIVE") != nullptr ? 100 * kLines : kLines;
  int n = 0;
  feed.next = [&](std::string& text) {
    if (!line.text.empty()) {
      check(line, feed, before, now(), seen);
      if (HasFatalFailure()) return false;
      line.text.clear();
      if (++n % kLinesPerRun == 0) return false;
    }
    do line = lines.any();
    while (line.text.size() > 1590 || leaves_the_loop(line.text));
    for (TextOut* out : {&feed.printed, &feed.explained}) out->text.clear();
    before = now();
    text = line.text + "\n";
    return true;
  };
  while (n < wanted) {
    ASSERT_EQ(feed.run(), 0);
    ASSERT_FALSE(HasFatalFailure())
        << "seed " << kSeed << ", line " << n << ": " << line.text << "\n"
        << feed.printed.text << "\n"
        << feed.explained.text;
  }
  for (const int count : {seen.unchanged, seen.kept, seen.mistaken, seen.stored})
    EXPECT_GT(count, 20);
}

}  // namespace
}  // namespace tivelo::tests
