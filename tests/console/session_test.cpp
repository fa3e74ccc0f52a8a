// Replays every transcript of tests/sessions, the README, the manual and the cookbook through the
// program, from a file and at terminals, and compares what is printed, byte for byte, the exit
// status and the files left. The format is told to authors in tests/sessions/README.md.
#include "support/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <utility>

#include "support/folder.h"
#include "support/program.h"
#include "support/terminal.h"

namespace tivelo::tests {
namespace {

// Ways to be typed at: standard output is the same in all of them.
enum class Way { file, explained, terminals, editor };

// Terminals take lines of up to 4095 bytes, and some control characters for themselves.
bool can_be_typed(const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    if (line.size() > 4000 || std::ranges::any_of(line, [](char c) { return std::iscntrl(c); }))
      return false;
  return text.empty() || text.ends_with('\n');
}

std::string output_by(Way way, const Step& step, std::vector<std::string> args) {
  if (way == Way::file || !can_be_typed(step.typed)) return output({step.typed, args});
  if (way == Way::explained) {
    args.insert(args.begin(), "--explain");
    const Outcome outcome = run({step.typed, args});
    EXPECT_EQ(outcome.status, 0);
    return outcome.out;
  }
  AtTerminal person(
      [&] { return calculator(args, way == Way::editor ? "TERM=xterm" : "TERM=dumb"); });
  person.type(step.typed + "\x04");
  EXPECT_EQ(person.end(), 0);
  return person.printed.seen;
}

void replay(Way way, const Step& step) {
  SCOPED_TRACE("$ " + step.command);
  std::istringstream words(step.command);
  std::vector<std::string> args;
  for (std::string word; words >> word;) args.push_back(word);
  const bool file = args[0] == "cat";
  args.erase(args.begin());
  if (!file) {
    EXPECT_EQ(output_by(way, step, args), step.printed);
  } else if (args[0] == ">") {
    write(args.at(1), step.printed);
  } else {
    EXPECT_EQ(content(args[0]), step.printed);
  }
}

// A step of a console is a command of the shell, in which the program is called tivelo; a status
// other than 0 is its last line.
void replay_in_shell(const Step& step) {
  SCOPED_TRACE("$ " + step.command);
  const std::string place = fs::path(TIVELO_PROGRAM).parent_path();
  write("typed", "PATH='" + place + "':$PATH\n" + step.command + "\n");
  const int state = std::system("sh typed </dev/null >out 2>&1");
  const std::string status = "status " + std::to_string(WEXITSTATUS(state)) + "\n";
  EXPECT_EQ(content("out") + (state == 0 ? "" : status), step.printed);
}

class SessionTest : public testing::TestWithParam<fs::path> {};

TEST_P(SessionTest, GoesAsWritten) {
  const std::vector<Step> steps = read_steps(GetParam(), "session");
  ASSERT_FALSE(steps.empty()) << "no session";
  for (const Way way : {Way::explained, Way::terminals, Way::editor}) {
    SCOPED_TRACE(static_cast<int>(way));
    const OwnFolder folder;
    for (const Step& step : steps) replay(way, step);
  }
  const OwnFolder folder;
  for (const Step& step : steps) replay(Way::file, step);
  for (const Step& step : read_steps(GetParam(), "console")) replay_in_shell(step);
}

std::string name_of(const testing::TestParamInfo<fs::path>& test) {
  std::string name = test.param.lexically_relative(kRoot / "tests/sessions").replace_extension();
  std::ranges::replace_if(
      name, [](char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, SessionTest, testing::ValuesIn(transcripts()), name_of);

}  // namespace
}  // namespace tivelo::tests
