// The program in a bad environment: output that cannot be written, input that ends anywhere, files
// that are none, no memory, a small stack, odd starts. Never a signal, never a hang, never silent.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "support/folder.h"
#include "support/program.h"

namespace tivelo::tests {
namespace {

struct Faults : testing::Test {
  OwnFolder folder;
};

std::string repeated(const std::string& text, std::size_t bytes) {
  std::string all;
  while (all.size() < bytes) all += text;
  return all;
}

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

void limit(decltype(RLIMIT_AS) what, rlim_t bytes) {
  const rlimit limits = {bytes, bytes};
  setrlimit(what, &limits);
}

TEST_F(Faults, OutputThatCannotBeWritten) {
  write("script", "#FW:print\nA=1/3\nW.A\n");
  const auto break_pipe = [] {
    int ends[2];
    if (pipe(ends) != 0 || dup2(ends[1], 1) != 1) _exit(126);
    close(ends[0]);
    close(ends[1]);
  };
  const std::function<void()> ways[] = {[] { close(1); },
                                        [] { redirect(1, "/dev/full", O_WRONLY); }, break_pipe};
  const std::string lines[] = {"A=1\n", repeated("9^1000\n", 200000), "{\nA=1\n}\nR999999\n",
                               "#FW:print\nA=2\nW.A\nA\n", "A\n"};
  for (const auto& way : ways) {
    for (const std::string& typed : lines) {
      const Outcome outcome = run({typed, {typed == "A\n" ? "script" : "0"}, way});
      EXPECT_EQ(outcome.status, 1) << typed.substr(0, 30);
      EXPECT_EQ(outcome.err, "tivelo: standard output cannot be written\n");
      EXPECT_FALSE(has(content("print"), "TIVELO")) << "the console in a print file";
    }
  }
}

TEST_F(Faults, InputThatEnds) {
  const std::string typed = "A=1/3\n{\nB=A,I.C:?\n1\n}\nR2\n2\nI.A:two?\n3\nR.A\n#FR\n\nP.A";
  for (std::size_t n = 0; n <= typed.size(); ++n)
    EXPECT_TRUE(output({typed.substr(0, n)}).ends_with("\n")) << n;
  write("script", "#FR\nA=1\n");
  for (const auto& way : {+[] { close(0); }, +[] { redirect(0, "/", O_RDONLY); },
                          +[] { redirect(0, "/dev/null", O_WRONLY); }}) {
    for (const char* argument : {"0", "script"}) {
      const std::string out = output({"", {argument}, way});
      EXPECT_TRUE(out.ends_with(") \n? \n")) << out;
    }
  }
}

// What the calculator explains when standard error is a terminal.
std::string told(const std::string& typed) {
  int master = -1;
  int slave = -1;
  if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) return "no terminal";
  fcntl(master, F_SETFL, O_NONBLOCK);
  run({typed, {"0"}, [slave] { dup2(slave, 2); }});
  char text[4096];
  const ssize_t size = read(master, text, sizeof text);
  close(master);
  close(slave);
  return {text, static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

TEST_F(Faults, FilesThatCannotBeUsed) {
  std::filesystem::create_directory("folder");
  mkfifo("fifo", 0600);
  for (const std::string name : {"/dev/full", "folder", "none/x", "fifo"}) {
    const std::string print = "#FW:" + name + "\nA=2\nW.A\n#FC\n";
    const std::string save = "WC:A1 " + name + "\n";
    const std::string out = output({print + save});
    EXPECT_EQ(has(out, "? A= 2 \n? ? "), name != "/dev/full") << name;
    EXPECT_TRUE(has(out, "file_protected\n")) << name;
    for (const std::string& typed : {print, save})
      EXPECT_TRUE(has(told(typed), "written")) << typed;
  }
  write("nuls", std::string("1\0002,3", 5) + std::string(3000, '\0'));
  const std::pair<std::string, bool> names[] = {
      {"folder", false}, {"none", false}, {"/dev/zero", true}, {"fifo", true}, {"nuls", true}};
  for (const auto& [name, opens] : names) {
    const std::string out = output({"LC:" + name + "\nL:" + name + "\nA=5\n"});
    EXPECT_EQ(has(out, "file_not_found\n"), !opens) << name;
    EXPECT_EQ(has(out, "file not found."), !opens) << name;
    EXPECT_TRUE(has(out, "? A= 5 \n")) << name;
    EXPECT_TRUE(has(output({"A=5\n", {name}}), "? A= 5 \n")) << name;
  }
  const std::string format = "%n%s%9999d%s";
  const std::string out =
      output({"I.A:" + format + "\n3\nWC:A1 " + format + "\nL:x" + format + "\n"});
  EXPECT_TRUE(has(out, "? " + format + "? ? file not found.? \n"));
  EXPECT_TRUE(std::filesystem::exists(format));
  EXPECT_TRUE(has(told("L:x" + format + "\n"), "tivelo: x" + format + " cannot be read"));
}

TEST_F(Faults, StorageThatCannotBeHad) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer reserves more than any limit";
#endif
  write("script", "B=B+1\nL:script\n");
  int refused = 0;
  int nested = 0;
  for (rlim_t mebibytes = 16; mebibytes < 200; mebibytes += 1 + mebibytes / 40) {
    const Outcome outcome =
        run({"L:script\nB\n", {"5"}, [mebibytes] { limit(RLIMIT_AS, mebibytes << 20); }});
    const bool told = outcome.err.starts_with("tivelo: ") &&
                      outcome.err.ends_with(" bytes of storage cannot be had\n");
    EXPECT_EQ(outcome.status, told ? 1 : 0) << mebibytes << outcome.err;
    EXPECT_TRUE(told || has(outcome.out, "? err ? ")) << outcome.out;
    refused += told;
    nested += !told && !has(outcome.out, "T= 32 \n");
  }
  EXPECT_GT(refused, 0);
  EXPECT_GT(nested, 0);
}

TEST_F(Faults, OddStarts) {
  const std::string typed = "1/3+.12345678901*SIN7\nF.360\nLOG2,9\nI.B:\n1.5\nB\n$\n";
  const std::string usual = output({typed, {}});
  EXPECT_TRUE(has(usual, " (559984 digits,8) \n"));
  std::vector<Start> starts(6, Start{typed, {}});
  starts[0].named = false;
  starts[1].args.assign(10000, "x");
  starts[2].environment.emplace();
  starts[3].environment = {{"LANG=de_DE.UTF-8", "LC_ALL=de_DE.UTF-8"}};
  starts[4].environment = {{"LANG=tr_TR.UTF-8", "LC_ALL=tr_TR.UTF-8"}};
  starts[5].args = {""};
  for (const Start& start : starts) EXPECT_EQ(output(start), usual) << &start - starts.data();
  // A mode is one byte, whatever the sign of a char.
  EXPECT_EQ(output({typed, {"\xb0", "0"}}), output({typed}));
}

TEST_F(Faults, NestingOnASmallStack) {
  write("script", "B=B+1\nL:script\n");
  constexpr std::size_t kRoom = 559990;  // of a line at the default precision
  std::string typed = "L:script\nB\n";
  for (const char* piece :
       {"ATAN1,", "(", "|", "-(", "SIN(", "ATAN(", "1+(", "2^", "1G", "ATAN1,("}) {
    const std::string line = repeated(piece, kRoom / 2);
    const auto open = std::count(line.begin(), line.end(), '(');
    typed += line + line + "\n" + line + "1" + repeated(")", static_cast<std::size_t>(open)) + "\n";
  }
  Start start{typed, {}};
  const std::string usual = output(start);
  EXPECT_TRUE(has(usual, "T= 32 \n"));
#ifndef __SANITIZE_ADDRESS__
  start.spoil = [] { limit(RLIMIT_STACK, 256 << 10); };
#endif
  EXPECT_EQ(output(start), usual);
}

// Every number that is read into a machine integer ('~'), and counts that ask for nothing but a
// huge number of steps.
TEST_F(Faults, HugeCounts) {
  const char* forms[] = {
      "X.A~",        "X.A-~",       "V.~\nA\nV.16", "A%~",      "AM~",
      "AP~",         "AC~",         "(9^50)P~",     "3C~",      "SIN~",
      "COS(~)",      "TAN(1/~)",    "LOG~,~",       "ATAN~,~",  "ATAN(~)-~I",
      "SQR~",        "SQR(~)",      "A#~=1",        "A2=~\nA2", "B1=~\nA#B1=1\nA#B1",
      "R~",          "C=~\nR.C",    "1^~",          "0^~",      "1^-~",
      "10^~",        "10^-~",       "(1/3)^-~",     "~!",       "WC:A~ t",
      "(1/~)+(1/~)", "(1/~)*(1/~)", ".1^~",         "I.A~:\n~", "LC:~\nA1\nP.A1"};
  std::string typed;
  for (const std::string& number :
       {std::string("2147483647"), std::string("2147483648"), std::string("4294967296"),
        std::string("9223372036854775808"), std::string(20, '9'), std::string(200, '9')}) {
    write(number, number + "." + number + "," + number);
    for (const std::string form : forms) {
      typed += "A=7\n";
      for (const char c : form) typed += c == '~' ? number : std::string(1, c);
      typed += "\n";
    }
  }
  const std::string counts =
      "1^2099999999\n99999999!\n99999999P9999999\n99999999C49999999\nR999999\nRMMMMMM\n"
      "X.A999999999\nV.99999999999\nR.A\nA=5\n";
  typed += "2^2099999999\n" + counts;
  for (const auto& [precision, lines] : {std::pair("0", typed), {"5", typed}, {"9", counts}})
    EXPECT_TRUE(output({lines, {precision}}).ends_with("A= 5 \n\n? \n")) << precision;
}

}  // namespace
}  // namespace tivelo::tests
