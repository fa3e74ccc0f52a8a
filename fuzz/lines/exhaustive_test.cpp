// Every line of up to four characters that lines are made of, at precision 0: none may crash or go
// on for ever. The ordinary run takes one in 499; fuzz/lines/exhaustive takes them all, holds
// each to two seconds of processor time and shows the worst.
#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <string_view>

#include "lines/feed.h"

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

double processor_time() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

TEST(Robustness, ShortLines) {
  OwnFolder folder;
  const bool all = std::getenv("TIVELO_EXHAUSTIVE") != nullptr;
  std::size_t end = 1;
  for (int i = 0; i < 4; ++i) end = end * kCharacters.size() + 1;
  std::size_t n = 0;
  std::size_t lines = 0;
  std::string last;
  double before = 0;
  std::vector<std::pair<double, std::string>> worst;
  std::vector<std::string> waiting;
  Feed feed;
  feed.next = [&](std::string& line) {
    const double now = processor_time();
    if (all && (worst.size() < 10 || now - before > worst.back().first)) {
      worst.emplace_back(now - before, last);
      std::sort(worst.rbegin(), worst.rend());
      if (worst.size() > 10) worst.pop_back();
    }
    feed.printed.clear();
    feed.explained.clear();
    if (waiting.empty()) {
      if (n >= end || lines % kLinesPerRun == 0) return false;
      waiting.push_back(line_number(n));
      // What these two make the calculator read.
      if (waiting[0][0] == '{') waiting.insert(waiting.begin(), "}");
      if (waiting.back().starts_with("I.")) waiting.insert(waiting.begin(), "1/3");
      n += all ? 1 : 499;
      ++lines;
    }
    line = last = waiting.back();
    waiting.pop_back();
    before = processor_time();
    return true;
  };
  while (n < end) {
    ++lines;
    waiting.assign(std::rbegin(kOpening), std::rend(kOpening));
    before = processor_time();
    ASSERT_EQ(run_on(feed), 0);
  }
  if (!all) return;
  EXPECT_LT(worst[0].first, 2.0) << worst[0].second;
  std::printf("%zu lines; the worst, in ms of processor time:\n", lines);
  for (const auto& [seconds, line] : worst) std::printf("%9.3f  %s\n", seconds * 1e3, line.c_str());
}

}  // namespace
}  // namespace tivelo::tests
