// Ctrl-C and the line of progress, at a terminal that is standard input, output and error at once,
// with the line editor and without.
#include "console/attendant.h"

#include <gtest/gtest.h>

#include "support/folder.h"
#include "support/program.h"
#include "support/terminal.h"

namespace tivelo::tests {
namespace {

constexpr const char* kCtrlC = "\x03";

// What is typed, what to wait for before Ctrl-C, and what is told then.
struct Row {
  const char* typed;
  const char* seen;
  const char* told;
};

class Attendant : public testing::TestWithParam<const char*> {
 protected:
  OwnFolder folder;
};

TEST_P(Attendant, BreaksOff) {
  write("script", "{\nB=3^9999\n}\nR999999\n");
  write("short", "A=7\nP.A\n");
  const Row rows[] = {
      {"12+", "12+", "the line is dropped. Q. leaves."},
      {"A=1.5^999999\r", " of ", "interrupted in A=1.5^999999; nothing stored"},
      {"L:script\r", "pass ", "B=3^9999; what was stored stays"},
  };
  AtTerminal person([] { return calculator({"6"}, GetParam()); }, true);
  // The editor draws the prompt once more, and is there then.
  const bool edited = TIVELO_WITH_EDITOR && GetParam() == std::string("TERM=xterm");
  const std::string prompt = edited ? "\r? " : "? ";
  person.expect(prompt);
  // Ctrl-C meets no line then, also not the last one of a script that is used up.
  person.type("L:short\r");
  person.expect("A= 7");
  person.expect(prompt);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.typed);
    person.type(row.typed);
    person.expect(row.seen);
    person.type(kCtrlC);
    person.expect(row.told);
    person.expect(prompt);
  }
  person.type("Q.\r");
  EXPECT_EQ(person.end(), 0);
}

INSTANTIATE_TEST_SUITE_P(Terminals, Attendant, testing::Values("TERM=xterm", "TERM=dumb"));

}  // namespace
}  // namespace tivelo::tests
