#include "console/number_commands.h"

#include "base/exactness.h"
#include "base/line_mark.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {
namespace {

using NumberCommands = PoolTest;
using Command = Flow (*)(Run&, const char**);

// What a command prints, for what stands behind its word.
std::string type(Command command, const char* text) {
  Run run;
  set_line_in_hand(text, nullptr);
  const char* at = text;
  EXPECT_EQ(command(run, &at), Flow::next);
  begin_messages();
  return Pool::printed();
}

std::string variables() {
  return value(M[0]) + " " + value(M[1]) + " " + value(M[2]) + " " + value(Cn);
}

TEST_F(NumberCommands, ChangeVariablesOrRefuse) {
  struct {
    Command command;
    const char *a, *b, *c, *text, *after, *told;
  } const rows[] = {
      {divide_command, "17", "5", "0", "AB", "3 2 0 9", ""},
      {divide_command, "-17", "5", "0", ". A B", "-4 3 0 9", ""},
      {divide_command, "17", "-5", "0", " A B ", "-3 2 0 9", ""},
      {divide_command, "-17", "-5", "0", "A B", "4 3 0 9", ""},
      {divide_command, "-4", "5", "0", "BA", "1 -1 0 9", ""},
      {divide_command, "17", "0", "0", "A B", "17 0 0 9", "division by zero; both are left"},
      {divide_command, "17/2", "5", "0", "A B", "17/2 5 0 9", "A is no integer"},
      {divide_command, "17", "5.5", "0", "A B", "17 5.5000000000000000 0 9", "B is no integer"},
      {divide_command, "17", "5", "0", "A A", "17 5 0 9", "the command takes two variables"},
      {divide_command, "17", "5", "0", "A", "17 5 0 9", "the command takes two variables"},
      {divide_command, "17", "5", "0", "A B C", "17 5 0 9", "the command takes two variables"},
      {power_modulo_command, "-3", "3", "10", "ABC", "3 3 10 9", ""},
      {power_modulo_command, "3", "0", "1", "A B C", "0 0 1 9", ""},
      {power_modulo_command, "3", "-1", "7", "A B C", "3 -1 7 9", "an exponent below 0"},
      {power_modulo_command, "3", "1", "0", "A B C", "3 1 0 9", "an exponent below 0"},
      {power_modulo_command, "3", "1", "1/2", "A B C", "3 1 1/2 9", "C is no integer"},
      {power_modulo_command, "3", "1", "5", "A B", "3 1 5 9", "the command takes three"},
      {next_prime_command, "7", "0", "0", "A", "11 0 0 9", ""},
      {next_prime_command, "-7", "0", "0", " A", "2 0 0 9", ""},
      {next_prime_command, "7/3", "0", "0", "A", "7/3 0 0 9", "A is no integer"},
      {next_prime_command, "7", "0", "0", "1", "7 0 0 9", "the command takes a variable"},
  };
  for (const auto& row : rows) {
    set('A', row.a), set('B', row.b), set('C', row.c), set(Cn, "9");
    explained();
    const std::string all = type(row.command, row.text), told = explained();
    EXPECT_EQ(variables(), row.after) << row.text;
    EXPECT_EQ(all, *row.told == '\0' ? "" : "err ") << row.text;
    EXPECT_EQ(told.find(row.told) == std::string::npos, false) << told;
    EXPECT_EQ(told.empty(), *row.told == '\0') << told;
  }
}

TEST_F(NumberCommands, TellPrimes) {
  set('A', "18446744 7370955 1629");
  set(Cn, "91");
  const std::pair<const char*, const char*> rows[] = {{"97", "prime\n"},
                                                      {".2^31-1", "prime\n"},
                                                      {" 2^67-1", "composite\n"},
                                                      {"2^89-1", "probably prime\n"},
                                                      {"", "composite\n"},
                                                      {"-7", "composite\n"},
                                                      {"1", "composite\n"},
                                                      {"7/2", "err "},
                                                      {"1/0", "err "},
                                                      {"4.00000", "err "}};
  for (const auto& [text, all] : rows) EXPECT_EQ(type(prime_command, text), all) << text;
  EXPECT_EQ(value(Cn), "91");
}

// Results of exact integers are exact; what was cut before stays marked, once for each operand.
TEST_F(NumberCommands, KeepMarks) {
  set('A', "17"), set('B', "5"), set('C', "7");
  type(divide_command, "A B");
  EXPECT_TRUE(mark_of(0).exact() && mark_of(1).exact());
  begin_mark();
  spoil(Event::cut_sum);
  mark_input(1, false);
  type(power_modulo_command, "ABC");
  EXPECT_EQ(mark_of(0).times, 1);
  EXPECT_TRUE(mark_of(2).exact());
  type(divide_command, "C B");
  EXPECT_TRUE(mark_of(1).times == 1 && mark_of(2).times == 1);
  set('A', "4"), set('B', "9");
  type(next_prime_command, "A");
  EXPECT_EQ(mark_of(0).times, 1);
  EXPECT_TRUE(mark_of_result().exact());
}

}  // namespace
}  // namespace tivelo::tests
