// The line editor, at pseudo-terminals: what is typed with its keys must reach the calculator as
// the line that a person sees, standard output must carry what it carries for the same lines from a
// pipe, and the terminal must be left as it was, however the program ends. Nothing here waits for a
// time: only for what is drawn.
#include "console/editor.h"

#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <csignal>

#include "console/completion.h"
#include "console/history.h"
#include "support/folder.h"
#include "support/program.h"
#include "support/terminal.h"

namespace tivelo::tests {
namespace {

struct Editor : testing::Test {
  OwnFolder folder;
  void SetUp() override {
    if (!TIVELO_WITH_EDITOR) GTEST_SKIP() << "built without the editor";
  }
};

std::string sum(int terms) {
  std::string text = "1";
  while (--terms > 0) text += "+1";
  return text;
}

constexpr const char* kHistory = ".local/state/tivelo/history";

// Keys, and the lines that they make.
const std::pair<std::string, std::string> kTyped[] = {
    {"a=2/3\r", "a=2/3"},
    {"12\x1b[D3\x1bOC+1\r", "132+1"},
    {"0\x1b[H5+1\x1b[F+2\r", "5+10+2"},
    {"7*x\x7f"
     "6\r",
     "7*6"},
    {"\x1b[A\r", "7*6"},
    {"\x1b[A\x1b[A\x01-\r", "-5+10+2"},
    {"si\t30\r", "sin30"},
    {"#ro\tN\r", "#roN"},
    {"#RO\tN\r", "#RON"},
    {"3 \xC3\x97 4\r", "3 \xC3\x97 4"},
    {"\x1b[200~8\xFF\xC3*\x1b[201~2\r", "8\xFF\xC3*2"},
    {"I.C:how many\r", "I.C:how many"},
    {" 4\x1b[D2\r", " 24"},
    {"\x1b[A\x1b[A\x1b[B\r", "I.C:how many"},
    {"9\r", "9"},
    {" c\r", " c"},
    {"L:scr\t\r", "L:script with a blank"},
    {"b\r", "b"},
};

TEST_F(Editor, KeysMakeLines) {
  write("script with a blank", "B=77\n");
  AtTerminal person([] { return calculator({"5"}); });
  std::string lines;
  for (const auto& [keys, line] : kTyped) {
    person.expect(line == " 24" || line == "9" ? "\rhow many" : "\r? ");
    person.type(keys);
    lines += line + "\n";
    person.expect("\n");
  }
  person.expect("\r? ");
  for (const int terms : {2000, 50'000}) {
    const std::string paste = " " + sum(terms);
    person.type(paste + "\r" + paste + "-1\r");
    lines += paste + "\n" + paste + "-1\n";
  }
  person.type("\x04");
  EXPECT_EQ(person.end(), 0);
  EXPECT_EQ(person.printed.seen, output({lines, {"5"}}));
  EXPECT_TRUE(person.printed.seen.find("T= 49999 \n") != std::string::npos);

  std::string kept;
  std::string last;
  for (const auto& [keys, line] : kTyped) {
    if (line[0] != ' ' && line != "9" && line != last) kept += line + "\n";
    if (line[0] != ' ' && line != "9") last = line;
  }
  EXPECT_EQ(content(kHistory), kept);
  struct stat status {};
  stat(kHistory, &status);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  stat(".local/state/tivelo", &status);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(Editor, OneTerminalAndLinesFromBefore) {
  std::filesystem::create_directories(".local/state/tivelo");
  write(kHistory, "8*8\n9*9\n");
  AtTerminal person([] { return calculator({"0"}); }, true);
  person.expect("\r? ");
  person.type("\x1b[A\x1b[A\r");
  person.expect("T= 64");
  person.expect("\r? ");
  person.type("I.A:");
  person.type("two?\r");
  person.expect("\rtwo?");
  const winsize wider{40, 120, 0, 0};
  ioctl(person.keys.outer, TIOCSWINSZ, &wider);
  person.expect("\rtwo?");
  person.type("4\r");
  person.expect("\r? ");
  person.type("A*100");
  person.expect("A*100");
  person.type("\x1a");
  person.expect_stop();
  EXPECT_TRUE(person.keys.is_as_before());
  kill(person.program, SIGCONT);
  person.expect("\r? A*100");
  person.type("0\r");
  person.expect("T= 4000");
  person.type("Q.\r");
  EXPECT_EQ(person.end(), 0);
}

// Typed before the program is there to read, half of it perhaps before it has the terminal.
TEST_F(Editor, EarlyKeys) {
  AtTerminal person([] { return calculator({"0"}); });
  person.type("1+1\r2+2\r\x04");
  EXPECT_EQ(person.end(), 0);
  EXPECT_EQ(person.printed.seen, output({"1+1\n2+2\n"}));
}

TEST_F(Editor, SignalsThatEndIt) {
  for (const int signal : {SIGTERM, SIGHUP, SIGQUIT}) {
    for (const std::string typed : {"", "1+1"}) {
      AtTerminal person([] { return calculator({"0"}); });
      person.expect("\r? ");
      person.type(typed);
      person.expect(typed);
      kill(person.program, signal);
      EXPECT_EQ(person.end(), 128 + signal);
    }
  }
}

In in;
Out out;

// Prints each line and cancellation that it gets.
int reader() {
  static int descriptor = 1;
  struct sigaction action {};
  action.sa_handler = [](int) {};
  sigaction(SIGINT, &action, nullptr);
  setenv("TERM", "xterm", 1);
  setenv("HOME", std::filesystem::current_path().c_str(), 1);
  unsetenv("XDG_STATE_HOME");
  in.terminal = true;
  out.drain = drain_descriptor;
  out.context = &descriptor;
  attach_editor(in, out, out, false);
  char text[256];
  for (;;) {
    put(out, "> ");
    flush(out);
    const long got = in.fill(in.context, text, sizeof text);
    if (got == 0) break;
    if (got == kInterruptedRead) put(out, "cancelled\n");
    if (got > 0) put(out, {text, static_cast<std::size_t>(got)});
  }
  detach_editor();
  return 0;
}

TEST_F(Editor, Cancelling) {
  AtTerminal person(reader);
  person.expect("\r> ");
  person.type("\x03");
  person.expect("^C\r\n");
  person.expect("\r> ");
  person.type("1+1\x1b[D");
  person.expect("1+1");
  person.type("\x03");
  person.expect("^C\r\n");
  person.expect("\r> ");
  person.type("2\x1b[A\r");
  person.expect("\r> ");
  person.type("\x04");
  EXPECT_EQ(person.end(), 0);
  EXPECT_EQ(person.printed.seen, "> cancelled\n> cancelled\n> 2\n> ");
  EXPECT_FALSE(std::filesystem::exists(".local"));
}

TEST_F(Editor, Completions) {
  write("one", "");
  write("only", "");
  std::filesystem::create_directory("two");
  write("two/deep", "");
  struct Row {
    const char* before;
    std::size_t count;
    const char* rest;
  } const rows[] = {
      {"", 0, ""},           {"1+S", 3, ""},     {"1+SI", 1, "N"},  {"at", 1, "an"},
      {"sq", 2, "r"},        {"sqrt", 1, ""},    {"2po", 1, "l"},   {"x", 0, ""},
      {"#f", 3, ""},         {"#r", 2, "o"},     {"1#f", 0, ""},    {"L:o", 2, "n"},
      {"#s", 1, "ave"},      {"#l", 2, ""},      {"#HE", 1, "LP"},  {"#Save:t", 1, "wo/"},
      {"l :on", 2, ""},      {"LC:onl", 1, "y"}, {"L:t", 1, "wo/"}, {"L:two/", 1, "deep"},
      {"WC:X9 tw", 1, "o/"}, {"WC:X", 0, ""},    {"#FW:O", 0, ""},  {"#fr:one", 1, ""},
      {"F.o", 0, ""},        {"L:none/", 0, ""}};
  static Completion found;
  for (const Row& row : rows) {
    complete(row.before, found);
    EXPECT_EQ(found.count, row.count) << row.before;
    EXPECT_EQ(found.count > 0 ? found.rest() : "", row.rest) << row.before;
  }
}

TEST_F(Editor, HistoryOfSeveralPrograms) {
  setenv("XDG_STATE_HOME", std::filesystem::current_path().c_str(), 1);
  std::string many;
  for (int i = 0; i < 1998; ++i) many += std::to_string(i) + "\n";
  std::filesystem::create_directory("tivelo");
  write("tivelo/history", many);
  static int taken;
  taken = 0;
  load_history([](std::string_view) { ++taken; });
  EXPECT_EQ(taken, 1998);
  for (const char* line : {"a", "b"}) append_to_history(line);
  write("tivelo/history", content("tivelo/history") + "of another\n");
  append_to_history("c");
  const std::string left = content("tivelo/history");
  EXPECT_EQ(std::count(left.begin(), left.end(), '\n'), 1000);
  EXPECT_TRUE(left.ends_with("1997\na\nb\nof another\nc\n"));
  EXPECT_FALSE(keep_line("") || keep_line(" a") || keep_line(std::string(4097, '1')));
  EXPECT_TRUE(keep_line(std::string(4096, '1')));
  EXPECT_FALSE(keep_line(std::string(4096, '1')));
  std::filesystem::remove_all("tivelo");
  write("tivelo", "in the way");
  load_history([](std::string_view) { FAIL(); });
  append_to_history("nowhere");
  EXPECT_EQ(content("tivelo"), "in the way");
  unsetenv("XDG_STATE_HOME");
}

}  // namespace
}  // namespace tivelo::tests
