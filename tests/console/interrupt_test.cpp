// Every transcript, broken off at its first poll, its fifth, its 25th, ...: after that the
// variables and cells are those before the line, or those after it, and nothing of the scopes is
// left open.
#include "base/interrupt.h"

#include <gtest/gtest.h>

#include <sstream>

#include "bigint/pool.h"
#include "support/calculator.h"
#include "support/folder.h"
#include "support/session.h"

namespace tivelo::tests {
namespace {

long long left = 0;  // polls up to the one that breaks off; 0: none does

void count_down() {
  if (--left == 0) interrupt();
}

// All variables and their cells, as one number.
std::size_t state() {
  std::string all;
  for (int v = 0; v < kVariables; ++v) {
    for (const num* a : {M[v].c, M[v].m}) {
      const int fields[] = {a->sign, a->len, a->dec, a->imag};
      all.append(reinterpret_cast<const char*>(fields), sizeof fields);
      const ConstLimbs limbs = in_use(a);
      all.append(reinterpret_cast<const char*>(limbs.data()), limbs.size_bytes());
    }
    all.append(reinterpret_cast<const char*>(Mc[v]->limbs), 60 * sizeof(Limb));
  }
  return std::hash<std::string>()(all);
}

struct Session {
  std::vector<std::string> arguments, lines;
  std::vector<std::size_t> states;  // before each line

  // Types the lines, or those up to the one that poll `trip` breaks off; which one that was, or -1.
  int play(long long trip) {
    Feed feed;
    std::size_t next = 0;
    int broken = -1;
    left = trip;
    attention = trip > 0;
    attendant = count_down;
    feed.next = [&](std::string& text) {
      if (trip == 0) states.push_back(state());
      if (trip > 0 && left <= 0) {
        broken = static_cast<int>(next) - 1;
        after = state();
        EXPECT_EQ(lent, 0);
        return false;
      }
      if (next == lines.size()) return false;
      text = lines[next++] + "\n";
      return true;
    };
    feed.run(arguments);
    attention = 0;
    attendant = nullptr;
    return broken;
  }
  std::size_t after = 0;
};

// A repeat or a script stores on its way, also while it waits for answers, the lines behind it.
bool stores_on_the_way(const std::vector<std::string>& lines, std::size_t at) {
  bool stores = false;
  for (std::size_t i = at - std::min<std::size_t>(at, 3); i <= at; ++i) {
    const std::string& line = lines[i];
    stores |= line.find_first_of("Rr") == line.find_first_not_of(' ');
    stores |= line.find("L:") != line.npos || line.find("l:") != line.npos;
  }
  return stores;
}

void expect_whole_lines(Session& session) {
  session.play(0);
  const bool script = !session.arguments.empty() && session.arguments.back().size() > 1;
  for (long long trip = 1;; trip *= 5) {
    const int line = session.play(trip);
    if (left > 0) return;  // it ended before
    if (line < 0 || static_cast<std::size_t>(line) + 1 >= session.states.size()) continue;
    const auto at = static_cast<std::size_t>(line);
    if (script || stores_on_the_way(session.lines, at)) continue;
    EXPECT_TRUE(session.after == session.states[at] || session.after == session.states[at + 1])
        << session.lines[at].substr(0, 70) << ", poll " << trip;
  }
}

TEST(Interrupt, LeavesWholeLines) {
  for (const fs::path& file : transcripts()) {
    SCOPED_TRACE(file.filename());
    OwnFolder folder;
    for (const Step& step : read_steps(file, "session")) {
      std::istringstream words(step.command);
      Session session;
      for (std::string word; words >> word;) session.arguments.push_back(word);
      if (session.arguments[0] == "cat") {
        if (session.arguments[1] == ">") write(session.arguments.at(2), step.printed);
        continue;
      }
      session.arguments.erase(session.arguments.begin());
      std::istringstream typed(step.typed);
      for (std::string line; std::getline(typed, line);) session.lines.push_back(line);
      expect_whole_lines(session);
    }
  }
}

}  // namespace
}  // namespace tivelo::tests
