// Every line of up to four characters that lines are made of, at precision 0: none may crash or go
// on for ever. The ordinary run takes one in 499; fuzz/lines/exhaustive takes them all, holds
// each to two seconds of processor time and shows the worst.
#include <gtest/gtest.h>

#include <ctime>
#include <map>

#include "support/calculator.h"
#include "support/folder.h"

namespace tivelo::tests {
namespace {

constexpr std::string_view kCharacters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ+-*/^!.,%'()|={}#<>:";
constexpr std::size_t kLinesPerRun = 2000;

// Values of every kind, so that short lines meet long numbers, fractions, decimals and cells.
constexpr const char* kOpening[] = {"A=2/3",  "B=-.12345", "C=9^190", "D=99999999", "E=-7",
                                    "F=2^99", "G=SQR(-2)", "H=1/D",   "A1=-1/7",    "B2=.5",
                                    "D9=5",   "V.F",       "V.40"};

// Lines in order of length: numbers in a base without a zero digit.
std::string line_number(std::size_t n) {
  std::string line;
  for (; n > 0; n = (n - 1) / kCharacters.size())
    line.insert(line.begin(), kCharacters[(n - 1) % kCharacters.size()]);
  return line;
}

TEST(Robustness, ShortLines) {
  const OwnFolder folder;
  const bool all = std::getenv("TIVELO_EXHAUSTIVE") != nullptr;
  std::size_t end = 1, n = 0, lines = 0;
  for (int i = 0; i < 4; ++i) end = end * kCharacters.size() + 1;
  std::multimap<std::clock_t, std::string, std::greater<>> worst;
  std::vector<std::string> waiting;
  std::string last;
  std::clock_t before = 0;
  Feed feed;
  feed.next = [&](std::string& text) {
    worst.emplace(std::clock() - before, last);
    if (worst.size() > 10) worst.erase(std::prev(worst.end()));
    for (TextOut* out : {&feed.printed, &feed.explained}) out->text.clear();
    if (waiting.empty()) {
      if (n >= end || ++lines % kLinesPerRun == 0) return false;
      waiting.push_back(line_number(n));
      // What these two make the calculator read.
      if (waiting[0][0] == '{') waiting.insert(waiting.begin(), "}");
      if (waiting.back().starts_with("I.")) waiting.insert(waiting.begin(), "1/3");
      n += all ? 1 : 499;
    }
    last = waiting.back();
    waiting.pop_back();
    text = last + "\n";
    before = std::clock();
    return true;
  };
  while (n < end) {
    waiting.assign(std::rbegin(kOpening), std::rend(kOpening));
    before = std::clock();
    ASSERT_EQ(feed.run(), 0);
  }
  if (!all) return;
  EXPECT_LT(worst.begin()->first, 2 * CLOCKS_PER_SEC) << worst.begin()->second;
  std::printf("%zu lines; the worst, in us of processor time:\n", lines);
  for (const auto& [time, line] : worst) std::printf("%9ld  %s\n", time, line.c_str());
}

}  // namespace
}  // namespace tivelo::tests
